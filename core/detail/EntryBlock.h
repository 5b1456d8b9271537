#pragma once

#include "framework/base/ByteOrder.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace vak::detail {

/// An entry where it lies in a block: u32 id, u32 size, u32 kind, value, all little-endian and at any
/// alignment. Null when there is none. Valid until the block changes.
struct StoredEntry
{
    static constexpr std::uint32_t kHeaderSize = 12;

    unsigned char* header = nullptr;

    explicit operator bool() const { return header != nullptr; }
    std::uint32_t Id() const { return LoadLittleEndian<std::uint32_t>(header); }
    std::uint32_t Size() const { return LoadLittleEndian<std::uint32_t>(header + 4); }
    std::uint32_t Kind() const { return LoadLittleEndian<std::uint32_t>(header + 8); }
    unsigned char* Value() const { return header + kHeaderSize; }
    StoredEntry Next() const { return {Value() + Size()}; }
    void SetId(std::uint32_t id) const { StoreLittleEndian(header, id); }
    void SetKind(std::uint32_t kind) const { StoreLittleEndian(header + 8, kind); }
};

/// The entries of a store, back to back in one malloc'ed block, in the very bytes of the raw form: storing
/// them is one copy. The block has room to spare; nothing is allocated for an empty one.
///
/// Look-ups in all but the smallest blocks go through an open-addressed table from id to the offset of its
/// first entry. It is built by the look-up that misses it, kept up to date by Append, and dropped by every
/// other change.
class EntryBlock
{
public:
    EntryBlock() = default;
    /// Copies the entries; without memory the copy is empty.
    EntryBlock(const EntryBlock& other) { Allocate(other.m_data, other.m_size, other.m_count); }
    EntryBlock& operator=(const EntryBlock&) = delete;
    ~EntryBlock() { Release(); }

    std::uint32_t Size() const { return m_size; }
    std::uint32_t Count() const { return m_count; }
    /// All sizes added up.
    std::uint32_t ValueBytes() const { return m_size - m_count * StoredEntry::kHeaderSize; }
    const unsigned char* Data() const { return m_data; }
    StoredEntry Begin() const { return {m_data}; }
    bool IsEnd(StoredEntry entry) const { return entry.header == m_data + m_size; }
    bool Contains(const void* bytes) const;

    /// The first entry with the id.
    StoredEntry Find(std::uint32_t id) const
    {
        if (m_shift == 0) [[unlikely]]
            return FindWithoutIndex(id);
        return FindByIndex(id);
    }
    /// The first entry with the id and the size.
    StoredEntry FindSized(std::uint32_t id, std::uint32_t size) const
    {
        if (m_shift != 0) [[likely]] {
            const StoredEntry first = FindByIndex(id);
            if (!first || first.Size() == size)
                return first;
        }
        return FindSizedSlowly(id, size);
    }

    void Clear();
    void Swap(EntryBlock& other);
    /// Replaces the entries by `count` entries of `size` bytes in all, which Check approved; false, and
    /// empty, without memory.
    bool Assign(const unsigned char* entries, std::uint32_t size, std::uint32_t count);
    /// Makes an empty block the home of `size` bytes of entries and returns their place, or null without
    /// memory. They count from Accept on, which is for what Check approved.
    unsigned char* Prepare(std::uint32_t size);
    void Accept(std::uint32_t size, std::uint32_t count)
    {
        m_size = size;
        m_count = count;
    }
    /// True when a store may have that many bytes and entries: the image has 8 more an entry, the raw form a
    /// header of 20, and both are counted in 32 bits.
    static bool Fits(std::uint64_t size, std::uint64_t count) { return size + count * 8 + 20 <= UINT32_MAX; }
    /// True when exactly `count` entries fill the `size` bytes.
    static bool Check(const unsigned char* entries, std::size_t size, std::uint32_t count);
    /// Makes room behind the last entry; false without memory, or when the entries would be too many (Fits).
    bool MakeRoom(std::uint32_t valueSize);
    /// Adds an entry with that id, size and kind, whose value the caller fills in; null as MakeRoom.
    StoredEntry Append(std::uint32_t id, std::uint32_t size, std::uint32_t kind)
    {
        // Up to here a block fits whatever its entries are.
        constexpr std::uint64_t kAlwaysFits = 0x80000000;
        const std::uint64_t needed = std::uint64_t{m_size} + StoredEntry::kHeaderSize + size;
        if ((needed > m_capacity || needed > kAlwaysFits) && !MakeRoom(size)) [[unlikely]]
            return {};
        const StoredEntry entry{m_data + m_size};
        entry.SetId(id);
        StoreLittleEndian(entry.header + 4, size);
        entry.SetKind(kind);
        ++m_count;
        if (m_shift != 0 && !AddToIndex(id, m_size)) [[unlikely]]
            m_shift = 0;
        m_size = static_cast<std::uint32_t>(needed);
        return entry;
    }
    void Remove(StoredEntry entry);
    void Rename(StoredEntry entry, std::uint32_t id);

private:
    struct IndexSlot
    {
        std::uint32_t id;
        std::uint32_t offset;
    };

