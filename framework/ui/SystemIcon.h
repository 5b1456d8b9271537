#pragma once

/// The icons that the system's shell shows for files. Every function may be called from any thread and leaves
/// COM set up as it was. Windows only.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

namespace vak::system {

/// Returns the shell's icon of a file or folder, the caller's to free; null when there is nothing of that
/// name. Of `flags` the shell's own bits count that choose a size: SHGFI_LARGEICON (0), SHGFI_SMALLICON and
/// SHGFI_SHELLICONSIZE.
VAK_INTERNAL_API HICON FileIcon(const CString& path, int flags);
/// Frees an icon of FileIcon; null is nothing.
VAK_INTERNAL_API void FreeFileIcon(HICON icon);
/// Returns the file that has the icon of `path`, and its index there; empty, and 0, when the shell names
/// none.
VAK_INTERNAL_API CString FileIconLocation(const CString& path, int& index);

} // namespace vak::system
