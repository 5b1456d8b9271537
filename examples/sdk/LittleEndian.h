#pragma once

#include <cstdint>
#include <cstring>

/// Little-endian values at any address, alike on every machine.

inline std::uint32_t LittleEndian32(const char* at)
{
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i)
        value = value << 8 | static_cast<unsigned char>(at[i]);
    return value;
}

inline float LittleEndianFloat(const char* at)
{
    const std::uint32_t bits = LittleEndian32(at);
    float value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}
