#include "framework/base/detail/Format.h"

#include "framework/base/detail/FormatNumber.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vak::detail {

namespace {

/// Wider fields and longer numbers are mistakes: nobody means to fill the memory.
constexpr int kMostWidth = 1000000;

enum class Size
{
    None,
    Char,
    Short,
    Long,
    Pointer,
    LongLong,
    LongDouble
};

struct Specification
{
    NumberStyle style;
    bool left = false;
    bool zeros = false;
    int width = 0;
    Size size = Size::None;
};

template <class C>
class Formatter
{
public:
    Formatter(CStringT<C>& out, const C* format, std::va_list arguments) : m_out(out), m_at(format)
    {
        va_copy(m_arguments, arguments);
    }
    ~Formatter() { va_end(m_arguments); }
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;

    void Run()
    {
        while (*m_at != 0) {
            const C* const begin = m_at;
            while (*m_at != 0 && *m_at != '%')
                ++m_at;
            m_out.Append(begin, static_cast<int>(m_at - begin));
            if (*m_at == '%') {
                ++m_at;
                Convert();
            }
        }
    }

private:
    void Convert()
    {
        Specification spec;
        ReadFlags(spec);
        spec.width = ReadNumber();
        if (spec.width < 0) {
            spec.left = true;
            spec.width = -spec.width;
        }
        if (*m_at == '.') {
            ++m_at;
            spec.style.precision = std::max(ReadNumber(), -1);
        }
        ReadSize(spec);
        if (*m_at != 0)
            ConvertArgument(spec, *m_at++);
    }

    void ReadFlags(Specification& spec)
    {
        for (;; ++m_at) {
            if (*m_at == '-')
                spec.left = true;
            else if (*m_at == '+')
                spec.style.plus = true;
            else if (*m_at == ' ')
                spec.style.blank = true;
            else if (*m_at == '0')
                spec.zeros = true;
            else if (*m_at == '#')
                spec.style.alternate = true;
            else
                return;
        }
    }

    /// Digits, `*`, or nothing, which is 0.
    int ReadNumber()
    {
        int number = 0;
        if (*m_at == '*') {
            ++m_at;
            number = va_arg(m_arguments, int);
        } else {
            for (; *m_at >= '0' && *m_at <= '9'; ++m_at)
                number = std::min(number * 10 + static_cast<int>(*m_at - '0'), kMostWidth + 1);
        }
        if (number > kMostWidth || number < -kMostWidth)
            ThrowInvalidArgument();
        return number;
    }

    bool Skip(std::string_view text)
    {
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (m_at[i] != static_cast<C>(text[i]))
                return false;
        }
        m_at += text.size();
        return true;
    }

    void ReadSize(Specification& spec)
    {
        static constexpr struct
        {
            std::string_view text;
            Size size;
        } kSizes[] = {{"hh", Size::Char},   {"h", Size::Short},   {"ll", Size::LongLong},
                      {"l", Size::Long},    {"w", Size::Long},    {"I64", Size::LongLong},
                      {"I32", Size::Long},  {"I", Size::Pointer}, {"j", Size::LongLong},
                      {"z", Size::Pointer}, {"t", Size::Pointer}, {"L", Size::LongDouble}};
        for (const auto& known : kSizes) {
            if (Skip(known.text)) {
                spec.size = known.size;
                return;
            }
        }
    }

    void ConvertArgument(const Specification& spec, C type)
    {
        switch (type) {
        case 'd':
        case 'i':
            return PutNumber(spec, FormatSigned(ReadSigned(spec.size), spec.style), spec.style.precision < 0);
        case 'u':
        case 'o':
        case 'x':
        case 'X':
            return PutNumber(spec,
                             FormatUnsigned(ReadUnsigned(spec.size), static_cast<char>(type), spec.style),
                             spec.style.precision < 0);
        case 'p':
            return PutNumber(spec, FormatPointer(va_arg(m_arguments, void*)), false);
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
        case 'a':
        case 'A':
            return PutReal(spec, static_cast<char>(type));
        case 'c':
        case 'C':
            return IsWide(spec.size, type == 'C') ? PutUnit<wchar_t>(spec) : PutUnit<char>(spec);
        case 's':
        case 'S':
            return IsWide(spec.size, type == 'S') ? PutText<wchar_t>(spec) : PutText<char>(spec);
        case 'n':
            // It writes through a pointer: no text needs it, and attacks do.
            ThrowInvalidArgument();
        default:
            // The platform copies what is no conversion, the second percent sign among them.
            m_out.AppendChar(type);
        }
    }

