#include "framework/base/Geometry.h"
#include "framework/base/posix/TextTables.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

using namespace vak::detail;

/// The native build folds by a table: it must be the platform's, letter for letter.
TEST(TextTables, FoldWhatThePlatformFolds)
{
    std::map<int, int> upper;
    for (const CaseRange& range : kCaseRanges) {
        for (int unit = range.first; unit <= range.last; unit += range.step)
            upper[unit] = unit + range.toUpper;
    }
    for (int unit = 1; unit < 0x10000; ++unit) {
        wchar_t folded = static_cast<wchar_t>(unit);
        CharUpperBuffW(&folded, 1);
        const auto found = upper.find(unit);
        ASSERT_EQ(folded, found == upper.end() ? unit : found->second) << std::hex << unit;
    }
}

TEST(TextTables, EncodeWhatThePlatformEncodes)
{
    std::map<int, int> bytes;
    for (const SimilarRange& range : kSimilar1252) {
        for (int unit = range.first; unit <= range.last; ++unit)
            bytes[unit] = range.byte + unit - range.first;
    }
    for (int unit = 0; unit < 0x10000; ++unit) {
        const wchar_t from = static_cast<wchar_t>(unit);
        char byte = 0;
        BOOL lacking = FALSE;
        wchar_t back = 0;
        WideCharToMultiByte(1252, 0, &from, 1, &byte, 1, nullptr, &lacking);
        MultiByteToWideChar(1252, 0, &byte, 1, &back, 1);
        const auto found = bytes.find(unit);
        const bool similar = !lacking && back != from;
        ASSERT_EQ(found != bytes.end(), similar) << std::hex << unit;
        if (similar) {
            ASSERT_EQ(static_cast<unsigned char>(byte), found->second) << std::hex << unit;
        }
    }
    for (const Composition& row : kCompositions) {
        const wchar_t pair[] = {row.letter, row.mark};
        char both[2] = {};
        char one[2] = {};
        WideCharToMultiByte(1252, WC_COMPOSITECHECK | WC_SEPCHARS, pair, 2, both, 2, "#", nullptr);
        WideCharToMultiByte(1252, 0, &row.composed, 1, one, 2, nullptr, nullptr);
        ASSERT_STREQ(both, one) << std::hex << static_cast<int>(row.letter) << '+'
                                << static_cast<int>(row.mark);
    }
}

/// Corners and chance: the rectangles' arithmetic against the platform's own.
TEST(GeometryWindows, AgreesWithThePlatform)
{
    std::mt19937 random(5);
    const auto side = [&] { return static_cast<int>(random() % 5); };
    for (int round = 0; round < 20000; ++round) {
        const CRect a(side(), side(), side(), side());
        const CRect b(side(), side(), side(), side());
        CRect ours;
        CRect theirs;
        ASSERT_EQ(ours.IntersectRect(a, b), ::IntersectRect(theirs, a, b));
        ASSERT_EQ(ours, theirs);
        ASSERT_EQ(ours.UnionRect(a, b), ::UnionRect(theirs, a, b));
        ASSERT_EQ(ours, theirs) << ::testing::PrintToString(a) << ::testing::PrintToString(b);
        ASSERT_EQ(ours.SubtractRect(a, b), ::SubtractRect(theirs, a, b));
        ASSERT_EQ(ours, theirs) << ::testing::PrintToString(a) << ::testing::PrintToString(b);
        const CPoint point(side(), side());
        ASSERT_EQ(a.PtInRect(point), ::PtInRect(a, point));
    }
}
