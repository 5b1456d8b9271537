#pragma once

/// Memory of the strings and containers.

#include "framework/base/Platform.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <new>

namespace vak::detail {

/// Throws the platform's memory exception.
[[noreturn]] VAK_API void ThrowMemory();
/// Throws the platform's invalid-argument exception.
[[noreturn]] VAK_API void ThrowInvalidArgument();

/// Ends a failed allocation, and one of more than `maxCount` elements, in the platform's memory exception.
template <class T, std::size_t maxCount = static_cast<std::size_t>(PTRDIFF_MAX) / sizeof(T)>
struct Allocator
{
    using value_type = T;
    template <class Other>
    struct rebind
    {
        using other = Allocator<Other, maxCount>;
    };

    Allocator() = default;
    template <class Other, std::size_t otherMax>
    Allocator(const Allocator<Other, otherMax>&) noexcept
    {
    }

    T* allocate(std::size_t count)
    {
        static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);
        void* block = count > maxCount ? nullptr : ::operator new(count * sizeof(T), std::nothrow);
        if (block == nullptr)
            ThrowMemory();
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t) noexcept { ::operator delete(block); }
    friend bool operator==(const Allocator&, const Allocator&) { return true; }
};

} // namespace vak::detail
