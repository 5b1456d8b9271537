#include "core/CustomData.h"
#include "framework/base/Time.h"
#include "tests/support/Print.h"
#include "tests/support/TagTexts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>

using namespace std::string_view_literals;
using namespace vak::test;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// What a value becomes: the whole slot of a number, anything else as text. "failed" for a conversion that is
/// refused and left the kind and the text alone.
CString Converted(CTagValue value, _TAGDATA_INFO wanted)
{
    const _TAGDATA_INFO before = value.GetDataType();
    const CString text = value.GetText();
    if (value.HandleParametersAndConvertToType(wanted, L"") == 0)
        return value.GetDataType() == before && value.GetText() == text ? L"failed" : L"changed";
    if (value.GetDataType() != wanted)
        return L"not labelled";
    CString shown;
    if (vak::TagStorage(wanted) == TAGDATA_UINT)
        shown.Format(L"%I64u", value.GetFileSize());
    else if (vak::TagStorage(wanted) == TAGDATA_FLOAT)
        shown.Format(L"%g", double{value.GetFloat()});
    else
        shown = AsText(value);
    return shown;
}

/// What the numbers become that a setter takes.
CString Converted(void (CTagValue::*set)(float), std::initializer_list<float> numbers, _TAGDATA_INFO wanted)
{
    CString results;
    for (const float number : numbers)
        results += Converted(With(set, number), wanted) + L'|';
    return results;
}

/// What the texts in `list` become, every one of which a "|" ends.
CString Read(_TAGDATA_INFO kind, const CString& list)
{
    CString results;
    for (int start = 0, end; (end = list.Find(L'|', start)) >= 0; start = end + 1)
        results += Converted(TextValue(list.Mid(start, end - start)), kind) + L'|';
    return results;
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
        {With(&CTagValue::SetDate, CTime(2003, 9, 1, 10, 0, 59)), L"01/09/2003 10:00"},
        {With(&CTagValue::SetDate, CTime(-1)), L""},
        {BlockValue("A\x01\xE9z\0~!\x7F"sv), L"A  z ~! "},
        {BlockValue({}), L""},
        {With(&CTagValue::SetCustomData, CCustomData()), L"failed"},
        {CTagValue(), L"failed"}};
    for (const auto& [value, text] : rows)
        EXPECT_EQ(InBoth([&] { return AsText(value); }), CString(text)) << std::hex << value.GetDataType();
    const std::pair<CString, const wchar_t*> numbers[] = {
        {Converted(&CTagValue::SetFloat, {2.25f, -0.5f}, TAGDATA_TEXT), L"2.250|-0.500|"},
        {Converted(&CTagValue::SetResolution, {72.5f}, TAGDATA_TEXT), L"72.500000 dpi|"},
        {Converted(&CTagValue::SetDuration, {59.5f, 60, 75.9f, 3600, 3725, -75, kInfinity}, TAGDATA_TEXT),
         L"59.50 s|60.00 s|1:15 mn|60:00 mn|01 h 02 mn 05 s|-75.00 s|5124095576030431 h 00 mn 15 s|"},
        {Converted(&CTagValue::SetLength, {1500, 1000, 250, 10.5f, 10, -1500, std::nanf("")}, TAGDATA_TEXT),
         L"1.50 m|100.00 cm|25.00 cm|1.05 cm||||"}};
    for (const auto& [texts, expected] : numbers)
        EXPECT_EQ(texts, CString(expected));
}

