#include "files/zip/ZipCrc.h"

#include <zlib.h>

namespace vak::detail {

std::uint32_t ZipCrc(std::uint32_t crc, std::span<const std::uint8_t> bytes)
{
    return static_cast<std::uint32_t>(crc32_z(crc, bytes.data(), bytes.size()));
}

} // namespace vak::detail
