#pragma once

/// Floats rounded to 32-bit integers, without undefined results: what no integer holds becomes the nearest
/// one that exists, and NaN becomes 0.

#include <cmath>
#include <limits>

namespace vak::detail {

/// The integer toward zero.
inline int Truncate(float value)
{
    // The largest integer is no float; this is the first float that is too large.
    constexpr float kEnd = 2147483648.0f;
    if (value >= kEnd)
        return std::numeric_limits<int>::max();
    if (value < -kEnd)
        return std::numeric_limits<int>::min();
    return value == value ? static_cast<int>(value) : 0;
}

} // namespace vak::detail

/// The nearest integer; halves go toward minus infinity (2.5 gives 2, -2.5 gives -3).
inline int NearestInt(float value)
{
    const float below = std::floor(value);
    const float above = std::ceil(value);
    return vak::detail::Truncate(above - value >= value - below ? below : above);
}
