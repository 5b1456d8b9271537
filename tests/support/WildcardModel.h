#pragma once

#include "framework/base/String.h"
#include "framework/base/SystemText.h"

#include <vector>

namespace vak::test {

inline wchar_t UpperWithinLatin1(wchar_t unit)
{
    const wchar_t upper = system::ToUpper(unit);
    return unit < 256 && upper < 256 ? upper : unit;
}

/// Whether a name matches a pattern, worked out row by row from the definition: reach[n] says that the
/// pattern so far matches the first n units.
inline bool MatchesByDefinition(const CString& name, const CString& pattern, bool caseSensitive)
{
    std::vector<char> reach(static_cast<std::size_t>(name.GetLength()) + 1, 0);
    reach[0] = 1;
    bool behindStar = false;
    for (int p = 0; p < pattern.GetLength(); ++p) {
        const wchar_t wanted = pattern[p];
        behindStar = behindStar || wanted == L'*';
        const auto same = [&](wchar_t unit) {
            if (unit == wanted || wanted == L'?' || caseSensitive)
                return unit == wanted || wanted == L'?';
            return behindStar ? system::ToUpper(unit) == system::ToUpper(wanted)
                              : UpperWithinLatin1(unit) == UpperWithinLatin1(wanted);
        };
        std::vector<char> next(reach.size(), 0);
        for (std::size_t n = 0; n < reach.size(); ++n) {
            if (wanted == L'*')
                next[n] = reach[n] || (n > 0 && next[n - 1]);
            else if (n > 0 && reach[n - 1])
                next[n] = same(name[static_cast<int>(n - 1)]);
        }
        reach.swap(next);
    }
    return reach.back() != 0;
}

} // namespace vak::test
