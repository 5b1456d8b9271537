#pragma once

/// The positions of the common controls that have one. Windows only.

#include "framework/base/Platform.h"

#include <utility>

namespace vak::detail {

int SliderPosition(HWND slider);
/// The control moves `position` into its range.
void SetSliderPosition(HWND slider, int position);
void SetSliderRange(HWND slider, int lowest, int highest);

/// Returns false, with the last good position, when the text of the buddy is none.
bool SpinPosition(HWND spin, int& position);
void SetSpinPosition(HWND spin, int position);
void SetSpinRange(HWND spin, int lowest, int highest);
/// The lower end first, whichever way the control counts.
std::pair<int, int> SpinRange(HWND spin);
/// The control that shows the position, or null.
HWND SpinBuddy(HWND spin);

} // namespace vak::detail
