#pragma once

#include "framework/base/Platform.h"

class CTree;
class CTreeNode;

/// Which nodes CTree::DoTraversal visits.
enum TreeTraversalMode : unsigned int
{
    TreeTraversalBelow = 0,     ///< all below the start, in pre-order
    TreeTraversalPreOrder = 1,  ///< the same
    TreeTraversalChildren = 2,  ///< the children of the start alone
    TreeTraversalFollowing = 3, ///< all that follow the start in pre-order, to the end of the tree
};

/// What a traversal tells of the node that it hands over.
namespace vak::traversal {
constexpr int Leaf = 1;    ///< a node without children
constexpr int Leaving = 2; ///< a node whose children have been visited
constexpr int Parent = 3;  ///< a node with children, in front of them
} // namespace vak::traversal

/// The visitor of CTree::DoTraversal.
///
/// It may change the stores, flags and links of the tree: the walk goes on by the links as the visitor leaves
/// them. Only the node at hand and its ancestors must stay in the tree, unless the answer is 0. So children
/// are deleted at vak::traversal::Leaving, and a node itself from the visit of its parent or after the walk.
///
/// The tree is not owned and outlives the visitor. Copies share tree and found node.
class VAK_API TreeTraversalCallback
{
public:
    explicit TreeTraversalCallback(CTree* tree) : m_tree(tree) {}
    TreeTraversalCallback(const TreeTraversalCallback&) = default;
    TreeTraversalCallback& operator=(const TreeTraversalCallback&) = default;

    // The order of the virtual operations is part of the interface.

    /// Called with each node and one of the codes above; non-zero goes on, 0 ends the walk. The base goes on.
    virtual int Visit(CTreeNode* node, int code);
    virtual ~TreeTraversalCallback();

    CTree* GetTree() const { return m_tree; }
    /// A place for what the walk was made for; null at first.
    void SetFind(CTreeNode* node) { m_find = node; }
    CTreeNode* GetFind() const { return m_find; }

private:
    CTree* m_tree;
    CTreeNode* m_find = nullptr;
};
