#include "files/zip/ZipFormat.h"

#include "framework/base/ByteOrder.h"

namespace vak::detail::zip {

namespace {

/// Takes values off the front of bytes that are known to be enough.
class Cursor
{
public:
    explicit Cursor(Bytes bytes) : m_next(bytes.data()) {}

    template <class T>
    Cursor& operator>>(T& value)
    {
        value = LoadLittleEndian<T>(m_next);
        m_next += sizeof(T);
        return *this;
    }
    Cursor& operator>>(EntryFields& fields)
    {
        return *this >> fields.versionNeeded >> fields.flags >> fields.method >> fields.time >> fields.date >>
               fields.crc >> fields.compressed >> fields.uncompressed >> fields.nameLength >>
               fields.extraLength;
    }

private:
    const std::uint8_t* m_next;
};

bool Begins(Bytes bytes, std::uint32_t signature, std::size_t size)
{
    return bytes.size() >= size && SignatureOf(bytes) == signature;
}

/// Takes a value that the field holds in place of `value`; false when the field has ended.
template <class Value>
bool TakeInstead(Bytes& field, Value& value, Value marker)
{
    if (value != marker)
        return true;
    if (field.size() < sizeof(Value))
        return false;
    value = LoadLittleEndian<Value>(field.data());
    field = field.subspan(sizeof(Value));
    return true;
}

} // namespace

std::uint32_t SignatureOf(Bytes bytes)
{
    return bytes.size() < 4 ? 0 : LoadLittleEndian<std::uint32_t>(bytes.data());
}

bool Parse(Bytes bytes, LocalHeader& record)
{
    if (!Begins(bytes, kLocalSignature, kLocalSize))
        return false;
    Cursor(bytes.subspan(4)) >> static_cast<EntryFields&>(record);
    return true;
}

bool Parse(Bytes bytes, CentralHeader& record)
{
    if (!Begins(bytes, kCentralSignature, kCentralSize))
        return false;
    Cursor(bytes.subspan(4)) >> record.versionMadeBy >> static_cast<EntryFields&>(record) >>
        record.commentLength >> record.disk >> record.internalAttributes >> record.externalAttributes >>
        record.localOffset;
    return true;
}

bool Parse(Bytes bytes, EndRecord& record)
{
    if (!Begins(bytes, kEndSignature, kEndSize))
        return false;
    Cursor(bytes.subspan(4)) >> record.disk >> record.directoryDisk >> record.entriesOnDisk >>
        record.entries >> record.directorySize >> record.directoryOffset >> record.commentLength;
    return true;
}

bool Parse(Bytes bytes, End64Record& record)
{
    if (!Begins(bytes, kEnd64Signature, kEnd64Size))
        return false;
    Cursor(bytes.subspan(4)) >> record.recordSize >> record.versionMadeBy >> record.versionNeeded >>
        record.disk >> record.directoryDisk >> record.entriesOnDisk >> record.entries >>
        record.directorySize >> record.directoryOffset;
    return true;
}

bool Parse(Bytes bytes, Locator64& record)
{
    if (!Begins(bytes, kLocator64Signature, kLocator64Size))
        return false;
    Cursor(bytes.subspan(4)) >> record.end64Disk >> record.end64Offset >> record.disks;
    return true;
}

Bytes FindExtra(Bytes extra, std::uint16_t id)
{
    constexpr std::size_t kFieldHeader = 4;
    while (extra.size() >= kFieldHeader) {
        const auto found = LoadLittleEndian<std::uint16_t>(extra.data());
        const std::size_t size = LoadLittleEndian<std::uint16_t>(extra.data() + 2);
        if (size > extra.size() - kFieldHeader)
            break;
        if (found == id)
            return extra.subspan(kFieldHeader, size);
        extra = extra.subspan(kFieldHeader + size);
    }
    return {};
}

bool ReadZip64(Bytes extra, Zip64Values& values)
{
    Bytes field = FindExtra(extra, kExtraZip64);
    if (field.empty())
        return true;
    constexpr std::uint64_t kMarker = kSee64;
    // The disk's number takes four bytes there in place of two.
    std::uint32_t disk = values.disk == kSee64Short ? kSee64 : values.disk;
    if (!TakeInstead(field, values.uncompressed, kMarker) ||
        !TakeInstead(field, values.compressed, kMarker) || !TakeInstead(field, values.localOffset, kMarker) ||
        !TakeInstead(field, disk, kSee64))
        return false;
    values.disk = disk;
    return true;
}

} // namespace vak::detail::zip
