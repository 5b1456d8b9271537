#include "files/zip/ZipDirectory.h"

#include "files/ZipException.h"
#include "files/detail/WildcardMatcher.h"
#include "files/zip/ZipCodec.h"
#include "files/zip/ZipEnd.h"
#include "files/zip/ZipNames.h"
#include "framework/base/ByteOrder.h"

#include <algorithm>
#include <numeric>

namespace vak::detail {

namespace {

using zip::Bytes;
using zip::CentralHeader;

/// Positions in the directory's bytes are kept in 32 bits.
constexpr std::uint64_t kLongestDirectory = 0xFFFF0000;

/// The UTF-8 text that a Unicode extra field gives in place of `plain`; empty when it has none, or one that
/// was made for another text, or when `plain` is UTF-8 itself.
Bytes UnicodeInstead(Bytes extra, std::uint16_t id, Bytes plain, bool isUtf8)
{
    constexpr std::size_t kFieldHeader = 5;
    const Bytes field = zip::FindExtra(extra, id);
    if (isUtf8 || field.size() <= kFieldHeader || field[0] != 1)
        return {};
    const std::uint32_t crc = ZipCrc(0, plain);
    return LoadLittleEndian<std::uint32_t>(&field[1]) == crc ? field.subspan(kFieldHeader) : Bytes{};
}

/// Whether the attributes, by the system that the entry comes from, say that it is a directory.
bool IsFolderByAttributes(const CentralHeader& header)
{
    constexpr std::uint32_t kUnix = 3;
    constexpr std::uint32_t kUnixKind = 0170000;
    constexpr std::uint32_t kUnixFolder = 0040000;
    constexpr std::uint32_t kPlatformFolder = 0x10;
    if (header.uncompressed != 0)
        return false;
    const std::uint32_t system = header.versionMadeBy >> 8;
    if (system == kUnix)
        return (header.externalAttributes >> 16 & kUnixKind) == kUnixFolder;
    constexpr std::uint32_t platforms[] = {0, 10, 14}; // FAT, NTFS, VFAT
    return std::find(std::begin(platforms), std::end(platforms), system) != std::end(platforms) &&
           (header.externalAttributes & kPlatformFolder) != 0;
}

/// The least that an entry takes in the archive: its local header at its shortest, its name and its data.
std::uint64_t LeastSize(const ZipEntry& entry, std::size_t storedName)
{
    return zip::kLocalSize + storedName + entry.compressed;
}

} // namespace

void ZipDirectory::Clear()
{
    *this = ZipDirectory();
}

void ZipDirectory::Read(ZipSource& source, UINT codePage, std::uint64_t mostBytes, const CString& name)
{
    ZipDirectory read;
    const ZipEnd end = FindZipEnd(source, name);
    if (end.size > std::min(mostBytes, kLongestDirectory))
        ThrowZip(CZipException::directoryTooLong, name);
    if (end.isExact && end.entries > end.size / zip::kCentralSize)
        ThrowZip(CZipException::directoryCount, name);
    read.m_codePage = codePage;
    read.m_prefix = end.prefix;
    read.m_start = end.start;
    read.m_end = end.record + zip::kEndSize + end.commentLength;
    read.m_isWrapped = end.isWrapped;
    read.m_bytes.resize(static_cast<std::size_t>(end.size));
    read.m_comment.resize(end.commentLength);
    if (!source.Read(end.start, read.m_bytes.data(), read.m_bytes.size()) ||
        !source.Read(end.record + zip::kEndSize, read.m_comment.data(), end.commentLength))
        ThrowZip(CZipException::directoryDamaged, name);
    read.AddEntries(source, end.entries, end.isExact, name);
    read.FindOverlaps();
    *this = std::move(read);
}

void ZipDirectory::AddEntries(ZipSource& source, std::uint64_t declared, bool exact, const CString& name)
{
    // No more than the bytes can hold, whatever is declared.
    m_entries.reserve(
        static_cast<std::size_t>(std::min<std::uint64_t>(declared, m_bytes.size() / zip::kCentralSize)));
    const Bytes all(m_bytes);
    std::size_t at = 0;
    CentralHeader header;
    while (zip::Parse(all.subspan(at), header)) {
        if (header.Size() > all.size() - at)
            ThrowZip(CZipException::directoryDamaged, name);
        m_entries.push_back(MakeEntry(source, at, header));
        at += header.Size();
    }
    const std::uint64_t count = m_entries.size();
    const bool isRight = exact ? count == declared : (count & 0xFFFF) == declared;
    const bool isEnd = at == all.size() || zip::SignatureOf(all.subspan(at)) == zip::kDigitalSignature;
    if (!isEnd && (count < declared || isRight))
        ThrowZip(CZipException::directoryDamaged, name);
    if (!isRight)
        ThrowZip(CZipException::directoryCount, name);
}

void ZipDirectory::Take(ZipEntry& entry, const CentralHeader& header)
{
    entry.flags = header.flags;
    entry.method = header.method;
    entry.time = header.time;
    entry.date = header.date;
    entry.crc = header.crc;
}

/// Tools without zip64 that wrap offsets list entries as they lie: each lies behind the one before.
std::uint64_t ZipDirectory::Unwrapped(std::uint64_t offset)
{
    const std::uint64_t inLap = m_lastOffset - m_lastOffset % zip::kLap + offset;
    m_lastOffset = inLap < m_lastOffset ? inLap + zip::kLap : inLap;
    return m_lastOffset;
}

ZipEntry ZipDirectory::MakeEntry(ZipSource& source, std::size_t at, const CentralHeader& header)
{
    ZipEntry entry;
    entry.record = static_cast<std::uint32_t>(at);
    Take(entry, header);
    const Bytes extra =
        Bytes(m_bytes).subspan(at + zip::kCentralSize + header.nameLength, header.extraLength);
    zip::Zip64Values values{header.uncompressed, header.compressed, header.localOffset, header.disk};
    if (!zip::ReadZip64(extra, values))
        entry.defect = CZipException::zip64Entry;
    entry.uncompressed = values.uncompressed;
    entry.compressed = values.compressed;
    entry.limit = m_start;
    if (m_isWrapped)
        values.localOffset = Unwrapped(values.localOffset);
    const std::uint64_t part = source.PartStart(values.disk);
    const std::uint64_t room = m_start - std::min(m_start, part);
    const std::uint64_t needed = zip::kLocalSize + header.nameLength;
    if (m_prefix > room || values.localOffset > room - m_prefix || entry.compressed > room ||
        needed + entry.compressed > room - m_prefix - values.localOffset)
        entry.defect = entry.defect == 0 ? std::uint16_t{CZipException::dataOffset} : entry.defect;
    else
        entry.localOffset = part + m_prefix + values.localOffset;
    AppendName(entry, header);
    return entry;
}

void ZipDirectory::AppendName(ZipEntry& entry, const CentralHeader& header)
{
    const Bytes record = Bytes(m_bytes).subspan(entry.record + zip::kCentralSize);
    const Bytes stored = record.first(header.nameLength);
    const bool isUtf8 = (header.flags & zip::kFlagUtf8) != 0;
    const Bytes extra = record.subspan(header.nameLength, header.extraLength);
    const Bytes unicode = UnicodeInstead(extra, zip::kExtraUnicodePath, stored, isUtf8);
    entry.nameStart = static_cast<std::uint32_t>(m_text.size());
    zip::AppendText(unicode.empty() ? stored : unicode,
                    isUtf8 || !unicode.empty() ? UINT{CP_UTF8} : m_codePage, m_text);
    const bool isNamed = m_text.size() > entry.nameStart;
    if (isNamed && m_text.back() != L'\\' && IsFolderByAttributes(header))
        m_text.push_back(L'\\');
    entry.nameLength = static_cast<std::uint32_t>(m_text.size() - entry.nameStart);
}

void ZipDirectory::FindOverlaps()
{
    ZipVector<ZipEntry*> order;
    order.reserve(m_entries.size());
    for (ZipEntry& entry : m_entries) {
        if (entry.defect == 0)
            order.push_back(&entry);
    }
    const auto isBefore = [](const ZipEntry* a, const ZipEntry* b) {
        return a->localOffset < b->localOffset;
    };
    // Nearly every archive lists its entries as they lie.
    if (!std::is_sorted(order.begin(), order.end(), isBefore))
        std::sort(order.begin(), order.end(), isBefore);
    ZipEntry* furthest = nullptr;
    std::uint64_t end = 0;
    for (ZipEntry* const entry : order) {
        if (furthest != nullptr && entry->localOffset < end)
            furthest->defect = entry->defect = CZipException::overlap;
        else if (furthest != nullptr)
            furthest->limit = entry->localOffset;
        const std::uint64_t itsEnd = entry->localOffset + LeastSize(*entry, StoredNameOf(*entry).size());
        if (itsEnd > end) {
            furthest = entry;
            end = itsEnd;
        }
    }
}

std::span<const wchar_t> ZipDirectory::NameOf(const ZipEntry& entry) const
{
    return std::span<const wchar_t>(m_text).subspan(entry.nameStart, entry.nameLength);
}

bool ZipDirectory::IsFolder(const ZipEntry& entry) const
{
    return entry.nameLength > 0 && NameOf(entry).back() == L'\\';
}

Bytes ZipDirectory::RecordOf(const ZipEntry& entry) const
{
    CentralHeader header;
    const Bytes record = Bytes(m_bytes).subspan(entry.record);
    zip::Parse(record, header);
    return record.first(header.Size());
}

Bytes ZipDirectory::StoredNameOf(const ZipEntry& entry) const
{
    constexpr std::size_t kNameLengthAt = 28;
    const std::uint8_t* const record = m_bytes.data() + entry.record;
    return {record + zip::kCentralSize, LoadLittleEndian<std::uint16_t>(record + kNameLengthAt)};
}

void ZipDirectory::Describe(const ZipEntry& entry, CZipHeader& header) const
{
    const auto name = NameOf(entry);
    header.m_name.SetString(name.data(), static_cast<int>(name.size()));
    header.m_length = entry.uncompressed;
    header.m_compressed = entry.compressed;
    header.m_crc = entry.crc;
    header.m_method = entry.method;
    header.m_dosDate = entry.date;
    header.m_dosTime = entry.time;
    header.m_encrypted = (entry.flags & zip::kFlagEncrypted) != 0;
    header.m_comment.Empty();
    CentralHeader stored;
    const Bytes record = RecordOf(entry);
    if (!zip::Parse(record, stored) || stored.commentLength == 0)
        return;
    const Bytes comment = record.last(stored.commentLength);
    const Bytes extra = record.subspan(zip::kCentralSize + stored.nameLength, stored.extraLength);
    const bool isUtf8 = (entry.flags & zip::kFlagUtf8) != 0;
    const Bytes unicode = UnicodeInstead(extra, zip::kExtraUnicodeComment, comment, isUtf8);
    header.m_comment = zip::CommentText(unicode.empty() ? comment : unicode,
                                        isUtf8 || !unicode.empty() ? UINT{CP_UTF8} : m_codePage);
}

CString ZipDirectory::Comment() const
{
    return zip::CommentText(m_comment, m_codePage);
}

std::size_t ZipDirectory::Find(LPCWSTR name, bool ignoreCase, bool fileNameOnly) const
{
    const CString wanted = zip::WithBackslashes(name);
    return FindText({wanted.GetString(), static_cast<std::size_t>(wanted.GetLength())}, ignoreCase,
                    fileNameOnly);
}

std::size_t ZipDirectory::FindFirst(const ZipEntry& entry) const
{
    return FindText(NameOf(entry), false, false);
}

std::size_t ZipDirectory::FindText(Units name, bool ignoreCase, bool fileNameOnly) const
{
    const auto part = [fileNameOnly](Units text) { return fileNameOnly ? zip::FileNameOf(text) : text; };
    const auto textOf = [&](std::size_t index) { return part(NameOf(m_entries[index])); };
    ZipNameIndex& table = m_index[ignoreCase][fileNameOnly];
    if (!table.IsBuilt()) {
        table.Begin(m_entries.size(), ignoreCase);
        for (std::size_t i = 0; i < m_entries.size(); ++i) {
            if (const auto text = textOf(i); !text.empty())
                table.Add(text, i, textOf);
        }
    }
    return table.Find(part(name), textOf);
}

void ZipDirectory::FindMatching(LPCWSTR pattern, bool fullPath, std::vector<std::size_t>& indexes) const
{
    const CString wanted = zip::WithBackslashes(pattern);
    const Units units(wanted.GetString(), static_cast<std::size_t>(wanted.GetLength()));
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const auto name = NameOf(m_entries[i]);
        if (MatchWildcards(fullPath ? name : zip::FileNameOf(name), units, false))
            indexes.push_back(i);
    }
}

} // namespace vak::detail
