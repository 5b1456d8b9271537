#pragma once

#include "framework/base/String.h"
#include "framework/base/SystemFile.h"

#include <cstdint>
#include <span>

namespace vak::detail {

/// One file or folder that an entry becomes, below the folder that the user named.
///
/// Names come from MakeSafe. No link below that folder is followed or replaced: a link there would lead the
/// data of a stranger's archive to anywhere. The data go to a temporary file beside the target; without
/// Finish it is removed. Failures are thrown as CZipException*.
class ZipTarget
{
public:
    /// Creates the folder with its parents; an empty path is the current folder. `archive` and `entry` are
    /// for exceptions and must outlive the object.
    ZipTarget(LPCWSTR folder, const CString& archive, const CString& entry);
    ~ZipTarget();
    ZipTarget(const ZipTarget&) = delete;
    ZipTarget& operator=(const ZipTarget&) = delete;

    /// Creates every folder of `name` that a backslash ends.
    void MakeFolder(const CString& name);
    /// Creates the folders on the way and the temporary; `number` counts the temporaries' names up.
    void Begin(const CString& name, unsigned int& number);
    void Write(std::span<const std::uint8_t> bytes);
    /// Gives the file its time and its name, in place of a file that has it.
    void Finish(std::int64_t time);

private:
    void EnterFolder(const CString& path);
    void CreateTemporary(const CString& folder, unsigned int& number);
    void Discard();
    void Replace();
    [[noreturn]] void Throw(int cause, DWORD error = 0) const;
    [[noreturn]] void ThrowSystem() const;

    const CString& m_archive;
    const CString& m_entry;
    CString m_folder; ///< slash-terminated
    CString m_target;
    CString m_temporary; ///< empty when there is none
    HANDLE m_file = system::kNoFile;
};

} // namespace vak::detail
