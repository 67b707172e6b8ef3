// UT_Node's links and renumbering, leaf walking, and UT_NodePosition.
#include <PlumvaleBaseCore/app/UT_Node.h>

#include <stdexcept>

UT_Node::~UT_Node() {
    DetachFromGraph();
    DeleteChildren();
}

GR_LayerNode* UT_Node::toLayerNode() {
    return nullptr;
}

const GR_LayerNode* UT_Node::toLayerNode() const {
    return nullptr;
}

void UT_Node::renumberFrom(UT_Node* from) {
    if (!from) return;
    std::uint32_t index = from->m_previous ? from->m_previous->m_index + 1 : 0;
    for (UT_Node* n = from; n; n = n->m_next)
        n->m_index = index++;
}

UT_Node* UT_Node::GetChildAt(std::uint32_t i) const {
    UT_Node* n = m_child;
    for (; n && i > 0; --i)
        n = n->m_next;
    return n;
}

std::uint32_t UT_Node::CountImmediateChildren() const {
    std::uint32_t count = 0;
    for (const UT_Node* n = m_child; n; n = n->m_next)
        ++count;
    return count;
}

std::uint32_t UT_Node::GetLevel() const {
    std::uint32_t level = 0;
    for (const UT_Node* n = m_parent; n; n = n->m_parent)
        ++level;
    return level;
}

UT_Node* UT_Node::GetRootnode() {
    UT_Node* n = this;
    while (n->m_parent)
        n = n->m_parent;
    return n;
}

UT_Node* UT_Node::GetLastNext() {
    UT_Node* n = this;
    while (n->m_next)
        n = n->m_next;
    return n;
}

UT_Node* UT_Node::GetNextLeaf() {
    UT_Node* n = this;
    if (!m_child) {
        while (!n->m_next && n->m_parent)
            n = n->m_parent;
        n = n->m_next;
        if (!n) return nullptr;
    }
    while (n->m_child)
        n = n->m_child;
    return n;
}

UT_Node* UT_Node::GetPreviousLeaf() {
    UT_Node* n = this;
    if (!m_child) {
        while (!n->m_previous && n->m_parent)
            n = n->m_parent;
        n = n->m_previous;
        if (!n) return nullptr;
    }
    while (n->m_child)
        n = n->m_child->GetLastNext();
    return n;
}

void UT_Node::AddAfter(UT_Node& n) {
    n.m_parent = m_parent;
    n.m_previous = this;
    n.m_next = m_next;
    if (m_next) m_next->m_previous = &n;
    m_next = &n;
    renumberFrom(&n);
}

void UT_Node::AddBefore(UT_Node& n) {
    n.m_parent = m_parent;
    n.m_next = this;
    n.m_previous = m_previous;
    if (m_previous)
        m_previous->m_next = &n;
    else if (m_parent && m_parent->m_child == this)
        m_parent->m_child = &n;
    m_previous = &n;
    renumberFrom(&n);
}

void UT_Node::AppendChild(UT_Node& n) {
    if (m_child) {
        m_child->GetLastNext()->AddAfter(n);
        return;
    }
    // The first child has no siblings: whatever links `n` held are not this tree's.
    n.m_parent = this;
    n.m_next = n.m_previous = nullptr;
    m_child = &n;
    renumberFrom(&n);
}

void UT_Node::PreAppendChild(UT_Node& n) {
    if (m_child)
        m_child->AddBefore(n);
    else
        AppendChild(n);
}

void UT_Node::DetachFromGraph() {
    UT_Node* const next = m_next;
    if (m_parent && m_parent->m_child == this) m_parent->m_child = m_next;
    if (m_previous) m_previous->m_next = m_next;
    if (m_next) m_next->m_previous = m_previous;
    m_parent = m_next = m_previous = nullptr;
    m_index = 0;
    renumberFrom(next);
}

void UT_Node::DeleteChildren() {
    // Each child's destructor unlinks it, so the first child moves on every time.
    while (m_child)
        delete m_child;
}

UT_NodePosition::UT_NodePosition(const UT_Node* node) {
    if (node) Set(*node);
}

void UT_NodePosition::Set(const UT_Node& node) {
    m_path.assign(node.GetLevel() + 1, 0);
    std::size_t depth = m_path.size();
    for (const UT_Node* n = &node; n; n = n->GetParent())
        m_path[--depth] = n->GetPosition();
}

void UT_NodePosition::Append(std::uint32_t index) {
    m_path.push_back(index);
}

void UT_NodePosition::Append(const UT_NodePosition& other) {
    m_path.insert(m_path.end(), other.m_path.begin(), other.m_path.end());
}

std::uint32_t& UT_NodePosition::operator()(std::uint32_t i) {
    if (i >= m_path.size()) throw std::out_of_range("invalid vector<T> subscript");
    return m_path[i];
}

UT_Node* UT_NodePosition::GetNode(UT_Node& root) const {
    if (m_path.empty()) return nullptr;
    UT_Node* n = &root;
    for (std::size_t k = 0; k < m_path.size() && n; ++k) {
        if (k > 0) n = n->GetChild();
        for (std::uint32_t step = 0; step < m_path[k] && n; ++step)
            n = n->GetNext();
    }
    return n;
}

std::uint32_t UT_NodePosition::EqualityLevel(const UT_NodePosition& other) const {
    std::size_t k = 0;
    while (k < m_path.size() && k < other.m_path.size() && m_path[k] == other.m_path[k])
        ++k;
    return static_cast<std::uint32_t>(k);
}
