#include "files/zip/ZipRewriter.h"

#include "files/ZipException.h"
#include "files/zip/ZipNames.h"
#include "framework/base/ByteOrder.h"

#include <algorithm>
#include <numeric>

namespace vak::detail {

namespace {

using zip::Buffer;
using zip::Bytes;

CString ListedName(const ZipDirectory& directory, const ZipEntry& entry)
{
    const auto name = directory.NameOf(entry);
    return {name.data(), static_cast<int>(name.size())};
}

zip::NewName NameFor(const ZipDirectory& directory, const ZipEntry& entry, const CString& newName)
{
    zip::NewName name;
    name.name = zip::StoredFrom(newName);
    CZipHeader header;
    directory.Describe(entry, header);
    name.comment = zip::StoredFrom(header.GetComment()).bytes;
    return name;
}

/// Where the first local header begins: what stands in front of it is no part of the archive proper.
std::uint64_t FrontOf(const ZipDirectory& directory)
{
    std::uint64_t front = directory.Start();
    for (const ZipEntry& entry : directory.Entries()) {
        if (entry.defect == 0 || entry.defect == CZipException::overlap)
            front = std::min(front, entry.localOffset);
    }
    return front;
}

Bytes Signature(std::uint8_t (&bytes)[4], std::uint32_t signature)
{
    StoreLittleEndian(bytes, signature);
    return bytes;
}

} // namespace

/// Moves entries of an old archive to a new one; what lies together is copied together.
class ZipRewriter::Mover
{
public:
    Mover(ZipOutput& to, ZipVolumes& from, const ZipDirectory& directory, const CString& archive)
        : m_to(to), m_from(from), m_directory(directory), m_archive(archive)
    {
    }

    void Keep(std::uint64_t begin, std::uint64_t end)
    {
        if (begin != m_end)
            Flush();
        if (m_begin == m_end)
            m_begin = begin;
        m_end = end;
    }
    void Flush()
    {
        m_to.Copy(m_from, m_begin, m_end - m_begin);
        m_begin = m_end = 0;
    }
    /// Where in the new archive the next entry comes to lie.
    std::uint64_t Position() const { return m_to.Position() + (m_end - m_begin); }

    void Rename(const ZipEntry& entry, const zip::NewName& name)
    {
        const std::uint64_t room = entry.limit - entry.localOffset;
        zip::LocalHeader header;
        const bool isThere =
            room >= zip::kLocalSize && zip::Parse(m_from.View(entry.localOffset, zip::kLocalSize), header);
        const std::size_t size = zip::kLocalSize + header.nameLength + header.extraLength;
        if (!isThere || size > room)
            ThrowZip(CZipException::localDamaged, m_archive, ListedName(m_directory, entry));
        Buffer old(size);
        if (!m_from.Read(entry.localOffset, old.data(), size))
            ThrowZip(CZipException::localDamaged, m_archive, ListedName(m_directory, entry));
        Flush();
        Buffer renamed;
        zip::AppendRenamedLocal(renamed, old, name);
        m_to.Write(renamed);
        Keep(entry.localOffset + size, entry.limit);
    }

private:
    ZipOutput& m_to;
    ZipVolumes& m_from;
    const ZipDirectory& m_directory;
    const CString& m_archive;
    /// What was kept and is not yet copied.
    std::uint64_t m_begin = 0;
    std::uint64_t m_end = 0;
};

ZipRewriter::ZipRewriter(const CString& path, const CString& name, std::uint64_t partSize,
                         const zip::Zip64Start& start)
    : m_name(name), m_start(start), m_output(path, m_name, partSize), m_writer(m_output, m_start, m_name)
{
    std::uint8_t signature[4];
    if (partSize != 0)
        m_output.Write(Signature(signature, zip::kDescriptorSignature));
}

void ZipRewriter::TakeOver(ZipVolumes& from, const ZipDirectory& directory, const ZipVector<ZipKept>& kept,
                           ZipDirectory& made)
{
    ZipVector<Place> places(kept.size());
    Move(from, directory, kept, places);
    made.SetComment(directory.StoredComment());
    Buffer renamed;
    Buffer record;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        const ZipEntry& entry = directory.At(kept[i].index);
        Bytes stored = directory.RecordOf(entry);
        if (!kept[i].newName.IsEmpty()) {
            renamed.clear();
            zip::AppendRenamed(renamed, stored, NameFor(directory, entry, kept[i].newName));
            stored = renamed;
        }
        record.clear();
        if (!zip::AppendRelocated(record, stored, places[i].begin, m_start))
            ThrowZip(CZipException::nameTooLong, m_name, ListedName(directory, entry));
        made.Append(record, places[i].begin, places[i].end);
    }
}

