#include "files/IoFile.h"

#include "files/FileInfo.h"
#include "files/FilePath.h"

int IoFile::FindFileOpen(const CString& pattern, const CString& extension)
{
    FindFileClose();
    const CFileInfo wanted(pattern, FILEINFO_FILE);
    const CFileInfo kind(extension.IsEmpty() ? CString(L"*.*") : extension, FILEINFO_FILE);
    m_finder = new CFileFind;
    CString search = wanted.GetPath() + wanted.GetNameWithoutExt();
    if (search.Find(L'*') < 0)
        search += L"*";
    if (wanted.GetExtension().IsEmpty()) {
        m_wantedExtension = kind.GetExtension();
        search += m_wantedExtension;
    } else {
        search += wanted.GetExtension();
    }
    m_searchMore = m_finder->FindFile(search);
    return m_searchMore;
}

int IoFile::FindFileNext(CString& found, int& matched, int namesOnly)
{
    const bool everyOne = m_wantedExtension.IsEmpty() || m_wantedExtension == L".*";
    do {
        if (m_searchMore == 0 || m_finder == nullptr)
            return 0;
        matched = everyOne ? 1 : 0;
        m_searchMore = m_finder->FindNextFile();
    } while (m_finder->IsDots());
    const bool isDirectory = m_finder->IsDirectory() != 0;
    const CString name = m_finder->GetFileName();
    // A folder has no extension, whatever its name looks like.
    if (!everyOne && !isDirectory && fileGetExtension(name).CompareNoCase(m_wantedExtension) == 0)
        matched = 1;
    found = m_finder->GetFilePath();
    if (isDirectory)
        fileSlashTerminate(found);
    if (namesOnly != 0)
        found = name;
    return 1;
}

void IoFile::FindFileClose()
{
    delete m_finder;
    m_finder = nullptr;
}
