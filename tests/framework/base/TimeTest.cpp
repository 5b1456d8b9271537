#include "framework/base/Time.h"
#include "framework/base/Exception.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

TEST(Time, UtcGoldens)
{
    // From `date -u -d @N`.
    const std::pair<std::int64_t, LPCTSTR> rows[] = {
        {0, L"1970-01-01 00:00:00 Thursday Thu January Jan 001 4 70 12 AM"},
        {951827696, L"2000-02-29 12:34:56 Tuesday Tue February Feb 060 2 00 12 PM"},
        {1062424800, L"2003-09-01 14:00:00 Monday Mon September Sep 244 1 03 02 PM"},
        {4294967296, L"2106-02-07 06:28:16 Sunday Sun February Feb 038 0 06 06 AM"},
        {32535215999, L"3000-12-31 23:59:59 Wednesday Wed December Dec 365 3 00 11 PM"},
    };
    for (const auto& [moment, text] : rows)
        EXPECT_EQ(CTime(moment).FormatGmt(L"%Y-%m-%d %H:%M:%S %A %a %B %b %j %w %y %I %p"), CString(text));
    EXPECT_EQ(CTime(std::int64_t{0}).FormatGmt(L"à %d%% 日"), CString(L"à 01% 日"));
    EXPECT_EQ(CTime(std::int64_t{0}).FormatGmt(L"%"), CString(L""));
}

TEST(Time, FileTimesCountFrom1601)
{
    const FILETIME file = vak::detail::FileTimeFromTime(CTime(std::int64_t{1062424800}));
    // (1062424800 + 11644473600) * 10^7 = 0x01C37091554A3000
    EXPECT_EQ(file.dwHighDateTime, 0x01C37091u);
    EXPECT_EQ(file.dwLowDateTime, 0x554A3000u);
    EXPECT_EQ(CTime(FILETIME{file.dwLowDateTime + 9999999, file.dwHighDateTime}).GetTime(), 1062424800);
    EXPECT_FALSE(CTime::IsValidFILETIME(FILETIME{0, 0}));
    EXPECT_FALSE(CTime::IsValidFILETIME(FILETIME{0xFFFFFFFF, 0xFFFFFFFF}));
    EXPECT_EQ(CTime(FILETIME{0xFFFFFFFF, 0xFFFFFFFF}), CTime());
}

TEST(Time, LocalComponentsComeBack)
{
    // Winter and summer, whatever the zone; 12:30 is nowhere a hour that a change of clocks repeats.
    for (int month = 1; month <= 12; ++month) {
        const CTime time(2003, month, 17, 12, 30, 59);
        const int parts[] = {time.GetYear(), time.GetMonth(),  time.GetDay(),
                             time.GetHour(), time.GetMinute(), time.GetSecond()};
        EXPECT_EQ(std::vector(parts, parts + 6), (std::vector{2003, month, 17, 12, 30, 59}));
        SYSTEMTIME system;
        ASSERT_TRUE(time.GetAsSystemTime(system));
        EXPECT_EQ(CTime(system), time);
        EXPECT_EQ(system.wDayOfWeek + 1, time.GetDayOfWeek());
    }
    EXPECT_EQ(CTime(2003, 9, 17, 12, 0, 0).GetDayOfWeek(), 4) << "a Wednesday";
    EXPECT_EQ(CTime(std::int64_t{-1}).GetYear(), 0);
    EXPECT_EQ(CTime(std::int64_t{0x793407000}).Format(L"%Y"), CString(L""));
    EXPECT_THROW(CTime(2003, 13, 1, 0, 0, 0), CInvalidArgException*);
}

} // namespace
