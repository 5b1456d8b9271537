#pragma once

/// Character traits of the strings.
///
/// The wide functions of the C library, which std::char_traits<wchar_t> calls, assume four-byte characters
/// natively, so nothing here calls one.

#include "framework/base/Platform.h"

#include <compare>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <ios>
#include <type_traits>

namespace vak::detail {

/// Compares units as unsigned values, as the platform's run-time does in both widths.
template <class C>
struct CharTraits
{
    using char_type = C;
    using int_type = int;
    using off_type = std::streamoff;
    using pos_type = std::streampos;
    using state_type = std::mbstate_t;
    using comparison_category = std::strong_ordering;

    static constexpr void assign(C& to, const C& from) noexcept { to = from; }
    static constexpr bool eq(C a, C b) noexcept { return a == b; }
    static constexpr bool lt(C a, C b) noexcept { return Unsigned(a) < Unsigned(b); }

    static int compare(const C* a, const C* b, std::size_t count) noexcept
    {
        if constexpr (sizeof(C) == 1)
            return count == 0 ? 0 : std::memcmp(a, b, count);
        for (; count != 0; ++a, ++b, --count) {
            if (*a != *b)
                return lt(*a, *b) ? -1 : 1;
        }
        return 0;
    }
    static std::size_t length(const C* text) noexcept
    {
        if constexpr (sizeof(C) == 1)
            return std::strlen(text);
        std::size_t count = 0;
        while (text[count] != C())
            ++count;
        return count;
    }
    static const C* find(const C* text, std::size_t count, const C& wanted) noexcept
    {
        if constexpr (sizeof(C) == 1)
            return count == 0 ? nullptr : static_cast<const C*>(std::memchr(text, wanted, count));
        for (; count != 0; ++text, --count) {
            if (*text == wanted)
                return text;
        }
        return nullptr;
    }
    static C* move(C* to, const C* from, std::size_t count) noexcept
    {
        return count == 0 ? to : static_cast<C*>(std::memmove(to, from, count * sizeof(C)));
    }
    static C* copy(C* to, const C* from, std::size_t count) noexcept
    {
        return count == 0 ? to : static_cast<C*>(std::memcpy(to, from, count * sizeof(C)));
    }
    static C* assign(C* to, std::size_t count, C value) noexcept
    {
        // Buffers are handed out zeroed: that is the frequent case.
        if (value == C())
            return count == 0 ? to : static_cast<C*>(std::memset(to, 0, count * sizeof(C)));
        for (std::size_t i = 0; i < count; ++i)
            to[i] = value;
        return to;
    }
    static constexpr C to_char_type(int value) noexcept { return static_cast<C>(value); }
    static constexpr int to_int_type(C value) noexcept { return static_cast<int>(Unsigned(value)); }
    static constexpr bool eq_int_type(int a, int b) noexcept { return a == b; }
    static constexpr int eof() noexcept { return -1; }
    static constexpr int not_eof(int value) noexcept { return value == eof() ? 0 : value; }

    static constexpr std::make_unsigned_t<C> Unsigned(C value) noexcept
    {
        return static_cast<std::make_unsigned_t<C>>(value);
    }
};

} // namespace vak::detail
