#pragma once

#include "core/Tree.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <string_view>

/// A node with a letter for a name. Counts how many there are; the copy or Serialize numbered `failAt` of all
/// nodes (1 is next) finds no memory. Clones are lower-case, and X has none.
class TestNode : public CTreeNode
{
    DECLARE_SERIAL(TestNode)

public:
    explicit TestNode(char name = '?')
    {
        ++alive;
        GetCustomData().SetInt(1, name);
    }
    ~TestNode() override { --alive; }

    CString GetDisplayName() const override
    {
        int name = 0;
        GetCustomData().GetInt(1, name, '-');
        return CString(static_cast<char>(name));
    }
    CTreeNode* Copy() const override
    {
        Step();
        return CTreeNode::Copy();
    }
    CTreeNode* Clone() const override
    {
        const auto name = static_cast<char>(GetDisplayName()[0]);
        return name == 'X' ? nullptr : new TestNode(static_cast<char>(name | 0x20));
    }
    int operator==(const CTreeNode& other) const override
    {
        return GetDisplayName() == other.GetDisplayName();
    }
    void Serialize(CArchive& archive) override
    {
        Step();
        CTreeNode::Serialize(archive);
    }

    static inline int alive = 0;
    static inline int failAt = 0;

private:
    static void Step()
    {
        if (failAt > 0 && --failAt == 0)
            throw std::bad_alloc();
    }
};

/// A tree with a root and the nodes of a text, "A(BC)D", and its protected operations.
struct TestTree : CTree
{
    explicit TestTree(std::string_view text = "")
    {
        SetRoot(new CTreeNode);
        CTreeNode* parent = GetRoot();
        CTreeNode* last = nullptr;
        for (const char symbol : text) {
            if (symbol == '(')
                parent = last;
            else if (symbol == ')')
                parent = GetParent(parent);
            else
                AddChild(parent, last = new TestNode(symbol), 1);
        }
    }
    /// The node of that name below the root, null for '/'.
    CTreeNode* operator[](char name) const
    {
        CTreeNode* node = GetFirstNode(nullptr);
        while (node != nullptr && node->GetDisplayName() != CString(name))
            node = GetNextNode(node, nullptr);
        return node;
    }
    /// The text again; fails the test when a left or parent link disagrees with it.
    std::string Text(CTreeNode* parent = nullptr) const
    {
        std::string text;
        CTreeNode* left = nullptr;
        for (CTreeNode* node = GetFirstNode(parent); node != nullptr; left = node, node = GetRight(node)) {
            EXPECT_TRUE(GetLeft(node) == left && GetParent(node) == (parent ? parent : GetRoot())) << text;
            text += static_cast<char>(node->GetDisplayName()[0]);
            text += GetChild(node) != nullptr ? '(' + Text(node) + ')' : "";
        }
        return text;
    }

    using CTree::CloneNode;
    using CTree::CopyChilds;
    using CTree::CopyNode;
    using CTree::DeleteChilds;
    using CTree::MoveNode;
    using CTree::NodeSerialize;
};
