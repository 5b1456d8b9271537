#include "framework/base/detail/TextCodec.h"

#include "framework/base/detail/ByteBlock.h"

namespace vak::detail {

namespace {

constexpr std::size_t kStep = 8;
constexpr wchar_t kReplacement = 0xFFFD;
/// A block that holds a byte above ASCII.
constexpr unsigned char kNotAscii[ByteBlock::kSize] = {0x80};

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

std::size_t DecodeUtf8(const char* bytes, std::size_t count, wchar_t* out)
{
    constexpr std::size_t step = ByteBlock::kSize;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes);
    const auto* const end = p + count;
    const wchar_t* const begin = out;
    while (p != end) {
        const auto left = static_cast<std::size_t>(end - p);
        if (left >= step) {
            // No unit is written for less than a byte, so that a whole block always fits here.
            const ByteBlock block(p);
            block.Widen(out);
            const std::size_t run = block.AsciiRun();
            p += run;
            out += run;
            if (run == step)
                continue;
        } else if (*p < 0x80) {
            // The last block may begin before `p`: where it is all ASCII it writes the same units again.
            const ByteBlock last(count >= step ? end - step : kNotAscii);
            if (last.AsciiRun() == step) {
                last.Widen(out + left - step);
                return static_cast<std::size_t>(out + left - begin);
            }
            do
                *out++ = *p++;
            while (p != end && *p < 0x80);
            continue;
        }
        // The commonest by far, without a loop.
        if (*p >= 0xC2 && *p < 0xE0 && end - p > 1 && IsTrail(p[1])) {
            *out++ = static_cast<wchar_t>((p[0] & 0x1F) << 6 | (p[1] & 0x3F));
            p += 2;
            continue;
        }
        while (p != end && *p >= 0x80)
            DecodeOne(p, end, out);
    }
    return static_cast<std::size_t>(out - begin);
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
        if (whole.HasUpperControl())
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
