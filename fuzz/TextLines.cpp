#include "files/FileNames.h"
#include "files/StdioFileEx.h"
#include "framework/base/FileException.h"
#include "fuzz/support/Target.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// The first byte: bit 0 text mode, bit 1 rewrite as UTF-16, bits 2 and 3 the code page. Then the file.
/// Every line is read, compared with the plain definition of a line where that is short, written and read
/// again, and formatted reads walk through the same bytes.

namespace {

using vak::fuzz::Require;
using Lines = std::vector<CString>;

constexpr UINT kCodePages[] = {1252, 65001, 932, 437};
constexpr size_t kPiece = 4095;

const CString& Path()
{
    static const CString path =
        fileCreateTmpName(CString(("vakfuzz-" + std::to_string(std::random_device()()) + ".txt").c_str()));
    return path;
}

Lines Read(CStdioFileEx& file, size_t most)
{
    Lines lines;
    for (CString line; file.ReadString(line); Require(lines.size() <= most))
        lines.push_back(line);
    return lines;
}

/// Lines of a single-byte page by their definition: translate, cut at line feeds and full pieces, strip.
Lines Define(const std::string& bytes, bool text)
{
    std::string left = bytes;
    if (text) {
        left = left.substr(0, left.find('\x1A'));
        for (size_t at = 0; (at = left.find("\r\n", at)) != left.npos; ++at)
            left.erase(at, 1);
    }
    Lines lines;
    while (!left.empty()) {
        std::string piece = left.substr(0, std::min({left.find('\n'), left.size() - 1, kPiece - 1}) + 1);
        left.erase(0, piece.size());
        for (const char end : {'\n', '\r'})
            if (!piece.empty() && piece.back() == end)
                piece.pop_back();
        lines.emplace_back(piece.data(), static_cast<int>(piece.size()));
    }
    return lines;
}

/// Whether a line comes back as it is from a file that it was written to.
bool Survives(const CString& line, UINT codePage, bool utf16)
{
    const bool plain =
        line.FindOneOf(L"\x1A\n") < 0 && CString(line.GetString()) == line && line.Right(1) != L"\r";
    if (!plain || utf16 || line.IsEmpty())
        return plain;
    char bytes[kPiece - 2];
    wchar_t units[kPiece];
    // Bytes like the mark at the beginning would make UTF-16 of it, and some pages have several bytes for a
    // character.
    return CStdioFileEx::GetMultiByteStringFromUnicodeString(line, bytes, sizeof bytes, codePage) &&
           std::string_view(bytes).substr(0, 2) != "\xFF\xFE" &&
           CStdioFileEx::GetUnicodeStringFromMultiByteString(bytes, units, kPiece, codePage) && line == units;
}

void Rewrite(const Lines& lines, UINT codePage, bool text, bool utf16)
{
    Lines kept;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(kept),
                 [=](const CString& line) { return Survives(line, codePage, utf16); });
    const UINT mode = text ? CFile::typeText : CFile::typeBinary;
    {
        CStdioFileEx file(Path(), CFile::modeCreate | CFile::modeWrite | mode |
                                      (utf16 ? CStdioFileEx::kWriteUtf16 : 0));
        file.SetCodePage(codePage);
        for (const CString& line : kept)
            file.WriteString(line + (text && !utf16 ? L"\n" : L"\r\n"));
    }
    CStdioFileEx file(Path(), utf16 ? UINT{CFile::typeText} : mode);
    file.SetCodePage(codePage);
    Require(Read(file, kept.size() + 1) == kept);
}

void Scan(CStdioFileEx& file, size_t size)
{
    file.Seek(0, CFile::begin);
    size_t fields = 0;
    for (ULONGLONG before = ~ULONGLONG(0); file.GetPosition() != before; ++fields) {
        before = file.GetPosition();
        wchar_t word[4], any[2];
        char set[3];
        int number = 0;
        float fraction = 0;
        file.FScanfS(L"%3s", word, 4u);
        file.FScanfS(L"%d %3f", &number, &fraction);
        file.FScanfS(L"%2h[^a-f]%1c", set, 3u, any, 2u);
        Require(file.GetPosition() >= before && file.GetPosition() <= size);
    }
    Require(fields <= size + 2);
}

void Run(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return;
    const bool text = (data[0] & 1) != 0;
    const UINT codePage = kCodePages[data[0] >> 2 & 3];
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    {
        CFile file(Path(), CFile::modeCreate | CFile::modeWrite);
        file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
    }
    const bool marked = text && bytes.rfind("\xFF\xFE", 0) == 0;
    Lines lines;
    {
        CStdioFileEx file(Path(), text ? CFile::typeText : CFile::typeBinary);
        file.SetCodePage(codePage);
        lines = Read(file, bytes.size());
        Scan(file, bytes.size());
    }
    if (codePage == 1252 && !marked)
        Require(lines == Define(bytes, text));
    Rewrite(lines, codePage, text, marked || (data[0] & 2) != 0);
    CFile::Remove(Path());
}

const vak::fuzz::Target target("TextLines", Run);

} // namespace
