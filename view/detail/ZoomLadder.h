#pragma once

/// The zoom factors that stepping goes through and snapping ends at.

#include "framework/base/Platform.h"

#include <array>

namespace vak::detail {

inline constexpr std::array<float, 19> kZoomLadder = {
    1.0f / 32, 1.0f / 16, 1.0f / 8, 1.0f / 6, 1.0f / 5, 1.0f / 4, 1.0f / 3, 1.0f / 2, 2.0f / 3, 1.0f,
    2.0f,      3.0f,      4.0f,     5.0f,     6.0f,     8.0f,     16.0f,    24.0f,    32.0f};
inline constexpr float kSmallestZoom = kZoomLadder.front();
inline constexpr float kLargestZoom = kZoomLadder.back();

/// The first i with kZoomLadder[i] <= zoom <= kZoomLadder[i + 1], so that a zoom on a rung lies in the
/// interval below it; -1 for a zoom outside the ladder, or NaN.
VAK_INTERNAL_API int ZoomInterval(float zoom);

/// The nearer rung, the larger one of two equally near; a zoom outside the ladder as it is.
VAK_INTERNAL_API float SnappedZoom(float zoom);

/// The rung that stepping in (up) or out (down) leads to; at the ends of the ladder the zoom itself. From
/// outside the ladder a step up leads to the second rung and a step down nowhere.
VAK_INTERNAL_API float SteppedZoom(float zoom, bool in);

} // namespace vak::detail
