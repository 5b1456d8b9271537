#include "framework/base/Archive.h"

#include "framework/base/File.h"
#include "framework/base/detail/ArchiveMaps.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace {

constexpr int kSmallestBuffer = 128;
/// What is read in one piece when the file does not tell its length.
constexpr std::size_t kPiece = 1 << 16;

} // namespace

namespace vak::detail {

class ArchiveAccess
{
public:
    static ULONGLONG BytesLeft(CArchive& archive) { return archive.BytesLeft(); }
    [[noreturn]] static void Throw(const CArchive& archive, int cause) { archive.Throw(cause); }
};

ULONGLONG ArchiveBytesLeft(CArchive& archive)
{
    return ArchiveAccess::BytesLeft(archive);
}

std::vector<BYTE> ReadArchiveBytes(CArchive& archive, ULONGLONG size)
try {
    const ULONGLONG left = ArchiveAccess::BytesLeft(archive);
    if (size > left)
        ArchiveAccess::Throw(archive, CArchiveException::endOfFile);
    std::vector<BYTE> bytes;
    if (left != kBytesLeftUnknown)
        bytes.reserve(std::size_t(size));
    while (bytes.size() < size) {
        const std::size_t done = bytes.size();
        const auto piece = std::size_t(std::min<ULONGLONG>(size - done, kPiece));
        bytes.resize(done + piece);
        archive.EnsureRead(bytes.data() + done, UINT(piece));
    }
    return bytes;
} catch (const std::bad_alloc&) { // a sparse file is as long as it likes
    AfxThrowMemoryException();
}

} // namespace vak::detail

CArchive::CArchive(CFile* file, UINT mode, int bufferSize, void* buffer) : m_nMode(mode), m_file(file)
{
    if (file == nullptr)
        AfxThrowInvalidArgException();
    const auto size = std::size_t(std::max(bufferSize, kSmallestBuffer));
    if (buffer == nullptr || bufferSize < kSmallestBuffer)
        m_ownBuffer = std::make_unique_for_overwrite<BYTE[]>(size);
    m_begin = m_ownBuffer != nullptr ? m_ownBuffer.get() : static_cast<BYTE*>(buffer);
    m_limit = m_begin + size;
    m_current = m_begin;
    m_readEnd = m_begin;
    m_writeEnd = IsLoading() ? m_begin : m_limit;
    m_strFileName = file->GetFilePath();
}

CArchive::~CArchive()
{
    if (m_file == nullptr || (m_nMode & bNoFlushOnDelete) != 0)
        return;
    try {
        Close();
    } catch (CException* exception) {
        exception->Delete();
    } catch (...) { // a file of a host's own may throw anything, and a destructor nothing
    }
}

void CArchive::Throw(int cause) const
{
    AfxThrowArchiveException(cause, m_strFileName);
}

void CArchive::RequireStoring() const
{
    if (IsLoading())
        Throw(CArchiveException::readOnly);
    if (m_file == nullptr)
        Throw(CArchiveException::genericException);
}

void CArchive::RequireLoading() const
{
    if (IsStoring())
        Throw(CArchiveException::writeOnly);
    if (m_file == nullptr)
        Throw(CArchiveException::genericException);
}

UINT CArchive::GetObjectSchema()
{
    return std::exchange(m_objectSchema, UINT(-1));
}

void CArchive::SetObjectSchema(UINT schema)
{
    m_objectSchema = schema;
}

void CArchive::Abort()
{
    m_file = nullptr;
    m_current = m_readEnd = m_writeEnd = m_begin;
}

void CArchive::Close()
{
    if (m_file == nullptr)
        return;
    Flush();
    Abort();
}

void CArchive::Flush()
{
    if (m_file == nullptr)
        Throw(CArchiveException::genericException);
    if (IsStoring()) {
        WriteBuffer();
        m_file->Flush();
        return;
    }
    const LONGLONG ahead = m_readEnd - m_current;
    m_current = m_readEnd = m_begin;
    m_leftIsCurrent = false;
    if (ahead != 0)
        m_file->Seek(-ahead, CFile::current);
}

void CArchive::WriteBuffer()
{
    // Emptied first: what the file refused is not offered again by the destructor.
    const auto size = UINT(m_current - m_begin);
    m_current = m_begin;
    if (size != 0)
        m_file->Write(m_begin, size);
}

