#pragma once

#include "framework/base/Platform.h"

#include <cstddef>

namespace vak::detail {

/// True when the bytes of a shortcut file keep to its published format: every length, offset and terminator
/// lies within the structure that it belongs to, up to the block that ends the file. What the texts and
/// identifiers say is not looked at.
///
/// Shells take those lengths and offsets at their word, so nothing else is handed to one.
VAK_INTERNAL_API bool IsShellLink(const BYTE* bytes, std::size_t size);

} // namespace vak::detail
