#include "core/CustomData.h"
#include "framework/base/Archive.h"
#include "framework/base/Exception.h"
#include "framework/base/MemFile.h"
#include "framework/base/StringArray.h"
#include "fuzz/support/Target.h"

#include <vector>

using vak::fuzz::Require;

namespace {

bool Load(CCustomData& store, CFile& file)
{
    CArchive archive(&file, CArchive::load | CArchive::bNoFlushOnDelete);
    try {
        store.Serialize(archive);
        return true;
    } catch (CException* e) {
        e->Delete();
    }
    Require(!store.HasData());
    return false;
}

/// Reads a value in every way; nested stores are opened no deeper than `depth`.
void ReadEveryWay(const CCustomData& store, unsigned int id, int depth)
{
    int number = 0;
    double wide = 0;
    CString text;
    CStringA narrow;
    CStringArray texts;
    store.GetInt(id, number, 0);
    store.GetDouble(id, wide, 0);
    store.GetString(id, text, L"");
    store.GetStringA(id, narrow, "");
    Require(store.GetStringArray(id, texts) == texts.GetSize());
    std::vector<char> bytes(store.GetDataSize(id) + 1);
    store.GetBinary(id, bytes.data(), store.GetDataSize(id));
    CCustomData nested;
    if (depth == 0 || !store.GetCustomData(id, nested))
        return;
    for (unsigned int inner = 0; inner < 4; ++inner)
        ReadEveryWay(nested, inner, depth - 1);
}

void Run(const std::uint8_t* data, std::size_t size)
{
    // The first byte chooses between the archive forms, a nested store (raw, or a chain) and an image.
    const std::vector<BYTE> bytes(data + (size != 0), data + size);
    const unsigned int length = static_cast<unsigned int>(bytes.size());
    CCustomData store;
    if (size == 0 || data[0] % 4 == 0) {
        CMemFile file(const_cast<BYTE*>(bytes.data()), length);
        Load(store, file);
    } else if (data[0] % 4 == 1) {
        CCustomData outer;
        outer.SetBinary(1, bytes.data(), length);
        outer.GetCustomData(1, store);
    } else if (data[0] % 4 == 2) {
        store.SetData(bytes.data(), length);
    } else {
        struct Untyped : CCustomData
        {
            using CCustomData::m_stringMode;
            using CCustomData::SetCustom;
        } outer;
        outer.SetCustom(1, bytes.data(), length, vak::kind::Untyped);
        outer.m_stringMode = 2;
        outer.GetCustomData(1, store);
    }
    for (unsigned int id = 0; id < 8; ++id)
        ReadEveryWay(store, id, 2);

    CMemFile stored;
    CArchive archive(&stored, CArchive::store);
    store.Serialize(archive);
    archive.Close();
    stored.SeekToBegin();
    CCustomData again;
    Require(Load(again, stored));
    unsigned int imageSize = 0;
    store.GetData(imageSize);
    unsigned int sizeAgain = 0;
    again.GetData(sizeAgain);
    // Entries without a single byte are not stored.
    Require(sizeAgain == imageSize || sizeAgain == 0);
    CCustomData merged(store);
    merged.Copy(&again, 2);
    merged.ChangeID(1, 2);
    merged.SetInt(3, 1);
    merged.IsEqual(again);
}

const vak::fuzz::Target target("StoreRaw", Run);

} // namespace
