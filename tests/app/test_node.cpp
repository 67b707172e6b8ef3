// Tests of UT_Node against a reference model on random edits, and of UT_NodePosition.
#include <PlumvaleBaseCore/app/UT_Node.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <stdexcept>
#include <vector>

namespace {

// The reference: each node's children as a plain list.
struct Model {
    std::map<const UT_Node*, std::vector<UT_Node*>> children;

    void leaves(UT_Node* n, std::vector<UT_Node*>& out) const {
        const auto& kids = children.at(n);
        if (kids.empty()) out.push_back(n);
        for (UT_Node* k : kids)
            leaves(k, out);
    }
    void forget(UT_Node* n) {
        for (UT_Node* k : children.at(n))
            forget(k);
        children.erase(n);
    }
};

// Every link and index of the tree under `root` agrees with the model.
void expectMatches(UT_Node* root, const Model& model) {
    for (const auto& [node, kids] : model.children) {
        ASSERT_EQ(node->CountImmediateChildren(), kids.size());
        ASSERT_EQ(node->GetChild(), kids.empty() ? nullptr : kids.front());
        for (std::size_t i = 0; i < kids.size(); ++i) {
            ASSERT_EQ(kids[i]->GetParent(), node);
            ASSERT_EQ(kids[i]->GetPosition(), i);
            ASSERT_EQ(node->GetChildAt(std::uint32_t(i)), kids[i]);
            ASSERT_EQ(kids[i]->GetPrevious(), i == 0 ? nullptr : kids[i - 1]);
            ASSERT_EQ(kids[i]->GetNext(), i + 1 == kids.size() ? nullptr : kids[i + 1]);
            ASSERT_EQ(UT_NodePosition(kids[i]).GetNode(*root), kids[i]);
        }
        ASSERT_EQ(node->GetChildAt(std::uint32_t(kids.size())), nullptr);
    }
    std::vector<UT_Node*> leaves;
    model.leaves(root, leaves);
    if (root->GetChild()) { // an inner node gives its own first and last leaves
        ASSERT_EQ(root->GetNextLeaf(), leaves.front());
        ASSERT_EQ(root->GetPreviousLeaf(), leaves.back());
    }
    for (std::size_t i = 0; i < leaves.size(); ++i) {
        ASSERT_EQ(leaves[i]->GetNextLeaf(), i + 1 < leaves.size() ? leaves[i + 1] : nullptr);
        ASSERT_EQ(leaves[i]->GetPreviousLeaf(), i > 0 ? leaves[i - 1] : nullptr);
        ASSERT_EQ(leaves[i]->GetRootnode(), root);
    }
}

} // namespace

TEST(UT_Node, RandomEditsKeepLinksIndexesAndLeafOrder) {
    std::mt19937 rng(20261123);
    for (int trial = 0; trial < 40; ++trial) {
        auto* root = new UT_Node;
        Model model;
        model.children[root];
        std::vector<UT_Node*> nodes{root};
        for (int step = 0; step < 60; ++step) {
            UT_Node* at = nodes[rng() % nodes.size()];
            const unsigned op = rng() % 5;
            if (op == 4 && at != root) { // remove a subtree: destroy it
                auto& siblings = model.children.at(at->GetParent());
                siblings.erase(std::find(siblings.begin(), siblings.end(), at));
                model.forget(at);
                nodes.erase(std::remove_if(nodes.begin(), nodes.end(),
                                           [&](UT_Node* n) { return !model.children.count(n); }),
                            nodes.end());
                delete at;
            } else {
                auto* n = new UT_Node;
                model.children[n];
                nodes.push_back(n);
                auto& kids = model.children.at(at);
                if (op == 0 || (at == root && op >= 2)) {
                    at->AppendChild(*n);
                    kids.push_back(n);
                } else if (op == 1) {
                    at->PreAppendChild(*n);
                    kids.insert(kids.begin(), n);
                } else {
                    auto& siblings = model.children.at(at->GetParent());
                    auto place = std::find(siblings.begin(), siblings.end(), at);
                    if (op == 2) {
                        at->AddAfter(*n);
                        siblings.insert(place + 1, n);
                    } else {
                        at->AddBefore(*n);
                        siblings.insert(place, n);
                    }
                }
            }
            expectMatches(root, model);
            if (HasFatalFailure()) return;
        }
        delete root; // and every node still under it; ASan reports any leak or double free
    }
}

TEST(UT_Node, DetachRenumbersAndDestructionWorksInBothOrders) {
    UT_Node root;
    auto* a = new UT_Node;
    auto* b = new UT_Node;
    auto* c = new UT_Node;
    root.AppendChild(*a);
    root.AppendChild(*b);
    root.AppendChild(*c);
    EXPECT_EQ(c->GetPosition(), 2u);
    b->DetachFromGraph();
    EXPECT_EQ(c->GetPosition(), 1u);
    EXPECT_EQ(a->GetNext(), c);
    EXPECT_EQ(b->GetParent(), nullptr);
    EXPECT_EQ(b->GetLevel(), 0u);
    delete b;

    auto* grandchild = new UT_Node;
    c->AppendChild(*grandchild);
    EXPECT_EQ(grandchild->GetLevel(), 2u);
    delete a; // a child first: the parent stays consistent
    EXPECT_EQ(root.GetChild(), c);
    EXPECT_EQ(c->GetPosition(), 0u);
    EXPECT_EQ(c->GetPrevious(), nullptr);
    root.DeleteChildren(); // then the rest, grandchild included
    EXPECT_EQ(root.GetChild(), nullptr);
    EXPECT_EQ(root.toLayerNode(), nullptr);
}

TEST(UT_NodePosition, OrderPrefixesAndLookup) {
    const auto path = [](std::initializer_list<std::uint32_t> elements) {
        UT_NodePosition p;
        for (std::uint32_t e : elements)
            p.Append(e);
        return p;
    };
    EXPECT_LT(path({1, 2}), path({1, 2, 0}));
    EXPECT_GT(path({1, 2}), path({1, 1, 5}));
    EXPECT_NE(path({1, 2}), path({1, 2, 0}));
    EXPECT_EQ(path({1, 2, 3}).EqualityLevel(path({1, 2, 4})), 2u);
    UT_NodePosition joined = path({1});
    joined.Append(path({2, 3}));
    EXPECT_EQ(joined, path({1, 2, 3}));
    EXPECT_EQ(joined(2), 3u);
    EXPECT_THROW(joined(3), std::out_of_range);

    UT_Node root;
    EXPECT_EQ(UT_NodePosition(&root), path({0}));
    EXPECT_FALSE(UT_NodePosition(nullptr).IsValid());
    auto* child = new UT_Node;
    root.AppendChild(*child);
    EXPECT_EQ(path({0, 0}).GetNode(root), child);
    EXPECT_EQ(path({0, 1}).GetNode(root), nullptr); // past the last sibling
    EXPECT_EQ(path({0, 0, 0}).GetNode(root), nullptr);
    EXPECT_EQ(UT_NodePosition().GetNode(root), nullptr);
}
