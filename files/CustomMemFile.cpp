#include "files/CustomMemFile.h"

#include "framework/base/Exception.h"

#include <cstdlib>
#include <cstring>

IMPLEMENT_DYNAMIC(CCustomMemFile, CMemFile)

CCustomMemFile::CCustomMemFile(UINT growBytes) : CMemFile(growBytes) {}

CCustomMemFile::CCustomMemFile(BYTE* buffer, UINT size, UINT growBytes)
{
    Adopt(buffer, size, growBytes);
}

CCustomMemFile::~CCustomMemFile()
{
    TakeBack();
    // Here, because in the base's destructor the hooks are the base's again.
    if (m_bAutoDelete && m_lpBuffer != nullptr)
        Free(Detach());
}

void CCustomMemFile::Cursor::Return() noexcept
{
    if (m_file != nullptr)
        m_file->TakeBack();
}

void CCustomMemFile::Lend(Cursor& cursor)
{
    cursor.Return();
    TakeBack();
    if (m_lpBuffer == nullptr || m_nPosition > m_nFileSize)
        return;
    cursor.m_next = m_lpBuffer + m_nPosition;
    cursor.m_end = m_lpBuffer + m_nFileSize;
    cursor.m_file = this;
    m_cursor = &cursor;
}

void CCustomMemFile::TakeBack() noexcept
{
    if (m_cursor == nullptr)
        return;
    m_nPosition = static_cast<size_t>(m_cursor->m_next - m_lpBuffer);
    m_cursor->m_next = m_cursor->m_end = nullptr;
    m_cursor->m_file = nullptr;
    m_cursor = nullptr;
}

void CCustomMemFile::Attach(BYTE* buffer, UINT size, UINT growBytes)
{
    TakeBack();
    CMemFile::Attach(buffer, size, growBytes);
}

BYTE* CCustomMemFile::Detach()
{
    TakeBack();
    return CMemFile::Detach();
}

void CCustomMemFile::Adopt(BYTE* buffer, UINT size, UINT growBytes)
{
    // With a step the platform takes an attached buffer as empty space.
    Attach(buffer, size, growBytes);
    m_nFileSize = size;
}

ULONGLONG CCustomMemFile::GetPosition() const
{
    return m_cursor == nullptr ? CMemFile::GetPosition()
                               : static_cast<ULONGLONG>(m_cursor->m_next - m_lpBuffer);
}

ULONGLONG CCustomMemFile::Seek(LONGLONG offset, UINT from)
{
    TakeBack();
    return CMemFile::Seek(offset, from);
}

void CCustomMemFile::SetLength(ULONGLONG length)
{
    TakeBack();
    CMemFile::SetLength(length);
}

UINT CCustomMemFile::Read(void* buffer, UINT size)
{
    TakeBack();
    return CMemFile::Read(buffer, size);
}

void CCustomMemFile::Write(const void* buffer, UINT size)
{
    TakeBack();
    CMemFile::Write(buffer, size);
}

void CCustomMemFile::Close()
{
    TakeBack();
    CMemFile::Close();
}

void CCustomMemFile::Abort()
{
    TakeBack();
    CMemFile::Abort();
}

BYTE* CCustomMemFile::Alloc(size_t size)
{
    return static_cast<BYTE*>(std::malloc(size));
}

void CCustomMemFile::Free(BYTE* buffer)
{
    std::free(buffer);
}

void CCustomMemFile::GrowFile(size_t size)
{
    if (size <= m_nBufferSize)
        return;
    // Not Realloc: a class that allocates elsewhere overrides only the other two.
    const size_t rounded = m_nGrowBytes == 0 ? 0 : (size + m_nGrowBytes - 1) / m_nGrowBytes * m_nGrowBytes;
    BYTE* grown = rounded < size ? nullptr : Alloc(rounded);
    if (grown == nullptr)
        AfxThrowMemoryException();
    if (m_lpBuffer != nullptr) {
        std::memcpy(grown, m_lpBuffer, m_nBufferSize);
        Free(m_lpBuffer);
    }
    m_lpBuffer = grown;
    m_nBufferSize = rounded;
}
