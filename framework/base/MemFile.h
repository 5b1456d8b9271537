#pragma once

#include "framework/base/File.h"

#include <cstddef>

/// A file in memory.
///
/// The buffer is either the file's own (allocated by Alloc and Realloc, freed by Free) or one that the caller
/// attached and keeps owning. Growing rounds the buffer up to multiples of the grow step; with step 0 it
/// cannot grow, and a write beyond it throws CMemoryException*. A position may lie past the end: reading
/// there gives 0 bytes, writing there fills the gap with zeros. Derived classes replace the allocation by the
/// protected hooks.
class VAK_API CMemFile : public CFile
{
    DECLARE_DYNAMIC(CMemFile)

public:
    explicit CMemFile(UINT nGrowBytes = 1024);
    /// As Attach.
    CMemFile(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes = 0);
    /// Frees the file's own buffer; an attached one stays the caller's.
    ~CMemFile() override;

    /// Uses `lpBuffer` from now on. With step 0 the file is the buffer's contents and cannot grow; otherwise
    /// the file is empty, and the buffer, which must come from Alloc's allocator, is space that may be
    /// reallocated.
    void Attach(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes = 0);
    /// Hands the buffer to the caller, who frees it as it was allocated, and leaves an empty file without
    /// one.
    BYTE* Detach();

    ULONGLONG GetPosition() const override;
    ULONGLONG GetLength() const override;
    ULONGLONG Seek(LONGLONG lOff, UINT nFrom) override;
    /// Cuts or extends the file; a position beyond the new end moves there.
    void SetLength(ULONGLONG dwNewLen) override;
    UINT Read(void* lpBuf, UINT nCount) override;
    void Write(const void* lpBuf, UINT nCount) override;
    void Flush() override;
    void Close() override;
    void Abort() override;

protected:
    /// Allocate, resize and free the buffer; the first two return null when there is no memory.
    virtual BYTE* Alloc(size_t nBytes);
    virtual BYTE* Realloc(BYTE* lpMem, size_t nBytes);
    virtual void Free(BYTE* lpMem);
    /// Copies `nBytes` between the buffer and a caller's memory, in either direction.
    virtual BYTE* Memcpy(BYTE* lpMemTarget, const BYTE* lpMemSource, size_t nBytes);
    /// Makes the buffer hold at least `dwNewLen` bytes, or throws CMemoryException* and leaves it as it was.
    virtual void GrowFile(size_t dwNewLen);

    size_t m_nGrowBytes;
    size_t m_nPosition;
    size_t m_nBufferSize;
    size_t m_nFileSize;
    BYTE* m_lpBuffer;
    BOOL m_bAutoDelete; ///< the buffer is the file's own
};
