#pragma once

/// Several bytes of text looked at in one step: sixteen where the processor has registers for them, else the
/// eight of a word.

#include "framework/base/Platform.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vak::detail {

static_assert(std::endian::native == std::endian::little, "the first byte in memory is the lowest of a word");

#if defined(__SSE2__)

class ByteBlock
{
public:
    static constexpr std::size_t kSize = 16;

    /// Takes the kSize bytes at `bytes`, which need not be aligned.
    explicit ByteBlock(const void* bytes) : m_bytes(_mm_loadu_si128(static_cast<const __m128i*>(bytes))) {}

    /// How many bytes stand before the first that is not ASCII.
    std::size_t AsciiRun() const { return First(_mm_movemask_epi8(m_bytes)); }
    /// Whether one of the bytes lies in 0x80 to 0x9F: as signed values those are the lowest.
    bool HasUpperControl() const
    {
        return _mm_movemask_epi8(_mm_cmplt_epi8(m_bytes, _mm_set1_epi8(static_cast<char>(0xA0)))) != 0;
    }
    /// Writes kSize units, one a byte.
    void Widen(wchar_t* out) const
    {
        const __m128i zero = _mm_setzero_si128();
        auto* const to = reinterpret_cast<__m128i*>(out);
        _mm_storeu_si128(to, _mm_unpacklo_epi8(m_bytes, zero));
        _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(m_bytes, zero));
    }
    /// The index of the first byte that is one of the two, or kSize.
    std::size_t FindEither(char one, char other) const
    {
        const __m128i equal = _mm_or_si128(_mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(one)),
                                           _mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(other)));
        return First(_mm_movemask_epi8(equal));
    }
    /// The index of the first 16-bit unit of this block and the next that is `wanted`, or kSize.
    std::size_t FindUnit(const ByteBlock& next, wchar_t wanted) const
    {
        const __m128i unit = _mm_set1_epi16(static_cast<short>(wanted));
        return First(_mm_movemask_epi8(
            _mm_packs_epi16(_mm_cmpeq_epi16(m_bytes, unit), _mm_cmpeq_epi16(next.m_bytes, unit))));
    }

private:
    static std::size_t First(int mask)
    {
        return static_cast<std::size_t>(std::countr_zero(static_cast<unsigned int>(mask) | 1u << kSize));
    }

    __m128i m_bytes;
};

#else

class ByteBlock
{
public:
    static constexpr std::size_t kSize = 8;

    explicit ByteBlock(const void* bytes) { std::memcpy(&m_bytes, bytes, sizeof m_bytes); }

    std::size_t AsciiRun() const { return static_cast<std::size_t>(std::countr_zero(m_bytes & kTops)) / 8; }
    bool HasUpperControl() const { return (m_bytes & ~(m_bytes << 1) & ~(m_bytes << 2) & kTops) != 0; }
    void Widen(wchar_t* out) const
    {
        for (std::size_t i = 0; i < kSize; ++i)
            out[i] = static_cast<wchar_t>(m_bytes >> (8 * i) & 0xFF);
    }
    std::size_t FindEither(char one, char other) const
    {
        constexpr std::uint64_t ones = 0x0101010101010101;
        const auto byte = [](char c) { return ones * static_cast<unsigned char>(c); };
        return static_cast<std::size_t>(
                   std::countr_zero(Zeros(m_bytes ^ byte(one), ones) | Zeros(m_bytes ^ byte(other), ones))) /
               8;
    }
    std::size_t FindUnit(const ByteBlock& next, wchar_t wanted) const
    {
        constexpr std::uint64_t ones = 0x0001000100010001;
        const std::uint64_t units = ones * static_cast<std::uint16_t>(wanted);
        const std::uint64_t here = Zeros(m_bytes ^ units, ones);
        const std::uint64_t there = Zeros(next.m_bytes ^ units, ones);
        return static_cast<std::size_t>(here != 0 ? std::countr_zero(here) : 64 + std::countr_zero(there)) /
               16;
    }

private:
    static constexpr std::uint64_t kTops = 0x8080808080808080u;

    /// Top bits of the elements that are zero, the lowest one exactly: `ones` has each element's lowest bit.
    static std::uint64_t Zeros(std::uint64_t elements, std::uint64_t ones)
    {
        const std::uint64_t tops = ones == 0x0101010101010101 ? kTops : ones << 15;
        return (elements - ones) & ~elements & tops;
    }

    std::uint64_t m_bytes;
};

#endif

} // namespace vak::detail
