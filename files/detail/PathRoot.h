#pragma once

#include "framework/base/Platform.h"
#include "framework/base/String.h"

namespace vak::detail {

/// Returns the number of UTF-16 units of the path's root with the separator that ends it, if there is one:
/// "C:\", "\\server\share\", the same behind "\\?\", and "\" alone. "C:" is a root too; 0 when there is none.
/// Only looks at the text.
VAK_INTERNAL_API int PathRootLength(const CString& path);

} // namespace vak::detail
