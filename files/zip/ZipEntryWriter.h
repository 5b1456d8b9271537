#pragma once

#include "files/zip/ZipCodec.h"
#include "files/zip/ZipOutput.h"
#include "files/zip/ZipRecords.h"
#include "framework/base/String.h"

#include <cstddef>
#include <cstdint>

namespace vak::detail {

/// A file or folder that is to become an entry.
struct ZipAddition
{
    CString path;
    CString name;      ///< of the entry, safe; that of a folder ends in a backslash
    int level = 6;     ///< 0 stores
    int smartness = 0; ///< bits of CZipArchive::Smartness
    std::size_t bufferSize = 0;
};

/// Writes entries from files: local headers and data.
///
/// A file is read to the length that it had when it was opened, or to its end if that comes earlier, and the
/// entry says what was read. Headers are complete: nothing has to follow the data. Small files are compressed
/// in memory; of large ones a few samples tell whether compressing is worth its time.
class ZipEntryWriter
{
public:
    /// Both must outlive the object; `archive` is for exceptions.
    ZipEntryWriter(ZipOutput& output, const zip::Zip64Start& start, const CString& archive);

    /// Writes the entry and appends its central record to `record`. Throws CZipException*, having written a
    /// part of it.
    void Add(const ZipAddition& what, zip::Buffer& record);
    /// Where in the whole space the last entry begins.
    std::uint64_t Position() const { return m_position; }

private:
    class Source;

    void AddSmall(Source& source, const ZipAddition& what);
    void AddLarge(Source& source, const ZipAddition& what);
    bool AddDeflated(Source& source, const ZipAddition& what);
    void AddStored(Source& source);
    void Begin();
    void End();
    std::size_t CompressSmall(zip::Bytes data, const ZipAddition& what);
    bool LooksIncompressible(Source& source);

    ZipOutput& m_output;
    const zip::Zip64Start& m_start;
    const CString& m_archive;
    ZipDeflater m_deflater;
    ZipDeflater m_sampler; ///< of another level: changing that costs more than a sample
    zip::NewEntry m_entry;
    std::uint64_t m_position = 0; ///< of the entry's local header in the whole space
    zip::Buffer m_header;
    ZipVector<std::uint8_t> m_in;
    ZipVector<std::uint8_t> m_out;
};

} // namespace vak::detail
