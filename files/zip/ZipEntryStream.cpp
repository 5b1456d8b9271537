#include "files/zip/ZipEntryStream.h"

#include "files/ZipException.h"
#include "framework/base/ByteOrder.h"

#include <algorithm>
#include <cstring>

namespace vak::detail {

namespace {

using zip::Bytes;

bool IsSameName(Bytes a, Bytes b)
{
    const auto turned = [](std::uint8_t byte) { return byte == '\\' ? std::uint8_t{'/'} : byte; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [turned](std::uint8_t x, std::uint8_t y) { return x == y || turned(x) == turned(y); });
}

/// A local header that was written before the data were known leaves its sizes empty.
bool IsSize(std::uint64_t local, std::uint64_t central, bool hasDescriptor)
{
    return local == central || (hasDescriptor && (local == 0 || local == zip::kSee64));
}

int CompareSizes(ZipSource& source, const zip::LocalHeader& header, std::uint64_t extraAt,
                 const ZipEntry& entry, ZipLocal& local)
{
    zip::Zip64Values values{header.uncompressed, header.compressed, 0, 0};
    if (values.uncompressed == zip::kSee64 || values.compressed == zip::kSee64) {
        const Bytes extra = source.View(extraAt, header.extraLength);
        if (!zip::ReadZip64(extra.first(std::min<std::size_t>(extra.size(), header.extraLength)), values))
            return CZipException::localSize;
    }
    if (!IsSize(values.uncompressed, entry.uncompressed, local.hasDescriptor) ||
        !IsSize(values.compressed, entry.compressed, local.hasDescriptor))
        return CZipException::localSize;
    if (header.crc != entry.crc && !(local.hasDescriptor && header.crc == 0))
        return CZipException::localCrc;
    local.isComplete = values.uncompressed == entry.uncompressed && values.compressed == entry.compressed &&
                       header.crc == entry.crc;
    return 0;
}

} // namespace

int CheckLocalHeader(ZipSource& source, const ZipDirectory& directory, const ZipEntry& entry, ZipLocal& local)
{
    zip::LocalHeader header;
    if (!zip::Parse(source.View(entry.localOffset, zip::kLocalSize), header))
        return CZipException::localDamaged;
    if (((header.flags ^ entry.flags) & zip::kFlagEncrypted) != 0 || header.method != entry.method)
        return CZipException::localMethod;
    const std::uint64_t nameAt = entry.localOffset + zip::kLocalSize;
    const Bytes stored = directory.StoredNameOf(entry);
    const Bytes name = source.View(nameAt, header.nameLength);
    if (header.nameLength != stored.size() || name.size() < stored.size() ||
        !IsSameName(name.first(stored.size()), stored))
        return CZipException::localName;
    const std::uint64_t extraAt = nameAt + header.nameLength;
    local.data = extraAt + header.extraLength;
    if (local.data > entry.limit || entry.compressed > entry.limit - local.data)
        return entry.limit == directory.Start() ? CZipException::dataOffset : CZipException::overlap;
    local.hasDescriptor = ((header.flags | entry.flags) & zip::kFlagDescriptor) != 0;
    return CompareSizes(source, header, extraAt, entry, local);
}

ZipEntryStream::ZipEntryStream(ZipSource& source, const ZipDirectory& directory, const ZipEntry& entry,
                               ZipInflater& inflater, const CString& archive)
    : m_source(source), m_directory(directory), m_entry(entry), m_inflater(inflater), m_archive(archive)
{
    Begin();
}

void ZipEntryStream::Begin()
{
    const bool isStored = m_entry.method == zip::kMethodStored;
    if (m_entry.defect != 0)
        Throw(m_entry.defect);
    if ((m_entry.flags & (zip::kFlagEncrypted | zip::kFlagStrongEncryption | zip::kFlagMasked)) != 0)
        Throw(CZipException::encrypted);
    const bool isPatch = (m_entry.flags & zip::kFlagPatched) != 0;
    if (isPatch || (!isStored && m_entry.method != zip::kMethodDeflated))
        ThrowMethod();
    if (const int cause = CheckLocalHeader(m_source, m_directory, m_entry, m_local); cause != 0)
        Throw(cause);
    if (isStored && m_entry.compressed != m_entry.uncompressed)
        Throw(CZipException::sizeMismatch);
    m_next = m_local.data;
    m_left = m_entry.compressed;
    // Some tools call an empty file deflated and write no stream for it.
    m_ended = isStored || (m_left == 0 && m_entry.uncompressed == 0);
    if (!m_ended)
        m_inflater.Reset();
}

void ZipEntryStream::Throw(int cause) const
{
    const auto name = m_directory.NameOf(m_entry);
    ThrowZip(cause, m_archive, CString(name.data(), static_cast<int>(name.size())));
}

void ZipEntryStream::ThrowMethod() const
{
    const auto name = m_directory.NameOf(m_entry);
    auto* const exception = new CZipException(CZipException::unknownMethod, m_archive,
                                              CString(name.data(), static_cast<int>(name.size())));
    exception->m_method = m_entry.method;
    throw exception;
}

std::size_t ZipEntryStream::Read(std::span<std::uint8_t> buffer)
{
    const bool isStored = m_entry.method == zip::kMethodStored;
    const std::size_t count = isStored ? ReadStored(buffer) : ReadDeflated(buffer);
    m_crc = ZipCrc(m_crc, buffer.first(count));
    m_expanded += count;
    if (m_expanded > m_entry.uncompressed)
        Throw(CZipException::sizeMismatch);
    if (count == 0 && !buffer.empty())
        Finish();
    return count;
}

std::size_t ZipEntryStream::ReadStored(std::span<std::uint8_t> buffer)
{
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), m_left));
    if (!m_source.Read(m_next, buffer.data(), wanted))
        Throw(CZipException::dataDamaged);
    m_next += wanted;
    m_left -= wanted;
    return wanted;
}

