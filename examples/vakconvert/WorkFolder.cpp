#include "examples/vakconvert/WorkFolder.h"

#include "files/FileNames.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/IoFile.h"

namespace {

constexpr LPCWSTR kPrefix = L".vakconvert-";

} // namespace

WorkFolder::WorkFolder(const CString& parent) : m_parent(parent)
{
    CString name;
    name.Format(L"%s%s%u", parent.GetString(), kPrefix, static_cast<unsigned int>(GetCurrentProcessId()));
    m_path = fileCreateUniqueName(name, 0);
    m_ready = fileCreateDirectory(m_path, 1) != 0;
    fileSlashTerminate(m_path);
}

WorkFolder::~WorkFolder()
{
    if (m_ready)
        fileRemoveDirectory(m_path, 1);
}

bool WorkFolder::IsOne(const CString& folder)
{
    return fileTopDirectory(folder).Find(kPrefix) == 0;
}

std::vector<CString> WorkFolder::Files(const CString& mainName) const
{
    std::vector<CString> names;
    IoFile search;
    CString name;
    int matched = 0;
    for (int more = search.FindFileOpen(m_path + L"*.*", L"");
         more && search.FindFileNext(name, matched, 1);) {
        if (name.CompareNoCase(mainName) != 0)
            names.push_back(name);
    }
    search.FindFileClose();
    names.push_back(mainName);
    return names;
}

ULONGLONG WorkFolder::MoveOut(const std::vector<CString>& files, bool overwrite, CString& failure)
{
    ULONGLONG bytes = 0;
    for (const CString& file : files) {
        const ULONGLONG size = fileGetSize(m_path + file);
        if (!MoveFileOut(file, overwrite, failure))
            return 0;
        bytes += size;
    }
    return bytes;
}

bool WorkFolder::MoveFileOut(const CString& name, bool overwrite, CString& failure) const
{
    const DWORD replace = overwrite ? MOVEFILE_REPLACE_EXISTING : 0;
    if (MoveFileExW(m_path + name, m_parent + name, replace | MOVEFILE_WRITE_THROUGH))
        return true;
    failure.Format(L"%s cannot be moved into place (error %u)", name.GetString(),
                   static_cast<unsigned int>(GetLastError()));
    return false;
}
