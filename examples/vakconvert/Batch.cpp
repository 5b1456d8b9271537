#include "examples/vakconvert/Batch.h"

#include "examples/vakconvert/Sources.h"
#include "examples/vakconvert/WorkFolder.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"

Batch::Batch(const Settings& settings)
{
    m_info.m_srcMode = BATCH_SOURCE_FOLDER;
    m_info.m_recurseFolder = settings.recurse;
    m_info.m_recreateFolderTree = !settings.flat;
    m_info.m_dstFolder = settings.subfolder + settings.destination; // one of them at most
    m_info.m_dstMode = !settings.destination.IsEmpty() ? BATCH_DESTINATION_FOLDER
                       : !settings.subfolder.IsEmpty() ? BATCH_DESTINATION_SUBFOLDER
                                                       : BATCH_DESTINATION_BESIDE;
}

CString Batch::Problem() const
{
    // A batch would quietly take its default folder instead.
    if (m_info.m_dstMode == BATCH_DESTINATION_BESIDE || m_info.CheckDstFolder(0) != 0)
        return {};
    return L"no results can go to \"" + m_info.m_dstFolder + L"\"";
}

CString Batch::FolderFor(const Source& source)
{
    // The same for a subfolder that does not fit.
    const bool isArchived = !source.archive.IsEmpty();
    const CString own =
        isArchived ? source.archive.Left(source.archive.ReverseFind(L'\\') + 1) : source.root + source.folder;
    const bool isBelow = m_info.m_dstMode == BATCH_DESTINATION_SUBFOLDER;
    if (isBelow && own.GetLength() + m_info.m_dstFolder.GetLength() >= MAX_PATH)
        return {};
    m_info.m_srcFolder = source.root;
    // What was extracted lies in a temporary folder: its place is the archive's.
    const bool isPlaced = isArchived && m_info.m_dstMode != BATCH_DESTINATION_FOLDER;
    return m_info.GetDstFolder(isPlaced ? source.archive : source.path);
}

bool Batch::TakesResults(const CString& folder) const
{
    if (WorkFolder::IsOne(folder))
        return true;
    if (m_info.m_dstMode == BATCH_DESTINATION_FOLDER)
        return fileIsSameDir(folder, m_info.m_dstFolder) != 0;
    if (m_info.m_dstMode != BATCH_DESTINATION_SUBFOLDER)
        return false;
    CString end = L"\\" + m_info.m_dstFolder;
    fileSlashTerminate(end);
    return folder.Right(end.GetLength()).CompareNoCase(end) == 0;
}
