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

} // namespace

TEST(ColorTest, FloatsAreTruncatedAndKeepTheirLowByte)
{
    const double values[] = {127.9,       255.99,     256,         300.5,        -0.9,  -1.9,      -300,
                             -2147483649, 4294967424, 10000000007, -10000000007, 1e300, kInfinity, kNaN};
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

TEST(ColorTest, EveryFormTakesAndGivesItsChannelsInOrder)
{
    const BYTE bytes[] = {1, 2, 3, 4};
    const float floats[] = {1, 2, 3, 4};
    CRGBColor color;
    EXPECT_EQ(Channels(color), (Bytes{0, 0, 0, 255}));
    EXPECT_EQ(Channels(CRGBColor(1, 2, 3)), (Bytes{1, 2, 3, 255}));
    EXPECT_EQ(Channels(CRGBColor(bytes[0], bytes[1], bytes[2], bytes[3])), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(Channels(CRGBColor(1.0f, 2.0f, 3.0f, 4.0f)), (Bytes{4, 8, 12, 255}));
    EXPECT_EQ(Channels(CRGBColor(1.0f, 2.0f, 3.0f, 4.0f, 4.0f)), (Bytes{4, 8, 12, 16}));
    EXPECT_EQ(Channels(CRGBColor(bytes, 3)), (Bytes{1, 2, 3, 255}));
    color.SetColor4(floats, 2);
    color.SetColor3(floats, 3);
    color[2] = color.ValPtr()[0];
    EXPECT_EQ(Channels(color), (Bytes{3, 6, 3, 8}));
    color.SetColor(0x00FF8040);
    EXPECT_EQ(Channels(color), (Bytes{64, 128, 255, 255}));
    EXPECT_EQ(DWORD(color), 0xFF8040u);
    float quotients[4];
    double wide[4];
    EXPECT_EQ(color.GetColor4d(wide, 128)[0], 0.5);
    EXPECT_EQ(color.GetColor4f(quotients, 128)[1], 1);
    CRGBColor(51, 0, 0).GetColor4(quotients, -0.0f);
    EXPECT_EQ(quotients[0], -kInfinity);
    EXPECT_TRUE(std::isnan(quotients[1]));
}

TEST(ColorTest, ArithmeticWrapsAndOnlyMultiplyingInPlaceTouchesAlpha)
{
    const CRGBColor color(10, 20, 200, BYTE(40));
    EXPECT_EQ(Channels(CRGBColor(200, 100, 50) + CRGBColor(100, 200, 250)), (Bytes{44, 44, 44, 255}));
    EXPECT_EQ(Channels(color - CRGBColor(20, 20, 1)), (Bytes{246, 0, 199, 255}));
    EXPECT_EQ(Channels(color * 1.5), (Bytes{15, 30, 44, 255}));
    EXPECT_EQ(Channels(color * -1.0f), (Bytes{246, 236, 56, 255}));
    EXPECT_EQ(Changed(color, [](CRGBColor& c) { c *= 2; }), (Bytes{20, 40, 144, 80}));
    EXPECT_TRUE(color != CRGBColor(10, 20, 200, BYTE(41)));
}

TEST(ColorTest, ColoursHaveTheirHueSaturationAndValue)
{
    // Red, green, blue; the hue in sixths, the saturation in thirds, the value in 255ths.
    const float rows[][6] = {{0, 0, 0, 0, 0, 0},           {128, 128, 128, 0, 0, 128},
                             {255, 0, 0, 0, 3, 255},       {255, 255, 0, 1, 3, 255},
                             {0, 255, 0, 2, 3, 255},       {0, 255, 255, 3, 3, 255},
                             {0, 0, 255, 4, 3, 255},       {192, 64, 128, 5.5f, 2, 192},
                             {64, 128, 192, 3.5f, 2, 192}, {128, 64, 192, 4.5f, 2, 192}};
    for (const auto& row : rows) {
        const CRGBColor color(row[0], row[1], row[2], 1);
        EXPECT_NEAR(color.GetHue(), row[3] / 6, 1e-6) << row[0] << ' ' << row[1];
        EXPECT_NEAR(color.GetSaturation(), row[4] / 3, 1e-6);
        EXPECT_NEAR(color.GetLuminance(), row[5] / 255, 1e-6);
    }
}

TEST(ColorTest, EverySectorOfTheHueHasItsChannels)
{
    // The hue in sixths; what red, green and blue are for half the saturation and the value 0.8.
    const float rows[][4] = {
        {0.25f, 0.8f, 0.5f, 0.4f}, {1.25f, 0.7f, 0.8f, 0.4f},  {2.25f, 0.4f, 0.8f, 0.5f},
        {3.25f, 0.4f, 0.7f, 0.8f}, {4.25f, 0.5f, 0.4f, 0.8f},  {5.25f, 0.8f, 0.4f, 0.7f},
        {6.25f, 0.8f, 0.5f, 0.4f}, {13.25f, 0.7f, 0.8f, 0.4f}, {-0.75f, 0.8f, 0.4f, 0.7f},
        {3e38f, 0.8f, 0.4f, 0.4f}, {kNaN, 0.8f, 0.4f, 0.4f}};
    float r, g, b;
    for (const auto& row : rows) {
        ConvertHSLToRGB(row[0] / 6, 0.5f, 0.8f, r, g, b);
        EXPECT_NEAR(r, row[1], 1e-6) << row[0];
        EXPECT_NEAR(g, row[2], 1e-6) << row[0];
        EXPECT_NEAR(b, row[3], 1e-6) << row[0];
    }
    ConvertHSLToRGB(0.5f, 0.5f, -1, r, g, b);
    EXPECT_EQ(r + g + b, 0);
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
}

TEST(ColorTest, TextAndStoredBytesAreTheChannels)
{
    CRGBColor color(1, 20, 255, BYTE(4)), again;
    EXPECT_EQ(color.GetString(), L"R :  1  V : 20  B : 255");
    vak::SetTextLanguage(1033);
    EXPECT_EQ(color.GetString(), L"R :  1  G : 20  B : 255");
    vak::SetTextLanguage(vak::kDefaultTextLanguage);
    const std::string bytes = vak::test::Stored([&](CArchive& archive) { color.Serialize(archive); });
    EXPECT_EQ(bytes, vak::test::Hex("01 14 FF 04"));
    const auto read = [&](CArchive& archive) { again.Serialize(archive); };
    vak::test::Load(bytes, read);
    EXPECT_EQ(vak::test::LoadCause("\x9\x9\x9", read), CArchiveException::endOfFile);
    EXPECT_EQ(again, color);
}

TEST(ColorTest, WideChannelsSumAverageAndSaturate)
{
    CRGB32Color sum(0, 0, 0, 0);
    sum += CRGBColor(250, 10, 3, BYTE(255));
    sum += CRGBColor(251, 20, 3, BYTE(255));
    sum -= CRGBColor(0, 0, 7, BYTE(10));
    EXPECT_EQ(Channels(sum.ConvertToRGBColor(2)), (Bytes{122, 15, 127, 122})) << "of 501, 30, -1 and 500";
    EXPECT_EQ(Channels(sum.ConvertToRGBColor(0)), (Bytes{0, 0, 0, 0}));
    sum *= 0.5f;
    EXPECT_EQ(Channels(sum.ConvertToRGBColor(1)), (Bytes{250, 15, 0, 250}));
    sum = CRGBColor(1, 2, 3, BYTE(4));
    sum *= 1e10f;
    EXPECT_EQ(sum.a, 0xFFFFFFFFu);
    sum *= -1;
    EXPECT_EQ(sum.a, 0u);
    EXPECT_EQ(CRGB32Color().a, 16777215u);
}
