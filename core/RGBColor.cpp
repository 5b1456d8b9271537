#include "core/RGBColor.h"

#include "core/detail/ChannelMath.h"
#include "framework/base/Archive.h"
#include "framework/base/Exception.h"
#include "resources/Ids.h"

#include <algorithm>

using vak::detail::DividedChannel;
using vak::detail::LowByteOfTruncated;

namespace {

constexpr float kLargestChannel = 255.0f;

/// The hue in sixths of a turn, 0 to below 7.
float Sixths(float hue)
{
    const float sixths = 6 * hue;
    if (sixths >= 0 && sixths < 7)
        return sixths;
    return std::isfinite(hue) ? 6 * (hue - std::floor(hue)) : 0.0f;
}

} // namespace

void CRGBColor::SetColor(BYTE red, BYTE green, BYTE blue)
{
    SetColor(red, green, blue, BYTE(255));
}

void CRGBColor::SetColor(BYTE red, BYTE green, BYTE blue, BYTE alpha)
{
    r = red;
    g = green;
    b = blue;
    a = alpha;
}

void CRGBColor::SetColor(float red, float green, float blue, float scale)
{
    const float channels[] = {red, green, blue};
    SetColor3(channels, scale);
    a = 255;
}

void CRGBColor::SetColor(float red, float green, float blue, float alpha, float scale)
{
    const float channels[] = {red, green, blue, alpha};
    SetColor4(channels, scale);
}

void CRGBColor::SetColor(DWORD packed)
{
    SetColor(BYTE(packed & 0xFF), BYTE(packed >> 8 & 0xFF), BYTE(packed >> 16 & 0xFF));
}

void CRGBColor::SetColor(const BYTE* channels, int count)
{
    SetColor(channels[0], channels[1], channels[2], count == 3 ? BYTE(255) : channels[3]);
}

void CRGBColor::SetColor4(const BYTE* channels)
{
    SetColor(channels[0], channels[1], channels[2], channels[3]);
}

void CRGBColor::SetColor4(const float* channels, float scale)
{
    SetColor3(channels, scale);
    a = LowByteOfTruncated(channels[3] * scale);
}

void CRGBColor::SetColor4(const double* channels, float scale)
{
    SetColor3(channels, scale);
    a = LowByteOfTruncated(channels[3] * scale);
}

void CRGBColor::SetColor3(const float* channels, float scale)
{
    r = LowByteOfTruncated(channels[0] * scale);
    g = LowByteOfTruncated(channels[1] * scale);
    b = LowByteOfTruncated(channels[2] * scale);
}

void CRGBColor::SetColor3(const double* channels, float scale)
{
    r = LowByteOfTruncated(channels[0] * scale);
    g = LowByteOfTruncated(channels[1] * scale);
    b = LowByteOfTruncated(channels[2] * scale);
}

void CRGBColor::GetColor4(int* channels) const
{
    std::copy_n(ValPtr(), 4, channels);
}

void CRGBColor::GetColor4(BYTE* channels) const
{
    std::copy_n(ValPtr(), 4, channels);
}

void CRGBColor::GetColor4(float* channels, float divisor) const
{
    GetColor4f(channels, divisor);
}

float* CRGBColor::GetColor4f(float* channels, float divisor) const
{
    for (int i = 0; i < 4; ++i)
        channels[i] = DividedChannel(float(ValPtr()[i]), divisor);
    return channels;
}

double* CRGBColor::GetColor4d(double* channels, float divisor) const
{
    for (int i = 0; i < 4; ++i)
        channels[i] = DividedChannel(double(ValPtr()[i]), double(divisor));
    return channels;
}

void CRGBColor::Normalize(float& red, float& green, float& blue) const
{
    red = float(r) / kLargestChannel;
    green = float(g) / kLargestChannel;
    blue = float(b) / kLargestChannel;
}

void CRGBColor::Normalize(float& red, float& green, float& blue, float& alpha) const
{
    Normalize(red, green, blue);
    alpha = float(a) / kLargestChannel;
}

BYTE& CRGBColor::operator[](int index)
{
    if (index < 0 || index > 3)
        AfxThrowInvalidArgException();
    return ValPtr()[index];
}

const BYTE& CRGBColor::operator[](int index) const
{
    if (index < 0 || index > 3)
        AfxThrowInvalidArgException();
    return ValPtr()[index];
}

CString CRGBColor::GetString() const
{
    CString text;
    GetString(text);
    return text;
}

void CRGBColor::GetString(CString& text) const
{
    text.Format(UINT(IDS_COLOR_TEXT), int(r), int(g), int(b));
}

CRGBColor CRGBColor::operator*(double factor) const
{
    return CRGBColor(LowByteOfTruncated(r * factor), LowByteOfTruncated(g * factor),
                     LowByteOfTruncated(b * factor));
}

