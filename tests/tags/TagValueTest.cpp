#include "core/CustomData.h"
#include "framework/base/StringArray.h"
#include "framework/base/Time.h"
#include "resources/Ids.h"
#include "tags/TagInfo.h"
#include "tests/support/Print.h"
#include "tests/support/TagTexts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string_view>

using namespace std::string_view_literals;
using namespace vak::test;

namespace {

constexpr unsigned int kItem = 7;

using Members = std::initializer_list<const void*>;
using Offsets = std::initializer_list<std::size_t>;

void ExpectAt(const void* object, Members members, Offsets offsets)
{
    auto offset = offsets.begin();
    for (const void* member : members)
        EXPECT_EQ(static_cast<const char*>(member) - static_cast<const char*>(object), *offset++);
}

struct OpenValue : CTagValue
{
    using CTagValue::HandleParameters;

    void ExpectInPlace() const
    {
        const Members members = {&m_kind, &m_customData, &m_stringArray, &m_uintArray, &m_floatArray,
                                 &m_text, &m_date,       &m_integer,     &m_float};
        ExpectAt(this, members, {8, 16, 24, 32, 40, 48, 56, 64, 72});
    }
};

CTagValue Numbers()
{
    CTagValue value;
    value.AddUInt(0x04030201);
    value.AddInt(-1);
    return value;
}

std::string_view BytesOf(const CCustomData& data)
{
    return {static_cast<const char*>(data.GetCustomPtr(kItem)), data.GetDataSize(kItem)};
}

} // namespace

TEST(TagValue, KeepsItsMembersAndSlotsWhereDerivedClassesExpectThem)
{
    OpenValue().ExpectInPlace();
    const auto member = &OpenValue::HandleParameters;
    std::size_t words[2];
    std::memcpy(words, &member, sizeof words);
    EXPECT_EQ((words[0] - 1) / sizeof(void*), 2u) << "behind the two slots of the destructor";
}

TEST(TagValue, PreparesTheBufferOfTheFirstStorageBitAndNoNumbers)
{
    CTagValue value = With(&CTagValue::SetDate, CTime(5));
    for (const unsigned int kind : {0x2u, 0x8002u, 0x4u, 0u, 0x20u}) {
        value.SetText(L"x");
        value.InitType(_TAGDATA_INFO(kind));
        EXPECT_TRUE(value.IsEmpty() && value.GetText() == L"x") << kind;
    }
    value.InitType(_TAGDATA_INFO(0x3001009)); // the text's bit comes before the date's; flags are dropped
    EXPECT_TRUE(value.GetDataType() == 0x1009u && value.GetText().IsEmpty());
    value.InitType(TAGDATA_DATE);
    EXPECT_EQ(value.GetDate().GetTime(), 5) << "a date is never reset";
    value = Numbers();
    value.InitType(_TAGDATA_INFO(0x300));
    EXPECT_EQ(value.GetUIntArray().GetSize(), 2);
    value.Init();
    EXPECT_TRUE(value.IsEmpty() && value.GetUIntArray().IsEmpty());
}

TEST(TagValue, CopiesShareNothingAndArgumentsMayBeTheirOwnParts)
{
    CTagValue first = TextValue(L"text");
    first.AddText(first.GetText());
    first.AddText(L"!");
    first.SetCustomInfo("block", 5);
    first.SetCustomInfo(static_cast<const char*>(first.GetCustomPtr()) + 1, 3);
    first.SetCustomData(first.GetCustomData());
    first.AddUInt(3);
    first.SetUIntArray(first.GetUIntArray());
    const CTagValue copy = first;
    first.AddUInt(4);
    first.SetCustomInfo("x", 1);
    first.SetUInt(9);
    first.AddText(L"new");
    EXPECT_TRUE(copy.GetText() == L"texttext!" && AsText(copy) == L"3; " && copy.GetUInt() == 0);
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
    CTagValue large = TextValue(L"8589934593"); // 2 to the power of 33, and 1
    EXPECT_EQ(large.HandleParametersAndConvertToType(TAGDATA_FILESIZE, L""), 1);
    CTagValue texts = TextValue(L"a ; b");
    EXPECT_EQ(texts.HandleParametersAndConvertToType(TAGDATA_STRINGARRAY, L""), 1);
    struct Row
    {
        CTagValue value;
        unsigned int itemKind;
        std::string_view bytes;
    };
    const Row rows[] = {{With<LPCWSTR>(&CTagValue::SetFilename, L"a"), vak::kind::WideText, "a\0\0\0"sv},
                        {With(&CTagValue::SetInt, -2), vak::kind::UInt, "\xFE\xFF\xFF\xFF"sv},
                        {large, vak::kind::UInt, "\1\0\0\0"sv},
                        {BlockValue("b\0c"sv), vak::kind::Binary, "b\0c"sv},
                        {With(&CTagValue::SetLength, 1.5f), vak::kind::Float, "\0\0\xC0\x3F"sv},
                        {With(&CTagValue::AddFloat, 1.5f), vak::kind::Binary, "\0\0\xC0\x3F"sv},
                        {With(&CTagValue::SetDate, CTime(2003, 9, 1, 10, 0, 59)), vak::kind::Binary,
                         "\xD3\x07\x09\0\x01\0\x01\0\x0A\0\0\0\x3B\0\0\0"sv},
                        {texts, vak::kind::WideTexts, "a\0\0\0b\0\0\0"sv},
                        {Numbers(), vak::kind::Binary, "\1\2\3\4\xFF\xFF\xFF\xFF"sv}};
    for (const Row& row : rows) {
        const _TAGDATA_INFO kind = row.value.GetDataType();
        CCustomData data, again;
        EXPECT_EQ(CTagValue(row.value).SetValueToData(data, kItem), 1) << kind;
        EXPECT_TRUE(data.GetDataKindOf(kItem) == row.itemKind && BytesOf(data) == row.bytes) << kind;
        CTagValue read = TextValue(L"before");
        EXPECT_EQ(read.GetValueFromData(data, kItem, kind), 1) << kind;
        EXPECT_EQ(read.SetValueToData(again, kItem), 1) << kind;
        EXPECT_TRUE(read.GetDataType() == kind && BytesOf(again) == row.bytes) << kind;
    }
    CCustomData nested;
    nested.SetUInt(1, 2);
    CTagValue store = With(&CTagValue::SetCustomData, nested);
    EXPECT_EQ(store.SetValueToData(nested, kItem), 1);
    EXPECT_EQ(CTagValue().GetValueFromData(nested, kItem, TAGDATA_CUSTOMDATA), 1);
    nested.SetUInt(kItem, 5);
    EXPECT_EQ(CTagValue().SetValueToData(nested, kItem), 0);
    EXPECT_EQ(With(&CTagValue::SetDate, CTime(-1)).SetValueToData(nested, kItem), 0);
    EXPECT_EQ(nested.GetDataSize(kItem), 4u);
    EXPECT_EQ(With(&CTagValue::SetUIntArray, CTagValue::UIntArray()).SetValueToData(nested, kItem), 1);
    EXPECT_EQ(nested.HasData(kItem), 0) << "an empty array removes the item";
}

