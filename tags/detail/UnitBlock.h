#pragma once

/// Sixteen UTF-16 units at a time, without a branch a unit.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vak::detail {

static_assert(std::endian::native == std::endian::little, "the first unit is the lowest of a word");

constexpr std::size_t kBlockUnits = 16;
constexpr std::uint64_t kEachUnit = 0x0001000100010001;
constexpr std::uint64_t kHighBits = kEachUnit << 15;

/// Sixteen units, four a word.
using UnitBlock = std::array<std::uint64_t, 4>;

inline UnitBlock LoadBlock(const wchar_t* units)
{
    // Word by word: a block that is copied whole goes through memory on its way to the registers.
    const auto load = [units](std::size_t at) {
        std::uint64_t word;
        std::memcpy(&word, units + at, sizeof word);
        return word;
    };
    return {load(0), load(4), load(8), load(12)};
}

/// Returns the index of the first `wanted` of a block, kBlockUnits when there is none.
inline std::size_t FindInBlock(const UnitBlock& block, wchar_t wanted)
{
    // High bits tell units that are equal. Behind the first of a word others may be marked as well: the first
    // one alone counts.
    const auto mark = [wanted](std::uint64_t word) {
        word ^= kEachUnit * wanted;
        return (word - kEachUnit) & ~word & kHighBits;
    };
    const UnitBlock marks = {mark(block[0]), mark(block[1]), mark(block[2]), mark(block[3])};
    if ((marks[0] | marks[1] | marks[2] | marks[3]) == 0)
        return kBlockUnits;
    // Moves the bits 15, 31, 47 and 63 side by side.
    const auto gather = [](std::uint64_t word) {
        return (word >> 15) * (1ull << 48 | 1ull << 33 | 1ull << 18 | 1ull << 3) >> 48;
    };
    return static_cast<std::size_t>(std::countr_zero(gather(marks[0]) | gather(marks[1]) << 4 |
                                                     gather(marks[2]) << 8 | gather(marks[3]) << 12));
}

} // namespace vak::detail
