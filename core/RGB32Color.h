#pragma once

#include "core/RGBColor.h"

/// A colour of four 32-bit channels, for summing and averaging colours. Sums and differences wrap around.
class VAK_API CRGB32Color
{
public:
    /// What alpha is where nobody gives it: the largest of 24 bits.
    enum : unsigned int
    {
        kDefaultAlpha = 0xFFFFFF
    };

    CRGB32Color() = default;
    CRGB32Color(unsigned int red, unsigned int green, unsigned int blue) { SetColor(red, green, blue); }
    CRGB32Color(unsigned int red, unsigned int green, unsigned int blue, unsigned int alpha)
    {
        SetColor(red, green, blue, alpha);
    }

    void SetColor(unsigned int red, unsigned int green, unsigned int blue);
    void SetColor(unsigned int red, unsigned int green, unsigned int blue, unsigned int alpha);
    CRGB32Color& operator=(const CRGBColor& color);

    /// Alpha is summed like the others.
    CRGB32Color& operator+=(const CRGBColor& color);
    CRGB32Color& operator-=(const CRGBColor& color);
    /// The products, in float arithmetic, truncated toward zero. What is below 0 becomes 0, what is above the
    /// largest channel becomes that, NaN becomes 0.
    CRGB32Color& operator*=(float factor);

    /// The low byte of every channel divided by `divisor`, by CRGBColor's rule for floats: a divisor of 0
    /// gives 0. Bring an average below 256 first.
    CRGBColor ConvertToRGBColor(float divisor) const;

    // The order is part of the interface.
    unsigned int r = 0;
    unsigned int g = 0;
    unsigned int b = 0;
    unsigned int a = kDefaultAlpha;
};
static_assert(sizeof(CRGB32Color) == 16 && offsetof(CRGB32Color, r) == 0 && offsetof(CRGB32Color, g) == 4 &&
              offsetof(CRGB32Color, b) == 8 && offsetof(CRGB32Color, a) == 12);
