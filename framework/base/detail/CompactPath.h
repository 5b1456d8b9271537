#pragma once

#include "framework/base/Platform.h"
#include "framework/base/String.h"

namespace vak::detail {

/// Shortens a path of more than `width` UTF-16 units to that many: its beginning, "..." and its last
/// component; without room for these, the beginning of the last component between "..." and "...".
CString CompactPathText(const CString& path, int width);

} // namespace vak::detail
