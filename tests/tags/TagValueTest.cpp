#include "core/CustomData.h"
#include "framework/base/Time.h"
#include "resources/Ids.h"
#include "tags/TagInfo.h"
#include "tests/support/Print.h"
#include "tests/support/Slots.h"
#include "tests/support/TagTexts.h"

#include <gtest/gtest.h>

using namespace std::string_view_literals;
using namespace vak::test;

namespace {

constexpr unsigned int kItem = 7;

struct OpenValue : CTagValue
{
    _TAGDATA_INFO HandleParameters(const CString&) override { return TAGDATA_TEXT; }
    bool IsInOrder() const
    {
        return InOrder({this, &m_kind, &m_customData, &m_stringArray, &m_uintArray, &m_floatArray, &m_text,
                        &m_date, &m_integer, &m_float});
    }
};

std::string_view BytesOf(const CCustomData& data)
{
    return {static_cast<const char*>(data.GetCustomPtr(kItem)), data.GetDataSize(kItem)};
}

} // namespace

TEST(TagValue, KeepsItsMembersAndSlotsWhereOthersExpectThem)
{
    EXPECT_TRUE(OpenValue().IsInOrder() && sizeof(CTagValue) == 80);
    EXPECT_EQ(SlotOf(&OpenValue::HandleParameters), 2u) << "behind the two slots of the destructor";
    EXPECT_EQ(OpenValue().HandleParametersAndConvertToType(TAGDATA_NONE, L"(ext)"), 1);
    const CTagInfo tag;
    EXPECT_TRUE(InOrder({&tag, &tag.m_tagId, &tag.m_tagClass, &tag.m_tagName, &tag.m_dataType, &tag.m_flags,
                         &tag.m_friendlyNameId, &tag.m_classNameId, &tag.m_callback, &tag.m_callbackData,
                         &tag.m_parameters, &tag + 1}));
}

TEST(TagValue, PreparesTheBufferOfTheFirstStorageBitAndNoNumbers)
{
    CTagValue value = Read(TAGDATA_UINTARRAY, L"1 ; 2");
    value.SetDate(CTime(5));
    for (const unsigned int kind : {0x8002u, 0x4u, 0u, 0x20u}) {
        value.SetText(L"x");
        value.InitType(_TAGDATA_INFO(kind));
        EXPECT_TRUE(value.IsEmpty() && value.GetText() == L"x") << kind;
    }
    value.InitType(_TAGDATA_INFO(0x3001009)); // the text's bit comes before the date's; flags are dropped
    EXPECT_TRUE(value.GetDataType() == 0x1009u && value.GetText().IsEmpty());
    value.InitType(_TAGDATA_INFO(0x308));
    EXPECT_TRUE(value.GetDate().GetTime() == 5 && value.GetUIntArray().GetSize() == 2);
    value.Init();
    EXPECT_TRUE(value.IsEmpty() && value.GetUIntArray().IsEmpty());
}

TEST(TagValue, CopiesShareNothingAndArgumentsMayBeTheirOwnParts)
{
    CTagValue first = Read(TAGDATA_FILENAME, L"text");
    first.AddText(first.GetText());
    first.SetCustomInfo("block", 5);
    first.SetCustomInfo(static_cast<const char*>(first.GetCustomPtr()) + 1, 3);
    first.SetCustomData(first.GetCustomData());
    first.AddUInt(3);
    first.SetUIntArray(first.GetUIntArray());
    const CTagValue copy = first;
    first.AddUInt(4);
    first.SetCustomInfo("x", 1);
    first.AddText(L"new"); // begins anew after another kind
    EXPECT_EQ(copy.GetText() + AsText(copy) + AsText(first), CString(L"texttext3; new"));
    const void* block = nullptr;
    unsigned int size = 0;
    copy.GetCustomInfo(block, size);
    EXPECT_EQ(std::string_view(static_cast<const char*>(block), size), "loc");
    first = CTagValue();
    EXPECT_TRUE(first.GetText().IsEmpty() && first.GetCustomPtr() == nullptr && first.IsEmpty());
    first = Read(_TAGDATA_INFO(0x2200), L"1");
    first.AddInt(2);
    EXPECT_EQ(AsText(first), CString(L"1; 2; "));
}

