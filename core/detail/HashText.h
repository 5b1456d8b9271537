#pragma once

#include "framework/base/Platform.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace vak::detail {

static_assert(std::endian::native == std::endian::little, "characters are taken from words, lowest first");

/// The first `count` characters at `text` (0 to 3) as one word, the first in the low 16 bits.
inline std::uint64_t LoadCharacters(const wchar_t* text, std::size_t count)
{
    std::uint64_t word = 0;
    if (count & 1)
        word = static_cast<std::uint16_t>(text[count - 1]);
    if (count & 2) {
        std::uint32_t pair;
        std::memcpy(&pair, text, sizeof pair);
        word = word << 32 | pair;
    }
    return word;
}

inline std::uint64_t LoadFourCharacters(const wchar_t* text)
{
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    return word;
}

/// Sums four characters of a word: the character in lane r goes r times through x -> x ^ x << 5.
inline std::uint32_t FoldLanes(std::uint64_t word)
{
    const auto odd = static_cast<std::uint32_t>(word >> 16 & 0xFFFF);
    const auto even = static_cast<std::uint32_t>(word & 0xFFFF);
    const auto highOdd = static_cast<std::uint32_t>(word >> 48);
    const auto highEven = static_cast<std::uint32_t>(word >> 32 & 0xFFFF);
    const std::uint32_t low = even ^ odd ^ odd << 5;
    const std::uint32_t high = highEven ^ highOdd ^ highOdd << 5;
    return low ^ high ^ high << 10;
}

/// The hash of wide text: from the last character c to the first, h = h ^ c ^ h << 5.
///
/// The step T(h) = h ^ h << 5 is linear over exclusive or, T applied twice is h ^ h << 10, and eight times
/// shifts by 40 bits, which is nothing in a word of 32. So the character at index i adds T^(i mod 8) of
/// itself: eight characters at a time can be summed first and folded once.
inline unsigned int HashText(const wchar_t* text, std::size_t length)
{
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    for (; length >= 8; length -= 8, text += 8) {
        first ^= LoadFourCharacters(text);
        second ^= LoadFourCharacters(text + 4);
    }
    if (length >= 4) {
        first ^= LoadFourCharacters(text);
        second ^= LoadCharacters(text + 4, length - 4);
    } else {
        first ^= LoadCharacters(text, length);
    }
    const std::uint32_t high = FoldLanes(second);
    return FoldLanes(first) ^ high ^ high << 20;
}

} // namespace vak::detail
