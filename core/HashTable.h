#pragma once

#include "core/detail/HashSlots.h"

namespace vak::detail {

template <class KEY>
struct SetSlot
{
    KEY key{};
    SlotState state = SlotState::Empty;
};

} // namespace vak::detail

/// A set of keys in one open-addressing array: CHashMap (core/HashMap.h) without values, under the same
/// rules.
template <class T>
class CHashTable : private vak::detail::HashSlots<vak::detail::SetSlot<T>>
{
    using Slots = vak::detail::HashSlots<vak::detail::SetSlot<T>>;

public:
    /// Makes an empty set of NextPrime(n) slots.
    explicit CHashTable(unsigned int n = Slots::kSmallestSize) : Slots(n) {}
    /// Copies slot for slot: the copy is walked in the same order. Assignment to itself does nothing.
    CHashTable(const CHashTable& other) : Slots(other) {}
    CHashTable& operator=(const CHashTable& other)
    {
        Slots::operator=(other);
        return *this;
    }
    virtual ~CHashTable() {}

    /// The number of keys; the number of slots; non-zero when there are no keys.
    using Slots::GetCount;
    using Slots::GetHashTableSize;
    using Slots::IsEmpty;

    /// Returns 1 if `key` is there, else 0.
    int IsFound(const T& key) const { return this->FindActive(key) != Slots::kNoSlot; }

    /// Returns the position of the first key, or 0xFFFFFFFF.
    using Slots::GetFirst;
    /// Returns the key at `pos`, which GetFirst or GetNext gave, and moves `pos` on to the next key, or to
    /// 0xFFFFFFFF behind the last.
    const T& GetNext(unsigned int& pos) const
    {
        const T& key = this->m_slots[pos].key;
        pos = this->FindActiveElement(pos + 1);
        return key;
    }
    void GetNext(unsigned int& pos, T& key) const { key = GetNext(pos); }

    /// Returns 1 if `key` was added, 0 if it was there already (or memory ran out).
    int Insert(const T& key)
    {
        const unsigned int hash = vak::HashKey<T>::Hash(key);
        const unsigned int pos = this->FindPos(key, hash);
        return !this->IsActive(pos) && this->Activate(pos, key, hash, [](auto&) {});
    }
    /// Returns 1 if `key` was there and is removed, else 0.
    int Remove(const T& key)
    {
        const unsigned int pos = this->FindActive(key);
        if (pos == Slots::kNoSlot)
            return 0;
        this->Deactivate(pos);
        return 1;
    }
    /// Removes all keys and keeps the size.
    using Slots::Clear;
    /// Removes all keys and goes back to 101 slots, which is then also the initial size.
    using Slots::Free;
    /// Makes room for `n` keys: the size is NextPrime(2n), at least 101. Unless that is the initial size
    /// already, the keys are discarded.
    using Slots::InitHashTable;
    /// Shrinks a set with many more slots than keys.
    using Slots::Minimize;
};
