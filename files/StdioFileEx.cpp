#include "files/StdioFileEx.h"

#include "files/detail/FormattedReader.h"
#include "files/detail/ScanSource.h"
#include "framework/base/FileException.h"
#include "framework/base/SystemStream.h"
#include "framework/base/SystemText.h"

#include <cstdarg>
#include <cstring>
#include <vector>

IMPLEMENT_DYNAMIC(CStdioFileEx, CStdioFile)

namespace {

/// Longest piece of an 8-bit line, in bytes.
constexpr size_t kPiece = 4095;
/// A number that the system knows only as the name of a form, not as a code page of bytes.
constexpr UINT kUtf16 = 1200;
constexpr BYTE kMark[2] = {0xFF, 0xFE};

UINT Resolve(UINT codePage)
{
    return codePage == CStdioFileEx::kAnsiCodePage || codePage == CP_ACP ? vak::system::AnsiCodePage()
                                                                         : codePage;
}

size_t Length(LPCWSTR text)
{
    size_t length = 0;
    while (text[length] != 0)
        ++length;
    return length;
}

bool ToNarrow(LPCWSTR text, UINT codePage, CStringA& bytes)
{
    using vak::system::Unmapped;
    const UINT resolved = Resolve(codePage);
    const Unmapped unmapped = resolved == CP_UTF8 ? Unmapped::PlatformDefault : Unmapped::NumberSign;
    return vak::system::ToNarrow(resolved, text, Length(text), bytes, unmapped);
}

} // namespace

CStdioFileEx::CStdioFileEx() : m_codePage(vak::system::AnsiCodePage()), m_knownCodePage(m_codePage) {}

CStdioFileEx::CStdioFileEx(LPCTSTR path, UINT flags) : CStdioFileEx()
{
    CFileException failure;
    if (!CStdioFileEx::Open(path, flags, &failure))
        AfxThrowFileException(failure.m_cause, failure.m_lOsError, failure.m_strFileName);
}

CStdioFileEx::~CStdioFileEx()
{
    try {
        if (m_pStream != nullptr)
            Close();
    } catch (CException* failure) {
        failure->Delete();
    }
    if (!m_deleteOnDestroy || m_openedPath.IsEmpty())
        return;
    try {
        Remove(m_openedPath);
    } catch (CException* failure) {
        failure->Delete();
    }
}

bool CStdioFileEx::IsFileUnicode(LPCTSTR path)
{
    CFile file;
    if (!file.Open(path, modeRead | shareDenyNone))
        return false;
    try {
        BYTE bytes[sizeof kMark];
        return file.Read(bytes, sizeof bytes) == sizeof bytes && std::memcmp(bytes, kMark, sizeof kMark) == 0;
    } catch (CException* failure) {
        failure->Delete();
        return false;
    }
}

UINT CStdioFileEx::GetCurrentLocaleCodePage()
{
    return vak::system::UserAnsiCodePage();
}

ULONGLONG CStdioFileEx::GetCharCount() const
{
    if (m_pStream == nullptr)
        return 0;
    const ULONGLONG length = GetLength();
    if (!m_isUnicode)
        return length;
    return length < sizeof kMark ? 0 : (length - sizeof kMark) / 2;
}

int CStdioFileEx::CheckCarriageReturn()
{
    return 0;
}

UINT CStdioFileEx::ProcessFlags(LPCTSTR path, UINT& flags)
{
    const bool probe = (flags & typeText) != 0 && (flags & (modeCreate | modeWrite)) == 0;
    m_isUnicode = probe && IsFileUnicode(path);
    // Line ends of UTF-16 text are not single bytes that the stream could translate.
    if (m_isUnicode || (flags & kWriteUtf16) != 0)
        flags = (flags & ~UINT(typeText)) | typeBinary;
    m_openFlags = flags;
    return flags;
}

BOOL CStdioFileEx::Open(LPCTSTR path, UINT flags, CFileException* error)
{
    // What is still open would stand in the probe's way: by its sharing, or with text not yet written out.
    Abort();
    const UINT adjusted = ProcessFlags(path, flags);
    if (!CStdioFile::Open(path, adjusted & ~kWriteUtf16, error))
        return FALSE;
    m_openedPath = GetFilePath();
    return TRUE;
}

void CStdioFileEx::SetCodePage(UINT codePage)
{
    m_codePage = codePage;
}

bool CStdioFileEx::IsCodePageKnown(UINT codePage)
{
    if (codePage == m_knownCodePage)
        return true;
    CString nothing;
    if (!vak::system::ToWide(codePage, "", 0, nothing))
        return false;
    m_knownCodePage = codePage;
    return true;
}

BOOL CStdioFileEx::ReadString(CString& line)
{
    if (m_pStream == nullptr)
        return FALSE;
    return m_isUnicode ? ReadUnicodeLine(line) : ReadAnsiLine(line);
}

/// The stream is asked for its position only where the next bytes look like the mark: on every line it would
/// cost more than the line.
void CStdioFileEx::SkipMark()
{
    const vak::system::StreamBytes next = vak::system::PeekStream(m_pStream);
    const bool isMark =
        next.count >= sizeof kMark && std::memcmp(next.bytes, kMark, sizeof kMark) == 0 && GetPosition() == 0;
    if (isMark)
        vak::system::SkipStream(m_pStream, sizeof kMark);
}

