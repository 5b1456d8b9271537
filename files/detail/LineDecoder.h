#pragma once

#include "framework/base/Platform.h"
#include "framework/base/String.h"

#include <cstddef>

namespace vak::detail {

/// Turns pieces of 8-bit text into wide strings.
///
/// The usual text (single bytes, well-formed UTF-8) is converted here, sixteen bytes at a time where it is
/// plain; the rest goes to the system, and both give the same result.
class LineDecoder
{
public:
    explicit LineDecoder(UINT codePage);
    UINT CodePage() const { return m_codePage; }

    /// Sets `text` to what `length` whole characters mean. False, and `text` as it was, for an unknown code
    /// page.
    bool Decode(const char* bytes, std::size_t length, CString& text);

private:
    enum class Kind
    {
        SingleByte,
        Utf8,
        Other
    };
    /// Longest piece that is converted here.
    static constexpr std::size_t kPiece = 4096;

    void FillTable();
    std::size_t DecodeSingleBytes(const char* bytes, std::size_t length, wchar_t* units) const;

    UINT m_codePage;
    Kind m_kind = Kind::Other;
    bool m_isLatin = false; ///< bytes from 0xA0 on are their own character
    wchar_t m_high[128] = {};
};

/// Converts well-formed UTF-8 and returns the number of units, at most `length`; npos at the first byte that
/// is out of place.
std::size_t DecodeWellFormedUtf8(const char* bytes, std::size_t length, wchar_t* units);

/// The first LF in `count` units that need not be aligned, or null.
const char* FindLineFeed(const char* units, std::size_t count);

} // namespace vak::detail
