#include "core/CustomData.h"
#include "framework/base/StringArray.h"
#include "framework/base/Time.h"
#include "tests/support/Print.h"
#include "tests/tags/TagTexts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

using vak::test::AsText;
using vak::test::InBoth;
using vak::test::With;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

CTagValue Text(const wchar_t* text)
{
    return With<LPCWSTR>(&CTagValue::SetText, text);
}

CTagValue Texts(std::initializer_list<const wchar_t*> elements)
{
    CStringArray texts;
    for (const wchar_t* element : elements)
        texts.Add(element);
    return With(&CTagValue::SetStringArray, texts);
}

CTagValue Block(const char* bytes, unsigned int size)
{
    CTagValue value;
    value.SetCustomInfo(bytes, size);
    return value;
}

CTagValue UInts()
{
    CTagValue value = Text(L"not part of the array");
    value.AddUInt(1);
    value.AddInt(-1);
    return value;
}

CTagValue Floats()
{
    CTagValue value;
    value.AddFloat(1.5f);
    value.AddFloat(-2);
    return value;
}

} // namespace

TEST(TagConversion, WritesEveryKindAsTextInBothLanguages)
{
    const std::pair<CTagValue, const wchar_t*> rows[] = {
        {With(&CTagValue::SetUInt, 4294967295u), L"4294967295"},
        {With(&CTagValue::SetInt, -5), L"-5"},
        {With(&CTagValue::SetBool, -2), L"Vrai | True"},
        {With(&CTagValue::SetBool, 0), L"Faux"},
        {With(&CTagValue::SetFileSize, 1536u), L"1,50 Ko | 1.50 KB"},
        {With(&CTagValue::SetColor, 0x00FF0A30u), L"R :  48  V : 10  B : 255 | R :  48  G : 10  B : 255"},
        {With(&CTagValue::SetFloat, 2.25f), L"2.250"},
        {With(&CTagValue::SetDuration, 59.5f), L"59.50 s"},
        {With(&CTagValue::SetDuration, 60.0f), L"60.00 s"},
        {With(&CTagValue::SetDuration, 75.9f), L"1:15 mn"},
        {With(&CTagValue::SetDuration, 3600.0f), L"60:00 mn"},
        {With(&CTagValue::SetDuration, 3725.0f), L"01 h 02 mn 05 s"},
        {With(&CTagValue::SetDuration, -75.0f), L"-75.00 s"},
        {With(&CTagValue::SetDuration, kInfinity), L"5124095576030431 h 00 mn 15 s"},
        {With(&CTagValue::SetLength, 1500.0f), L"1.50 m"},
        {With(&CTagValue::SetLength, 1000.0f), L"100.00 cm"},
        {With(&CTagValue::SetLength, 250.0f), L"25.00 cm"},
        {With(&CTagValue::SetLength, 10.0f), L""},
        {With(&CTagValue::SetLength, std::nanf("")), L""},
        {With(&CTagValue::SetResolution, 72.5f), L"72.500000 dpi"},
        {With(&CTagValue::SetDate, CTime(2003, 9, 1, 10, 0, 59)), L"01/09/2003 10:00"},
        {With(&CTagValue::SetDate, CTime(-1)), L""},
        {Block("A\x01\xE9z\0~!\x7F", 8), L"A  z ~! "},
        {Block(nullptr, 0), L""},
        {Texts({L"a", L"", L"c ; d"}), L"a ;  ; c ; d ; "},
        {UInts(), L"1; -1; "},
        {Floats(), L"1.500000; -2.000000; "},
        {With(&CTagValue::SetCustomData, CCustomData()), L"failed"},
        {CTagValue(), L"failed"},
    };
    for (const auto& [value, text] : rows)
        EXPECT_EQ(InBoth([&] { return AsText(value); }), CString(text)) << std::hex << value.GetDataType();
}

