#include "framework/base/String.h"

#include "framework/base/Exception.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <limits>

namespace {

template <class C, class... Arguments>
CStringT<C> Formatted(const C* format, Arguments... arguments)
{
    CStringT<C> text;
    text.Format(format, arguments...);
    return text;
}

} // namespace

TEST(Format, IntegersFollowFlagsWidthAndPrecision)
{
    EXPECT_EQ(Formatted(L"[% d|%+d|%+i|% d]", 5, 5, -5, -5), L"[ 5|+5|-5|-5]");
    EXPECT_EQ(Formatted(L"[%5d|%-5d|%05d|%-05d|%5.3d|%05.3d]", 42, 42, -42, 42, -42, 42),
              L"[   42|42   |-0042|42   | -042|  042]");
    EXPECT_EQ(Formatted(L"[%.0d|%.0d|%5.0x]", 0, 1, 0), L"[|1|     ]");
    EXPECT_EQ(Formatted(L"[%*d|%*d|%.*d|%.*d]", 4, 7, -4, 7, 3, 7, -3, 7), L"[   7|7   |007|7]");
    EXPECT_EQ(Formatted(L"%u %o %x %X %#o %#x %#X %#x %#o", 3000000000u, 8, 255, 255, 8, 255, 255, 0, 0),
              L"3000000000 10 ff FF 010 0xff 0XFF 0 0");
    EXPECT_EQ(Formatted(L"%d %I64d", INT_MIN, LLONG_MIN), L"-2147483648 -9223372036854775808");
}

TEST(Format, SizesMeanTheSameOnEveryBuild)
{
    EXPECT_EQ(Formatted(L"%hd %hhd %hu %hx", 0x1FFFF, 0x1FF, -1, -1), L"-1 -1 65535 ffff");
    EXPECT_EQ(Formatted(L"%ld %lu %I32u %I32d", static_cast<LONG>(-1), static_cast<DWORD>(-1), -1, -1),
              L"-1 4294967295 4294967295 -1");
    EXPECT_EQ(Formatted(L"%lld %I64u %jx %zu %Iu %td", -1LL, ~0ULL, INTMAX_MAX, sizeof(int), sizeof(int),
                        static_cast<std::ptrdiff_t>(-2)),
              L"-1 18446744073709551615 7fffffffffffffff 4 4 -2");
    EXPECT_EQ(Formatted(L"%p|%20p", reinterpret_cast<void*>(0xAB12), nullptr),
              L"000000000000AB12|    0000000000000000");
}

TEST(Format, TextWidthFollowsTheStringAndItsPrefix)
{
    EXPECT_EQ(Formatted(L"%s %S %hs %ls %ws %hS %lS", L"w\x2603", "n\xE9", "h\xE9", L"l", L"w", "x", L"y"),
              L"w\x2603 n\x00E9 h\x00E9 l w x y");
    EXPECT_EQ(Formatted("%s %S %hs %ls", "n\xE9", L"\x20AC", "h", L"l"), "n\xE9 \x80 h l");
    EXPECT_EQ(Formatted(L"%c%C%hc%lc%c", 0x2603, 0xE9, 0x80, 0x2603, 0),
              CString(L"\x2603\x00E9\x20AC\x2603\0", 5));
    EXPECT_EQ(Formatted("%c%C%lc", 0xE9, 0x20AC, 0x20AC), "\xE9\x80\x80");
    EXPECT_EQ(Formatted(L"[%5s|%-5s|%.2s|%5.1s|%05s|%3c]", L"ab", L"ab", L"abc", L"abc", L"ab", 'x'),
              L"[   ab|ab   |ab|    a|000ab|  x]");
    const wchar_t unended[] = {L'a', L'b'};
    EXPECT_EQ(Formatted(L"%.2s", unended), L"ab");
    const LPCWSTR none = nullptr;
    EXPECT_EQ(Formatted(L"%s %S %.3s", none, none, none), L"(null) (null) (nu");
}

TEST(Format, RealsFollowTheCNotations)
{
    EXPECT_EQ(Formatted(L"%f %.0f %.3f %#.0f %e %.2E", 1.5, 2.5, -0.0005, 3.0, 12345.678, 0.00012),
              L"1.500000 2 -0.001 3. 1.234568e+04 1.20E-04");
    EXPECT_EQ(
        Formatted(L"%g %g %g %g %G %#g %.3g %.0g", 100000.0, 1e6, 0.0001, 1e-5, 1e-10, 1.0, 1234.5, 0.06),
        L"100000 1e+06 0.0001 1e-05 1E-10 1.00000 1.23e+03 0.06");
    EXPECT_EQ(Formatted(L"[%8.2f|%-8.2f|%08.2f|%+.1f|% .1f]", -1.25, 1.25, -1.25, 1.25, 1.25),
              L"[   -1.25|1.25    |-0001.25|+1.2| 1.2]");
    EXPECT_EQ(Formatted(L"%a %.1A %.0a %+a", 1.0, 248.0, 1.0, -0.5),
              L"0x1.0000000000000p+0 0X1.FP+7 0x1p+0 -0x1.0000000000000p-1");
    EXPECT_EQ(Formatted(L"%.1f", std::numeric_limits<double>::max()).GetLength(), 311);
    EXPECT_EQ(Formatted(L"%.30f %Lf", 0.1, 1.5L), L"0.100000000000000005551115123126 1.500000");
}

TEST(Format, InfinitiesAreSpelledAlikeAndNeverFilledWithZeros)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Formatted(L"%f %E %+g %06.1f %a", infinity, -infinity, infinity, infinity, infinity),
              L"inf -INF +inf    inf inf");
    EXPECT_EQ(Formatted(L"%f %G %g", none, none, -none), L"nan NAN nan");
}

TEST(Format, OddSequencesAreCopiedAndDangerousOnesRefused)
{
    EXPECT_EQ(Formatted(L"100%% %y%"), L"100% y");
    CString text(L"kept");
    int written = 0;
    EXPECT_THROW(text.Format(L"%n", &written), CInvalidArgException*);
    EXPECT_THROW(text.Format(L"%2000000d", 1), CInvalidArgException*);
    EXPECT_THROW(text.Format(L"%*d", INT_MIN, 1), CInvalidArgException*);
    EXPECT_THROW(text.AppendFormat(static_cast<LPCWSTR>(nullptr)), CInvalidArgException*);
    EXPECT_EQ(text, L"kept");
}

TEST(Format, ArgumentsMayPointIntoTheString)
{
    CString text(L"x");
    text.Format(L"<%s that does not fit inside of the object>", text.GetString());
    text.AppendFormat(L"%s%d", text.GetString(), 1);
    EXPECT_EQ(text, L"<x that does not fit inside of the object><x that does not fit inside of the object>1");
}
