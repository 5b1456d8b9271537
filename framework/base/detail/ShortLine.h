#pragma once

/// Lines that lie whole in a stream's buffer and are short, which is nearly all of them: found and converted
/// in one pass, sixty-four characters at a time.

#include "framework/base/Platform.h"

#include <cstddef>

namespace vak::detail {

/// Such a line is at most this long; behind it the pass writes less than kShortLineSlack units.
constexpr std::size_t kShortLine = 1024;
constexpr std::size_t kShortLineSlack = 256;

/// The code page by which the platform means UTF-16, little-endian.
constexpr UINT kUtf16Page = 1200;

struct ShortLine
{
    std::size_t used = 0;   ///< bytes, the line feed included; 0: no such line here
    std::size_t length = 0; ///< units, the line feed left out
};

/// Converts the line at the beginning of `count` bytes into `units`, which holds kShortLine and the slack.
/// Finds none in a code page other than UTF-8, 1252, 28591 and kUtf16Page, before an end of text when
/// `isText`, and at a byte-order mark of UTF-16.
ShortLine DecodeShortLine(UINT codePage, bool isText, const char* bytes, std::size_t count, wchar_t* units);

} // namespace vak::detail
