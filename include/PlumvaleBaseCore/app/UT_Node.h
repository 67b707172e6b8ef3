// UT_Node, an intrusive ordered tree, and UT_NodePosition, a node's path of sibling indexes.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <cstdint>
#include <vector>

class GR_LayerNode;

/// A node of an intrusive ordered tree: each node holds its links to its parent, first
/// child and two siblings, and its index among its siblings. Trees are built by deriving
/// from it.
///
/// Conventions:
/// - Along a sibling chain the indexes are 0, 1, 2 ... in order, and a parent's first child
///   has index 0; every insertion and removal renumbers to keep this.
/// - No insertion detaches its argument first: a node still linked elsewhere must be
///   detached by the caller, or both trees break.
/// - A node owns its children: destroying it destroys its whole subtree (children are
///   deleted, so they must have been created with new), after detaching it from its parent.
/// - Copying copies the five link fields verbatim: the copy claims its source's place
///   without the tree knowing it. Deliberate; the caller detaches or relinks copies.
/// - Not thread-safe: one thread changes a tree at a time.
class PLUMVALE_EXPORT UT_Node {
public:
    /// All links null, index 0.
    UT_Node() = default;
    /// @{
    /// Copy the five link fields verbatim (see the class comment).
    UT_Node(const UT_Node& other) = default;
    UT_Node& operator=(const UT_Node& other) = default;
    /// @}
    /// Detaches the node, then deletes every child subtree.
    virtual ~UT_Node();

    /// @{
    /// The graphics layer's own kind of node; null here, overridden by the layer node to
    /// return itself, so a node's kind can be tested without a run-time type cast.
    virtual GR_LayerNode* toLayerNode();
    virtual const GR_LayerNode* toLayerNode() const;
    /// @}

    /// @{
    /// The links (null where there is none) and the index among the siblings.
    UT_Node* GetParent() { return m_parent; }
    const UT_Node* GetParent() const { return m_parent; }
    UT_Node* GetChild() { return m_child; }
    const UT_Node* GetChild() const { return m_child; }
    UT_Node* GetNext() { return m_next; }
    const UT_Node* GetNext() const { return m_next; }
    UT_Node* GetPrevious() { return m_previous; }
    const UT_Node* GetPrevious() const { return m_previous; }
    std::uint32_t GetPosition() const { return m_index; }
    /// @}

    /// The i-th child counting from 0; null past the last.
    UT_Node* GetChildAt(std::uint32_t i) const;
    /// The length of the child chain.
    std::uint32_t CountImmediateChildren() const;
    /// The number of ancestors; 0 for a root.
    std::uint32_t GetLevel() const;
    /// The topmost ancestor, or the node itself for a root.
    UT_Node* GetRootnode();
    /// The last sibling after this node, or the node itself.
    UT_Node* GetLastNext();
    /// In document order: for a leaf, the next leaf (null after the last); for an inner
    /// node, its own first leaf.
    UT_Node* GetNextLeaf();
    /// In document order: for a leaf, the previous leaf (null before the first); for an
    /// inner node, its own last leaf.
    UT_Node* GetPreviousLeaf();

    /// Inserts `n` as the next sibling of this node, under the same parent.
    void AddAfter(UT_Node& n);
    /// Inserts `n` as the previous sibling; when this node was its parent's first child, `n`
    /// becomes the first child. This node must have a parent.
    void AddBefore(UT_Node& n);
    /// `n` becomes the last child.
    void AppendChild(UT_Node& n);
    /// `n` becomes the first child.
    void PreAppendChild(UT_Node& n);
    /// Unlinks this node, with its subtree, from its parent and siblings; its index becomes
    /// 0 and the siblings after it are renumbered.
    void DetachFromGraph();
    /// Deletes every child subtree.
    void DeleteChildren();

private:
    /// Gives `from` the index after its previous sibling's, and each later sibling the next.
    static void renumberFrom(UT_Node* from);

    UT_Node* m_parent = nullptr;
    UT_Node* m_child = nullptr;
    UT_Node* m_next = nullptr;
    UT_Node* m_previous = nullptr;
    std::uint32_t m_index = 0;
};

/// A place in a tree as the path of sibling indexes from the root: element 0 is the root's
/// own index, each further element a child index one level deeper. Plain value; ordered
/// lexicographically, a proper prefix first.
class PLUMVALE_EXPORT UT_NodePosition {
public:
    /// The empty (invalid) path.
    UT_NodePosition() = default;
    /// The path of `node`; empty for null.
    explicit UT_NodePosition(const UT_Node* node);

    /// Replaces the path by that of `node`: its level + 1 elements.
    void Set(const UT_Node& node);
    /// Appends one index.
    void Append(std::uint32_t index);
    /// Appends the elements of `other`.
    void Append(const UT_NodePosition& other);
    /// Empties the path.
    void Clear() { m_path.clear(); }
    /// Whether the path is not empty.
    bool IsValid() const { return !m_path.empty(); }
    /// The number of elements.
    std::uint32_t Size() const { return static_cast<std::uint32_t>(m_path.size()); }
    /// Element i; throws std::out_of_range("invalid vector<T> subscript") when i >= Size().
    std::uint32_t& operator()(std::uint32_t i);

    /// The node the path names under `root`: the first element counts siblings from the
    /// root, each further one children of the node reached. Null for an empty path or
    /// when a step runs out of siblings.
    UT_Node* GetNode(UT_Node& root) const;
    /// The length of the common leading part of the two paths.
    std::uint32_t EqualityLevel(const UT_NodePosition& other) const;

    /// @{
    /// Equality of length and elements; lexicographic order, a proper prefix first.
    bool operator==(const UT_NodePosition& o) const { return m_path == o.m_path; }
    bool operator!=(const UT_NodePosition& o) const { return m_path != o.m_path; }
    bool operator<(const UT_NodePosition& o) const { return m_path < o.m_path; }
    bool operator>(const UT_NodePosition& o) const { return o.m_path < m_path; }
    /// @}

private:
    std::vector<std::uint32_t> m_path;
};
