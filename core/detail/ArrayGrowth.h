#pragma once

/// The rules that the serialisable arrays share.

#include "framework/base/Exception.h"

#include <algorithm>
#include <climits>
#include <cstdint>

namespace vak::detail {

/// By how much an array of `size` elements grows when nobody has said.
inline int AutomaticGrowth(int size)
{
    return std::clamp(size / 8, 4, 1024);
}

/// The capacity of an array that has no room for `size` elements; `step` may be anything.
inline int GrownCapacity(int capacity, int step, int size)
{
    if (capacity == 0)
        return size;
    const auto grown = std::min<std::int64_t>(std::int64_t{capacity} + step, INT_MAX);
    return static_cast<int>(std::max<std::int64_t>(size, grown));
}

/// The size of an array after `count` elements were inserted before `index`; a size that no array has is a
/// memory exception.
inline int SizeAfterInsertion(int size, int index, int count)
{
    const int first = std::max(size, index);
    if (count > INT_MAX - first)
        AfxThrowMemoryException();
    return first + count;
}

/// Throws unless `count` elements from `index` on are all there.
inline void CheckRange(int size, int index, int count)
{
    if (index < 0 || count < 0 || index > size || count > size - index)
        AfxThrowInvalidArgException();
}

} // namespace vak::detail