TEST(TagValue, StoresEveryKindAsTheItemsThatOtherProgramsRead)
{
    const std::tuple<_TAGDATA_INFO, CString, unsigned int, std::string_view> rows[] = {
        {TAGDATA_FILENAME, L"a", vak::kind::WideText, "a\0\0\0"sv},
        {TAGDATA_INT, L"-2", vak::kind::UInt, "\xFE\xFF\xFF\xFF"sv},
        {TAGDATA_FILESIZE, L"8589934593", vak::kind::UInt, "\1\0\0\0"sv},
        {TAGDATA_CUSTOMINFO, L"bcc", vak::kind::Binary, "b\0c"sv},
        {TAGDATA_LENGTH, L"1.5", vak::kind::Float, "\0\0\xC0\x3F"sv},
        {TAGDATA_FLOATARRAY, L"1.5", vak::kind::Binary, "\0\0\xC0\x3F"sv},
        {TAGDATA_DATE, L"1/9/2003 10:00:59", vak::kind::Binary, "\xD3\7\x09\0\1\0\1\0\x0A\0\0\0\x3B\0\0\0"sv},
        {TAGDATA_STRINGARRAY, L"a ; b", vak::kind::WideTexts, "a\0\0\0b\0\0\0"sv},
        {TAGDATA_UINTARRAY, L"67305985 ; -1", vak::kind::Binary, "\1\2\3\4\xFF\xFF\xFF\xFF"sv}};
    for (const auto& [kind, text, itemKind, bytes] : rows) {
        CCustomData data, again;
        EXPECT_EQ(Read(kind, text).SetValueToData(data, kItem), 1) << kind;
        EXPECT_TRUE(data.GetDataKindOf(kItem) == itemKind && BytesOf(data) == bytes) << kind;
        CTagValue read = Read(TAGDATA_UINTARRAY, L"1");
        EXPECT_EQ(read.GetValueFromData(data, kItem, kind), 1) << kind;
        EXPECT_EQ(read.SetValueToData(again, kItem), 1) << kind;
        EXPECT_TRUE(read.GetDataType() == kind && BytesOf(again) == bytes) << kind;
    }
    CCustomData data;
    data.SetUInt(kItem, 2);
    CTagValue value;
    EXPECT_EQ(value.SetValueToData(data, kItem), 0);
    value.SetDate(CTime(-1));
    EXPECT_EQ(value.SetValueToData(data, kItem), 0);
    value.SetCustomData(data);
    EXPECT_TRUE(value.SetValueToData(data, 1) && value.GetValueFromData(data, 1, TAGDATA_CUSTOMDATA));
    EXPECT_TRUE(BytesOf(value.GetCustomData()) == "\2\0\0\0"sv);
    EXPECT_EQ(Read(TAGDATA_UINTARRAY, L"").SetValueToData(data, kItem), 1);
    EXPECT_EQ(data.HasData(kItem), 0);
}

TEST(TagValue, StaysEmptyWhenAnItemIsMissingOrDamaged)
{
    CCustomData data;
    data.SetBinary(1, "\xD3\x07\x02\0\0\0\x1F\0\0\0\0\0\0\0\0", 16); // 31 February
    data.SetBinary(2, "\xD3\x07\x0D\0\0\0\x01\0\0\0\0\0\0\0\0", 16); // the 13th month
    data.SetBinary(3, "\xD3\x07\x01\0\0\0\x01\0\0\0\0\0\0\0", 15);
    data.SetBinary(4, "\1\0\0\0\2\0\0", 7);
    CTagValue value;
    for (const unsigned int kind : {0x1u, 0x2u, 0x4u, 0x8u, 0x10u, 0x100010u, 0x100u, 0x200u, 0x400u, 0u}) {
        value.AddUInt(1);
        EXPECT_TRUE(value.GetValueFromData(data, 9, _TAGDATA_INFO(kind)) == 0 && value.IsEmpty()) << kind;
    }
    for (const unsigned int id : {1u, 2u, 3u}) {
        value.SetDate(CTime(5));
        EXPECT_EQ(value.GetValueFromData(data, id, TAGDATA_DATE), 0);
        EXPECT_EQ(value.GetDate().GetTime() == 5, id == 3) << "the current time for a record that is no date";
    }
    EXPECT_EQ(value.GetValueFromData(data, 4, TAGDATA_UINTARRAY), 1);
    EXPECT_EQ(AsText(value), CString(L"1; "));
    data.SetCustomData(5, CCustomData(data));
    value.SetCustomData(data);
    EXPECT_EQ(value.GetValueFromData(value.GetCustomData(), 5, TAGDATA_CUSTOMDATA), 1) << "its own store";
    EXPECT_EQ(value.GetValueFromData(value.GetCustomData(), 4, TAGDATA_CUSTOMINFO), 1);
    EXPECT_EQ(value.GetCustomSize(), 7u);
}

TEST(TagInfo, NamesItselfByATextOfTheLibraryUnlessTheNameIsLiteral)
{
    CTagInfo tag('TAGC', 'IFNE');
    EXPECT_TRUE(tag.GetTagClass() == 0x54414743u && tag.GetTagID() == 0x49464E45u);
    tag.m_friendlyNameId = tag.m_classNameId = IDS_TRUE;
    EXPECT_EQ(InBoth([&] { return tag.GetTagFriendlyName(); }), CString(L"Vrai | True"));
    tag.SetFriendlyName(L"Mon nom");
    EXPECT_EQ(CTagInfo(tag).GetTagFriendlyName() + tag.GetClassName(), CString(L"Mon nomVrai"));
    tag.Init();
    EXPECT_TRUE((tag.GetTagFriendlyName() + tag.GetClassName()).IsEmpty() && tag.GetTagID() == 0);
}
