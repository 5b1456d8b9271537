#pragma once

#include "files/ZipHeader.h"
#include "files/zip/ZipFormat.h"
#include "files/zip/ZipNameIndex.h"
#include "files/zip/ZipSource.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vak::detail {

/// One entry, checked as far as the directory alone allows.
struct ZipEntry
{
    std::uint64_t localOffset = 0; ///< of the local header in the whole space
    std::uint64_t compressed = 0;
    std::uint64_t uncompressed = 0;
    /// Where at the latest the entry's data and what follows them end: the next entry or the directory.
    std::uint64_t limit = 0;
    std::uint32_t record = 0;    ///< of the central record in the directory's bytes
    std::uint32_t nameStart = 0; ///< in the directory's text, in UTF-16 units
    std::uint32_t nameLength = 0;
    std::uint32_t crc = 0;
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint16_t time = 0;
    std::uint16_t date = 0;
    /// 0, or the code of CZipException (zip64Entry, dataOffset, overlap) that stands against reading it.
    std::uint16_t defect = 0;
};

/// An archive's directory in memory: the records as they are stored, the entries made of them, and look-ups.
///
/// What damages the whole directory is thrown while reading; what concerns one entry is noted in it.
class VAK_INTERNAL_API ZipDirectory
{
public:
    using Bytes = zip::Bytes;

    ZipDirectory() = default;
    /// An empty one, for an archive that is written.
    explicit ZipDirectory(UINT codePage) : m_codePage(codePage) {}

    /// Replaces the contents by the directory of an archive. `codePage` is for names that are not UTF-8;
    /// `name` is the archive's, for exceptions. Throws CZipException* and is then empty.
    void Read(ZipSource& source, UINT codePage, std::uint64_t mostBytes, const CString& name);
    void Clear();

    /// Appends the entry of a central record. Its local header and its data lie at `offset` in the whole
    /// space, and end before `end`.
    void Append(Bytes record, std::uint64_t offset, std::uint64_t end);
    /// Puts it in the place of an entry that has the same name.
    void Replace(std::size_t index, Bytes record, std::uint64_t offset, std::uint64_t end);
    /// Removes the other entries of the name that this one has.
    void RemoveOthers(std::size_t index);
    void SetComment(Bytes comment) { m_comment.assign(comment.begin(), comment.end()); }
    /// Where the directory was written, and where the archive ends.
    void SetPlace(std::uint64_t start, std::uint64_t end);
    /// Whether a name occurs twice.
    bool HasDuplicates() const;
    /// Whether the entries have the same name.
    bool IsSameName(const ZipEntry& a, const ZipEntry& b) const;

    UINT CodePage() const { return m_codePage; }
    std::size_t Count() const { return m_entries.size(); }
    const ZipEntry& At(std::size_t index) const { return m_entries[index]; }
    std::span<const ZipEntry> Entries() const { return m_entries; }
    /// The name as it is listed, with backslashes; not ended by a zero.
    std::span<const wchar_t> NameOf(const ZipEntry& entry) const;
    bool IsFolder(const ZipEntry& entry) const;
    /// The central record of an entry with everything behind it, as it is stored.
    Bytes RecordOf(const ZipEntry& entry) const;
    Bytes StoredNameOf(const ZipEntry& entry) const;
    void Describe(const ZipEntry& entry, CZipHeader& header) const;
    CString Comment() const;
    Bytes StoredComment() const { return m_comment; }

    /// As CZipArchive::Find; the tables behind it are made by the first call of their kind.
    std::size_t Find(LPCWSTR name, bool ignoreCase, bool fileNameOnly) const;
    /// The first entry that has the name of this one.
    std::size_t FindFirst(const ZipEntry& entry) const;
    void FindMatching(LPCWSTR pattern, bool fullPath, std::vector<std::size_t>& indexes) const;

    /// What is in front of the archive proper (a program that extracts it): how much has to be added to the
    /// offsets that the records hold.
    std::uint64_t Prefix() const { return m_prefix; }
    /// Where the directory begins in the whole space.
    std::uint64_t Start() const { return m_start; }
    /// Where the archive ends, its comment included; behind it may be data that belong to nobody.
    std::uint64_t End() const { return m_end; }

private:
    void AddEntries(ZipSource& source, std::uint64_t declared, bool exact, const CString& name);
    ZipEntry MakeEntry(ZipSource& source, std::size_t at, const zip::CentralHeader& header);
    std::uint64_t Unwrapped(std::uint64_t offset);
    ZipEntry MakeWritten(Bytes record, std::uint64_t offset, std::uint64_t end);
    void IndexLast();
    void ClearIndexes();
    std::size_t FindText(std::span<const wchar_t> name, bool ignoreCase, bool fileNameOnly) const;
    static void Take(ZipEntry& entry, const zip::CentralHeader& header);
    void AppendName(ZipEntry& entry, const zip::CentralHeader& header);
    void FindOverlaps();

    ZipVector<std::uint8_t> m_bytes;
    ZipVector<std::uint8_t> m_comment;
    ZipVector<ZipEntry> m_entries;
    ZipVector<wchar_t> m_text; ///< all names, one behind the other
    UINT m_codePage = 0;
    std::uint64_t m_prefix = 0;
    std::uint64_t m_start = 0;
    std::uint64_t m_end = 0;
    /// As in ZipEnd; then the offset of the entry that was read last.
    bool m_isWrapped = false;
    std::uint64_t m_lastOffset = 0;
    /// By ignoreCase and fileNameOnly.
    mutable ZipNameIndex m_index[2][2];
};

} // namespace vak::detail
