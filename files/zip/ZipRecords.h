#pragma once

#include "files/zip/ZipDates.h"
#include "files/zip/ZipFormat.h"
#include "files/zip/ZipNames.h"
#include "files/zip/ZipSource.h"

#include <cstdint>

/// The records of a zip archive as bytes, for writing.
///
/// What does not fit its field goes into zip64 fields and records, and only then are there any.
namespace vak::detail::zip {

using Buffer = ZipVector<std::uint8_t>;

/// From where on values go into zip64 records; tests lower it.
struct Zip64Start
{
    std::uint64_t value = kSee64;
    std::uint64_t count = kSee64Short;
};

/// What is written of an entry that is added.
struct NewEntry
{
    StoredName name;
    std::uint16_t flags = 0; ///< beside that of the name
    std::uint16_t method = kMethodStored;
    DosTime dosTime;
    std::int64_t written = 0; ///< seconds since 1970
    std::uint32_t crc = 0;
    std::uint64_t compressed = 0;
    std::uint64_t uncompressed = 0;
    std::uint32_t attributes = 0;
    /// The local header has a zip64 field: decided before the sizes are known.
    bool isWide = false;
    std::uint32_t part = 0;
    std::uint64_t offset = 0; ///< of the local header within its part
};

/// Appends the local header with name and extra fields. Its size depends on neither CRC nor sizes.
void AppendLocal(Buffer& to, const NewEntry& entry);
/// Appends the central record.
void AppendCentral(Buffer& to, const NewEntry& entry, const Zip64Start& start);

/// Appends a central record of an archive in one part for a local header that is now at `offset`. All else
/// stays byte for byte. False, and nothing appended, when the extra fields leave no room for a far offset.
bool AppendRelocated(Buffer& to, Bytes record, std::uint64_t offset, const Zip64Start& start);

/// An entry's other name.
struct NewName
{
    StoredName name;
    /// The entry's comment in UTF-8, for when the name makes an entry's texts UTF-8.
    CStringA comment;
};

/// Appends the central record with another name, without the field that told the old name in Unicode.
void AppendRenamed(Buffer& to, Bytes record, const NewName& name);
/// The same for a local header and what stands between it and the data.
void AppendRenamedLocal(Buffer& to, Bytes header, const NewName& name);

/// What the records at the end say.
struct Ending
{
    std::uint64_t entries = 0;
    std::uint64_t entriesInLast = 0; ///< of those, records in the last part
    std::uint32_t part = 0;          ///< where the directory begins
    std::uint64_t offset = 0;        ///< within it
    std::uint64_t size = 0;
    std::uint32_t lastPart = 0;   ///< where these records stand
    std::uint64_t lastOffset = 0; ///< within it
};

/// Appends the zip64 records if they are needed, the end record and the comment.
void AppendEnding(Buffer& to, const Ending& ending, Bytes comment, const Zip64Start& start);
/// The most bytes that AppendEnding appends.
std::size_t LargestEnding(Bytes comment);

} // namespace vak::detail::zip
