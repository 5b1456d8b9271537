#include "framework/base/Archive.h"

#include "tests/support/ArchiveBytes.h"

#include <array>
#include <memory>
#include <set>

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

int NodeCause(const std::string& bytes)
{
    return LoadCause(bytes, [](CArchive& archive) {
        TestNode* node = nullptr;
        archive >> node;
        delete node;
    });
}

} // namespace

TEST(RuntimeClass, KnowsItsBasesAndCreatesByName)
{
    const std::unique_ptr<CObject> leaf(CRuntimeClass::CreateObject("TestLeaf"));
    ASSERT_NE(leaf, nullptr);
    EXPECT_TRUE(leaf->IsKindOf(RUNTIME_CLASS(TestLeaf)) && leaf->IsKindOf(RUNTIME_CLASS(TestNode)));
    EXPECT_TRUE(leaf->IsKindOf(RUNTIME_CLASS(CObject)) && leaf->IsSerializable());
    EXPECT_FALSE(RUNTIME_CLASS(TestNode)->IsDerivedFrom(RUNTIME_CLASS(TestLeaf)));
    const std::unique_ptr<CObject> mute(RUNTIME_CLASS(TestMute)->CreateObject());
    EXPECT_FALSE(mute->IsSerializable());
    EXPECT_EQ(RUNTIME_CLASS(CObject)->CreateObject(), nullptr);
    // A class that does not serialise cannot be called up by what stands in a file.
    EXPECT_EQ(CRuntimeClass::FromName("TestMute"), nullptr);
    EXPECT_EQ(CRuntimeClass::FromName("testnode"), nullptr);
}

TEST(RuntimeClass, OfOneNameTheLatestAnswersUntilItsModuleGoes)
{
    CRuntimeClass* const own = CRuntimeClass::FromName("TestNode");
    CRuntimeClass plugin = *own;
    CRuntimeClass later = *own;
    auto first = std::make_unique<vak::detail::ClassRegistration>(&plugin);
    const auto second = std::make_unique<vak::detail::ClassRegistration>(&later);
    first.reset();
    EXPECT_EQ(CRuntimeClass::FromName("TestNode"), &later);
    first = std::make_unique<vak::detail::ClassRegistration>(&plugin);
    EXPECT_EQ(CRuntimeClass::FromName("TestNode"), &plugin);
    first.reset();
    EXPECT_EQ(CRuntimeClass::FromName("TestNode"), &later);
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
    Load(golden, [](CArchive& archive) {
        TestNode* read[4];
        for (TestNode*& node : read)
            archive >> node;
        const std::unique_ptr<TestNode> owners[] = {std::unique_ptr<TestNode>(read[0]),
                                                    std::unique_ptr<TestNode>(read[0]->m_left),
                                                    std::unique_ptr<TestNode>(read[1])};
        EXPECT_TRUE(read[0]->m_name == L"root" && read[1]->m_name == L"again");
        EXPECT_EQ(read[0]->m_right, read[0]);
        EXPECT_EQ(read[0]->m_left->m_left, read[0]);
        EXPECT_EQ(read[1]->m_left, read[0]->m_left);
        EXPECT_EQ(read[2], nullptr);
        EXPECT_EQ(read[3], read[1]);
        ASSERT_TRUE(read[0]->m_left->IsKindOf(RUNTIME_CLASS(TestLeaf)));
        EXPECT_EQ(static_cast<TestLeaf*>(read[0]->m_left)->m_value, 77);
        EXPECT_EQ(read[0]->m_schema, 2u);
        EXPECT_EQ(read[0]->m_left->m_schema, 1u);
        EXPECT_EQ(read[1]->m_schema, 2u);
        EXPECT_EQ(read[1]->m_secondAnswer, UINT(-1));
    });
    EXPECT_EQ(TestNode::alive.size(), 3u);
}

TEST(ArchiveObjects, OlderSchemasReachOnlyVersionableClasses)
{
    const std::string oldNode = Hex("FFFF 0100 0800") + "TestNode" + kNoName + kNull + kNull;
    const std::string oldLeaf = Hex("FFFF 0000 0800") + "TestLeaf" + kNoName + kNull + kNull + "1234";
    Load(oldNode, [](CArchive& archive) {
        TestNode* node;
        archive >> node;
        EXPECT_EQ(std::unique_ptr<TestNode>(node)->m_schema, 1u);
    });
    EXPECT_EQ(NodeCause(oldLeaf), CArchiveException::badSchema);
    Load(oldNode, [](CArchive& archive) {
        archive.SerializeClass(RUNTIME_CLASS(TestNode));
        EXPECT_EQ(archive.GetObjectSchema(), 1u);
        EXPECT_EQ(archive.GetObjectSchema(), UINT(-1));
    });
}

