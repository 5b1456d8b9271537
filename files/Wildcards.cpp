#include "files/Wildcards.h"

#include "core/HashTable.h"
#include "files/detail/WildcardMatcher.h"

int fileMatchWilcards(const CString& name, const CString& pattern, int caseSensitive)
{
    const vak::detail::Units text(name.GetString(), static_cast<std::size_t>(name.GetLength()));
    const vak::detail::Units wanted(pattern.GetString(), static_cast<std::size_t>(pattern.GetLength()));
    return vak::detail::MatchWildcards(text, wanted, caseSensitive != 0) ? 1 : 0;
}

int fileMatchWilcards(const CString& name, const CHashTable<CString>& patterns)
{
    for (unsigned int position = patterns.GetFirst(); position != 0xFFFFFFFF;) {
        if (fileMatchWilcards(name, patterns.GetNext(position), 0) != 0)
            return 1;
    }
    return 0;
}
