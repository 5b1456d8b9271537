#pragma once

#include "framework/base/Object.h"

/// A growing array of 32-bit integers, mostly identifiers.
///
/// Indexes count from 0; one outside the array, and a negative size, throw CInvalidArgException, memory that
/// is not to be had CMemoryException (both by pointer); the array is then as it was, unless it says
/// otherwise. References and GetData's pointer live until the array grows, shrinks or is destroyed. An array
/// may be inserted into itself. One thread at a time. Stored bytes are described in docs/formats/arrays.md.
class VAK_API CIntArrayID : public CObject
{
public:
    CIntArrayID() = default;
    /// `count` zeros, or with a `keepSize` of 0 none and the room for them.
    CIntArrayID(int count, int keepSize);
    ~CIntArrayID() override;
    CIntArrayID& operator=(const CIntArrayID& other);
    /// Empties the array and makes room for `count` elements; without memory it is empty.
    void Init(int count);

    int GetSize() const { return m_size; }
    /// The last index, -1 when the array is empty.
    int GetUpperBound() const { return m_size - 1; }
    int GetAt(int index) const { return m_data[Checked(index)]; }
    int operator[](int index) const { return m_data[Checked(index)]; }
    int& operator[](int index) { return m_data[Checked(index)]; }
    int& ElementAt(int index) { return m_data[Checked(index)]; }
    /// Returns the elements, null when there is no room for any, and their number.
    int* GetData(int& size);
    const int* GetData(int& size) const;

    void SetAt(int index, int value) { m_data[Checked(index)] = value; }
    /// Appends to an array that has room: the caller has reserved it, nothing is checked.
    void Set(int value) { m_data[m_size++] = value; }
    /// Cuts the array or lengthens it with zeros. Room is made for an eighth more than before (at least 4, at
    /// most 1024), in an array without any for exactly `size`; a shorter array keeps its room, an empty one
    /// gives it back.
    void SetSize(int size);
    /// Returns the index of the new element.
    int Add(int value);
    /// As SetAt, after lengthening the array to hold `index`.
    void SetAtGrow(int index, int value);
    /// Inserts `count` (at least 1) copies before `index`; behind the end the array is first lengthened to
    /// `index`.
    void InsertAt(int index, int value, int count = 1);
    void InsertAt(int index, const CIntArrayID* other);
    void RemoveAt(int index, int count = 1);
    /// Returns the index of the first appended element.
    int Append(const CIntArrayID& other);
    void Copy(const CIntArrayID& other);
    /// Gives room beyond the size back.
    void FreeExtra();
    void RemoveAll() { SetSize(0); }

    /// When reading throws, the array is empty: endOfFile if the file is too short for the elements, badIndex
    /// for more than an array can have.
    void Serialize(CArchive& archive) override;

protected:
    // The order is part of the interface.
    int* m_data = nullptr;
    int m_size = 0;
    int m_capacity = 0;

private:
    int Checked(int index) const
    {
        if (static_cast<unsigned int>(index) >= static_cast<unsigned int>(m_size))
            ThrowBadIndex();
        return index;
    }
    [[noreturn]] static void ThrowBadIndex();
    void Reallocate(int capacity, int kept);
    void MakeRoom(int size, int kept);
    void OpenGap(int index, int count);
    void Read(CArchive& archive);
};
