#include "core/RGB32Color.h"
#include "core/RGBColor.h"
#include "framework/base/StringTable.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace {

using Bytes = std::array<int, 4>;
using Floats = std::array<float, 3>;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

Bytes Channels(const CRGBColor& color)
{
    Bytes channels;
    color.GetColor4(channels.data());
    return channels;
}

template <class Change>
Bytes Changed(CRGBColor color, Change change)
{
    change(color);
    return Channels(color);
}

void ExpectNear(const Floats& is, const Floats& wanted)
{
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(is[i], wanted[i], 1e-6) << "number " << i;
}

} // namespace

TEST(ColorTest, FloatsAreTruncatedAndKeepTheirLowByte)
{
    const double values[] = {127.9,        255.99,      256,          300.5,         -0.9,  -1.9,      -300,
                             -2147483649., 4294967424., 10000000007., -10000000007., 1e300, kInfinity, kNaN};
    const int bytes[] = {127, 255, 0, 44, 0, 255, 212, 255, 128, 7, 249, 0, 0, 0};
    for (std::size_t i = 0; i < std::size(values); ++i) {
        const double channels[] = {values[i], values[i] / 2, 0, values[i]};
        CRGBColor color;
        color.SetColor4(channels, 1);
        EXPECT_EQ(color.a, bytes[i]) << values[i];
        color.SetColor3(channels, 2);
        EXPECT_EQ(color.g, bytes[i]) << values[i];
    }
    EXPECT_EQ(Channels(CRGBColor(3e38f, -kInfinity, 0.5f, kNaN, 255)), (Bytes{0, 0, 127, 0}));
}

