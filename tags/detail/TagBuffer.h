#pragma once

/// The buffers of a tag value, which are made when they are first needed.

#include "framework/base/detail/Allocator.h"

#include <memory>
#include <new>

namespace vak::detail {

/// The buffer of `place`, made if need be.
template <class Buffer>
Buffer& Made(std::unique_ptr<Buffer>& place)
{
    if (!place)
        place.reset(new (std::nothrow) Buffer);
    if (!place)
        ThrowMemory();
    return *place;
}

/// What `place` holds, or an empty one that all values share.
template <class Buffer>
const Buffer& Held(const std::unique_ptr<Buffer>& place)
{
    static const Buffer empty;
    return place ? *place : empty;
}

} // namespace vak::detail
