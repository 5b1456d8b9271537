#include "tests/core/TestNode.h"

#include <gtest/gtest.h>

#include <new>

IMPLEMENT_SERIAL(TestNode, CTreeNode, VERSIONABLE_SCHEMA | 2)

namespace {

void Step()
{
    if (TestNode::failAt > 0 && --TestNode::failAt == 0)
        throw std::bad_alloc();
}

} // namespace

TestNode::TestNode(char name)
{
    ++alive;
    GetCustomData().SetInt(1, name);
}

CString TestNode::GetDisplayName() const
{
    int name = 0;
    GetCustomData().GetInt(1, name, '-');
    return CString(static_cast<char>(name));
}

CTreeNode* TestNode::Copy() const
{
    Step();
    return CTreeNode::Copy();
}

CTreeNode* TestNode::Clone() const
{
    const auto name = static_cast<char>(GetDisplayName()[0]);
    return name == 'X' ? nullptr : new TestNode(static_cast<char>(name | 0x20));
}

int TestNode::operator==(const CTreeNode& other) const
{
    return GetDisplayName() == other.GetDisplayName();
}

void TestNode::Serialize(CArchive& archive)
{
    Step();
    CTreeNode::Serialize(archive);
}

TestTree::TestTree(std::string_view text)
{
    SetRoot(new CTreeNode);
    Append(text);
}

void TestTree::Append(std::string_view text)
{
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

CTreeNode* TestTree::At(char name) const
{
    CTreeNode* node = GetFirstNode(nullptr);
    while (node != nullptr && node->GetDisplayName() != CString(name))
        node = GetNextNode(node, nullptr);
    return node;
}

std::string TestTree::Text(CTreeNode* parent) const
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