void CArchive::MakeRoom()
{
    RequireStoring();
    WriteBuffer();
}

void CArchive::Write(const void* data, UINT size)
{
    RequireStoring();
    if (std::size_t(m_writeEnd - m_current) < size)
        WriteBuffer();
    if (std::size_t(m_writeEnd - m_current) < size) {
        m_file->Write(data, size);
        return;
    }
    if (size != 0)
        std::memcpy(m_current, data, size);
    m_current += size;
}

UINT CArchive::ReadFromFile(BYTE* data, UINT size)
{
    const UINT got = m_file->Read(data, size);
    m_leftInFile -= std::min<ULONGLONG>(got, m_leftInFile);
    return got;
}

/// Brings at least `wanted` bytes into the buffer; false at the end of the file.
bool CArchive::FillBuffer(std::size_t wanted)
{
    const auto kept = std::size_t(m_readEnd - m_current);
    std::memmove(m_begin, m_current, kept);
    m_current = m_begin;
    m_readEnd = m_begin + kept;
    while (std::size_t(m_readEnd - m_current) < wanted) {
        const UINT got = ReadFromFile(m_readEnd, UINT(m_limit - m_readEnd));
        if (got == 0)
            return false;
        m_readEnd += got;
    }
    return true;
}

void CArchive::Fetch(std::size_t size)
{
    RequireLoading();
    if (!FillBuffer(size))
        Throw(CArchiveException::endOfFile);
}

UINT CArchive::Read(void* data, UINT size)
{
    RequireLoading();
    auto* target = static_cast<BYTE*>(data);
    UINT done = 0;
    while (done < size) {
        const UINT missing = size - done;
        const UINT buffered = std::min(missing, UINT(m_readEnd - m_current));
        if (buffered != 0) {
            std::memcpy(target + done, m_current, buffered);
            m_current += buffered;
            done += buffered;
        } else if (missing < UINT(m_limit - m_begin)) {
            if (!FillBuffer(1))
                break;
        } else {
            const UINT got = ReadFromFile(target + done, missing);
            if (got == 0)
                break;
            done += got;
        }
    }
    return done;
}

void CArchive::EnsureRead(void* data, UINT size)
{
    // While the archive stores, the end lies at the buffer's begin.
    if (size != 0 && m_readEnd - m_current >= std::ptrdiff_t(size)) {
        std::memcpy(data, m_current, size);
        m_current += size;
        return;
    }
    if (Read(data, size) != size)
        Throw(CArchiveException::endOfFile);
}

ULONGLONG CArchive::BytesLeft()
{
    RequireLoading();
    if (!m_leftIsCurrent) {
        m_leftInFile = vak::detail::kBytesLeftUnknown;
        try {
            const ULONGLONG length = m_file->GetLength();
            const ULONGLONG position = m_file->GetPosition();
            if (length >= position)
                m_leftInFile = length - position;
        } catch (CException* exception) {
            exception->Delete();
        }
        m_leftIsCurrent = true;
    }
    // Reading on counts the unknown down as well, never to where a length could be.
    if (m_leftInFile > vak::detail::kBytesLeftUnknown / 2)
        return vak::detail::kBytesLeftUnknown;
    return m_leftInFile + ULONGLONG(m_readEnd - m_current);
}

void CArchive::WriteCount(DWORD_PTR count)
{
    if (count < 0xFFFF) {
        *this << WORD(count);
        return;
    }
    *this << WORD(0xFFFF);
    if (count < 0xFFFFFFFF) {
        *this << DWORD(count);
        return;
    }
    *this << DWORD(0xFFFFFFFF) << ULONGLONG(count);
}

DWORD_PTR CArchive::ReadCount()
{
    WORD shortCount;
    *this >> shortCount;
    if (shortCount != 0xFFFF)
        return shortCount;
    DWORD longCount;
    *this >> longCount;
    if (longCount != 0xFFFFFFFF)
        return longCount;
    ULONGLONG count;
    *this >> count;
    return DWORD_PTR(count);
}

CArchive& CArchive::operator>>(wchar_t& value)
{
    WORD unit;
    Get(unit);
    value = wchar_t(unit);
    return *this;
}

CArchive& CArchive::operator>>(bool& value)
{
    BYTE byte;
    Get(byte);
    value = byte != 0;
    return *this;
}
