#include "framework/base/Exception.h"
#include "tests/core/TestNode.h"
#include "tests/support/Slots.h"

#include <cstring>
#include <tuple>

using vak::test::SlotOf;

IMPLEMENT_SERIAL(TestNode, CTreeNode, VERSIONABLE_SCHEMA | 2)

namespace {

/// Writes down what it is shown, "A3B1A2", to the end or to the node of a name. Gives E a child, and takes
/// the children off what it leaves.
struct Recorder : TreeTraversalCallback
{
    Recorder(CTree* tree, char last) : TreeTraversalCallback(tree), m_last(last) {}
    int Visit(CTreeNode* node, int code) override
    {
        const auto name = static_cast<char>(node->GetDisplayName()[0]);
        m_seen += name + std::to_string(code);
        if (m_last == '*' && code == vak::traversal::Leaving)
            static_cast<TestTree*>(GetTree())->DeleteChilds(CTree::GetChild(node));
        else if (m_last == '*' && name == 'E')
            GetTree()->AddChild(node, new TestNode('F'), 1);
        return name != m_last;
    }
    char m_last;
    std::string m_seen;
};

std::string Names(const TestTree& tree, char first, char stop)
{
    std::string names;
    for (CTreeNode* node = tree[first]; node != nullptr; node = tree.GetNextNode(node, tree[stop]))
        names += static_cast<char>(node->GetDisplayName()[0]);
    return names;
}

} // namespace

TEST(TreeTest, KeepsMembersAndVirtualOperationsInTheirOrder)
{
    TestTree tree("A(BC(E)F)");
    tree.SetSilent(5);
    CTreeNode* const node = tree['C'];
    node->SetFlag(TreeNodeFlag(0x80000001), 1);
    node->SetFlag(TreeNodeFlag(0x80000000), 0);
    struct
    {
        CTreeNode *child, *parent, *left, *right;
        unsigned int flags;
    } members;
    std::memcpy(&members, &node->GetCustomData() + 1, sizeof members);
    EXPECT_EQ(static_cast<void*>(&node->GetCustomData()), reinterpret_cast<char*>(node) + sizeof(void*));
    EXPECT_TRUE(members.child == tree['E'] && members.parent == tree['A'] && members.left == tree['B'] &&
                members.right == tree['F'] && members.flags == 1);
    struct
    {
        int silent;
        CTreeNode* root;
    } head;
    std::memcpy(&head, reinterpret_cast<char*>(static_cast<CTree*>(&tree)) + sizeof(void*), sizeof head);
    EXPECT_TRUE(head.silent == 5 && head.root == tree.GetRoot());
    EXPECT_TRUE(SlotOf(&CTreeNode::GetDisplayName) == 4 && SlotOf(&CTreeNode::Copy) == 5 &&
                SlotOf(&CTreeNode::Clone) == 6 && SlotOf(&CTreeNode::operator==) == 7 &&
                SlotOf(&TreeTraversalCallback::Visit) == 0);
}

TEST(TreeTest, LinksWithoutDraggingNeighboursAlong)
{
    TestTree tree("ABM");
    CTreeNode* const a = tree['A'];
    CTreeNode* const b = tree['B'];
    CTreeNode* const r = new TestNode('R');
    tree.AddRight(a, r);
    EXPECT_TRUE(CTree::GetRight(a) == r && CTree::GetLeft(r) == a && CTree::GetLeft(b) == a);
    EXPECT_TRUE(CTree::GetRight(r) == nullptr && CTree::GetParent(r) == nullptr);
    r->SetRight(b);
    b->SetLeft(r);
    r->SetParent(tree.GetRoot());
    EXPECT_EQ(tree.Text(), "ARBM");
    CTreeNode* const s = new TestNode('S');
    tree.AddRight(a, s);
    s->SetParent(tree.GetRoot());
    r->SetLeft(nullptr);
    tree.AddChild(nullptr, new TestNode('C'), 1);
    EXPECT_EQ(tree.Text(), "ASC") << "the end is where the links lead, not where it was";
    tree.DeleteChilds(r);

    tree.AddChild(s, a, 1);
    tree.AddChild(a, s, 0);
    tree.AddChild(s, s, 0);
    EXPECT_EQ(tree.Text(), "S(A)C") << "moved from its place, never below itself";
    tree.SetRoot(s);
    EXPECT_TRUE(tree.Text() == "A" && TestNode::alive == 2);
    tree.DeleteAll();
    EXPECT_TRUE(tree.IsEmpty() && tree.GetRoot() == s);
    EXPECT_EQ(tree.DeleteNode(s), nullptr);
    EXPECT_TRUE(tree.IsEmpty() && tree.GetRoot() == nullptr && TestNode::alive == 0);
}

