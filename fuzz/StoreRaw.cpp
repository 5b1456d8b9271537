#include "core/CustomData.h"
#include "framework/base/StringArray.h"
#include "fuzz/support/Target.h"
#include "tests/support/Archived.h"

#include <vector>

using vak::fuzz::Require;

namespace {

struct OpenStore : CCustomData
{
    using CCustomData::m_stringMode;
    using CCustomData::SetCustom;
};

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
    const int way = size == 0 ? 0 : data[0] % 4;
    const std::vector<char> bytes(data + (size != 0), data + size);
    const unsigned int length = static_cast<unsigned int>(bytes.size());
    CCustomData store;
    if (way == 0) {
        Require(vak::test::IsLoaded<CException>(store, {bytes.data(), bytes.size()}) || !store.HasData());
    } else if (way == 2) {
        store.SetData(bytes.data(), length);
    } else {
        OpenStore outer;
        outer.SetCustom(1, bytes.data(), length, way == 1 ? vak::kind::Binary : vak::kind::Untyped);
        outer.m_stringMode = way == 1 ? outer.m_stringMode : 2;
        outer.GetCustomData(1, store);
    }
    for (unsigned int id = 0; id < 8; ++id)
        ReadEveryWay(store, id, 2);

    CCustomData again;
    Require(vak::test::IsLoaded<CException>(again, vak::test::StoredBytes(store)));
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
