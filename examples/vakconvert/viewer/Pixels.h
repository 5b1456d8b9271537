#pragma once

#include "examples/sdk/Image.h"
#include "framework/base/Geometry.h"

#include <cstdint>
#include <vector>

/// Pixels of 0x00RRGGBB that something is drawn into: rows of `stride` pixels from the top.
struct PixelRows
{
    std::uint32_t* first = nullptr;
    int stride = 0;
};

/// Which pixel of an image each column and row of an area shows.
struct PixelMap
{
    std::vector<int> columns;
    std::vector<int> rows;
};

/// Draws what the map says into the area that begins at `target`. Where the image is transparent, a chequered
/// ground is seen; `origin` is where the area lies in it.
void DrawPixels(const Image& image, const PixelMap& map, CPoint origin, const PixelRows& target);

/// Draws a line, both ends included, as far as it lies in `area`, which begins at `target`. Which pixels it
/// has does not depend on the area: what is drawn piece by piece fits together.
void DrawLine(CPoint from, CPoint to, std::uint32_t color, const CRect& area, const PixelRows& target);

/// A part of the image, which lies in it and is not empty; right and bottom exclusive.
Image CutOut(const Image& image, const CRect& part);
