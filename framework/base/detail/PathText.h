#pragma once

/// Paths as text: nothing here asks the disk. Positions and lengths count UTF-16 units.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

namespace vak::detail {

/// A path without drive, share or leading backslash.
bool IsRelativePath(const CString& path);
/// Whether the path begins with "\\server\share".
bool IsNetworkPath(const CString& path);
/// The length of what the path begins with of "C:\", "C:", "\\server\share\", "\\server\share" or "\"; else
/// 0.
int RootLength(const CString& path);
/// Whether the path is "\", "C:\" or "\\server\share", the latter with or without a backslash at its end.
bool IsRootPath(const CString& path);

bool EndsInSlash(const CString& path);
/// Behind the last backslash; 0 when there is none.
int NameStart(const CString& path);
/// The dot that begins the extension of the last component; the path's length when it has none.
int ExtensionStart(const CString& path);

/// Resolves "." and ".."; ".." stops at the root, and stays in a relative path that has nothing to go up
/// from.
CString ResolveDots(const CString& path);

} // namespace vak::detail