void ZipRewriter::Move(ZipVolumes& from, const ZipDirectory& directory, const ZipVector<ZipKept>& kept,
                       ZipVector<Place>& places)
{
    ZipVector<std::size_t> order(kept.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto offsetOf = [&](std::size_t i) { return directory.At(kept[i].index).localOffset; };
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return offsetOf(a) < offsetOf(b); });
    Mover mover(m_output, from, directory, m_name);
    mover.Keep(0, FrontOf(directory));
    for (const std::size_t i : order) {
        const ZipEntry& entry = directory.At(kept[i].index);
        places[i].begin = mover.Position();
        if (entry.defect != 0 && !kept[i].isPlace)
            ThrowZip(entry.defect, m_name, ListedName(directory, entry));
        if (!kept[i].newName.IsEmpty())
            mover.Rename(entry, NameFor(directory, entry, kept[i].newName));
        else if (!kept[i].isPlace)
            mover.Keep(entry.localOffset, entry.limit);
        places[i].end = mover.Position();
    }
    mover.Flush();
}

void ZipRewriter::Add(const ZipAddition& what, ZipDirectory& made, std::size_t index)
{
    const std::uint64_t position = m_output.Position();
    try {
        Buffer record;
        m_writer.Add(what, record);
        const std::uint64_t end = m_output.Position();
        if (index == kNew)
            return made.Append(record, m_writer.Position(), end);
        const bool hadData = made.At(index).limit > made.At(index).localOffset;
        made.Replace(index, record, m_writer.Position(), end);
        m_hasDeadData = m_hasDeadData || hadData;
    } catch (...) {
        Undo(position);
        throw;
    }
}

/// Drops what an entry that failed has written. Where that fails too nothing more can be written; in a part
/// that is complete the data stay, without an entry.
void ZipRewriter::Undo(std::uint64_t position)
{
    if (!m_output.CanReturn(position))
        return;
    try {
        m_output.Return(position);
    } catch (CException* exception) {
        exception->Delete();
    }
}

void ZipRewriter::Show(ZipVolumes& volumes)
{
    if (IsSplit())
        ThrowZip(CZipException::genericError, m_name);
    m_output.Flush();
    if (volumes.Path() != m_output.TemporaryPath() || volumes.Size() != m_output.Position())
        volumes.Follow(m_output.TemporaryPath(), m_output.Position(), true);
}

void ZipRewriter::WriteDirectory(const ZipDirectory& made, zip::Ending& ending)
{
    if (made.Count() != 0)
        m_output.Reserve(made.RecordOf(made.At(0)).size());
    ending.entries = made.Count();
    ending.part = ending.lastPart = m_output.Part();
    ending.offset = m_output.Within();
    const std::uint64_t start = m_output.Position();
    for (const ZipEntry& entry : made.Entries()) {
        const Bytes record = made.RecordOf(entry);
        m_output.Reserve(record.size());
        ending.entriesInLast = m_output.Part() == ending.lastPart ? ending.entriesInLast + 1 : 1;
        ending.lastPart = m_output.Part();
        m_output.Write(record);
    }
    ending.size = m_output.Position() - start;
}

std::uint64_t ZipRewriter::Commit(ZipDirectory& made)
{
    const Bytes comment = made.StoredComment();
    zip::Ending ending;
    const std::uint64_t written = m_output.Position();
    WriteDirectory(made, ending);
    const std::size_t largest = zip::LargestEnding(comment);
    m_output.Reserve(largest);
    if (m_output.Part() != ending.lastPart)
        ending.entriesInLast = 0;
    ending.lastPart = m_output.Part();
    ending.lastOffset = m_output.Within();
    Buffer end;
    zip::AppendEnding(end, ending, comment, m_start);
    m_output.Write(end);
    std::uint8_t signature[4];
    // It was to be split and fits into one part.
    if (IsSplit() && m_output.Part() == 0)
        m_output.Patch(0, Signature(signature, zip::kSinglePartSignature));
    const std::uint64_t size = m_output.Position();
    m_output.Commit();
    made.SetPlace(written, size);
    return size;
}

} // namespace vak::detail
