#include "framework/base/Exception.h"
#include "tests/core/TestNode.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/MessageRecorder.h"

#include <tuple>

using vak::test::Hex;
using vak::test::IsRefused;
using vak::test::MessageRecorder;
using vak::test::ReadCause;
using vak::test::StoredBytes;

class FirstSchemaNode : public CTreeNode
{
    DECLARE_SERIAL(FirstSchemaNode)
};

IMPLEMENT_SERIAL(FirstSchemaNode, CTreeNode, 1)

namespace {

const std::string kTree = Hex("FF FF 02 00 05 00") + "CTree";
const std::string kNewNode = Hex("03 00 00 00 FF FF 02 00 08 00") + "TestNode";
const std::string kNode = Hex("03 00 00 00 02 80");

std::string Tag(char tag)
{
    return {tag, 0, 0, 0};
}

/// The node's own form: version, flags, and a store with the name under 1.
std::string Form(char name)
{
    return Hex("02 00 00 00 00 00 00 00 34 53 55 43 24 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00"
               "00 00 00 00 00 00 00 00 01 00 00 00 04 00 00 00 54 4E 49 20") +
           Tag(name);
}

/// A(BC)D.
std::string Example()
{
    return kTree + Tag(4) + Tag(1) + kNewNode + Form('A') + Tag(1) + kNode + Form('B') + Tag(2) + kNode +
           Form('C') + Tag(2) + Tag(0) + kNode + Form('D') + Tag(2) + Tag(0) + Tag(0);
}

} // namespace

TEST(TreeArchiveTest, WritesAndReadsTheDocumentedBytes)
{
    TestTree tree("A(BC)D");
    EXPECT_EQ(StoredBytes(tree), Example());
    TestTree other("X(Y)");
    EXPECT_EQ(ReadCause(other, Example()), -1);
    EXPECT_EQ(other.Text(), "A(BC)D");
    EXPECT_EQ(TestNode::alive, 8) << "what was there is deleted first";
    other.AddChild(other['A'], new TestNode('E'), 1);
    EXPECT_EQ(other.Text(), "A(BCE)D");

    TestTree part;
    vak::test::Load(vak::test::Stored([&](CArchive& archive) { tree.NodeSerialize(tree['B'], archive); }),
                    [&](CArchive& archive) { part.NodeSerialize(part.GetRoot(), archive); });
    EXPECT_EQ(part.Text(), "BC") << "a chain without the root goes below the given node";
    TestNode::failAt = 1;
    EXPECT_TRUE(IsRefused<CMemoryException>(
        [&] { vak::test::Stored([&](CArchive& archive) { tree.NodeSerialize(tree['B'], archive); }); }));
}

TEST(TreeArchiveTest, ReadsFlagsAloneOfNodesOfTheFirstSchema)
{
    TestTree tree;
    tree.SetSilent(1);
    ASSERT_EQ(ReadCause(tree, kTree + Tag(4) + Tag(1) + Tag(3) + Hex("FF FF 01 00 09 00") + "CTreeNode" +
                                  Tag(7) + Tag(2) + kNode + Tag(8) + Tag(2) + Tag(0) + Tag(0)),
              -1);
    const CTreeNode* const first = tree.GetFirstNode(nullptr);
    EXPECT_EQ(first->GetFlags(), 7u);
    EXPECT_EQ(CTree::GetConstRight(first)->GetFlags(), 8u) << "its class record is only a reference";
    tree.AddChild(nullptr, new FirstSchemaNode, 0);
    EXPECT_EQ(vak::test::ArchiveCause([&] { StoredBytes(tree); }), CArchiveException::badSchema);
    EXPECT_FALSE(first->GetCustomData().HasData() || CTree::GetConstRight(first)->GetCustomData().HasData());
}

TEST(TreeArchiveTest, LeavesNothingOfADamagedArchive)
{
    const std::string node = kTree + Tag(4) + Tag(1) + kNewNode + Form('A');
    const std::tuple<const char*, int, std::string> rows[] = {
        {"schema of the tree", CArchiveException::badSchema, Hex("FF FF 01 00 05 00") + "CTree" + Tag(4)},
        {"unknown tag", CArchiveException::badIndex, node + Tag(2) + Tag(5)},
        {"no word about children", CArchiveException::badIndex, node + Tag(0)},
        {"children without a node", CArchiveException::badIndex, node + Tag(2) + Tag(1)},
        {"root below the root", CArchiveException::badIndex, kTree + Tag(4) + Tag(1) + Tag(4)},
        {"root twice", CArchiveException::badIndex, kTree + Tag(4) + Tag(2) + Tag(4)},
        {"class that is no node", CArchiveException::badClass, node + Tag(2) + Tag(3) + Hex("01 80")},
    };
    TestTree tree("X");
    tree.SetSilent(1);
    for (const auto& [what, cause, bytes] : rows) {
        EXPECT_EQ(ReadCause(tree, bytes), cause) << what;
        EXPECT_TRUE(tree.IsEmpty() && tree.GetRoot() != nullptr && TestNode::alive == 0) << what;
    }
    for (std::size_t length = 0; length < Example().size(); ++length) {
        TestNode::failAt = int(length % 5);
        // The store throws its own exception, and there may be no memory.
        EXPECT_TRUE(IsRefused<CException>([&] {
            if (ReadCause(tree, Example().substr(0, length)) != -1)
                AfxThrowUserException();
        })) << length;
        EXPECT_TRUE(tree.IsEmpty() && TestNode::alive == 0) << length;
    }
    TestNode::failAt = 0;
}

TEST(TreeArchiveTest, TellsTheUserUnlessSilent)
{
    MessageRecorder recorder;
    CTree rootless;
    EXPECT_EQ(ReadCause(rootless, Example()), CArchiveException::genericException);
    EXPECT_EQ(recorder.Boxes().size(), 1u);
    rootless.SetSilent(1);
    EXPECT_EQ(ReadCause(rootless, Example()), CArchiveException::genericException);
    EXPECT_EQ(recorder.Boxes().size(), 1u);
}

TEST(TreeArchiveTest, StandsAMillionLevels)
{
    constexpr int kLevels = 1000000;
    TestTree tree;
    CTreeNode* last = tree.GetRoot();
    for (int level = 0; level < kLevels; ++level) {
        auto* const node = new CTreeNode;
        tree.AddChild(last, node, 1);
        last = node;
    }
    TestTree other;
    ASSERT_EQ(ReadCause(other, StoredBytes(tree, 1 << 24)), -1);
    EXPECT_EQ(other.GetChildNbr(nullptr, 0), kLevels);
    tree.DeleteAll();
    EXPECT_NE(tree.CopyNode(other.GetFirstNode(nullptr), nullptr, 1), nullptr);
    EXPECT_EQ(tree.GetChildNbr(nullptr, 0), kLevels);
    const TestNode probe('-');
    EXPECT_EQ(tree.NodeExist(TreeTraversalBelow, nullptr, &probe), nullptr);
}
