#include "files/ZipException.h"
#include "files/zip/ZipDirectory.h"
#include "files/zip/ZipNames.h"

#include <algorithm>

namespace vak::detail {

namespace {

/// Positions in the directory's bytes are kept in 32 bits.
constexpr std::size_t kLongestDirectory = 0xFFFF0000;

} // namespace

ZipEntry ZipDirectory::MakeWritten(Bytes record, std::uint64_t offset, std::uint64_t end)
{
    if (record.size() > kLongestDirectory - m_bytes.size())
        ThrowZip(CZipException::directoryTooLong, nullptr);
    zip::CentralHeader header;
    zip::Parse(record, header);
    const Bytes extra = record.subspan(zip::kCentralSize + header.nameLength, header.extraLength);
    zip::Zip64Values values{header.uncompressed, header.compressed, header.localOffset, header.disk};
    zip::ReadZip64(extra, values);
    ZipEntry entry;
    Take(entry, header);
    entry.record = static_cast<std::uint32_t>(m_bytes.size());
    entry.uncompressed = values.uncompressed;
    entry.compressed = values.compressed;
    entry.localOffset = offset;
    entry.limit = end;
    m_bytes.insert(m_bytes.end(), record.begin(), record.end());
    return entry;
}

void ZipDirectory::Append(Bytes record, std::uint64_t offset, std::uint64_t end)
{
    const std::size_t bytes = m_bytes.size();
    const std::size_t text = m_text.size();
    const std::size_t entries = m_entries.size();
    try {
        ZipEntry entry = MakeWritten(record, offset, end);
        zip::CentralHeader header;
        zip::Parse(record, header);
        AppendName(entry, header);
        m_entries.push_back(entry);
        IndexLast();
    } catch (...) {
        m_entries.resize(entries);
        m_bytes.resize(bytes);
        m_text.resize(text);
        ClearIndexes();
        throw;
    }
}

void ZipDirectory::IndexLast()
{
    const std::size_t last = m_entries.size() - 1;
    for (auto& tables : m_index) {
        for (ZipNameIndex& table : tables) {
            const bool fileNameOnly = &table == &tables[1];
            const auto textOf = [&](std::size_t index) {
                const auto name = NameOf(m_entries[index]);
                return fileNameOnly ? zip::FileNameOf(name) : name;
            };
            if (!table.HasRoom(m_entries.size()))
                table.Clear();
            else if (const auto text = textOf(last); !text.empty())
                table.Add(text, last, textOf);
        }
    }
}

void ZipDirectory::Replace(std::size_t index, Bytes record, std::uint64_t offset, std::uint64_t end)
{
    ZipEntry entry = MakeWritten(record, offset, end);
    entry.nameStart = m_entries[index].nameStart;
    entry.nameLength = m_entries[index].nameLength;
    m_entries[index] = entry;
}

bool ZipDirectory::IsSameName(const ZipEntry& a, const ZipEntry& b) const
{
    const auto first = NameOf(a);
    const auto second = NameOf(b);
    return std::equal(first.begin(), first.end(), second.begin(), second.end());
}

void ZipDirectory::RemoveOthers(std::size_t index)
{
    const ZipEntry kept = m_entries[index];
    const auto isOther = [&](const ZipEntry& entry) {
        return entry.nameStart != kept.nameStart && IsSameName(entry, kept);
    };
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(), isOther), m_entries.end());
    ClearIndexes();
}

bool ZipDirectory::HasDuplicates() const
{
    return std::any_of(m_entries.begin(), m_entries.end(), [this](const ZipEntry& entry) {
        return entry.nameLength > 0 && &m_entries[FindFirst(entry)] != &entry;
    });
}

void ZipDirectory::ClearIndexes()
{
    for (auto& tables : m_index) {
        for (ZipNameIndex& table : tables)
            table.Clear();
    }
}

void ZipDirectory::SetPlace(std::uint64_t start, std::uint64_t end)
{
    m_start = start;
    m_end = end;
}

} // namespace vak::detail
