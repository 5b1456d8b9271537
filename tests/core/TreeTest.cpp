#include "core/Tree.h"
#include "framework/base/Exception.h"
#include "tests/core/TestNode.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>

namespace {

/// Slot of a virtual operation in the table, the destructor's two included.
template <class Member>
std::size_t SlotOf(Member member)
{
    std::size_t words[2];
    static_assert(sizeof(member) == sizeof(words));
    std::memcpy(words, &member, sizeof(words));
    return (words[0] - 1) / sizeof(void*);
}

template <class T>
T MemberAt(const void* object, std::size_t offset)
{
    T value;
    std::memcpy(&value, static_cast<const char*>(object) + offset, sizeof value);
    return value;
}

/// Writes down what it is shown, "A3B1A2", and stops in front of a node.
struct Recorder : TreeTraversalCallback
{
    explicit Recorder(CTree* tree, char last = 0) : TreeTraversalCallback(tree), m_last(last) {}
    int Visit(CTreeNode* node, int code) override
    {
        const auto name = static_cast<char>(node->GetDisplayName()[0]);
        m_seen += name + std::to_string(code);
        return name != m_last;
    }
    char m_last;
    std::string m_seen;
};

std::string Names(const TestTree& tree, char first, char stop)
{
    std::string names;
    for (CTreeNode* node = tree.At(first); node != nullptr; node = tree.GetNextNode(node, tree.At(stop)))
        names += static_cast<char>(node->GetDisplayName()[0]);
    return names;
}

} // namespace

TEST(TreeTest, KeepsMembersAndVirtualOperationsInTheirOrder)
{
    TestTree tree("A(BC(E)F)");
    tree.SetSilent(5);
    CTreeNode* const node = tree.At('C');
    node->SetFlag(TreeNodeFlag(0x80000001), 1);
    node->SetFlag(TreeNodeFlag(0x80000000), 0);
    EXPECT_EQ(static_cast<void*>(&node->GetCustomData()), reinterpret_cast<char*>(node) + sizeof(void*));
    CTreeNode* links[4];
    std::memcpy(links, &node->GetCustomData() + 1, sizeof links);
    EXPECT_TRUE(links[0] == tree.At('E') && links[1] == tree.At('A'));
    EXPECT_TRUE(links[2] == tree.At('B') && links[3] == tree.At('F'));
    EXPECT_EQ(MemberAt<unsigned int>(&node->GetCustomData() + 1, sizeof links), 1u);
    EXPECT_EQ(MemberAt<int>(&tree, sizeof(void*)), 5);
    EXPECT_EQ(MemberAt<CTreeNode*>(&tree, 2 * sizeof(void*)), tree.GetRoot());
    EXPECT_EQ(SlotOf(&CTreeNode::GetDisplayName), 4u);
    EXPECT_EQ(SlotOf(&CTreeNode::Copy), 5u);
    EXPECT_EQ(SlotOf(&CTreeNode::Clone), 6u);
    EXPECT_EQ(SlotOf(&CTreeNode::operator==), 7u);
    EXPECT_EQ(SlotOf(&TreeTraversalCallback::Visit), 0u);
}

TEST(TreeTest, LinksWithoutDraggingNeighboursAlong)
{
    TestTree tree("AB");
    tree.AddChild(nullptr, new TestNode('N'), 0);
    tree.AddChild(nullptr, new TestNode('M'), 1);
    EXPECT_EQ(tree.Text(), "NABM");
    CTreeNode* const a = tree.At('A');
    CTreeNode* const b = tree.At('B');
    CTreeNode* const r = new TestNode('R');
    tree.AddRight(a, r);
    EXPECT_TRUE(CTree::GetRight(a) == r && CTree::GetLeft(r) == a && CTree::GetLeft(b) == a);
    EXPECT_TRUE(CTree::GetRight(r) == nullptr && CTree::GetParent(r) == nullptr);
    r->SetRight(b);
    b->SetLeft(r);
    r->SetParent(tree.GetRoot());
    EXPECT_EQ(tree.Text(), "NARBM");
    CTreeNode* const s = new TestNode('S');
    tree.AddRight(a, s);
    s->SetParent(tree.GetRoot());
    r->SetLeft(nullptr);
    tree.AddChild(nullptr, new TestNode('C'), 1);
    EXPECT_EQ(tree.Text(), "NASC") << "the end is where the links lead, not where it was";
    tree.DeleteChilds(r);

    tree.AddChild(s, a, 1);
    tree.AddChild(a, s, 0);
    tree.AddChild(s, s, 0);
    EXPECT_EQ(tree.Text(), "NS(A)C") << "moved from its place, never below itself";
    tree.SetRoot(s);
    EXPECT_EQ(tree.Text(), "A");
    EXPECT_EQ(TestNode::alive, 2);
    tree.DeleteAll();
    EXPECT_TRUE(tree.IsEmpty() && tree.GetRoot() == s);
    EXPECT_EQ(tree.DeleteNode(s), nullptr);
    EXPECT_TRUE(tree.IsEmpty() && tree.GetRoot() == nullptr && TestNode::alive == 0);
}

