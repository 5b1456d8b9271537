#pragma once

/// The numbers of Format, as ASCII and independent of any locale.

#include <cstdint>
#include <string>

namespace vak::detail {

struct NumberStyle
{
    bool plus = false;
    bool blank = false;
    bool alternate = false;
    /// -1: not given.
    int precision = -1;
};

/// What a number looks like before it is padded: `prefix` (sign, 0x), `zeros` times '0', `digits`.
struct Number
{
    std::string prefix;
    int zeros = 0;
    std::string digits;
    /// False for infinities and what is no number, which are never filled with zeros.
    bool finite = true;
};

Number FormatSigned(std::int64_t value, const NumberStyle& style);
/// `type`: u, o, x or X.
Number FormatUnsigned(std::uint64_t value, char type, const NumberStyle& style);
/// Sixteen upper-case hexadecimal digits.
Number FormatPointer(const void* pointer);
/// `type`: e, f, g or a, upper case for upper-case output. Exponents have two digits or more. The sign of
/// what is no number depends on the compiler's mood and is not shown.
Number FormatReal(double value, char type, const NumberStyle& style);

} // namespace vak::detail
