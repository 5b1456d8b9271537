#include "tags/detail/TagText.h"

#include "framework/base/SystemText.h"
#include "tags/detail/UnitBlock.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace vak::detail {

namespace {

constexpr wchar_t kAscii = 0x80;

/// ASCII in lower case.
constexpr std::array<wchar_t, kAscii> kAsciiLower = [] {
    std::array<wchar_t, kAscii> lower{};
    for (wchar_t unit = 0; unit < kAscii; ++unit)
        lower[unit] = unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + 0x20) : unit;
    return lower;
}();

wchar_t Lower(wchar_t unit)
{
    return unit < kAscii ? kAsciiLower[unit] : system::ToLower(unit);
}

} // namespace

const wchar_t* FindTagStart(const wchar_t* first, const wchar_t* end)
{
    for (; end - first >= static_cast<std::ptrdiff_t>(kBlockUnits); first += kBlockUnits) {
        const std::size_t at = FindInBlock(LoadBlock(first), L'<');
        if (at != kBlockUnits)
            return first + at;
    }
    return std::find(first, end, L'<');
}

const wchar_t* FindTagBracket(const wchar_t* first, const wchar_t* end)
{
    return std::find_if(first, end, [](wchar_t unit) { return unit == L'<' || unit == L'>'; });
}

std::size_t ReadTagName(const wchar_t* tag, std::size_t length, std::size_t longest, CString& name)
{
    const auto room = static_cast<int>(std::min(length, longest) + 1);
    wchar_t* const out = name.GetBufferSetLength(room);
    std::size_t count = 0;
    std::size_t at = 0;
    for (; at < length && tag[at] != L'('; ++at) {
        if (tag[at] == kTagBlank)
            continue;
        if (count == longest)
            return kTagTooLong;
        out[count++] = Lower(tag[at]);
    }
    if (at < length) {
        if (count == longest)
            return kTagTooLong;
        out[count++] = L'>';
    }
    name.ReleaseBuffer(static_cast<int>(count));
    return at;
}

void ReadTagParameters(const wchar_t* text, std::size_t length, CString& parameters)
{
    wchar_t* const out = parameters.GetBufferSetLength(static_cast<int>(length));
    std::size_t count = 0;
    for (std::size_t at = 0; at < length && text[at] != L'>'; ++at) {
        if (text[at] != kTagBlank)
            out[count++] = Lower(text[at]);
    }
    parameters.ReleaseBuffer(static_cast<int>(count));
}

void SplitTag(const CString& tag, CString& name, CString& parameters)
{
    const auto length = static_cast<std::size_t>(tag.GetLength());
    const std::size_t nameEnd = ReadTagName(tag, length, length + 1, name);
    ReadTagParameters(tag.GetString() + nameEnd, length - nameEnd, parameters);
}

} // namespace vak::detail
