#include "core/RGB32Color.h"
#include "framework/base/StringTable.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/Print.h"

#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

std::string Text(const CRGBColor& color)
{
    std::string text;
    for (int i = 0; i < 4; ++i)
        text += std::to_string(color[i]) + (i < 3 ? " " : "");
    return text;
}

template <class... Values, class... Arguments>
CRGBColor Changed(CRGBColor color, void (CRGBColor::*change)(Values...), Arguments... arguments)
{
    (color.*change)(arguments...);
    return color;
}

} // namespace

TEST(ColorTest, FloatsAreTruncatedAndKeepTheirLowByte)
{
    const std::pair<double, int> rows[] = {
        {255.99, 255},     {300.5, 44},         {-0.9, 0},  {-1.9, 255},    {-2147483649, 255},
        {4294967424, 128}, {-10000000007, 249}, {1e300, 0}, {kInfinity, 0}, {kNaN, 0}};
    for (const auto& [value, byte] : rows) {
        const double channels[] = {value, value / 2, 0, value};
        CRGBColor color;
        color.SetColor4(channels, 1);
        EXPECT_EQ(color.a, byte) << value;
        color.SetColor3(channels, 2);
        EXPECT_EQ(color.g, byte) << value;
    }
}

TEST(ColorTest, FormsAndChangesGiveTheirChannelsAndAlpha)
{
    const BYTE b[] = {10, 20, 200, 40};
    const float f[] = {1, 2, 3, 4};
    const CRGBColor color(b, 4), red(255, 0, 0, BYTE(9)), white(255, 255, 255, BYTE(8));
    CRGBColor twice = color;
    const std::pair<CRGBColor, const char*> rows[] = {
        {CRGBColor(), "0 0 0 255"},
        {Changed<float, float, float, float>(red, &CRGBColor::SetColor, 1.0f, 2.0f, 3.0f, 4.0f),
         "4 8 12 255"},
        {CRGBColor(3e38f, -kInfinity, 0.5f, kNaN, 255), "0 0 127 0"},
        {Changed<DWORD>(red, &CRGBColor::SetColor, DWORD(0x00FF8040)), "64 128 255 255"},
        {CRGBColor(b, 3), "10 20 200 255"},
        {Changed<const float*, float>(red, &CRGBColor::SetColor4, f, 2.0f), "2 4 6 8"},
        {Changed<const float*, float>(red, &CRGBColor::SetColor3, f, 3.0f), "3 6 9 9"},
        {CRGBColor(200, 100, 50) + CRGBColor(100, 200, 250), "44 44 44 255"},
        {color - CRGBColor(20, 20, 1), "246 0 199 255"},
        {color * -1.0f, "246 236 56 255"},
        {twice *= 2, "20 40 144 80"},
        {Changed(red, &CRGBColor::SetHue, 1 / 3.0f), "0 255 0 9"},
        {Changed(red, &CRGBColor::SetSaturation, 0.5f), "255 127 127 9"},
        {Changed(red, &CRGBColor::SetLuminance, 0.5f), "127 0 0 9"},
        {Changed(red, &CRGBColor::Darken, 0.25f), "191 0 0 9"},
        {Changed(white, &CRGBColor::Lighten, 0.5f), "255 255 255 8"}};
    for (const auto& [given, text] : rows)
        EXPECT_EQ(Text(given), text);
    EXPECT_EQ(DWORD(color), 0xC8140Au);
    EXPECT_TRUE(color != CRGBColor(10, 20, 200, BYTE(41)));
    float quotients[4];
    double wide[4];
    EXPECT_EQ(color.GetColor4d(wide, 80)[0] + color.GetColor4f(quotients, 80)[3], 0.625);
    CRGBColor(51, 0, 0).GetColor4(quotients, -0.0f);
    EXPECT_TRUE(quotients[0] == -kInfinity && std::isnan(quotients[1]));
}

