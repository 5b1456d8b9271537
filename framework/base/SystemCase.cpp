#include "framework/base/SystemText.h"

#include "framework/base/detail/CaseTable.h"

#include <algorithm>
#include <array>

namespace vak::system {

namespace {

/// One entry a unit: folding is too frequent to ask the system each time.
struct CaseTables
{
    std::array<wchar_t, detail::kUnits> upper;
    std::array<wchar_t, detail::kUnits> lower;

    CaseTables() { detail::FillCaseTables(upper.data(), lower.data()); }
};

const CaseTables& Case()
{
    static const CaseTables tables;
    return tables;
}

} // namespace

wchar_t ToUpper(wchar_t unit)
{
    return Case().upper[unit];
}

wchar_t ToLower(wchar_t unit)
{
    return Case().lower[unit];
}

void MakeUpper(wchar_t* text, std::size_t length)
{
    const auto& upper = Case().upper;
    std::transform(text, text + length, text, [&](wchar_t unit) { return upper[unit]; });
}

void MakeLower(wchar_t* text, std::size_t length)
{
    const auto& lower = Case().lower;
    std::transform(text, text + length, text, [&](wchar_t unit) { return lower[unit]; });
}

int CompareOrdinalIgnoreCase(const wchar_t* a, std::size_t aLength, const wchar_t* b, std::size_t bLength)
{
    const auto& upper = Case().upper;
    const std::size_t common = std::min(aLength, bLength);
    for (std::size_t i = 0; i < common; ++i) {
        if (upper[a[i]] != upper[b[i]])
            return upper[a[i]] < upper[b[i]] ? -1 : 1;
    }
    return (aLength > bLength) - (aLength < bLength);
}

} // namespace vak::system
