#include "files/detail/LineDecoder.h"

#include "framework/base/SystemText.h"

#include <bit>
#include <cstdint>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vak::detail {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// Widens the plain characters that `bytes` begins with, sixteen at a time, and returns how many; those are
/// ASCII and, with `latin`, also 0xA0 to 0xFF.
std::size_t WidenPlain(const char* bytes, std::size_t length, wchar_t* units, [[maybe_unused]] bool latin)
{
    std::size_t at = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    for (; at + 16 <= length; at += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + at));
        // As signed values 0x80 to 0x9F are those below 0xA0, and every byte above ASCII is below 0.
        const __m128i bound = latin ? _mm_set1_epi8(char(0xA0)) : zero;
        if (_mm_movemask_epi8(_mm_cmplt_epi8(block, bound)) != 0)
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(units + at), _mm_unpacklo_epi8(block, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(units + at + 8), _mm_unpackhi_epi8(block, zero));
    }
#endif
    return at;
}

bool IsContinuation(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

/// Reads one character of two to four bytes, and returns its length; 0 when it is not well-formed.
std::size_t DecodeSequence(const unsigned char* bytes, std::size_t left, char32_t& character)
{
    const unsigned char lead = bytes[0];
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (left < length)
        return 0;
    char32_t value = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!IsContinuation(bytes[i]))
            return 0;
        value = value << 6 | (bytes[i] & 0x3Fu);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (value < kSmallest[length] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
        return 0;
    character = value;
    return length;
}

} // namespace

std::size_t DecodeWellFormedUtf8(const char* bytes, std::size_t length, wchar_t* units)
{
    const auto* from = reinterpret_cast<const unsigned char*>(bytes);
    wchar_t* to = units;
    for (std::size_t at = 0; at < length;) {
        if (from[at] < 0x80) {
            const std::size_t plain = WidenPlain(bytes + at, length - at, to, false);
            at += plain;
            to += plain;
            for (; at < length && from[at] < 0x80; ++at)
                *to++ = from[at];
            continue;
        }
        char32_t character = 0;
        const std::size_t used = DecodeSequence(from + at, length - at, character);
        if (used == 0)
            return kNone;
        at += used;
        if (character < 0x10000) {
            *to++ = static_cast<wchar_t>(character);
            continue;
        }
        *to++ = static_cast<wchar_t>(0xD7C0 + (character >> 10));
        *to++ = static_cast<wchar_t>(0xDC00 | (character & 0x3FF));
    }
    return static_cast<std::size_t>(to - units);
}

const char* FindLineFeed(const char* units, std::size_t count)
{
    std::size_t at = 0;
#if defined(__SSE2__)
    const __m128i wanted = _mm_set1_epi16(L'\n');
    for (; at + 8 <= count; at += 8) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + 2 * at));
        const int found = _mm_movemask_epi8(_mm_cmpeq_epi16(block, wanted));
        if (found != 0)
            return units + 2 * at + std::countr_zero(static_cast<unsigned int>(found));
    }
#endif
    for (; at < count; ++at)
        if (units[2 * at] == '\n' && units[2 * at + 1] == 0)
            return units + 2 * at;
    return nullptr;
}

LineDecoder::LineDecoder(UINT codePage) : m_codePage(codePage)
{
    if (codePage == CP_UTF8)
        m_kind = Kind::Utf8;
    else
        FillTable();
}

void LineDecoder::FillTable()
{
    // Above are the stateful and the four-byte ones, in which a byte alone tells nothing.
    constexpr UINT kFirstStateful = 50000;
    if (m_codePage >= kFirstStateful)
        return;
    char bytes[256];
    for (int byte = 0; byte < 256; ++byte) {
        bytes[byte] = static_cast<char>(byte);
        if (system::IncompleteTail(m_codePage, &bytes[byte], 1) != 0)
            return;
    }
    CString units;
    if (!system::ToWide(m_codePage, bytes, sizeof bytes, units) || units.GetLength() != 256)
        return;
    m_isLatin = true;
    for (int byte = 0; byte < 256; ++byte) {
        if (byte < 0x80 && units[byte] != byte)
            return;
        if (byte >= 0x80)
            m_high[byte - 0x80] = units[byte];
        if (byte >= 0xA0 && units[byte] != byte)
            m_isLatin = false;
    }
    m_kind = Kind::SingleByte;
}

std::size_t LineDecoder::DecodeSingleBytes(const char* bytes, std::size_t length, wchar_t* units) const
{
    for (std::size_t at = 0; at < length;) {
        at += WidenPlain(bytes + at, length - at, units + at, m_isLatin);
        const std::size_t end = length - at < 16 ? length : at + 16;
        for (; at < end; ++at) {
            const auto byte = static_cast<unsigned char>(bytes[at]);
            units[at] = byte < 0x80 ? byte : m_high[byte - 0x80];
        }
    }
    return length;
}

bool LineDecoder::Decode(const char* bytes, std::size_t length, CString& text)
{
    std::size_t count = kNone;
    wchar_t units[kPiece];
    if (length <= kPiece && m_kind == Kind::SingleByte)
        count = DecodeSingleBytes(bytes, length, units);
    else if (length <= kPiece && m_kind == Kind::Utf8)
        count = DecodeWellFormedUtf8(bytes, length, units);
    if (count != kNone) {
        text.SetString(units, static_cast<int>(count));
        return true;
    }
    CString converted;
    if (!system::ToWide(m_codePage, bytes, length, converted))
        return false;
    text = converted;
    return true;
}

} // namespace vak::detail
