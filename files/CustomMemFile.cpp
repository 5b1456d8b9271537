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
    // Here, because in the base's destructor the hooks are the base's again.
    if (m_bAutoDelete && m_lpBuffer != nullptr)
        Free(Detach());
}

void CCustomMemFile::Adopt(BYTE* buffer, UINT size, UINT growBytes)
{
    // With a step the platform takes an attached buffer as empty space.
    Attach(buffer, size, growBytes);
    m_nFileSize = size;
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
