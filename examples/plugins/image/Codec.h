#pragma once

#include "examples/sdk/Image.h"
#include "files/IoResult.h"

#include <string>

/// The formats of this plug-in, as functions between bytes and a picture.
namespace image {

enum class Format
{
    Png,
    Jpeg,
    Bmp,
    Tga
};

/// Reads untrusted bytes. Pictures of more than 2^28 samples are refused with IO_FILE_NO_MEMORY, and so are,
/// before anything is allocated, those whose header declares more pixels than the format could pack into the
/// bytes that are there (IO_FILE_BAD_FORMAT). `image` is empty after a failure.
IO_FILE_RESULT Decode(Format format, const std::string& bytes, Image& image);

/// `parameter` is the quality (1 to 100) of a JPEG, and whether a TGA is compressed. Formats without alpha
/// show the picture over white.
IO_FILE_RESULT Encode(Format format, const Image& image, int parameter, std::string& bytes);

} // namespace image
