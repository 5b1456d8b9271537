#pragma once

/// The matcher behind fileMatchWilcards, on text that need not end in a zero.

#include "framework/base/Platform.h"

#include <cstddef>
#include <span>

namespace vak::detail {

using Units = std::span<const wchar_t>;

/// Works in name length times pattern length at worst, and without allocating. Any thread.
bool MatchWildcards(Units name, Units pattern, bool caseSensitive);

} // namespace vak::detail
