#pragma once

/// Colours of four 8-bit channels, and their hue, saturation and value.
///
/// Wherever a float or double becomes a channel it is truncated toward zero and the low 8 bits of the integer
/// are kept, as two's complement has them: nothing is clamped, 256 becomes 0 and -1 becomes 255. That holds
/// for finite values of any size; infinities and NaN become 0. Divisions follow IEEE 754, by zero too.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

#include <cstddef>

class CArchive;

/// A colour value. Copied byte by byte, compared by all four channels. Arrays that are passed in or out hold
/// the channels in the order red, green, blue, alpha, and are never null.
class VAK_API CRGBColor
{
public:
    /// Opaque black.
    CRGBColor() = default;
    /// @name Each constructor takes what the SetColor of the same arguments takes.
    /// @{
    CRGBColor(BYTE red, BYTE green, BYTE blue) { SetColor(red, green, blue); }
    CRGBColor(BYTE red, BYTE green, BYTE blue, BYTE alpha) { SetColor(red, green, blue, alpha); }
    CRGBColor(float red, float green, float blue, float scale) { SetColor(red, green, blue, scale); }
    CRGBColor(float red, float green, float blue, float alpha, float scale)
    {
        SetColor(red, green, blue, alpha, scale);
    }
    CRGBColor(DWORD packed) { SetColor(packed); }
    CRGBColor(const BYTE* channels, int count) { SetColor(channels, count); }
    /// @}

    /// @name Setters
    /// @{
    /// Alpha becomes 255.
    void SetColor(BYTE red, BYTE green, BYTE blue);
    void SetColor(BYTE red, BYTE green, BYTE blue, BYTE alpha);
    /// Every channel times `scale`; alpha becomes 255.
    void SetColor(float red, float green, float blue, float scale);
    void SetColor(float red, float green, float blue, float alpha, float scale);
    /// The platform's packed colour: red in bits 0 to 7, then green, then blue. Alpha becomes 255.
    void SetColor(DWORD packed);
    /// Three bytes and alpha 255 for a `count` of 3, else four bytes.
    void SetColor(const BYTE* channels, int count);
    void SetColor4(const BYTE* channels);
    /// Four channels, each times `scale`.
    void SetColor4(const float* channels, float scale);
    void SetColor4(const double* channels, float scale);
    /// Three channels, each times `scale`; alpha stays.
    void SetColor3(const float* channels, float scale);
    void SetColor3(const double* channels, float scale);
    /// @}

    /// @name Getters
    /// @{
    void GetColor4(int* channels) const;
    void GetColor4(BYTE* channels) const;
    /// Each channel divided by `divisor`.
    void GetColor4(float* channels, float divisor) const;
    /// The same; they return the array.
    float* GetColor4f(float* channels, float divisor) const;
    double* GetColor4d(double* channels, float divisor) const;
    /// The channels divided by 255.
    void Normalize(float& red, float& green, float& blue) const;
    void Normalize(float& red, float& green, float& blue, float& alpha) const;
    /// The channel `index`, 0 to 3; CInvalidArgException for any other.
    BYTE& operator[](int index);
    const BYTE& operator[](int index) const;
    /// The four channels, valid as long as the colour.
    BYTE* ValPtr() { return reinterpret_cast<BYTE*>(this); }
    const BYTE* ValPtr() const { return reinterpret_cast<const BYTE*>(this); }
    /// The platform's packed colour, which has no alpha.
    operator DWORD() const { return DWORD(r) | DWORD(g) << 8 | DWORD(b) << 16; }
    bool operator==(const CRGBColor& other) const = default;
    /// The channels in the current language of the texts, without alpha.
    CString GetString() const;
    void GetString(CString& text) const;
    /// @}

    /// @name Arithmetic
    /// The operators that give a new colour leave its alpha at 255. Sums and differences wrap around.
    /// @{
    CRGBColor operator*(double factor) const;
    CRGBColor operator*(float factor) const;
    /// Multiplies alpha too.
    CRGBColor& operator*=(float factor);
    CRGBColor operator+(const CRGBColor& other) const;
    CRGBColor operator-(const CRGBColor& other) const;
    /// @}

    /// @name Hue, saturation and value
    /// Each 0 to 1, as ConvertRGBToHSL gives them and ConvertHSLToRGB takes them. Alpha stays. Converting
    /// back truncates, so that a channel may lose 1 although nothing was changed.
    /// @{
    void ConvertToHSL(float& hue, float& saturation, float& luminance) const;
    void InitFromHSL(float hue, float saturation, float luminance);
    float GetHue() const;
    float GetSaturation() const;
    /// The largest channel divided by 255.
    float GetLuminance() const;
    void SetHue(float hue);
    void SetSaturation(float saturation);
    void SetLuminance(float luminance);
    /// Takes `amount` off the value; what would fall to 0 or below becomes black.
    void Darken(float amount);
    /// Adds `amount` to the value, up to 1.
    void Lighten(float amount);
    /// @}

    /// Four bytes in the order of the channels. When reading throws, the colour is as it was.
    void Serialize(CArchive& archive);

    // The order is part of the interface.
    BYTE r = 0;
    BYTE g = 0;
    BYTE b = 0;
    BYTE a = 255;
};
static_assert(sizeof(CRGBColor) == 4 && offsetof(CRGBColor, r) == 0 && offsetof(CRGBColor, g) == 1 &&
              offsetof(CRGBColor, b) == 2 && offsetof(CRGBColor, a) == 3);

/// Give and take hue, saturation and value (the largest channel, whatever the names say), each 0 to 1, as the
/// channels are. Greys have the hue and the saturation 0.
VAK_API void ConvertRGBToHSL(float red, float green, float blue, float& hue, float& saturation,
                             float& luminance);
/// A hue outside 0 to 1 counts without its whole turns, one that is no number as 0; a value of 0 or less is
/// black.
VAK_API void ConvertHSLToRGB(float hue, float saturation, float luminance, float& red, float& green,
                             float& blue);
