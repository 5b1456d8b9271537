#include "framework/base/String.h"

#include "framework/base/Exception.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <type_traits>

namespace {

constexpr LPCWSTR kNull = nullptr;

template <class Action>
bool RefusesArgument(Action action)
{
    try {
        action();
    } catch (CInvalidArgException*) { // a static object
        return true;
    }
    return false;
}

// A string handed to Format by mistake must not compile, nor a number turn into a text.
static_assert(!std::is_convertible_v<int, CString> && !std::is_trivially_copyable_v<CString>);
static_assert(std::is_nothrow_move_constructible_v<CString>);

} // namespace

TEST(String, IsBuiltFromEitherWidthByLengthAndFromNull)
{
    EXPECT_EQ(CString("caf\xE9 \x80"), L"caf\x00E9 \x20AC");
    EXPECT_EQ(CStringA(L"caf\x00E9 \x20AC\x2603"), "caf\xE9 \x80?");
    EXPECT_EQ(CString(L'x', 3), L"xxx");
    EXPECT_EQ(CString('\xE9', 2), L"\x00E9\x00E9");
    EXPECT_TRUE(CString(L'x', -1).IsEmpty() && CString(kNull).IsEmpty());
    EXPECT_TRUE(RefusesArgument([] { CString(kNull, 1); }));
    EXPECT_TRUE(RefusesArgument([] { CString(L"a", -1); }));
    CString text = "n\xE4rrow";
    text += kNull;
    text += '\xE9';
    EXPECT_EQ(L"<" + text + L'>' + "!", L"<n\x00E4rrow\x00E9>!");
}

TEST(String, KeepsZerosWhereALengthIsKnown)
{
    const CString zeros(L"a\0b\0c", 5);
    EXPECT_EQ(CString(CStringA(zeros)), zeros);
    EXPECT_NE(zeros, CString(L"a\0b\0d", 5));
    EXPECT_EQ(zeros.Compare(L"a"), 0) << "a pointer has no length: both end at the first zero";
    CString changed = zeros;
    EXPECT_EQ(changed.Replace(L"b", L"xy"), 1);
    EXPECT_EQ(changed.Remove(L'\0'), 2);
    EXPECT_EQ(changed, L"axyc");
}

TEST(String, ComparesByValueOfTheUnitsAndFoldsEveryLetter)
{
    EXPECT_LT(CString(L"a"), CString(L"aa"));
    EXPECT_GT(CString(L"\xFF21"), L"\xD83D\xDE00") << "units, not code points";
    EXPECT_GT(CStringA("\xE9"), "z") << "bytes are unsigned";
    EXPECT_TRUE(L"a" == CString(L"a") && L"b" > CString(L"a") && CString(L"a") != L"A");
    EXPECT_EQ(CString(L"\x00C9T\x00C9 \x0416").CompareNoCase(L"\x00E9t\x00E9 \x0436"), 0);
    EXPECT_LT(CString(L"a").CompareNoCase(L"_"), 0) << "folded to upper case, letters precede the underscore";
    EXPECT_EQ(CStringA("\xC9t").CompareNoCase("\xE9T"), 0);
    EXPECT_EQ(CString().CompareNoCase(kNull), 0);
    EXPECT_EQ(CString(CStringA("\xE9\x9C").MakeUpper()) + CString(L"\x00C9I").MakeLower(),
              L"\x00C9\x0152\x00E9i");
}

TEST(String, ClampsPartsAndRefusesUnitsOutside)
{
    const CString text(L"abcdef");
    EXPECT_EQ(text.Left(99) + text.Right(99), L"abcdefabcdef");
    EXPECT_EQ(text.Mid(-2, 2), L"ab");
    EXPECT_EQ(text.Mid(2, 0x7FFFFFFF), L"cdef");
    EXPECT_EQ(text.Mid(99) + text.Mid(1, -1) + text.Left(-1) + text.Right(-1), L"");
    EXPECT_EQ(text[6], L'\0');
    EXPECT_TRUE(RefusesArgument([&] { return text[7]; }));
    EXPECT_TRUE(RefusesArgument([] { CString(L"a").SetAt(1, L'x'); }));
    EXPECT_EQ(text.SpanIncluding(L"cba") + text.SpanExcluding(L"ed"), L"abcabc");
}

