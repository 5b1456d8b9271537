#pragma once

#include "files/ZipArchive.h"
#include "files/zip/ZipDirectory.h"
#include "files/zip/ZipEntryStream.h"
#include "files/zip/ZipRewriter.h"
#include "files/zip/ZipTarget.h"
#include "files/zip/ZipVolumes.h"
#include "framework/base/SystemFile.h"

#include <memory>
#include <optional>

namespace vak::detail {

/// What CZipArchive keeps.
struct ZipState
{
    /// The directory; throws isClosed when no archive is open.
    const ZipDirectory& OpenDirectory() const;
    /// Whether volumes and directory are still those of the archive.
    bool IsKeptFor(LPCWSTR wanted) const;
    /// Drops volumes and directory.
    void Forget();
    /// Opens the files of `path` and reads the directory; nothing is left of them when it throws.
    void ReadArchive();
    /// Throws unless an archive is open that can be changed.
    void CheckChangeable() const;
    /// Makes the data of entries readable that were added and not yet completed.
    void Settle();

    CString path;
    CString full; ///< the same, absolute
    int mode = CZipArchive::zipOpen;
    bool isOpen = false;
    /// Closed after an error with its files let go: volumes and directory are those of `path`.
    bool isKept = false;
    UINT codePage = CZipArchive::kDefaultCodePage;
    UINT keptCodePage = 0; ///< that the directory was read with
    CZipLimits limits;
    std::uint64_t extracted = 0; ///< bytes since Open
    /// What all entries that are beyond the limit of the ratio expand to, once it was asked for.
    std::optional<std::uint64_t> bytesBeyondRatio;
    ZipTargetMemory target;

    ZipVolumes volumes;
    ZipDirectory directory;
    ZipInflater inflater;
    ZipVector<std::uint8_t> buffer;
    /// The new archive that is being written, else null; volumes and directory are then its.
    std::unique_ptr<ZipRewriter> writer;
    bool isNew = false;         ///< there is no old one, or none that counts (zipCreate)
    bool hasDuplicates = false; ///< known while there is a writer
    /// The archive's file as it was when adding to it began; nothing for a new one.
    std::optional<system::FileEntry> replaced;
    zip::Zip64Start start64;
};

} // namespace vak::detail
