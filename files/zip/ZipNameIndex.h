#pragma once

#include "files/zip/ZipSource.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace vak::detail {

/// A table from name to index that takes the same time whatever names an archive brings: its hash is keyed
/// anew for every table, so that nobody can prepare names that collide, and of equal names only the first is
/// kept. It holds no text: whoever asks gives the text of an index.
class ZipNameIndex
{
public:
    using Text = std::span<const wchar_t>;
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    bool IsBuilt() const { return !m_slots.empty(); }
    void Clear() { m_slots.clear(); }
    /// Whether it takes so many names without getting slow.
    bool HasRoom(std::size_t count) const { return m_slots.size() >= count * 2; }
    /// Makes an empty table for `count` names.
    void Begin(std::size_t count, bool ignoreCase);
    /// Files `index` under `text`, unless an equal one is there. `name(i)` gives the text of an index that
    /// was added before.
    template <class Name>
    void Add(Text text, std::size_t index, Name name)
    {
        const std::uint64_t hash = Hash(text);
        Slot& slot = m_slots[Look(text, hash, name)];
        if (slot.number == 0)
            slot = {static_cast<std::uint32_t>(hash >> 32), static_cast<std::uint32_t>(index + 1)};
    }
    template <class Name>
    std::size_t Find(Text text, Name name) const
    {
        const std::uint32_t number = m_slots[Look(text, Hash(text), name)].number;
        return number == 0 ? kNone : number - 1;
    }

private:
    struct Slot
    {
        std::uint32_t hash = 0;
        std::uint32_t number = 0; ///< index + 1; 0 is free
    };

    std::uint64_t Hash(Text text) const;
    bool IsSame(Text a, Text b) const;
    /// The slot that has the name, or the free one where it belongs.
    template <class Name>
    std::size_t Look(Text text, std::uint64_t hash, Name name) const
    {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t slot = static_cast<std::size_t>(hash) & mask;
        for (; m_slots[slot].number != 0; slot = (slot + 1) & mask) {
            if (m_slots[slot].hash == static_cast<std::uint32_t>(hash >> 32) &&
                IsSame(name(m_slots[slot].number - 1), text))
                break;
        }
        return slot;
    }

    ZipVector<Slot> m_slots;
    std::array<std::uint64_t, 2> m_key{};
    bool m_ignoreCase = false;
    mutable ZipVector<wchar_t> m_folded;
};

} // namespace vak::detail
