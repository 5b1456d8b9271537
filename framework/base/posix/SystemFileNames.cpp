#include "framework/base/SystemFile.h"

#include "framework/base/posix/HostPath.h"
#include "framework/base/posix/ShareTable.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

using vak::posix::Fail;
using vak::posix::FailErrno;
using vak::posix::FailPath;
using vak::posix::Refused;

namespace vak::system {

namespace {

constexpr mode_t kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;
/// 100 ns units between the platform's epoch (1601) and the host's (1970).
constexpr LONGLONG kEpochDistance = 116444736000000000;
constexpr LONGLONG kUnitsPerSecond = 10000000;

/// A host path, or none with the failure recorded.
class Host
{
public:
    explicit Host(LPCWSTR path)
    {
        DWORD error = 0;
        m_path = posix::HostFromPath(path, &error);
        if (m_path.empty())
            Fail(error);
    }
    explicit operator bool() const { return !m_path.empty(); }
    const std::string& Name() const { return m_path; }
    operator const char*() const { return m_path.c_str(); }
    std::string Folder() const
    {
        const std::size_t slash = m_path.rfind('/');
        return slash == std::string::npos ? "." : m_path.substr(0, slash + 1);
    }

private:
    std::string m_path;
};

FILETIME ToFileTime(LONGLONG seconds, LONGLONG nanoseconds)
{
    const auto units = static_cast<ULONGLONG>(seconds * kUnitsPerSecond + nanoseconds / 100 + kEpochDistance);
    return {static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
}

timespec ToHostTime(const FILETIME* time)
{
    return time == nullptr ? timespec{0, UTIME_OMIT} : posix::ToHostTime(*time);
}

bool Query(int folder, const char* name, FileEntry& entry)
{
    struct statx found;
    if (statx(folder, name, 0, STATX_BASIC_STATS | STATX_BTIME, &found) != 0)
        return false;
    const auto time = [](const statx_timestamp& stamp) { return ToFileTime(stamp.tv_sec, stamp.tv_nsec); };
    const bool isFolder = S_ISDIR(found.stx_mode);
    entry.attributes = isFolder ? kAttributeDirectory : kAttributeArchive;
    if ((found.stx_mode & kWriteBits) == 0)
        entry.attributes |= kAttributeReadOnly;
    entry.size = isFolder ? 0 : found.stx_size;
    entry.written = time(found.stx_mtime);
    entry.accessed = time(found.stx_atime);
    entry.created = (found.stx_mask & STATX_BTIME) != 0 ? time(found.stx_btime) : entry.written;
    return true;
}

/// Whether the platform would let the name be taken away: it exists, is no folder (unless they may go) and
/// nobody holds it.
bool MayTake(const Host& path, bool folders, bool readOnly)
{
    struct stat found;
    if (lstat(path, &found) != 0)
        return FailPath(path.Name());
    if (S_ISDIR(found.st_mode))
        return folders || Fail(kErrorAccessDenied);
    if (S_ISREG(found.st_mode) && !readOnly && (found.st_mode & kWriteBits) == 0)
        return Fail(kErrorAccessDenied);
    return posix::MayDelete(found) || Fail(kErrorSharingViolation);
}

bool CopyContents(HANDLE from, HANDLE to)
{
    std::vector<char> piece(1 << 20);
    for (;;) {
        UINT got = 0;
        UINT put = 0;
        if (!ReadFile(from, piece.data(), static_cast<UINT>(piece.size()), got))
            return false;
        if (got == 0)
            return true;
        if (!WriteFile(to, piece.data(), got, put))
            return false;
    }
}

struct CloseDirectory
{
    void operator()(DIR* directory) const { closedir(directory); }
};

/// A renamed name is on the disk only with its folder.
void FlushFolder(const std::string& folder)
{
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

} // namespace

DWORD FileAttributes(LPCWSTR path)
{
    FileEntry entry;
    return QueryFile(path, entry) ? entry.attributes : kInvalidAttributes;
}

bool SetAttributes(LPCWSTR path, DWORD attributes)
{
    const Host host(path);
    if (!host)
        return false;
    struct stat found;
    if (stat(host, &found) != 0)
        return FailPath(host.Name());
    const mode_t writable = (found.st_mode & kWriteBits) != 0 ? found.st_mode : found.st_mode | S_IWUSR;
    const mode_t mode = (attributes & kAttributeReadOnly) != 0 ? found.st_mode & ~kWriteBits : writable;
    return chmod(host, mode & 07777) == 0 || FailErrno();
}

bool QueryFile(LPCWSTR path, FileEntry& entry)
{
    const Host host(path);
    if (!host)
        return false;
    return Query(AT_FDCWD, host, entry) || FailPath(host.Name());
}

bool SetFileTimes(LPCWSTR path, const FILETIME* created, const FILETIME* accessed, const FILETIME* written)
{
    const Host host(path);
    if (!host)
        return false;
    if (created != nullptr)
        return Fail(kErrorNotSupported);
    const timespec times[] = {ToHostTime(accessed), ToHostTime(written)};
    return utimensat(AT_FDCWD, host, times, 0) == 0 || FailPath(host.Name());
}

bool RemoveFile(LPCWSTR path)
{
    if (Refused(FileOperation::Remove))
        return false;
    const Host host(path);
    if (!host || !MayTake(host, false, false))
        return false;
    return unlink(host) == 0 || FailPath(host.Name());
}

bool RenameFile(LPCWSTR from, LPCWSTR to)
{
    if (Refused(FileOperation::Rename))
        return false;
    const Host source(from);
    if (!source || !MayTake(source, true, true))
        return false;
    const Host target(to);
    if (!target)
        return false;
    if (renameat2(AT_FDCWD, source, AT_FDCWD, target, RENAME_NOREPLACE) == 0)
        return true;
    // A file crosses to another volume as a copy.
    if (errno == EXDEV)
        return DuplicateFile(from, to, true) && RemoveFile(from);
    return FailPath(target.Name());
}

bool DuplicateFile(LPCWSTR from, LPCWSTR to, bool failIfExists)
{
    if (Refused(FileOperation::Copy))
        return false;
    OpenOptions reading;
    reading.read = reading.shareRead = reading.shareWrite = true;
    OpenOptions writing;
    writing.write = true;
    writing.disposition =
        failIfExists ? OpenOptions::Disposition::CreateNew : OpenOptions::Disposition::CreateAlways;
    FileEntry entry;
    const HANDLE source = OpenFile(from, reading);
    if (source == kNoFile)
        return false;
    const HANDLE target = OpenFile(to, writing);
    if (target == kNoFile) {
        const DWORD error = LastFileError();
        CloseFile(source);
        return Fail(error);
    }
    const bool copied = CopyContents(source, target);
    const DWORD error = LastFileError();
    CloseFile(source);
    const bool closed = CloseFile(target);
    if (!copied || !closed) {
        RemoveFile(to);
        return Fail(copied ? LastFileError() : error);
    }
    return QueryFile(from, entry) && SetFileTimes(to, nullptr, nullptr, &entry.written) &&
           ((entry.attributes & kAttributeReadOnly) == 0 || SetAttributes(to, entry.attributes));
}

bool ReplaceFileBy(HANDLE, LPCWSTR from, LPCWSTR to, bool toDisk)
{
    if (Refused(FileOperation::Replace))
        return false;
    const Host source(from);
    const Host target(to);
    if (!source || !target || !MayTake(source, false, true))
        return false;
    struct stat old;
    if (lstat(target, &old) == 0) {
        if (!MayTake(target, false, false))
            return false;
        // The new file stands for the old one and keeps who may use it.
        if (S_ISREG(old.st_mode))
            chmod(source, old.st_mode & 07777);
    }
    if (rename(source, target) != 0)
        return FailPath(target.Name());
    if (toDisk)
        FlushFolder(target.Folder());
    return true;
}

bool RenameFileBy(HANDLE, LPCWSTR from, LPCWSTR to)
{
    if (Refused(FileOperation::Rename))
        return false;
    const Host source(from);
    const Host target(to);
    if (!source || !target)
        return false;
    return renameat2(AT_FDCWD, source, AT_FDCWD, target, RENAME_NOREPLACE) == 0 || FailPath(target.Name());
}

bool ReadFolder(LPCWSTR folder, std::vector<FileEntry>& entries)
{
    const Host host(folder == nullptr || *folder == 0 ? L"." : folder);
    if (!host)
        return false;
    const std::unique_ptr<DIR, CloseDirectory> directory(opendir(host));
    if (directory == nullptr)
        return FailPath(host.Name());
    while (const dirent* found = readdir(directory.get())) {
        FileEntry entry;
        entry.name = posix::NameFromHost(found->d_name);
        // A name without a file behind it, a link that leads nowhere or one just removed, is not there. One
        // with a backslash in it would, joined to a path, lead somewhere else.
        if (entry.name.Find(L'\\') < 0 && Query(dirfd(directory.get()), found->d_name, entry))
            entries.push_back(entry);
    }
    return true;
}

} // namespace vak::system

timespec vak::posix::ToHostTime(const FILETIME& time)
{
    const auto units = static_cast<LONGLONG>(ULONGLONG{time.dwHighDateTime} << 32 | time.dwLowDateTime);
    const LONGLONG since = units - system::kEpochDistance;
    LONGLONG rest = since % system::kUnitsPerSecond;
    if (rest < 0)
        rest += system::kUnitsPerSecond;
    return {(since - rest) / system::kUnitsPerSecond, rest * 100};
}
