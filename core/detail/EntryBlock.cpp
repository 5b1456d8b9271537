#include "core/detail/EntryBlock.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <utility>

namespace vak::detail {

class EntryBlockLayout
{
    static_assert(offsetof(EntryBlock, m_data) == 0 && offsetof(EntryBlock, m_size) == sizeof(void*));
};

bool EntryBlock::Contains(const void* bytes) const
{
    const std::less<const void*> before;
    return m_data != nullptr && !before(bytes, m_data) && before(bytes, m_data + m_size);
}

void EntryBlock::Clear()
{
    Release();
    m_data = nullptr;
    m_index = nullptr;
    m_size = 0;
    m_count = 0;
    m_capacity = 0;
    m_shift = 0;
    m_indexBits = 0;
    m_repeats = false;
    m_refused = false;
}

void EntryBlock::Swap(EntryBlock& other)
{
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    std::swap(m_count, other.m_count);
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_shift, other.m_shift);
    std::swap(m_index, other.m_index);
    std::swap(m_indexBits, other.m_indexBits);
    std::swap(m_repeats, other.m_repeats);
    std::swap(m_refused, other.m_refused);
}

bool EntryBlock::Assign(const unsigned char* entries, std::uint32_t size, std::uint32_t count)
{
    Clear();
    return Allocate(entries, size, count);
}

unsigned char* EntryBlock::Prepare(std::uint32_t size)
{
    m_data = static_cast<unsigned char*>(std::malloc(size));
    m_capacity = m_data != nullptr ? size : 0;
    return m_data;
}

bool EntryBlock::Check(const unsigned char* entries, std::size_t size, std::uint32_t count)
{
    if (size / StoredEntry::kHeaderSize < count)
        return false;
    for (; count > 0; --count) {
        if (size < StoredEntry::kHeaderSize)
            return false;
        const std::size_t valueSize = LoadLittleEndian<std::uint32_t>(entries + 4);
        if (size - StoredEntry::kHeaderSize < valueSize)
            return false;
        entries += StoredEntry::kHeaderSize + valueSize;
        size -= StoredEntry::kHeaderSize + valueSize;
    }
    return size == 0;
}

bool EntryBlock::MakeRoom(std::uint32_t valueSize)
{
    // Three numbers, and with the allocator's own word a line of the cache: trees have a store in each node.
    constexpr std::uint64_t kSmallestBlock = 56;
    constexpr std::uint64_t kFastGrowthBelow = 4096;
    const std::uint64_t needed = std::uint64_t{m_size} + StoredEntry::kHeaderSize + valueSize;
    if (!Fits(needed, std::uint64_t{m_count} + 1))
        return false;
    if (needed <= m_capacity)
        return true;
    std::uint64_t capacity = std::uint64_t{m_capacity} * (m_capacity < kFastGrowthBelow ? 4 : 2);
    capacity = std::min<std::uint64_t>(std::max({capacity, needed, kSmallestBlock}), UINT32_MAX);
    void* const grown = std::realloc(m_data, static_cast<std::size_t>(capacity));
    if (grown == nullptr)
        return false;
    m_data = static_cast<unsigned char*>(grown);
    m_capacity = static_cast<std::uint32_t>(capacity);
    return true;
}

void EntryBlock::Remove(StoredEntry entry)
{
    constexpr std::uint32_t kKeptBlock = 4096;
    if (m_count == 1) {
        Clear();
        return;
    }
    const StoredEntry next = entry.Next();
    const auto removed = static_cast<std::uint32_t>(next.header - entry.header);
    std::memmove(entry.header, next.header, static_cast<std::size_t>(m_data + m_size - next.header));
    m_size -= removed;
    --m_count;
    m_shift = 0;
    if (m_capacity <= kKeptBlock || m_size > m_capacity / 4)
        return;
    if (void* const shrunk = std::realloc(m_data, m_size)) {
        m_data = static_cast<unsigned char*>(shrunk);
        m_capacity = m_size;
    }
}

void EntryBlock::Rename(StoredEntry entry, std::uint32_t id)
{
    entry.SetId(id);
    m_shift = 0;
}

StoredEntry EntryBlock::FindWithoutIndex(std::uint32_t id) const
{
    if (m_count > kWalkedEntries && BuildIndex())
        return Find(id);
    for (StoredEntry entry = Begin(); !IsEnd(entry); entry = entry.Next())
        if (entry.Id() == id)
            return entry;
    return {};
}

StoredEntry EntryBlock::FindSizedSlowly(std::uint32_t id, std::uint32_t size) const
{
    StoredEntry entry = Find(id);
    if (!entry || entry.Size() == size)
        return entry;
    if (m_shift != 0 && !m_repeats)
        return {};
    for (entry = entry.Next(); !IsEnd(entry); entry = entry.Next())
        if (entry.Id() == id && entry.Size() == size)
            return entry;
    return {};
}

bool EntryBlock::BuildIndex() const
{
    if (m_refused || !AllocateIndex())
        return false;
    m_repeats = false;
    m_shift = 32 - m_indexBits;
    for (StoredEntry entry = Begin(); !IsEnd(entry); entry = entry.Next()) {
        if (AddToIndex(entry.Id(), static_cast<std::uint32_t>(entry.header - m_data)))
            continue;
        m_refused = true;
        m_shift = 0;
        return false;
    }
    return true;
}

/// Makes an empty index of more than twice as many slots as there are entries, so that AddToIndex takes them
/// all.
bool EntryBlock::AllocateIndex() const
{
    const auto bits = std::max(kSmallestIndexBits, static_cast<unsigned int>(std::bit_width(m_count * 2ull)));
    if (bits != m_indexBits) {
        std::free(m_index);
        m_index = static_cast<IndexSlot*>(std::malloc(sizeof(IndexSlot) << bits));
        m_indexBits = m_index != nullptr ? bits : 0;
        m_refused = m_index == nullptr;
        if (m_refused)
            return false;
    }
    std::memset(static_cast<void*>(m_index), 0xFF, sizeof(IndexSlot) << bits);
    return true;
}

} // namespace vak::detail
