#include "framework/base/SystemShortcut.h"

namespace vak::system {

bool ReadShortcut(const CString&, Shortcut&)
{
    return false;
}

bool WriteShortcut(const CString&, const Shortcut&)
{
    return false;
}

CString ExpandedPath(const CString& path)
{
    return path;
}

} // namespace vak::system
