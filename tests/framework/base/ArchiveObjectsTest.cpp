#include "framework/base/Archive.h"

#include "tests/support/ArchiveBytes.h"

#include <array>
#include <memory>
#include <set>
#include <tuple>
#include <vector>

using namespace vak::test;

/// A named object that refers to two others and owns neither.
class TestNode : public CObject
{
    DECLARE_SERIAL(TestNode)

public:
    TestNode() { alive.insert(this); }
    explicit TestNode(const wchar_t* name) : TestNode() { m_name = name; }
    ~TestNode() override { alive.erase(this); }

    void Serialize(CArchive& archive) override
    {
        if (archive.IsStoring()) {
            archive << m_name << m_left << m_right;
            return;
        }
        m_schema = archive.GetObjectSchema();
        m_secondAnswer = archive.GetObjectSchema();
        archive >> m_name >> m_left >> m_right;
    }

    CString m_name;
    TestNode* m_left = nullptr;
    TestNode* m_right = nullptr;
    UINT m_schema = 0;
    UINT m_secondAnswer = 0;
    static inline std::set<TestNode*> alive;
};

class TestLeaf : public TestNode
{
    DECLARE_SERIAL(TestLeaf)

public:
    void Serialize(CArchive& archive) override
    {
        TestNode::Serialize(archive);
        if (archive.IsStoring())
            archive << m_value;
        else
            archive >> m_value;
    }
    LONG m_value = 0;
};

class TestMute : public CObject
{
    DECLARE_DYNCREATE(TestMute)
};

IMPLEMENT_SERIAL(TestNode, CObject, VERSIONABLE_SCHEMA | 2)
IMPLEMENT_SERIAL(TestLeaf, TestNode, 1)
IMPLEMENT_DYNCREATE(TestMute, CObject)

namespace {

const std::string kNodeClass = Hex("FFFF 0200 0800") + "TestNode";
const std::string kLeafClass = Hex("FFFF 0100 0800") + "TestLeaf";
const std::string kNoName = Hex("00");
const std::string kNull = Hex("0000");

std::string Reference(int number)
{
    return {char(number), char(number >> 8)};
}

/// The nodes that `bytes` hold, each deleted at the end; `prepare(archive)` comes before them.
template <std::size_t count>
using Nodes = std::array<std::unique_ptr<TestNode>, count>;
template <std::size_t count, class Prepare>
Nodes<count> LoadNodes(std::string_view bytes, Prepare prepare)
{
    Nodes<count> nodes;
    Load(bytes, [&](CArchive& archive) {
        prepare(archive);
        for (auto& node : nodes) {
            TestNode* read;
            archive >> read;
            node.reset(read);
        }
    });
    return nodes;
}

int NodeCause(const std::string& bytes)
{
    return LoadCause(bytes, [](CArchive& archive) {
        TestNode* node = nullptr;
        archive >> node;
        delete node;
    });
}

} // namespace

TEST(RuntimeClass, OfOneNameTheLatestAnswersUntilItsModuleGoes)
{
    CRuntimeClass plugin = *RUNTIME_CLASS(TestNode);
    CRuntimeClass later = plugin;
    auto first = std::make_unique<vak::detail::ClassRegistration>(&plugin);
    auto second = std::make_unique<vak::detail::ClassRegistration>(&later);
    EXPECT_EQ(CRuntimeClass::FromName("TestNode"), &later);
    first.reset();
    EXPECT_EQ(CRuntimeClass::FromName("TestNode"), &later);
    second.reset();
    EXPECT_EQ(CRuntimeClass::FromName("TestNode"), RUNTIME_CLASS(TestNode));
    EXPECT_NE(CRuntimeClass::FromName("TestLeaf"), nullptr);
}

TEST(ArchiveObjects, GraphsHaveThePublishedBytesAndKeepTheirShape)
{
    const std::string golden = Data("archive/objects.bin");
    TestNode root(L"root");
    TestNode again(L"again");
    TestLeaf leaf;
    leaf.m_name = L"leaf";
    leaf.m_value = 77;
    root.m_left = &leaf;
    leaf.m_left = root.m_right = &root;
    again.m_left = &leaf;
    EXPECT_EQ(Stored([&](CArchive& archive) {
                  archive << &root << &again << static_cast<CObject*>(nullptr) << &again;
              }),
              golden);
    auto read = LoadNodes<4>(golden, [](CArchive&) {});
    EXPECT_EQ(read[3].release(), read[1].get());
    const std::unique_ptr<TestNode> child(read[0]->m_left);
    EXPECT_TRUE(read[0]->m_name == L"root" && read[1]->m_name == L"again" && read[2] == nullptr);
    EXPECT_TRUE(read[0]->m_right == read[0].get() && child->m_left == read[0].get());
    EXPECT_EQ(read[1]->m_left, child.get());
    ASSERT_TRUE(child->IsKindOf(RUNTIME_CLASS(TestLeaf)));
    EXPECT_EQ(static_cast<TestLeaf*>(child.get())->m_value, 77);
    EXPECT_TRUE(read[0]->m_schema == 2 && child->m_schema == 1 && read[1]->m_schema == 2);
    EXPECT_EQ(read[1]->m_secondAnswer, UINT(-1));
}

TEST(ArchiveObjects, OlderSchemasReachOnlyVersionableClasses)
{
    const std::string oldNode = Hex("FFFF 0100 0800") + "TestNode" + kNoName + kNull + kNull;
    const std::string oldLeaf = Hex("FFFF 0000 0800") + "TestLeaf" + kNoName + kNull + kNull + "1234";
    EXPECT_EQ(LoadNodes<1>(oldNode, [](CArchive&) {})[0]->m_schema, 1u);
    EXPECT_EQ(NodeCause(oldLeaf), CArchiveException::badSchema);
    Load(oldNode, [](CArchive& archive) {
        archive.SerializeClass(RUNTIME_CLASS(TestNode));
        EXPECT_EQ(archive.GetObjectSchema(), 1u);
    });
}

