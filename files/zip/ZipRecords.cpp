#include "files/zip/ZipRecords.h"

#include "framework/base/ByteOrder.h"

#include <algorithm>
#include <limits>

namespace vak::detail::zip {

namespace {

constexpr std::uint16_t kVersionStored = 10;
constexpr std::uint16_t kVersionDeflated = 20;
constexpr std::uint16_t kVersionWide = 45;
/// The high byte of "made by" is 0: attributes are those of the FAT file system.
constexpr std::uint16_t kVersionMadeBy = 45;

constexpr std::uint16_t kExtraTime = 0x5455;
constexpr std::uint8_t kHasModified = 1;
constexpr std::size_t kExtraHeader = 4;
constexpr std::size_t kLongestExtra = 0xFFFF;

/// Where in their records the fields stand that are changed in place.
constexpr std::size_t kLocalFlags = 6;
constexpr std::size_t kLocalNameLength = 26;
constexpr std::size_t kLocalExtraLength = 28;
constexpr std::size_t kCentralNeeded = 6;
constexpr std::size_t kCentralFlags = 8;
constexpr std::size_t kCentralNameLength = 28;
constexpr std::size_t kCentralExtraLength = 30;
constexpr std::size_t kCentralCommentLength = 32;
constexpr std::size_t kCentralDisk = 34;
constexpr std::size_t kCentralOffset = 42;

/// Appends little-endian values.
class Writer
{
public:
    explicit Writer(Buffer& to) : m_to(to) {}

    template <class T>
    Writer& operator<<(T value)
    {
        const std::size_t at = m_to.size();
        m_to.resize(at + sizeof(T));
        StoreLittleEndian(m_to.data() + at, value);
        return *this;
    }
    Writer& operator<<(Bytes bytes)
    {
        m_to.insert(m_to.end(), bytes.begin(), bytes.end());
        return *this;
    }

private:
    Buffer& m_to;
};

Bytes BytesOf(const CStringA& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.GetString()),
            static_cast<std::size_t>(text.GetLength())};
}

std::uint32_t Narrow(std::uint64_t value, bool isWide)
{
    return isWide ? kSee64 : static_cast<std::uint32_t>(value);
}

std::uint16_t Needed(const NewEntry& entry, bool isWide)
{
    if (isWide)
        return kVersionWide;
    const bool isFolder = entry.name.bytes.Right(1) == "/";
    return entry.method == kMethodStored && !isFolder ? kVersionStored : kVersionDeflated;
}

std::uint16_t Flags(const NewEntry& entry)
{
    return entry.name.isUtf8 ? entry.flags | kFlagUtf8 : entry.flags;
}

/// The moment itself, as the DOS time has no zone and even seconds only.
void AppendTime(Buffer& extra, std::int64_t written)
{
    using Range = std::numeric_limits<std::int32_t>;
    if (written >= 0 && written <= Range::max())
        Writer(extra) << kExtraTime << std::uint16_t{5} << kHasModified << static_cast<std::int32_t>(written);
}

template <class T>
void Store(std::uint8_t* record, std::size_t at, T value)
{
    StoreLittleEndian(record + at, value);
}

template <class T>
T Load(Bytes record, std::size_t at)
{
    return LoadLittleEndian<T>(record.data() + at);
}

/// Calls `each(id, field)` for every extra field with its header; what is no field any more has the id 0.
template <class Each>
void ForEachExtra(Bytes extra, Each each)
{
    while (!extra.empty()) {
        std::size_t size = extra.size();
        std::uint16_t id = 0;
        if (size >= kExtraHeader && Load<std::uint16_t>(extra, 2) <= size - kExtraHeader) {
            id = Load<std::uint16_t>(extra, 0);
            size = kExtraHeader + Load<std::uint16_t>(extra, 2);
        }
        each(id, extra.first(size));
        extra = extra.subspan(size);
    }
}

/// The extra fields without those of an id.
Buffer Without(Bytes extra, std::uint16_t first, std::uint16_t second)
{
    Buffer kept;
    ForEachExtra(extra, [&](std::uint16_t id, Bytes field) {
        if (id != first && id != second)
            Writer(kept) << field;
    });
    return kept;
}

