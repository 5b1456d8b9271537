#pragma once

/// Back end of the folding functions of SystemText.h.

#include "framework/base/Platform.h"

#include <cstddef>

namespace vak::detail {

constexpr std::size_t kUnits = 0x10000;

/// Gives the upper and the lower case of every UTF-16 unit, whatever the user's locale; both arrays hold
/// kUnits units. Called once.
void FillCaseTables(wchar_t* upper, wchar_t* lower);

} // namespace vak::detail
