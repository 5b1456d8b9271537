#include "files/zip/ZipSource.h"

#include <algorithm>
#include <cstring>

namespace vak::detail {

bool ZipSource::Read(std::uint64_t offset, void* buffer, std::size_t size)
{
    auto* to = static_cast<std::uint8_t*>(buffer);
    while (size > 0) {
        const Bytes bytes = View(offset, std::min(size, kWindow));
        if (bytes.empty())
            return false;
        const std::size_t count = std::min(bytes.size(), size);
        std::memcpy(to, bytes.data(), count);
        to += count;
        offset += count;
        size -= count;
    }
    return true;
}

ZipSource::Bytes ZipMemory::View(std::uint64_t offset, std::size_t)
{
    if (offset >= m_bytes.size())
        return {};
    return m_bytes.subspan(static_cast<std::size_t>(offset));
}

} // namespace vak::detail
