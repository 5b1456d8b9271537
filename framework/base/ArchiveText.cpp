// Text in archives: lines of bare characters, and strings that carry length and width.
#include "framework/base/Archive.h"

#include "framework/base/detail/CharTraits.h"

#include <algorithm>
#include <climits>
#include <type_traits>

namespace {

constexpr WORD kWideMarker = 0xFFFE;

template <class C>
constexpr bool kIsWide = std::is_same_v<C, wchar_t>;

void WriteLength(CArchive& archive, ULONGLONG length)
{
    if (length < 0xFF) {
        archive << BYTE(length);
        return;
    }
    archive << BYTE(0xFF);
    if (length < kWideMarker) {
        archive << WORD(length);
        return;
    }
    archive << WORD(0xFFFF) << DWORD(length);
}

/// The length behind the markers that come first: 0xFF has been read.
ULONGLONG ReadLongLength(CArchive& archive, WORD shortLength)
{
    if (shortLength != 0xFFFF)
        return shortLength;
    DWORD longLength;
    archive >> longLength;
    if (longLength != 0xFFFFFFFF)
        return longLength;
    ULONGLONG length;
    archive >> length;
    return length;
}

struct StringHead
{
    ULONGLONG length;
    bool wide;
};

StringHead ReadHead(CArchive& archive)
{
    BYTE first;
    archive >> first;
    if (first != 0xFF)
        return {first, false};
    WORD second;
    archive >> second;
    if (second != kWideMarker)
        return {ReadLongLength(archive, second), false};
    archive >> first;
    if (first != 0xFF)
        return {first, true};
    archive >> second;
    if (second == kWideMarker) // no writer repeats the marker, and no length has this form
        AfxThrowArchiveException(CArchiveException::badIndex, archive.m_strFileName);
    return {ReadLongLength(archive, second), true};
}

/// Reads `length` characters of width C piece by piece, so that a file without a length is not believed
/// either.
template <class C>
CStringT<C> ReadCharacters(CArchive& archive, ULONGLONG length)
{
    if (length > ULONGLONG(INT_MAX) - 1)
        AfxThrowArchiveException(CArchiveException::badIndex, archive.m_strFileName);
    if (length > vak::detail::ArchiveBytesLeft(archive) / sizeof(C))
        AfxThrowArchiveException(CArchiveException::endOfFile, archive.m_strFileName);
    BYTE bytes[1024];
    C units[1024 / sizeof(C)];
    CStringT<C> text;
    while (length != 0) {
        const auto piece = UINT(std::min<ULONGLONG>(length, std::size(units)));
        archive.EnsureRead(bytes, UINT(piece * sizeof(C)));
        for (UINT i = 0; i < piece; ++i)
            units[i] = C(vak::detail::LoadLittleEndian<std::make_unsigned_t<C>>(bytes + i * sizeof(C)));
        text.Append(units, int(piece));
        length -= piece;
    }
    return text;
}

template <class C>
void WriteCharacters(CArchive& archive, const C* text, std::size_t length)
{
    BYTE bytes[1024];
    while (length != 0) {
        const std::size_t piece = std::min(length, std::size(bytes) / sizeof(C));
        for (std::size_t i = 0; i < piece; ++i)
            vak::detail::StoreLittleEndian(bytes + i * sizeof(C), text[i]);
        archive.Write(bytes, UINT(piece * sizeof(C)));
        text += piece;
        length -= piece;
    }
}

template <class C>
CArchive& StoreText(CArchive& archive, const CStringT<C>& text)
{
    if constexpr (kIsWide<C>)
        archive << BYTE(0xFF) << kWideMarker;
    WriteLength(archive, ULONGLONG(text.GetLength()));
    WriteCharacters(archive, text.GetString(), std::size_t(text.GetLength()));
    return archive;
}

template <class C>
CArchive& LoadText(CArchive& archive, CStringT<C>& text)
{
    const StringHead head = ReadHead(archive);
    if (head.wide)
        text = ReadCharacters<wchar_t>(archive, head.length);
    else
        text = ReadCharacters<char>(archive, head.length);
    return archive;
}

} // namespace

CArchive& operator<<(CArchive& archive, const CStringW& text)
{
    return StoreText(archive, text);
}

CArchive& operator<<(CArchive& archive, const CStringA& text)
{
    return StoreText(archive, text);
}

CArchive& operator>>(CArchive& archive, CStringW& text)
{
    return LoadText(archive, text);
}

CArchive& operator>>(CArchive& archive, CStringA& text)
{
    return LoadText(archive, text);
}

void CArchive::WriteString(LPCTSTR text)
{
    RequireStoring();
    std::size_t length = 0;
    while (text != nullptr && text[length] != 0)
        ++length;
    WriteCharacters(*this, text, length);
}

/// The next character without taking it; false at the end of the file.
bool CArchive::PeekUnit(wchar_t& unit)
{
    RequireLoading();
    if (m_readEnd - m_current < std::ptrdiff_t(sizeof unit) && !FillBuffer(sizeof unit))
        return false;
    unit = wchar_t(vak::detail::LoadLittleEndian<WORD>(m_current));
    return true;
}

/// Takes the next character of a line; false, with the line's end taken, where the line or the file ends.
bool CArchive::ReadLineUnit(wchar_t& unit)
{
    if (!PeekUnit(unit))
        return false;
    m_current += sizeof unit;
    wchar_t next;
    if (unit == L'\r' && PeekUnit(next) && next == L'\n') {
        m_current += sizeof next;
        return false;
    }
    return unit != L'\n';
}

BOOL CArchive::ReadString(CString& line)
{
    line.Empty();
    wchar_t unit;
    if (!PeekUnit(unit))
        return FALSE;
    while (ReadLineUnit(unit))
        line.AppendChar(unit);
    return TRUE;
}

LPTSTR CArchive::ReadString(LPTSTR text, UINT maximum)
{
    wchar_t unit;
    if (maximum == 0 || !PeekUnit(unit))
        return nullptr;
    UINT length = 0;
    while (length < maximum && ReadLineUnit(unit))
        text[length++] = unit;
    text[length] = 0;
    return text;
}
