#include "framework/base/SystemFile.h"

#include "framework/base/posix/HostPath.h"
#include "framework/base/posix/ShareTable.h"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <string>
#include <vector>

using vak::posix::Fail;
using vak::posix::FailErrno;
using vak::posix::HostFromPath;
using vak::posix::Refused;

namespace vak::system {

namespace {

/// The most that one call of the host moves.
constexpr UINT kLargestTransfer = 0x40000000;

HANDLE FromDescriptor(int descriptor)
{
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(descriptor));
}

int Descriptor(HANDLE file)
{
    return static_cast<int>(reinterpret_cast<std::intptr_t>(file));
}

int HostFlags(const OpenOptions& options)
{
    int flags = options.write ? (options.read ? O_RDWR : O_WRONLY) : O_RDONLY;
    if (!options.inherit)
        flags |= O_CLOEXEC;
    if (options.writeThrough)
        flags |= O_SYNC;
    // An old file is emptied only when sharing lets us in, so never by O_TRUNC.
    if (options.disposition != OpenOptions::Disposition::OpenExisting)
        flags |= O_CREAT;
    if (options.disposition == OpenOptions::Disposition::CreateNew)
        flags |= O_EXCL;
    return flags;
}

/// Empties a file that is perhaps open for reading only, which the host cuts by its name and nothing else.
bool Empty(int descriptor, const struct stat& found)
{
    const std::string name = "/proc/self/fd/" + std::to_string(descriptor);
    return found.st_size == 0 || ftruncate(descriptor, 0) == 0 || truncate(name.c_str(), 0) == 0;
}

/// The host calls a handle of the wrong direction a bad one; the platform refuses the access.
bool FailTransfer(int descriptor)
{
    const bool isOpen = errno == EBADF && fcntl(descriptor, F_GETFD) != -1;
    return isOpen ? Fail(kErrorAccessDenied) : FailErrno();
}

/// Does what the platform's open does beyond the host's: no folders, the read-only attribute also for those
/// whom the host lets write everything, sharing, emptying.
bool Enter(int descriptor, const OpenOptions& options, bool isNew)
{
    struct stat found;
    if (fstat(descriptor, &found) != 0)
        return FailErrno();
    const bool isReadOnly = (found.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
    if (S_ISDIR(found.st_mode) || (options.write && isReadOnly && !isNew))
        return Fail(kErrorAccessDenied);
    if (!posix::AdmitOpen(descriptor, found, options))
        return Fail(kErrorSharingViolation);
    if (options.disposition != OpenOptions::Disposition::CreateAlways || Empty(descriptor, found))
        return true;
    FailErrno();
    posix::ForgetOpen(descriptor);
    return false;
}

/// A step small enough for the disk to begin with the first ones while the last are copied.
constexpr ULONGLONG kCopyStep = 1 << 24;

/// One step of copying, by the way that still works; the number of bytes, or -1.
ssize_t CopyStep(int from, off_t& offset, int to, std::size_t size, std::vector<char>& piece)
{
    constexpr std::size_t kPiece = 1 << 18;
    if (piece.empty()) {
        const ssize_t copied = copy_file_range(from, &offset, to, nullptr, size, 0);
        if (copied >= 0 || errno == EINTR || errno == ENOSPC || errno == EIO || errno == EDQUOT)
            return copied;
        // Across some file systems only this works.
        const ssize_t sent = sendfile(to, from, &offset, size);
        if (sent >= 0 || (errno != EINVAL && errno != ENOSYS))
            return sent;
        piece.resize(kPiece);
    }
    const ssize_t got = pread(from, piece.data(), std::min(size, piece.size()), offset);
    const ssize_t put = got <= 0 ? got : write(to, piece.data(), static_cast<std::size_t>(got));
    offset += std::max<ssize_t>(put, 0);
    return put;
}

} // namespace

const HANDLE kNoFile = reinterpret_cast<HANDLE>(std::intptr_t{-1});

HANDLE OpenFile(LPCWSTR path, const OpenOptions& options)
{
    if (Refused(FileOperation::Open))
        return kNoFile;
    DWORD error = 0;
    const std::string host = HostFromPath(path, &error);
    if (host.empty()) {
        Fail(error);
        return kNoFile;
    }
    using Disposition = OpenOptions::Disposition;
    const bool isNew = options.disposition == Disposition::CreateNew ||
                       (options.disposition != Disposition::OpenExisting && access(host.c_str(), F_OK) != 0);
    const int descriptor = open(host.c_str(), HostFlags(options), 0666);
    if (descriptor < 0) {
        if (errno == EEXIST)
            Fail(kErrorFileExists);
        else
            posix::FailPath(host);
        return kNoFile;
    }
    if (Enter(descriptor, options, isNew))
        return FromDescriptor(descriptor);
    close(descriptor);
    return kNoFile;
}

bool CloseFile(HANDLE file)
{
    const bool refused = Refused(FileOperation::Close);
    posix::ForgetOpen(Descriptor(file));
    if (close(Descriptor(file)) != 0 && errno != EINTR)
        return FailErrno();
    return !refused;
}

bool ReadFile(HANDLE file, void* buffer, UINT size, UINT& done)
{
    done = 0;
    if (Refused(FileOperation::Read))
        return false;
    while (done < size) {
        const ssize_t got = read(Descriptor(file), static_cast<char*>(buffer) + done,
                                 std::min(size - done, kLargestTransfer));
        if (got == 0)
            return true;
        if (got > 0)
            done += static_cast<UINT>(got);
        else if (errno != EINTR)
            return FailTransfer(Descriptor(file));
    }
    return true;
}

bool WriteFile(HANDLE file, const void* buffer, UINT size, UINT& done)
{
    done = 0;
    if (Refused(FileOperation::Write))
        return false;
    while (done < size) {
        const ssize_t put = write(Descriptor(file), static_cast<const char*>(buffer) + done,
                                  std::min(size - done, kLargestTransfer));
        if (put >= 0)
            done += static_cast<UINT>(put);
        else if (errno != EINTR)
            return FailTransfer(Descriptor(file));
    }
    return true;
}

bool CopyBytes(HANDLE from, ULONGLONG offset, HANDLE to, ULONGLONG size, ULONGLONG& done)
{
    done = 0;
    if (Refused(FileOperation::Copy))
        return false;
    auto next = static_cast<off_t>(offset);
    std::vector<char> piece;
    while (done < size) {
        const auto wanted = static_cast<std::size_t>(std::min(size - done, kCopyStep));
        const ssize_t copied = CopyStep(Descriptor(from), next, Descriptor(to), wanted, piece);
        if (copied == 0)
            return true;
        if (copied > 0)
            done += static_cast<ULONGLONG>(copied);
        else if (errno != EINTR)
            return FailTransfer(Descriptor(to));
        // Whoever copies as much flushes it, too: the disk can begin. Only a hint, so it may fail.
        if (size > kCopyStep)
            sync_file_range(Descriptor(to), 0, 0, SYNC_FILE_RANGE_WRITE);
    }
    return true;
}

bool SeekFile(HANDLE file, LONGLONG offset, UINT from, ULONGLONG& position)
{
    if (Refused(FileOperation::Seek))
        return false;
    constexpr int origins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    if (from >= std::size(origins))
        return Fail(kErrorInvalidParameter);
    const off_t reached = lseek(Descriptor(file), offset, origins[from]);
    if (reached < 0)
        return errno == EINVAL ? Fail(kErrorNegativeSeek) : FailErrno();
    position = static_cast<ULONGLONG>(reached);
    return true;
}

bool GetFileLength(HANDLE file, ULONGLONG& length)
{
    struct stat found;
    if (fstat(Descriptor(file), &found) != 0)
        return FailErrno();
    length = static_cast<ULONGLONG>(found.st_size);
    return true;
}

bool SetFileLength(HANDLE file, ULONGLONG length)
{
    if (Refused(FileOperation::SetLength))
        return false;
    if (length > INT64_MAX)
        return Fail(kErrorInvalidParameter);
    if (ftruncate(Descriptor(file), static_cast<off_t>(length)) == 0)
        return true;
    return errno == EINVAL ? Fail(kErrorAccessDenied) : FailErrno();
}

bool FlushFile(HANDLE file)
{
    if (Refused(FileOperation::Flush))
        return false;
    return fsync(Descriptor(file)) == 0 || FailErrno();
}

bool SetWrittenTime(HANDLE file, const FILETIME& written)
{
    const timespec times[] = {{0, UTIME_OMIT}, posix::ToHostTime(written)};
    return futimens(Descriptor(file), times) == 0 || FailErrno();
}

} // namespace vak::system
