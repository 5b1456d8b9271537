#include "files/StdioFileEx.h"

#include "files/ExLCString.h"
#include "files/SwitchLocale.h"
#include "framework/base/FileException.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <string>
#include <tuple>
#include <vector>

using vak::test::TempFolder;
using namespace std::string_literals;

namespace {

/// What the protected members are to the host's own derived classes.
class OpenedUp : public CStdioFileEx
{
public:
    using CStdioFileEx::m_codePage, CStdioFileEx::m_deleteOnDestroy;
    using CStdioFileEx::m_isUnicode, CStdioFileEx::m_openFlags;
};

std::vector<CString> ReadAll(CStdioFileEx& file)
{
    std::vector<CString> lines;
    CString line;
    while (file.ReadString(line))
        lines.push_back(line);
    return lines;
}

std::vector<CString> ReadAll(const CString& path, UINT mode, UINT codePage = CStdioFileEx::kAnsiCodePage)
{
    CStdioFileEx file(path, CFile::modeRead | mode);
    file.SetCodePage(codePage);
    return ReadAll(file);
}

std::string Utf16(const CString& text)
{
    std::string bytes = "\xFF\xFE";
    for (int i = 0; i < text.GetLength(); ++i) {
        bytes += static_cast<char>(text[i] & 0xFF);
        bytes += static_cast<char>(text[i] >> 8);
    }
    return bytes;
}

class TextFile : public testing::Test
{
protected:
    TempFolder folder;

    std::string Written(UINT flags, UINT codePage, std::initializer_list<const wchar_t*> texts)
    {
        CStdioFileEx file(folder.Path("out.txt"), CFile::modeCreate | CFile::modeWrite | flags);
        file.SetCodePage(codePage);
        for (const wchar_t* text : texts)
            file.WriteString(text);
        file.Close();
        return folder.Read("out.txt");
    }
};

} // namespace

TEST_F(TextFile, MarkedFilesAreReadAsUtf16OnlyInTextModeAndOnlyForReading)
{
    const CString path = folder.Write("in.txt", Utf16(L"\xFEFFun\r\nd\x0A0A\x1A\r\r\n\ntrois\r"));
    const std::vector<CString> lines = {L"\xFEFFun", L"d\x0A0A\x1A\r", L"", L"trois"};
    OpenedUp file;
    ASSERT_TRUE(file.Open(path, CFile::modeReadWrite | CFile::typeText | CFile::shareExclusive));
    // Opened again, the object's own file does not hide the mark.
    ASSERT_TRUE(file.Open(path, CFile::modeRead | CFile::typeText | CFile::shareDenyWrite));
    EXPECT_TRUE(file.m_isUnicode);
    EXPECT_EQ(file.m_openFlags, CFile::modeRead | CFile::typeBinary | UINT(CFile::shareDenyWrite));
    EXPECT_EQ(file.GetCharCount(), 18u);
    EXPECT_EQ(ReadAll(file), lines);
    file.SkipLines(2);
    file.SkipLines(1, 1);
    EXPECT_EQ(ReadAll(file), std::vector<CString>{L"trois"});
    ASSERT_TRUE(file.Open(path, CFile::modeWrite | CFile::typeText));
    EXPECT_FALSE(file.m_isUnicode);
    EXPECT_EQ(file.m_openFlags, CFile::modeWrite | UINT(CFile::typeText));
    file.Close();
    EXPECT_EQ(file.GetCharCount(), 0u);
    EXPECT_EQ(ReadAll(path, CFile::typeBinary).front().Left(2), L"ÿþ");
    EXPECT_FALSE(CStdioFileEx::IsFileUnicode(folder.Write("short.txt", "\xFF")));
    EXPECT_FALSE(CStdioFileEx::IsFileUnicode(folder.Path("none.txt")));
    EXPECT_EQ(ReadAll(folder.Write("mark.txt", "\xFF\xFE"), CFile::typeText), std::vector<CString>{});
    // A file cut within a unit: what is whole is read.
    EXPECT_EQ(ReadAll(folder.Write("odd.txt", Utf16(L"ab") + "c"), CFile::typeText),
              std::vector<CString>{L"ab"});
}

