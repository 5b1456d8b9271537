#pragma once

/// Paths taken apart, compared and put together.
///
/// The only separator is the backslash. A directory is held slash-terminated, and a name that ends in a
/// backslash is a directory without asking the disk. Unless a function says that it asks the disk, it looks
/// at the text alone.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

class CWnd;

/// How the first of two directories lies to the second.
enum DirCompare
{
    DirCompareUnrelated = 0,
    DirCompareSame = 1,
    DirCompareSubdir = 2, ///< the first lies inside the second
    DirCompareParent = 3, ///< the second lies inside the first
};

/// Appends a backslash unless the path ends in one; an empty path becomes "\".
VAK_API void fileSlashTerminate(CString& path);
/// Removes one backslash from the end, if there is one.
VAK_API void fileRemoveSlashTermination(CString& path);

/// Returns the file name of a path, without its extension if `removeExtension` is non-zero; empty for a path
/// that ends in a backslash, a root or a directory that exists: the disk is asked.
VAK_API CString fileStripPath(const CString& path, int removeExtension = 0);
/// Returns the directory of a path, slash-terminated; the path itself if it ends in a backslash, is a root or
/// is a directory that exists: the disk is asked. Empty for a bare name and an empty path.
VAK_API CString fileStripName(const CString& path);

/// Returns the extension of the last component with its dot, or an empty string. An extension holds no blank.
VAK_API CString fileGetExtension(const CString& path);
VAK_API CString fileRemoveExtension(const CString& path);

/// Returns the path shortened for display to `width` characters, parts of it replaced by "...".
VAK_API CString fileCompactPath(const CString& path, int width);
/// Returns the path shortened for display to `width` pixels in the font of `window`; null: the system's font.
/// Only where there are windows.
VAK_API CString fileCompactPath(const CString& path, CWnd* window, int width);

/// Compares two directories, the case aside. A directory is inside another when that one's text occurs
/// anywhere in its own; relative directories are only ever the same or unrelated.
VAK_API DirCompare fileCompareDirectory(CString first, CString second);
/// Returns `path` relative to `base` (slash-terminated), beginning with ".\"; empty when they are equal, the
/// path unchanged when it does not begin with the base. The case is kept, and ignored in comparing.
VAK_API CString fileMakeRelativePath(const CString& base, const CString& path);
/// Returns `path` joined to `base` (slash-terminated) with "." and ".." resolved; unchanged when it is
/// absolute or when the result does not fit the platform's buffer of 260 characters.
VAK_API CString fileMakeAbsolutePath(const CString& base, const CString& path);

/// Returns the path with every short (8.3) component replaced by its long name; unchanged when the disk has
/// nothing of that name.
VAK_API CString fileGetLongPathName(const CString& path);

/// Returns the bare name of the last directory of the path, as CFileInfo::GetTopDirectory does.
VAK_API CString fileTopDirectory(const CString& path);
/// Replaces the path by the parent of its directory; returns 0 when that is the same directory: the top was
/// reached.
VAK_API int fileGetParentDirectory(CString& path);
