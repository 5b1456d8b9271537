#include "tags/detail/TagIndex.h"

#include "tags/TagInfo.h"

#include <algorithm>
#include <array>

namespace vak::detail {

namespace {

/// The short name of a tag; false when it has none, or none that a scan leaves as it is.
bool ShortNameOf(const CTagInfo& tag, ShortName& name)
{
    const CString& whole = tag.m_tagName;
    const auto length = static_cast<std::size_t>(whole.GetLength());
    if (length > kBlockUnits || length == 0 || whole[0] != L'<' ||
        CString(whole.Mid(1)).FindOneOf(L"<( ") >= 0)
        return false;
    std::array<wchar_t, kBlockUnits> units{};
    std::copy_n(whole.GetString(), length, units.begin());
    return ReadShortName(units.data(), name) == length;
}

} // namespace

void TagIndex::MakeRoom()
{
    if (2 * (m_used + 1) < m_entries.size())
        return;
    constexpr std::size_t kFewest = 64;
    const std::size_t size = std::max(kFewest, 2 * m_entries.size());
    Entries old(size);
    old.swap(m_entries);
    m_shift = 64 - std::countr_zero(size);
    m_used = 0;
    for (const Entry& entry : old) {
        if (entry.tag != nullptr)
            Insert(*entry.tag);
    }
}

void TagIndex::Insert(const CTagInfo& tag)
{
    ShortName name;
    if (!ShortNameOf(tag, name))
        return;
    Entry& entry = const_cast<Entry&>(EntryOf(name));
    m_used += entry.name[0] == 0 ? 1 : 0;
    entry = {name, &tag};
}

void TagIndex::Remove(const CTagInfo& tag)
{
    ShortName name;
    if (!m_entries.empty() && ShortNameOf(tag, name))
        const_cast<Entry&>(EntryOf(name)).tag = nullptr;
}

void TagIndex::Clear()
{
    m_entries.clear();
    m_used = 0;
}

} // namespace vak::detail
