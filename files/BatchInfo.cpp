#include "files/BatchInfo.h"

#include "files/FileNames.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "framework/base/Application.h"
#include "framework/base/detail/PathText.h"
#include "resources/Ids.h"

using namespace vak;

namespace {

CString DefaultEntry()
{
    CString entry;
    entry.LoadString(IDS_BATCH_RESULTS);
    return entry;
}

int Refuse(unsigned int textId, int showMessage)
{
    if (showMessage != 0)
        AfxMessageBox(textId, MB_OK | MB_ICONEXCLAMATION);
    return 0;
}

/// The case aside. Folding maps unit to unit, so that what stands behind the beginning is found by its
/// length.
bool BeginsWith(const CString& path, const CString& beginning)
{
    return path.Left(beginning.GetLength()).MakeLower() == CString(beginning).MakeLower();
}

/// `entry` below `folder`, which is slash-terminated or empty. What resolves to nothing or does not fit the
/// platform's buffers is no path: then the default entry stands in.
CString Join(const CString& folder, const CString& entry)
{
    const CString path = detail::ResolveDots(folder + entry);
    return path.IsEmpty() || path.GetLength() >= MAX_PATH ? folder + DefaultEntry() : path;
}

CString Terminated(CString folder)
{
    // Nothing stays nothing: a backslash alone would name the root of the current drive.
    if (!folder.IsEmpty())
        fileSlashTerminate(folder);
    return folder;
}

bool LieInOneFolder(const CStringArray& files)
{
    if (files.IsEmpty())
        return false;
    const CString folder = fileStripName(files[0]);
    for (INT_PTR i = 1; i < files.GetSize(); ++i) {
        if (fileCompareDirectory(fileStripName(files[i]), folder) != DirCompareSame)
            return false;
    }
    return true;
}

CString Sentence(unsigned int textId, const CString& first, const CString& second = {})
{
    CString sentence;
    sentence.Format(textId, first.GetString(), second.GetString());
    return sentence;
}

} // namespace

BatchInfo::BatchInfo() : m_dstFolder(DefaultEntry()) {}

void BatchInfo::SetSelFiles(const CStringArray& files)
{
    m_selFiles.Copy(files);
    m_flags |= BATCH_FILES_UNEXAMINED;
}

void BatchInfo::SetAlbumFiles(const CStringArray& files, const CString& albumFolder)
{
    m_albumFolder = albumFolder;
    m_albumFiles.Copy(files);
    m_flags |= BATCH_ALBUM | BATCH_ALBUM_UNEXAMINED;
}

int BatchInfo::CanRecurseFolder(int force) const
{
    if (m_recurseFolder == 0 && force == 0)
        return 0;
    if (m_srcMode == BATCH_SOURCE_FOLDER)
        return 1;
    return m_srcMode == BATCH_SOURCE_FOLDER_OR_ALBUM && IsAlbum() == 0 ? 1 : 0;
}

int BatchInfo::CanRecreateFolderTree(int force) const
{
    if ((m_recreateFolderTree == 0 && force == 0) || CanRecurseFolder(0) == 0)
        return 0;
    return m_dstMode == BATCH_DESTINATION_FOLDER ? 1 : 0;
}

int BatchInfo::CheckDstFolder(int showMessage) const
{
    constexpr unsigned int kPath = FILENAME_CHECK_PATH | FILENAME_CHECK_RELATIVE | FILENAME_CHECK_SILENT;
    const bool isRelative = detail::IsRelativePath(m_dstFolder);
    switch (m_dstMode) {
    case BATCH_DESTINATION_BESIDE:
        return fileIsDirectory(m_srcFolder, 1);
    case BATCH_DESTINATION_SUBFOLDER:
        if (isRelative && fileIsValidFileName(m_dstFolder, kPath) != 0)
            return 1;
        return Refuse(IDS_BATCH_WANTS_RELATIVE, showMessage);
    case BATCH_DESTINATION_FOLDER:
        if (isRelative || fileIsValidFileName(m_dstFolder, kPath) != 0)
            return 1;
        return Refuse(IDS_BATCH_WANTS_FOLDER, showMessage);
    default:
        return 0;
    }
}

CString BatchInfo::GetDstFolder(const CString& file)
{
    int isCommon = 0;
    switch (m_dstMode) {
    case BATCH_DESTINATION_BESIDE:
        return Terminated(file.IsEmpty() ? GetSrcFolder(isCommon, file) : fileStripName(file));
    case BATCH_DESTINATION_SUBFOLDER:
        return Terminated(Join(fileStripName(file), UsableEntry()));
    case BATCH_DESTINATION_FOLDER:
        return OneFolderFor(file);
    default:
        return {};
    }
}

int BatchInfo::CreateDstFolder(const CString& file)
{
    return fileCreateDirectory(GetDstFolder(file), 1);
}

