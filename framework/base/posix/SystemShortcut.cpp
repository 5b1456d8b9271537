#include "framework/base/SystemShortcut.h"

namespace vak::system {

ShellScope::ShellScope() : m_isCounted(false) {}

ShellScope::~ShellScope()
{
    static_cast<void>(m_isCounted); // nothing to give back
    static_cast<void>(m_errorMode);
}

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
