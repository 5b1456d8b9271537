#include "tags/detail/TagNumber.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

namespace vak::detail {

namespace {

constexpr bool IsBlank(wchar_t unit)
{
    return unit == L' ' || (unit >= L'\t' && unit <= L'\r');
}

constexpr bool IsDigit(wchar_t unit)
{
    return unit >= L'0' && unit <= L'9';
}

/// Moves `at` behind white space and a sign; true for a minus.
bool TakeSign(const wchar_t*& at)
{
    while (IsBlank(*at))
        ++at;
    const bool negative = *at == L'-';
    if (negative || *at == L'+')
        ++at;
    return negative;
}

/// The number at `at`, which `most` limits.
bool ReadMagnitude(const wchar_t* at, std::uint64_t most, std::uint64_t& magnitude)
{
    if (!IsDigit(*at))
        return false;
    std::uint64_t value = 0;
    for (; IsDigit(*at); ++at) {
        const auto digit = static_cast<unsigned int>(*at - L'0');
        if (digit > most || value > (most - digit) / 10)
            return false;
        value = value * 10 + digit;
    }
    magnitude = value;
    return true;
}

template <class Integer>
bool ReadInteger(const CString& text, Integer& number)
{
    const wchar_t* at = text.GetString();
    const bool negative = TakeSign(at);
    auto most = static_cast<std::uint64_t>(std::numeric_limits<Integer>::max());
    if (std::is_signed_v<Integer> && negative)
        ++most;
    std::uint64_t magnitude;
    if (!ReadMagnitude(at, most, magnitude))
        return false;
    number = static_cast<Integer>(negative ? 0 - magnitude : magnitude);
    return true;
}

/// Appends the digits at `at` and moves it behind them; false when there are none.
bool TakeDigits(const wchar_t*& at, CStringA& digits)
{
    const int before = digits.GetLength();
    for (; IsDigit(*at); ++at)
        digits.AppendChar(static_cast<char>(*at));
    return digits.GetLength() > before;
}

/// Appends the exponent at `at`; false when it is incomplete.
bool TakeExponent(const wchar_t* at, CStringA& text)
{
    if (*at != L'e' && *at != L'E')
        return true;
    ++at;
    text.AppendChar('e');
    if (*at == L'-')
        text.AppendChar('-');
    if (*at == L'-' || *at == L'+')
        ++at;
    return TakeDigits(at, text);
}

} // namespace

bool ReadNumber(const CString& text, std::int32_t& number)
{
    return ReadInteger(text, number);
}

bool ReadNumber(const CString& text, std::int64_t& number)
{
    return ReadInteger(text, number);
}

bool ReadNumber(const CString& text, std::uint64_t& number)
{
    return ReadInteger(text, number);
}

bool ReadNumber(const CString& text, float& number)
{
    const wchar_t* at = text.GetString();
    CStringA digits = TakeSign(at) ? "-" : "";
    bool any = TakeDigits(at, digits);
    if (*at == L'.') {
        digits.AppendChar('.');
        any = TakeDigits(++at, digits) || any;
    }
    if (!any || !TakeExponent(at, digits))
        return false;
    float value = 0;
    const char* const first = digits.GetString();
    const auto result = std::from_chars(first, first + digits.GetLength(), value);
    if (result.ec != std::errc())
        return false;
    number = value;
    return true;
}

std::uint64_t Truncate64(float number)
{
    if (std::isnan(number))
        return 0;
    if (number < 0)
        return number > -0x1p63f ? static_cast<std::uint64_t>(static_cast<std::int64_t>(number)) : 1ull << 63;
    return number < 0x1p64f ? static_cast<std::uint64_t>(number) : UINT64_MAX;
}

std::uint32_t Truncate32(float number)
{
    if (std::isnan(number))
        return 0;
    if (number < 0)
        return number > -0x1p31f ? static_cast<std::uint32_t>(static_cast<std::int32_t>(number)) : 1u << 31;
    return number < 0x1p32f ? static_cast<std::uint32_t>(number) : UINT32_MAX;
}

} // namespace vak::detail
