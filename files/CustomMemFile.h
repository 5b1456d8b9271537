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

    /// Reads the file from its position on with nothing but two pointers, in place of the file: while it
    /// does, it keeps the position. Whatever is asked of the file itself makes it take the position back, so
    /// that everybody always sees the same one; a new Lend starts the cursor again.
    class VAK_API Cursor
    {
    public:
        Cursor() = default;
        /// Copies read nothing until they are lent a file themselves.
        Cursor(const Cursor&) {}
        Cursor& operator=(const Cursor&)
        {
            Return();
            return *this;
        }
        ~Cursor() { Return(); }

        /// Whether that many bytes are left to read here.
        bool Has(UINT size) const noexcept { return static_cast<size_t>(m_end - m_next) >= size; }
        /// Moves past `size` bytes, no more than it has, and returns where they stand, valid until the file
        /// is changed.
        const BYTE* Pass(UINT size) noexcept
        {
            const BYTE* bytes = m_next;
            m_next += size;
            return bytes;
        }
        /// Gives the position back.
        void Return() noexcept;

    private:
        friend class CCustomMemFile;

        const BYTE* m_next = nullptr;
        const BYTE* m_end = nullptr;
        CCustomMemFile* m_file = nullptr;
    };

    explicit CCustomMemFile(UINT growBytes = kGrowBytes);
    /// As Adopt.
    CCustomMemFile(BYTE* buffer, UINT size, UINT growBytes = kGrowBytes);
    /// Frees the file's own buffer; an adopted one stays the caller's.
    ~CCustomMemFile() override;

    /// As CMemFile's.
    void Attach(BYTE* buffer, UINT size, UINT growBytes = 0);
    BYTE* Detach();
    /// Makes the `size` bytes at `buffer`, which came from Alloc, the contents, positioned at their
    /// beginning. The buffer stays the caller's, who takes it back with Detach (it may have moved by
    /// growing).
    void Adopt(BYTE* buffer, UINT size, UINT growBytes = kGrowBytes);
    /// Lets `cursor` read from the position on, until the file is used in another way.
    void Lend(Cursor& cursor);

    ULONGLONG GetPosition() const override;
    ULONGLONG Seek(LONGLONG offset, UINT from) override;
    void SetLength(ULONGLONG length) override;
    UINT Read(void* buffer, UINT size) override;
    void Write(const void* buffer, UINT size) override;
    void Close() override;
    void Abort() override;

    /// Returns null when there is no memory.
    BYTE* Alloc(size_t size) override;
    void Free(BYTE* buffer) override;
    /// Makes the buffer hold at least `size` bytes, rounded up to the grow step; throws CMemoryException* and
    /// leaves it as it was when that fails or the step is 0.
    void GrowFile(size_t size) override;

private:
    void TakeBack() noexcept;

    Cursor* m_cursor = nullptr; ///< not owned; what reads in place of the file, and points back at it
};
