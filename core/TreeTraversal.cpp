#include "core/TreeTraversal.h"

#include "core/Tree.h"

namespace {

class Finder : public TreeTraversalCallback
{
public:
    Finder(CTree* tree, const CTreeNode& probe) : TreeTraversalCallback(tree), m_probe(probe) {}

    int Visit(CTreeNode* node, int) override
    {
        if (m_probe.operator==(*node) == 0)
            return 1;
        SetFind(node);
        return 0;
    }

private:
    const CTreeNode& m_probe;
};

int CodeOf(const CTreeNode* node)
{
    return CTree::GetConstChild(node) != nullptr ? vak::traversal::Parent : vak::traversal::Leaf;
}

} // namespace

int TreeTraversalCallback::Visit(CTreeNode*, int)
{
    return 1;
}

TreeTraversalCallback::~TreeTraversalCallback() = default;

void CTree::DoTraversal(CTreeNode* start, TreeTraversalMode mode, TreeTraversalCallback* callback)
{
    if (start == nullptr)
        start = m_root;
    if (start == nullptr || callback == nullptr)
        return;
    const bool pastStart = mode == TreeTraversalFollowing;
    const bool deep = mode != TreeTraversalChildren;
    CTreeNode* node = start;
    for (bool entering = true;;) {
        CTreeNode* next = entering ? node->m_child : nullptr;
        if (next == nullptr && (node == m_root || (node == start && !pastStart)))
            return;
        if (next == nullptr)
            next = node->m_right;
        entering = next != nullptr && deep;
        node = next != nullptr ? next : node->m_parent;
        if (node == nullptr)
            return;
        const bool unseen = next == nullptr && (node == start || node == m_root);
        if (!unseen && callback->Visit(node, next != nullptr ? CodeOf(node) : vak::traversal::Leaving) == 0)
            return;
    }
}

CTreeNode* CTree::NodeExist(TreeTraversalMode mode, CTreeNode* start, const CTreeNode* probe)
{
    if (probe == nullptr)
        return nullptr;
    if (m_root != nullptr && probe->operator==(*m_root) != 0)
        return m_root;
    Finder finder(this, *probe);
    DoTraversal(start, mode, &finder);
    return finder.GetFind();
}
