#include "framework/base/Time.h"
#include "tests/support/Print.h"
#include "tests/support/TagTexts.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace vak::test;

namespace {

/// What a value becomes: the whole slot of a number, anything else as text. "failed" for a conversion that is
/// refused and left the kind and the text alone.
CString Converted(CTagValue value, _TAGDATA_INFO wanted)
{
    const CTagValue before = value;
    if (value.HandleParametersAndConvertToType(wanted, L"") == 0)
        return value.GetDataType() == before.GetDataType() && value.GetText() == before.GetText() ? L"failed"
                                                                                                  : L"";
    if (vak::TagStorage(wanted) != TAGDATA_UINT || value.GetDataType() != wanted)
        return AsText(value);
    CString slot;
    slot.Format(L"%I64u", value.GetFileSize());
    return slot;
}

template <class Argument, class Data>
CString Shown(void (CTagValue::*set)(Argument), const Data& data, _TAGDATA_INFO wanted = TAGDATA_TEXT)
{
    CTagValue value;
    (value.*set)(data);
    return InBoth([&] { return Converted(value, wanted); });
}

} // namespace

TEST(TagConversion, WritesWhatSettersTakeInBothLanguages)
{
    const std::pair<CString, const wchar_t*> rows[] = {
        {Shown(&CTagValue::SetUInt, 4294967295u), L"4294967295"},
        {Shown(&CTagValue::SetInt, -5), L"-5"},
        {Shown(&CTagValue::SetBool, -2), L"Vrai | True"},
        {Shown(&CTagValue::SetBool, 0), L"Faux"},
        {Shown(&CTagValue::SetFileSize, 1536u), L"1,50 Ko | 1.50 KB"},
        {Shown(&CTagValue::SetColor, 0x00FF0A30u), L"R :  48  V : 10  B : 255 | R :  48  G : 10  B : 255"},
        {Shown(&CTagValue::SetFloat, -0.5f), L"-0.500"},
        {Shown(&CTagValue::SetDuration, INFINITY), L"5124095576030431 h 00 mn 15 s"},
        {Shown(&CTagValue::SetLength, 10.5f), L"1.05 cm"},
        {Shown(&CTagValue::SetFloat, NAN, TAGDATA_BOOL), L"0"},
        {Shown(&CTagValue::SetFloat, -INFINITY, TAGDATA_UINT), L"9223372036854775808"},
        {Shown(&CTagValue::SetFloat, INFINITY, TAGDATA_UINTARRAY), L"-1; "}};
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(text, CString(expected));
}

TEST(TagConversion, ReadsWhatATextBeginsWithAndConvertsFromThere)
{
    struct Row
    {
        _TAGDATA_INFO from;
        const wchar_t* texts; ///< a "|" ends each
        _TAGDATA_INFO wanted;
        const wchar_t* results;
    };
    const Row rows[] = {
        {TAGDATA_FILENAME, L" \t+42 km|0x10|a1||18446744073709551616|-1|", TAGDATA_UINT,
         L"42|0|failed|failed|failed|18446744073709551615|"},
        {TAGDATA_TEXT, L"9223372036854775807|9223372036854775808|-00012.9|- 1|-9223372036854775809|",
         TAGDATA_INT, L"9223372036854775807|failed|18446744073709551604|failed|failed|"},
        {TAGDATA_TEXT, L"-9223372036854775808|", TAGDATA_INT, L"9223372036854775808|"},
        {TAGDATA_TEXT, L"\n-.25mm|+3.|2e1.5|1E-2|1,5|0e99|", TAGDATA_FLOAT,
         L"-0.250|3.000|20.000|0.010|1.000|0.000|"},
        {TAGDATA_TEXT, L"2e|2e+|.|inf|1e39|1e-99|", TAGDATA_FLOAT,
         L"failed|failed|failed|failed|failed|failed|"},
        {TAGDATA_TEXT, L"a ; b ;  ; c|  a;b ; c ;d ; | ; |a ; ; b|", TAGDATA_STRINGARRAY,
         L"a ; b ; c ; |a;b ; c ;d ; ||a ; ; b ; |"},
        {TAGDATA_TEXT, L" 1 ; x ; -2 ; 3.9 ; 4294967295 ; 7kg|", TAGDATA_UINTARRAY, L"1; -2; 3; 7; |"},
        {TAGDATA_TEXT, L"1.5 ; .5e1 ; 2e ;  -3 |", TAGDATA_FLOATARRAY, L"1.500000; 5.000000; -3.000000; |"},
        {TAGDATA_TEXT, L"lundi 1er septembre 2003 10:00:59|31/02/2003|", TAGDATA_DATE,
         L"01/09/2003 10:00|failed|"},
        // As many bytes as characters; what is not printable is a blank.
        {TAGDATA_TEXT, L"\x6241\x0043x|\x01E9\x7F21~x||", TAGDATA_CUSTOMINFO, L"AbC|  !\x20||"},
        {TAGDATA_DURATION, L"59.5|60|75.9|3600|3725|", TAGDATA_TEXT,
         L"59.50 s|60.00 s|1:15 mn|60:00 mn|01 h 02 mn 05 s|"},
        {TAGDATA_LENGTH, L"1500|1000|10|", TAGDATA_TEXT, L"1.50 m|100.00 cm||"},
        {TAGDATA_LENGTH, L"75|", TAGDATA_DURATION, L"1:15 mn|"},
        {TAGDATA_RESOLUTION, L"72.5|", TAGDATA_TEXT, L"72.500000 dpi|"},
        {TAGDATA_FLOAT, L"3.99|13835058055282163712|-0.5|-1.5|", TAGDATA_BOOL,
         L"3|13835058055282163712|0|18446744073709551615|"},
        {TAGDATA_FLOAT, L"3.9|3e9|5e9|-3e9|", TAGDATA_UINTARRAY, L"3; |-1294967296; |-1; |-2147483648; |"},
        {TAGDATA_FLOAT, L"0.5|", TAGDATA_FLOATARRAY, L"0.500000; |"},
        {TAGDATA_UINT, L"8589934593|", TAGDATA_UINTARRAY, L"1; |"},
        {TAGDATA_UINT, L"8589934592|", TAGDATA_FLOATARRAY, L"8589934592.000000; |"},
        {TAGDATA_UINT, L"5|", TAGDATA_COLOR, L"5|"},
        {TAGDATA_FLOAT, L"5|", TAGDATA_INT, L"failed|"},
        {TAGDATA_DURATION, L"5|", TAGDATA_UINT, L"failed|"},
        {TAGDATA_UINT, L"5|", TAGDATA_FLOAT, L"failed|"},
        {TAGDATA_UINT, L"5|", TAGDATA_FILENAME, L"failed|"},
        {TAGDATA_INT, L"5|", TAGDATA_UINTARRAY, L"failed|"},
        {TAGDATA_CUSTOMDATA, L"5|", TAGDATA_TEXT, L"failed|"},
        {TAGDATA_INT, L"5|", TAGDATA_NONE, L"5|"}};
    for (const auto& [from, texts, wanted, expected] : rows) {
        CString results;
        const CString list = texts;
        for (int start = 0, end; (end = list.Find(L'|', start)) >= 0; start = end + 1)
            results += Converted(Read(from, list.Mid(start, end - start)), wanted) + L'|';
        EXPECT_EQ(results, CString(expected));
    }
    EXPECT_EQ(CTagValue().HandleParametersAndConvertToType(TAGDATA_NONE, L""), 0);
}
