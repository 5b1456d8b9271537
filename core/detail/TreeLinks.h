#pragma once

#include "core/TreeNode.h"

#include <cstddef>

namespace vak::detail {

/// The links of nodes, for the operations of a tree that stand outside CTree.
class TreeLinks
{
public:
    /// Deletes the node, its right siblings and what is below them, by child and right links alone.
    static void DeleteChain(CTreeNode* first);
    static CTreeNode* LastChild(const CTreeNode& parent);
    /// Hangs the chain that begins at `first` and ends at `last` behind the children of `parent`.
    static void AppendChain(CTreeNode& parent, CTreeNode* first, CTreeNode* last);
    /// True when `node` is `ancestor` or below it.
    static bool IsWithin(const CTreeNode* node, const CTreeNode& ancestor);
};

/// A chain of nodes, with what is below them, that grows in pre-order beside the tree. What is not attached
/// in the end is deleted.
class TreeGrowth
{
public:
    /// The chain is meant for the children of `parent`, null for a chain without a parent.
    explicit TreeGrowth(CTreeNode* parent) : m_topParent(parent), m_parent(parent) {}
    ~TreeGrowth() { TreeLinks::DeleteChain(m_first); }
    TreeGrowth(const TreeGrowth&) = delete;
    TreeGrowth& operator=(const TreeGrowth&) = delete;

    /// Takes the node as the right sibling of the one before.
    void Add(CTreeNode* node)
    {
        node->m_parent = m_parent;
        node->m_left = m_previous;
        node->m_right = nullptr;
        if (m_previous != nullptr)
            m_previous->m_right = node;
        else if (m_depth != 0)
            m_parent->m_child = node;
        else
            m_first = node;
        m_previous = node;
    }
    /// The next nodes stand below the one added last.
    void Descend()
    {
        m_parent = m_previous;
        m_previous = m_parent->m_child == nullptr ? nullptr : TreeLinks::LastChild(*m_parent);
        ++m_depth;
    }
    /// The next nodes stand beside the one that Descend went below. False at the top, where there is none.
    bool Climb()
    {
        if (m_depth == 0)
            return false;
        --m_depth;
        m_parent->m_lastChild = m_previous;
        m_previous = m_parent;
        m_parent = m_depth == 0 ? m_topParent : m_previous->m_parent;
        return true;
    }

    /// Back at the top: gives the chain to the parent, behind its children.
    void AttachToParent();
    /// Back at the top: gives the chain to the end of the siblings on the right of `node`.
    void AttachBeside(CTreeNode& node);

private:
    CTreeNode* m_topParent;
    CTreeNode* m_parent;
    CTreeNode* m_previous = nullptr;
    CTreeNode* m_first = nullptr;
    std::size_t m_depth = 0;
};

} // namespace vak::detail