TEST(String, TokensSkipRunsOfDelimitersAndEndInMinusOne)
{
    const CString text(L",;one,,two;");
    int at = 0;
    EXPECT_EQ(text.Tokenize(L",;", at), L"one");
    EXPECT_EQ(text.Tokenize(L",;", at), L"two");
    EXPECT_EQ(text.Tokenize(L",;", at), L"");
    EXPECT_EQ(at, -1);
    EXPECT_TRUE(RefusesArgument([&] { return text.Tokenize(L",", at); }));
    at = 1;
    EXPECT_EQ(text.Tokenize(L"", at), L";one,,two;");
}

TEST(String, EditsInPlace)
{
    CString text(L"xyzcxyzc");
    EXPECT_EQ(text.Replace(L"", L"q"), 0);
    EXPECT_EQ(text.Replace(L"yz", kNull), 2);
    EXPECT_EQ(text.Replace(L'x', L'a'), 2);
    EXPECT_EQ(text.Insert(-5, L"<"), 5);
    EXPECT_EQ(text.Insert(99, L'>'), 6);
    EXPECT_EQ(text.Insert(1, text), 12) << "its own text";
    EXPECT_EQ(text, L"<<acac>acac>");
    EXPECT_EQ(text.Delete(6, 99), 6);
    EXPECT_EQ(text.Delete(99) + text.Delete(0, -1), 12);
    text.SetString(text.GetString() + 1, 3);
    EXPECT_EQ(text.MakeReverse(), L"ca<");
}

TEST(String, TrimsBlanksUnitsAndSets)
{
    EXPECT_EQ(CString(L" \t\r\n\x00A0\x3000 a b \v\f").Trim(), L"a b");
    EXPECT_EQ(CStringA(" \t\xA0 ").Trim(), "\xA0") << "a byte above 127 is part of a character";
    EXPECT_EQ(CString(L"xxaxx").TrimLeft(L'x') + CString(L"xxaxx").TrimRight(L'x'), L"axxxxa");
    EXPECT_EQ(CString(L"\"'a'\"").Trim(L"'\""), L"a");
    EXPECT_EQ(CString(L"   ").Trim(), L"");
}

TEST(String, BuffersKeepTheTextAndEndAtTheirLength)
{
    CString text(L"ab");
    wchar_t* buffer = text.GetBuffer(10);
    EXPECT_TRUE(buffer[0] == L'a' && buffer[1] == L'b' && buffer[2] == 0);
    buffer[2] = L'c';
    text.ReleaseBuffer();
    EXPECT_EQ(text, L"abc");
    text.GetBuffer(10)[5] = L'z';
    text.ReleaseBuffer(6);
    EXPECT_EQ(text, CString(L"abc\0\0z", 6));
    text.GetBufferSetLength(2);
    EXPECT_EQ(text, L"ab");
    text.GetBuffer();
    EXPECT_TRUE(RefusesArgument([&] { text.ReleaseBuffer(3); }));
}

TEST(String, MovedFromIsEmptyAndSelfAssignmentIsHarmless)
{
    CString from(L"a text that is too long to be held inside of the object");
    const CString same = from;
    CString to = std::move(from);
    EXPECT_EQ(to, same);
    EXPECT_TRUE(from.IsEmpty()); // NOLINT: the state is documented
    CString& alias = to;
    to = alias;
    to = std::move(alias);
    EXPECT_EQ(to, same);
    to += to;
    EXPECT_EQ(to.GetLength(), 2 * same.GetLength());
}

/// The same random edits on a string and on a plain model of it.
TEST(String, AgreesWithAModelUnderRandomEdits)
{
    std::mt19937 random(7);
    const auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    CStringA text;
    std::string model;
    for (int step = 0; step < 20000; ++step) {
        const std::string piece(static_cast<std::size_t>(below(40)), static_cast<char>('a' + below(3)));
        const int at = below(static_cast<int>(model.size()) + 1);
        const auto index = static_cast<std::size_t>(at);
        const int kind = below(4);
        if (kind == 0) {
            text.Insert(at, piece.c_str());
            model.insert(index, piece);
        } else if (kind == 1) {
            text.Delete(at, 30);
            model.erase(index, 30);
        } else if (kind == 2) {
            text = text.Mid(at) + text.Left(at);
            model = model.substr(index) + model.substr(0, index);
        } else {
            text.Replace("ab", "c");
            for (std::size_t found = 0; (found = model.find("ab", found)) != std::string::npos; ++found)
                model.replace(found, 2, "c");
        }
        ASSERT_EQ(text.Find(piece.c_str(), at), static_cast<int>(model.find(piece, index)));
        ASSERT_EQ(text.ReverseFind('b'), static_cast<int>(model.rfind('b')));
        ASSERT_EQ(text, model.c_str());
    }
}
