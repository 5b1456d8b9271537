#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// The published layout of a zip archive's records, parsed from little-endian bytes.
///
/// Parsing looks at nothing but the bytes given: it answers false when they are too few or do not begin with
/// the record's signature, and judges no value. Lengths that a record declares are not added to its size
/// here.
namespace vak::detail::zip {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint32_t kLocalSignature = 0x04034B50;
constexpr std::uint32_t kCentralSignature = 0x02014B50;
constexpr std::uint32_t kEndSignature = 0x06054B50;
constexpr std::uint32_t kEnd64Signature = 0x06064B50;
constexpr std::uint32_t kLocator64Signature = 0x07064B50;
/// Of the record behind an entry's data; the first part of a split archive begins with it too.
constexpr std::uint32_t kDescriptorSignature = 0x08074B50;
/// The beginning of an archive that was to be split and fitted into one part.
constexpr std::uint32_t kSinglePartSignature = 0x30304B50;
constexpr std::uint32_t kDigitalSignature = 0x05054B50;

constexpr std::size_t kLocalSize = 30;
constexpr std::size_t kCentralSize = 46;
constexpr std::size_t kEndSize = 22;
constexpr std::size_t kEnd64Size = 56;
constexpr std::size_t kLocator64Size = 20;
constexpr std::size_t kMostComment = 0xFFFF;

constexpr std::uint16_t kMethodStored = 0;
constexpr std::uint16_t kMethodDeflated = 8;

constexpr std::uint16_t kFlagEncrypted = 0x0001;
constexpr std::uint16_t kFlagDescriptor = 0x0008;
/// The data are a patch to another file.
constexpr std::uint16_t kFlagPatched = 0x0020;
constexpr std::uint16_t kFlagStrongEncryption = 0x0040;
constexpr std::uint16_t kFlagUtf8 = 0x0800;
constexpr std::uint16_t kFlagMasked = 0x2000;

constexpr std::uint16_t kExtraZip64 = 0x0001;
constexpr std::uint16_t kExtraUnicodePath = 0x7075;
constexpr std::uint16_t kExtraUnicodeComment = 0x6375;

/// Values that say "see the zip64 field".
constexpr std::uint16_t kSee64Short = 0xFFFF;
constexpr std::uint32_t kSee64 = 0xFFFFFFFF;
/// The space of an offset in 32 bits.
constexpr std::uint64_t kLap = std::uint64_t{1} << 32;

/// What local header and central record share.
struct EntryFields
{
    std::uint16_t versionNeeded = 0;
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint16_t time = 0;
    std::uint16_t date = 0;
    std::uint32_t crc = 0;
    std::uint32_t compressed = 0;
    std::uint32_t uncompressed = 0;
    std::uint16_t nameLength = 0;
    std::uint16_t extraLength = 0;
};

struct LocalHeader : EntryFields
{
};

struct CentralHeader : EntryFields
{
    std::uint16_t versionMadeBy = 0;
    std::uint16_t commentLength = 0;
    std::uint16_t disk = 0;
    std::uint16_t internalAttributes = 0;
    std::uint32_t externalAttributes = 0;
    std::uint32_t localOffset = 0; ///< within its disk

    std::size_t Size() const { return kCentralSize + nameLength + extraLength + commentLength; }
};

struct EndRecord
{
    std::uint16_t disk = 0;          ///< the number of the disk that holds this record, from 0
    std::uint16_t directoryDisk = 0; ///< of the one where the directory begins
    std::uint16_t entriesOnDisk = 0;
    std::uint16_t entries = 0;
    std::uint32_t directorySize = 0;
    std::uint32_t directoryOffset = 0; ///< within its disk
    std::uint16_t commentLength = 0;
};

struct End64Record
{
    std::uint64_t recordSize = 0; ///< of what follows that field
    std::uint16_t versionMadeBy = 0;
    std::uint16_t versionNeeded = 0;
    std::uint32_t disk = 0;
    std::uint32_t directoryDisk = 0;
    std::uint64_t entriesOnDisk = 0;
    std::uint64_t entries = 0;
    std::uint64_t directorySize = 0;
    std::uint64_t directoryOffset = 0;
};

struct Locator64
{
    std::uint32_t end64Disk = 0;
    std::uint64_t end64Offset = 0; ///< within its disk
    std::uint32_t disks = 0;       ///< their number
};

/// The signature at the beginning of `bytes`, 0 when they are too few.
std::uint32_t SignatureOf(Bytes bytes);
bool Parse(Bytes bytes, LocalHeader& record);
bool Parse(Bytes bytes, CentralHeader& record);
bool Parse(Bytes bytes, EndRecord& record);
bool Parse(Bytes bytes, End64Record& record);
bool Parse(Bytes bytes, Locator64& record);

/// The contents of the first extra field of that kind; empty when there is none. Fields behind one that is
/// cut off are not seen: some tools pad the area with zeros.
Bytes FindExtra(Bytes extra, std::uint16_t id);

/// What a zip64 extra field says in place of values that do not fit. Each is asked for in the order of the
/// members and only where the header's own value says so, as the field leaves out the others.
struct Zip64Values
{
    std::uint64_t uncompressed = 0;
    std::uint64_t compressed = 0;
    std::uint64_t localOffset = 0;
    std::uint32_t disk = 0;
};

/// Replaces the members that hold kSee64 (the disk: kSee64Short) by the field's; false when the field ends
/// before the last of them. Without a field the members are taken at their word.
bool ReadZip64(Bytes extra, Zip64Values& values);

} // namespace vak::detail::zip
