#pragma once

/// Paths as text: nothing here asks the disk. Positions and lengths count UTF-16 units.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

namespace vak::detail {

/// A path without drive, share or leading backslash.
bool IsRelativePath(const CString& path);
/// Whether the path begins with "\\server\share", or that behind "\\?\UNC\".
bool IsNetworkPath(const CString& path);
/// The length of the path's root with the separator that ends it, if there is one: "C:\", "\\server\share\",
/// the same behind "\\?\", and "\" alone. "C:" is a root too; 0 when there is none.
int RootLength(const CString& path);
/// Whether the path is nothing but a root that names a folder: "\", "C:\", "\\server\share" with or without a
/// backslash at its end, but not "C:".
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
