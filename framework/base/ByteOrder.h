#pragma once

/// Stored integers and floats are little-endian, at any alignment.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace vak::detail {

template <std::size_t size>
using UnsignedOfSize =
    std::conditional_t<size == 1, std::uint8_t,
                       std::conditional_t<size == 2, std::uint16_t,
                                          std::conditional_t<size == 4, std::uint32_t, std::uint64_t>>>;

/// The value stored at `bytes`, which holds at least sizeof(T).
template <class T>
requires std::is_arithmetic_v<T> T LoadLittleEndian(const void* bytes)
{
    static_assert(!std::is_same_v<T, bool>, "a stored byte other than 0 and 1 is no bool");
    using Bits = UnsignedOfSize<sizeof(T)>;
    Bits bits = 0;
    // One load where the machine has the order: the compiler does not find it in the loop.
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&bits, bytes, sizeof bits);
        return std::bit_cast<T>(bits);
    }
    const auto* source = static_cast<const unsigned char*>(bytes);
    for (std::size_t i = 0; i < sizeof(T); ++i)
        bits = Bits(bits | Bits(Bits(source[i]) << (8 * i)));
    return std::bit_cast<T>(bits);
}

/// Stores `value` at `bytes`, which has room for sizeof(T).
template <class T>
requires std::is_arithmetic_v<T>
void StoreLittleEndian(void* bytes, T value)
{
    const auto bits = std::bit_cast<UnsignedOfSize<sizeof(T)>>(value);
    auto* target = static_cast<unsigned char*>(bytes);
    for (std::size_t i = 0; i < sizeof(T); ++i)
        target[i] = static_cast<unsigned char>(bits >> (8 * i));
}

} // namespace vak::detail