    static constexpr std::uint32_t kFree = 0xFFFFFFFF;
    static constexpr unsigned int kWalkedEntries = 4;
    static constexpr unsigned int kSmallestIndexBits = 6;
    static constexpr unsigned int kLongestProbe = 64;

    std::uint32_t FirstSlot(std::uint32_t id) const { return id * 0x9E3779B1u >> m_shift; }
    std::uint32_t LastSlot() const { return 0xFFFFFFFFu >> m_shift; }
    /// Fills an empty block.
    bool Allocate(const unsigned char* entries, std::uint32_t size, std::uint32_t count)
    {
        if (size == 0)
            return true;
        if (Prepare(size) == nullptr)
            return false;
        std::memcpy(m_data, entries, size);
        Accept(size, count);
        return true;
    }
    void Release() const
    {
        std::free(m_data);
        if (m_index != nullptr)
            std::free(m_index);
    }
    StoredEntry FindByIndex(std::uint32_t id) const
    {
        for (std::uint32_t slot = FirstSlot(id);; slot = (slot + 1) & LastSlot()) {
            const IndexSlot at = m_index[slot];
            if (at.id == id && at.offset != kFree) [[likely]]
                return {m_data + at.offset};
            if (at.offset == kFree)
                return {};
        }
    }
    /// False when the index is full or has become slow.
    bool AddToIndex(std::uint32_t id, std::uint32_t offset) const
    {
        if (m_count > LastSlot() / 2) [[unlikely]]
            return false;
        std::uint32_t slot = FirstSlot(id);
        for (unsigned int probe = 0; probe < kLongestProbe; ++probe, slot = (slot + 1) & LastSlot()) {
            if (m_index[slot].offset == kFree) [[likely]] {
                m_index[slot] = {id, offset};
                return true;
            }
            if (m_index[slot].id == id) {
                m_repeats = true;
                return true;
            }
        }
        return false;
    }
    StoredEntry FindWithoutIndex(std::uint32_t id) const;
    StoredEntry FindSizedSlowly(std::uint32_t id, std::uint32_t size) const;
    bool BuildIndex() const;
    bool AllocateIndex() const;

    // The layout of these two is part of the interface.
    unsigned char* m_data = nullptr;
    std::uint32_t m_size = 0;

    std::uint32_t m_count = 0;
    std::uint32_t m_capacity = 0;
    /// 32 less the bits of a slot's number; 0 while there is no index.
    mutable std::uint32_t m_shift = 0;
    mutable IndexSlot* m_index = nullptr;
    mutable std::uint32_t m_indexBits = 0;
    /// Some id stands twice: the index knows only its first entry.
    mutable bool m_repeats = false;
    /// Ids that were chosen to collide, or no memory: the entries are walked until they are replaced.
    mutable bool m_refused = false;

    friend class EntryBlockLayout;
};

} // namespace vak::detail
