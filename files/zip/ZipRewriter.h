#pragma once

#include "files/zip/ZipDirectory.h"
#include "files/zip/ZipEntryWriter.h"
#include "files/zip/ZipOutput.h"
#include "files/zip/ZipRecords.h"
#include "files/zip/ZipVolumes.h"
#include "framework/base/String.h"

#include <cstddef>
#include <cstdint>

namespace vak::detail {

/// What becomes of an entry of the old archive that is not dropped.
struct ZipKept
{
    std::size_t index = 0;
    /// The entry's other name, safe; empty: it keeps its name.
    CString newName;
    /// Only its place in the directory is kept, for an entry of the same name that is added next.
    bool isPlace = false;
};

/// Builds a new archive beside the one that it replaces, and puts it in its place in one step.
///
/// The directory of the new archive is the caller's and is filled while entries are taken over and added.
/// Until Commit the old archive is untouched; without it nothing is left behind. Failures are thrown as
/// CZipException*.
class ZipRewriter
{
public:
    /// Begins the new archive. `path` is absolute, `name` the archive's for exceptions; `partSize` 0: one
    /// file.
    ZipRewriter(const CString& path, const CString& name, std::uint64_t partSize,
                const zip::Zip64Start& start);
    ZipRewriter(const ZipRewriter&) = delete;
    ZipRewriter& operator=(const ZipRewriter&) = delete;

    /// Takes over entries with their compressed bytes as they are, the comment, and what stands in front of
    /// the first entry. Entries lie in the order in which they lay. `made` is empty.
    void TakeOver(ZipVolumes& from, const ZipDirectory& directory, const ZipVector<ZipKept>& kept,
                  ZipDirectory& made);
    static constexpr std::size_t kNew = static_cast<std::size_t>(-1);
    /// Adds an entry, in the place of one that has its name unless `index` is kNew. When it throws, the
    /// directory is as it was, and what was added before is still whole.
    void Add(const ZipAddition& what, ZipDirectory& made, std::size_t index);
    /// Makes `volumes` the space of what was written until now.
    void Show(ZipVolumes& volumes);
    /// Writes directory and end, and replaces the old archive, whose files must have been let go
    /// (ZipVolumes::Release). Returns the archive's size. Nothing can be done with the object afterwards.
    std::uint64_t Commit(ZipDirectory& made);

    bool IsSplit() const { return m_output.IsSplit(); }
    /// As ZipOutput::TemporaryPath; empty when no part could be begun.
    CString TemporaryPath() const { return m_output.TemporaryPath(); }
    /// Whether there are data in the new archive that belong to no entry any more.
    bool HasDeadData() const { return m_hasDeadData; }

private:
    class Mover;
    /// Where an entry lies in the new archive.
    struct Place
    {
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
    };

    void Move(ZipVolumes& from, const ZipDirectory& directory, const ZipVector<ZipKept>& kept,
              ZipVector<Place>& places);
    void Undo(std::uint64_t position);
    void WriteDirectory(const ZipDirectory& made, zip::Ending& ending);

    CString m_name;
    zip::Zip64Start m_start;
    ZipOutput m_output;
    ZipEntryWriter m_writer;
    bool m_hasDeadData = false;
};

} // namespace vak::detail
