#include "framework/base/detail/TextCodec.h"

#include "framework/base/detail/ByteBlock.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace vak::detail {

namespace {

constexpr std::size_t kStep = 8;
constexpr wchar_t kReplacement = 0xFFFD;

bool IsTrail(unsigned char byte, unsigned char low = 0x80, unsigned char high = 0xBF)
{
    return byte >= low && byte <= high;
}

/// Decodes the character at `p`, which is not ASCII, and moves `p` and `out` on.
void DecodeOne(const unsigned char*& p, const unsigned char* end, wchar_t*& out)
{
    const unsigned char lead = *p++;
    const int trails = lead < 0xC2 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : lead < 0xF5 ? 3 : 0;
    unsigned int code = trails == 1 ? lead & 0x1Fu : trails == 2 ? lead & 0x0Fu : lead & 0x07u;
    // The second byte's range keeps out long spellings, surrogates and what lies above U+10FFFF.
    unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    int left = trails;
    for (; left != 0 && p != end && IsTrail(*p, low, high); --left) {
        code = code << 6 | (*p++ & 0x3Fu);
        low = 0x80;
        high = 0xBF;
    }
    if (trails == 0 || left != 0) {
        *out++ = kReplacement;
        return;
    }
    if (trails == 3) {
        *out++ = static_cast<wchar_t>(0xD7C0 + (code >> 10));
        code = 0xDC00 | (code & 0x3FF);
    }
    *out++ = static_cast<wchar_t>(code);
}

/// Writes 32 or 64 units of the bytes at `p`, at least `count` of them.
void WidenRun(const unsigned char* p, std::size_t count, wchar_t* out)
{
    constexpr std::size_t step = ByteBlock::kSize;
    ByteBlock(p).Widen(out);
    ByteBlock(p + step).Widen(out + step);
    if (count <= 2 * step)
        return;
    ByteBlock(p + 2 * step).Widen(out + 2 * step);
    ByteBlock(p + 3 * step).Widen(out + 3 * step);
}

std::uint64_t NotAscii(const unsigned char* window)
{
    return MaskOfBlocks(reinterpret_cast<const char*>(window), ByteBlock::kSize,
                        [](const char* at) { return ByteBlock(at).NotAscii(); });
}

/// Copies less than kUtf8Window + kUtf8Slack bytes, in blocks: short copies by the compiler are slow ones.
void CopyRest(const unsigned char* from, std::size_t count, unsigned char* to)
{
    constexpr std::size_t step = ByteBlock::kSize;
    if (count < step) {
        for (std::size_t i = 0; i < count; ++i)
            to[i] = from[i];
        return;
    }
    for (std::size_t at = 0; at + step <= count; at += step)
        std::memcpy(to + at, from + at, step);
    std::memcpy(to + count - step, from + count - step, step);
}

bool IsPair(const wchar_t* text, const wchar_t* end)
{
    return (text[0] & 0xFC00) == 0xD800 && end - text > 1 && (text[1] & 0xFC00) == 0xDC00;
}

bool AllAscii(const wchar_t* text)
{
    unsigned int seen = 0;
    for (std::size_t i = 0; i < kStep; ++i)
        seen |= text[i];
    return seen < 0x80;
}

} // namespace