TEST(TagConversion, ReadsIntegersThatTextsBeginWith)
{
    struct Row
    {
        const wchar_t* text;
        _TAGDATA_INFO kind;
        int result;
        std::uint64_t number;
    };
    const Row rows[] = {
        {L" \t+42 km", TAGDATA_UINT, 1, 42},
        {L"18446744073709551615", TAGDATA_FILESIZE, 1, UINT64_MAX},
        {L"18446744073709551616", TAGDATA_FILESIZE, 0, 7},
        {L"-1", TAGDATA_COLOR, 1, UINT64_MAX},
        {L"9223372036854775808", TAGDATA_BOOL, 1, 1ull << 63},
        {L"9223372036854775808", TAGDATA_INT, 0, 7},
        {L"-9223372036854775808", TAGDATA_INT, 1, 1ull << 63},
        {L"-9223372036854775809", TAGDATA_INT, 0, 7},
        {L"-00012.9", TAGDATA_INT, 1, 0 - std::uint64_t{12}},
        {L"0x10", TAGDATA_UINT, 1, 0},
        {L"- 1", TAGDATA_INT, 0, 7},
        {L"a1", TAGDATA_UINT, 0, 7},
        {L"", TAGDATA_UINT, 0, 7},
    };
    for (const Row& row : rows) {
        CTagValue value = With(&CTagValue::SetUInt, 7u);
        value.SetText(row.text);
        EXPECT_EQ(value.HandleParametersAndConvertToType(row.kind, L""), row.result) << CStringA(row.text);
        EXPECT_EQ(value.GetDataType(), row.result != 0 ? row.kind : TAGDATA_TEXT);
        EXPECT_EQ(value.GetFileSize(), row.number) << CStringA(row.text);
    }
}

TEST(TagConversion, ReadsFloatsThatTextsBeginWith)
{
    constexpr float kBefore = 7;
    const std::pair<const wchar_t*, float> rows[] = {
        {L"1.5", 1.5f},      {L"\n-.25mm", -0.25f}, {L"+3.", 3},       {L"2e1.5", 20},   {L"1E-2", 0.01f},
        {L"1,5", 1},         {L"2e", kBefore},      {L"2e+", kBefore}, {L".", kBefore},  {L"inf", kBefore},
        {L"1e39", kBefore},  {L"-1e39", kBefore},   {L"nan", kBefore}, {L"x1", kBefore}, {L"0e99", 0},
        {L"1e-99", kBefore}, {L"3.4e38", 3.4e38f},  {L"+-1", kBefore}, {L"", kBefore},
    };
    for (const auto& [text, number] : rows) {
        CTagValue value = With(&CTagValue::SetFloat, kBefore);
        value.SetText(text);
        const int result = value.HandleParametersAndConvertToType(TAGDATA_LENGTH, L"");
        EXPECT_EQ(result, number != kBefore ? 1 : 0) << CStringA(text);
        EXPECT_EQ(value.GetFloat(), number) << CStringA(text);
    }
}

TEST(TagConversion, SplitsTextsIntoArraysAndSkipsWhatDoesNotRead)
{
    struct Row
    {
        const wchar_t* text;
        _TAGDATA_INFO kind;
        const wchar_t* array;
    };
    const Row rows[] = {
        {L"a ; b ;  ; c", TAGDATA_STRINGARRAY, L"a ; b ; c ; "},
        {L"  a;b ; c ;d ; ", TAGDATA_STRINGARRAY, L"a;b ; c ;d ; "},
        {L" ; ", TAGDATA_STRINGARRAY, L""},
        {L"", TAGDATA_STRINGARRAY, L""},
        {L" 1 ; x ; -2 ; 3.9 ; 4294967295 ; 7kg", TAGDATA_UINTARRAY, L"1; -2; 3; 7; "},
        {L"1.5 ; .5e1 ; 2e ; 1e39 ;  -3 ", TAGDATA_FLOATARRAY, L"1.500000; 5.000000; -3.000000; "},
    };
    for (const Row& row : rows) {
        CTagValue value = Text(row.text);
        EXPECT_EQ(value.HandleParametersAndConvertToType(row.kind, L""), 1);
        EXPECT_EQ(value.GetDataType(), row.kind);
        EXPECT_EQ(AsText(value), CString(row.array));
    }
}

TEST(TagConversion, MakesABlockOfAsManyBytesAsTheTextHasCharacters)
{
    for (const _TAGDATA_INFO kind : {TAGDATA_CUSTOMINFO, TAGDATA_CUSTOMDATA}) {
        CTagValue value = With<LPCWSTR>(&CTagValue::SetFilename, L"\x6241\x0043"
                                                                 L"x");
        EXPECT_EQ(value.HandleParametersAndConvertToType(kind, L""), 1);
        EXPECT_EQ(value.GetDataType(), kind);
        ASSERT_EQ(value.GetCustomSize(), 3u);
        EXPECT_EQ(std::memcmp(value.GetCustomPtr(), "AbC", 3), 0);
    }
}

TEST(TagConversion, ReadsDatesInTheFormsThatItWrites)
{
    CTagValue value = Text(L"01/09/2003 10:00");
    EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_DATE, L""), 1);
    EXPECT_EQ(AsText(value, L"(d+h+t)"), CString(L"Lundi 1er Septembre 2003 10:00"));
    value = Text(L"31/02/2003");
    EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_DATE, L""), 0);
    EXPECT_EQ(value.GetText(), CString(L"31/02/2003"));
}

