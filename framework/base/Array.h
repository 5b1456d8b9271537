#pragma once

/// CArray: a growing array of values.
///
/// Indexes count from 0; one outside the array, and a negative count, throw CInvalidArgException, an
/// allocation that fails CMemoryException (both by pointer). References, and GetData's pointer, live until
/// the array grows, shrinks or is destroyed. Arguments may refer to elements of the array itself.

#include "framework/base/Object.h"
#include "framework/base/detail/Allocator.h"

#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray : public CObject
{
public:
    CArray() = default;

    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_data.size()); }
    INT_PTR GetCount() const { return GetSize(); }
    /// The last index, -1 when the array is empty.
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    BOOL IsEmpty() const { return m_data.empty(); }
    const TYPE& GetAt(INT_PTR index) const { return m_data[Checked(index)]; }
    TYPE& GetAt(INT_PTR index) { return m_data[Checked(index)]; }
    const TYPE& operator[](INT_PTR index) const { return GetAt(index); }
    TYPE& operator[](INT_PTR index) { return GetAt(index); }
    /// Null when the array is empty.
    const TYPE* GetData() const { return m_data.empty() ? nullptr : m_data.data(); }
    TYPE* GetData() { return m_data.empty() ? nullptr : m_data.data(); }

    /// Cuts the array, or lengthens it with default values (numbers: 0). With `growBy` of at least 0, later
    /// growth makes room for that many elements at a time; -1 keeps what was set before; 0, the default, lets
    /// the array choose.
    void SetSize(INT_PTR size, INT_PTR growBy = -1);
    void RemoveAll() { Storage().swap(m_data); }
    void SetAt(INT_PTR index, ARG_TYPE value) { m_data[Checked(index)] = value; }
    /// As SetAt, after lengthening the array to hold `index`.
    void SetAtGrow(INT_PTR index, ARG_TYPE value);
    /// Returns the index of the new element.
    INT_PTR Add(ARG_TYPE value)
    {
        MakeRoom(1);
        m_data.push_back(value);
        return GetUpperBound();
    }
    /// Returns the index of the first appended element.
    INT_PTR Append(const CArray& from);
    void Copy(const CArray& from);
    /// Inserts `count` copies before `index`; behind the end the array is first lengthened to `index`.
    void InsertAt(INT_PTR index, ARG_TYPE value, INT_PTR count = 1);
    void InsertAt(INT_PTR index, const CArray* from);
    void RemoveAt(INT_PTR index, INT_PTR count = 1);

private:
    static_assert(!std::is_same_v<TYPE, bool>, "use BOOL or BYTE: elements must be addressable");
    using Storage = std::vector<TYPE, vak::detail::Allocator<TYPE>>;

    std::size_t Checked(INT_PTR index) const
    {
        if (static_cast<std::size_t>(index) >= m_data.size())
            vak::detail::ThrowInvalidArgument();
        return static_cast<std::size_t>(index);
    }
    void MakeRoom(std::size_t more);

    Storage m_data;
    std::size_t m_growBy = 0;
};

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::MakeRoom(std::size_t more)
{
    if (more <= m_data.capacity() - m_data.size())
        return;
    if (more > m_data.max_size() - m_data.size())
        vak::detail::ThrowMemory();
    // Without a wish of the user the vector doubles by itself.
    if (m_growBy > more && m_growBy <= m_data.max_size() - m_data.size())
        m_data.reserve(m_data.size() + m_growBy);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetSize(INT_PTR size, INT_PTR growBy)
{
    if (size < 0)
        vak::detail::ThrowInvalidArgument();
    if (growBy >= 0)
        m_growBy = static_cast<std::size_t>(growBy);
    if (size == 0)
        return RemoveAll();
    const auto count = static_cast<std::size_t>(size);
    if (count > m_data.size())
        MakeRoom(count - m_data.size());
    m_data.resize(count);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetAtGrow(INT_PTR index, ARG_TYPE value)
{
    if (index < 0)
        vak::detail::ThrowInvalidArgument();
    TYPE copy(value);
    if (index >= GetSize())
        SetSize(index + 1);
    m_data[static_cast<std::size_t>(index)] = std::move(copy);
}

template <class TYPE, class ARG_TYPE>
INT_PTR CArray<TYPE, ARG_TYPE>::Append(const CArray& from)
{
    const INT_PTR first = GetSize();
    const std::size_t count = from.m_data.size();
    // By index: `from` may be this array.
    MakeRoom(count);
    for (std::size_t i = 0; i < count; ++i)
        m_data.push_back(from.m_data[i]);
    return first;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::Copy(const CArray& from)
{
    m_data = from.m_data;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::InsertAt(INT_PTR index, ARG_TYPE value, INT_PTR count)
{
    if (index < 0 || count < 1)
        vak::detail::ThrowInvalidArgument();
    const TYPE copy(value);
    if (index > GetSize())
        SetSize(index);
    MakeRoom(static_cast<std::size_t>(count));
    m_data.insert(m_data.begin() + index, static_cast<std::size_t>(count), copy);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::InsertAt(INT_PTR index, const CArray* from)
{
    if (index < 0 || from == nullptr)
        vak::detail::ThrowInvalidArgument();
    const Storage copy(from->m_data);
    if (copy.empty())
        return;
    if (index > GetSize())
        SetSize(index);
    m_data.insert(m_data.begin() + index, copy.begin(), copy.end());
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::RemoveAt(INT_PTR index, INT_PTR count)
{
    if (index < 0 || count < 0 || index > GetSize() || count > GetSize() - index)
        vak::detail::ThrowInvalidArgument();
    m_data.erase(m_data.begin() + index, m_data.begin() + index + count);
}
