#pragma once

/// Shell shortcut files, as the system's shell reads and writes them. Every function may be called from any
/// thread, whatever that thread has set up of COM, and leaves it set up as it was. Natively there is no
/// shell: shortcuts are neither read nor written.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

namespace vak::system {

/// Sets up for the calling thread what questions to the shell need (COM), for as long as it lives. A thread
/// that has it already, in whatever apartment, keeps that. Every function here makes one for itself; who asks
/// several questions holds one meanwhile, since setting up costs more than an answer. It ends on its thread.
/// Meanwhile the system does not ask the user for disks either.
class VAK_INTERNAL_API ShellScope
{
public:
    ShellScope();
    ~ShellScope();
    ShellScope(const ShellScope&) = delete;
    ShellScope& operator=(const ShellScope&) = delete;

private:
    bool m_isCounted;
    DWORD m_errorMode = 0; ///< the thread's own
};

/// What a shortcut says.
struct Shortcut
{
    CString target; ///< absolute, variables of the environment replaced; nothing of that name need exist
    CString arguments;
    CString description;
    CString workingDirectory; ///< as it is stored, variables and all
    WORD hotKey = 0;          ///< low byte the virtual key, high byte the shell's modifier flags
};

/// Reads a shortcut file. False, with `out` as it was, when the file cannot be read, is damaged or longer
/// than kMostShortcutBytes, leads to nothing that has a path, or leads to a path that the shell cannot give
/// whole.
VAK_INTERNAL_API bool ReadShortcut(const CString& path, Shortcut& out);
constexpr UINT kMostShortcutBytes = 1 << 20;

/// Writes a shortcut file, in place of one that is there in one step: after a failure that one is as it was.
/// Variables of the environment in the target are replaced. False also when a field is longer than the shell
/// keeps: 259 units for paths, kMostDescription for the description, 32,766 for the arguments.
VAK_INTERNAL_API bool WriteShortcut(const CString& path, const Shortcut& shortcut);
constexpr int kMostDescription = 1023;

/// Replaces variables of the environment ("%windir%\x" is "C:\windows\x"); unknown ones stay. Natively all
/// do.
VAK_INTERNAL_API CString ExpandedPath(const CString& path);

} // namespace vak::system
