#pragma once

#include "core/HashKey.h"
#include "core/NextPrime.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace vak::detail {

/// What a slot of a table holds; kept as numbers, since they stand in the slots.
enum class SlotState : std::uint32_t
{
    Active = 0,
    Empty = 1,
    Deleted = 2
};

/// The slots of an open-addressing table: their array, its probing, its growth and its walk. Keys are hashed
/// and compared by vak::HashKey. The base of the tables, which add the operations.
///
/// Beside the slots stands one mark a slot, which answers most look-ups: 0 for an empty slot, else kOccupied,
/// kActive unless the entry was deleted, and six bits of the key. Behind the last mark the first ones are
/// repeated, so that eight marks can be loaded at any slot. The marks repeat what the slots say and are never
/// copied out.
///
/// One thread at a time. A change to the table invalidates references to keys.
template <class SLOT>
class HashSlots
{
public:
    using Key = std::remove_cvref_t<decltype(SLOT::key)>;

    static constexpr unsigned int kSmallestSize = 101;
    static constexpr unsigned int kNoSlot = 0xFFFFFFFF;

    unsigned int GetCount() const { return m_count; }
    unsigned int GetHashTableSize() const { return m_size; }
    int IsEmpty() const { return m_count == 0; }

    unsigned int GetFirst() const { return FindActiveElement(0); }
    void Clear();
    void Free();
    void InitHashTable(unsigned int n);
    void Minimize();

protected:
    explicit HashSlots(unsigned int n) : HashSlots(NextPrime(n), nullptr) { AllocateArray(); }
    HashSlots(const HashSlots& other);
    HashSlots& operator=(const HashSlots& other);
    ~HashSlots() { FreeArray(); }

    /// The slot that holds `key`, active or deleted, or else the empty slot where its probing ends.
    unsigned int FindPos(const Key& key, std::uint32_t hash) const
    {
        // A deleted slot stops the probing of its own key only.
        const Start at = FindStart(Reduce(hash), hash, kEachMark * kActive);
        if (at.stop >= 0 && ((at.marks >> at.stop & 1) == 0 || HashKey<Key>::Equal(m_slots[at.pos].key, key)))
            return at.pos;
        return Probe(key, hash);
    }
    /// The slot of an active key, or kNoSlot.
    unsigned int FindActive(const Key& key) const
    {
        const std::uint32_t hash = HashKey<Key>::Hash(key);
        const std::uint32_t start = Reduce(hash);
        // Most keys that are there stand at once where they belong: a guess that lets the slot be fetched
        // together with its mark.
        if (m_marks[start] == MarkOf(hash) && HashKey<Key>::Equal(m_slots[start].key, key))
            return start;
        const Start at = FindStart(start, hash, 0);
        if (at.stop >= 0) {
            if ((at.marks >> at.stop & 1) == 0)
                return kNoSlot;
            if (HashKey<Key>::Equal(m_slots[at.pos].key, key))
                return at.pos;
        }
        const unsigned int pos = Probe(key, hash);
        return IsActive(pos) ? pos : kNoSlot;
    }
    /// The first active slot at or after `pos`, or kNoSlot.
    unsigned int FindActiveElement(unsigned int pos) const;
    bool IsActive(unsigned int pos) const { return (m_marks[pos] & kActive) != 0; }

    /// Replaces the members by an empty array of m_size slots; without memory there is none. The old array is
    /// the caller's.
    bool AllocateArray();
    /// Moves the active entries to an array for `n` slots; false, with the table unchanged, when memory ran
    /// out.
    bool ReHash(std::uint64_t n);
    /// Makes the slot at `pos`, as FindPos gave it, an active one; false, with nothing changed, when the
    /// table would have to grow and there is no memory.
    template <class FILL>
    bool Activate(unsigned int pos, const Key& key, std::uint32_t hash, FILL fill);
    void Deactivate(unsigned int pos);

    // The layout of these five is part of the interface.
    unsigned int m_initialSize;
    unsigned int m_size;
    unsigned int m_used = 0;
    unsigned int m_count = 0;
    SLOT* m_slots = nullptr;

private:
    static constexpr std::uint8_t kOccupied = 0x80;
    static constexpr std::uint8_t kActive = 0x40;
    static constexpr unsigned int kRepeatedMarks = 8;
    static constexpr std::uint64_t kEachMark = 0x0101010101010101;
    /// The occupied bits of the first three slots of a probing.
    static constexpr std::uint64_t kProbed = 0x0000008000008080;
    static constexpr bool kPlain =
        std::is_trivially_copyable_v<SLOT> && std::is_trivially_destructible_v<SLOT>;