    std::int64_t ReadSigned(Size size)
    {
        switch (size) {
        case Size::Char:
            return static_cast<std::int8_t>(va_arg(m_arguments, int));
        case Size::Short:
            return static_cast<std::int16_t>(va_arg(m_arguments, int));
        case Size::LongLong:
            return va_arg(m_arguments, std::int64_t);
        case Size::Pointer:
            return va_arg(m_arguments, std::intptr_t);
        default:
            return va_arg(m_arguments, int);
        }
    }

    std::uint64_t ReadUnsigned(Size size)
    {
        const auto value = static_cast<std::uint64_t>(ReadSigned(size));
        switch (size) {
        case Size::Char:
            return value & 0xFF;
        case Size::Short:
            return value & 0xFFFF;
        case Size::LongLong:
            return value;
        case Size::Pointer:
            return static_cast<std::uintptr_t>(value);
        default:
            return value & 0xFFFFFFFF;
        }
    }

    static bool IsWide(Size size, bool other)
    {
        if (size == Size::Long || size == Size::LongLong)
            return true;
        return size != Size::Short && (sizeof(C) == sizeof(wchar_t)) != other;
    }

    void PutReal(const Specification& spec, char type)
    {
        const double value = spec.size == Size::LongDouble
                                 ? static_cast<double>(va_arg(m_arguments, long double))
                                 : va_arg(m_arguments, double);
        const Number number = FormatReal(value, type, spec.style);
        PutNumber(spec, number, number.finite);
    }

    template <class Any>
    void PutUnit(const Specification& spec)
    {
        const Any unit = static_cast<Any>(va_arg(m_arguments, int));
        PutPadded(spec, CStringT<C>(&unit, 1));
    }

    template <class Any>
    void PutText(const Specification& spec)
    {
        static constexpr Any kNull[] = {'(', 'n', 'u', 'l', 'l', ')', 0};
        const Any* text = va_arg(m_arguments, const Any*);
        if (text == nullptr)
            text = kNull;
        // With a precision the text need not end in a zero.
        int length = 0;
        while (length != spec.style.precision && text[length] != 0)
            ++length;
        PutPadded(spec, CStringT<C>(text, length));
    }

    void PutPadded(const Specification& spec, const CStringT<C>& text)
    {
        const int padding = spec.width - text.GetLength();
        if (!spec.left)
            Repeat(spec.zeros ? '0' : ' ', padding);
        m_out.Append(text);
        if (spec.left)
            Repeat(' ', padding);
    }

    void PutNumber(const Specification& spec, const Number& number, bool mayFill)
    {
        const int padding =
            spec.width - static_cast<int>(number.prefix.size() + number.digits.size()) - number.zeros;
        const bool fill = spec.zeros && !spec.left && mayFill;
        if (!spec.left && !fill)
            Repeat(' ', padding);
        PutAscii(number.prefix);
        Repeat('0', number.zeros + (fill ? std::max(padding, 0) : 0));
        PutAscii(number.digits);
        if (spec.left)
            Repeat(' ', padding);
    }

    void PutAscii(std::string_view text)
    {
        for (const char ch : text)
            m_out.AppendChar(static_cast<C>(ch));
    }

    void Repeat(char ch, int count)
    {
        for (; count > 0; --count)
            m_out.AppendChar(static_cast<C>(ch));
    }

    CStringT<C>& m_out;
    const C* m_at;
    std::va_list m_arguments;
};

} // namespace

void FormatInto(CStringW& out, const wchar_t* format, std::va_list arguments)
{
    Formatter<wchar_t>(out, format, arguments).Run();
}

void FormatInto(CStringA& out, const char* format, std::va_list arguments)
{
    Formatter<char>(out, format, arguments).Run();
}

} // namespace vak::detail
