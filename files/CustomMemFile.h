#pragma once

#include "framework/base/MemFile.h"

/// A memory file that grows by steps and can adopt a buffer together with what stands in it.
///
/// The buffer comes from Alloc and goes to Free; a class that derives to allocate elsewhere overrides both,
/// and frees what is left in its own destructor (Detach, then Free).
class VAK_API CCustomMemFile : public CMemFile
{
    DECLARE_DYNAMIC(CCustomMemFile)

public:
    static constexpr UINT kGrowBytes = 1024;

    explicit CCustomMemFile(UINT growBytes = kGrowBytes);
    /// As Adopt.
    CCustomMemFile(BYTE* buffer, UINT size, UINT growBytes = kGrowBytes);
    /// Frees the file's own buffer; an adopted one stays the caller's.
    ~CCustomMemFile() override;

    /// Makes the `size` bytes at `buffer`, which came from Alloc, the contents, positioned at their
    /// beginning. The buffer stays the caller's, who takes it back with Detach (it may have moved by
    /// growing).
    void Adopt(BYTE* buffer, UINT size, UINT growBytes = kGrowBytes);

    /// Whether that many bytes are left to read.
    bool Has(UINT size) const noexcept { return static_cast<ULONGLONG>(m_nPosition) + size <= m_nFileSize; }
    /// Moves past `size` bytes, no more than it has, and returns where they stand, valid until the file is
    /// changed.
    const BYTE* Pass(UINT size) noexcept
    {
        const BYTE* bytes = m_lpBuffer + m_nPosition;
        m_nPosition += size;
        return bytes;
    }

    /// Returns null when there is no memory.
    BYTE* Alloc(size_t size) override;
    void Free(BYTE* buffer) override;
    /// Makes the buffer hold at least `size` bytes, rounded up to the grow step; throws CMemoryException* and
    /// leaves it as it was when that fails or the step is 0.
    void GrowFile(size_t size) override;
};
