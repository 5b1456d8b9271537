#include "files/Wildcards.h"

#include "core/HashTable.h"
#include "tests/support/Print.h"
#include "tests/support/WildcardModel.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

namespace {

CString RandomText(std::mt19937& random, const CString& alphabet, unsigned longest)
{
    CString text;
    for (unsigned left = random() % (longest + 1); left > 0; --left)
        text += alphabet[static_cast<int>(random() % static_cast<unsigned>(alphabet.GetLength()))];
    return text;
}

} // namespace

TEST(Wildcards, MatchAsWorkedOutByHand)
{
    const std::tuple<LPCWSTR, LPCWSTR, int> rows[] = {
        {L"abc", L"*c", 1},
        {L"abc", L"a?c", 1},
        {L"", L"**", 1},
        {L"", L"?", 0},
        // Before the first star only Latin-1 folds: \u00c9 is in it, \u0152 and \u0178 are not.
        {L"\u00c9t\u00e9", L"\u00e9T\u00c9", 1},
        {L"\u0152uf", L"\u0153*", 0},
        {L"L'\u0152uf", L"l'*\u0153UF", 1},
        {L"\u00ff", L"\u0178", 0},
    };
    for (const auto& [name, pattern, matches] : rows)
        EXPECT_EQ(matches, fileMatchWilcards(name, pattern, 0)) << testing::PrintToString(CString(pattern));
    EXPECT_EQ(0, fileMatchWilcards(L"ABC", L"abc", 1));
    CHashTable<CString> patterns;
    patterns.Insert(L"*.obj");
    patterns.Insert(L"*.3ds");
    EXPECT_EQ(1, fileMatchWilcards(L"Chair.3DS", patterns));
}

TEST(Wildcards, AgreeWithTheirDefinitionOnRandomText)
{
    // Long and short names, so that blocks of every length are sieved.
    std::mt19937 random(20031);
    const CString letters = L"aAbBcd\u00e9\u00c9\u0153\u0152";
    int matches = 0;
    for (unsigned round = 0; round < 40000; ++round) {
        const CString name = RandomText(random, letters + L"*", round % 4 == 0 ? 90 : 20);
        const CString pattern = RandomText(random, letters + L"*****??", 9);
        const bool caseSensitive = round % 3 == 0;
        const bool wanted = vak::test::MatchesByDefinition(name, pattern, caseSensitive);
        matches += wanted ? 1 : 0;
        ASSERT_EQ(wanted ? 1 : 0, fileMatchWilcards(name, pattern, caseSensitive ? 1 : 0))
            << testing::PrintToString(name) << " with " << testing::PrintToString(pattern);
    }
    EXPECT_GT(matches, 1000);
    // The comparison from the end must reject no pair that the leading part folds.
    for (int pair = 0; pair < 0x10000; ++pair) {
        const CString name(static_cast<wchar_t>(pair & 0xFF));
        const CString pattern(static_cast<wchar_t>(pair >> 8));
        ASSERT_EQ(vak::test::MatchesByDefinition(name, pattern, false),
                  fileMatchWilcards(name, pattern, 0) != 0)
            << pair;
    }
}

TEST(Wildcards, ManyStarsEndSoon)
{
    // Hopeless for a matcher that tries every place of every piece: about 10^30 attempts.
    const CString name(L'a', 4000);
    CString pattern;
    for (int i = 0; i < 200; ++i)
        pattern += L"*a?a";
    EXPECT_EQ(0, fileMatchWilcards(name, pattern + L"*b*a", 0));
    EXPECT_EQ(1, fileMatchWilcards(name, pattern + L"*a", 0));
}