    /// Larger tables count as too large for the memory: their remainders would need a division.
    static constexpr std::uint32_t kMostSlots = 0x80000000;

    static std::uint8_t MarkOf(std::uint32_t hash)
    {
        return static_cast<std::uint8_t>(kOccupied | kActive | (hash * 0x9E3779B1u) >> 26);
    }

    std::uint64_t LoadMarks(std::size_t pos) const
    {
        std::uint64_t marks;
        std::memcpy(&marks, m_marks + pos, sizeof marks);
        return marks;
    }

    /// `hash` modulo the size: the fraction of hash / size, rounded up to 32 bits, times the size.
    std::uint32_t Reduce(std::uint32_t hash) const
    {
        return static_cast<std::uint32_t>(((m_reciprocal * hash >> 32) + 1) * m_size >> 32);
    }

    /// Where the first three probes end: `stop` is the bit in `marks` that tells an occupied slot, -1 when
    /// all three pass over other keys' slots.
    struct Start
    {
        std::uint64_t marks;
        int stop;
        std::uint32_t pos;
    };
    Start FindStart(std::uint32_t start, std::uint32_t hash, std::uint64_t ignored) const
    {
        // They go to start, start + 1 and start + 4, whose marks are loaded together: what is left to branch
        // on is nearly always taken alike. Per mark, different - 1 has the high bit for the key's own mark
        // (or, rarely, by a borrow: the key is compared anyway), and `different` itself has it for an empty
        // slot's 0.
        const std::uint64_t marks = LoadMarks(start);
        const std::uint64_t different = (marks | ignored) ^ kEachMark * MarkOf(hash);
        const std::uint64_t stops = ((different - kEachMark) | different) & kProbed;
        if (stops == 0) [[unlikely]]
            return {marks, -1, start};
        const int stop = std::countr_zero(stops);
        std::uint32_t pos = start + static_cast<std::uint32_t>(stop >> 3);
        if (pos >= m_size) [[unlikely]]
            pos -= m_size;
        return {marks, stop, pos};
    }

    // Constructors delegate here, so that the destructor cleans up when a key's copy throws.
    HashSlots(unsigned int size, std::nullptr_t) : m_initialSize(size), m_size(size) {}

    void SetMark(unsigned int pos, std::uint8_t mark)
    {
        m_marks[pos] = mark;
        if (pos < kRepeatedMarks) [[unlikely]]
            RepeatMark(pos, mark);
    }
    void RepeatMark(unsigned int pos, std::uint8_t mark);
    unsigned int Probe(const Key& key, std::uint32_t hash) const;
    std::size_t ProbeFree(std::size_t pos) const;
    void MoveEntries(SLOT* slots, const std::uint8_t* marks, unsigned int size);
    void InsertMoved(SLOT& slot);
    void FreeArray();
    static void FreeSlots(SLOT* slots, unsigned int size);
    static SLOT* AllocateSlots(unsigned int size);

    /// A table without slots has these marks, and its reciprocal 0 leads every key to them.
    static inline std::uint8_t s_noMarks[kRepeatedMarks] = {};

    std::uint8_t* m_marks = s_noMarks;
    /// 2^64 / size, rounded up.
    std::uint64_t m_reciprocal = 0;
};

template <class SLOT>
HashSlots<SLOT>::HashSlots(const HashSlots& other) : HashSlots(other.m_size, nullptr)
{
    m_initialSize = other.m_initialSize;
    if (other.m_slots == nullptr || !AllocateArray())
        return;
    if constexpr (kPlain)
        std::memcpy(m_slots, other.m_slots, std::size_t{m_size} * sizeof(SLOT));
    else
        std::copy_n(other.m_slots, m_size, m_slots);
    std::memcpy(m_marks, other.m_marks, std::size_t{m_size} + kRepeatedMarks);
    m_used = other.m_used;
    m_count = other.m_count;
}

template <class SLOT>
HashSlots<SLOT>& HashSlots<SLOT>::operator=(const HashSlots& other)
{
    if (this == &other)
        return *this;
    HashSlots copy(other);
    std::swap(m_slots, copy.m_slots);
    std::swap(m_marks, copy.m_marks);
    std::swap(m_size, copy.m_size);
    std::swap(m_reciprocal, copy.m_reciprocal);
    m_initialSize = copy.m_initialSize;
    m_used = copy.m_used;
    m_count = copy.m_count;
    return *this;
}

