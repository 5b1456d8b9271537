#pragma once

/// Integer arithmetic on coordinates that ends at the nearest integer there is, where CRect's own wraps.

#include "framework/base/Geometry.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace vak::detail {

using WideInt = std::int64_t;

inline int Saturated(WideInt value)
{
    constexpr WideInt kLow = std::numeric_limits<int>::min();
    constexpr WideInt kHigh = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, kLow, kHigh));
}

/// Right - left, negative for an inverted rectangle.
inline WideInt WidthOf(const tagRECT& rect)
{
    return WideInt(rect.right) - rect.left;
}

inline WideInt HeightOf(const tagRECT& rect)
{
    return WideInt(rect.bottom) - rect.top;
}

inline CRect Normalized(CRect rect)
{
    rect.NormalizeRect();
    return rect;
}

inline CRect Offset(const CRect& rect, WideInt x, WideInt y)
{
    return {Saturated(rect.left + x), Saturated(rect.top + y), Saturated(rect.right + x),
            Saturated(rect.bottom + y)};
}

/// Larger by `by` on every side.
inline CRect Inflated(const CRect& rect, WideInt by)
{
    return {Saturated(rect.left - by), Saturated(rect.top - by), Saturated(rect.right + by),
            Saturated(rect.bottom + by)};
}

} // namespace vak::detail
