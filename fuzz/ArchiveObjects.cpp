// Strings, counts, lines, classes and objects from arbitrary bytes. What loads whole is stored, and what was
// stored loads again and stores the same bytes.
#include "framework/base/Archive.h"
#include "framework/base/MemFile.h"
#include "fuzz/support/Archived.h"
#include "fuzz/support/Target.h"

#include <set>
#include <string>
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
    CMemFile file;
    CArchive archive(&file, CArchive::store, 128);
    for (const FuzzNode* node : nodes)
        archive << node;
    archive.Close();
    std::string bytes(std::size_t(file.GetLength()), '\0');
    file.SeekToBegin();
    file.Read(bytes.data(), UINT(bytes.size()));
    return bytes;
}

std::vector<FuzzNode*> Load(std::string bytes, std::size_t count)
{
    CMemFile file(reinterpret_cast<BYTE*>(bytes.data()), UINT(bytes.size()));
    CArchive archive(&file, CArchive::load, 128);
    std::vector<FuzzNode*> nodes(count);
    for (FuzzNode*& node : nodes)
        archive >> node;
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
    std::vector<BYTE> bytes(data + 1, data + size);
    CMemFile known(bytes.data(), UINT(bytes.size()));
    vak::fuzz::LengthlessFile unknown(bytes.data(), UINT(bytes.size()));
    CArchive archive((data[0] & 1) != 0 ? &unknown : &known, CArchive::load, (data[0] & 2) != 0 ? 128 : 4096);
    std::vector<FuzzNode*> nodes;
    try {
        for (;;)
            ReadNext(archive, nodes);
    } catch (CArchiveException* exception) {
        exception->Delete();
    }
    const std::string stored = Store(nodes);
    vak::fuzz::Require(Store(Load(stored, nodes.size())) == stored);
    while (!FuzzNode::alive.empty())
        delete *FuzzNode::alive.begin();
}

const vak::fuzz::Target archiveObjects("ArchiveObjects", RunArchiveObjects);

} // namespace
