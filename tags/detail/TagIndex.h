#pragma once

/// The short way from a tag in a template to its registration.

#include "framework/base/detail/Allocator.h"
#include "tags/detail/UnitBlock.h"

#include <algorithm>
#include <vector>

class CTagInfo;

namespace vak::detail {

/// A name of at most sixteen units, brackets included, filled up with zeros.
using ShortName = UnitBlock;

/// Reads what stands at `text`, of which sixteen units can be read, up to the first ">". Returns its length,
/// 0 when there is no ">" among the sixteen.
inline std::size_t ReadShortName(const wchar_t* text, ShortName& name)
{
    /// Sixteen units to keep, and sixteen to clear.
    static constexpr std::array<wchar_t, 2 * kBlockUnits> kKeep = [] {
        std::array<wchar_t, 2 * kBlockUnits> keep{};
        std::fill_n(keep.begin(), kBlockUnits, static_cast<wchar_t>(0xFFFF));
        return keep;
    }();
    name = LoadBlock(text);
    const std::size_t last = FindInBlock(name, L'>');
    if (last == kBlockUnits)
        return 0;
    const UnitBlock keep = LoadBlock(&kKeep[kBlockUnits - 1 - last]);
    for (std::size_t i = 0; i < name.size(); ++i)
        name[i] &= keep[i];
    return last + 1;
}

/// The registered tags with a short name that a scan can find as it stands, by that name. Most tags of most
/// templates are found here with hardly a branch, and none that depends on the length of the name; those with
/// capitals, blanks or parameters are not.
///
/// Points to tags of the engine. Looking up is safe for any number of threads at once; changes are not.
class TagIndex
{
public:
    /// Makes room for one more tag; throws CMemoryException, the index is then as it was.
    void MakeRoom();
    /// Adds a tag of a new name, if that is of the kind that is kept here. There must be room.
    void Insert(const CTagInfo& tag);
    void Remove(const CTagInfo& tag);
    void Clear();

    /// The tag of that name, or null: it may still be one that is not kept here.
    const CTagInfo* Find(const ShortName& name) const
    {
        return m_entries.empty() ? nullptr : EntryOf(name).tag;
    }

private:
    struct Entry
    {
        ShortName name{}; ///< all zeros in a free entry
        const CTagInfo* tag = nullptr;
    };
    using Entries = std::vector<Entry, Allocator<Entry>>;

    const Entry& EntryOf(const ShortName& name) const;

    Entries m_entries;
    /// Entries that are not free, those of removed tags included.
    std::size_t m_used = 0;
    int m_shift = 0;
};

inline const TagIndex::Entry& TagIndex::EntryOf(const ShortName& name) const
{
    const std::uint64_t mixed =
        name[0] ^ std::rotl(name[1], 23) ^ std::rotl(name[2], 41) ^ std::rotl(name[3], 7);
    for (std::size_t at = mixed * 0x9E3779B97F4A7C15 >> m_shift;; at = (at + 1) & (m_entries.size() - 1)) {
        const Entry& entry = m_entries[at];
        const std::uint64_t different = (entry.name[0] ^ name[0]) | (entry.name[1] ^ name[1]) |
                                        (entry.name[2] ^ name[2]) | (entry.name[3] ^ name[3]);
        if (different == 0 || entry.name[0] == 0)
            return entry;
    }
}

} // namespace vak::detail
