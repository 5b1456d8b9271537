#include "framework/base/detail/FormatNumber.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace vak::detail {

namespace {

void MakeUpper(std::string& text)
{
    for (char& ch : text) {
        if (ch >= 'a' && ch <= 'z')
            ch = static_cast<char>(ch - 'a' + 'A');
    }
}

std::string Digits(std::uint64_t value, int base)
{
    std::array<char, 24> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, base).ptr;
    return std::string(buffer.data(), end);
}

void Complete(Number& number, std::uint64_t value, const NumberStyle& style)
{
    if (value == 0 && style.precision == 0)
        number.digits.clear();
    number.zeros = std::max(style.precision - static_cast<int>(number.digits.size()), 0);
}

std::string Sign(bool negative, const NumberStyle& style)
{
    return negative ? "-" : style.plus ? "+" : style.blank ? " " : "";
}

std::string Text(double value, std::chars_format format, int precision)
{
    // The longest number has 309 digits before the point.
    std::string text(static_cast<std::size_t>(precision) + 330, '\0');
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, format, precision).ptr;
    text.resize(static_cast<std::size_t>(end - text.data()));
    return text;
}

/// The position where a point or trailing zeros would go.
std::size_t MantissaEnd(const std::string& text, char exponent)
{
    return std::min(text.find(exponent), text.size());
}

/// %g: `precision` significant digits in the shorter of both notations; trailing zeros only when asked for.
std::string General(double value, int precision, bool keepZeros)
{
    const int significant = std::max(precision, 1);
    std::string text = Text(value, std::chars_format::scientific, significant - 1);
    int exponent = 0;
    const char* digits = text.data() + text.find('e') + 1;
    std::from_chars(*digits == '+' ? digits + 1 : digits, text.data() + text.size(), exponent);
    if (exponent >= -4 && exponent < significant)
        text = Text(value, std::chars_format::fixed, significant - 1 - exponent);
    const std::size_t end = MantissaEnd(text, 'e');
    if (keepZeros || text.find('.') == std::string::npos)
        return text;
    const std::size_t last = text.find_last_not_of('0', end - 1);
    const std::size_t kept = text[last] == '.' ? last : last + 1;
    return text.erase(kept, end - kept);
}

std::string FiniteText(double value, char type, const NumberStyle& style)
{
    const int precision = style.precision < 0 ? 6 : style.precision;
    std::string text;
    switch (type) {
    case 'e':
        text = Text(value, std::chars_format::scientific, precision);
        break;
    case 'f':
        text = Text(value, std::chars_format::fixed, precision);
        break;
    case 'g':
        text = General(value, precision, style.alternate);
        break;
    default:
        text = Text(value, std::chars_format::hex, style.precision < 0 ? 13 : precision);
        break;
    }
    if (style.alternate && text.find('.') == std::string::npos)
        text.insert(MantissaEnd(text, type == 'a' ? 'p' : 'e'), 1, '.');
    return text;
}

} // namespace

Number FormatSigned(std::int64_t value, const NumberStyle& style)
{
    const auto bits = static_cast<std::uint64_t>(value);
    const std::uint64_t magnitude = value < 0 ? 0 - bits : bits;
    Number number;
    number.prefix = Sign(value < 0, style);
    number.digits = Digits(magnitude, 10);
    Complete(number, magnitude, style);
    return number;
}

Number FormatUnsigned(std::uint64_t value, char type, const NumberStyle& style)
{
    Number number;
    number.digits = Digits(value, type == 'u' ? 10 : type == 'o' ? 8 : 16);
    if (type == 'X')
        MakeUpper(number.digits);
    Complete(number, value, style);
    if (style.alternate && type == 'o' && number.zeros == 0 && (value != 0 || number.digits.empty()))
        number.zeros = 1;
    if (style.alternate && (type == 'x' || type == 'X') && value != 0)
        number.prefix = {'0', type};
    return number;
}

Number FormatPointer(const void* pointer)
{
    NumberStyle style;
    style.precision = 16;
    return FormatUnsigned(reinterpret_cast<std::uintptr_t>(pointer), 'X', style);
}

Number FormatReal(double value, char type, const NumberStyle& style)
{
    const bool upper = type < 'a';
    const char kind = upper ? static_cast<char>(type - 'A' + 'a') : type;
    Number number;
    number.finite = std::isfinite(value);
    number.prefix = Sign(std::signbit(value) && !std::isnan(value), style);
    const double magnitude = std::fabs(value);
    if (number.finite) {
        number.digits = FiniteText(magnitude, kind, style);
        if (kind == 'a')
            number.prefix += "0x";
    } else {
        number.digits = std::isnan(value) ? "nan" : "inf";
    }
    if (upper) {
        MakeUpper(number.prefix);
        MakeUpper(number.digits);
    }
    return number;
}

} // namespace vak::detail