TEST(TagValue, StaysEmptyWhenAnItemIsMissingOrDamaged)
{
    CCustomData data;
    data.SetBinary(1, "\xD3\x07\x02\0\0\0\x1F\0\0\0\0\0\0\0\0", 16); // 31 February
    data.SetBinary(2, "\xD3\x07\x0D\0\0\0\x01\0\0\0\0\0\0\0\0", 16); // the 13th month
    data.SetBinary(3, "\xD3\x07\x01\0\0\0\x01\0\0\0\0\0\0\0", 15);
    data.SetBinary(4, "\1\0\0\0\2\0\0", 7);
    for (const unsigned int kind : {0x1u, 0x2u, 0x4u, 0x8u, 0x10u, 0x100010u, 0x100u, 0x200u, 0x400u, 0u}) {
        CTagValue value = Numbers();
        EXPECT_EQ(value.GetValueFromData(data, 9, _TAGDATA_INFO(kind)), 0) << kind;
        EXPECT_EQ(value.IsEmpty(), 1);
    }
    CTagValue value;
    for (const unsigned int id : {1u, 2u}) {
        value.SetDate(CTime(5));
        EXPECT_EQ(value.GetValueFromData(data, id, TAGDATA_DATE), 0);
        EXPECT_LT(CTime::GetCurrentTime().GetTime() - value.GetDate().GetTime(), 60) << "the current time";
    }
    value.SetDate(CTime(5));
    EXPECT_EQ(value.GetValueFromData(data, 3, TAGDATA_DATE), 0);
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

TEST(TagInfo, KeepsItsMembersWhereRegistrarsExpectThem)
{
    constexpr std::size_t kText = sizeof(CString);
    const CTagInfo tag;
    const Members members = {&tag.m_tagId,        &tag.m_tagClass,       &tag.m_tagName,     &tag.m_dataType,
                             &tag.m_flags,        &tag.m_friendlyNameId, &tag.m_classNameId, &tag.m_callback,
                             &tag.m_callbackData, &tag.m_parameters};
    ExpectAt(&tag, members,
             {0, 4, 8, 8 + kText, 12 + kText, 16 + kText, 20 + kText, 24 + kText, 32 + kText, 40 + kText});
}

TEST(TagInfo, NamesItselfByATextOfTheLibraryUnlessTheNameIsLiteral)
{
    CTagInfo tag('TAGC', 'IFNE');
    EXPECT_EQ(tag.GetTagClass(), 0x54414743u);
    EXPECT_EQ(tag.GetTagID(), 0x49464E45u);
    EXPECT_TRUE(tag.GetTagFriendlyName().IsEmpty());
    tag.m_friendlyNameId = IDS_TRUE;
    tag.m_classNameId = IDS_TAG_PARAMETER + 1;
    EXPECT_EQ(InBoth([&] { return tag.GetTagFriendlyName(); }), CString(L"Vrai | True"));
    EXPECT_EQ(tag.GetClassName(), CString(L"Extension"));
    tag.SetFriendlyName(L"Mon nom");
    EXPECT_TRUE(CTagInfo(tag).GetTagFriendlyName() == L"Mon nom" && tag.m_friendlyNameId == 0);
    tag.Init();
    EXPECT_TRUE(tag.GetTagFriendlyName().IsEmpty() && tag.GetClassName().IsEmpty() && tag.GetTagID() == 0);
}
