#include "files/CurrentDir.h"

CString CCurrentDir::SetDirectory(const CString& directory, DirectoryType type)
{
    CString previous = GetDirectory(directory, type);
    m_directories.Insert(type, directory);
    return previous;
}

CString CCurrentDir::GetDirectory(const CString&, DirectoryType type) const
{
    CString stored;
    m_directories.Find(type, stored);
    return stored;
}
