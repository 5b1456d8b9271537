#include "framework/ui/SystemIcon.h"

#include "framework/base/SystemShortcut.h"
#include "framework/ui/win32/IconEntries.h"

namespace vak::win32 {

IconEntries& CurrentIconEntries()
{
    static IconEntries entries = {SHGetFileInfoW, DestroyIcon};
    return entries;
}

} // namespace vak::win32

namespace vak::system {

namespace {

/// Asks the shell about a path.
bool Ask(const CString& path, UINT what, SHFILEINFOW& info)
{
    // Longer ones the shell would cut, and take for another file.
    if (path.IsEmpty() || path.GetLength() >= MAX_PATH)
        return false;
    const ShellScope shell;
    return win32::CurrentIconEntries().getFileInfo(path, 0, &info, sizeof info, what) != 0;
}

} // namespace

HICON FileIcon(const CString& path, int flags)
{
    constexpr UINT kSizes = SHGFI_LARGEICON | SHGFI_SMALLICON | SHGFI_SHELLICONSIZE;
    SHFILEINFOW info{};
    return Ask(path, SHGFI_ICON | (static_cast<UINT>(flags) & kSizes), info) ? info.hIcon : nullptr;
}

void FreeFileIcon(HICON icon)
{
    if (icon != nullptr)
        win32::CurrentIconEntries().destroyIcon(icon);
}

CString FileIconLocation(const CString& path, int& index)
{
    SHFILEINFOW info{};
    index = 0;
    if (!Ask(path, SHGFI_ICONLOCATION, info) || info.szDisplayName[0] == 0)
        return {};
    index = info.iIcon;
    return info.szDisplayName;
}

} // namespace vak::system