TEST(TagConversion, ReadsWhatATextBeginsWith)
{
    const std::pair<CString, const wchar_t*> rows[] = {
        {Read(TAGDATA_UINT, L" \t+42 km|0x10|a1||18446744073709551616|-1|"),
         L"42|0|failed|failed|failed|18446744073709551615|"},
        {Read(TAGDATA_FILESIZE, L"18446744073709551615|"), L"18446744073709551615|"},
        {Read(TAGDATA_INT, L"9223372036854775807|9223372036854775808|-00012.9|- 1|"),
         L"9223372036854775807|failed|18446744073709551604|failed|"},
        {Read(TAGDATA_INT, L"-9223372036854775808|-9223372036854775809|"), L"9223372036854775808|failed|"},
        {Read(TAGDATA_LENGTH, L"\n-.25mm|+3.|2e1.5|1E-2|1,5|0e99|3.4e38|"), L"-0.25|3|20|0.01|1|0|3.4e+38|"},
        {Read(TAGDATA_FLOAT, L"2e|2e+|.|inf|1e39|1e-99|"), L"failed|failed|failed|failed|failed|failed|"},
        {Read(TAGDATA_STRINGARRAY, L"a ; b ;  ; c|  a;b ; c ;d ; | ; |a ; ; b|"),
         L"a ; b ; c ; |a;b ; c ;d ; ||a ; ; b ; |"},
        {Read(TAGDATA_UINTARRAY, L" 1 ; x ; -2 ; 3.9 ; 4294967295 ; 7kg|"), L"1; -2; 3; 7; |"},
        {Read(TAGDATA_FLOATARRAY, L"1.5 ; .5e1 ; 2e ; 1e39 ;  -3 |"), L"1.500000; 5.000000; -3.000000; |"},
        {Read(TAGDATA_DATE, L"lundi 1er septembre 2003 10:00|31/02/2003|"), L"01/09/2003 10:00|failed|"},
        {Read(TAGDATA_CUSTOMINFO, L"\x6241\x0043x|"), L"AbC|"}, // as many bytes as characters
        {Read(_TAGDATA_INFO(0x20), L"1|"), L"failed|"}};
    for (const auto& [results, expected] : rows)
        EXPECT_EQ(results, CString(expected));
}

TEST(TagConversion, CutsFloatsToIntegersWhateverTheyAre)
{
    const auto cut = [](std::initializer_list<float> numbers, _TAGDATA_INFO wanted) {
        return Converted(&CTagValue::SetFloat, numbers, wanted);
    };
    EXPECT_EQ(cut({3.99f, 0x1.8p63f, -0.5f, kInfinity}, TAGDATA_UINT),
              CString(L"3|13835058055282163712|0|18446744073709551615|"));
    EXPECT_EQ(cut({-1.5f, -kInfinity, std::nanf("")}, TAGDATA_BOOL),
              CString(L"18446744073709551615|9223372036854775808|0|"));
    EXPECT_EQ(cut({3.9f, 3e9f, 5e9f, -3e9f}, TAGDATA_UINTARRAY),
              CString(L"3; |-1294967296; |-1; |-2147483648; |"));
    EXPECT_EQ(cut({0.5f}, TAGDATA_FLOATARRAY) + cut({5}, TAGDATA_INT), CString(L"0.500000; |failed|"));
}

TEST(TagConversion, OnlyRelabelsWithinAStorageClassAndRefusesTheOtherPairs)
{
    CTagValue largest = TextValue(L"18446744073709551615");
    EXPECT_EQ(largest.HandleParametersAndConvertToType(TAGDATA_UINT, L""), 1);
    EXPECT_EQ(Converted(largest, TAGDATA_UINTARRAY), CString(L"-1; "));
    EXPECT_EQ(Converted(largest, TAGDATA_FLOATARRAY), CString(L"18446744073709551616.000000; "));
    EXPECT_EQ(Converted(TextValue(L"a"), TAGDATA_FILENAME), CString(L"a"));
    EXPECT_EQ(Converted(With(&CTagValue::SetBool, 5), TAGDATA_UINT), CString(L"5"));
    EXPECT_EQ(Converted(With(&CTagValue::SetLength, 5.0f), TAGDATA_DURATION), CString(L"5"));
    const std::pair<CTagValue, _TAGDATA_INFO> refused[] = {
        {With(&CTagValue::SetUInt, 5u), TAGDATA_FILENAME},
        {With(&CTagValue::SetUInt, 5u), TAGDATA_FLOAT},
        {With(&CTagValue::SetInt, 5), TAGDATA_UINTARRAY},
        {With(&CTagValue::SetDuration, 5.0f), TAGDATA_UINT},
        {With(&CTagValue::SetDate, CTime(5)), TAGDATA_UINT},
        {With(&CTagValue::SetCustomData, CCustomData()), TAGDATA_STRINGARRAY}};
    for (const auto& [value, wanted] : refused)
        EXPECT_EQ(Converted(value, wanted), CString(L"failed")) << std::hex << wanted;

    CTagValue value = With(&CTagValue::SetInt, 5);
    EXPECT_EQ(value.HandleParametersAndConvertToType(_TAGDATA_INFO(vak::kTagNoParameters), L""), 1);
    EXPECT_EQ(value.GetDataType(), TAGDATA_INT) << "no kind is wanted";
    EXPECT_EQ(CTagValue().HandleParametersAndConvertToType(TAGDATA_NONE, L""), 0);
}
