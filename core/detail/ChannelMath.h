#pragma once

/// The arithmetic between floats and colour channels, defined for every value.

#include "framework/base/Platform.h"

#include <cmath>
#include <limits>

namespace vak::detail {

/// The low byte of `value` truncated toward zero, in two's complement; 0 for infinities and NaN.
inline BYTE LowByteOfTruncated(double value)
{
    constexpr double kIntLimit = 2147483648.0;
    if (value > -kIntLimit && value < kIntLimit)
        return static_cast<BYTE>(static_cast<int>(value));
    if (!std::isfinite(value))
        return 0;
    return static_cast<BYTE>(static_cast<int>(std::fmod(std::trunc(value), 256.0)));
}

/// `channel` / `divisor` as IEEE 754 has it. A sanitizer takes a float division by zero for a fault, so that
/// one is not left to the operator.
template <class T>
T DividedChannel(T channel, T divisor)
{
    if (divisor != 0)
        return channel / divisor;
    if (channel == 0)
        return std::numeric_limits<T>::quiet_NaN();
    return std::copysign(std::numeric_limits<T>::infinity(), divisor);
}

} // namespace vak::detail
