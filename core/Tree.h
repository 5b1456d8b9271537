#pragma once

#include "core/TreeNode.h"
#include "core/TreeTraversal.h"

/// An ordered tree of nodes of any classes derived from CTreeNode, which writes itself to an archive and
/// reads itself back.
///
/// The tree owns its root and every node reachable from it; pointers to them are valid until the node is
/// deleted, the tree is read or the tree goes. The root stands for the tree and is not shown: its children
/// are the top level. A new tree has none; the owner installs one before anything else, as a rule
/// `SetRoot(new CTreeNode)`. Without a root nothing can be added without a parent, and nothing is read. Nodes
/// are made with `new`.
///
/// Depth is limited by memory alone: no operation recurses. One thread at a time; different trees are
/// independent. Where memory runs out a CMemoryException* leaves and the tree is as before.
class VAK_API CTree : public CObject
{
    DECLARE_SERIAL(CTree)

public:
    CTree() = default;
    ~CTree() override;

    /// @name Neighbours
    /// Null, or depth 0, for a null node.
    /// @{
    static CTreeNode* GetParent(CTreeNode* node) { return node != nullptr ? node->m_parent : nullptr; }
    /// The first child.
    static CTreeNode* GetChild(CTreeNode* node) { return node != nullptr ? node->m_child : nullptr; }
    static CTreeNode* GetRight(CTreeNode* node) { return node != nullptr ? node->m_right : nullptr; }
    static CTreeNode* GetLeft(CTreeNode* node) { return node != nullptr ? node->m_left : nullptr; }
    static const CTreeNode* GetConstParent(const CTreeNode* node)
    {
        return node != nullptr ? node->m_parent : nullptr;
    }
    static const CTreeNode* GetConstChild(const CTreeNode* node)
    {
        return node != nullptr ? node->m_child : nullptr;
    }
    static const CTreeNode* GetConstRight(const CTreeNode* node)
    {
        return node != nullptr ? node->m_right : nullptr;
    }
    static const CTreeNode* GetConstLeft(const CTreeNode* node)
    {
        return node != nullptr ? node->m_left : nullptr;
    }
    /// How many parents are above the node: 0 for the root, 1 for the top level.
    static int GetDepth(const CTreeNode* node);
    /// @}

    /// @name Queries
    /// @{
    CTreeNode* GetRoot() const { return m_root; }
    /// Non-zero when the root has no children, or there is none.
    int IsEmpty() const;
    /// The first child of the node, of the root for null.
    CTreeNode* GetFirstNode(CTreeNode* node) const;
    /// The node that follows in pre-order, or null: at the end of the tree, when `stop` is climbed to, and
    /// when `stop` itself would follow. To walk what is below a node begin with GetFirstNode(node) and stop
    /// at it.
    CTreeNode* GetNextNode(CTreeNode* node, CTreeNode* stop) const;
    /// The number of children of the node (null: the root), or of all nodes below it when `directOnly` is 0.
    int GetChildNbr(const CTreeNode* node, int directOnly) const;
    /// Walks as TreeTraversalMode tells; `start` null stands for the root. The start itself and the root are
    /// never visited.
    void DoTraversal(CTreeNode* start, TreeTraversalMode mode, TreeTraversalCallback* callback);
    /// Returns the root if `probe` equals it by its operator==, else the first node that a walk from `start`
    /// visits and that `probe` equals, or null.
    CTreeNode* NodeExist(TreeTraversalMode mode, CTreeNode* start, const CTreeNode* probe);
    /// @}

    /// @name Operations
    /// @{
    /// When non-zero, archive errors are thrown without being shown to the user first, as they are by
    /// default: in a message box (CWinApp::DoMessageBox). Hosts without a user set it.
    void SetSilent(int silent) { m_silent = silent; }
    /// Takes over the root, from its place in a tree if it has one. The former root is deleted with all that
    /// is reachable from it; to keep it, remove it first.
    void SetRoot(CTreeNode* node);
    /// Links the node, with what is below it, as the last or the first child of `parent` (null: the root). A
    /// node that has a parent or siblings is removed from there. Nothing happens, and the node stays its
    /// owner's, without a parent and when `parent` is the node or below it.
    void AddChild(CTreeNode* parent, CTreeNode* node, int atEnd);
    /// Makes the node the right sibling of `after` (null: the root) and `after` its left one. Nothing else is
    /// relinked: the former right sibling of `after`, the node's own right link and its parent are left to
    /// the caller (CTreeNode::SetRight, SetLeft, SetParent).
    void AddRight(CTreeNode* after, CTreeNode* node);
    /// Takes the node, with what is below it, out of its place: it is the caller's from then on, and so are
    /// the root's siblings when it is the root, of which the tree is then without. Returns its left sibling,
    /// or its parent if there is none, or null.
    CTreeNode* RemoveNode(CTreeNode* node);
    /// Deletes the node and what is below it, and returns what RemoveNode would. Deleting the root leaves the
    /// tree without a node. Takes nodes that are in no tree as well.
    CTreeNode* DeleteNode(CTreeNode* node);
    /// Deletes all nodes below the root.
    void DeleteAll();
    /// @}

    /// Writes the tree or reads it back; docs/formats/tree.md. Reading deletes the nodes that are there
    /// first. Throws what archive, stores and nodes throw; reading without a root and bytes that are no tree
    /// are CArchiveException*. Those are shown to the user first, unless the tree is silent. After a failure
    /// all that was read is deleted and the tree is empty, with its root.
    void Serialize(CArchive& archive) override;

protected:
    /// Makes the node the first child of `newParent` (null: the root) and returns 1; 0, with nothing changed,
    /// when that is the node or below it, or null without a root.
    int MoveNode(CTreeNode* node, CTreeNode* newParent);
    /// Return a copy of the node, made by its Copy or Clone, as the last child of `parent`; with
    /// `withChildren` what is below it is copied too, as it was before. A node whose Copy or Clone gives null
    /// is left out with what is below it. Without `parent` CopyNode takes the root. Null when nothing was
    /// copied. When an exception leaves, nothing was added.
    CTreeNode* CopyNode(const CTreeNode* src, CTreeNode* parent, int withChildren);
    CTreeNode* CloneNode(const CTreeNode* src, CTreeNode* parent, int withChildren);
    /// Add copies of all that is below `src` to the children of `parent`, by the same rules.
    void CopyChilds(const CTreeNode* src, CTreeNode* parent);
    void CloneChilds(const CTreeNode* src, CTreeNode* parent);
    /// Deletes the node, its right siblings, and what is below them.
    void DeleteChilds(CTreeNode* firstChild);
    /// Writes the node, its right siblings and what is below them. Reading, the node is the one that takes
    /// the chain: where that begins with the root, the node stands for it, and else the nodes of the chain
    /// become its children, behind those that it has. When an exception leaves, nothing was added.
    void NodeSerialize(CTreeNode* firstNode, CArchive& archive);

private:
    using MakeCopy = CTreeNode* (CTreeNode::*)() const;

    CTreeNode* AddCopy(const CTreeNode* src, CTreeNode* parent, int withChildren, MakeCopy make);
    void AddCopies(const CTreeNode* src, CTreeNode* parent, MakeCopy make);
    void WriteNodes(const CTreeNode* first, CArchive& archive) const;
    void WriteTree(CArchive& archive);
    void ReadTree(CArchive& archive);

    // The order of these members is part of the interface.
    int m_silent = 0;
    CTreeNode* m_root = nullptr;
};
