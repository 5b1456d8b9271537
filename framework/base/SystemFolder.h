#pragma once

/// What the operating system knows about folders and the paths that lead to them.
///
/// Paths are Windows paths with backslashes on every build. Folders are taken with or without a final
/// backslash and given back with one. Functions that return false leave their output as it was; functions
/// that return a path return an empty one when the system has none. Every function may be called from any
/// thread, but the current folder belongs to the whole process.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

namespace vak::system {

/// Creates one folder; its parent must exist. False also when something of that name exists.
VAK_INTERNAL_API bool MakeFolder(const CString& path);
/// Removes one empty folder. A link or junction to a folder is itself removed, never what it leads to: false
/// where the system cannot.
VAK_INTERNAL_API bool RemoveEmptyFolder(const CString& path);
/// Tells a folder from every other, also from one that comes to bear its name.
struct FolderIdentity
{
    ULONGLONG volume = 0;
    ULONGLONG number = 0;
    ULONGLONG created = 0;

    bool operator==(const FolderIdentity&) const = default;
};
/// False when the path, links on it followed, leads to no folder.
VAK_INTERNAL_API bool IdentifyFolder(const CString& path, FolderIdentity& identity);
/// True when the name is a link or junction, which leads out of the folder that holds it.
VAK_INTERNAL_API bool IsLink(const CString& path);
/// True when the system would not remove this name but what it leads to, somewhere else.
VAK_INTERNAL_API bool RemovesElsewhere(const CString& path);

VAK_INTERNAL_API CString CurrentFolder();
VAK_INTERNAL_API bool EnterFolder(const CString& path);

/// The folder for temporary files, in its long form.
VAK_INTERNAL_API CString TemporaryFolder();
/// The folder that holds the running program.
VAK_INTERNAL_API CString ApplicationFolder();
/// The folder for the settings that programs keep for the user.
VAK_INTERNAL_API CString UserDataFolder();

/// Makes `path` absolute against the current folder and resolves "." and ".."; nothing need exist.
VAK_INTERNAL_API bool FullPath(const CString& path, CString& full);
/// Replaces every short (8.3) component by its long name. False when `path` does not exist.
VAK_INTERNAL_API bool LongPath(const CString& path, CString& longPath);

/// True when the drive whose root (slash-terminated) this is belongs to another computer.
VAK_INTERNAL_API bool IsRemoteDrive(const CString& root);
/// True when the file holds a program that the system can start; a library is none.
VAK_INTERNAL_API bool IsProgramImage(const CString& path);

/// What the shell calls files of an extension (with its dot, or empty), or folders ("jpg file"). The disk is
/// not asked. Natively there are no registered names: always the extension in front of " file".
VAK_INTERNAL_API CString FileTypeName(const CString& extension, bool isFolder);

/// Shortens a path of more than `width` UTF-16 units to that many, by leaving out folders and, when that is
/// not enough, the end of the name.
VAK_INTERNAL_API CString CompactPath(const CString& path, int width);
/// Shortens a path to at most `width` pixels as `window` would draw it in its own font; null: the system's.
/// Only where there are windows.
VAK_INTERNAL_API CString CompactPath(HWND window, const CString& path, int width);

} // namespace vak::system
