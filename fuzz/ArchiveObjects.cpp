// Strings, counts, lines, classes and objects from arbitrary bytes. What loads whole is stored, and what was
// stored loads again and stores the same bytes.
#include "fuzz/support/Target.h"
#include "tests/support/Archived.h"

#include <set>
#include <vector>

class FuzzNode : public CObject
{
    DECLARE_SERIAL(FuzzNode)

public:
    FuzzNode() { alive.insert(this); }
    ~FuzzNode() override { alive.erase(this); }

    void Serialize(CArchive& archive) override
    {
        if (archive.IsStoring()) {
            archive << m_name << m_next << m_other;
            return;
        }
        if (archive.GetObjectSchema() > 2)
            AfxThrowArchiveException(CArchiveException::badSchema);
        archive >> m_name >> m_next >> m_other;
    }

    /// References may make any shape, so nobody owns through them: the run frees what is left.
    static inline std::set<FuzzNode*> alive;

private:
    CString m_name;
    FuzzNode* m_next = nullptr;
    FuzzNode* m_other = nullptr;
};

class FuzzLeaf : public FuzzNode
{
    DECLARE_SERIAL(FuzzLeaf)
};

IMPLEMENT_SERIAL(FuzzNode, CObject, VERSIONABLE_SCHEMA | 2)
IMPLEMENT_SERIAL(FuzzLeaf, FuzzNode, 1)

namespace {

std::string Store(const std::vector<FuzzNode*>& nodes)
{
    const auto write = [&](CArchive& archive) {
        for (const FuzzNode* node : nodes)
            archive << node;
    };
    return vak::test::Stored(write, 128);
}

std::vector<FuzzNode*> Load(const std::string& bytes, std::size_t count)
{
    std::vector<FuzzNode*> nodes(count);
    const auto read = [&](CArchive& archive) {
        for (FuzzNode*& node : nodes)
            archive >> node;
    };
    vak::test::Load(bytes, read, 128);
    return nodes;
}

template <class Node>
Node* Next(CArchive& archive)
{
    Node* node = nullptr;
    archive >> node;
    return node;
}

/// Reads what the next byte asks for.
void ReadNext(CArchive& archive, std::vector<FuzzNode*>& nodes)
{
    BYTE what;
    archive >> what;
    CString wide;
    CStringA narrow;
    wchar_t text[17];
    if (what % 10 == 0)
        archive >> wide;
    else if (what % 10 == 1)
        archive >> narrow;
    else if (what % 10 == 2)
        archive.ReadString(wide);
    else if (what % 10 == 3)
        archive.ReadString(text, 16);
    else if (what % 10 == 4)
        vak::detail::ReadArchiveBytes(archive, archive.ReadCount());
    else if (what % 10 == 5)
        archive.MapObject(nullptr);
    else if (what % 10 == 6)
        archive.ReadClass(RUNTIME_CLASS(FuzzNode));
    else if (what % 10 == 7)
        nodes.emplace_back(Next<FuzzLeaf>(archive));
    else if (what % 10 == 8)
        archive.Flush();
    else
        nodes.push_back(Next<FuzzNode>(archive));
}

void RunArchiveObjects(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return;
    const std::string bytes(data + 1, data + size);
    const int bufferSize = (data[0] & 2) != 0 ? 128 : 4096;
    std::vector<FuzzNode*> nodes;
    const auto readOn = [&](CArchive& archive) {
        for (;;)
            ReadNext(archive, nodes);
    };
    vak::test::IsRefused<CArchiveException>([&] {
        if ((data[0] & 1) != 0)
            vak::test::Load<vak::test::LengthlessFile>(bytes, readOn, bufferSize);
        else
            vak::test::Load(bytes, readOn, bufferSize);
    });
    const std::string stored = Store(nodes);
    vak::fuzz::Require(Store(Load(stored, nodes.size())) == stored);
    while (!FuzzNode::alive.empty())
        delete *FuzzNode::alive.begin();
}

const vak::fuzz::Target archiveObjects("ArchiveObjects", RunArchiveObjects);

} // namespace
