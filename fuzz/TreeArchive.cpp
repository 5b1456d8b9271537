// Trees from arbitrary bytes. What is refused leaves the tree empty and no node behind; what is read is
// walked, copied and stored, and reads back to the same bytes.
#include "core/Tree.h"
#include "fuzz/support/Target.h"
#include "tests/support/Archived.h"

#include <algorithm>

class FuzzTreeNode : public CTreeNode
{
    DECLARE_SERIAL(FuzzTreeNode)

public:
    FuzzTreeNode() { ++alive; }
    ~FuzzTreeNode() override { --alive; }

    static inline int alive = 0;
};

IMPLEMENT_SERIAL(FuzzTreeNode, CTreeNode, VERSIONABLE_SCHEMA | 2)

namespace {

using vak::fuzz::Require;

struct FuzzTree : CTree
{
    FuzzTree()
    {
        SetSilent(1);
        SetRoot(new CTreeNode);
    }
    using CTree::CopyNode;
};

struct Counter : TreeTraversalCallback
{
    using TreeTraversalCallback::TreeTraversalCallback;
    int Visit(CTreeNode*, int code) override
    {
        m_entered += code != vak::traversal::Leaving;
        m_open += code == vak::traversal::Parent;
        m_open -= code == vak::traversal::Leaving;
        return 1;
    }
    int m_entered = 0;
    int m_open = 0;
};

void Use(FuzzTree& tree)
{
    const std::string stored = vak::test::StoredBytes(tree);
    FuzzTree again;
    Require(vak::test::IsLoaded<CException>(again, stored) && vak::test::StoredBytes(again) == stored);
    Counter counter(&tree);
    tree.DoTraversal(nullptr, TreeTraversalBelow, &counter);
    Require(counter.m_open == 0 && counter.m_entered == tree.GetChildNbr(nullptr, 0));
    CTreeNode* const first = tree.GetFirstNode(nullptr);
    Require(first == nullptr || tree.CopyNode(first, first, 1) != nullptr);
    tree.DeleteNode(first);
}

void Run(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kLongest = 1 << 16;
    {
        FuzzTree tree;
        if (vak::test::IsLoaded<CException>(tree, std::string(data, data + std::min(size, kLongest))))
            Use(tree);
        else
            Require(tree.IsEmpty() && tree.GetRoot() != nullptr &&
                    CTree::GetRight(tree.GetRoot()) == nullptr);
    }
    Require(FuzzTreeNode::alive == 0);
}

const vak::fuzz::Target target("TreeArchive", Run);

} // namespace
