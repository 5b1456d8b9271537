#include "framework/base/detail/ShellLinkFormat.h"

#include "framework/base/ByteOrder.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace vak::detail {

namespace {

constexpr std::uint32_t kHeaderSize = 0x4C;
constexpr BYTE kClass[] = {0x01, 0x14, 0x02, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46};

enum LinkFlags : std::uint32_t
{
    kHasIdList = 0x1,
    kHasLinkInfo = 0x2,
    kHasName = 0x4, ///< the first of five texts
    kIsUnicode = 0x80
};
constexpr int kTexts = 5;

enum LinkInfoFlags : std::uint32_t
{
    kHasVolumeAndLocalPath = 0x1,
    kHasNetworkLink = 0x2
};

/// A run of bytes with questions that are false, or 0, where it is too short.
class Bytes
{
public:
    Bytes(const BYTE* data, std::size_t size) : m_data(data), m_size(size) {}

    std::size_t Size() const { return m_size; }
    const BYTE* Data() const { return m_data; }
    std::uint32_t U16(std::size_t at) const
    {
        return Has(at, 2) ? LoadLittleEndian<std::uint16_t>(m_data + at) : 0;
    }
    std::uint32_t U32(std::size_t at) const
    {
        return Has(at, 4) ? LoadLittleEndian<std::uint32_t>(m_data + at) : 0;
    }
    bool Has(std::size_t at, std::size_t count) const { return at <= m_size && count <= m_size - at; }
    /// Precondition: the bytes are there.
    Bytes Part(std::size_t at, std::size_t count) const { return {m_data + at, count}; }

    /// Cuts `count` bytes from the front; false when there are not so many.
    bool Take(std::size_t count, Bytes& taken)
    {
        if (count > m_size)
            return false;
        taken = Part(0, count);
        *this = Part(count, m_size - count);
        return true;
    }

    /// True when a text of units of `width` bytes begins at `at`, behind the first `head` bytes, and ends
    /// within.
    bool HasText(std::size_t at, std::size_t head, std::size_t width) const
    {
        for (; at >= head && Has(at, width); at += width) {
            if (std::all_of(m_data + at, m_data + at + width, [](BYTE byte) { return byte == 0; }))
                return true;
        }
        return false;
    }

private:
    const BYTE* m_data;
    std::size_t m_size;
};

bool IsIdList(Bytes items)
{
    constexpr std::size_t kLength = 2;
    while (items.Size() > kLength) {
        const std::size_t length = items.U16(0);
        Bytes item = items;
        if (length <= kLength || !items.Take(length, item))
            return false;
    }
    return items.Size() == kLength && items.U16(0) == 0;
}

bool IsVolume(const Bytes& info, std::size_t at)
{
    constexpr std::size_t kHead = 0x10, kWideHead = 0x14;
    const std::size_t size = info.U32(at);
    if (size <= kHead || !info.Has(at, size))
        return false;
    const Bytes volume = info.Part(at, size);
    const std::size_t label = volume.U32(0xC);
    if (label != kWideHead)
        return volume.HasText(label, kHead, 1);
    return volume.HasText(label, kHead, 1) || volume.HasText(volume.U32(0x10), kWideHead, 2);
}

bool IsNetworkLink(const Bytes& info, std::size_t at)
{
    constexpr std::size_t kHead = 0x14, kWideHead = 0x1C;
    constexpr std::uint32_t kHasDevice = 0x1;
    const std::size_t size = info.U32(at);
    if (size < kHead || !info.Has(at, size))
        return false;
    const Bytes link = info.Part(at, size);
    const bool hasDevice = (link.U32(0x4) & kHasDevice) != 0;
    const std::size_t name = link.U32(0x8);
    const std::size_t device = link.U32(0xC);
    if (!link.HasText(name, kHead, 1) || (hasDevice && !link.HasText(device, kHead, 1)))
        return false;
    if (name <= kHead)
        return true;
    return link.HasText(link.U32(0x14), kWideHead, 2) &&
           (!hasDevice || link.HasText(link.U32(0x18), kWideHead, 2));
}

bool IsLinkInfo(const Bytes& info)
{
    constexpr std::size_t kHead = 0x1C, kWideHead = 0x24;
    const std::size_t head = info.U32(0x4);
    if (info.Size() < kHead || head < kHead || head > info.Size())
        return false;
    const std::uint32_t flags = info.U32(0x8);
    const bool isWide = head >= kWideHead;
    if (!info.HasText(info.U32(0x18), head, 1) || (isWide && !info.HasText(info.U32(0x20), head, 2)))
        return false;
    if ((flags & kHasNetworkLink) != 0 && (info.U32(0x14) < head || !IsNetworkLink(info, info.U32(0x14))))
        return false;
    if ((flags & kHasVolumeAndLocalPath) == 0)
        return true;
    return info.U32(0xC) >= head && IsVolume(info, info.U32(0xC)) && info.HasText(info.U32(0x10), head, 1) &&
           (!isWide || info.HasText(info.U32(0x1C), head, 2));
}

bool TakeIdList(Bytes& rest)
{
    Bytes length = rest;
    Bytes items = rest;
    return rest.Take(2, length) && rest.Take(length.U16(0), items) && IsIdList(items);
}

bool TakeLinkInfo(Bytes& rest)
{
    Bytes info = rest;
    return rest.Take(rest.U32(0), info) && IsLinkInfo(info);
}

bool TakeText(Bytes& rest, std::size_t width)
{
    Bytes length = rest;
    Bytes text = rest;
    return rest.Take(2, length) && rest.Take(length.U16(0) * width, text);
}

/// The blocks behind the texts, up to the one that ends them; what follows that does not count.
bool TakeBlocks(Bytes& rest)
{
    constexpr std::size_t kSmallest = 8;
    while (rest.Size() >= 4) {
        const std::size_t size = rest.U32(0);
        Bytes block = rest;
        if (size < 4)
            return true;
        if (size < kSmallest || !rest.Take(size, block))
            return false;
    }
    return false;
}

} // namespace

bool IsShellLink(const BYTE* bytes, std::size_t size)
{
    Bytes rest(bytes, size);
    Bytes header = rest;
    if (!rest.Take(kHeaderSize, header) || header.U32(0) != kHeaderSize ||
        !std::equal(std::begin(kClass), std::end(kClass), header.Data() + 4))
        return false;
    const std::uint32_t flags = header.U32(0x14);
    if ((flags & kHasIdList) != 0 && !TakeIdList(rest))
        return false;
    if ((flags & kHasLinkInfo) != 0 && !TakeLinkInfo(rest))
        return false;
    const std::size_t width = (flags & kIsUnicode) != 0 ? 2 : 1;
    for (int i = 0; i < kTexts; ++i) {
        if ((flags & kHasName << i) != 0 && !TakeText(rest, width))
            return false;
    }
    return TakeBlocks(rest);
}

} // namespace vak::detail
