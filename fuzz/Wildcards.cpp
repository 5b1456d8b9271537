#include "files/Wildcards.h"
#include "framework/base/SystemText.h"
#include "fuzz/support/Target.h"

#include <cstdlib>
#include <vector>

/// The first byte: bit 0 for comparing exactly. Then UTF-16 units, little-endian: the pattern, a zero, the
/// name. The matcher must agree with the plain definition of a match.

namespace {

using Text = std::vector<wchar_t>;

wchar_t Latin1Upper(wchar_t unit)
{
    const wchar_t upper = vak::system::ToUpper(unit);
    return unit < 256 && upper < 256 ? upper : unit;
}

bool SameUnit(wchar_t unit, wchar_t wanted, bool caseSensitive, bool behindStar)
{
    if (unit == wanted || wanted == L'?')
        return true;
    if (caseSensitive)
        return false;
    return behindStar ? vak::system::ToUpper(unit) == vak::system::ToUpper(wanted)
                      : Latin1Upper(unit) == Latin1Upper(wanted);
}

/// reach[n]: the pattern so far matches the first n units of the name. No cleverness: one row for each unit.
bool Defined(const Text& name, const Text& pattern, bool caseSensitive)
{
    std::vector<char> reach(name.size() + 1, 0);
    reach[0] = 1;
    bool behindStar = false;
    for (const wchar_t wanted : pattern) {
        std::vector<char> next(reach.size(), 0);
        behindStar = behindStar || wanted == L'*';
        for (std::size_t n = 0; n < reach.size(); ++n) {
            if (wanted == L'*')
                next[n] = reach[n] || (n > 0 && next[n - 1]);
            else if (n > 0 && reach[n - 1])
                next[n] = SameUnit(name[n - 1], wanted, caseSensitive, behindStar);
        }
        reach.swap(next);
    }
    return reach.back() != 0;
}

CString AsString(const Text& text)
{
    return CString(text.data(), static_cast<int>(text.size()));
}

void Run(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return;
    const bool caseSensitive = (data[0] & 1) != 0;
    Text pattern;
    Text name;
    Text* part = &pattern;
    for (std::size_t i = 1; i + 1 < size; i += 2) {
        const auto unit = static_cast<wchar_t>(data[i] | data[i + 1] << 8);
        if (unit == 0 && part == &pattern)
            part = &name;
        else
            part->push_back(unit);
    }
    const bool matches = fileMatchWilcards(AsString(name), AsString(pattern), caseSensitive ? 1 : 0) != 0;
    if (matches != Defined(name, pattern, caseSensitive))
        std::abort();
}

const vak::fuzz::Target target("Wildcards", Run);

} // namespace