std::size_t ZipEntryStream::ReadDeflated(std::span<std::uint8_t> buffer)
{
    std::span<std::uint8_t> room = buffer;
    while (!m_ended && !room.empty()) {
        const Bytes window = m_source.View(m_next, m_left == 0 ? 0 : 1);
        const auto offered = static_cast<std::size_t>(std::min<std::uint64_t>(window.size(), m_left));
        Bytes input = window.first(offered);
        const std::size_t roomBefore = room.size();
        const ZipInflater::Result result = m_inflater.Expand(input, room);
        const std::size_t used = offered - input.size();
        m_next += used;
        m_left -= used;
        m_ended = result == ZipInflater::Result::End;
        const bool isStuck = !m_ended && used == 0 && room.size() == roomBefore;
        if (result == ZipInflater::Result::Damaged || isStuck)
            Throw(CZipException::dataDamaged);
    }
    return buffer.size() - room.size();
}

void ZipEntryStream::Finish()
{
    if (m_expanded != m_entry.uncompressed || m_left != 0)
        Throw(CZipException::sizeMismatch);
    if (m_crc != m_entry.crc)
        Throw(CZipException::crcMismatch);
    if (m_local.hasDescriptor && !HasRightDescriptor() && !m_local.isComplete)
        Throw(CZipException::descriptor);
}

/// The record comes with and without a signature, and its sizes in 32 and in 64 bits.
bool ZipEntryStream::HasRightDescriptor() const
{
    const std::uint64_t room = m_entry.limit - m_next;
    Bytes bytes = m_source.View(m_next, static_cast<std::size_t>(std::min<std::uint64_t>(room, 24)));
    bytes = bytes.first(static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), room)));
    const auto says = [this](Bytes record) {
        if (record.size() < 12 || LoadLittleEndian<std::uint32_t>(record.data()) != m_entry.crc)
            return false;
        const auto narrow = [&](std::size_t at) {
            return std::uint64_t{LoadLittleEndian<std::uint32_t>(&record[at])};
        };
        const auto wide = [&](std::size_t at) { return LoadLittleEndian<std::uint64_t>(&record[at]); };
        const bool isNarrow = narrow(4) == m_entry.compressed && narrow(8) == m_entry.uncompressed;
        return isNarrow ||
               (record.size() >= 20 && wide(4) == m_entry.compressed && wide(12) == m_entry.uncompressed);
    };
    const bool isSigned = zip::SignatureOf(bytes) == zip::kDescriptorSignature;
    return says(bytes) || (isSigned && says(bytes.subspan(4)));
}

} // namespace vak::detail