TEST(ArchiveObjects, DamagedRecordsEndInTheirExceptionWithoutALeak)
{
    const std::string inNode = kNodeClass + kNoName;
    using E = CArchiveException;
    const std::tuple<const char*, std::string, int> rows[] = {
        {"nothing", "", E::endOfFile},
        {"unknown class", Hex("FFFF 0200 0800") + "TestGone" + kNoName, E::badClass},
        {"name with a zero inside", Hex("FFFF 0200 0A00") + std::string("TestNode\0x", 10), E::badClass},
        {"endless name", Hex("FFFF 0200 FFFF") + std::string(70000, 'x'), E::badClass},
        {"class that does not serialise", Hex("FFFF FFFF 0800") + "TestMute", E::badClass},
        {"reference to nothing", Reference(1), E::badIndex},
        {"class reference to nothing", Reference(0x8001), E::badIndex},
        {"big reference to nothing", Hex("FF7F FFFFFF7F"), E::badIndex},
        {"object reference to a class", inNode + Reference(1), E::badIndex},
        {"class reference to an object", inNode + Reference(0x8002), E::badIndex},
        {"child cut", inNode + Reference(0x8001) + kNoName + kNull, E::endOfFile},
    };
    for (const auto& [name, bytes, cause] : rows) {
        EXPECT_EQ(NodeCause(bytes), cause) << name;
        EXPECT_EQ(TestNode::alive.size(), 0u) << name;
    }
}

TEST(ArchiveObjects, AnObjectOfAnotherClassIsNeverHandedOut)
{
    const std::string node = kNodeClass + kNoName + kNull + kNull;
    TestLeaf* leaf = nullptr;
    EXPECT_EQ(LoadCause(node, [&](CArchive& archive) { archive >> leaf; }), CArchiveException::badClass);
    TestNode outside;
    EXPECT_EQ(LoadCause(Reference(1),
                        [&](CArchive& archive) {
                            archive.MapObject(&outside);
                            archive >> leaf;
                        }),
              CArchiveException::badClass);
    EXPECT_EQ(leaf, nullptr);
    EXPECT_THROW(Load(node, [](CArchive& archive) { archive.ReadObject(RUNTIME_CLASS(TestMute)); }),
                 CNotSupportedException*);
    TestMute mute;
    EXPECT_THROW(Stored([&](CArchive& archive) { archive << &mute; }), CNotSupportedException*);
}

TEST(ArchiveObjects, AnObjectThatOthersMayKnowSurvivesItsFailure)
{
    // The child keeps a reference to its parent, which then fails: who frees what is the classes' own secret.
    EXPECT_EQ(NodeCause(kNodeClass + kNoName + Reference(0x8001) + kNoName + Reference(2) + kNull),
              CArchiveException::endOfFile);
    ASSERT_EQ(TestNode::alive.size(), 2u);
    const std::set<TestNode*> left = TestNode::alive;
    for (TestNode* node : left)
        delete node;
}

TEST(ArchiveObjects, MappedObjectsAreReferredToAndNumbersBeyondFifteenBitsTakeTheLongForm)
{
    const std::vector<TestMute> others(0x7FFD);
    TestNode mapped;
    TestNode nodes[2];
    nodes[1].m_left = &nodes[0];
    nodes[1].m_right = &mapped;
    const auto map = [&](CArchive& archive) {
        for (const TestMute& other : others)
            archive.MapObject(&other);
        archive.MapObject(nullptr); // takes no number
        archive.MapObject(&mapped);
    };
    const std::string bytes = Stored([&](CArchive& archive) {
        map(archive);
        archive << &nodes[0] << &nodes[1];
    });
    const std::string noName = Hex("FF FEFF 00");
    EXPECT_EQ(bytes, kNodeClass + noName + kNull + kNull + Hex("FF7F FF7F0080") + noName +
                         Hex("FF7F 00800000") + Hex("FE7F"));
    const auto read = LoadNodes<2>(bytes, map);
    EXPECT_EQ(read[1]->m_left, read[0].get());
    EXPECT_EQ(read[1]->m_right, &mapped);
}

TEST(ArchiveObjects, NestingIsBoundedOnBothSides)
{
    auto chain = std::make_unique<std::array<TestNode, CArchive::kMaxObjectNesting + 1>>();
    for (std::size_t i = 0; i + 1 < chain->size(); ++i)
        (*chain)[i].m_left = &(*chain)[i + 1];
    const auto store = [&](const TestNode& from) { return Stored([&](CArchive& ar) { ar << &from; }); };
    EXPECT_EQ(ArchiveCause([&] { store((*chain)[0]); }), CArchiveException::genericException);
    const std::string deepest = store((*chain)[1]);
    chain.reset();
    Load(deepest, [](CArchive& archive) {
        TestNode* node;
        archive >> node;
        EXPECT_EQ(TestNode::alive.size(), std::size_t(CArchive::kMaxObjectNesting));
        while (node != nullptr)
            delete std::exchange(node, node->m_left);
    });
    std::string bomb = kNodeClass;
    for (int i = 0; i < 100000; ++i)
        bomb += kNoName + Reference(0x8001);
    EXPECT_EQ(NodeCause(bomb), CArchiveException::genericException);
    EXPECT_EQ(TestNode::alive.size(), 0u);
}