CString BatchInfo::GetInformation()
{
    switch (m_dstMode) {
    case BATCH_DESTINATION_BESIDE:
        return DescribeBeside();
    case BATCH_DESTINATION_SUBFOLDER:
        return DescribeSubfolder();
    case BATCH_DESTINATION_FOLDER:
        return DescribeOneFolder();
    default:
        return {};
    }
}

/// The source folder that destinations are relative to. `isCommon` becomes 0 when the source files lie in
/// several folders, or are none: the folder is then that of `file` alone.
CString BatchInfo::GetSrcFolder(int& isCommon, const CString& file)
{
    isCommon = 1;
    if (m_srcMode >= BATCH_SOURCE_FOLDER)
        return m_srcFolder;
    if (m_srcMode == BATCH_SOURCE_FOLDER_OR_ALBUM && IsAlbum() == 0)
        return m_srcFolder;
    if (IsAlbum() != 0 && m_dstMode == BATCH_DESTINATION_FOLDER)
        return m_albumFolder;
    if (m_srcMode == BATCH_SOURCE_FOLDER_OR_ALBUM)
        return GetCommonFolder(m_albumFiles, BATCH_ALBUM_UNEXAMINED, BATCH_ALBUM_COMMON, isCommon, file);
    return GetCommonFolder(m_selFiles, BATCH_FILES_UNEXAMINED, BATCH_FILES_COMMON, isCommon, file);
}

CString BatchInfo::GetCommonFolder(const CStringArray& files, unsigned int unexamined, unsigned int common,
                                   int& isCommon, const CString& file)
{
    if ((m_flags & unexamined) != 0) {
        const unsigned int found = LieInOneFolder(files) ? common : 0u;
        m_flags = (m_flags & ~(unexamined | common)) | found;
    }
    // The members are the host's to change: it may have emptied the list behind the flag.
    isCommon = (m_flags & common) != 0 && !files.IsEmpty() ? 1 : 0;
    return fileStripName(isCommon != 0 ? files[0] : file);
}

CString BatchInfo::UsableEntry() const
{
    return CheckDstFolder(0) != 0 ? m_dstFolder : DefaultEntry();
}

CString BatchInfo::OneFolderFor(const CString& file)
{
    int isCommon = 0;
    const CString source = Terminated(GetSrcFolder(isCommon, file));
    if (source.IsEmpty())
        return {};
    const CString entry = UsableEntry();
    CString folder = Terminated(detail::IsRelativePath(entry) ? Join(source, entry) : entry);
    if (CanRecreateFolderTree(0) == 0 || file.IsEmpty())
        return folder;
    const CString own = fileStripName(file);
    if (BeginsWith(own, source))
        folder += own.Mid(source.GetLength());
    return Terminated(folder);
}

CString BatchInfo::DescribeBeside()
{
    int isCommon = 0;
    const CString source = Terminated(GetSrcFolder(isCommon, CString()));
    if (isCommon == 0 || source.IsEmpty())
        return Sentence(IDS_BATCH_BESIDE_SOURCES, source);
    return Sentence(CanRecurseFolder(0) != 0 ? IDS_BATCH_IN_FOLDER_TREE : IDS_BATCH_IN_FOLDER, source);
}

CString BatchInfo::DescribeSubfolder()
{
    int isCommon = 0;
    const CString source = Terminated(GetSrcFolder(isCommon, CString()));
    const CString entry = UsableEntry();
    if (isCommon == 0 || source.IsEmpty())
        return Sentence(IDS_BATCH_IN_SUBFOLDERS, entry);
    if (CanRecurseFolder(0) != 0)
        return Sentence(IDS_BATCH_IN_SUBFOLDERS_OF_TREE, entry, source);
    // An entry may climb ("..\x"): its folder does not lie in the source then.
    const CString folder = Terminated(Join(source, entry));
    const bool isBelow = BeginsWith(folder, source) && folder.GetLength() > source.GetLength();
    return isBelow ? Sentence(IDS_BATCH_IN_SUBFOLDER_OF, entry, source)
                   : Sentence(IDS_BATCH_IN_FOLDER, folder);
}

CString BatchInfo::DescribeOneFolder()
{
    int isCommon = 0;
    const bool hasSource = !GetSrcFolder(isCommon, CString()).IsEmpty();
    CString folder = UsableEntry();
    if (detail::IsRelativePath(folder)) {
        if (isCommon == 0 || !hasSource)
            return Sentence(IDS_BATCH_IN_SUBFOLDERS, folder);
        folder = OneFolderFor(CString());
    }
    return Sentence(CanRecreateFolderTree(0) != 0 ? IDS_BATCH_IN_FOLDER_TREE : IDS_BATCH_IN_FOLDER,
                    Terminated(folder));
}
