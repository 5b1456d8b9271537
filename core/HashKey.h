#pragma once

#include "core/detail/HashText.h"
#include "framework/base/String.h"

namespace vak {

/// How a table hashes and compares its keys. A further key type is added by specialising this template beside
/// the type:
///
///     template <> struct vak::HashKey<Pair> {
///         static unsigned int Hash(const Pair& key);
///         static bool Equal(const Pair& a, const Pair& b);
///     };
///
/// Equal keys need equal hashes. The hash decides the order in which a table is walked.
template <class KEY>
struct HashKey;

/// Integers are spread by 16; their top four bits do not take part.
template <>
struct HashKey<unsigned int>
{
    static unsigned int Hash(unsigned int key) { return key << 4; }
    static bool Equal(unsigned int a, unsigned int b) { return a == b; }
};

template <>
struct HashKey<int>
{
    static unsigned int Hash(int key) { return static_cast<unsigned int>(key) << 4; }
    static bool Equal(int a, int b) { return a == b; }
};

/// Wide strings, case-sensitive.
template <>
struct HashKey<CString>
{
    static unsigned int Hash(const CString& key)
    {
        return detail::HashText(key.GetString(), static_cast<std::size_t>(key.GetLength()));
    }
    static bool Equal(const CString& a, const CString& b)
    {
        const int length = a.GetLength();
        return length == b.GetLength() &&
               std::memcmp(a.GetString(), b.GetString(),
                           static_cast<std::size_t>(length) * sizeof(wchar_t)) == 0;
    }
};

} // namespace vak
