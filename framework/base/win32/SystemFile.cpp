#include "framework/base/SystemFile.h"

#include "framework/base/SystemFileFault.h"

#include <algorithm>
#include <memory>
#include <new>

namespace vak::system {

namespace {

bool Refused(FileOperation operation)
{
    const DWORD error = FileFault(operation);
    if (error != 0)
        SetLastError(error);
    return error != 0;
}

DWORD DispositionCode(OpenOptions::Disposition disposition)
{
    switch (disposition) {
    case OpenOptions::Disposition::CreateAlways:
        return CREATE_ALWAYS;
    case OpenOptions::Disposition::OpenAlways:
        return OPEN_ALWAYS;
    case OpenOptions::Disposition::CreateNew:
        return CREATE_NEW;
    default:
        return OPEN_EXISTING;
    }
}

DWORD Bit(bool wanted, DWORD bit)
{
    return wanted ? bit : 0;
}

} // namespace

const HANDLE kNoFile = INVALID_HANDLE_VALUE;

DWORD LastFileError()
{
    return GetLastError();
}

HANDLE OpenFile(LPCWSTR path, const OpenOptions& options)
{
    if (Refused(FileOperation::Open))
        return kNoFile;
    // A handle that is to be renamed holds the right to it from the start: whoever opens the file later
    // without sharing that is refused, instead of holding up the renaming.
    const DWORD access = Bit(options.read, GENERIC_READ) | Bit(options.write, GENERIC_WRITE) |
                         Bit(options.shareDelete && options.write, DELETE);
    const DWORD share = Bit(options.shareRead, FILE_SHARE_READ) | Bit(options.shareWrite, FILE_SHARE_WRITE) |
                        Bit(options.shareDelete, FILE_SHARE_DELETE);
    const DWORD flags = FILE_ATTRIBUTE_NORMAL | Bit(options.noBuffer, FILE_FLAG_NO_BUFFERING) |
                        Bit(options.writeThrough, FILE_FLAG_WRITE_THROUGH) |
                        Bit(options.randomAccess, FILE_FLAG_RANDOM_ACCESS) |
                        Bit(options.sequentialScan, FILE_FLAG_SEQUENTIAL_SCAN);
    SECURITY_ATTRIBUTES security = {sizeof(security), nullptr, options.inherit};
    return CreateFileW(path, access, share, &security, DispositionCode(options.disposition), flags, nullptr);
}

bool CloseFile(HANDLE file)
{
    const DWORD fault = FileFault(FileOperation::Close);
    const bool closed = CloseHandle(file) != 0;
    if (fault != 0)
        SetLastError(fault);
    return closed && fault == 0;
}

bool ReadFile(HANDLE file, void* buffer, UINT size, UINT& done)
{
    done = 0;
    if (Refused(FileOperation::Read))
        return false;
    DWORD got = 0;
    const bool read = ::ReadFile(file, buffer, size, &got, nullptr) != 0;
    done = got;
    return read;
}

bool WriteFile(HANDLE file, const void* buffer, UINT size, UINT& done)
{
    done = 0;
    if (Refused(FileOperation::Write))
        return false;
    DWORD put = 0;
    const bool written = ::WriteFile(file, buffer, size, &put, nullptr) != 0;
    done = put;
    return written;
}

/// The system has no such copying, so a large buffer has to do.
bool CopyBytes(HANDLE from, ULONGLONG offset, HANDLE to, ULONGLONG size, ULONGLONG& done)
{
    constexpr DWORD kPiece = 1 << 20;
    done = 0;
    if (Refused(FileOperation::Copy))
        return false;
    LARGE_INTEGER start;
    start.QuadPart = static_cast<LONGLONG>(offset);
    const std::unique_ptr<char[]> piece(new (std::nothrow) char[kPiece]);
    if (piece == nullptr)
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    if (piece == nullptr || !SetFilePointerEx(from, start, nullptr, FILE_BEGIN))
        return false;
    while (done < size) {
        DWORD got = 0;
        DWORD put = 0;
        if (!::ReadFile(from, piece.get(), static_cast<DWORD>(std::min<ULONGLONG>(size - done, kPiece)), &got,
                        nullptr))
            return false;
        const bool written = ::WriteFile(to, piece.get(), got, &put, nullptr) != 0;
        done += put;
        if (!written || got == 0)
            return written;
        if (put < got) { // the next piece would not join on
            SetLastError(ERROR_DISK_FULL);
            return false;
        }
    }
    return true;
}

bool SeekFile(HANDLE file, LONGLONG offset, UINT from, ULONGLONG& position)
{
    if (Refused(FileOperation::Seek))
        return false;
    LARGE_INTEGER distance;
    distance.QuadPart = offset;
    LARGE_INTEGER reached;
    if (!SetFilePointerEx(file, distance, &reached, from))
        return false;
    position = static_cast<ULONGLONG>(reached.QuadPart);
    return true;
}

bool GetFileLength(HANDLE file, ULONGLONG& length)
{
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file, &size))
        return false;
    length = static_cast<ULONGLONG>(size.QuadPart);
    return true;
}

bool SetFileLength(HANDLE file, ULONGLONG length)
{
    if (Refused(FileOperation::SetLength))
        return false;
    LARGE_INTEGER position;
    LARGE_INTEGER target;
    target.QuadPart = static_cast<LONGLONG>(length);
    if (!SetFilePointerEx(file, {}, &position, FILE_CURRENT) ||
        !SetFilePointerEx(file, target, nullptr, FILE_BEGIN))
        return false;
    const bool cut = SetEndOfFile(file) != 0;
    const DWORD error = GetLastError();
    SetFilePointerEx(file, position, nullptr, FILE_BEGIN);
    SetLastError(error);
    return cut;
}

bool FlushFile(HANDLE file)
{
    if (Refused(FileOperation::Flush))
        return false;
    // A handle that cannot write has nothing to flush, and is refused.
    return FlushFileBuffers(file) || GetLastError() == ERROR_ACCESS_DENIED;
}

bool SetWrittenTime(HANDLE file, const FILETIME& written)
{
    return SetFileTime(file, nullptr, nullptr, &written) != 0;
}

} // namespace vak::system