TEST(TreeTest, CountsAndFollowsInPreOrder)
{
    const TestTree tree("A(B(C)D)E");
    EXPECT_EQ(tree.GetChildNbr(nullptr, 1), 2);
    EXPECT_EQ(tree.GetChildNbr(tree.At('A'), 0), 3);
    EXPECT_EQ(CTree::GetDepth(tree.At('C')), 3);
    EXPECT_EQ(Names(tree, 'A', '/'), "ABCDE");
    EXPECT_EQ(Names(tree, 'B', 'A'), "BCD") << "ends where it would climb to the stop";
    EXPECT_EQ(Names(tree, 'A', 'D'), "ABC") << "and where the stop would follow";
}

TEST(TreeTest, WalksAsTheModeTells)
{
    TestTree tree("A(B(C)D)E");
    const std::tuple<char, int, char, const char*> rows[] = {{'/', 0, 0, "A3B3C1B2D1A2E1"},
                                                             {'/', 1, 'D', "A3B3C1B2D1"},
                                                             {'A', 0, 0, "B3C1B2D1"},
                                                             {'C', 0, 0, ""},
                                                             {'/', 2, 0, "A3E1"},
                                                             {'A', 2, 0, "B3D1"},
                                                             {'C', 2, 0, ""},
                                                             {'B', 3, 0, "C1D1A2E1"},
                                                             {'C', 3, 0, "B2D1A2E1"},
                                                             {'C', 3, 'B', "B2"},
                                                             {'E', 3, 0, ""},
                                                             {'/', 3, 0, "A3B3C1B2D1A2E1"}};
    for (const auto& [start, mode, last, expected] : rows) {
        Recorder recorder(&tree, last);
        tree.DoTraversal(tree.At(start), TreeTraversalMode(mode), &recorder);
        EXPECT_EQ(recorder.m_seen, expected) << start << mode;
    }

    struct Pruner : Recorder
    {
        using Recorder::Recorder;
        int Visit(CTreeNode* node, int code) override
        {
            Recorder::Visit(node, code);
            if (code == vak::traversal::Leaving)
                static_cast<TestTree*>(GetTree())->DeleteChilds(CTree::GetChild(node));
            else if (node->GetDisplayName() == L"E")
                GetTree()->AddChild(node, new TestNode('F'), 1);
            return 1;
        }
    } pruner(&tree);
    tree.DoTraversal(nullptr, TreeTraversalBelow, &pruner);
    EXPECT_EQ(pruner.m_seen, "A3B3C1B2D1A2E1F1E2") << "the walk takes the links as the visitor leaves them";
    EXPECT_EQ(tree.Text(), "AE");
}

TEST(TreeTest, FindsWhatTheProbeTakesForItself)
{
    TestTree tree("A(B(C)D)E");
    const std::tuple<int, char, char, char> rows[] = {
        {0, '/', 'D', 'D'}, {0, 'A', 'C', 'C'}, {0, 'A', 'E', '/'}, {2, '/', 'E', 'E'}, {3, 'C', 'A', 'A'}};
    for (const auto& [mode, start, name, found] : rows) {
        const TestNode probe(name);
        EXPECT_EQ(tree.NodeExist(TreeTraversalMode(mode), tree.At(start), &probe), tree.At(found)) << name;
    }
    const CTreeNode anything;
    EXPECT_EQ(tree.NodeExist(TreeTraversalBelow, tree.At('B'), &anything), tree.GetRoot());
}

TEST(TreeTest, RemovesAndGivesTheNeighbour)
{
    TestTree tree("A(B(C)DF)E");
    for (const auto& [name, neighbour] : {std::tuple{'B', 'A'}, {'F', 'D'}, {'E', 'A'}})
        EXPECT_EQ(tree.DeleteNode(tree.At(name)), tree.At(neighbour)) << name;
    EXPECT_EQ(tree.Text(), "A(D)");
    CTreeNode* const a = tree.At('A');
    EXPECT_EQ(tree.RemoveNode(a), tree.GetRoot());
    EXPECT_EQ(CTree::GetParent(a), nullptr);
    tree.DeleteNode(a);
}

TEST(TreeTest, CopiesIntoItselfAndNothingWhenACopyFails)
{
    TestTree tree("A(BX(C))");
    tree.At('A')->SetFlag(TreeNodeFlagExpanded, 1);
    EXPECT_EQ(tree.CopyNode(tree.At('A'), nullptr, 0)->GetFlags(), unsigned{TreeNodeFlagExpanded});
    tree.CopyChilds(tree.At('A'), tree.At('A'));
    EXPECT_EQ(tree.Text(), "A(BX(C)BX(C))A");
    tree.CloneNode(tree.At('A'), tree.GetRoot(), 1);
    EXPECT_EQ(tree.Text(), "A(BX(C)BX(C))Aa(bb)") << "what has no clone is left out";
    EXPECT_EQ(tree.CloneNode(tree.At('A'), nullptr, 1), nullptr);
    for (const int failAt : {1, 2, 5, 7}) {
        TestNode::failAt = failAt;
        EXPECT_THROW(
            try { tree.CopyNode(tree.At('A'), tree.At('C'), failAt > 1); } catch (CMemoryException*) {
                throw 0;
            },
            int);
    }
    tree.CopyNode(tree.At('A'), tree.At('C'), 1);
    EXPECT_EQ(tree.Text(), "A(BX(C(A(BX(C)BX(C))))BX(C))Aa(bb)");
    EXPECT_EQ(TestNode::alive, 18);
}
