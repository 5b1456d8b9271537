#pragma once

#include "framework/base/String.h"
#include "framework/base/SystemFile.h"
#include "framework/base/SystemFolder.h"

#include <cstdint>
#include <span>

namespace vak::detail {

/// What is known from one entry to the next.
struct ZipTargetMemory
{
    unsigned int temporary = 0; ///< number of the last temporary's name
    /// The folder, slash-terminated, that was found to be reached without a link, and which one that is: as a
    /// rule the next entry goes there too.
    CString folder;
    system::FolderIdentity identity;
};

/// One file or folder that an entry becomes, below the folder that the user named.
///
/// Names come from MakeSafe. No link below that folder is followed or replaced: a link there would lead the
/// data of a stranger's archive to anywhere. The data go to a temporary file beside the target; without
/// Finish it is removed. Failures are thrown as CZipException*.
class ZipTarget
{
public:
    /// An empty path is the current folder. `archive` and `entry` are for exceptions and must outlive the
    /// object, as must `memory`.
    ZipTarget(LPCWSTR folder, const CString& archive, const CString& entry, ZipTargetMemory& memory);
    ~ZipTarget();
    ZipTarget(const ZipTarget&) = delete;
    ZipTarget& operator=(const ZipTarget&) = delete;

    /// Creates the folder with its parents, and every folder of `name` that a backslash ends.
    void MakeFolder(const CString& name);
    /// Creates the folders on the way and the temporary.
    void Begin(const CString& name);
    void Write(std::span<const std::uint8_t> bytes);
    /// Gives the file its time and its name, in place of a file that has it.
    void Finish(std::int64_t time);

private:
    bool IsRemembered(const CString& folder) const;
    void EnterFolder(const CString& path);
    void CreateTemporary(const CString& folder);
    void Discard();
    void Name();
    [[noreturn]] void Throw(int cause, DWORD error = 0) const;
    [[noreturn]] void ThrowSystem() const;

    const CString& m_archive;
    const CString& m_entry;
    ZipTargetMemory& m_memory;
    CString m_folder; ///< slash-terminated
    CString m_target;
    CString m_temporary; ///< empty when there is none
    HANDLE m_file = system::kNoFile;
};

} // namespace vak::detail
