#pragma once

#include "files/detail/ZipDirectory.h"
#include "files/detail/ZipVolumes.h"
#include "framework/base/String.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace vak::detail {

/// Builds a new archive beside the one that it replaces, and puts it in its place in one step.
///
/// Entries are kept, one by one in the order wanted, with their compressed bytes as they are (in the kernel
/// where it can), or added anew. Until Commit the old archive is untouched; without it nothing is left
/// behind. Failures are thrown as CZipException*.
class ZipRewriter
{
public:
    /// Begins the new archive of `path`. `volumeSize` 0: one file.
    ZipRewriter(const CString& path, std::uint64_t volumeSize);
    ~ZipRewriter();
    ZipRewriter(const ZipRewriter&) = delete;
    ZipRewriter& operator=(const ZipRewriter&) = delete;

    /// Copies what is in front of the archive that is rewritten.
    void CopyPrefix(ZipVolumes& from, const ZipDirectory& directory);
    /// Takes over an entry, under another name unless `newName` is null.
    void Keep(ZipVolumes& from, const ZipDirectory& directory, const ZipEntry& entry,
              const CString* newName = nullptr);
    /// Adds a file or, for a path that is one, a directory.
    void Add(const CString& path, const CString& name, int level, int smartness, std::size_t bufferSize);
    void SetComment(const CString& comment);
    /// Writes directory and end, and replaces the old archive. The old one's files must have been let go
    /// (ZipVolumes::Release).
    void Commit();

private:
    struct Output;
    std::unique_ptr<Output> m_output;
};

} // namespace vak::detail
