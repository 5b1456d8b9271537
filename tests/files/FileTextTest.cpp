#include "files/FileText.h"

#include "framework/base/StringTable.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

/// What `write` gives in French and in English.
template <class Write>
CString Both(Write write)
{
    const LANGID before = vak::TextLanguage();
    vak::SetTextLanguage(1036);
    const CString french = write();
    vak::SetTextLanguage(1033);
    const CString english = write();
    vak::SetTextLanguage(before);
    return french + L" | " + english;
}

CString DateTexts(const CTime& date, int withDate, int withHour, int longText)
{
    return Both([&] { return fileGetDateText(date, withDate, withHour, longText); });
}

} // namespace

TEST(FileText, WritesDatesByTheThreeFlags)
{
    const CTime date(2003, 9, 1, 10, 0, 59), last(1999, 12, 31, 9, 5, 0);
    EXPECT_EQ(DateTexts(date, 0, 1, 1), L"10:00 | 10:00");
    EXPECT_EQ(DateTexts(date, 1, 1, 0), L"01/09/2003 10:00 | 01/09/2003 10:00");
    EXPECT_EQ(DateTexts(date, 1, 0, 1), L"Lundi 1er Septembre 2003 | Monday 1 September 2003");
    EXPECT_EQ(DateTexts(last, 1, 1, 1), L"Vendredi 31 Décembre 1999 09:05 | Friday 31 December 1999 09:05");
    EXPECT_EQ(DateTexts(date, 0, 0, 1), L" | ");
    EXPECT_TRUE(fileGetDateText(CTime(INT64_MAX), 1, 1, 1).IsEmpty());
    EXPECT_TRUE(fileGetDateText(CTime(-1), 1, 1, 0).IsEmpty());
}

TEST(FileText, NamesEveryDayAndMonthSoThatBothLanguagesReadThemBack)
{
    const LANGID before = vak::TextLanguage();
    for (int month = 1; month <= 24; ++month) {
        const CTime date(2023, (month + 1) / 2, (month + 1) / 2, 23, 59, 0); // 1 January 2023 is a Sunday
        vak::SetTextLanguage(month % 2 ? 1036 : 1033);
        const CString text = fileGetDateText(date, 1, 1, 1);
        vak::SetTextLanguage(month % 2 ? 1033 : 1036);
        CTime read;
        EXPECT_EQ(fileTextToTime(text, read), 1) << CStringA(text).GetString();
        EXPECT_EQ(read.GetTime(), date.GetTime());
    }
    vak::SetTextLanguage(before);
}

TEST(FileText, ReadsWhatPeopleTypeAndNothingElse)
{
    const std::pair<const wchar_t*, CTime> good[] = {
        {L" 1/9/2003 ", CTime(2003, 9, 1, 0, 0, 0)},
        {L"29/02/2000 0:00:07", CTime(2000, 2, 29, 0, 0, 7)},
        {L"mardi 1ER août 2023", CTime(2023, 8, 1, 0, 0, 0)},
        {L"Sunday 1 MAY 2023 9:30", CTime(2023, 5, 1, 9, 30, 0)},
    };
    CTime read;
    for (const auto& [text, time] : good) {
        EXPECT_EQ(fileTextToTime(text, read), 1) << CStringA(text).GetString();
        EXPECT_EQ(read.GetTime(), time.GetTime());
    }
    EXPECT_EQ(fileTextToTime(L"13:45", read), 1);
    EXPECT_EQ(fileGetDateText(read, 0, 1, 0), CString(L"13:45"));
    EXPECT_LT(CTime::GetCurrentTime().GetTime() - read.GetTime(), 2 * 86400);

    const CString bad = L"| |29/02/2003|31/04/2003|0/1/2003|1/13/2003|1/1|1/1/1969|1/1/9999|1/1/20033|"
                        L"1/1/2003/4|+1/1/2003|1/1/2003 24:00|10:60|10|10:00 1/1/2003|Lundi 1er Septembre|"
                        L"Lundi 1 September 2003|x 1 May 2003|Monday 1 May 2003 10:00 x|Monday  1 May 2003|";
    for (int start = 0, end = 0; (end = bad.Find(L'|', start)) >= 0; start = end + 1) {
        const CString text = bad.Mid(start, end - start);
        CTime time(5);
        EXPECT_EQ(fileTextToTime(text, time), 0) << CStringA(text).GetString();
        EXPECT_EQ(time.GetTime(), 5);
    }
}

TEST(FileText, WritesSizesInTheLargestUnit)
{
    const std::pair<ULONGLONG, const wchar_t*> rows[] = {
        {0, L"0 octet | 0 bytes"},       {1, L"1 octet | 1 byte"},
        {1536, L"1,50 Ko | 1.50 KB"},    {1048570, L"1023,99 Ko | 1023.99 KB"}, // 1023.9941
        {1048571, L"1,00 Mo | 1.00 MB"}, // 1023.9951, rounded up to the next unit
        {1053818, L"1,00 Mo | 1.00 MB"}, // the last below 1.005
        {1053819, L"1,01 Mo | 1.01 MB"}, {18446744073709551615u, L"16,00 Eo | 16.00 EB"},
    };
    for (const auto& [bytes, texts] : rows)
        EXPECT_EQ(Both([&] { return fileGetSizeText(bytes); }), texts);
}
