#include "framework/base/SystemText.h"

#include "framework/base/detail/TextCodec.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <string_view>
#include <thread>
#include <tuple>
#include <vector>

using namespace vak::system;

namespace {

CString Wide(UINT codePage, std::string_view bytes)
{
    CString text(L"left over");
    EXPECT_TRUE(ToWide(codePage, bytes.data(), bytes.size(), text));
    return text;
}

CStringA Narrow(UINT codePage, const CString& text, Unmapped unmapped = Unmapped::PlatformDefault)
{
    CStringA bytes("left over");
    EXPECT_TRUE(ToNarrow(codePage, text, static_cast<std::size_t>(text.GetLength()), bytes, unmapped));
    return bytes;
}

/// A literal with the zeros in it.
template <class C, std::size_t size>
CStringT<C> Whole(const C (&literal)[size])
{
    return CStringT<C>(literal, static_cast<int>(size - 1));
}

constexpr auto kSign = Unmapped::NumberSign;

} // namespace

TEST(SystemText, EveryByteOfTheWesternPagesComesBack)
{
    CStringA bytes;
    for (int i = 0; i < 256; ++i)
        bytes.AppendChar(static_cast<char>(i));
    const std::string_view all(bytes.GetString(), 256);
    for (const UINT page : {1252u, 28591u, 437u, 850u}) {
        const CString wide = Wide(page, all);
        EXPECT_EQ(wide.GetLength(), 256) << page;
        EXPECT_EQ(wide[0x41], L'A') << page;
        EXPECT_EQ(Narrow(page, wide), bytes) << page;
    }
    EXPECT_TRUE(AnsiCodePage() == 1252 && UserAnsiCodePage() == 1252);
    EXPECT_EQ(
        Wide(CP_ACP, all).Mid(0x80, 32),
        L"\x20AC\x0081\x201A\x0192\x201E\x2026\x2020\x2021\x02C6\x2030\x0160\x2039\x0152\x008D\x017D\x008F"
        L"\x0090\x2018\x2019\x201C\x201D\x2022\x2013\x2014\x02DC\x2122\x0161\x203A\x0153\x009D\x017E\x0178");
}

TEST(SystemText, WellFormedUtf8GoesBothWaysAtEveryAlignment)
{
    const CString sample =
        Whole(L"ASCII run, \x00E9\x07FF\x0800\x20AC\xD7FF\xE000\xFFFF \xD800\xDC00\xDBFF\xDFFF end of it\0!");
    const CStringA bytes =
        Whole("ASCII run, \xC3\xA9\xDF\xBF\xE0\xA0\x80\xE2\x82\xAC\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF "
              "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF end of it\0!");
    for (int lead = 0; lead < 9; ++lead) {
        const CString wide = CString(L'x', lead) + sample;
        const CStringA narrow = CStringA('x', lead) + bytes;
        EXPECT_EQ(Wide(CP_UTF8, {narrow.GetString(), static_cast<std::size_t>(narrow.GetLength())}), wide);
        EXPECT_EQ(Narrow(CP_UTF8, wide), narrow);
        EXPECT_EQ(Narrow(CP_UTF8, wide, kSign), narrow);
    }
}

TEST(SystemText, MalformedUtf8BecomesOneReplacementForEachBrokenBeginning)
{
    const std::pair<std::string_view, CString> rows[] = {
        {"\x80\xBFz", L"\xFFFD\xFFFDz"},                   // trails alone
        {"\xC0\x80", L"\xFFFD\xFFFD"},                     // long spelling of 0
        {"\xE0\x9F\xBFz", L"\xFFFD\xFFFD\xFFFDz"},         // long spelling
        {"\xED\xA0\x80", L"\xFFFD\xFFFD\xFFFD"},           // surrogate
        {"\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD\xFFFD"}, // above U+10FFFF
        {"\xF5\xFF", L"\xFFFD\xFFFD"},                     // never a byte of UTF-8
        {"\xE2\x82z", L"\xFFFDz"},                         // broken off, then a letter
        {"\xE2\x82\xE2\x82\xAC", L"\xFFFD\x20AC"},         // broken off, then a character
        {"\xF0\x9F\x98", L"\xFFFD"},                       // broken off by the end
        {"twelve chars\xC3", L"twelve chars\xFFFD"},       // the same behind a run
    };
    for (const auto& [bytes, text] : rows)
        EXPECT_EQ(Wide(CP_UTF8, bytes), text);
    EXPECT_EQ(Narrow(CP_UTF8, L"\xDC00\xD83Dz\xD83D"), "\xEF\xBF\xBD\xEF\xBF\xBDz\xEF\xBF\xBD");
}

