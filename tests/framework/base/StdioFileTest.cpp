#include "framework/base/StdioFile.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

using vak::test::TempFolder;

namespace {

constexpr UINT kText = CFile::typeText;
constexpr UINT kBinary = CFile::typeBinary;

std::vector<CString> RestOf(CStdioFile& file)
{
    std::vector<CString> lines;
    CString line;
    while (file.ReadString(line))
        lines.push_back(line);
    EXPECT_EQ(line, CString(L""));
    return lines;
}

std::vector<CString> LinesOf(const CString& path, UINT type)
{
    CStdioFile file(path, CFile::modeRead | type);
    return RestOf(file);
}

std::string Utf16(const CString& text)
{
    return {reinterpret_cast<const char*>(text.GetString()), static_cast<size_t>(text.GetLength()) * 2};
}

TEST(StdioFile, TextModeReadsAlikeOnBothBuilds)
{
    const std::tuple<std::string, std::string, std::vector<CString>> rows[] = {
        {"a\r\nb\n", "a\nb\n", {L"a", L"b"}},
        {"a\r\r\nb\rc", "a\r\nb\rc", {L"a\r", L"b\rc"}},
        {"\r\n\n\r", "\n\n\r", {L"", L"", L"\r"}},
        {"a\x1A z\r\n", "a", {L"a"}},
        {"a\r\x1A", "a\r", {L"a\r"}},
        {"", "", {}},
        {"\xE9t\xE9\x80", "\xE9t\xE9\x80", {L"été€"}},
    };
    TempFolder folder;
    for (const auto& [bytes, expected, lines] : rows) {
        CStdioFile file(folder.Write("t", bytes), CFile::modeRead | kText);
        std::string read(64, '\0');
        read.resize(file.Read(read.data(), 64));
        EXPECT_EQ(read, expected);
        file.SeekToBegin();
        std::string single;
        for (char byte; file.Read(&byte, 1) == 1;)
            single += byte;
        EXPECT_EQ(single, expected) << "byte by byte";
        file.SeekToBegin();
        EXPECT_EQ(RestOf(file), lines);
    }
}

TEST(StdioFile, WritingTranslatesOnlyInTextMode)
{
    TempFolder folder;
    const UINT create = CFile::modeCreate | CFile::modeWrite;
    {
        CStdioFile text(folder.Path("text"), create | kText);
        text.Write("a\nb\r\n", 5);
        text.WriteString(L"\nété \x4E2D\n");
        EXPECT_EQ(text.GetPosition(), 16u);
        EXPECT_EQ(text.GetLength(), 16u) << "buffered bytes count";
    }
    EXPECT_EQ(folder.Read("text"), "a\r\nb\r\r\n\r\n\xE9t\xE9 ?\r\n");
    {
        CStdioFile binary(folder.Path("binary"), create);
        binary.Write("a\n\x1A", 3);
        binary.WriteString(L"é\n");
    }
    EXPECT_EQ(folder.Read("binary"), std::string("a\n\x1A\xE9\0\n\0", 7));
}

/// Lines that lie across the end of the stream's buffer, wherever that cuts them.
TEST(StdioFile, LinesDoNotDependOnWhereTheBufferEnds)
{
    TempFolder folder;
    for (size_t before = 65536 - 8; before <= 65536 + 8; ++before) {
        const std::string first(before, 'x');
        const CString path = folder.Write("t", first + "\r\nsecond\r\r\n\nlast\r");
        CString wideFirst(L'x', static_cast<int>(before));
        const std::vector<CString> lines = {wideFirst, L"second\r", L"", L"last\r"};
        ASSERT_EQ(LinesOf(path, kText), lines) << before;

        const CString wide = CString(L'y', static_cast<int>(before / 2)) + L"\r\n\x0A0A\x0D0A\n\nz";
        // An odd byte before the text puts units on both sides of the buffer's end.
        for (const std::string& odd : {std::string(), std::string(1, '\0')}) {
            CStdioFile file(folder.Write("w", odd + Utf16(wide) + "!"), CFile::modeRead | kBinary);
            file.Seek(static_cast<LONGLONG>(odd.size()), CFile::begin);
            // The half unit at the end is no line.
            const CString wideStart = CString(L'y', static_cast<int>(before / 2)) + L"\r";
            ASSERT_EQ(RestOf(file), (std::vector<CString>{wideStart, L"\x0A0A\x0D0A", L"", L"z"}));
        }
    }
}

TEST(StdioFile, BoundedReadKeepsTheLineFeedAndTheRest)
{
    TempFolder folder;
    for (const UINT type : {kText, kBinary}) {
        const std::string bytes = type == kText ? "abcdef\r\ngh\r\n" : Utf16(L"abcdef\ngh\n");
        CStdioFile file(folder.Write("t", bytes), CFile::modeRead | type);
        wchar_t room[5];
        const LPCTSTR expected[] = {L"abcd", L"ef\n", L"gh\n"};
        for (const LPCTSTR piece : expected) {
            ASSERT_EQ(file.ReadString(room, 5), room);
            EXPECT_EQ(CString(room), CString(piece));
        }
        EXPECT_EQ(file.ReadString(room, 5), nullptr);
    }
}

TEST(StdioFile, StreamAndObjectShareOnePosition)
{
    TempFolder folder;
    CStdioFile file(folder.Write("t", "one\r\ntwo 3\r\nfour"), CFile::modeReadWrite | kText);
    CString line;
    ASSERT_TRUE(file.ReadString(line));
    EXPECT_EQ(file.GetPosition(), 5u);
    EXPECT_EQ(std::ftell(file.m_pStream), 5);
    int number = 0;
    ASSERT_EQ(std::fscanf(file.m_pStream, "two %d", &number), 1);
    EXPECT_EQ(file.GetPosition(), 10u);
    ASSERT_TRUE(file.ReadString(line));
    EXPECT_EQ(line, CString(L""));
    // Writing behind a read goes where the read stopped, and reading goes on behind the write.
    file.Write("FO", 2);
    char rest[3] = {};
    EXPECT_EQ(file.Read(rest, 2), 2u);
    EXPECT_STREQ(rest, "ur");
    file.Close();
    EXPECT_EQ(folder.Read("t"), "one\r\ntwo 3\r\nFOur");
}

} // namespace
