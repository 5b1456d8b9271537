#pragma once

#include "files/zip/ZipCodec.h"
#include "files/zip/ZipDirectory.h"
#include "files/zip/ZipSource.h"
#include "framework/base/String.h"

#include <cstddef>
#include <cstdint>

namespace vak::detail {

/// What an entry's local header says that the directory does not.
struct ZipLocal
{
    std::uint64_t data = 0;     ///< where the data begin, in the whole space
    bool hasDescriptor = false; ///< a record with sizes and CRC follows the data
    bool isComplete = false;    ///< the header itself has them too
};

/// Holds the local header of an entry against the directory. Returns 0, or the code of CZipException that
/// says what contradicts.
int CheckLocalHeader(ZipSource& source, const ZipDirectory& directory, const ZipEntry& entry,
                     ZipLocal& local);

/// Reads the data of one entry and checks everything that can be: the local header before the first byte;
/// behind the last, size, CRC and the record behind the data. Throws CZipException*.
class ZipEntryStream
{
public:
    /// All must outlive the stream; `directory` is the one that `entry` is of.
    ZipEntryStream(ZipSource& source, const ZipDirectory& directory, const ZipEntry& entry,
                   ZipInflater& inflater, const CString& archive);

    /// Puts the next bytes into `buffer` and returns how many; 0 when everything was read and found right.
    std::size_t Read(std::span<std::uint8_t> buffer);

private:
    std::size_t ReadStored(std::span<std::uint8_t> buffer);
    std::size_t ReadDeflated(std::span<std::uint8_t> buffer);
    void Begin();
    void Finish();
    bool HasRightDescriptor() const;
    [[noreturn]] void Throw(int cause) const;
    [[noreturn]] void ThrowMethod() const;

    ZipSource& m_source;
    const ZipDirectory& m_directory;
    const ZipEntry& m_entry;
    ZipInflater& m_inflater;
    const CString& m_archive;
    ZipLocal m_local;
    std::uint64_t m_next = 0;     ///< where the data go on
    std::uint64_t m_left = 0;     ///< compressed bytes that were not used
    std::uint64_t m_expanded = 0; ///< bytes that were given out
    std::uint32_t m_crc = 0;
    bool m_ended = false;
};

} // namespace vak::detail
