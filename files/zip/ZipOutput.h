#pragma once

#include "files/zip/ZipSource.h"
#include "files/zip/ZipVolumes.h"
#include "framework/base/ReplacementFile.h"
#include "framework/base/String.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace vak::detail {

/// The file of a new archive, or the parts of a new split one, written from front to back as one space.
///
/// Everything goes to a temporary beside the archive, which takes the archive's place in Commit; without it
/// nothing is left behind. Full parts get their names (name.z01 ...) at once, as nothing belongs to them
/// before the last one, name.zip, is there; a part that exists is never replaced.
///
/// Failures are thrown as CZipException*. After a failed write everything else fails too, until Return has
/// dropped what was written by halves.
class ZipOutput
{
public:
    using Bytes = ZipSource::Bytes;

    /// Creates the temporary. `path` is absolute, `name` the archive's for exceptions; `partSize` 0: one
    /// file, of any size.
    ZipOutput(const CString& path, const CString& name, std::uint64_t partSize);
    ~ZipOutput();
    ZipOutput(const ZipOutput&) = delete;
    ZipOutput& operator=(const ZipOutput&) = delete;

    bool IsSplit() const { return m_partSize != 0; }
    /// Where the next byte goes, in the whole space.
    std::uint64_t Position() const { return m_partStart + Within(); }
    /// The number of the part, from 0, and the place in it.
    std::uint32_t Part() const { return static_cast<std::uint32_t>(m_finished.size()); }
    std::uint64_t Within() const { return m_written + m_buffered; }

    /// Begins a new part unless the next `size` bytes, a record's, stay in one.
    void Reserve(std::size_t size);
    void Write(Bytes bytes);
    /// Appends bytes of another archive, in the kernel where it can.
    void Copy(ZipVolumes& from, std::uint64_t offset, std::uint64_t size);
    /// Writes over bytes that were written, which lie in one part.
    void Patch(std::uint64_t position, Bytes bytes);
    /// Whether the place is in the part that is being written.
    bool CanReturn(std::uint64_t position) const { return position >= m_partStart; }
    /// Drops everything from there on.
    void Return(std::uint64_t position);
    /// Hands what is buffered to the system.
    void Flush();
    /// The file that is being written; changes with the part. Empty when it could not be made.
    CString TemporaryPath() const { return m_file == nullptr ? CString() : m_file->TemporaryPath(); }
    void Commit();

private:
    struct Finished
    {
        CString path;
        std::uint64_t end = 0; ///< in the whole space
    };

    void Begin();
    void FinishPart();
    void WriteToFile(const std::uint8_t* bytes, std::size_t size);
    void PatchFile(HANDLE file, std::uint64_t within, Bytes bytes);
    void PatchFinished(std::uint64_t position, Bytes bytes);
    std::uint64_t Room() const;
    void CheckUsable() const;
    [[noreturn]] void Fail(DWORD error);
    template <class Act>
    void Guarded(Act act);

    CString m_path;
    CString m_name;
    std::uint64_t m_partSize;
    std::unique_ptr<ReplacementFile> m_file;
    ZipVector<Finished> m_finished;
    std::uint64_t m_partStart = 0; ///< of the part being written, in the whole space
    std::uint64_t m_written = 0;   ///< bytes of it that the system has
    ZipVector<std::uint8_t> m_buffer;
    std::size_t m_buffered = 0;
    DWORD m_error = 0; ///< of the write that failed
    bool m_committed = false;
};

} // namespace vak::detail
