#pragma once

/// Questions about files and directories on the disk, their dates, and directories created and removed.
/// Nothing is reported to the user: a failure is the result 0, and outputs are then as they were.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

class CStringArray;
class CTime;

/// Returns 1 for a path that ends in a backslash (unless `askFileSystemOnly` is non-zero), for one that looks
/// like a root ("C:\", "\\server\share"), and for a directory that exists.
VAK_API int fileIsDirectory(const CString& path, int askFileSystemOnly = 0);
VAK_API int fileDirectoryExists(const CString& path);
/// Returns 1 if anything of that name exists, a directory included.
VAK_API int fileExists(const CString& path);
/// Returns the size in bytes; 0 for a directory and for what does not exist.
VAK_API ULONGLONG fileGetSize(const CString& path);
/// Returns 1 for an existing program: an executable image or a command script.
VAK_API int fileIsExecutable(const CString& path);
/// Returns 1 for the name of a shell shortcut file (".lnk"); the disk is not asked.
VAK_API int fileIsShortcut(const CString& path);

/// Return 1 if both paths, made absolute and with long names, are the same, the case aside; nothing need
/// exist.
VAK_API int fileIsSameFile(const CString& first, const CString& second);
VAK_API int fileIsSameDir(const CString& first, const CString& second);

/// Local time, to the second.
VAK_API int fileGetCreationDate(const CString& path, CTime& date);
VAK_API int fileGetLastWriteDate(const CString& path, CTime& date);
VAK_API int fileSetCreationDate(const CString& path, const CTime& date);
VAK_API int fileSetLastWriteDate(const CString& path, const CTime& date);

/// Creates a directory. With `createParents` every missing parent is created too, and a directory that is
/// already there is a success; without it that is a failure.
VAK_API int fileCreateDirectory(const CString& path, int createParents);
/// Removes a directory: an empty one or, with `recursive`, with everything in it. Links and junctions are
/// removed themselves and never followed; a root is never removed. When something stays, the rest is removed
/// all the same, the result is 0, and `remaining` (may be null) has everything that stayed appended,
/// directories slash-terminated and behind what they hold.
VAK_API int fileRemoveDirectory(const CString& path, int recursive, CStringArray* remaining = nullptr);