TEST(TagConversion, CutsFloatsToIntegersWhateverTheyAre)
{
    const std::pair<float, std::uint64_t> rows[] = {
        {3.99f, 3},         {-1.5f, UINT64_MAX},     {0x1.8p63f, 13835058055282163712u},
        {-0.5f, 0},         {kInfinity, UINT64_MAX}, {-kInfinity, 1ull << 63},
        {std::nanf(""), 0},
    };
    for (const auto& [number, integer] : rows) {
        for (const _TAGDATA_INFO kind : {TAGDATA_UINT, TAGDATA_BOOL}) {
            CTagValue value = With(&CTagValue::SetFloat, number);
            EXPECT_EQ(value.HandleParametersAndConvertToType(kind, L""), 1);
            EXPECT_EQ(value.GetDataType(), kind);
            EXPECT_EQ(value.GetFileSize(), integer) << number;
        }
    }
    const std::pair<float, unsigned int> elements[] = {
        {3e9f, 3000000000}, {-1.5f, 4294967295}, {5e9f, 4294967295}, {-3e9f, 0x80000000}, {std::nanf(""), 0}};
    for (const auto& [number, element] : elements) {
        CTagValue value = With(&CTagValue::SetFloat, number);
        EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_UINTARRAY, L""), 1);
        ASSERT_EQ(value.GetUIntArray().GetSize(), 1);
        EXPECT_EQ(value.GetUIntArray()[0], element) << number;
    }
}

TEST(TagConversion, MakesArraysOfOneNumber)
{
    CTagValue value = With<LPCWSTR>(&CTagValue::SetText, L"18446744073709551615");
    EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_UINT, L""), 1);
    CTagValue integers = value;
    EXPECT_EQ(integers.HandleParametersAndConvertToType(TAGDATA_UINTARRAY, L""), 1);
    EXPECT_EQ(AsText(integers), CString(L"-1; "));
    EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_FLOATARRAY, L""), 1);
    EXPECT_EQ(value.GetFloatArray()[0], 0x1p64f);
    value = With(&CTagValue::SetFloat, 0.5f);
    EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_FLOATARRAY, L""), 1);
    EXPECT_EQ(AsText(value), CString(L"0.500000; "));
}

TEST(TagConversion, OnlyRelabelsWithinAStorageClassAndRefusesTheOtherPairs)
{
    struct Row
    {
        CTagValue value;
        _TAGDATA_INFO wanted;
        int result;
        _TAGDATA_INFO kind;
    };
    const Row rows[] = {
        {Text(L"a"), TAGDATA_FILENAME, 1, TAGDATA_FILENAME},
        {With(&CTagValue::SetBool, 5), TAGDATA_UINT, 1, TAGDATA_UINT},
        {With(&CTagValue::SetLength, 5.0f), TAGDATA_DURATION, 1, TAGDATA_DURATION},
        {Block("a", 1), TAGDATA_CUSTOMDATA, 1, TAGDATA_CUSTOMDATA},
        {With(&CTagValue::SetInt, 5), TAGDATA_NONE, 1, TAGDATA_INT},
        {With(&CTagValue::SetInt, 5), _TAGDATA_INFO(vak::kTagNoParameters | TAGDATA_UINT), 1, TAGDATA_UINT},
        {With(&CTagValue::SetUInt, 5u), TAGDATA_FILENAME, 0, TAGDATA_UINT},
        {With(&CTagValue::SetUInt, 5u), TAGDATA_FLOAT, 0, TAGDATA_UINT},
        {With(&CTagValue::SetInt, 5), TAGDATA_UINTARRAY, 0, TAGDATA_INT},
        {With(&CTagValue::SetFloat, 5.0f), TAGDATA_INT, 0, TAGDATA_FLOAT},
        {With(&CTagValue::SetDuration, 5.0f), TAGDATA_UINT, 0, TAGDATA_DURATION},
        {With(&CTagValue::SetDate, CTime(5)), TAGDATA_UINT, 0, TAGDATA_DATE},
        {Texts({L"1"}), TAGDATA_UINTARRAY, 0, TAGDATA_STRINGARRAY},
        {With(&CTagValue::SetCustomData, CCustomData()), TAGDATA_STRINGARRAY, 0, TAGDATA_CUSTOMDATA},
        {Text(L"1"), _TAGDATA_INFO(0x20), 0, TAGDATA_TEXT},
        {CTagValue(), TAGDATA_NONE, 0, TAGDATA_NONE},
    };
    for (const Row& row : rows) {
        CTagValue value = row.value;
        EXPECT_EQ(value.HandleParametersAndConvertToType(row.wanted, L""), row.result);
        EXPECT_EQ(value.GetDataType(), row.kind) << std::hex << row.wanted;
    }
}
