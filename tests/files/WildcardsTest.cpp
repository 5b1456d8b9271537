#include "files/Wildcards.h"

#include "core/HashTable.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

namespace {

wchar_t Latin1Upper(wchar_t unit)
{
    if (unit >= 256)
        return unit;
    const CString folded = CString(unit).MakeUpper();
    return folded[0] < 256 ? folded[0] : unit;
}

/// The definition itself, as a recursion: `folded` says whether the units behind the first star are compared.
bool Defined(const CString& name, int n, const CString& pattern, int p, bool caseSensitive, bool behindStar)
{
    if (p == pattern.GetLength())
        return n == name.GetLength();
    if (pattern[p] == L'*')
        return Defined(name, n, pattern, p + 1, caseSensitive, true) ||
               (n < name.GetLength() && Defined(name, n + 1, pattern, p, caseSensitive, true));
    if (n == name.GetLength())
        return false;
    const bool folds = behindStar ? CString(name[n]).MakeUpper() == CString(pattern[p]).MakeUpper()
                                  : Latin1Upper(name[n]) == Latin1Upper(pattern[p]);
    const bool same = pattern[p] == L'?' || name[n] == pattern[p] || (!caseSensitive && folds);
    return same && Defined(name, n + 1, pattern, p + 1, caseSensitive, behindStar);
}

CString RandomText(std::mt19937& random, const CString& alphabet, unsigned longest)
{
    CString text;
    for (unsigned left = random() % (longest + 1); left > 0; --left)
        text += alphabet[static_cast<int>(random() % static_cast<unsigned>(alphabet.GetLength()))];
    return text;
}

struct Row
{
    LPCWSTR name;
    LPCWSTR pattern;
    int caseSensitive;
    int matches;
};

} // namespace

TEST(Wildcards, MatchAsWorkedOutByHand)
{
    const Row rows[] = {
        {L"abc", L"a*", 0, 1},
        {L"abc", L"*c", 0, 1},
        {L"abc", L"a?c", 0, 1},
        {L"abc", L"abc**", 0, 1},
        {L"abc", L"ab", 0, 0},
        {L"ab", L"abc", 0, 0},
        {L"ABC", L"abc", 0, 1},
        {L"ABC", L"abc", 1, 0},
        {L"ABC", L"*bc", 1, 0},
        {L"", L"", 0, 1},
        {L"", L"**", 0, 1},
        {L"", L"?", 0, 0},
        {L"", L"a", 0, 0},
        {L"aab", L"*ab", 0, 1},
        {L"ab", L"ab*b", 0, 0},
        {L"aXbXc", L"a*x*x*x*c", 0, 0},
        {L"a.b.obj", L"*.*.OBJ", 0, 1},
        {L"[a]", L"[a]", 0, 1},
        {L"a", L"[a]", 0, 0},
        {L"a*b", L"a**b", 1, 1},
        {L"a\\b", L"a\\*", 0, 1},
        // Before the first star only Latin-1 folds: É is in it, Œ, Ÿ and Д are not.
        {L"\u00c9t\u00e9", L"\u00e9T\u00c9", 0, 1},
        {L"\u0152uf", L"\u0153uf", 0, 0},
        {L"\u0152uf", L"\u0153*", 0, 0},
        {L"L'\u0152uf", L"l'*\u0153UF", 0, 1},
        {L"x\u0414x", L"*\u0434*", 0, 1},
        {L"\u0414", L"\u0434", 0, 0},
        {L"\u00ff", L"\u0178", 0, 0},
        {L"\u00ff", L"*\u0178", 0, 1},
        {L"\u00f7", L"\u00d7", 0, 0},
        {L"\u0153", L"?", 0, 1},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.matches, fileMatchWilcards(row.name, row.pattern, row.caseSensitive))
            << CStringA(row.name).GetString() << " with " << CStringA(row.pattern).GetString();
    }
}

TEST(Wildcards, AgreeWithTheirDefinitionOnRandomText)
{
    std::mt19937 random(20031);
    const CString letters = L"aAbB\u00e9\u00c9\u0153\u0152";
    int matches = 0;
    for (int round = 0; round < 60000; ++round) {
        const CString name = RandomText(random, letters + L"*", 9);
        const CString pattern = RandomText(random, letters + L"***??", 7);
        const int caseSensitive = round % 3 == 0 ? 1 : 0;
        const bool wanted = Defined(name, 0, pattern, 0, caseSensitive != 0, false);
        matches += wanted ? 1 : 0;
        ASSERT_EQ(wanted ? 1 : 0, fileMatchWilcards(name, pattern, caseSensitive))
            << CStringA(name).GetString() << " with " << CStringA(pattern).GetString();
    }
    EXPECT_GT(matches, 1000);
}

TEST(Wildcards, LeadingPartFoldsExactlyTheLatin1Letters)
{
    // All pairs of the first 256 characters: also that the comparison from the end rejects none of them
    // wrongly.
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            const CString name(static_cast<wchar_t>(a));
            const CString pattern(static_cast<wchar_t>(b));
            const bool letters = (a | 0x20) == (b | 0x20) &&
                                 (((a | 0x20) >= 'a' && (a | 0x20) <= 'z') ||
                                  ((a | 0x20) >= 0xE0 && (a | 0x20) != 0xF7 && (a | 0x20) != 0xFF));
            const bool wild = b == L'*' || b == L'?';
            ASSERT_EQ(a == b || letters || wild ? 1 : 0, fileMatchWilcards(name, pattern, 0))
                << a << ' ' << b;
        }
    }
}

TEST(Wildcards, ManyStarsEndSoon)
{
    // Hopeless for a matcher that tries every place of every piece: about 10^30 attempts.
    CString name(L'a', 4000);
    CString pattern;
    for (int i = 0; i < 200; ++i)
        pattern += L"*a?a";
    EXPECT_EQ(0, fileMatchWilcards(name, pattern + L"*b*a", 0));
    EXPECT_EQ(1, fileMatchWilcards(name, pattern + L"*a", 0));
}

TEST(Wildcards, TableMatchesWhenAnyPatternDoes)
{
    CHashTable<CString> patterns;
    EXPECT_EQ(0, fileMatchWilcards(L"", patterns));
    patterns.Insert(L"*.obj");
    patterns.Insert(L"*.3ds");
    EXPECT_EQ(1, fileMatchWilcards(L"Chair.3DS", patterns));
    EXPECT_EQ(0, fileMatchWilcards(L"Chair.max", patterns));
}
