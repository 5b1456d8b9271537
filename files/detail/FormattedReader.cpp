#include "files/detail/FormattedReader.h"

#include <algorithm>
#include <climits>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <type_traits>

namespace vak::detail {

namespace {

constexpr bool IsBlank(int unit)
{
    return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

/// The value of a digit or letter, 99 for anything else.
constexpr int DigitValue(int unit)
{
    if (unit >= '0' && unit <= '9')
        return unit - '0';
    const int lower = unit | 0x20;
    return lower >= 'a' && lower <= 'z' && unit < 0x80 ? lower - 'a' + 10 : 99;
}

/// The bytes that a number is stored in.
enum class Size
{
    Char,
    Short,
    Int,
    Long,
    LongLong,
    Pointer
};

/// One conversion of the format.
struct Field
{
    wchar_t kind = 0;
    bool suppressed = false;
    bool narrow = false; ///< `h` on text
    bool wide = false;   ///< `l` or `w` on text
    int width = 0;       ///< 0: none given
    Size size = Size::Int;
    const wchar_t* set = nullptr; ///< of a `[`: behind the bracket and the negation
    const wchar_t* setEnd = nullptr;
    bool negated = false;
};

/// Reads the conversion behind a '%'; null when the format ends within it.
const wchar_t* ParseField(const wchar_t* at, Field& field)
{
    if (*at == '*') {
        field.suppressed = true;
        ++at;
    }
    for (; *at >= '0' && *at <= '9'; ++at)
        if (field.width < INT_MAX / 16)
            field.width = field.width * 10 + (*at - '0');
    const bool isI = *at == 'I';
    if (at[0] == 'h' && at[1] == 'h') {
        field.size = Size::Char;
        at += 2;
    } else if (at[0] == 'h') {
        field.size = Size::Short;
        ++at;
    } else if ((at[0] == 'l' && at[1] == 'l') || (isI && at[1] == '6' && at[2] == '4')) {
        field.size = Size::LongLong;
        at += isI ? 3 : 2;
    } else if (isI && at[1] == '3' && at[2] == '2') {
        at += 3;
    } else if (isI || *at == 'z' || *at == 't') {
        field.size = Size::Pointer;
        ++at;
    } else if (*at == 'l' || *at == 'w' || *at == 'L') {
        field.size = Size::Long;
        ++at;
    } else if (*at == 'j') {
        field.size = Size::LongLong;
        ++at;
    }
    field.narrow = field.size == Size::Short;
    field.wide = field.size == Size::Long;
    field.kind = *at;
    if (*at == 0)
        return nullptr;
    ++at;
    if (field.kind != '[')
        return at;
    field.negated = *at == '^';
    at += field.negated ? 1 : 0;
    field.set = at;
    // A bracket that comes first stands for itself.
    at += *at == ']' ? 1 : 0;
    while (*at != 0 && *at != ']')
        ++at;
    field.setEnd = at;
    return *at == 0 ? nullptr : at + 1;
}

bool IsInSet(const Field& field, int unit)
{
    bool found = false;
    for (const wchar_t* at = field.set; at < field.setEnd && !found; ++at) {
        if (at + 2 < field.setEnd && at[1] == '-') {
            const bool rising = at[0] <= at[2];
            found = unit >= (rising ? at[0] : at[2]) && unit <= (rising ? at[2] : at[0]);
            at += 2;
        } else {
            found = unit == *at;
        }
    }
    return found != field.negated;
}

enum class Outcome
{
    Done,
    Mismatch,
    End
};

class Reader
{
public:
    Reader(ScanSource& source, std::va_list arguments) : m_source(source) { va_copy(m_arguments, arguments); }
    ~Reader() { va_end(m_arguments); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    int Run(const wchar_t* format);

private:
    Outcome Literal(const wchar_t*& format);
    Outcome Percent();
    Outcome Convert(const Field& field);
    Outcome Integer(const Field& field);
    Outcome Float(const Field& field);
    Outcome Text(const Field& field);
    template <class Char>
    Outcome TextInto(const Field& field);
    template <class Char>
    bool Put(Char* buffer, unsigned int size, unsigned int& used, const wchar_t (&units)[2], int count);
    bool Accepts(const Field& field, int unit) const;
    void StoreInteger(const Field& field, std::uint64_t value);
    void SkipBlanks();
    wchar_t Take();
    bool Digits(std::string& text, int& left);

    ScanSource& m_source;
    std::va_list m_arguments;
    int m_stored = 0;
};

wchar_t Reader::Take()
{
    wchar_t units[2];
    m_source.Take(units);
    return units[0];
}

void Reader::SkipBlanks()
{
    while (IsBlank(m_source.Peek()))
        Take();
}

int Reader::Run(const wchar_t* format)
{
    bool converted = false;
    for (const wchar_t* at = format; *at != 0;) {
        Outcome outcome = Outcome::Done;
        if (IsBlank(*at)) {
            SkipBlanks();
            ++at;
        } else if (*at != '%') {
            outcome = Literal(at);
        } else {
            Field field;
            at = ParseField(at + 1, field);
            if (at == nullptr)
                return m_stored;
            outcome = Convert(field);
            converted = converted || (outcome != Outcome::End && field.kind != '%' && field.kind != 'n');
        }
        if (outcome == Outcome::End)
            return converted ? m_stored : EOF;
        if (outcome == Outcome::Mismatch)
            return m_stored;
    }
    return m_stored;
}

/// Takes the character that stands at `format`, which moves behind it.
Outcome Reader::Literal(const wchar_t*& format)
{
    if (m_source.Peek() == ScanSource::kEnd)
        return Outcome::End;
    const int count = m_source.Units();
    wchar_t units[2];
    m_source.Look(units);
    if (units[0] != format[0] || (count == 2 && units[1] != format[1]))
        return Outcome::Mismatch;
    Take();
    format += count;
    return Outcome::Done;
}

Outcome Reader::Percent()
{
    const wchar_t* sign = L"%";
    return Literal(sign);
}

Outcome Reader::Convert(const Field& field)
{
    switch (field.kind) {
    case 'd':
    case 'i':
    case 'u':
    case 'o':
    case 'x':
    case 'X':
    case 'p':
        SkipBlanks();
        return Integer(field);
    case 'a':
    case 'A':
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
        SkipBlanks();
        return Float(field);
    case 's':
    case 'S':
        SkipBlanks();
        return Text(field);
    case 'c':
    case 'C':
    case '[':
        return Text(field);
    case 'n':
        if (!field.suppressed)
            *va_arg(m_arguments, int*) = m_source.Taken();
        return Outcome::Done;
    case '%':
        SkipBlanks();
        return Percent();
    default:
        return Outcome::Mismatch;
    }
}

Outcome Reader::Integer(const Field& field)
{
    if (m_source.Peek() == ScanSource::kEnd)
        return Outcome::End;
    int left = field.width == 0 ? INT_MAX : field.width;
    int base = field.kind == 'd' || field.kind == 'u' ? 10 : field.kind == 'o' ? 8 : 16;
    base = field.kind == 'i' ? 0 : base;
    bool negative = false;
    if (m_source.Peek() == '-' || m_source.Peek() == '+') {
        negative = Take() == '-';
        --left;
    }
    bool any = false;
    if (left > 0 && m_source.Peek() == '0') {
        Take();
        --left;
        any = true;
        const bool hexadecimal = left > 0 && (m_source.Peek() | 0x20) == 'x' && (base == 0 || base == 16);
        if (hexadecimal) {
            Take();
            --left;
        }
        base = hexadecimal ? 16 : base == 0 ? 8 : base;
    }
    base = base == 0 ? 10 : base;
    // What does not fit 64 bits stays at the largest value, or the lowest.
    std::uint64_t value = 0;
    for (; left > 0 && DigitValue(m_source.Peek()) < base; --left) {
        const auto digit = static_cast<unsigned int>(DigitValue(Take()));
        any = true;
        value = value > (UINT64_MAX - digit) / static_cast<unsigned int>(base)
                    ? UINT64_MAX
                    : value * static_cast<unsigned int>(base) + digit;
    }
    if (!any)
        return Outcome::Mismatch;
    if (field.kind == 'd' || field.kind == 'i')
        value = std::min(value, std::uint64_t{INT64_MAX} + (negative ? 1 : 0));
    StoreInteger(field, negative ? 0 - value : value);
    return Outcome::Done;
}

void Reader::StoreInteger(const Field& field, std::uint64_t value)
{
    if (field.suppressed)
        return;
    ++m_stored;
    const Size size = field.kind == 'p' ? Size::Pointer : field.size;
    switch (size) {
    case Size::Char:
        *va_arg(m_arguments, signed char*) = static_cast<signed char>(value);
        break;
    case Size::Short:
        *va_arg(m_arguments, short*) = static_cast<short>(value);
        break;
    case Size::Int:
        *va_arg(m_arguments, int*) = static_cast<int>(value);
        break;
    case Size::Long:
        *va_arg(m_arguments, LONG*) = static_cast<LONG>(value);
        break;
    case Size::LongLong:
        *va_arg(m_arguments, std::int64_t*) = static_cast<std::int64_t>(value);
        break;
    case Size::Pointer:
        *va_arg(m_arguments, std::intptr_t*) = static_cast<std::intptr_t>(value);
        break;
    }
}

/// Takes decimal digits into `text`; false when there was none.
bool Reader::Digits(std::string& text, int& left)
{
    bool any = false;
    for (; left > 0 && DigitValue(m_source.Peek()) < 10; --left) {
        text += static_cast<char>(Take());
        any = true;
    }
    return any;
}

Outcome Reader::Float(const Field& field)
{
    if (m_source.Peek() == ScanSource::kEnd)
        return Outcome::End;
    int left = field.width == 0 ? INT_MAX : field.width;
    std::string text;
    if (m_source.Peek() == '-' || m_source.Peek() == '+') {
        text += static_cast<char>(Take());
        --left;
    }
    const char point = *std::localeconv()->decimal_point;
    bool any = Digits(text, left);
    if (left > 0 && m_source.Peek() == point) {
        text += static_cast<char>(Take());
        --left;
        any = Digits(text, left) || any;
    }
    if (!any)
        return Outcome::Mismatch;
    if (left > 0 && (m_source.Peek() | 0x20) == 'e') {
        text += static_cast<char>(Take());
        --left;
        if (left > 0 && (m_source.Peek() == '-' || m_source.Peek() == '+')) {
            text += static_cast<char>(Take());
            --left;
        }
        if (!Digits(text, left))
            return Outcome::Mismatch;
    }
    if (field.suppressed)
        return Outcome::Done;
    ++m_stored;
    // The platform's long double is its double.
    if (field.size == Size::Long || field.size == Size::LongLong)
        *va_arg(m_arguments, double*) = std::strtod(text.c_str(), nullptr);
    else
        *va_arg(m_arguments, float*) = std::strtof(text.c_str(), nullptr);
    return Outcome::Done;
}

Outcome Reader::Text(const Field& field)
{
    if (m_source.Peek() == ScanSource::kEnd)
        return Outcome::End;
    const bool other = (field.kind == 'S' || field.kind == 'C') && !field.wide;
    return field.narrow || other ? TextInto<char>(field) : TextInto<wchar_t>(field);
}

bool Reader::Accepts(const Field& field, int unit) const
{
    if (unit == ScanSource::kEnd)
        return false;
    if (field.kind == '[')
        return IsInSet(field, unit);
    return field.kind == 'c' || field.kind == 'C' || !IsBlank(unit);
}

template <class Char>
bool Reader::Put(Char* buffer, unsigned int size, unsigned int& used, const wchar_t (&units)[2], int count)
{
    if constexpr (std::is_same_v<Char, wchar_t>) {
        if (size - used < static_cast<unsigned int>(count))
            return false;
        for (int i = 0; i < count; ++i)
            buffer[used++] = units[i];
    } else {
        const CStringA bytes(CString(units, count));
        if (size - used < static_cast<unsigned int>(bytes.GetLength()))
            return false;
        for (int i = 0; i < bytes.GetLength(); ++i)
            buffer[used++] = bytes[i];
    }
    return true;
}

template <class Char>
Outcome Reader::TextInto(const Field& field)
{
    const bool counted = field.kind == 'c' || field.kind == 'C';
    Char* buffer = field.suppressed ? nullptr : va_arg(m_arguments, Char*);
    const unsigned int given = field.suppressed ? 0 : va_arg(m_arguments, unsigned int);
    // A text keeps one place for the zero behind it.
    const bool noRoom = !field.suppressed && !counted && given == 0;
    const unsigned int size = given - (counted || given == 0 ? 0 : 1);
    const int width = field.width > 0 ? field.width : counted ? 1 : INT_MAX;
    int read = 0;
    unsigned int used = 0;
    bool fits = !noRoom;
    while (fits && read < width && Accepts(field, m_source.Peek()) && m_source.Units() <= width - read) {
        wchar_t units[2];
        const int count = m_source.Units();
        m_source.Take(units);
        read += count;
        fits = field.suppressed || Put(buffer, size, used, units, count);
    }
    if (!field.suppressed && !counted && given > 0)
        buffer[fits ? used : 0] = 0;
    if (!fits || read == 0 || (counted && read < width))
        return counted && fits && m_source.Peek() == ScanSource::kEnd ? Outcome::End : Outcome::Mismatch;
    m_stored += field.suppressed ? 0 : 1;
    return Outcome::Done;
}

} // namespace

int ReadFormatted(ScanSource& source, LPCWSTR format, std::va_list arguments)
{
    return Reader(source, arguments).Run(format);
}

} // namespace vak::detail
