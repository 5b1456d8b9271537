#pragma once

/// Lets a failing test show the text of strings and the sides of rectangles instead of bytes. Include it in
/// every test that compares them. Never hand GoogleTest a wide pointer: natively its printer reads four bytes
/// a character.

#include "framework/base/Geometry.h"
#include "framework/base/String.h"
#include "framework/base/SystemText.h"

#include <ostream>

inline void PrintTo(const CStringA& text, std::ostream* out)
{
    *out << '"';
    out->write(text.GetString(), text.GetLength());
    *out << '"';
}

/// As UTF-8; what would not be seen as \x.
inline void PrintTo(const CString& text, std::ostream* out)
{
    *out << "L\"";
    for (int i = 0; i < text.GetLength(); ++i) {
        const CString unit = text.Mid(i, 1);
        CStringA shown;
        if (unit[0] < L' ' || (unit[0] >= 0x7F && unit[0] < 0xA0) || (unit[0] & 0xF800) == 0xD800)
            shown.Format("\\x%04X", static_cast<unsigned int>(unit[0]));
        else
            vak::system::ToNarrow(CP_UTF8, unit, 1, shown);
        *out << shown.GetString();
    }
    *out << '"';
}

inline void PrintTo(const CPoint& point, std::ostream* out)
{
    *out << '(' << point.x << ", " << point.y << ')';
}

inline void PrintTo(const CSize& size, std::ostream* out)
{
    *out << size.cx << " x " << size.cy;
}

inline void PrintTo(const CRect& rect, std::ostream* out)
{
    *out << '(' << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom << ')';
}