/// Extra fields in which the zip64 field holds the offset behind the `sizes` that the header leaves to it.
Buffer WithWideOffset(Bytes extra, std::size_t sizes, std::uint64_t offset)
{
    Buffer wide;
    Bytes old = FindExtra(extra, kExtraZip64);
    old = old.first(std::min(sizes, old.size()));
    Writer(wide) << kExtraZip64 << static_cast<std::uint16_t>(old.size() + sizeof offset) << old << offset;
    Writer(wide) << Bytes(Without(extra, kExtraZip64, kExtraZip64));
    return wide;
}

/// Where in the zip64 field the offset stands that the header leaves to it.
std::size_t WideOffsetAt(const CentralHeader& header)
{
    return (header.uncompressed == kSee64 ? 8u : 0u) + (header.compressed == kSee64 ? 8u : 0u);
}

/// What local header and central record share.
struct SharedFields
{
    bool needs64;       ///< to be read
    bool hasWidePacked; ///< the compressed size is in the zip64 field
    bool hasWide;       ///< the size is
    std::size_t extra;  ///< length of the extra fields
};

void AppendShared(Buffer& to, const NewEntry& entry, const SharedFields& fields)
{
    Writer(to) << Needed(entry, fields.needs64) << Flags(entry) << entry.method << entry.dosTime.time
               << entry.dosTime.date << entry.crc << Narrow(entry.compressed, fields.hasWidePacked)
               << Narrow(entry.uncompressed, fields.hasWide)
               << static_cast<std::uint16_t>(entry.name.bytes.GetLength())
               << static_cast<std::uint16_t>(fields.extra);
}

} // namespace

void AppendLocal(Buffer& to, const NewEntry& entry)
{
    Buffer extra;
    if (entry.isWide)
        Writer(extra) << kExtraZip64 << std::uint16_t{16} << entry.uncompressed << entry.compressed;
    AppendTime(extra, entry.written);
    Writer(to) << kLocalSignature;
    AppendShared(to, entry, {entry.isWide, entry.isWide, entry.isWide, extra.size()});
    Writer(to) << BytesOf(entry.name.bytes) << Bytes(extra);
}

void AppendCentral(Buffer& to, const NewEntry& entry, const Zip64Start& start)
{
    const bool isLong = entry.uncompressed >= start.value;
    const bool isLongPacked = entry.compressed >= start.value;
    const bool isFar = entry.offset >= start.value;
    Buffer values;
    if (isLong)
        Writer(values) << entry.uncompressed;
    if (isLongPacked)
        Writer(values) << entry.compressed;
    if (isFar)
        Writer(values) << entry.offset;
    Buffer extra;
    if (!values.empty())
        Writer(extra) << kExtraZip64 << static_cast<std::uint16_t>(values.size()) << Bytes(values);
    AppendTime(extra, entry.written);
    Writer(to) << kCentralSignature << kVersionMadeBy;
    AppendShared(to, entry, {entry.isWide || !values.empty(), isLongPacked, isLong, extra.size()});
    Writer(to) << std::uint16_t{0} << static_cast<std::uint16_t>(entry.part) << std::uint16_t{0}
               << entry.attributes << Narrow(entry.offset, isFar) << BytesOf(entry.name.bytes)
               << Bytes(extra);
}

bool AppendRelocated(Buffer& to, Bytes record, std::uint64_t offset, const Zip64Start& start)
{
    CentralHeader header;
    Parse(record, header);
    const std::size_t at = to.size();
    const std::size_t extraAt = kCentralSize + header.nameLength;
    const Bytes extra = record.subspan(extraAt, header.extraLength);
    const Bytes wide = FindExtra(extra, kExtraZip64);
    const std::size_t wideAt = WideOffsetAt(header);
    if (header.localOffset == kSee64 && wide.size() >= wideAt + sizeof offset) {
        Writer(to) << record;
        const auto inRecord = static_cast<std::size_t>(wide.data() - record.data()) + wideAt;
        Store(to.data() + at, inRecord, offset);
        return true;
    }
    if (offset < start.value) {
        Writer(to) << record;
        Store(to.data() + at, kCentralDisk, std::uint16_t{0});
        Store(to.data() + at, kCentralOffset, static_cast<std::uint32_t>(offset));
        return true;
    }
    const Buffer grown = WithWideOffset(extra, wideAt, offset);
    if (grown.size() > kLongestExtra)
        return false;
    Writer(to) << record.first(extraAt) << Bytes(grown) << record.subspan(extraAt + extra.size());
    Store(to.data() + at, kCentralDisk, std::uint16_t{0});
    Store(to.data() + at, kCentralOffset, kSee64);
    Store(to.data() + at, kCentralNeeded, std::max(header.versionNeeded, kVersionWide));
    Store(to.data() + at, kCentralExtraLength, static_cast<std::uint16_t>(grown.size()));
    return true;
}

