#include "framework/base/StdioFile.h"

#include "framework/base/FileException.h"
#include "framework/base/SystemFile.h"
#include "framework/base/SystemStream.h"
#include "framework/base/SystemText.h"
#include "framework/base/detail/ByteBlock.h"
#include "framework/base/detail/ShortLine.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string>

using vak::detail::ByteBlock;
using vak::system::PeekStream;
using vak::system::SkipStream;
using vak::system::StreamBytes;

IMPLEMENT_DYNAMIC(CStdioFile, CFile)

namespace {

// Wide text passes between file and memory as it is.
static_assert(std::endian::native == std::endian::little);

constexpr size_t kStreamBuffer = 65536;
constexpr size_t kPiece = 4096;
constexpr char kEndOfText = 0x1A;

const char* FindByte(const char* bytes, char wanted, size_t count)
{
    return count == 0 ? nullptr : static_cast<const char*>(std::memchr(bytes, wanted, count));
}

/// The first line feed or end of text among `count` bytes, or null.
const char* FindTextLineEnd(const char* bytes, size_t count)
{
    constexpr size_t step = vak::detail::kBlocks * ByteBlock::kSize;
    size_t at = 0;
    for (; at + step <= count; at += step) {
        const std::uint64_t found =
            vak::detail::MaskOfBlocks(bytes + at, ByteBlock::kSize, [](const char* block) {
                return ByteBlock(block).Either('\n', kEndOfText);
            });
        if (found != 0)
            return bytes + at + std::countr_zero(found);
    }
    for (; at < count; ++at)
        if (bytes[at] == '\n' || bytes[at] == kEndOfText)
            return bytes + at;
    return nullptr;
}

wchar_t UnitAt(const char* bytes)
{
    wchar_t unit;
    std::memcpy(&unit, bytes, sizeof(unit));
    return unit;
}

/// The index of the first line feed among `units` UTF-16 units at any address, or `units`.
size_t FindWideLineFeed(const char* bytes, size_t units)
{
    constexpr size_t step = vak::detail::kBlocks * ByteBlock::kSize;
    size_t at = 0;
    for (; at + step <= units; at += step) {
        const std::uint64_t found = vak::detail::MaskOfBlocks(
            bytes + at * sizeof(wchar_t), 2 * ByteBlock::kSize, [](const char* block) {
                return ByteBlock(block).Units(ByteBlock(block + ByteBlock::kSize), L'\n');
            });
        if (found != 0)
            return at + static_cast<size_t>(std::countr_zero(found));
    }
    while (at < units && UnitAt(bytes + at * sizeof(wchar_t)) != L'\n')
        ++at;
    return at;
}

void AppendUnits(CString& out, const char* bytes, size_t units)
{
    const auto old = static_cast<size_t>(out.GetLength());
    if (units > INT_MAX - old)
        AfxThrowMemoryException();
    wchar_t* const room = out.GetBufferSetLength(static_cast<int>(old + units)) + old;
    std::memcpy(room, bytes, units * sizeof(wchar_t));
}

} // namespace

CStdioFile::CStdioFile() : m_pStream(nullptr), m_bText(false), m_bWriting(false) {}

