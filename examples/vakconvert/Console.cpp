#include "examples/vakconvert/Console.h"

#include "examples/sdk/Utf8.h"
#include "files/FilePath.h"

#include <algorithm>
#include <cstdio>
#include <io.h>

namespace {

constexpr int kBarWidth = 24;
constexpr int kNameWidth = 40;

void Write(std::FILE* stream, const CString& text)
{
    const std::string bytes = ToUtf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
    std::fflush(stream);
}

CString Padded(const CString& cell, int width, bool right)
{
    const CString blanks(L' ', std::max(0, width - cell.GetLength()));
    return right ? blanks + cell : cell + blanks;
}

} // namespace

Console::Console() : m_isTerminal(_isatty(_fileno(stdout)) != 0)
{
    SetConsoleOutputCP(CP_UTF8);
}

void Console::Print(const CString& text) const
{
    Write(stdout, text);
}

void Console::PrintError(const CString& text) const
{
    Write(stderr, text);
}

void Console::PrintTable(const std::vector<std::vector<CString>>& rows,
                         const std::vector<std::size_t>& rightAligned) const
{
    std::vector<int> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].GetLength());
    }
    for (const auto& row : rows) {
        CString line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const bool right = std::find(rightAligned.begin(), rightAligned.end(), i) != rightAligned.end();
            line += Padded(row[i], widths[i], right) + L"  ";
        }
        line.TrimRight();
        Print(line + L"\n");
    }
}

void Console::ShowProgress(std::size_t done, std::size_t total, const CString& name) const
{
    if (!m_isTerminal || total == 0)
        return;
    const int filled = static_cast<int>(kBarWidth * done / total);
    CString line;
    line.Format(L"\r[%s%s] %d/%d %s", CString(L'#', filled).GetString(),
                CString(L'.', kBarWidth - filled).GetString(), static_cast<int>(done),
                static_cast<int>(total),
                Padded(fileCompactPath(name, kNameWidth), kNameWidth, false).GetString());
    Print(line);
}

void Console::EndProgress() const
{
    if (m_isTerminal)
        Print(L"\r" + CString(L' ', kBarWidth + kNameWidth + 16) + L"\r");
}
