#pragma once

/// Sixteen bytes of text looked at in one step, where the processor has registers for them.

#include "framework/base/Platform.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vak::detail {

class ByteBlock
{
public:
    static constexpr std::size_t kSize = 16;

#if defined(__SSE2__)
    /// Takes the kSize bytes at `bytes`, which need not be aligned.
    explicit ByteBlock(const void* bytes) : m_bytes(_mm_loadu_si128(static_cast<const __m128i*>(bytes))) {}

    /// Masks have a bit for each byte, the first one's lowest: those that are not ASCII, those from 0x80 to
    /// 0x9F (as signed values the lowest), those that are one of the two.
    std::uint64_t NotAscii() const
    {
        return Mask(m_bytes);
    }
    std::uint64_t UpperControls() const
    {
        return Mask(_mm_cmplt_epi8(m_bytes, _mm_set1_epi8(static_cast<char>(0xA0))));
    }
    std::uint64_t Either(char one, char other) const
    {
        return Mask(_mm_or_si128(_mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(one)),
                                 _mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(other))));
    }
    /// The 16-bit units of this block and the next that are `wanted`, a bit for each unit.
    std::uint64_t Units(const ByteBlock& next, wchar_t wanted) const
    {
        const __m128i unit = _mm_set1_epi16(static_cast<short>(wanted));
        return Mask(_mm_packs_epi16(_mm_cmpeq_epi16(m_bytes, unit), _mm_cmpeq_epi16(next.m_bytes, unit)));
    }
    /// Writes kSize units, one a byte.
    void Widen(wchar_t* out) const
    {
        const __m128i zero = _mm_setzero_si128();
        auto* const to = reinterpret_cast<__m128i*>(out);
        _mm_storeu_si128(to, _mm_unpacklo_epi8(m_bytes, zero));
        _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(m_bytes, zero));
    }

private:
    static std::uint64_t Mask(__m128i tops)
    {
        return static_cast<unsigned int>(_mm_movemask_epi8(tops));
    }

    __m128i m_bytes;
#else
    explicit ByteBlock(const void* bytes)
    {
        std::memcpy(m_bytes, bytes, kSize);
    }

    std::uint64_t NotAscii() const
    {
        return Mask(kSize, [this](std::size_t i) { return m_bytes[i] >= 0x80; });
    }
    std::uint64_t UpperControls() const
    {
        return Mask(kSize, [this](std::size_t i) { return m_bytes[i] >= 0x80 && m_bytes[i] < 0xA0; });
    }
    std::uint64_t Either(char one, char other) const
    {
        return Mask(kSize, [=, this](std::size_t i) {
            return m_bytes[i] == static_cast<unsigned char>(one) ||
                   m_bytes[i] == static_cast<unsigned char>(other);
        });
    }
    std::uint64_t Units(const ByteBlock& next, wchar_t wanted) const
    {
        const auto isWanted = [wanted](const ByteBlock& block) {
            return Mask(kSize / 2, [&](std::size_t i) {
                return (block.m_bytes[2 * i] | block.m_bytes[2 * i + 1] << 8) == wanted;
            });
        };
        return isWanted(*this) | isWanted(next) << kSize / 2;
    }
    void Widen(wchar_t* out) const
    {
        for (std::size_t i = 0; i < kSize; ++i)
            out[i] = m_bytes[i];
    }

private:
    template <class Test>
    static std::uint64_t Mask(std::size_t count, Test test)
    {
        std::uint64_t mask = 0;
        for (std::size_t i = 0; i < count; ++i)
            mask |= std::uint64_t(test(i)) << i;
        return mask;
    }

    unsigned char m_bytes[kSize];
#endif
};

/// Four blocks, for masks of 64 bits: `mask` gives that of one block, which begins at the pointer.
constexpr std::size_t kBlocks = 4;
template <class MaskOf>
inline std::uint64_t MaskOfBlocks(const char* bytes, std::size_t distance, MaskOf mask)
{
    return mask(bytes) | mask(bytes + distance) << 16 | mask(bytes + 2 * distance) << 32 |
           mask(bytes + 3 * distance) << 48;
}

} // namespace vak::detail