CRGBColor CRGBColor::operator*(float factor) const
{
    return CRGBColor(float(r), float(g), float(b), factor);
}

CRGBColor& CRGBColor::operator*=(float factor)
{
    SetColor(float(r), float(g), float(b), float(a), factor);
    return *this;
}

CRGBColor CRGBColor::operator+(const CRGBColor& other) const
{
    return CRGBColor(BYTE(r + other.r), BYTE(g + other.g), BYTE(b + other.b));
}

CRGBColor CRGBColor::operator-(const CRGBColor& other) const
{
    return CRGBColor(BYTE(r - other.r), BYTE(g - other.g), BYTE(b - other.b));
}

void CRGBColor::ConvertToHSL(float& hue, float& saturation, float& luminance) const
{
    float red, green, blue;
    Normalize(red, green, blue);
    ConvertRGBToHSL(red, green, blue, hue, saturation, luminance);
}

void CRGBColor::InitFromHSL(float hue, float saturation, float luminance)
{
    float channels[3];
    ConvertHSLToRGB(hue, saturation, luminance, channels[0], channels[1], channels[2]);
    SetColor3(channels, kLargestChannel);
}

float CRGBColor::GetHue() const
{
    float hue, saturation, luminance;
    ConvertToHSL(hue, saturation, luminance);
    return hue;
}

float CRGBColor::GetSaturation() const
{
    float hue, saturation, luminance;
    ConvertToHSL(hue, saturation, luminance);
    return saturation;
}

float CRGBColor::GetLuminance() const
{
    float hue, saturation, luminance;
    ConvertToHSL(hue, saturation, luminance);
    return luminance;
}

void CRGBColor::SetHue(float hue)
{
    float old, saturation, luminance;
    ConvertToHSL(old, saturation, luminance);
    InitFromHSL(hue, saturation, luminance);
}

void CRGBColor::SetSaturation(float saturation)
{
    float hue, old, luminance;
    ConvertToHSL(hue, old, luminance);
    InitFromHSL(hue, saturation, luminance);
}

void CRGBColor::SetLuminance(float luminance)
{
    float hue, saturation, old;
    ConvertToHSL(hue, saturation, old);
    InitFromHSL(hue, saturation, luminance);
}

void CRGBColor::Darken(float amount)
{
    float hue, saturation, luminance;
    ConvertToHSL(hue, saturation, luminance);
    InitFromHSL(hue, saturation, luminance - amount);
}

void CRGBColor::Lighten(float amount)
{
    float hue, saturation, luminance;
    ConvertToHSL(hue, saturation, luminance);
    InitFromHSL(hue, saturation, std::min(luminance + amount, 1.0f));
}

void CRGBColor::Serialize(CArchive& archive)
{
    if (archive.IsStoring()) {
        archive.Write(ValPtr(), 4);
        return;
    }
    BYTE channels[4];
    archive.EnsureRead(channels, sizeof channels);
    SetColor4(channels);
}

void ConvertRGBToHSL(float red, float green, float blue, float& hue, float& saturation, float& luminance)
{
    const float largest = std::max({red, green, blue});
    const float smallest = std::min({red, green, blue});
    hue = saturation = 0;
    luminance = largest;
    if (largest == 0 || !(largest > smallest))
        return;
    saturation = 1 - smallest / largest;
    const float range = largest - smallest;
    const float fromRed = (largest - red) / range;
    const float fromGreen = (largest - green) / range;
    const float fromBlue = (largest - blue) / range;
    if (red == largest)
        hue = green == smallest ? 5 + fromBlue : 1 - fromGreen;
    else if (green != largest)
        hue = red == smallest ? 3 + fromGreen : 5 - fromRed;
    else
        hue = blue == smallest ? 1 + fromRed : 3 - fromBlue;
    hue /= 6;
    if (hue >= 1)
        hue -= 1;
}

void ConvertHSLToRGB(float hue, float saturation, float luminance, float& red, float& green, float& blue)
{
    red = green = blue = 0;
    if (luminance <= 0)
        return;
    const float sixths = Sixths(hue);
    const int sector = int(sixths);
    const float fraction = sixths - float(sector);
    const float low = (1 - saturation) * luminance;
    const float step = (luminance - low) * fraction;
    const float falling = luminance - step;
    const float rising = step + low;
    const float table[][3] = {{luminance, rising, low}, {falling, luminance, low},
                              {low, luminance, rising}, {low, falling, luminance},
                              {rising, low, luminance}, {luminance, low, falling}};
    const float* channels = table[sector % 6];
    red = channels[0];
    green = channels[1];
    blue = channels[2];
}