const wchar_t kUpper1252[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

const unsigned char* DecodeUtf8Window(const unsigned char* p, const unsigned char* end, std::size_t limit,
                                      std::uint64_t mask, wchar_t*& out)
{
    mask &= limit == 0 ? 0 : ~std::uint64_t(0) >> (kUtf8Window - limit);
    std::size_t at = 0;
    while (mask != 0) {
        const auto next = static_cast<std::size_t>(std::countr_zero(mask));
        WidenRun(p + at, next - at, out);
        out += next - at;
        const unsigned char* character = p + next;
        // The commonest by far.
        const bool isPair =
            (character + 1 < end) & (character[0] - 0xC2u < 0xE0u - 0xC2u) & ((character[1] & 0xC0) == 0x80);
        if (isPair) {
            *out++ = static_cast<wchar_t>((character[0] & 0x1F) << 6 | (character[1] & 0x3F));
            at = next + 2;
            mask &= mask - 1;
            mask &= mask - 1;
            continue;
        }
        DecodeOne(character, end, out);
        at = static_cast<std::size_t>(character - p);
        mask &= at < kUtf8Window ? ~std::uint64_t(0) << at : 0;
    }
    if (at >= limit)
        return p + at;
    WidenRun(p + at, limit - at, out);
    out += limit - at;
    return p + limit;
}

std::size_t DecodeUtf8(const char* bytes, std::size_t count, wchar_t* out)
{
    const auto* p = reinterpret_cast<const unsigned char*>(bytes);
    const auto* const end = p + count;
    const wchar_t* const begin = out;
    // No unit is written for less than a byte, so that there is room before the end of the one where there is
    // in the other.
    while (static_cast<std::size_t>(end - p) >= kUtf8Window + kUtf8Slack)
        p = DecodeUtf8Window(p, end, kUtf8Window, NotAscii(p), out);
    if (p == end)
        return static_cast<std::size_t>(out - begin);
    unsigned char rest[kUtf8Window + 2 * kUtf8Slack];
    wchar_t units[kUtf8Window + 2 * kUtf8Slack];
    const auto left = static_cast<std::size_t>(end - p);
    CopyRest(p, left, rest);
    std::memset(rest + left, 0, kUtf8Slack);
    wchar_t* to = units;
    for (const unsigned char* at = rest; at != rest + left;)
        at = DecodeUtf8Window(at, rest + left, std::min<std::size_t>(rest + left - at, kUtf8Window),
                              NotAscii(at), to);
    std::memcpy(out, units, static_cast<std::size_t>(to - units) * sizeof(wchar_t));
    return static_cast<std::size_t>(out - begin + (to - units));
}

std::size_t Utf8Length(const wchar_t* text, std::size_t count)
{
    std::size_t length = 0;
    for (const wchar_t* const end = text + count; text != end; ++text) {
        if (end - text >= static_cast<std::ptrdiff_t>(kStep) && AllAscii(text)) {
            length += kStep;
            text += kStep - 1;
        } else if (IsPair(text, end)) {
            length += 4;
            ++text;
        } else {
            length += *text < 0x80 ? 1u : *text < 0x800 ? 2u : 3u;
        }
    }
    return length;
}

void EncodeUtf8(const wchar_t* text, std::size_t count, char* out)
{
    const auto put = [&out](unsigned int byte) { *out++ = static_cast<char>(byte); };
    for (const wchar_t* const end = text + count; text != end; ++text) {
        if (end - text >= static_cast<std::ptrdiff_t>(kStep) && AllAscii(text)) {
            for (std::size_t i = 0; i < kStep; ++i)
                out[i] = static_cast<char>(text[i]);
            out += kStep;
            text += kStep - 1;
            continue;
        }
        unsigned int code = *text;
        if (code < 0x80) {
            put(code);
            continue;
        }
        if (code < 0x800) {
            put(0xC0 | code >> 6);
            put(0x80 | (code & 0x3F));
            continue;
        }
        if (IsPair(text, end)) {
            code = 0x10000 + ((code & 0x3FF) << 10 | (*++text & 0x3FFu));
            put(0xF0 | code >> 18);
            put(0x80 | (code >> 12 & 0x3F));
        } else {
            code = (code & 0xF800) == 0xD800 ? kReplacement : code;
            put(0xE0 | code >> 12);
        }
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

void DecodeLatin1(const char* bytes, std::size_t count, wchar_t* out)
{
    constexpr std::size_t step = ByteBlock::kSize;
    std::size_t at = 0;
    for (; at + step <= count; at += step)
        ByteBlock(bytes + at).Widen(out + at);
    if (at < count && count >= step) {
        // The last block begins before the end of the one before and writes the same units again.
        ByteBlock(bytes + count - step).Widen(out + count - step);
        return;
    }
    for (; at < count; ++at)
        out[at] = static_cast<unsigned char>(bytes[at]);
}

void Decode1252(const char* bytes, std::size_t count, wchar_t* out)
{
    constexpr std::size_t step = ByteBlock::kSize;
    const auto some = [bytes, out](std::size_t at, std::size_t end) {
        for (; at < end; ++at) {
            const auto byte = static_cast<unsigned char>(bytes[at]);
            out[at] = byte >= 0x80 && byte < 0xA0 ? kUpper1252[byte - 0x80] : static_cast<wchar_t>(byte);
        }
    };
    const auto block = [&](std::size_t at) {
        const ByteBlock whole(bytes + at);
        if (whole.UpperControls() != 0)
            some(at, at + step);
        else
            whole.Widen(out + at);
    };
    std::size_t at = 0;
    for (; at + step <= count; at += step)
        block(at);
    if (at < count && count >= step)
        block(count - step);
    else
        some(at, count);
}

} // namespace vak::detail