TEST(ColorTest, EveryFormOfSetColorTakesItsChannelsInOrder)
{
    const BYTE bytes[] = {1, 2, 3, 4};
    const float floats[] = {1, 2, 3, 4};
    const CRGBColor start(9, 9, 9, BYTE(9));
    EXPECT_EQ(Channels(CRGBColor()), (Bytes{0, 0, 0, 255}));
    EXPECT_EQ(Channels(CRGBColor(1, 2, 3)), (Bytes{1, 2, 3, 255}));
    EXPECT_EQ(Channels(CRGBColor(bytes[0], bytes[1], bytes[2], bytes[3])), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(Channels(CRGBColor(1.0f, 2.0f, 3.0f, 4.0f)), (Bytes{4, 8, 12, 255}));
    EXPECT_EQ(Channels(CRGBColor(1.0f, 2.0f, 3.0f, 4.0f, 4.0f)), (Bytes{4, 8, 12, 16}));
    EXPECT_EQ(Channels(CRGBColor(bytes, 3)), (Bytes{1, 2, 3, 255}));
    EXPECT_EQ(Channels(CRGBColor(bytes, 4)), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(Changed(start, [](CRGBColor& c) { c.SetColor(0x00FF8040); }), (Bytes{64, 128, 255, 255}));
    EXPECT_EQ(Changed(start, [&](CRGBColor& c) { c.SetColor4(bytes); }), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(Changed(start, [&](CRGBColor& c) { c.SetColor4(floats, 2); }), (Bytes{2, 4, 6, 8}));
    EXPECT_EQ(Changed(start, [&](CRGBColor& c) { c.SetColor3(floats, 2); }), (Bytes{2, 4, 6, 9}));
    EXPECT_EQ(Changed(start, [](CRGBColor& c) { c[2] = c.ValPtr()[0] = 7; }), (Bytes{7, 9, 7, 9}));
    EXPECT_EQ(DWORD(CRGBColor(255, 0, 0)), 0x0000FFu);
    EXPECT_EQ(DWORD(CRGBColor(0x40, 0x80, 0xFF)), 0xFF8040u);
}

TEST(ColorTest, DivisionGivesTheArrayAndFollowsIeeeByZero)
{
    const CRGBColor color(51, 102, 0, BYTE(255));
    float floats[4];
    double doubles[4];
    EXPECT_EQ(color.GetColor4f(floats, 255), floats);
    EXPECT_FLOAT_EQ(floats[1], 0.4f);
    EXPECT_EQ(color.GetColor4d(doubles, 4), doubles);
    EXPECT_EQ(doubles[0], 12.75);
    color.GetColor4(floats, -0.0f);
    EXPECT_EQ(floats[0], -kInfinity);
    EXPECT_TRUE(std::isnan(floats[2]));
    color.Normalize(floats[0], floats[1], floats[2], floats[3]);
    EXPECT_FLOAT_EQ(floats[0], 0.2f);
    EXPECT_EQ(floats[3], 1);
}

TEST(ColorTest, ArithmeticWrapsAndOnlyMultiplyingInPlaceTouchesAlpha)
{
    const CRGBColor color(10, 20, 200, BYTE(40));
    EXPECT_EQ(Channels(CRGBColor(200, 100, 50) + CRGBColor(100, 200, 250)), (Bytes{44, 44, 44, 255}));
    EXPECT_EQ(Channels(color - CRGBColor(20, 20, 1)), (Bytes{246, 0, 199, 255}));
    EXPECT_EQ(Channels(color * 1.5), (Bytes{15, 30, 44, 255}));
    EXPECT_EQ(Channels(color * -1.0f), (Bytes{246, 236, 56, 255}));
    EXPECT_EQ(Changed(color, [](CRGBColor& c) { c *= 2; }), (Bytes{20, 40, 144, 80}));
    EXPECT_TRUE(color == CRGBColor(10, 20, 200, BYTE(40)));
    EXPECT_TRUE(color != CRGBColor(10, 20, 200, BYTE(41)));
}

TEST(ColorTest, ColoursHaveTheirHueSaturationAndValue)
{
    const struct
    {
        CRGBColor color;
        Floats hsl;
    } rows[] = {{{0, 0, 0}, {0, 0, 0}},
                {{128, 128, 128}, {0, 0, 128 / 255.0f}},
                {{255, 0, 0}, {0, 1, 1}},
                {{255, 255, 0}, {1 / 6.0f, 1, 1}},
                {{0, 255, 0}, {1 / 3.0f, 1, 1}},
                {{0, 255, 255}, {0.5f, 1, 1}},
                {{0, 0, 255}, {2 / 3.0f, 1, 1}},
                {{192, 64, 128}, {5.5f / 6, 2 / 3.0f, 192 / 255.0f}},
                {{64, 128, 192}, {3.5f / 6, 2 / 3.0f, 192 / 255.0f}},
                {{128, 64, 192}, {0.75f, 2 / 3.0f, 192 / 255.0f}}};
    for (const auto& row : rows) {
        const CRGBColor& color = row.color;
        ExpectNear({color.GetHue(), color.GetSaturation(), color.GetLuminance()}, row.hsl);
    }
}

TEST(ColorTest, EverySectorOfTheHueHasItsChannels)
{
    const struct
    {
        float hue, luminance;
        Floats rgb;
    } rows[] = {{0.25f / 6, 0.8f, {0.8f, 0.5f, 0.4f}},     {1.25f / 6, 0.8f, {0.7f, 0.8f, 0.4f}},
                {2.25f / 6, 0.8f, {0.4f, 0.8f, 0.5f}},     {3.25f / 6, 0.8f, {0.4f, 0.7f, 0.8f}},
                {4.25f / 6, 0.8f, {0.5f, 0.4f, 0.8f}},     {5.25f / 6, 0.8f, {0.8f, 0.4f, 0.7f}},
                {6.25f / 6, 0.8f, {0.8f, 0.5f, 0.4f}},     {-0.75f / 6, 0.8f, {0.8f, 0.4f, 0.7f}},
                {2 + 1.25f / 6, 0.8f, {0.7f, 0.8f, 0.4f}}, {kNaN, 0.8f, {0.8f, 0.4f, 0.4f}},
                {3e38f, 0.8f, {0.8f, 0.4f, 0.4f}},         {0.5f, -1, {0, 0, 0}}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.hue);
        Floats rgb;
        ConvertHSLToRGB(row.hue, 0.5f, row.luminance, rgb[0], rgb[1], rgb[2]);
        ExpectNear(rgb, row.rgb);
    }
}

TEST(ColorTest, ChangesOfTheModelKeepAlpha)
{
    const CRGBColor red(255, 0, 0, BYTE(9)), white(255, 255, 255, BYTE(8));
    EXPECT_EQ(Changed(red, [](CRGBColor& c) { c.SetHue(1 / 3.0f); }), (Bytes{0, 255, 0, 9}));
    EXPECT_EQ(Changed(red, [](CRGBColor& c) { c.SetSaturation(0.5f); }), (Bytes{255, 127, 127, 9}));
    EXPECT_EQ(Changed(red, [](CRGBColor& c) { c.SetLuminance(0.5f); }), (Bytes{127, 0, 0, 9}));
    EXPECT_EQ(Changed(red, [](CRGBColor& c) { c.Darken(0.25f); }), (Bytes{191, 0, 0, 9}));
    EXPECT_EQ(Changed(red, [](CRGBColor& c) { c.Darken(1); }), (Bytes{0, 0, 0, 9}));
    EXPECT_EQ(Changed(white, [](CRGBColor& c) { c.Lighten(0.5f); }), (Bytes{255, 255, 255, 8}));
    EXPECT_EQ(Changed(CRGBColor(), [](CRGBColor& c) { c.Lighten(0.5f); }), (Bytes{127, 127, 127, 255}));
}

TEST(ColorTest, TextNamesTheChannelsInTheCurrentLanguage)
{
    CString text;
    CRGBColor(1, 20, 255).GetString(text);
    EXPECT_EQ(text, L"R :  1  V : 20  B : 255");
    vak::SetTextLanguage(1033);
    EXPECT_EQ(CRGBColor(1, 20, 255).GetString(), L"R :  1  G : 20  B : 255");
    vak::SetTextLanguage(vak::kDefaultTextLanguage);
}

TEST(ColorTest, StoredBytesAreTheChannels)
{
    CRGBColor color(1, 2, 3, BYTE(4)), again;
    const std::string bytes = vak::test::Stored([&](CArchive& archive) { color.Serialize(archive); });
    EXPECT_EQ(bytes, vak::test::Hex("01 02 03 04"));
    const auto read = [&](CArchive& archive) { again.Serialize(archive); };
    vak::test::Load(bytes, read);
    EXPECT_EQ(again, color);
    EXPECT_EQ(vak::test::LoadCause("\x9\x9\x9", read), CArchiveException::endOfFile);
    EXPECT_EQ(again, color);
}

TEST(ColorTest, WideChannelsSumAverageAndSaturate)
{
    CRGB32Color sum;
    EXPECT_EQ(sum.a, 16777215u);
    sum.SetColor(0, 0, 0, 0);
    sum += CRGBColor(250, 10, 3, BYTE(255));
    sum += CRGBColor(251, 20, 3, BYTE(255));
    sum -= CRGBColor(0, 0, 7, BYTE(10));
    EXPECT_EQ(sum.b, 0xFFFFFFFFu);
    EXPECT_EQ(Channels(sum.ConvertToRGBColor(2)), (Bytes{122, 15, 127, 122})) << "501, 30, -1 and 500";
    EXPECT_EQ(Channels(sum.ConvertToRGBColor(0)), (Bytes{0, 0, 0, 0}));
    sum *= 0.5f;
    EXPECT_EQ(Channels(sum.ConvertToRGBColor(1)), (Bytes{250, 15, 0, 250}));
    sum = CRGBColor(1, 2, 3, BYTE(4));
    EXPECT_EQ(sum.a, 4u);
    sum *= 1e10f;
    EXPECT_EQ(sum.r, 0xFFFFFFFFu);
    sum *= kNaN;
    EXPECT_EQ(sum.r, 0u);
    sum.SetColor(1, 2, 3);
    sum *= -1;
    EXPECT_EQ(sum.a, 0u);
}
