#include "framework/base/detail/ShortLine.h"

#include "framework/base/detail/ByteBlock.h"
#include "framework/base/detail/TextCodec.h"

#include <bit>
#include <cstdint>

namespace vak::detail {

namespace {

constexpr std::size_t kWindow = kBlocks * ByteBlock::kSize;
constexpr char kEndOfText = 0x1A;

static_assert(kWindow == kUtf8Window && kShortLineSlack >= kUtf8Window + kUtf8Slack);

/// Line feeds of a window and, in text mode, ends of text.
template <bool isText>
inline std::uint64_t Ends(const char* window)
{
    return MaskOfBlocks(window, ByteBlock::kSize, [](const char* at) {
        return ByteBlock(at).Either('\n', isText ? kEndOfText : '\n');
    });
}

template <bool isText>
ShortLine Latin(const char* bytes, std::size_t count, bool is1252, wchar_t* units)
{
    for (std::size_t at = 0; at < kShortLine && at + kWindow <= count; at += kWindow) {
        const char* const window = bytes + at;
        const std::uint64_t ends = Ends<isText>(window);
        std::uint64_t controls = MaskOfBlocks(
            window, ByteBlock::kSize, [](const char* block) { return ByteBlock(block).UpperControls(); });
        for (std::size_t block = 0; block < kWindow; block += ByteBlock::kSize)
            ByteBlock(window + block).Widen(units + at + block);
        for (; is1252 && controls != 0; controls &= controls - 1) {
            const auto next = static_cast<std::size_t>(std::countr_zero(controls));
            units[at + next] = kUpper1252[static_cast<unsigned char>(window[next]) - 0x80];
        }
        if (ends == 0)
            continue;
        const auto end = static_cast<std::size_t>(std::countr_zero(ends));
        return window[end] == '\n' ? ShortLine{at + end + 1, at + end} : ShortLine{};
    }
    return {};
}

template <bool isText>
ShortLine Utf8(const char* bytes, std::size_t count, wchar_t* units)
{
    const auto* const begin = reinterpret_cast<const unsigned char*>(bytes);
    wchar_t* out = units;
    for (std::size_t at = 0; at < kShortLine && at + kUtf8Window + kUtf8Slack <= count;) {
        const char* const window = bytes + at;
        const std::uint64_t ends = Ends<isText>(window);
        const std::uint64_t notAscii = MaskOfBlocks(
            window, ByteBlock::kSize, [](const char* block) { return ByteBlock(block).NotAscii(); });
        const auto limit = static_cast<std::size_t>(std::countr_zero(ends));
        at = static_cast<std::size_t>(DecodeUtf8Window(begin + at, begin + count, limit, notAscii, out) -
                                      begin);
        if (ends == 0)
            continue;
        return bytes[at] == '\n' ? ShortLine{at + 1, static_cast<std::size_t>(out - units)} : ShortLine{};
    }
    return {};
}

ShortLine Utf16(const char* bytes, std::size_t count, wchar_t* units)
{
    if (count >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE')
        return {};
    for (std::size_t at = 0; at < kShortLine && 2 * (at + kWindow) <= count; at += kWindow) {
        const char* const window = bytes + 2 * at;
        const std::uint64_t ends = MaskOfBlocks(window, 2 * ByteBlock::kSize, [](const char* two) {
            return ByteBlock(two).Units(ByteBlock(two + ByteBlock::kSize), L'\n');
        });
        std::memcpy(units + at, window, 2 * kWindow);
        if (ends == 0)
            continue;
        const std::size_t length = at + static_cast<std::size_t>(std::countr_zero(ends));
        return {2 * (length + 1), length};
    }
    return {};
}

} // namespace

ShortLine DecodeShortLine(UINT codePage, bool isText, const char* bytes, std::size_t count, wchar_t* units)
{
    switch (codePage) {
    case CP_UTF8:
        return isText ? Utf8<true>(bytes, count, units) : Utf8<false>(bytes, count, units);
    case 1252:
    case 28591:
        return isText ? Latin<true>(bytes, count, codePage == 1252, units)
                      : Latin<false>(bytes, count, codePage == 1252, units);
    case kUtf16Page:
        return Utf16(bytes, count, units);
    default:
        return {};
    }
}

} // namespace vak::detail
