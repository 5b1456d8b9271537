#include "framework/base/MemFile.h"

#include "framework/base/Exception.h"
#include "framework/base/FileException.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

IMPLEMENT_DYNAMIC(CMemFile, CFile)

CMemFile::CMemFile(UINT nGrowBytes)
    : m_nGrowBytes(nGrowBytes), m_nPosition(0), m_nBufferSize(0), m_nFileSize(0), m_lpBuffer(nullptr),
      m_bAutoDelete(TRUE)
{
}

CMemFile::CMemFile(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes)
    : m_nGrowBytes(nGrowBytes), m_nPosition(0), m_nBufferSize(nBufferSize),
      m_nFileSize(nGrowBytes == 0 ? nBufferSize : 0), m_lpBuffer(lpBuffer), m_bAutoDelete(FALSE)
{
}

CMemFile::~CMemFile()
{
    // A derived class whose Free is not the standard one closes in its own destructor.
    if (m_lpBuffer != nullptr)
        CMemFile::Close();
}

void CMemFile::Attach(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes)
{
    if (m_bAutoDelete && m_lpBuffer != nullptr && m_lpBuffer != lpBuffer)
        Free(m_lpBuffer);
    m_nGrowBytes = nGrowBytes;
    m_nPosition = 0;
    m_nBufferSize = nBufferSize;
    m_nFileSize = nGrowBytes == 0 ? nBufferSize : 0;
    m_lpBuffer = lpBuffer;
    m_bAutoDelete = FALSE;
}

BYTE* CMemFile::Detach()
{
    BYTE* const buffer = m_lpBuffer;
    m_lpBuffer = nullptr;
    m_nFileSize = 0;
    m_nBufferSize = 0;
    m_nPosition = 0;
    // What grows from now on is the file's own, whoever owned the buffer that left.
    m_bAutoDelete = TRUE;
    return buffer;
}

ULONGLONG CMemFile::GetPosition() const
{
    return m_nPosition;
}

ULONGLONG CMemFile::GetLength() const
{
    return m_nFileSize;
}

ULONGLONG CMemFile::Seek(LONGLONG lOff, UINT nFrom)
{
    if (nFrom > end)
        AfxThrowFileException(CFileException::badSeek, -1, m_strFileName);
    const size_t origin = nFrom == begin ? 0 : nFrom == current ? m_nPosition : m_nFileSize;
    LONGLONG reached = 0;
    if (__builtin_add_overflow(static_cast<LONGLONG>(origin), lOff, &reached) || reached < 0)
        AfxThrowFileException(CFileException::badSeek, -1, m_strFileName);
    m_nPosition = static_cast<size_t>(reached);
    return m_nPosition;
}

void CMemFile::SetLength(ULONGLONG dwNewLen)
{
    if (dwNewLen > static_cast<ULONGLONG>(std::numeric_limits<std::ptrdiff_t>::max()))
        AfxThrowMemoryException();
    const auto length = static_cast<size_t>(dwNewLen);
    if (length > m_nBufferSize)
        GrowFile(length);
    if (length > m_nFileSize)
        std::memset(m_lpBuffer + m_nFileSize, 0, length - m_nFileSize);
    m_nPosition = std::min(m_nPosition, length);
    m_nFileSize = length;
}

UINT CMemFile::Read(void* lpBuf, UINT nCount)
{
    if (nCount == 0 || m_nPosition >= m_nFileSize)
        return 0;
    const auto count = static_cast<UINT>(std::min<size_t>(nCount, m_nFileSize - m_nPosition));
    Memcpy(static_cast<BYTE*>(lpBuf), m_lpBuffer + m_nPosition, count);
    m_nPosition += count;
    return count;
}

void CMemFile::Write(const void* lpBuf, UINT nCount)
{
    if (nCount == 0)
        return;
    if (m_nPosition > static_cast<size_t>(std::numeric_limits<std::ptrdiff_t>::max()) - nCount)
        AfxThrowMemoryException();
    const size_t reached = m_nPosition + nCount;
    if (reached > m_nBufferSize)
        GrowFile(reached);
    if (m_nPosition > m_nFileSize)
        std::memset(m_lpBuffer + m_nFileSize, 0, m_nPosition - m_nFileSize);
    Memcpy(m_lpBuffer + m_nPosition, static_cast<const BYTE*>(lpBuf), nCount);
    m_nPosition = reached;
    m_nFileSize = std::max(m_nFileSize, reached);
}

void CMemFile::Flush() {}

void CMemFile::Close()
{
    BYTE* const buffer = m_lpBuffer;
    m_nGrowBytes = 0;
    m_nPosition = 0;
    m_nBufferSize = 0;
    m_nFileSize = 0;
    m_lpBuffer = nullptr;
    if (buffer != nullptr && m_bAutoDelete)
        Free(buffer);
}

void CMemFile::Abort()
{
    Close();
}

BYTE* CMemFile::Alloc(size_t nBytes)
{
    return static_cast<BYTE*>(std::malloc(nBytes));
}

BYTE* CMemFile::Realloc(BYTE* lpMem, size_t nBytes)
{
    return static_cast<BYTE*>(std::realloc(lpMem, nBytes));
}

void CMemFile::Free(BYTE* lpMem)
{
    std::free(lpMem);
}

BYTE* CMemFile::Memcpy(BYTE* lpMemTarget, const BYTE* lpMemSource, size_t nBytes)
{
    return static_cast<BYTE*>(std::memcpy(lpMemTarget, lpMemSource, nBytes));
}

void CMemFile::GrowFile(size_t dwNewLen)
{
    if (dwNewLen <= m_nBufferSize)
        return;
    if (m_nGrowBytes == 0)
        AfxThrowMemoryException();
    const size_t steps = (dwNewLen - m_nBufferSize - 1) / m_nGrowBytes + 1;
    const size_t size = m_nBufferSize + steps * m_nGrowBytes;
    BYTE* const buffer = m_lpBuffer == nullptr ? Alloc(size) : Realloc(m_lpBuffer, size);
    if (buffer == nullptr)
        AfxThrowMemoryException();
    m_lpBuffer = buffer;
    m_nBufferSize = size;
}
