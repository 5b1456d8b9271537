#include "files/FileText.h"

#include "framework/base/StringTable.h"

#include <gtest/gtest.h>

namespace {

/// The library's texts in another language for the length of a test.
class Language
{
public:
    explicit Language(LANGID language) : m_before(vak::TextLanguage()) { vak::SetTextLanguage(language); }
    ~Language() { vak::SetTextLanguage(m_before); }
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;

private:
    LANGID m_before;
};

} // namespace

TEST(FileText, WritesDatesByTheThreeFlags)
{
    const CTime date(2003, 9, 1, 10, 0, 59), last(1999, 12, 31, 9, 5, 0);
    struct
    {
        const CTime& date;
        int withDate;
        int withHour;
        int longText;
        const wchar_t* french;
        const wchar_t* english;
    } const rows[] = {
        {date, 1, 0, 0, L"01/09/2003", L"01/09/2003"},
        {date, 0, 1, 0, L"10:00", L"10:00"},
        {date, 0, 1, 1, L"10:00", L"10:00"},
        {date, 1, 1, 0, L"01/09/2003 10:00", L"01/09/2003 10:00"},
        {date, 1, 0, 1, L"Lundi 1er Septembre 2003", L"Monday 1 September 2003"},
        {date, 1, 1, 1, L"Lundi 1er Septembre 2003 10:00", L"Monday 1 September 2003 10:00"},
        {last, 1, 1, 1, L"Vendredi 31 D\u00E9cembre 1999 09:05", L"Friday 31 December 1999 09:05"},
        {date, 0, 0, 1, L"", L""},
    };
    for (const auto& row : rows) {
        const Language french(1036);
        EXPECT_EQ(fileGetDateText(row.date, row.withDate, row.withHour, row.longText), CString(row.french));
        const Language english(1033);
        EXPECT_EQ(fileGetDateText(row.date, row.withDate, row.withHour, row.longText), CString(row.english));
    }
    EXPECT_TRUE(fileGetDateText(CTime(INT64_MAX), 1, 1, 1).IsEmpty());
    EXPECT_TRUE(fileGetDateText(CTime(-1), 1, 1, 0).IsEmpty());
}

TEST(FileText, NamesEveryDayAndMonthSoThatBothLanguagesReadThemBack)
{
    for (LANGID language : {1036, 1033}) {
        const Language set(language);
        for (int month = 1; month <= 12; ++month) {
            const CTime date(2023, month, month, 23, 59, 0); // 1 January 2023 is a Sunday
            const CString text = fileGetDateText(date, 1, 1, 1);
            const Language other(language == 1036 ? 1033 : 1036);
            CTime read;
            EXPECT_EQ(fileTextToTime(text, read), 1) << CStringA(text).GetString();
            EXPECT_EQ(read.GetTime(), date.GetTime());
        }
    }
}

TEST(FileText, ReadsWhatPeopleTypeAndNothingElse)
{
    struct
    {
        const wchar_t* text;
        CTime time;
    } const good[] = {
        {L" 1/9/2003 ", CTime(2003, 9, 1, 0, 0, 0)},
        {L"29/02/2000 0:00:07", CTime(2000, 2, 29, 0, 0, 7)},
        {L"mardi 1ER ao\x00DBt 2023", CTime(2023, 8, 1, 0, 0, 0)},
        {L"Sunday 1 MAY 2023 9:30", CTime(2023, 5, 1, 9, 30, 0)},
    };
    CTime read;
    for (const auto& row : good) {
        EXPECT_EQ(fileTextToTime(row.text, read), 1) << CStringA(row.text).GetString();
        EXPECT_EQ(read.GetTime(), row.time.GetTime()) << CStringA(row.text).GetString();
    }
    EXPECT_EQ(fileTextToTime(L"13:45", read), 1);
    EXPECT_EQ(fileGetDateText(read, 0, 1, 0), CString(L"13:45"));
    EXPECT_LT(CTime::GetCurrentTime().GetTime() - read.GetTime(), 2 * 86400);

    const CString bad = L"| |29/02/2003|31/04/2003|0/1/2003|1/13/2003|1/1|1/1/1969|1/1/9999|1/1/20033|"
                        L"1/1/2003/4|+1/1/2003|1/1/2003 24:00|10:60|10|10:00 1/1/2003|Lundi 1er Septembre|"
                        L"Lundi 1 September 2003|x 1 May 2003|Monday 1 May 2003 10:00 x|Monday  1 May 2003";
    for (int start = 0, end = 0; end >= 0; start = end + 1) {
        end = bad.Find(L'|', start);
        const CString text = end < 0 ? bad.Mid(start) : bad.Mid(start, end - start);
        CTime time(5);
        EXPECT_EQ(fileTextToTime(text, time), 0) << CStringA(text).GetString();
        EXPECT_EQ(time.GetTime(), 5);
    }
}

TEST(FileText, WritesSizesInTheLargestUnit)
{
    struct
    {
        ULONGLONG bytes;
        const wchar_t* french;
        const wchar_t* english;
    } const rows[] = {
        {0, L"0 octet", L"0 bytes"},
        {1, L"1 octet", L"1 byte"},
        {1023, L"1023 octets", L"1023 bytes"},
        {1024, L"1,00 Ko", L"1.00 KB"},
        {1536, L"1,50 Ko", L"1.50 KB"},
        {1029, L"1,00 Ko", L"1.00 KB"},
        {1030, L"1,01 Ko", L"1.01 KB"},          // 1.00586
        {1048570, L"1023,99 Ko", L"1023.99 KB"}, // 1023.9941
        {1048571, L"1,00 Mo", L"1.00 MB"},       // 1023.9951, rounded up to the next unit
        {1053819, L"1,01 Mo", L"1.01 MB"},       // the first beyond 1.005
        {1053818, L"1,00 Mo", L"1.00 MB"},
        {5368709120, L"5,00 Go", L"5.00 GB"},
        {18446744073709551615u, L"16,00 Eo", L"16.00 EB"},
    };
    for (const auto& row : rows) {
        const Language french(1036);
        EXPECT_EQ(fileGetSizeText(row.bytes), CString(row.french));
        const Language english(1033);
        EXPECT_EQ(fileGetSizeText(row.bytes), CString(row.english));
    }
}
