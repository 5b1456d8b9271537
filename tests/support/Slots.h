#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <initializer_list>

namespace vak::test {

/// Slot of a virtual operation in the table, the destructor's two included.
template <class Member>
std::size_t SlotOf(Member member)
{
    std::size_t words[2];
    static_assert(sizeof(member) == sizeof(words));
    std::memcpy(words, &member, sizeof(words));
    return (words[0] - 1) / sizeof(void*);
}

/// Whether members lie one behind the other.
inline bool InOrder(std::initializer_list<const void*> members)
{
    return std::is_sorted(members.begin(), members.end());
}

} // namespace vak::test
