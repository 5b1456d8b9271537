#include "platform/ShortcutsArray.h"

#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/IoFile.h"
#include "framework/base/Exception.h"
#include "framework/base/SystemFile.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/SystemShortcut.h"
#include "framework/base/detail/PathText.h"

#include <memory>
#include <vector>

using namespace vak;

namespace {

/// The shortcut files of a slash-terminated folder.
std::vector<CString> ShortcutFiles(const CString& folder)
{
    std::vector<CString> paths;
    IoFile search;
    CString path;
    int matched = 0;
    search.FindFileOpen(folder + L"*.lnk", L"");
    while (search.FindFileNext(path, matched, 0) != 0) {
        // The system also finds longer extensions, by their short names, and folders.
        if (fileIsShortcut(path) != 0 && fileIsDirectory(path) == 0)
            paths.push_back(path);
    }
    search.FindFileClose();
    return paths;
}

/// False when it is there, and also when that cannot be told.
bool IsMissing(CString target)
{
    if (!detail::IsRootPath(target))
        fileRemoveSlashTermination(target);
    system::FileEntry entry;
    if (system::QueryFile(target, entry))
        return false;
    const DWORD error = system::LastFileError();
    return error == system::kErrorFileNotFound || error == system::kErrorPathNotFound ||
           error == system::kErrorInvalidName;
}

void Delete(const CString& path)
{
    // A link of the host's stays: what would go is what it leads to.
    if (!system::RemovesElsewhere(path))
        system::RemoveFile(path);
}

} // namespace

CShortcutsArray::~CShortcutsArray()
{
    RemoveAll();
}

int CShortcutsArray::ReadShortcuts(CString& folder, int iconFlags, int deleteBroken)
{
    const system::ShellScope shell;
    fileSlashTerminate(folder);
    int added = 0;
    // The names first: the folder changes while broken ones go.
    for (const CString& path : ShortcutFiles(folder)) {
        auto shortcut = std::make_unique<CShortcut>();
        if (shortcut->Init(path, iconFlags) == 0)
            continue;
        if (deleteBroken != 0 && IsMissing(shortcut->GetLinkPath())) {
            Delete(path);
            continue;
        }
        Add(shortcut.get());
        shortcut.release();
        ++added;
    }
    return added;
}

void CShortcutsArray::RemoveAt(int index, int count)
{
    if (index < 0 || count < 0 || index > GetSize() - count)
        AfxThrowInvalidArgException();
    for (int i = index; i < index + count; ++i)
        delete GetAt(i);
    CArray::RemoveAt(index, count);
}

void CShortcutsArray::RemoveAll()
{
    for (INT_PTR i = 0; i < GetSize(); ++i)
        delete GetAt(i);
    CArray::RemoveAll();
}

void CShortcutsArray::Copy(CShortcutsArray& to) const
{
    if (&to == this)
        return;
    to.RemoveAll();
    for (INT_PTR i = 0; i < GetSize(); ++i) {
        auto copy = std::make_unique<CShortcut>(*GetAt(i));
        to.Add(copy.get());
        copy.release();
    }
}
