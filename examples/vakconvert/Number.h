#pragma once

#include "examples/sdk/Utf8.h"

#include <charconv>
#include <system_error>

/// Reads the whole text as a finite number, with a point whatever the locale.
inline bool ParseNumber(const CString& text, double& value)
{
    const std::string narrow = ToUtf8(text);
    const char* const begin = narrow.data();
    const char* const end = begin + narrow.size();
    const auto [stop, error] = std::from_chars(begin, end, value);
    return error == std::errc() && stop == end && value - value == 0;
}
