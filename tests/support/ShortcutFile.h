#pragma once

#include "tests/support/ZipBuilder.h"

#include <string>

namespace vak::test {

/// The smallest shell link that names a local file: the fixed header, then where the target lies.
inline std::string ShortcutTo(const std::string& target)
{
    constexpr unsigned int kHasLocation = 2, kNormalWindow = 1, kFixedDrive = 3;
    const std::string identifier("\x01\x14\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16);
    const std::string header = Little(0x4C, 4) + identifier + Little(kHasLocation, 4) +
                               std::string(36, '\0') + Little(kNormalWindow, 4) + std::string(12, '\0');
    const std::string volume =
        Little(0x11, 4) + Little(kFixedDrive, 4) + Little(0, 4) + Little(0x10, 4) + '\0';
    const std::size_t targetAt = 0x1C + 0x11;
    const std::size_t suffixAt = targetAt + target.size() + 1;
    return header + Little(suffixAt + 1, 4) + Little(0x1C, 4) + Little(1, 4) + Little(0x1C, 4) +
           Little(targetAt, 4) + Little(0, 4) + Little(suffixAt, 4) + volume + target + std::string(2, '\0') +
           Little(0, 4);
}

} // namespace vak::test