bool CStdioFileEx::ReadUnicodeLine(CString& line)
{
    if (ReadShortLine(kUtf16, 1, line))
        return true;
    SkipMark();
    if (!CStdioFile::ReadString(line))
        return false;
    const int length = line.GetLength();
    if (length > 0 && line[length - 1] == L'\r')
        line.ReleaseBuffer(length - 1);
    return true;
}

bool CStdioFileEx::ReadAnsiLine(CString& line)
{
    const UINT codePage = Resolve(m_codePage);
    // In text mode CR LF is a line feed by itself, and the carriage return in front of that goes as ever.
    if (codePage != kUtf16 && ReadShortLine(codePage, (m_openFlags & typeText) != 0 ? 2 : 1, line))
        return true;
    char scratch[kPiece];
    ByteLine piece;
    if (!ReadByteLine(scratch, kPiece, piece))
        return false;
    size_t length = piece.length;
    size_t tail = 0;
    if (!piece.ended && length == kPiece) {
        tail = vak::system::IncompleteTail(codePage, piece.text, length);
        length -= tail;
    }
    if (length > 0 && piece.text[length - 1] == '\r')
        --length;
    if (IsCodePageKnown(codePage))
        vak::system::ToWide(codePage, piece.text, length, line);
    // The beginning of a character waits for the next piece; it holds nothing that text mode translates.
    if (tail > 0)
        Seek(-static_cast<LONGLONG>(tail), current);
    return true;
}

void CStdioFileEx::WriteString(LPCTSTR text)
{
    if ((m_openFlags & kWriteUtf16) != 0) {
        WriteUnicode(text);
        return;
    }
    CStringA bytes;
    if (text != nullptr && ToNarrow(text, m_codePage, bytes) && !bytes.IsEmpty())
        Write(bytes.GetString(), static_cast<UINT>(bytes.GetLength()));
}

void CStdioFileEx::WriteUnicode(LPCTSTR text)
{
    if (m_pStream == nullptr || GetPosition() == 0)
        Write(kMark, sizeof kMark);
    const size_t length = text == nullptr ? 0 : Length(text);
    if (length == 0)
        return;
    std::vector<BYTE> bytes(2 * length);
    for (size_t i = 0; i < length; ++i) {
        bytes[2 * i] = static_cast<BYTE>(text[i] & 0xFF);
        bytes[2 * i + 1] = static_cast<BYTE>(text[i] >> 8);
    }
    Write(bytes.data(), static_cast<UINT>(bytes.size()));
}

void CStdioFileEx::SkipLines(unsigned int count, int keepPosition)
{
    if (keepPosition == 0)
        Seek(0, begin);
    CString line;
    while (count > 0 && ReadString(line))
        --count;
}

int CStdioFileEx::FScanfS(LPCWSTR format, ...)
{
    if (format == nullptr || m_pStream == nullptr)
        return EOF;
    // Between writing and reading a stream wants a seek; the base's own reads see to it themselves.
    if ((m_openFlags & (modeWrite | modeReadWrite)) != 0)
        Seek(0, current);
    if (m_isUnicode)
        SkipMark();
    vak::detail::ScanSource source(*this, {Resolve(m_codePage), m_isUnicode, (m_openFlags & typeText) != 0});
    va_list arguments;
    va_start(arguments, format);
    const int stored = vak::detail::ReadFormatted(source, format, arguments);
    va_end(arguments);
    return stored;
}

int CStdioFileEx::GetUnicodeStringFromMultiByteString(LPCSTR source, LPWSTR destination, int length,
                                                      UINT codePage)
{
    if (destination == nullptr || length <= 0)
        return 0;
    std::memset(destination, 0, sizeof(wchar_t) * static_cast<size_t>(length));
    CString units;
    if (source == nullptr || !vak::system::ToWide(Resolve(codePage), source, std::strlen(source), units) ||
        units.GetLength() >= length)
        return 0;
    std::memcpy(destination, units.GetString(), sizeof(wchar_t) * static_cast<size_t>(units.GetLength()));
    return units.GetLength();
}

int CStdioFileEx::GetMultiByteStringFromUnicodeString(LPCWSTR source, LPSTR destination, int length,
                                                      UINT codePage)
{
    if (destination == nullptr || length <= 0)
        return 0;
    std::memset(destination, 0, static_cast<size_t>(length));
    CStringA bytes;
    if (source == nullptr || !ToNarrow(source, codePage, bytes) || bytes.GetLength() >= length)
        return 0;
    std::memcpy(destination, bytes.GetString(), static_cast<size_t>(bytes.GetLength()));
    return bytes.GetLength();
}

int CStdioFileEx::GetRequiredMultiByteLengthForUnicodeString(LPCWSTR source, UINT codePage)
{
    CStringA bytes;
    return source != nullptr && ToNarrow(source, codePage, bytes) ? bytes.GetLength() + 1 : 0;
}
