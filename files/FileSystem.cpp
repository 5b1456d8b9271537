#include "files/FileSystem.h"

#include "files/FilePath.h"
#include "framework/base/StringArray.h"
#include "framework/base/SystemFile.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/Time.h"
#include "framework/base/detail/PathText.h"

#include <algorithm>
#include <iterator>
#include <vector>

using namespace vak;

namespace {

/// What the file system holds under a name; what ends in a backslash can only be a folder.
bool Query(const CString& path, system::FileEntry& entry)
{
    CString name = path;
    if (!detail::IsRootPath(path))
        fileRemoveSlashTermination(name);
    if (name.IsEmpty() || !system::QueryFile(name, entry))
        return false;
    return (entry.attributes & system::kAttributeDirectory) != 0 || !detail::EndsInSlash(path);
}

bool IsFolder(const CString& path)
{
    system::FileEntry entry;
    return Query(path, entry) && (entry.attributes & system::kAttributeDirectory) != 0;
}

CString FullPathOf(const CString& path)
{
    CString full = path;
    system::FullPath(path, full);
    return full;
}

CString LongFullPath(const CString& path)
{
    return fileGetLongPathName(FullPathOf(path));
}

/// Creates every folder on the way to `path`, which is absolute or relative and has no final backslash.
bool MakeFolders(const CString& path)
{
    for (int slash = detail::RootLength(path); slash < path.GetLength();) {
        slash = path.Find(L'\\', slash + 1);
        const CString folder = slash < 0 ? path : path.Left(slash);
        // Another process may create it in between: only what is there afterwards counts.
        if (!IsFolder(folder) && !system::MakeFolder(folder) && !IsFolder(folder))
            return false;
        if (slash < 0)
            break;
    }
    return IsFolder(path);
}

bool RemoveFile(const CString& path)
{
    return !system::RemovesElsewhere(path) && system::RemoveFile(path);
}

/// Removes the files of `folder` and appends its folders to `folders`, except links to folders, which go too.
void RemoveFiles(const CString& folder, std::vector<CString>& folders, std::vector<CString>& remaining)
{
    std::vector<system::FileEntry> entries;
    system::ListFolder(folder, entries);
    for (const system::FileEntry& entry : entries) {
        if (entry.name == L"." || entry.name == L"..")
            continue;
        const CString path = folder + entry.name;
        const bool isFolder = (entry.attributes & system::kAttributeDirectory) != 0;
        if (isFolder && !system::IsLink(path))
            folders.push_back(path + L'\\');
        else if (!(isFolder ? system::RemoveEmptyFolder(path) : RemoveFile(path)))
            remaining.push_back(path);
    }
}

std::vector<CString> RemoveTree(const CString& top)
{
    // Folders are visited from the top down and removed from the bottom up, by a list instead of by
    // recursion: the disk decides how deep they lie.
    std::vector<CString> folders{top};
    std::vector<CString> remaining;
    for (std::size_t i = 0; i < folders.size(); ++i)
        RemoveFiles(CString(folders[i]), folders, remaining);
    std::for_each(folders.rbegin(), folders.rend(), [&](const CString& folder) {
        if (!system::RemoveEmptyFolder(folder))
            remaining.push_back(folder);
    });
    return remaining;
}

} // namespace

int fileIsDirectory(const CString& path, int askFileSystemOnly)
{
    if (askFileSystemOnly == 0 && detail::EndsInSlash(path))
        return 1;
    return detail::IsRootPath(path) || IsFolder(path) ? 1 : 0;
}

int fileDirectoryExists(const CString& path)
{
    return IsFolder(path) ? 1 : 0;
}

int fileExists(const CString& path)
{
    system::FileEntry entry;
    return Query(path, entry) ? 1 : 0;
}

ULONGLONG fileGetSize(const CString& path)
{
    system::FileEntry entry;
    return Query(path, entry) ? entry.size : 0;
}

int fileIsExecutable(const CString& path)
{
    if (fileExists(path) == 0 || IsFolder(path))
        return 0;
    const CString extension = fileGetExtension(path).MakeLower();
    const bool isScript = extension == L".bat" || extension == L".cmd";
    return isScript || system::IsProgramImage(path) ? 1 : 0;
}

int fileIsShortcut(const CString& path)
{
    return fileGetExtension(path).CompareNoCase(L".lnk") == 0 ? 1 : 0;
}

int fileIsSameFile(const CString& first, const CString& second)
{
    return LongFullPath(first).CompareNoCase(LongFullPath(second)) == 0 ? 1 : 0;
}

int fileIsSameDir(const CString& first, const CString& second)
{
    return fileCompareDirectory(LongFullPath(first), LongFullPath(second)) == DirCompareSame ? 1 : 0;
}

int fileGetCreationDate(const CString& path, CTime& date)
{
    system::FileEntry entry;
    if (!Query(path, entry) || !CTime::IsValidFILETIME(entry.created))
        return 0;
    date = CTime(entry.created);
    return 1;
}

int fileGetLastWriteDate(const CString& path, CTime& date)
{
    system::FileEntry entry;
    if (!Query(path, entry) || !CTime::IsValidFILETIME(entry.written))
        return 0;
    date = CTime(entry.written);
    return 1;
}

int fileSetCreationDate(const CString& path, const CTime& date)
{
    const FILETIME created = detail::FileTimeFromTime(date);
    return system::SetFileTimes(path, &created, nullptr, nullptr) ? 1 : 0;
}

int fileSetLastWriteDate(const CString& path, const CTime& date)
{
    const FILETIME written = detail::FileTimeFromTime(date);
    return system::SetFileTimes(path, nullptr, nullptr, &written) ? 1 : 0;
}

int fileCreateDirectory(const CString& path, int createParents)
{
    CString folder = path;
    if (!detail::IsRootPath(folder))
        fileRemoveSlashTermination(folder);
    if (createParents != 0)
        return MakeFolders(folder) ? 1 : 0;
    return system::MakeFolder(folder) ? 1 : 0;
}

int fileRemoveDirectory(const CString& path, int recursive, CStringArray* remaining)
{
    // The operating system ends a name at its first zero, also when more is joined to it behind the zero.
    const CString name(path.GetString());
    CString folder = name;
    fileSlashTerminate(folder);
    // "C:" is the drive's current folder, but with a backslash behind it is the whole drive.
    if (!IsFolder(name) || detail::IsRootPath(folder) || detail::IsRootPath(FullPathOf(name)))
        return 0;
    std::vector<CString> kept;
    if (recursive != 0 && !system::IsLink(name))
        kept = RemoveTree(folder);
    else if (!system::RemoveEmptyFolder(folder))
        kept.push_back(folder);
    if (remaining != nullptr) {
        for (const CString& stayed : kept)
            remaining->Add(stayed);
    }
    return kept.empty() ? 1 : 0;
}
