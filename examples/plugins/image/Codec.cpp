#include "examples/plugins/image/Codec.h"

#include <climits>
#include <memory>
#include <new>

#define STB_IMAGE_IMPLEMENTATION
#define STBI_NO_STDIO
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_ONLY_BMP
#define STBI_ONLY_TGA
#include <stb_image.h>
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#include <stb_image_write.h>

namespace image {

namespace {

constexpr std::size_t kMostSamples = std::size_t{1} << 28;

/// Deflate packs at most 1032 bytes into one, run-length coding 128 pixels into two bytes, JPEG a block of 64
/// pixels into less than a byte (six coefficients of a bit each): a header that declares more is lying.
constexpr std::size_t MostPixelsPerByte(Format format)
{
    switch (format) {
    case Format::Png:
        return 1032 * 8;
    case Format::Jpeg:
        return 4096;
    default:
        return 128;
    }
}

bool HasSignature(Format format, const std::string& bytes)
{
    switch (format) {
    case Format::Png:
        return bytes.compare(0, 4, "\x89PNG") == 0;
    case Format::Jpeg:
        return bytes.compare(0, 2, "\xFF\xD8") == 0;
    case Format::Bmp:
        return bytes.compare(0, 2, "BM") == 0;
    case Format::Tga:
        return true; // has none
    }
    return false;
}

struct FreePixels
{
    void operator()(stbi_uc* pixels) const { stbi_image_free(pixels); }
};

void Append(void* context, void* data, int size)
{
    static_cast<std::string*>(context)->append(static_cast<const char*>(data),
                                               static_cast<std::size_t>(size));
}

std::uint8_t OverWhite(unsigned int sample, unsigned int alpha)
{
    return static_cast<std::uint8_t>((sample * alpha + 255 * (255 - alpha) + 127) / 255);
}

/// The picture without alpha.
Image Flatten(const Image& image)
{
    Image flat{image.width, image.height, image.channels - 1, {}};
    flat.pixels.reserve(image.pixels.size() / image.channels * flat.channels);
    for (std::size_t at = 0; at < image.pixels.size(); at += image.channels) {
        const unsigned int alpha = image.pixels[at + flat.channels];
        for (unsigned int channel = 0; channel < flat.channels; ++channel)
            flat.pixels.push_back(OverWhite(image.pixels[at + channel], alpha));
    }
    return flat;
}

bool Write(Format format, const Image& image, int parameter, std::string& bytes)
{
    const int width = static_cast<int>(image.width);
    const int height = static_cast<int>(image.height);
    const int channels = static_cast<int>(image.channels);
    const void* pixels = image.pixels.data();
    switch (format) {
    case Format::Png:
        return stbi_write_png_to_func(Append, &bytes, width, height, channels, pixels, width * channels) != 0;
    case Format::Jpeg:
        return stbi_write_jpg_to_func(Append, &bytes, width, height, channels, pixels, parameter) != 0;
    case Format::Bmp:
        return stbi_write_bmp_to_func(Append, &bytes, width, height, channels, pixels) != 0;
    case Format::Tga:
        stbi_write_tga_with_rle = parameter;
        return stbi_write_tga_to_func(Append, &bytes, width, height, channels, pixels) != 0;
    }
    return false;
}

} // namespace

IO_FILE_RESULT Decode(Format format, const std::string& bytes, Image& image)
{
    image = Image();
    const auto* data = reinterpret_cast<const stbi_uc*>(bytes.data());
    const int size = static_cast<int>(bytes.size());
    int width = 0;
    int height = 0;
    int channels = 0;
    if (bytes.size() > INT_MAX || !HasSignature(format, bytes) ||
        !stbi_info_from_memory(data, size, &width, &height, &channels) || width <= 0 || height <= 0)
        return IO_FILE_BAD_FORMAT;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (count / MostPixelsPerByte(format) > bytes.size())
        return IO_FILE_BAD_FORMAT;
    if (count > kMostSamples / static_cast<std::size_t>(channels))
        return IO_FILE_NO_MEMORY;
    const std::unique_ptr<stbi_uc, FreePixels> pixels(
        stbi_load_from_memory(data, size, &width, &height, &channels, 0));
    if (!pixels)
        return IO_FILE_BAD_FORMAT;
    image.width = static_cast<unsigned int>(width);
    image.height = static_cast<unsigned int>(height);
    image.channels = static_cast<unsigned int>(channels);
    image.pixels.assign(pixels.get(), pixels.get() + count * static_cast<std::size_t>(channels));
    return IO_FILE_SUCCESS;
}

IO_FILE_RESULT Encode(Format format, const Image& image, int parameter, std::string& bytes)
{
    bytes.clear();
    if (image.width > 65535 || image.height > 65535)
        return IO_FILE_UNSUPPORTED_OPTIONS;
    const bool hasAlpha = image.channels == 2 || image.channels == 4;
    const bool flatten = hasAlpha && (format == Format::Jpeg || format == Format::Bmp);
    const bool written = Write(format, flatten ? Flatten(image) : image, parameter, bytes);
    return written && !bytes.empty() ? IO_FILE_SUCCESS : IO_FILE_NO_MEMORY;
}

} // namespace image