TEST_F(TextFile, LongLinesComeInPiecesThatCutNoCharacter)
{
    const auto a = [](int count) { return CString(L'a', count); };
    const struct
    {
        UINT codePage;
        int plain; ///< letters in front
        std::string rest;
        std::vector<CString> lines;
    } rows[] = {
        {65001, 4094, "é\n", {a(4094), L"é"}},
        {65001, 4093, "é\n", {a(4093) + L"é", L""}},
        {65001, 4093, "€\n", {a(4093), L"€"}},
        {65001, 4092, "\xF0\x9F\x98\x80z", {a(4092), L"\xD83D\xDE00z"}},
        {65001, 4094, "\xC3", {a(4094), L"\xFFFD"}},
        {932, 4094, "\x95\x5C\n", {a(4094), L"表"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.codePage << ", " << row.plain);
        const std::string line = std::string(static_cast<size_t>(row.plain), 'a') + row.rest;
        // Behind 61,440 bytes of other lines the same line lies across the end of the stream's buffer.
        for (const size_t before : {0u, 30u}) {
            std::string bytes;
            for (size_t i = 0; i < before; ++i)
                bytes += std::string(2047, 'x') + "\n";
            CStdioFileEx file(folder.Write("in.txt", bytes + line), CFile::typeText);
            file.SetCodePage(row.codePage);
            file.SkipLines(static_cast<unsigned int>(before));
            EXPECT_EQ(ReadAll(file), row.lines);
        }
    }
}

// Lines with enough behind them in the stream's buffer are read another way than the last ones of a file.
TEST_F(TextFile, LinesInTheMiddleOfAFileReadAsAtItsEnd)
{
    std::vector<std::string> samples = {"", "\r", "\r\r", "a\rb\r", "\xEF\xBB\xBFx", "\x80\x9F\xA0\xFF"};
    for (const int length : {1, 15, 63, 64, 65, 1022, 1023, 1024}) {
        const std::string plain(static_cast<size_t>(length), 'a');
        samples.push_back(plain + "\r");
        for (const char* odd : {"é", "€", "\xF0\x9F\x98\x80", "\xC3", "\xE2\x82", "\x9F"}) {
            samples.push_back(plain + odd);
            samples.push_back(plain + odd + "z" + odd + plain);
        }
    }
    std::string whole;
    for (const std::string& sample : samples)
        whole += sample + "\n";
    const std::string filler = std::string(999, 'f') + "\n";
    for (const UINT codePage : {1252u, 28591u, 65001u}) {
        for (const UINT mode : {UINT(CFile::typeText), UINT(CFile::typeBinary)}) {
            const std::vector<CString> lines =
                ReadAll(folder.Write("middle.txt", whole + filler), mode, codePage);
            ASSERT_EQ(lines.size(), samples.size() + 1);
            for (size_t i = 0; i < samples.size(); ++i)
                ASSERT_EQ(ReadAll(folder.Write("end.txt", samples[i] + "\n"), mode, codePage),
                          std::vector<CString>{lines[i]})
                    << codePage << ", " << mode << ", " << testing::PrintToString(samples[i]);
        }
    }
    // The end of the text is one also where more follows.
    EXPECT_EQ(ReadAll(folder.Write("end.txt", "a\nb\x1A" + filler), CFile::typeText, 65001),
              (std::vector<CString>{L"a", L"b"}));
}

// The bytes are Python's encodings of the texts.
TEST_F(TextFile, CodePagesReadAndWriteTheirBytes)
{
    const std::tuple<UINT, const wchar_t*, const char*> rows[] = {
        {CStdioFileEx::kAnsiCodePage, L"Été à 5 € – œuvre, longue de plus de seize",
         "\xc9t\xe9 \xe0 5 \x80 \x96 \x9cuvre, longue de plus de seize"},
        {65001, L"Été à 5 €, \xD83D\xDE00", "\xc3\x89t\xc3\xa9 \xc3\xa0 5 \xe2\x82\xac, \xf0\x9f\x98\x80"},
        {1251, L"Привет, Привет, Привет",
         "\xcf\xf0\xe8\xe2\xe5\xf2, \xcf\xf0\xe8\xe2\xe5\xf2, \xcf\xf0\xe8\xe2\xe5\xf2"},
        {437, L"Été", "\x90t\x82"},
        {932, L"日本語ﾃ表", "\x93\xfa\x96{\x8c\xea\xc3\x95\\"},
    };
    for (const auto& [codePage, text, bytes] : rows) {
        SCOPED_TRACE(codePage);
        EXPECT_EQ(Written(CFile::typeBinary, codePage, {text}), bytes);
        EXPECT_EQ(ReadAll(folder.Path("out.txt"), CFile::typeBinary, codePage), std::vector<CString>{text});
    }
    EXPECT_EQ(Written(CFile::typeText, 1252, {L"Жe\x301\n", L"日\r\n"}), "#\xe9\r\n#\r\r\n");
    EXPECT_EQ(Written(CFile::typeText, 65001, {L"\xD800"}), "\xEF\xBF\xBD");
    // Bytes that are not UTF-8 do not spoil the rest of their line.
    EXPECT_EQ(ReadAll(folder.Write("bad.txt", "aé\xFFz\xE2\x82y\n"), CFile::typeText, 65001),
              std::vector<CString>{L"aé\xFFFDz\xFFFDy"});
}

TEST_F(TextFile, Utf16IsWrittenWithOneMarkAndNeverTranslated)
{
    const UINT flags = CStdioFileEx::kWriteUtf16 | CFile::typeText;
    EXPECT_EQ(Written(flags, 1252, {L"a\nЖ", L"", L"\r\n"}), Utf16(L"a\nЖ\r\n"));
    {
        CStdioFileEx file(folder.Path("out.txt"), CFile::modeWrite | flags);
        file.SeekToEnd();
        file.WriteString(L"z");
    }
    EXPECT_EQ(folder.Read("out.txt"), Utf16(L"a\nЖ\r\nz"));
}

TEST_F(TextFile, EveryWayOfReadingAndWritingGoesOnWhereTheLastOneStopped)
{
    CStdioFileEx file(folder.Path("both.txt"), CFile::modeCreate | CFile::modeReadWrite | CFile::typeText);
    file.WriteString(L"un\n2 3\n45 six\n");
    file.SeekToBegin();
    CString line;
    int number = 0;
    ASSERT_TRUE(file.ReadString(line));
    EXPECT_EQ(file.FScanfS(L"%d", &number), 1);
    EXPECT_EQ(file.GetPosition(), 5u);
    EXPECT_EQ(std::fgetc(file.m_pStream), ' ');
    file.SkipLines(1, 1);
    file.Seek(0, CFile::current);
    file.WriteString(L"_");
    EXPECT_EQ(file.FScanfS(L"%d", &number), 1);
    EXPECT_EQ(number, 5);
    file.SkipLines(2);
    ASSERT_TRUE(file.ReadString(line));
    EXPECT_EQ(line, L"_5 six");
    EXPECT_EQ(file.CheckCarriageReturn(), 0);
    EXPECT_EQ(file.GetCharCount(), 17u);
}

TEST_F(TextFile, FormattedReadsStoreWhatTheirFormatsSay)
{
    const CString wide = L"-12 0x1F 077 -99999999999999999999 1,5e2 -.25\r\nabc déf]x 50% AB \t";
    for (const bool unicode : {false, true}) {
        const CString path = folder.Write("in.txt", unicode ? Utf16(wide) : std::string(CStringA(wide)));
        CStdioFileEx file(path, CFile::typeText);
        int decimal = 0, any = 0, taken = 0;
        unsigned int octal = 0;
        long long large = 0;
        float whole = 0, exponent = 0;
        double fraction = 0;
        EXPECT_EQ(file.FScanfS(L"%d %i%o %lld %f,%f %lf%n", &decimal, &any, &octal, &large, &whole, &exponent,
                               &fraction, &taken),
                  7);
        EXPECT_EQ(std::tuple(decimal, any, octal, large), std::tuple(-12, 31, 63u, LLONG_MIN));
        EXPECT_EQ(std::tuple(whole, exponent, fraction, taken), std::tuple(1.0f, 500.0f, -0.25, 45));
        wchar_t word[4], set[8];
        char narrow[4], pair[2];
        EXPECT_EQ(file.FScanfS(L"%s %2hs%*c%[]x-z]%*2d%% %2hc", word, 4u, narrow, 4u, set, 8u, pair, 2u), 4);
        EXPECT_EQ(CString(word), L"abc");
        EXPECT_STREQ(narrow, "d\xE9");
        EXPECT_EQ(CString(set), L"]x");
        EXPECT_EQ(std::string(pair, 2), "AB");
        EXPECT_EQ(file.FScanfS(L"%d", &decimal), EOF);
    }
}

TEST_F(TextFile, FormattedReadsNeverPassTheEndOfABuffer)
{
    CStdioFileEx file(folder.Write("in.txt", "abcd 12x \xE2\x82\xAC"), CFile::typeText);
    file.SetCodePage(65001);
    wchar_t small[5] = L"????";
    int number = 7;
    EXPECT_EQ(file.FScanfS(L"%s%d", small, 4u, &number), 0);
    EXPECT_EQ(small[0], 0);
    EXPECT_EQ(small[4], 0);
    EXPECT_EQ(number, 7);
    file.SeekToBegin();
    EXPECT_EQ(file.FScanfS(L"%3s%1s", small, 4u, small, 0u), 1);
    EXPECT_EQ(CString(small), L"abc");
    file.SeekToBegin();
    EXPECT_EQ(file.FScanfS(L"%5c", small, 4u), 0);
    file.SeekToBegin();
    EXPECT_EQ(file.FScanfS(L"%*s %d%d", &number, &number), 1);
    EXPECT_EQ(number, 12);
    // What did not match stays, here and after a single character of several bytes.
    EXPECT_EQ(file.FScanfS(L"x %1[z]", small, 2u), 0);
    EXPECT_EQ(file.FScanfS(L"%1s", small, 2u), 1);
    EXPECT_EQ(CString(small), L"€");
    // A pair of surrogates is stored whole or not at all.
    CStdioFileEx pairs(folder.Write("pair.txt", "\xF0\x9F\x98\x80"), CFile::typeText);
    pairs.SetCodePage(65001);
    EXPECT_EQ(pairs.FScanfS(L"%1s", small, 5u), 0);
    EXPECT_EQ(pairs.FScanfS(L"%2s", small, 5u), 1);
    EXPECT_EQ(CString(small), L"\xD83D\xDE00");
}

TEST(TextConverters, FailWithoutTouchingAnythingBehindTheBuffer)
{
    using File = CStdioFileEx;
    char bytes[6] = "?????";
    wchar_t units[6] = L"?????";
    EXPECT_EQ(File::GetRequiredMultiByteLengthForUnicodeString(L"aЖ€", 1252), 4);
    EXPECT_EQ(File::GetRequiredMultiByteLengthForUnicodeString(L"aЖ€", 65001), 7);
    EXPECT_EQ(File::GetMultiByteStringFromUnicodeString(L"aЖ€", bytes, 4, 1252), 3);
    EXPECT_EQ(std::string(bytes, 5), "a#\x80\0?"s);
    EXPECT_EQ(File::GetMultiByteStringFromUnicodeString(L"abcd", bytes, 4), 0);
    EXPECT_STREQ(bytes, "");
    EXPECT_EQ(File::GetMultiByteStringFromUnicodeString(L"a", bytes, 0), 0);
    EXPECT_EQ(File::GetMultiByteStringFromUnicodeString(L"a", nullptr, 4), 0);
    EXPECT_EQ(File::GetUnicodeStringFromMultiByteString("a\x80", units, 3), 2);
    EXPECT_EQ(CString(units, 4), CString(L"a€\0?", 4));
    EXPECT_EQ(File::GetUnicodeStringFromMultiByteString("a\x80z", units, 3), 0);
    EXPECT_EQ(units[0], 0);
    EXPECT_EQ(File::GetUnicodeStringFromMultiByteString("a", units, -1), 0);
}

TEST_F(TextFile, MembersStandInTheirPublishedOrderAndTheFileGoesWhenAsked)
{
    const CString path = folder.Write("gone.txt", "x");
    {
        OpenedUp file;
        ASSERT_TRUE(file.Open(path, CFile::modeRead));
        EXPECT_FALSE(file.m_deleteOnDestroy);
        EXPECT_EQ(file.m_codePage, 1252u);
        const void* const first = &file.m_deleteOnDestroy;
        EXPECT_EQ(&file.m_isUnicode, static_cast<const bool*>(first) + 1);
        EXPECT_EQ(&file.m_openFlags, static_cast<const UINT*>(first) + 1);
        EXPECT_EQ(&file.m_codePage, static_cast<const UINT*>(first) + 2);
        EXPECT_STREQ(file.GetRuntimeClass()->m_lpszClassName, "CStdioFileEx");
    }
    EXPECT_TRUE(folder.Has("gone.txt"));
    {
        OpenedUp file;
        ASSERT_TRUE(file.Open(path, CFile::modeRead));
        file.m_deleteOnDestroy = true;
        file.Close();
    }
    EXPECT_FALSE(folder.Has("gone.txt"));
    try {
        CStdioFileEx file(path, CFile::modeRead);
        FAIL();
    } catch (CFileException* failure) {
        EXPECT_EQ(failure->m_cause, CFileException::fileNotFound);
        failure->Delete();
    }
}

TEST(SwitchLocale, GivesBackTheLocaleThatWasThere)
{
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    {
        const CSwitchLocale outer(LC_NUMERIC, L"");
        const std::string users = std::setlocale(LC_NUMERIC, nullptr);
        {
            const CSwitchLocale inner(LC_NUMERIC, L"C"), unknown(LC_NUMERIC, L"no such place");
            EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
        }
        EXPECT_EQ(std::setlocale(LC_NUMERIC, nullptr), users);
    }
    EXPECT_EQ(std::setlocale(LC_NUMERIC, nullptr), before);
}

TEST(LowerCaseString, FoldsWhateverItIsGiven)
{
    CExLCString text(L"ÉTÉ Été"), other;
    EXPECT_EQ(text, L"été été");
    text += L"D";
    EXPECT_EQ(CExLCString(text) + (other = text), L"été étédété étéd");
    EXPECT_EQ(other = CString(L"ŒUVRE"), L"œuvre");
    EXPECT_EQ(other = "DEF", L"def");
    EXPECT_EQ(other = L'Ж', L"ж");
}
