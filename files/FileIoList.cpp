#include "files/FileIo.h"
#include "files/FileKinds.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/IoFile.h"

#include <algorithm>
#include <vector>

namespace {

/// The platform's longest path; a folder that links back to one above it ends there at the latest.
constexpr int kLongestPath = MAX_PATH;

struct FolderContents
{
    std::vector<CString> files;
    std::vector<CString> folders; ///< slash-terminated
};

bool IsBefore(const CString& first, const CString& second)
{
    const int order = first.CompareNoCase(second);
    return order ? order < 0 : first.Compare(second) < 0;
}

FolderContents ReadFolder(const CString& folder)
{
    FolderContents contents;
    IoFile search;
    CString found;
    int matched = 0;
    search.FindFileOpen(folder + L"*", CString());
    while (search.FindFileNext(found, matched, 0)) {
        auto& names = found.Right(1) == L"\\" ? contents.folders : contents.files;
        names.push_back(found);
    }
    search.FindFileClose();
    std::sort(contents.files.begin(), contents.files.end(), IsBefore);
    std::sort(contents.folders.begin(), contents.folders.end(), IsBefore);
    return contents;
}

bool IsExistingFile(const CString& path)
{
    return fileExists(path) && !fileIsDirectory(path, 1);
}

/// The file of `folder` with that name and one of the extensions of `kinds`, empty for none.
CString FindUnderOtherExtension(const CString& folder, const CString& nameWithoutExt, int kinds)
{
    // Without a name, a file that is called like an extension would be taken for it.
    if (nameWithoutExt.IsEmpty())
        return CString();
    CStringArray extensions;
    fileGetExtensionArrayByProperty(static_cast<unsigned int>(kinds) & vak::kFileKindMask, extensions);
    for (int index = 0; index < extensions.GetSize(); ++index) {
        const CString candidate = folder + nameWithoutExt + extensions[index];
        if (IsExistingFile(candidate))
            return candidate;
    }
    return CString();
}

} // namespace

int CFileIo::GetFileList(CStringArray& files, FileListFilter filter, void* data, int recurse) const
{
    files.RemoveAll();
    // Deepest last: a folder's own files come before those of its first folder.
    std::vector<CString> waiting{GetPath()};
    while (!waiting.empty()) {
        const FolderContents contents = ReadFolder(waiting.back());
        waiting.pop_back();
        for (const CString& file : contents.files) {
            const unsigned int parser = IsLoading() ? fileGetLoader(file) : fileGetSaver(file);
            if (parser != vak::kFileCodeNone && (!filter || filter(file, data)))
                files.Add(file);
        }
        if (!recurse)
            break;
        for (auto folder = contents.folders.rbegin(); folder != contents.folders.rend(); ++folder)
            if (folder->GetLength() < kLongestPath)
                waiting.push_back(*folder);
    }
    return static_cast<int>(files.GetSize());
}

int CFileIo::FindMatchingFile(CString& file, const CString& folder, int kinds)
{
    CString base = folder;
    if (!base.IsEmpty())
        fileSlashTerminate(base);
    CString wanted = file;
    wanted.Replace(L'/', L'\\');
    const CFileInfo info(wanted, FILEINFO_FILE);
    CString found = fileMakeAbsolutePath(base, wanted);
    if (!IsExistingFile(found))
        found = base + info.GetName();
    if (!IsExistingFile(found) && kinds)
        found = FindUnderOtherExtension(base, info.GetNameWithoutExt(), kinds);
    if (!IsExistingFile(found))
        return 0;
    file = found;
    return 1;
}
