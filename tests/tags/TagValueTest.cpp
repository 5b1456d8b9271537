#include "core/CustomData.h"
#include "framework/base/StringArray.h"
#include "framework/base/Time.h"
#include "tests/support/Print.h"
#include "tests/tags/TagTexts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <string_view>

using vak::test::AsText;
using vak::test::With;

namespace {

constexpr unsigned int kItem = 7;

/// Shows where a value's members lie.
struct OpenValue : CTagValue
{
    using CTagValue::HandleParameters;

    std::ptrdiff_t OffsetOf(const void* member) const
    {
        return static_cast<const char*>(member) - reinterpret_cast<const char*>(this);
    }
    void ExpectInOrder() const
    {
        const void* const members[] = {&m_kind, &m_customData, &m_stringArray, &m_uintArray, &m_floatArray,
                                       &m_text, &m_date,       &m_integer,     &m_float};
        const std::ptrdiff_t offsets[] = {8, 16, 24, 32, 40, 48, 56, 64, 72};
        for (std::size_t i = 0; i < std::size(members); ++i)
            EXPECT_EQ(OffsetOf(members[i]), offsets[i]) << i;
    }
};

CTagValue Block(std::string_view bytes)
{
    CTagValue value;
    value.SetCustomInfo(bytes.data(), static_cast<unsigned int>(bytes.size()));
    return value;
}

CTagValue Numbers()
{
    CTagValue value;
    value.AddUInt(0x04030201);
    value.AddInt(-1);
    return value;
}

CTagValue Texts()
{
    CStringArray texts;
    texts.Add(L"a");
    texts.Add(L"");
    return With(&CTagValue::SetStringArray, texts);
}

std::string_view BytesOf(const CCustomData& data)
{
    return {static_cast<const char*>(data.GetCustomPtr(kItem)), data.GetDataSize(kItem)};
}

} // namespace

TEST(TagValue, KeepsItsMembersAndSlotsWhereDerivedClassesExpectThem)
{
    OpenValue().ExpectInOrder();
    auto member = &OpenValue::HandleParameters;
    std::size_t words[2];
    std::memcpy(words, &member, sizeof words);
    EXPECT_EQ((words[0] - 1) / sizeof(void*), 2u) << "behind the two slots of the destructor";
}

TEST(TagValue, PreparesTheBufferOfTheFirstStorageBitAndNoNumbers)
{
    CTagValue value;
    value.SetUInt(5);
    EXPECT_EQ(value.GetDataType(), 0x2u);
    for (const unsigned int kind : {0x2u, 0x2002u, 0x8002u, 0x4u, 0x80004u, 0u, 0x20u}) {
        value.SetText(L"x");
        value.InitType(_TAGDATA_INFO(kind));
        EXPECT_EQ(value.IsEmpty(), 1) << kind;
        EXPECT_EQ(value.GetText(), CString(L"x"));
    }
    value.SetDate(CTime(86400 * 365));
    value = CTagValue(value);
    value.InitType(_TAGDATA_INFO(0x3001009)); // the text bit comes before the date's, flags are dropped
    EXPECT_EQ(value.GetDataType(), 0x1009u);
    EXPECT_TRUE(value.GetText().IsEmpty());
    value.InitType(TAGDATA_DATE);
    EXPECT_EQ(value.GetDate().GetTime(), 86400 * 365) << "a date is never reset";

    value = Numbers();
    value.InitType(_TAGDATA_INFO(0x300));
    EXPECT_EQ(value.GetUIntArray().GetSize(), 2) << "only the first bit's buffer is emptied";
    value.Init();
    EXPECT_EQ(value.GetUIntArray().GetSize() + value.GetDataType(), 0);
    value = Block("abc");
    value.InitType(TAGDATA_CUSTOMDATA);
    EXPECT_EQ(value.GetCustomSize(), 0u);
}

TEST(TagValue, CopiesShareNothingAndTheirArgumentsMayBeTheirOwnParts)
{
    CTagValue first = With<LPCWSTR>(&CTagValue::SetText, L"text");
    first.AddText(first.GetText());
    first.AddText(L"!");
    first.SetCustomInfo("block", 5);
    first.SetCustomInfo(static_cast<const char*>(first.GetCustomPtr()) + 1, 3);
    first.SetCustomData(first.GetCustomData());
    first.AddUInt(3);
    first.SetUIntArray(first.GetUIntArray());
    const CTagValue copy = first;
    first = *&first;
    first.SetUInt(9);
    first.AddUInt(4);
    first.SetCustomInfo("x", 1);
    first.AddText(L"new");
    EXPECT_EQ(copy.GetDataType(), TAGDATA_UINTARRAY);
    EXPECT_EQ(copy.GetText(), CString(L"texttext!"));
    EXPECT_EQ(AsText(copy), CString(L"3; "));
    EXPECT_EQ(copy.GetUInt(), 0u);
    const void* block = nullptr;
    unsigned int size = 0;
    copy.GetCustomInfo(block, size);
    EXPECT_EQ(std::string_view(static_cast<const char*>(block), size), "loc");
    EXPECT_EQ(first.GetText(), CString(L"new")) << "appending begins anew after another kind";
    first = CTagValue();
    EXPECT_TRUE(first.GetText().IsEmpty() && first.GetCustomPtr() == nullptr && first.GetFileSize() == 0);
}