TEST(ColorTest, EverySectorOfTheHueHasItsChannels)
{
    // The hue in sixths; what red, green and blue are for half the saturation and the value 0.8.
    const float rows[][4] = {
        {0.25f, 0.8f, 0.5f, 0.4f}, {1.25f, 0.7f, 0.8f, 0.4f},  {2.25f, 0.4f, 0.8f, 0.5f},
        {3.25f, 0.4f, 0.7f, 0.8f}, {4.25f, 0.5f, 0.4f, 0.8f},  {5.25f, 0.8f, 0.4f, 0.7f},
        {6.25f, 0.8f, 0.5f, 0.4f}, {13.25f, 0.7f, 0.8f, 0.4f}, {-0.75f, 0.8f, 0.4f, 0.7f},
        {3e38f, 0.8f, 0.4f, 0.4f}, {kNaN, 0.8f, 0.4f, 0.4f}};
    float x, y, z;
    for (const auto& [hue, red, green, blue] : rows) {
        ConvertHSLToRGB(hue / 6, 0.5f, 0.8f, x, y, z);
        EXPECT_TRUE(std::abs(x - red) < 1e-6 && std::abs(y - green) < 1e-6 && std::abs(z - blue) < 1e-6)
            << hue;
        ConvertRGBToHSL(red, green, blue, x, y, z);
        EXPECT_TRUE(std::abs(6 * x - hue) < 1e-5 || !(hue >= 0 && hue < 6)) << hue;
        EXPECT_TRUE(std::abs(y - 0.5f) < 1e-6 && z == 0.8f) << hue;
    }
    ConvertHSLToRGB(0.5f, 0.5f, -1, x, y, z);
    EXPECT_EQ(x + y + z, 0);
    for (const BYTE grey : {BYTE(0), BYTE(128)}) {
        CRGBColor(grey, grey, grey).ConvertToHSL(x, y, z);
        EXPECT_TRUE(x == 0 && y == 0 && z == grey / 255.0f);
    }
}

TEST(ColorTest, TextAndStoredBytesAreTheChannels)
{
    CRGBColor color(1, 20, 255, BYTE(4)), again;
    EXPECT_EQ(color.GetString(), L"R :  1  V : 20  B : 255");
    vak::SetTextLanguage(1033);
    EXPECT_EQ(color.GetString(), L"R :  1  G : 20  B : 255");
    vak::SetTextLanguage(vak::kDefaultTextLanguage);
    const auto read = [&](CArchive& archive) { again.Serialize(archive); };
    EXPECT_EQ(vak::test::LoadCause("\x1\x14\xFF\x4", read), -1);
    EXPECT_EQ(vak::test::LoadCause("\x9\x9\x9", read), CArchiveException::endOfFile);
    EXPECT_EQ(again, color);
    EXPECT_EQ(vak::test::Stored([&](CArchive& archive) { color.Serialize(archive); }), "\x1\x14\xFF\x4");
}

TEST(ColorTest, WideChannelsSumAverageAndSaturate)
{
    CRGB32Color sum(0, 0, 0, 0);
    sum += CRGBColor(250, 10, 3, BYTE(255));
    sum += CRGBColor(251, 20, 3, BYTE(255));
    sum -= CRGBColor(0, 0, 7, BYTE(10));
    EXPECT_EQ(Text(sum.ConvertToRGBColor(2)), "122 15 127 122") << "of 501, 30, -1 and 500";
    EXPECT_EQ(Text(sum.ConvertToRGBColor(0)), "0 0 0 0");
    sum *= 0.5f;
    EXPECT_EQ(Text(sum.ConvertToRGBColor(1)), "250 15 0 250");
    sum = CRGBColor(1, 2, 3, BYTE(4));
    sum *= 1e10f;
    EXPECT_EQ(sum.a, 0xFFFFFFFFu);
    sum *= -1;
    EXPECT_TRUE(sum.a == 0 && CRGB32Color().a == 16777215u && CRGB32Color(1, 2, 3).a == 16777215u);
}