CStdioFile::CStdioFile(LPCTSTR lpszFileName, UINT nOpenFlags) : CStdioFile()
{
    CFileException error;
    if (!CStdioFile::Open(lpszFileName, nOpenFlags, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

CStdioFile::~CStdioFile()
{
    CStdioFile::Abort();
}

BOOL CStdioFile::Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError)
{
    CStdioFile::Abort();
    if (!CFile::Open(lpszFileName, nOpenFlags, pError))
        return FALSE;
    const UINT access = nOpenFlags & (modeWrite | modeReadWrite);
    m_buffer = std::make_unique<char[]>(kStreamBuffer);
    m_pStream = vak::system::OpenStream(m_hFile, access != modeWrite, access != modeRead, m_buffer.get(),
                                        kStreamBuffer);
    if (m_pStream == nullptr) {
        CFile::Abort();
        if (pError != nullptr) {
            pError->m_cause = CFileException::tooManyOpenFiles;
            pError->m_lOsError = static_cast<LONG>(vak::system::kErrorTooManyOpenFiles);
            pError->m_strFileName = lpszFileName;
        }
        return FALSE;
    }
    m_bText = (nOpenFlags & typeText) != 0;
    m_bWriting = false;
    return TRUE;
}

void CStdioFile::ThrowStreamError() const
{
    CFileException::ThrowOsError(static_cast<LONG>(vak::system::LastStreamError()), m_strFileName);
}

void CStdioFile::RequireStream() const
{
    if (m_pStream == nullptr)
        AfxThrowFileException(CFileException::invalidFile, -1, m_strFileName);
}

void CStdioFile::BeginReading()
{
    RequireStream();
    // The standard wants a seek between writing and reading; and the end of the file is asked again each
    // time.
    if (m_bWriting && !vak::system::SeekStream(m_pStream, 0, SEEK_CUR))
        ThrowStreamError();
    m_bWriting = false;
    if (std::feof(m_pStream) || std::ferror(m_pStream))
        std::clearerr(m_pStream);
}

void CStdioFile::BeginWriting()
{
    RequireStream();
    if (!m_bWriting && !vak::system::SeekStream(m_pStream, 0, SEEK_CUR))
        ThrowStreamError();
    m_bWriting = true;
}

/// The bytes at the position, none at the end of the file; throws when the file cannot be read.
vak::system::StreamBytes CStdioFile::Peek()
{
    const StreamBytes seen = PeekStream(m_pStream);
    if (seen.count == 0 && std::ferror(m_pStream))
        ThrowStreamError();
    return seen;
}

/// The bytes with which the next line begins. What BeginReading asks of the stream is asked only where it can
/// matter, when nothing is buffered: lines are short.
vak::system::StreamBytes CStdioFile::PeekLine()
{
    RequireStream();
    if (!m_bWriting) {
        const StreamBytes seen = PeekStream(m_pStream);
        if (seen.count != 0)
            return seen;
    }
    BeginReading();
    return Peek();
}

ULONGLONG CStdioFile::GetPosition() const
{
    RequireStream();
    const LONGLONG position = vak::system::StreamPosition(m_pStream);
    if (position < 0)
        ThrowStreamError();
    return static_cast<ULONGLONG>(position);
}

ULONGLONG CStdioFile::GetLength() const
{
    RequireStream();
    if (m_bWriting && !vak::system::FlushStream(m_pStream))
        ThrowStreamError();
    return CFile::GetLength();
}

ULONGLONG CStdioFile::Seek(LONGLONG lOff, UINT nFrom)
{
    RequireStream();
    constexpr int origins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    if (nFrom >= std::size(origins) || !vak::system::SeekStream(m_pStream, lOff, origins[nFrom]))
        AfxThrowFileException(CFileException::badSeek, static_cast<LONG>(vak::system::LastStreamError()),
                              m_strFileName);
    m_bWriting = false;
    return CStdioFile::GetPosition();
}

void CStdioFile::SetLength(ULONGLONG dwNewLen)
{
    CStdioFile::Flush();
    // The stream forgets what it has read beyond the new end: it would go on giving it.
    CStdioFile::Seek(static_cast<LONGLONG>(dwNewLen), begin);
    vak::system::FlushStream(m_pStream);
    if (!vak::system::SetFileLength(m_hFile, dwNewLen))
        CFileException::ThrowOsError(static_cast<LONG>(vak::system::LastFileError()), m_strFileName);
}

UINT CStdioFile::Read(void* lpBuf, UINT nCount)
{
    if (nCount == 0)
        return 0;
    BeginReading();
    auto* const out = static_cast<char*>(lpBuf);
    if (m_bText)
        return ReadText(out, nCount);
    const StreamBytes seen = Peek();
    if (seen.count >= nCount) {
        std::memcpy(out, seen.bytes, nCount);
        SkipStream(m_pStream, nCount);
        return nCount;
    }
    const size_t got = std::fread(out, 1, nCount, m_pStream);
    if (got < nCount && std::ferror(m_pStream))
        ThrowStreamError();
    return static_cast<UINT>(got);
}

UINT CStdioFile::ReadText(char* out, UINT count)
{
    UINT done = 0;
    while (done < count) {
        const StreamBytes seen = Peek();
        size_t plain = std::min<size_t>(seen.count, count - done);
        if (const char* const stop = FindByte(seen.bytes, kEndOfText, plain))
            plain = static_cast<size_t>(stop - seen.bytes);
        const char* const cr = FindByte(seen.bytes, '\r', plain);
        if (cr != nullptr)
            plain = static_cast<size_t>(cr - seen.bytes);
        if (plain == 0 && cr == nullptr)
            break;
        std::memcpy(out + done, seen.bytes, plain);
        done += static_cast<UINT>(plain);
        SkipStream(m_pStream, plain);
        if (cr == nullptr)
            continue;
        // A carriage return vanishes before a line feed, which the next round takes.
        SkipStream(m_pStream, 1);
        const StreamBytes next = Peek();
        if (next.count == 0 || next.bytes[0] != '\n')
            out[done++] = '\r';
    }
    return done;
}

void CStdioFile::Put(const char* bytes, size_t count)
{
    if (count != 0 && std::fwrite(bytes, 1, count, m_pStream) != count)
        ThrowStreamError();
}

void CStdioFile::Write(const void* lpBuf, UINT nCount)
{
    if (nCount == 0)
        return;
    BeginWriting();
    const char* at = static_cast<const char*>(lpBuf);
    size_t left = nCount;
    while (m_bText) {
        const char* const lf = FindByte(at, '\n', left);
        if (lf == nullptr)
            break;
        Put(at, static_cast<size_t>(lf - at));
        Put("\r\n", 2);
        left -= static_cast<size_t>(lf - at) + 1;
        at = lf + 1;
    }
    Put(at, left);
}

void CStdioFile::Flush()
{
    if (m_pStream == nullptr)
        return;
    if (m_bWriting && !vak::system::FlushStream(m_pStream))
        ThrowStreamError();
}

void CStdioFile::Close()
{
    if (m_pStream == nullptr)
        return CFile::Close();
    const CString path = m_strFileName;
    const bool closed = vak::system::CloseStream(m_pStream);
    const auto error = static_cast<LONG>(vak::system::LastStreamError());
    Forget();
    if (!closed)
        CFileException::ThrowOsError(error, path);
}

void CStdioFile::Abort()
{
    if (m_pStream == nullptr)
        return CFile::Abort();
    vak::system::CloseStream(m_pStream);
    Forget();
}

/// The stream has closed the handle.
void CStdioFile::Forget()
{
    m_pStream = nullptr;
    m_buffer.reset();
    m_hFile = hFileNull;
    m_bCloseOnDelete = FALSE;
    m_bWriting = false;
    m_strFileName.Empty();
}

bool CStdioFile::ReadByteLine(char* scratch, size_t maximum, ByteLine& line)
{
    const StreamBytes seen = PeekLine();
    // A carriage return before the line feed does not count in text mode.
    const size_t reach = std::min(seen.count, m_bText ? maximum + 1 : maximum);
    const char* const lf = m_bText ? FindTextLineEnd(seen.bytes, reach) : FindByte(seen.bytes, '\n', reach);
    if (lf == nullptr || *lf != '\n')
        return ReadByteLineByPieces(scratch, maximum, line);
    size_t length = static_cast<size_t>(lf - seen.bytes);
    if (m_bText && length > 0 && lf[-1] == '\r')
        --length;
    else if (length == maximum)
        return ReadByteLineByPieces(scratch, maximum, line);
    SkipStream(m_pStream, static_cast<size_t>(lf - seen.bytes) + 1);
    line = {seen.bytes, length, true};
    return true;
}

/// A line that does not lie in the stream's buffer as a whole, or is too long, or ends with the text.
bool CStdioFile::ReadByteLineByPieces(char* scratch, size_t maximum, ByteLine& line)
{
    size_t done = 0;
    bool ended = false;
    while (!ended && done < maximum) {
        const StreamBytes seen = Peek();
        size_t take = std::min(seen.count, maximum - done);
        if (const char* const stop = m_bText ? FindByte(seen.bytes, kEndOfText, take) : nullptr)
            take = static_cast<size_t>(stop - seen.bytes);
        if (take == 0)
            break;
        const char* const lf = FindByte(seen.bytes, '\n', take);
        ended = lf != nullptr;
        const size_t plain = ended ? static_cast<size_t>(lf - seen.bytes) : take;
        std::memcpy(scratch + done, seen.bytes, plain);
        done += plain;
        SkipStream(m_pStream, ended ? plain + 1 : plain);
    }
    const bool found = ended || done > 0;
    if (m_bText && done > 0 && scratch[done - 1] == '\r') {
        // Full up to the carriage return: the line feed behind it takes its place.
        if (!ended && done == maximum) {
            const StreamBytes next = Peek();
            ended = next.count > 0 && next.bytes[0] == '\n';
            if (ended)
                SkipStream(m_pStream, 1);
        }
        if (ended)
            --done;
    }
    line = {scratch, done, ended};
    return found;
}

bool CStdioFile::ReadShortLine(UINT codePage, int returns, CString& line)
{
    using namespace vak::detail;
    const StreamBytes seen = PeekLine();
    wchar_t units[kShortLine + kShortLineSlack];
    const ShortLine found = DecodeShortLine(codePage, m_bText, seen.bytes, seen.count, units);
    if (found.used == 0)
        return false;
    SkipStream(m_pStream, found.used);
    size_t length = found.length;
    for (; returns > 0 && length > 0 && units[length - 1] == L'\r'; --returns)
        --length;
    line.SetString(units, static_cast<int>(length));
    return true;
}

LPTSTR CStdioFile::ReadString(LPTSTR lpsz, UINT nMax)
{
    if (lpsz == nullptr || nMax == 0)
        return nullptr;
    const size_t room = nMax - 1;
    const size_t length = m_bText ? ReadConverted(lpsz, room) : ReadUnits(lpsz, room);
    lpsz[length] = 0;
    return length == 0 && room > 0 ? nullptr : lpsz;
}

/// A line of UTF-16, with its line feed, of at most `room` units. A single byte at the end is no character.
size_t CStdioFile::ReadUnits(LPTSTR out, size_t room)
{
    BeginReading();
    size_t length = 0;
    while (length < room) {
        char bytes[sizeof(wchar_t)];
        if (std::fread(bytes, 1, sizeof(bytes), m_pStream) != sizeof(bytes)) {
            if (std::ferror(m_pStream))
                ThrowStreamError();
            break;
        }
        out[length++] = UnitAt(bytes);
        if (out[length - 1] == L'\n')
            break;
    }
    return length;
}

/// The same of a line of bytes, which makes no more units than it has bytes. Bytes of a character that did
/// not fit are left for the next call.
size_t CStdioFile::ReadConverted(LPTSTR out, size_t room)
{
    std::string scratch(room, '\0');
    ByteLine line;
    if (room == 0 || !ReadByteLine(scratch.data(), room, line))
        return 0;
    size_t length = line.length;
    if (!line.ended && length == room) {
        const size_t cut = vak::system::IncompleteTail(CP_ACP, line.text, length);
        if (cut < length) {
            length -= cut;
            CStdioFile::Seek(-static_cast<LONGLONG>(cut), current);
        }
    }
    CString text;
    vak::system::ToWide(CP_ACP, line.text, length, text);
    if (line.ended)
        text += L'\n';
    const size_t units = std::min(static_cast<size_t>(text.GetLength()), room);
    std::copy_n(text.GetString(), units, out);
    return units;
}

BOOL CStdioFile::ReadString(CString& rString)
{
    return m_bText ? ReadConvertedLine(rString) : ReadWideLine(rString);
}

bool CStdioFile::ReadConvertedLine(CString& out)
{
    out.Empty();
    char scratch[kPiece];
    ByteLine line;
    if (!ReadByteLine(scratch, sizeof(scratch), line))
        return false;
    if (line.ended || line.length < sizeof(scratch)) {
        vak::system::ToWide(CP_ACP, line.text, line.length, out);
        return true;
    }
    // A longer line is converted as a whole, so that no piece ends within a character.
    std::string whole(line.text, line.length);
    while (!line.ended && ReadByteLine(scratch, sizeof(scratch), line))
        whole.append(line.text, line.length);
    vak::system::ToWide(CP_ACP, whole.data(), whole.size(), out);
    return true;
}

bool CStdioFile::ReadWideLine(CString& out)
{
    StreamBytes seen = PeekLine();
    // A line in one piece replaces the last one in place, which saves filling the string twice.
    const size_t whole = FindWideLineFeed(seen.bytes, seen.count / sizeof(wchar_t));
    if (whole < seen.count / sizeof(wchar_t)) {
        std::memcpy(out.GetBufferSetLength(static_cast<int>(whole)), seen.bytes, whole * sizeof(wchar_t));
        SkipStream(m_pStream, (whole + 1) * sizeof(wchar_t));
        return true;
    }
    out.Empty();
    for (bool found = false;; found = true) {
        seen = Peek();
        const size_t units = seen.count / sizeof(wchar_t);
        if (units == 0) {
            // A unit may lie on both sides of the buffer's end.
            wchar_t unit[2];
            if (seen.count == 0 || ReadUnits(unit, 1) == 0)
                return found;
            if (unit[0] == L'\n')
                return true;
            out += unit[0];
            continue;
        }
        const size_t length = FindWideLineFeed(seen.bytes, units);
        AppendUnits(out, seen.bytes, length);
        const bool ended = length < units;
        SkipStream(m_pStream, (ended ? length + 1 : length) * sizeof(wchar_t));
        if (ended)
            return true;
    }
}

void CStdioFile::WriteString(LPCTSTR lpsz)
{
    const CString text(lpsz);
    const auto length = static_cast<size_t>(text.GetLength());
    if (!m_bText)
        return CStdioFile::Write(text.GetString(), static_cast<UINT>(length * sizeof(wchar_t)));
    CStringA bytes;
    vak::system::ToNarrow(CP_ACP, text, length, bytes);
    CStdioFile::Write(bytes.GetString(), static_cast<UINT>(bytes.GetLength()));
}