template <class SLOT>
void HashSlots<SLOT>::Clear()
{
    if (m_slots != nullptr) {
        std::fill_n(m_slots, m_size, SLOT{});
        std::memset(m_marks, 0, std::size_t{m_size} + kRepeatedMarks);
    }
    m_used = 0;
    m_count = 0;
}

template <class SLOT>
void HashSlots<SLOT>::Free()
{
    FreeArray();
    m_initialSize = kSmallestSize;
    m_size = kSmallestSize;
    AllocateArray();
}

template <class SLOT>
void HashSlots<SLOT>::InitHashTable(unsigned int n)
{
    constexpr std::uint64_t kLargestPrime = 0xFFFFFFFB;
    const std::uint64_t wanted = std::min(std::uint64_t{n} * 2, kLargestPrime);
    unsigned int size = NextPrime(static_cast<unsigned int>(wanted));
    if (size < kSmallestSize)
        size = kSmallestSize;
    if (size == m_initialSize)
        return;
    FreeArray();
    m_initialSize = size;
    m_size = size;
    AllocateArray();
}

template <class SLOT>
void HashSlots<SLOT>::Minimize()
{
    const std::uint64_t wanted = std::uint64_t{m_count} * 5 / 2;
    if (m_slots != nullptr && wanted < m_size)
        ReHash(std::uint64_t{m_count} * 2);
}

template <class SLOT>
bool HashSlots<SLOT>::AllocateArray()
{
    m_used = 0;
    m_count = 0;
    m_marks = s_noMarks;
    m_reciprocal = 0;
    m_slots = m_size != 0 && m_size <= kMostSlots ? AllocateSlots(m_size) : nullptr;
    if (m_slots == nullptr)
        return false;
    auto* const marks = static_cast<std::uint8_t*>(std::calloc(std::size_t{m_size} + kRepeatedMarks, 1));
    if (marks == nullptr) {
        FreeSlots(m_slots, m_size);
        m_slots = nullptr;
        return false;
    }
    m_marks = marks;
    m_reciprocal = UINT64_MAX / m_size + 1;
    return true;
}

template <class SLOT>
SLOT* HashSlots<SLOT>::AllocateSlots(unsigned int size)
{
    if (size > static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()) / sizeof(SLOT))
        return nullptr;
    auto* slots = static_cast<SLOT*>(std::malloc(size * sizeof(SLOT)));
    if (slots == nullptr)
        return nullptr;
    if constexpr (!kPlain) {
        std::uninitialized_value_construct_n(slots, size);
    } else {
        // Whole blocks of slots are copied from the front: several times as fast as writing slot by slot.
        constexpr unsigned int kBlock = 256;
        std::uninitialized_fill_n(slots, std::min(size, kBlock), SLOT{});
        for (std::size_t done = kBlock; done < size; done += kBlock)
            std::memcpy(slots + done, slots, std::min<std::size_t>(kBlock, size - done) * sizeof(SLOT));
    }
    return slots;
}

template <class SLOT>
void HashSlots<SLOT>::FreeSlots(SLOT* slots, unsigned int size)
{
    if (slots != nullptr)
        std::destroy_n(slots, size);
    std::free(slots);
}

template <class SLOT>
void HashSlots<SLOT>::FreeArray()
{
    // Not by s_noMarks: every module has its own.
    if (m_slots != nullptr)
        std::free(m_marks);
    FreeSlots(m_slots, m_size);
    m_slots = nullptr;
    m_marks = s_noMarks;
    m_reciprocal = 0;
    m_used = 0;
    m_count = 0;
}

template <class SLOT>
void HashSlots<SLOT>::RepeatMark(unsigned int pos, std::uint8_t mark)
{
    // A table of less than eight slots is repeated as often as it fits.
    for (std::size_t copy = pos; copy < kRepeatedMarks; copy += m_size)
        m_marks[m_size + copy] = mark;
}

/// FindPos without a short cut.
template <class SLOT>
unsigned int HashSlots<SLOT>::Probe(const Key& key, std::uint32_t hash) const
{
    const std::uint8_t mark = MarkOf(hash);
    std::size_t pos = Reduce(hash);
    for (std::size_t step = 1; m_marks[pos] != 0; step += 2) {
        if ((m_marks[pos] | kActive) == mark && HashKey<Key>::Equal(m_slots[pos].key, key))
            break;
        pos += step;
        if (pos >= m_size)
            pos -= m_size;
    }
    return static_cast<unsigned int>(pos);
}

