#pragma once

#include <cstdint>
#include <span>

namespace vak::detail {

/// Goes on with the format's CRC-32 of what came before; begins with 0.
std::uint32_t ZipCrc(std::uint32_t crc, std::span<const std::uint8_t> bytes);

} // namespace vak::detail
