#pragma once

#include "core/detail/HashSlots.h"

namespace vak::detail {

template <class KEY, class VALUE>
struct MapSlot
{
    KEY key{};
    VALUE value{};
    SlotState state = SlotState::Empty;
};

} // namespace vak::detail

/// A map in one open-addressing array: prime sizes, quadratic probing, growth at half load. ARG is how keys
/// are passed; KEY is hashed and compared by vak::HashKey<KEY>, VALUE is copied.
///
/// The map owns its slots. Entries are walked in slot order, which the hash and the history of the table
/// decide. A slot whose entry was removed stays in use until the next growth. Without memory an insertion
/// adds nothing; a table whose very array could not be allocated stays empty until Free or InitHashTable. One
/// thread at a time; every change invalidates positions and references to keys.
template <class KEY, class VALUE, class ARG>
class CHashMap : private vak::detail::HashSlots<vak::detail::MapSlot<KEY, VALUE>>
{
    using Slots = vak::detail::HashSlots<vak::detail::MapSlot<KEY, VALUE>>;

public:
    /// Makes an empty map of NextPrime(n) slots.
    explicit CHashMap(unsigned int n = Slots::kSmallestSize) : Slots(n) {}
    /// Copies slot for slot: the copy is walked in the same order. Assignment to itself does nothing.
    CHashMap(const CHashMap& other) : Slots(other) {}
    CHashMap& operator=(const CHashMap& other)
    {
        Slots::operator=(other);
        return *this;
    }
    virtual ~CHashMap() {}

    /// The number of entries; the number of slots; non-zero when there are no entries.
    using Slots::GetCount;
    using Slots::GetHashTableSize;
    using Slots::IsEmpty;

    /// Returns 1 and the value of `key`; returns 0 if it is not there, `value` is then untouched.
    int Find(ARG key, VALUE& value) const
    {
        const unsigned int pos = this->FindActive(key);
        if (pos == Slots::kNoSlot)
            return 0;
        value = this->m_slots[pos].value;
        return 1;
    }
    /// Returns 1 if `key` is there, else 0.
    int IsFound(ARG key) const { return this->FindActive(key) != Slots::kNoSlot; }

    /// Returns the position of the first entry, or 0xFFFFFFFF.
    using Slots::GetFirst;
    /// Returns the key at `pos`, which GetFirst or GetNext gave, and its value, and moves `pos` on to the
    /// next entry, or to 0xFFFFFFFF behind the last.
    const KEY& GetNext(unsigned int& pos, VALUE& value) const
    {
        const auto& slot = this->m_slots[pos];
        value = slot.value;
        pos = this->FindActiveElement(pos + 1);
        return slot.key;
    }
    void GetNext(unsigned int& pos, KEY& key, VALUE& value) const { key = GetNext(pos, value); }

    /// Files `value` under `key`; returns 1 if the key was added, 0 if its value was replaced (or memory ran
    /// out).
    int Insert(ARG key, const VALUE& value)
    {
        const unsigned int hash = vak::HashKey<KEY>::Hash(key);
        const unsigned int pos = this->FindPos(key, hash);
        if (!this->IsActive(pos))
            return this->Activate(pos, key, hash, [&value](auto& slot) { slot.value = value; });
        this->m_slots[pos].value = value;
        return 0;
    }
    int Insert2(ARG key, VALUE value) { return Insert(key, value); }

    /// Returns 1 if `key` was there and is removed, else 0.
    int Remove(ARG key)
    {
        const unsigned int pos = this->FindActive(key);
        if (pos == Slots::kNoSlot)
            return 0;
        this->Deactivate(pos);
        return 1;
    }
    /// Removes all entries and keeps the size.
    using Slots::Clear;
    /// Removes all entries and goes back to 101 slots, which is then also the initial size.
    using Slots::Free;
    /// Makes room for `n` entries: the size is NextPrime(2n), at least 101. Unless that is the initial size
    /// already, the entries are discarded.
    using Slots::InitHashTable;
    /// Shrinks a map with many more slots than entries.
    using Slots::Minimize;
};
