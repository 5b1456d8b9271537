#pragma once

#include "core/Tree.h"

#include <string>
#include <string_view>

/// A node with a letter for a name. Counts how many there are; the operation numbered `failAt` of all nodes
/// (copying, storing; 1 is next) finds no memory.
class TestNode : public CTreeNode
{
    DECLARE_SERIAL(TestNode)

public:
    explicit TestNode(char name = '?');
    ~TestNode() override { --alive; }

    CString GetDisplayName() const override;
    CTreeNode* Copy() const override;
    /// Lower-case; X has none.
    CTreeNode* Clone() const override;
    int operator==(const CTreeNode& other) const override;
    void Serialize(CArchive& archive) override;

    static inline int alive = 0;
    static inline int failAt = 0;
};

/// A tree with a root and the nodes of a text, "A(BC)D", and its protected operations.
struct TestTree : CTree
{
    explicit TestTree(std::string_view text = "");
    void Append(std::string_view text);
    /// The node of that name below the root, null for '/'.
    CTreeNode* At(char name) const;
    /// The text again; fails the test when a left or parent link disagrees with it.
    std::string Text(CTreeNode* parent = nullptr) const;

    using CTree::CloneNode;
    using CTree::CopyChilds;
    using CTree::CopyNode;
    using CTree::DeleteChilds;
    using CTree::MoveNode;
    using CTree::NodeSerialize;
};