template <class SLOT>
unsigned int HashSlots<SLOT>::FindActiveElement(unsigned int pos) const
{
    if (m_slots == nullptr) [[unlikely]]
        return kNoSlot;
    for (std::size_t at = pos; at < m_size; at += 8) {
        const std::uint64_t active = LoadMarks(at) & kEachMark * kActive;
        if (active == 0)
            continue;
        at += static_cast<unsigned int>(std::countr_zero(active) >> 3);
        return at < m_size ? static_cast<unsigned int>(at) : kNoSlot;
    }
    return kNoSlot;
}

template <class SLOT>
template <class FILL>
bool HashSlots<SLOT>::Activate(unsigned int pos, const Key& key, std::uint32_t hash, FILL fill)
{
    if (m_slots == nullptr) [[unlikely]]
        return false;
    const std::uint8_t before = m_marks[pos];
    SLOT& slot = m_slots[pos];
    slot.key = key;
    fill(slot);
    slot.state = SlotState::Active;
    SetMark(pos, MarkOf(hash));
    ++m_count;
    ++m_used;
    if (m_used < m_size / 2 || ReHash(std::uint64_t{m_size} * 2))
        return true;
    slot.state = before == 0 ? SlotState::Empty : SlotState::Deleted;
    SetMark(pos, before);
    --m_count;
    --m_used;
    return false;
}

template <class SLOT>
void HashSlots<SLOT>::Deactivate(unsigned int pos)
{
    m_slots[pos].state = SlotState::Deleted;
    SetMark(pos, m_marks[pos] & static_cast<std::uint8_t>(~kActive));
    --m_count;
}

template <class SLOT>
bool HashSlots<SLOT>::ReHash(std::uint64_t n)
{
    unsigned int size = kSmallestSize;
    if (n >= kSmallestSize)
        size = n > UINT32_MAX ? 0 : NextPrime(static_cast<unsigned int>(n));
    if (size == m_size)
        return true;
    SLOT* const oldSlots = m_slots;
    std::uint8_t* const oldMarks = m_marks;
    const std::uint64_t oldReciprocal = m_reciprocal;
    const unsigned int oldSize = m_size;
    const unsigned int oldUsed = m_used;
    const unsigned int oldCount = m_count;
    m_size = size;
    if (!AllocateArray()) {
        m_slots = oldSlots;
        m_marks = oldMarks;
        m_reciprocal = oldReciprocal;
        m_size = oldSize;
        m_used = oldUsed;
        m_count = oldCount;
        return false;
    }
    MoveEntries(oldSlots, oldMarks, oldSize);
    FreeSlots(oldSlots, oldSize);
    std::free(oldMarks);
    return true;
}

/// Inserts the active entries of an older array in the order of its slots.
template <class SLOT>
void HashSlots<SLOT>::MoveEntries(SLOT* slots, const std::uint8_t* marks, unsigned int size)
{
    for (std::size_t first = 0; first < size; first += 8) {
        std::uint64_t active;
        std::memcpy(&active, marks + first, sizeof active);
        for (active &= kEachMark * kActive; active != 0; active &= active - 1) {
            const std::size_t pos = first + static_cast<unsigned int>(std::countr_zero(active) >> 3);
            // The last marks are the first ones repeated.
            if (pos < size)
                InsertMoved(slots[pos]);
        }
    }
}

/// The empty slot where a probing from `pos` on ends that meets no key of its own.
template <class SLOT>
std::size_t HashSlots<SLOT>::ProbeFree(std::size_t pos) const
{
    for (std::size_t step = 1; m_marks[pos] != 0; step += 2) {
        pos += step;
        if (pos >= m_size)
            pos -= m_size;
    }
    return pos;
}

/// Inserts a slot of an older array, whose key is new here and of which no deleted slot tells.
template <class SLOT>
void HashSlots<SLOT>::InsertMoved(SLOT& slot)
{
    const std::uint32_t hash = HashKey<Key>::Hash(slot.key);
    std::size_t pos = Reduce(hash);
    if (const std::uint64_t free = ~LoadMarks(pos) & kProbed; free != 0) [[likely]] {
        pos += static_cast<unsigned int>(std::countr_zero(free) >> 3);
        if (pos >= m_size) [[unlikely]]
            pos -= m_size;
    } else {
        pos = ProbeFree(pos);
    }
    m_slots[pos] = std::move(slot);
    SetMark(static_cast<unsigned int>(pos), MarkOf(hash));
    ++m_count;
    ++m_used;
    // Without memory the table stays fuller than usual, yet at most half full, so that every probing still
    // ends.
    if (m_used >= m_size / 2)
        ReHash(std::uint64_t{m_size} * 2);
}

} // namespace vak::detail
