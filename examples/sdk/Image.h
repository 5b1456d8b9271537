#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// A picture of 8-bit samples, as the host and the image plug-ins pass it. Rows run from top to bottom,
/// samples are interleaved without padding: `pixels` holds width * height * channels bytes. Channels: 1 grey,
/// 2 grey and alpha, 3 red green blue, 4 red green blue alpha; alpha is not premultiplied.
struct Image
{
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int channels = 0;
    std::vector<std::uint8_t> pixels;

    bool IsConsistent() const
    {
        return width > 0 && height > 0 && channels >= 1 && channels <= 4 &&
               pixels.size() == static_cast<std::size_t>(width) * height * channels;
    }
};
