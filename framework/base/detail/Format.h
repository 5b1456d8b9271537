#pragma once

/// printf's formatting, written once for both builds and both widths: see CStringT::Format.

#include "framework/base/String.h"

#include <cstdarg>

namespace vak::detail {

/// Ends an argument list also when formatting throws.
class EndArguments
{
public:
    explicit EndArguments(std::va_list& arguments) : m_arguments(arguments) {}
    ~EndArguments() { va_end(m_arguments); }
    EndArguments(const EndArguments&) = delete;
    EndArguments& operator=(const EndArguments&) = delete;

private:
    std::va_list& m_arguments;
};

/// Appends the formatted text to `out`, which the arguments must not point into.
void FormatInto(CStringW& out, const wchar_t* format, std::va_list arguments);
void FormatInto(CStringA& out, const char* format, std::va_list arguments);

} // namespace vak::detail
