#include "examples/vakconvert/viewer/Pixels.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

constexpr unsigned int kLightGround = 0xFF;
constexpr unsigned int kDarkGround = 0xCC;

std::uint32_t Packed(unsigned int red, unsigned int green, unsigned int blue)
{
    return red << 16 | green << 8 | blue;
}

unsigned int GroundAt(int x, int y)
{
    return ((x >> 3) ^ (y >> 3)) & 1 ? kDarkGround : kLightGround;
}

unsigned int Over(unsigned int color, unsigned int alpha, unsigned int ground)
{
    return (color * alpha + ground * (255 - alpha) + 127) / 255;
}

/// The pixel at `sample`, seen over that ground.
template <unsigned int Channels>
std::uint32_t PixelAt(const std::uint8_t* sample, unsigned int ground)
{
    if constexpr (Channels % 2 == 1) {
        return Packed(sample[0], sample[Channels / 2], sample[Channels - 1]);
    } else {
        const unsigned int alpha = sample[Channels - 1];
        if (alpha == 255)
            return PixelAt<Channels - 1>(sample, ground);
        return Packed(Over(sample[0], alpha, ground), Over(sample[(Channels - 1) / 2], alpha, ground),
                      Over(sample[Channels - 2], alpha, ground));
    }
}

template <unsigned int Channels>
void DrawRow(const std::uint8_t* row, const std::vector<int>& columns, CPoint origin, std::uint32_t* target)
{
    int x = origin.x;
    for (const int column : columns) {
        *target++ = PixelAt<Channels>(row + std::size_t{Channels} * static_cast<std::size_t>(column),
                                      GroundAt(x, origin.y));
        ++x;
    }
}

using RowDrawer = void (*)(const std::uint8_t*, const std::vector<int>&, CPoint, std::uint32_t*);
constexpr RowDrawer kDrawers[] = {&DrawRow<1>, &DrawRow<2>, &DrawRow<3>, &DrawRow<4>};

/// A line that is not steeper than 1: `v` follows from `u`.
struct Slope
{
    LONGLONG u;
    LONGLONG v;
    LONGLONG lengthU;
    LONGLONG lengthV;

    LONGLONG At(LONGLONG place) const
    {
        const LONGLONG half = lengthV < 0 ? -lengthU : lengthU;
        return v + (lengthU ? (2 * (place - u) * lengthV + half) / (2 * lengthU) : 0);
    }
};

std::size_t RowSize(const Image& image)
{
    return std::size_t{image.width} * image.channels;
}

} // namespace

void DrawPixels(const Image& image, const PixelMap& map, CPoint origin, const PixelRows& target)
{
    const RowDrawer draw = kDrawers[image.channels - 1];
    std::uint32_t* to = target.first;
    for (std::size_t i = 0; i < map.rows.size(); ++i, to += target.stride) {
        const CPoint place(origin.x, origin.y + static_cast<int>(i));
        // An enlarged row is repeated, unless the ground behind it changes.
        const bool isSameGround = image.channels % 2 == 1 || GroundAt(0, place.y) == GroundAt(0, place.y - 1);
        if (isSameGround && i > 0 && map.rows[i] == map.rows[i - 1])
            std::copy_n(to - target.stride, map.columns.size(), to);
        else
            draw(image.pixels.data() + RowSize(image) * static_cast<std::size_t>(map.rows[i]), map.columns,
                 place, to);
    }
}

void DrawLine(CPoint from, CPoint to, std::uint32_t color, const CRect& area, const PixelRows& target)
{
    const bool isSteep = std::abs(LONGLONG{to.y} - from.y) > std::abs(LONGLONG{to.x} - from.x);
    if (isSteep ? from.y > to.y : from.x > to.x)
        std::swap(from, to);
    const LONGLONG width = LONGLONG{to.x} - from.x;
    const LONGLONG height = LONGLONG{to.y} - from.y;
    const Slope slope = isSteep ? Slope{from.y, from.x, height, width} : Slope{from.x, from.y, width, height};
    const LONG first = std::max(isSteep ? from.y : from.x, isSteep ? area.top : area.left);
    const LONG last = std::min(isSteep ? to.y : to.x, (isSteep ? area.bottom : area.right) - 1);
    for (LONG u = first; u <= last; ++u) {
        const auto v = static_cast<LONG>(slope.At(u));
        const CPoint at = isSteep ? CPoint(v, u) : CPoint(u, v);
        if (area.PtInRect(at))
            target.first[std::ptrdiff_t{target.stride} * (at.y - area.top) + (at.x - area.left)] = color;
    }
}

Image CutOut(const Image& image, const CRect& part)
{
    Image cut;
    cut.width = static_cast<unsigned int>(part.Width());
    cut.height = static_cast<unsigned int>(part.Height());
    cut.channels = image.channels;
    cut.pixels.reserve(RowSize(cut) * cut.height);
    for (LONG y = part.top; y < part.bottom; ++y) {
        const std::uint8_t* const row = image.pixels.data() + RowSize(image) * static_cast<std::size_t>(y) +
                                        std::size_t{image.channels} * static_cast<std::size_t>(part.left);
        cut.pixels.insert(cut.pixels.end(), row, row + RowSize(cut));
    }
    return cut;
}