TEST(ArchiveObjects, DamagedRecordsEndInTheirExceptionWithoutALeak)
{
    const std::string inNode = kNodeClass + kNoName;
    const struct
    {
        const char* name;
        std::string bytes;
        int cause;
    } rows[] = {
        {"nothing", "", CArchiveException::endOfFile},
        {"name cut", kNodeClass.substr(0, 10), CArchiveException::endOfFile},
        {"unknown class", Hex("FFFF 0200 0800") + "TestGone" + kNoName, CArchiveException::badClass},
        {"name with a zero inside", Hex("FFFF 0200 0A00") + std::string("TestNode\0x", 10),
         CArchiveException::badClass},
        {"endless name", Hex("FFFF 0200 FFFF") + std::string(70000, 'x'), CArchiveException::badClass},
        {"class that does not serialise", Hex("FFFF FFFF 0800") + "TestMute", CArchiveException::badClass},
        {"reference to nothing", Reference(1), CArchiveException::badIndex},
        {"class reference to nothing", Reference(0x8001), CArchiveException::badIndex},
        {"class zero", Reference(0x8000), CArchiveException::badIndex},
        {"big reference to nothing", Hex("FF7F FFFFFF7F"), CArchiveException::badIndex},
        {"big class reference to nothing", Hex("FF7F FFFFFFFF"), CArchiveException::badIndex},
        {"object reference to a class", inNode + Reference(1), CArchiveException::badIndex},
        {"class reference to an object", inNode + Reference(0x8002), CArchiveException::badIndex},
        {"second reference missing", inNode + kNull, CArchiveException::endOfFile},
        {"child cut", inNode + Reference(0x8001) + kNoName + kNull, CArchiveException::endOfFile},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(NodeCause(row.bytes), row.cause) << row.name;
        EXPECT_EQ(TestNode::alive.size(), 0u) << row.name;
    }
}

TEST(ArchiveObjects, AnObjectOfAnotherClassIsNeverHandedOut)
{
    const std::string node = kNodeClass + kNoName + kNull + kNull;
    TestLeaf* leaf = nullptr;
    EXPECT_EQ(LoadCause(node, [&](CArchive& archive) { archive >> leaf; }), CArchiveException::badClass);
    std::unique_ptr<TestNode> owner;
    EXPECT_EQ(LoadCause(node + Reference(2),
                        [&](CArchive& archive) {
                            TestNode* read;
                            archive >> read;
                            owner.reset(read);
                            archive >> leaf;
                        }),
              CArchiveException::badClass);
    EXPECT_NE(owner, nullptr);
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
    for (TestNode* node : left) {
        EXPECT_TRUE(node->m_left == nullptr || left.contains(node->m_left));
        delete node;
    }
}

TEST(ArchiveObjects, MappedObjectsAreReferredToFromBothSides)
{
    TestNode owner;
    TestNode child;
    child.m_left = &owner;
    const std::string bytes = Stored([&](CArchive& archive) {
        archive.MapObject(&owner);
        archive << &child;
    });
    EXPECT_EQ(bytes, kNodeClass + Hex("FF FEFF") + kNoName + Reference(1) + kNull);
    Load(bytes, [&](CArchive& archive) {
        archive.MapObject(&owner);
        TestNode* read;
        archive >> read;
        EXPECT_EQ(std::unique_ptr<TestNode>(read)->m_left, &owner);
    });
}

TEST(ArchiveObjects, NumbersBeyondFifteenBitsTakeTheLongForm)
{
    TestNode mapped;
    TestNode nodes[3];
    nodes[1].m_left = &nodes[0];
    nodes[1].m_right = &mapped;
    const auto map = [&](CArchive& archive) {
        for (int i = 0; i < 0x7FFD; ++i)
            archive.MapObject(nullptr);
        archive.MapObject(&mapped);
    };
    const std::string bytes = Stored([&](CArchive& archive) {
        map(archive);
        archive << &nodes[0] << &nodes[1];
    });
    const std::string noName = Hex("FF FEFF 00");
    EXPECT_EQ(bytes, kNodeClass + noName + kNull + kNull + Hex("FF7F FF7F0080") + noName +
                         Hex("FF7F 00800000") + Hex("FE7F"));
    Load(bytes, [&](CArchive& archive) {
        map(archive);
        TestNode* read[2];
        archive >> read[0] >> read[1];
        const std::unique_ptr<TestNode> owners[] = {std::unique_ptr<TestNode>(read[0]),
                                                    std::unique_ptr<TestNode>(read[1])};
        EXPECT_EQ(read[1]->m_left, read[0]);
        EXPECT_EQ(read[1]->m_right, &mapped);
    });
}

TEST(ArchiveObjects, NestingIsBoundedOnBothSides)
{
    auto chain = std::make_unique<std::array<TestNode, CArchive::kMaxObjectNesting + 1>>();
    for (std::size_t i = 0; i + 1 < chain->size(); ++i)
        (*chain)[i].m_left = &(*chain)[i + 1];
    const auto store = [&](const TestNode& from) {
        return Stored([&](CArchive& archive) { archive << &from; });
    };
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