TEST(TreeTest, ForgetsNodesThatWereLinkedWithoutAParent)
{
    TestTree tree("A(B)");
    for (const bool together : {false, true}) {
        CTreeNode* const x = new TestNode('X');
        tree.AddRight(tree['A'], x);
        tree.AddChild(nullptr, new TestNode('D'), 1);
        if (together)
            tree.DeleteChilds(x);
        else
            tree.DeleteNode(tree.DeleteNode(tree['D']));
        tree.AddChild(nullptr, new TestNode('E'), 1);
        tree.DeleteNode(tree['E']);
    }
    CTreeNode* const y = new TestNode('Y');
    tree.AddRight(tree['B'], y);
    tree.AddChild(nullptr, y, 1);
    EXPECT_EQ(tree.Text(), "A(B)Y");
}

TEST(TreeTest, FollowsWalksAndFindsInPreOrder)
{
    TestTree tree("A(B(C)D)E");
    EXPECT_TRUE(tree.GetChildNbr(nullptr, 1) == 2 && tree.GetChildNbr(tree['A'], 0) == 3);
    EXPECT_EQ(CTree::GetDepth(tree['C']), 3);
    EXPECT_EQ(Names(tree, 'B', 'A'), "BCD") << "ends where it would climb to the stop";
    EXPECT_EQ(Names(tree, 'A', 'D'), "ABC") << "and where the stop would follow";
    const std::tuple<int, char, char, char> searches[] = {
        {0, '/', 'D', 'D'}, {0, 'A', 'C', 'C'}, {0, 'A', 'E', '/'}, {2, '/', 'E', 'E'}, {3, 'C', 'A', 'A'}};
    for (const auto& [mode, start, name, found] : searches) {
        const TestNode probe(name);
        EXPECT_EQ(tree.NodeExist(TreeTraversalMode(mode), tree[start], &probe), tree[found]) << name;
    }
    const CTreeNode anything;
    EXPECT_EQ(tree.NodeExist(TreeTraversalBelow, tree['B'], &anything), tree.GetRoot());
    const std::tuple<char, int, char, const char*> walks[] = {
        {'/', 0, 0, "A3B3C1B2D1A2E1"}, {'/', 1, 'D', "A3B3C1B2D1"},
        {'A', 0, 0, "B3C1B2D1"},       {'C', 0, 0, ""},
        {'/', 2, 0, "A3E1"},           {'A', 2, 0, "B3D1"},
        {'B', 3, 0, "C1D1A2E1"},       {'C', 3, 0, "B2D1A2E1"},
        {'C', 3, 'B', "B2"},           {'E', 3, 0, ""},
        {'/', 3, 0, "A3B3C1B2D1A2E1"}, {'/', 0, '*', "A3B3C1B2D1A2E1F1E2"}};
    for (const auto& [start, mode, last, expected] : walks) {
        Recorder recorder(&tree, last);
        tree.DoTraversal(tree[start], TreeTraversalMode(mode), &recorder);
        EXPECT_EQ(recorder.m_seen, expected) << start << mode;
    }
    EXPECT_EQ(tree.Text(), "AE") << "the last walk took the links as its visitor left them";
}

TEST(TreeTest, RemovesAndGivesTheNeighbour)
{
    TestTree tree("A(B(C)DF)E");
    for (const auto& [name, neighbour] : {std::tuple{'B', 'A'}, {'F', 'D'}, {'E', 'A'}})
        EXPECT_EQ(tree.DeleteNode(tree[name]), tree[neighbour]) << name;
    CTreeNode* const a = tree['A'];
    EXPECT_EQ(tree.RemoveNode(a), tree.GetRoot());
    EXPECT_EQ(CTree::GetParent(a), nullptr);
    tree.DeleteNode(a);
}

TEST(TreeTest, CopiesIntoItselfAndNothingWhenACopyFails)
{
    TestTree tree("A(BX(C))");
    tree['A']->SetFlag(TreeNodeFlagExpanded, 1);
    EXPECT_EQ(tree.CopyNode(tree['A'], nullptr, 0)->GetFlags(), unsigned{TreeNodeFlagExpanded});
    tree.CopyChilds(tree['A'], tree['A']);
    tree.CloneNode(tree['A'], tree.GetRoot(), 1);
    EXPECT_EQ(tree.Text(), "A(BX(C)BX(C))Aa(bb)") << "what has no clone is left out";
    EXPECT_EQ(tree.CloneNode(tree['A'], nullptr, 1), nullptr);
    for (const int failAt : {1, 2, 5, 7}) {
        TestNode::failAt = failAt;
        EXPECT_THROW(
            try { tree.CopyNode(tree['A'], tree['C'], 1); } catch (CMemoryException*) { throw 0; }, int);
    }
    tree.CopyNode(tree['A'], tree['C'], 1);
    EXPECT_EQ(tree.Text(), "A(BX(C(A(BX(C)BX(C))))BX(C))Aa(bb)");
    EXPECT_EQ(TestNode::alive, 18);
}
