#include "framework/base/SystemFile.h"

#include "framework/base/SystemFileFault.h"
#include "framework/base/win32/QuietErrors.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace vak::system {

namespace {

bool Refused(FileOperation operation)
{
    const DWORD error = FileFault(operation);
    if (error != 0)
        SetLastError(error);
    return error != 0;
}

template <class Found>
void Fill(FileEntry& entry, const Found& found)
{
    const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    entry.attributes = found.dwFileAttributes;
    entry.size = isFolder ? 0 : ULONGLONG{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
    entry.created = found.ftCreationTime;
    entry.accessed = found.ftLastAccessTime;
    entry.written = found.ftLastWriteTime;
}

/// Keeps the error that the search ended with.
struct CloseSearch
{
    void operator()(HANDLE search) const
    {
        const DWORD error = GetLastError();
        FindClose(search);
        SetLastError(error);
    }
};

std::vector<wchar_t> Complete(LPCWSTR path)
{
    std::vector<wchar_t> full(GetFullPathNameW(path, 0, nullptr, nullptr) + 1);
    GetFullPathNameW(path, static_cast<DWORD>(full.size()), full.data(), nullptr);
    return full;
}

/// Renames through the open handle, which nobody can have opened against us.
bool RenameByHandle(HANDLE file, LPCWSTR to, bool replace)
{
    const std::vector<wchar_t> full = Complete(to);
    const size_t units = static_cast<size_t>(lstrlenW(full.data()));
    const size_t size = offsetof(FILE_RENAME_INFO, FileName) + (units + 1) * sizeof(wchar_t);
    std::vector<std::byte> room(size + sizeof(FILE_RENAME_INFO));
    auto* const rename = reinterpret_cast<FILE_RENAME_INFO*>(room.data());
    rename->ReplaceIfExists = replace;
    rename->FileNameLength = static_cast<DWORD>(units * sizeof(wchar_t));
    CopyMemory(rename->FileName, full.data(), units * sizeof(wchar_t));
    return SetFileInformationByHandle(file, FileRenameInfo, rename, static_cast<DWORD>(room.size()));
}

bool ReplaceOnce(HANDLE file, LPCWSTR from, LPCWSTR to)
{
    if (RenameByHandle(file, to, true))
        return true;
    const DWORD error = GetLastError();
    if (error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION)
        return false;
    // Not every file system renames by handle.
    return MoveFileExW(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

} // namespace

DWORD FileAttributes(LPCWSTR path)
{
    return GetFileAttributesW(path);
}

bool SetAttributes(LPCWSTR path, DWORD attributes)
{
    return SetFileAttributesW(path, attributes);
}

bool QueryFile(LPCWSTR path, FileEntry& entry)
{
    const win32::QuietErrors quiet;
    WIN32_FILE_ATTRIBUTE_DATA found;
    if (!GetFileAttributesExW(path, GetFileExInfoStandard, &found))
        return false;
    Fill(entry, found);
    return true;
}

bool SetFileTimes(LPCWSTR path, const FILETIME* created, const FILETIME* accessed, const FILETIME* written)
{
    const HANDLE file =
        CreateFileW(path, FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    const bool set = SetFileTime(file, created, accessed, written);
    const DWORD error = GetLastError();
    CloseHandle(file);
    SetLastError(error);
    return set;
}

bool RemoveFile(LPCWSTR path)
{
    return !Refused(FileOperation::Remove) && DeleteFileW(path);
}

bool RenameFile(LPCWSTR from, LPCWSTR to)
{
    return !Refused(FileOperation::Rename) && MoveFileW(from, to);
}

bool DuplicateFile(LPCWSTR from, LPCWSTR to, bool failIfExists)
{
    return !Refused(FileOperation::Copy) && CopyFileW(from, to, failIfExists);
}

bool ReplaceFileBy(HANDLE file, LPCWSTR from, LPCWSTR to, bool)
{
    if (Refused(FileOperation::Replace))
        return false;
    for (DWORD pause = 10;; pause *= 2) {
        if (ReplaceOnce(file, from, to))
            return true;
        const DWORD error = GetLastError();
        const bool held = error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
        if (!held || pause > 320)
            return false;
        // Somebody has the target open; a scanner goes away by itself.
        Sleep(pause);
    }
}

bool RenameFileBy(HANDLE file, LPCWSTR from, LPCWSTR to)
{
    if (Refused(FileOperation::Rename))
        return false;
    if (RenameByHandle(file, to, false))
        return true;
    // Not every file system renames by handle.
    return GetLastError() != ERROR_ALREADY_EXISTS && MoveFileW(from, to);
}

bool ReadFolder(LPCWSTR folder, std::vector<FileEntry>& entries)
{
    CString pattern(folder);
    const int length = pattern.GetLength();
    if (length > 0 && pattern[length - 1] != L'\\' && pattern[length - 1] != L'/')
        pattern += L'\\';
    pattern += L'*';
    WIN32_FIND_DATAW found;
    const HANDLE search =
        FindFirstFileExW(pattern, FindExInfoBasic, &found, FindExSearchNameMatch, nullptr, 0);
    // The root of an empty volume has no entries at all.
    if (search == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_FILE_NOT_FOUND;
    const std::unique_ptr<void, CloseSearch> closing(search);
    do {
        entries.emplace_back();
        entries.back().name = found.cFileName;
        Fill(entries.back(), found);
    } while (FindNextFileW(search, &found));
    return GetLastError() == ERROR_NO_MORE_FILES;
}

} // namespace vak::system
