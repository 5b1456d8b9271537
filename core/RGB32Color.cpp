#include "core/RGB32Color.h"

#include "core/detail/ChannelMath.h"

namespace {

unsigned int SaturatedProduct(unsigned int channel, float factor)
{
    constexpr float kLimit = 4294967296.0f;
    const float product = float(channel) * factor;
    if (!(product > 0))
        return 0;
    return product < kLimit ? static_cast<unsigned int>(product) : 0xFFFFFFFFu;
}

BYTE DividedLowByte(unsigned int channel, float divisor)
{
    return vak::detail::LowByteOfTruncated(vak::detail::DividedChannel(float(channel & 0xFF), divisor));
}

} // namespace

void CRGB32Color::SetColor(unsigned int red, unsigned int green, unsigned int blue)
{
    SetColor(red, green, blue, kDefaultAlpha);
}

void CRGB32Color::SetColor(unsigned int red, unsigned int green, unsigned int blue, unsigned int alpha)
{
    r = red;
    g = green;
    b = blue;
    a = alpha;
}

CRGB32Color& CRGB32Color::operator=(const CRGBColor& color)
{
    SetColor(color.r, color.g, color.b, color.a);
    return *this;
}

CRGB32Color& CRGB32Color::operator+=(const CRGBColor& color)
{
    SetColor(r + color.r, g + color.g, b + color.b, a + color.a);
    return *this;
}

CRGB32Color& CRGB32Color::operator-=(const CRGBColor& color)
{
    SetColor(r - color.r, g - color.g, b - color.b, a - color.a);
    return *this;
}

CRGB32Color& CRGB32Color::operator*=(float factor)
{
    SetColor(SaturatedProduct(r, factor), SaturatedProduct(g, factor), SaturatedProduct(b, factor),
             SaturatedProduct(a, factor));
    return *this;
}

CRGBColor CRGB32Color::ConvertToRGBColor(float divisor) const
{
    return CRGBColor(DividedLowByte(r, divisor), DividedLowByte(g, divisor), DividedLowByte(b, divisor),
                     DividedLowByte(a, divisor));
}