TEST(SystemText, WhatTheAnsiPageLacksIsSimilarOrSubstituted)
{
    EXPECT_EQ(Narrow(1252, L"\x0100\x2603\xD83D\xDE00\xFF21"), "A???A");
    EXPECT_EQ(Narrow(1252, L"\x0100\x2603\xD83D\xDE00", kSign), "A###");
    EXPECT_EQ(Narrow(1252, L"e\x0301", Unmapped::PlatformDefault), "e\xB4");
    EXPECT_EQ(Narrow(1252, L"e\x0301S\x030CU\x0308q\x0323", kSign), "\xE9\x8A\xDCq#");
    EXPECT_EQ(Narrow(437, L"\x00E9\x0416", kSign), "\x82#");
}

TEST(SystemText, OtherPagesComeFromTheSystem)
{
    EXPECT_EQ(Wide(932, "a\x82\xA0\x81\x40z"), L"a\x3042\x3000z");
    EXPECT_EQ(Wide(932, "a\x82"), L"a\x30FB") << "broken off";
    EXPECT_EQ(Narrow(932, L"a\x3042\x2603", kSign), "a\x82\xA0#");
    std::string japanese; // longer than any buffer in between
    for (int i = 0; i < 2000; ++i)
        japanese += "\x82\xA0z";
    EXPECT_EQ(Wide(932, japanese).GetLength(), 4000);
    EXPECT_EQ(Narrow(932, Wide(932, japanese)), japanese.c_str());
    EXPECT_EQ(Narrow(65000, L"\x00E9", kSign), "+AOk-") << "takes no substitute";
}

TEST(SystemText, EmptyTextIsFineAndUnknownPagesAreNot)
{
    EXPECT_EQ(Wide(CP_UTF8, "") + Wide(437, "") + Wide(CP_ACP, ""), L"");
    EXPECT_EQ(Narrow(437, L"") + Narrow(1252, L"", kSign), "");
    CString wide(L"x");
    CStringA narrow("x");
    EXPECT_FALSE(ToWide(12345, "a", 1, wide));
    EXPECT_FALSE(ToNarrow(12345, L"a", 1, narrow, kSign));
    EXPECT_TRUE(wide.IsEmpty() && narrow.IsEmpty());
}

TEST(SystemText, PiecesEndBetweenCharacters)
{
    const std::tuple<UINT, std::string_view, std::size_t> rows[] = {
        {CP_UTF8, "", 0},
        {CP_UTF8, "a\xC3\xA9", 0},
        {CP_UTF8, "\xF0\x9F\x98", 3},
        {CP_UTF8, "\x80\x80\x80\x80", 0},
        {CP_UTF8, "a\xFF", 0},
        {1252, "\xC3", 0},
        {932, "\x82\x82", 0},
        {932, "\x82\x82\x82", 1},
        {936, "\xB0\xA1\xB0", 1},
    };
    for (const auto& [page, bytes, tail] : rows)
        EXPECT_EQ(IncompleteTail(page, bytes.data(), bytes.size()), tail) << bytes;
}

TEST(SystemText, FoldsOnlyLettersWhosePairFoldsBack)
{
    const std::pair<wchar_t, wchar_t> pairs[] = {
        {L'z', L'Z'},   {0xE9, 0xC9},     {0xFF, 0x178},    {0x101, 0x100},   {0x3C9, 0x3A9},  {0x436, 0x416},
        {0x586, 0x556}, {0x1E01, 0x1E00}, {0x217F, 0x216F}, {0xFF5A, 0xFF3A}, {0x1F80, 0x1F88}};
    for (const auto& [lower, upper] : pairs)
        EXPECT_TRUE(ToUpper(lower) == upper && ToLower(upper) == lower) << static_cast<int>(lower);
    for (const wchar_t alone : {L'@', L'[', L'\x00B5', L'\x00DF', L'\x00F7', L'\x0130', L'\x0131', L'\x017F',
                                L'\x03C2', L'\x212A', L'\xD801', L'\xDC28'})
        EXPECT_TRUE(ToUpper(alone) == alone && ToLower(alone) == alone) << static_cast<int>(alone);
    for (int unit = 0; unit < 0x10000; ++unit) {
        wchar_t ranged = static_cast<wchar_t>(unit);
        MakeUpper(&ranged, 1);
        ASSERT_EQ(ranged, ToUpper(static_cast<wchar_t>(unit)));
        MakeLower(&ranged, 1);
        ASSERT_EQ(ranged, ToLower(static_cast<wchar_t>(unit))) << "upper and lower case are a bijection";
    }
}

TEST(SystemText, AnswersManyThreadsAtOnce)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i] {
            for (int round = 0; round < 200; ++round) {
                EXPECT_EQ(Wide(i % 2 == 0 ? 437 : 1251, "\xE0"), i % 2 == 0 ? L"\x03B1" : L"\x0430");
                EXPECT_EQ(CString(L"\x0430").MakeUpper(), L"\x0410");
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}
