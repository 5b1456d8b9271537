#include "files/FilePath.h"

#include "files/FileInfo.h"
#include "files/FileSystem.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/detail/PathText.h"

using namespace vak;

void fileSlashTerminate(CString& path)
{
    if (!detail::EndsInSlash(path))
        path += L'\\';
}

void fileRemoveSlashTermination(CString& path)
{
    if (detail::EndsInSlash(path))
        path.Delete(path.GetLength() - 1);
}

CString fileStripPath(const CString& path, int removeExtension)
{
    if (fileIsDirectory(path) != 0)
        return {};
    const CString name = path.Mid(detail::NameStart(path));
    return removeExtension != 0 ? fileRemoveExtension(name) : name;
}

CString fileStripName(const CString& path)
{
    if (fileIsDirectory(path) == 0)
        return path.Left(detail::NameStart(path));
    CString directory = path;
    fileSlashTerminate(directory);
    return directory;
}

CString fileGetExtension(const CString& path)
{
    return path.Mid(detail::ExtensionStart(path));
}

CString fileRemoveExtension(const CString& path)
{
    return path.Left(detail::ExtensionStart(path));
}

CString fileCompactPath(const CString& path, int width)
{
    return system::CompactPath(path, width);
}

DirCompare fileCompareDirectory(CString first, CString second)
{
    for (CString* directory : {&first, &second}) {
        directory->MakeLower();
        fileSlashTerminate(*directory);
    }
    if (first == second)
        return DirCompareSame;
    if (detail::IsRelativePath(first) || detail::IsRelativePath(second))
        return DirCompareUnrelated;
    // Anywhere, not only at the beginning: callers rely on it.
    if (first.Find(second) >= 0)
        return DirCompareSubdir;
    return second.Find(first) >= 0 ? DirCompareParent : DirCompareUnrelated;
}

CString fileMakeRelativePath(const CString& base, const CString& path)
{
    CString beginning = path.Left(base.GetLength());
    if (beginning.MakeLower() != CString(base).MakeLower())
        return path;
    const CString remainder = path.Mid(base.GetLength());
    if (remainder.IsEmpty())
        return {};
    return (remainder[0] == L'\\' ? L"." : L".\\") + remainder;
}

CString fileMakeAbsolutePath(const CString& base, const CString& path)
{
    if (!detail::IsRelativePath(path))
        return path;
    // What does not fit the platform's buffers is no path to it, also where a newer system would take it.
    const CString absolute = detail::ResolveDots(base + path);
    return absolute.GetLength() < MAX_PATH ? absolute : path;
}

CString fileGetLongPathName(const CString& path)
{
    CString longPath = path;
    system::LongPath(path, longPath);
    return longPath;
}

CString fileTopDirectory(const CString& path)
{
    return CFileInfo(CFileNameSpec(path, 0)).GetTopDirectory();
}

int fileGetParentDirectory(CString& path)
{
    const CFileInfo info(CFileNameSpec(path, 0));
    path = info.GetParentDirectory();
    return fileCompareDirectory(path, info.GetPath()) != DirCompareSame ? 1 : 0;
}