void AppendRenamed(Buffer& to, Bytes record, const NewName& name)
{
    CentralHeader header;
    Parse(record, header);
    const std::size_t at = to.size();
    const bool turnsUtf8 = name.name.isUtf8 && (header.flags & kFlagUtf8) == 0;
    const Bytes extra = record.subspan(kCentralSize + header.nameLength, header.extraLength);
    const Buffer kept =
        Without(extra, kExtraUnicodePath, turnsUtf8 ? kExtraUnicodeComment : kExtraUnicodePath);
    const Bytes stored = BytesOf(name.name.bytes);
    const Bytes comment = turnsUtf8 ? BytesOf(name.comment) : record.last(header.commentLength);
    Writer(to) << record.first(kCentralSize) << stored << Bytes(kept) << comment;
    std::uint8_t* const renamed = to.data() + at;
    if (turnsUtf8)
        Store(renamed, kCentralFlags, static_cast<std::uint16_t>(header.flags | kFlagUtf8));
    Store(renamed, kCentralNameLength, static_cast<std::uint16_t>(stored.size()));
    Store(renamed, kCentralExtraLength, static_cast<std::uint16_t>(kept.size()));
    Store(renamed, kCentralCommentLength, static_cast<std::uint16_t>(comment.size()));
}

void AppendRenamedLocal(Buffer& to, Bytes header, const NewName& name)
{
    LocalHeader old;
    Parse(header, old);
    const std::size_t at = to.size();
    const Buffer kept = Without(header.subspan(kLocalSize + old.nameLength, old.extraLength),
                                kExtraUnicodePath, kExtraUnicodePath);
    const Bytes stored = BytesOf(name.name.bytes);
    Writer(to) << header.first(kLocalSize) << stored << Bytes(kept);
    std::uint8_t* const renamed = to.data() + at;
    if (name.name.isUtf8)
        Store(renamed, kLocalFlags, static_cast<std::uint16_t>(old.flags | kFlagUtf8));
    Store(renamed, kLocalNameLength, static_cast<std::uint16_t>(stored.size()));
    Store(renamed, kLocalExtraLength, static_cast<std::uint16_t>(kept.size()));
}

void AppendEnding(Buffer& to, const Ending& ending, Bytes comment, const Zip64Start& start)
{
    const bool isMany = ending.entries >= start.count;
    const bool isManyInLast = ending.entriesInLast >= start.count;
    const bool isLong = ending.size >= start.value;
    const bool isFar = ending.offset >= start.value;
    if (isMany || isManyInLast || isLong || isFar) {
        constexpr std::uint64_t kBehindSize = kEnd64Size - 12;
        Writer(to) << kEnd64Signature << kBehindSize << kVersionMadeBy << kVersionWide << ending.lastPart
                   << ending.part << ending.entriesInLast << ending.entries << ending.size << ending.offset;
        Writer(to) << kLocator64Signature << ending.lastPart << ending.lastOffset << ending.lastPart + 1;
    }
    Writer(to) << kEndSignature << static_cast<std::uint16_t>(ending.lastPart)
               << static_cast<std::uint16_t>(ending.part)
               << (isManyInLast ? kSee64Short : static_cast<std::uint16_t>(ending.entriesInLast))
               << (isMany ? kSee64Short : static_cast<std::uint16_t>(ending.entries))
               << Narrow(ending.size, isLong) << Narrow(ending.offset, isFar)
               << static_cast<std::uint16_t>(comment.size()) << comment;
}

std::size_t LargestEnding(Bytes comment)
{
    return kEnd64Size + kLocator64Size + kEndSize + comment.size();
}

} // namespace vak::detail::zip
