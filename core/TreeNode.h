#pragma once

#include "core/CustomData.h"
#include "framework/base/Object.h"
#include "framework/base/String.h"

namespace vak::detail {
class TreeGrowth;
class TreeLinks;
} // namespace vak::detail

/// Bits that tree controls keep with a node; node classes add theirs from the high end.
enum TreeNodeFlag : unsigned int
{
    TreeNodeFlagSelected = 0x1,
    TreeNodeFlagExpanded = 0x2,
    TreeNodeFlagHidden = 0x4
};

/// A node of a CTree: a property store and a set of flags, linked to its first child, its parent and its
/// siblings.
///
/// A node belongs to the tree in which it is reachable from the root, and to its maker before that. Whoever
/// holds a node with children that is in no tree gives it back by CTree::DeleteNode: the destructor frees
/// the node alone.
///
/// Node classes derive from this one and name themselves by DECLARE_SERIAL and IMPLEMENT_SERIAL with schema
/// `VERSIONABLE_SCHEMA | 2` or higher: the base reads its part by the schema recorded for the class, and
/// schema 1 means that only the flags were stored, so nodes of such a class are read but not written
/// (badSchema). A class that wants the schema for itself takes it with CArchive::GetObjectSchema and puts it
/// back with SetObjectSchema before it calls the base.
class VAK_API CTreeNode : public CObject
{
    DECLARE_SERIAL(CTreeNode)

public:
    CTreeNode() = default;

    CCustomData& GetCustomData() { return m_data; }
    const CCustomData& GetCustomData() const { return m_data; }

    unsigned int GetFlags() const { return m_flags; }
    /// Sets the bits of `flag`, or clears them when `on` is 0.
    void SetFlag(TreeNodeFlag flag, int on);

    /// @name Single links
    /// Each changes this end alone, for callers of CTree::AddRight and builders of their own.
    /// @{
    void SetChild(CTreeNode* child);
    void SetParent(CTreeNode* parent);
    void SetLeft(CTreeNode* left);
    void SetRight(CTreeNode* right);
    /// @}

    /// Writes the node without its links, or reads it back; docs/formats/tree.md. Throws what the archive and
    /// the store throw.
    void Serialize(CArchive& archive) override;

    // The order of the following virtual operations is part of the interface.

    /// The text that stands for the node where the tree is shown; the base has none.
    virtual CString GetDisplayName() const;
    /// Returns a new node of this node's class with equal store and flags and without links, or null when the
    /// class cannot be created. A class that adds members overrides both and copies them. Throws
    /// CMemoryException*.
    virtual CTreeNode* Copy() const;
    /// As Copy; a class may give the two different meanings.
    virtual CTreeNode* Clone() const;
    /// Non-zero when both nodes stand for the same thing; to the base all do.
    virtual int operator==(const CTreeNode& other) const;

private:
    friend class CTree;
    friend class vak::detail::TreeGrowth;
    friend class vak::detail::TreeLinks;

    // The order of these members is part of the interface.
    CCustomData m_data;
    CTreeNode* m_child = nullptr;
    CTreeNode* m_parent = nullptr;
    CTreeNode* m_left = nullptr;
    CTreeNode* m_right = nullptr;
    unsigned int m_flags = 0;

    /// Where the search for the last child begins, when it is still in its place (TreeLinks::LastChild);
    /// null: at the first child.
    CTreeNode* m_lastChild = nullptr;
};