TEST(TagValue, StoresEveryKindAsTheItemsThatOtherProgramsRead)
{
    using namespace std::string_view_literals;
    CCustomData nested;
    nested.SetUInt(1, 2);
    CTagValue large = With<LPCWSTR>(&CTagValue::SetText, L"8589934593"); // 2 to the power of 33, and 1
    EXPECT_EQ(large.HandleParametersAndConvertToType(TAGDATA_FILESIZE, L""), 1);
    struct Row
    {
        CTagValue value;
        unsigned int itemKind;
        std::string_view bytes;
    };
    const Row rows[] = {
        {With<LPCWSTR>(&CTagValue::SetFilename, L"a"), vak::kind::WideText, "a\0\0\0"sv},
        {With(&CTagValue::SetInt, -2), vak::kind::UInt, "\xFE\xFF\xFF\xFF"sv},
        {large, vak::kind::UInt, "\1\0\0\0"sv},
        {With(&CTagValue::SetLength, 1.5f), vak::kind::Float, "\0\0\xC0\x3F"sv},
        {With(&CTagValue::SetDate, CTime(2003, 9, 1, 10, 0, 59)), vak::kind::Binary,
         "\xD3\x07\x09\0\x01\0\x01\0\x0A\0\0\0\x3B\0\0\0"sv},
        {Texts(), vak::kind::WideTexts, "a\0\0\0\0\0"sv},
        {Numbers(), vak::kind::Binary, "\1\2\3\4\xFF\xFF\xFF\xFF"sv},
        {Block("b\0c"sv), vak::kind::Binary, "b\0c"sv},
        {With(&CTagValue::SetCustomData, nested), vak::kind::Store, {}},
    };
    for (const Row& row : rows) {
        CCustomData data;
        const _TAGDATA_INFO kind = row.value.GetDataType();
        EXPECT_EQ(row.value.SetValueToData(data, kItem), 1) << std::hex << kind;
        EXPECT_EQ(data.GetDataKindOf(kItem), row.itemKind);
        if (!row.bytes.empty()) {
            EXPECT_EQ(BytesOf(data), row.bytes) << std::hex << kind;
        }
        CTagValue read = With<LPCWSTR>(&CTagValue::SetText, L"before");
        EXPECT_EQ(read.GetValueFromData(data, kItem, kind), 1) << std::hex << kind;
        EXPECT_EQ(read.GetDataType(), kind);
        CCustomData again;
        EXPECT_EQ(read.SetValueToData(again, kItem), 1);
        EXPECT_EQ(BytesOf(again), BytesOf(data)) << std::hex << kind;
    }
}

TEST(TagValue, StoresNothingForWhatHasNoForm)
{
    CCustomData data;
    data.SetUInt(kItem, 5);
    EXPECT_EQ(CTagValue().SetValueToData(data, kItem), 0);
    EXPECT_EQ(With(&CTagValue::SetDate, CTime(-1)).SetValueToData(data, kItem), 0);
    EXPECT_EQ(data.GetDataSize(kItem), 4u);
    EXPECT_EQ(With(&CTagValue::SetUIntArray, CTagValue::UIntArray()).SetValueToData(data, kItem), 1);
    EXPECT_EQ(data.HasData(kItem), 0) << "an empty array removes the item";
}

TEST(TagValue, StaysEmptyWhenAnItemIsMissingOrDamaged)
{
    const char date[] = "\xD3\x07\x02\0\0\0\x1F\0\0\0\0\0\0\0\0"; // 31 February
    const char month[] = "\xD3\x07\x0D\0\0\0\x01\0\0\0\0\0\0\0\0";
    CCustomData data;
    data.SetBinary(1, date, 16);
    data.SetBinary(2, month, 16);
    data.SetBinary(3, date, 15);
    data.SetBinary(4, "\1\0\0\0\2\0\0", 7);
    const _TAGDATA_INFO kinds[] = {TAGDATA_TEXT,        TAGDATA_INT,        TAGDATA_FLOAT,
                                   TAGDATA_DATE,        TAGDATA_CUSTOMDATA, TAGDATA_CUSTOMINFO,
                                   TAGDATA_UINTARRAY,   TAGDATA_FLOATARRAY, TAGDATA_NONE,
                                   TAGDATA_STRINGARRAY, _TAGDATA_INFO(0x20)};
    for (const _TAGDATA_INFO kind : kinds) {
        CTagValue value = Numbers();
        EXPECT_EQ(value.GetValueFromData(data, 9, kind), 0) << std::hex << kind;
        EXPECT_EQ(value.IsEmpty(), 1);
    }
    CTagValue value;
    for (const unsigned int id : {1u, 2u}) {
        value.SetDate(CTime(5));
        EXPECT_EQ(value.GetValueFromData(data, id, TAGDATA_DATE), 0);
        EXPECT_LT(CTime::GetCurrentTime().GetTime() - value.GetDate().GetTime(), 60) << "the current time";
    }
    value.SetDate(CTime(5));
    EXPECT_EQ(value.GetValueFromData(data, 3, TAGDATA_DATE) + value.IsEmpty(), 1);
    EXPECT_EQ(value.GetDate().GetTime(), 5) << "a block that is no record at all is not looked at";
    EXPECT_EQ(value.GetValueFromData(data, 4, TAGDATA_UINTARRAY), 1);
    EXPECT_EQ(AsText(value), CString(L"1; "));
    EXPECT_EQ(value.GetValueFromData(data, 4, TAGDATA_CUSTOMDATA), 0);

    // A value may read from its own store.
    data.SetCustomData(5, CCustomData(data));
    value.SetCustomData(data);
    EXPECT_EQ(value.GetValueFromData(value.GetCustomData(), 5, TAGDATA_CUSTOMDATA), 1);
    EXPECT_EQ(value.GetValueFromData(value.GetCustomData(), 4, TAGDATA_CUSTOMINFO), 1);
    EXPECT_EQ(value.GetCustomSize(), 7u);
}
