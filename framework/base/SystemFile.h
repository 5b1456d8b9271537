#pragma once

#include "framework/base/String.h"

#include <vector>

/// What the library asks of the operating system about files: handles, names, attributes, times, folders.
///
/// Paths are the platform's, with backslashes; natively `Z:\tmp\x` is /tmp/x and other drives do not exist.
/// Functions return false (or kNoFile) on failure, and LastFileError() then gives the platform's code of it
/// on every build. Sizes and positions are bytes.
///
/// Sharing between opens is enforced by the system on Windows, natively between the opens of one process.
namespace vak::system {

constexpr DWORD kErrorFileNotFound = 2;
constexpr DWORD kErrorPathNotFound = 3;
constexpr DWORD kErrorTooManyOpenFiles = 4;
constexpr DWORD kErrorAccessDenied = 5;
constexpr DWORD kErrorInvalidHandle = 6;
constexpr DWORD kErrorNotEnoughMemory = 8;
constexpr DWORD kErrorNotSameDevice = 17;
constexpr DWORD kErrorNoMoreFiles = 18;
constexpr DWORD kErrorWriteProtect = 19;
constexpr DWORD kErrorWriteFault = 29;
constexpr DWORD kErrorReadFault = 30;
constexpr DWORD kErrorGenFailure = 31;
constexpr DWORD kErrorSharingViolation = 32;
constexpr DWORD kErrorHandleEof = 38;
constexpr DWORD kErrorNotSupported = 50;
constexpr DWORD kErrorBadNetPath = 53;
constexpr DWORD kErrorFileExists = 80;
constexpr DWORD kErrorInvalidParameter = 87;
constexpr DWORD kErrorDiskFull = 112;
constexpr DWORD kErrorInvalidName = 123;
constexpr DWORD kErrorNegativeSeek = 131;
constexpr DWORD kErrorDirNotEmpty = 145;
constexpr DWORD kErrorAlreadyExists = 183;
constexpr DWORD kErrorFilenameTooLong = 206;
constexpr DWORD kErrorDirectory = 267;

constexpr DWORD kAttributeReadOnly = 0x01;
constexpr DWORD kAttributeHidden = 0x02;
constexpr DWORD kAttributeSystem = 0x04;
constexpr DWORD kAttributeDirectory = 0x10;
constexpr DWORD kAttributeArchive = 0x20;
constexpr DWORD kAttributeNormal = 0x80;
constexpr DWORD kInvalidAttributes = 0xFFFFFFFF;

/// The code of the calling thread's last failure in this namespace.
VAK_INTERNAL_API DWORD LastFileError();

/// @name Open files
/// @{
extern VAK_INTERNAL_API const HANDLE kNoFile;

struct OpenOptions
{
    enum class Disposition
    {
        OpenExisting,
        CreateAlways, ///< empties one that is there
        OpenAlways,   ///< creates when there is none
        CreateNew     ///< fails when there is one
    };

    bool read = false;
    bool write = false;
    bool shareRead = false;
    bool shareWrite = false;
    /// The file may be renamed and deleted while it is open, by this handle (ReplaceFileBy) and by others.
    bool shareDelete = false;
    bool inherit = false;
    bool noBuffer = false;
    bool writeThrough = false;
    bool randomAccess = false;
    bool sequentialScan = false;
    Disposition disposition = Disposition::OpenExisting;
};

VAK_INTERNAL_API HANDLE OpenFile(LPCWSTR path, const OpenOptions& options);
VAK_INTERNAL_API bool CloseFile(HANDLE file);
/// Reads up to `size` bytes; fewer only at the end of the file.
VAK_INTERNAL_API bool ReadFile(HANDLE file, void* buffer, UINT size, UINT& done);
/// Writes up to `size` bytes; `done` says how many also when it fails.
VAK_INTERNAL_API bool WriteFile(HANDLE file, const void* buffer, UINT size, UINT& done);
/// Appends `size` bytes of `from`, beginning at `offset`, to `to` at its position, which moves on behind
/// them; that of `from` is not known then. In the kernel where it can, so that the bytes do not pass through
/// the process. `done` says how many were copied also when it fails; fewer only at the end of `from`.
VAK_INTERNAL_API bool CopyBytes(HANDLE from, ULONGLONG offset, HANDLE to, ULONGLONG size, ULONGLONG& done);
/// Moves to `offset` from the beginning (0), the position (1) or the end (2).
VAK_INTERNAL_API bool SeekFile(HANDLE file, LONGLONG offset, UINT from, ULONGLONG& position);
VAK_INTERNAL_API bool GetFileLength(HANDLE file, ULONGLONG& length);
/// Cuts or extends with zeros; the position stays.
VAK_INTERNAL_API bool SetFileLength(HANDLE file, ULONGLONG length);
/// Returns when what was written is on the disk.
VAK_INTERNAL_API bool FlushFile(HANDLE file);
/// Sets the last-write time; whoever writes on changes it again.
VAK_INTERNAL_API bool SetWrittenTime(HANDLE file, const FILETIME& written);
/// @}

/// @name Files by name
/// @{
/// kInvalidAttributes when there is nothing of that name.
VAK_INTERNAL_API DWORD FileAttributes(LPCWSTR path);
VAK_INTERNAL_API bool SetAttributes(LPCWSTR path, DWORD attributes);

struct FileEntry
{
    CString name; ///< without the folder
    DWORD attributes = 0;
    ULONGLONG size = 0; ///< 0 for a folder
    FILETIME created{};
    FILETIME accessed{};
    FILETIME written{};
};

/// Fills `entry` for a file or folder, except the name.
VAK_INTERNAL_API bool QueryFile(LPCWSTR path, FileEntry& entry);
/// Sets the times that are not null. Natively the creation time cannot be set: kErrorNotSupported.
VAK_INTERNAL_API bool SetFileTimes(LPCWSTR path, const FILETIME* created, const FILETIME* accessed,
                                   const FILETIME* written);
VAK_INTERNAL_API bool RemoveFile(LPCWSTR path);
/// Renames a file or folder within its volume; fails with kErrorAlreadyExists when the new name is taken.
VAK_INTERNAL_API bool RenameFile(LPCWSTR from, LPCWSTR to);
/// Copies contents, attributes and last-write time.
VAK_INTERNAL_API bool DuplicateFile(LPCWSTR from, LPCWSTR to, bool failIfExists);
/// Puts the open file `file`, named `from` and opened with shareDelete, in the place of `to` in one step,
/// whether or not `to` exists: whoever opens `to` finds the old contents or the new. The handle stays open.
/// Waits a moment for others (a scanner) to leave `to`. With `toDisk` the name is on the disk when it
/// returns.
VAK_INTERNAL_API bool ReplaceFileBy(HANDLE file, LPCWSTR from, LPCWSTR to, bool toDisk = true);
/// The same for a name that is free; fails with kErrorAlreadyExists when it is taken. The name is not on the
/// disk yet.
VAK_INTERNAL_API bool RenameFileBy(HANDLE file, LPCWSTR from, LPCWSTR to);
/// Sets `entries` to those of one folder, sorted by name without regard to case; "." and ".." are among them
/// where the system has them. `folder` may end in a backslash and is the current one when empty.
VAK_INTERNAL_API bool ListFolder(LPCWSTR folder, std::vector<FileEntry>& entries);

/// The entries in the order that the system has them; for ListFolder.
bool ReadFolder(LPCWSTR folder, std::vector<FileEntry>& entries);
/// @}

} // namespace vak::system
