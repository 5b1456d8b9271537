#pragma once

#include "framework/base/Object.h"

#include <cstddef>

/// A growing array of elements of one size, which only a derived class understands: it constructs, destructs,
/// copies and serialises them through the hooks.
///
/// Elements lie back to back, one element size apart, the first at the alignment of any fundamental type.
/// When the array grows or shifts they are moved byte by byte, without a hook: an element must not hold its
/// own address. Pointers to elements live until then. An element that is passed in may stand in the array,
/// and an array may be inserted into itself.
///
/// Indexes count from 0; one outside the array, a negative size and an array of another element size throw
/// CInvalidArgException, memory that is not to be had CMemoryException (both by pointer). When
/// ConstructElement throws, what this call constructed is destructed and the array keeps its elements; when
/// CopyElement throws, the elements that this call added stay, as far as they came. DestructElement must not
/// throw. Hooks do not change the array. One thread at a time; the arrays of different threads are
/// independent.
///
/// The hooks are gone when the base is destroyed: the destructor of the class that has them calls RemoveAll.
/// Here only the storage is freed.
class VAK_API CElementArray : public CObject
{
public:
    /// Elements of size 0; InitElement gives them one.
    CElementArray();
    /// `elementSize` in bytes.
    explicit CElementArray(int elementSize);
    /// Empties the array and starts it anew: another id, the element size, no grow factor.
    void InitElement(int elementSize);

    /// A number that no other array of the process has had (until 2^32 of them were made).
    unsigned int GetID() const { return m_id; }
    /// In bytes.
    unsigned int GetSizeOfElement() const { return m_elementSize; }
    int GetSize() const { return m_size; }
    /// The last index, -1 when the array is empty.
    int GetUpperBound() const { return m_size - 1; }
    void* ElementAt(int index) { return Element(Checked(index)); }
    const void* ElementAt(int index) const { return Element(Checked(index)); }
    void* operator[](int index) { return ElementAt(index); }
    const void* operator[](int index) const { return ElementAt(index); }
    /// The first element, null in an array without room; GetNext gives the one behind, unchecked: the caller
    /// counts to the size.
    void* GetFirst() { return m_data; }
    const void* GetFirst() const { return m_data; }
    void* GetNext(void* element) { return static_cast<std::byte*>(element) + m_elementSize; }
    const void* GetNext(const void* element) const
    {
        return static_cast<const std::byte*>(element) + m_elementSize;
    }

    /// Sets for how many elements room is made at a time, 0 for an eighth of the size (at least 4, at most
    /// 1024); a negative count changes nothing. Returns what was set before.
    int SetGrowFactor(int count);
    /// Cuts the array or lengthens it with constructed elements. An array without room gets exactly `size`; a
    /// shorter array keeps its room, an empty one gives it back. Any `growBy` but -1 becomes the grow factor,
    /// and a negative one grows by what is needed.
    void SetSize(int size, int growBy = -1);
    /// Copies to an element that is there; otherwise does nothing.
    void SetAt(int index, const void* element);
    /// As SetAt, after lengthening the array to hold `index`.
    void SetAtGrow(int index, const void* element);
    /// Returns the index of the new element.
    int Add(const void* element);
    /// Inserts `count` (at least 1) copies before `index`; behind the end the array is first lengthened to
    /// `index`.
    void InsertAt(int index, const void* element, int count = 1);
    void InsertAt(int index, const CElementArray* other);
    void RemoveAt(int index, int count = 1);
    /// Returns the index of the first appended element.
    int Append(const CElementArray& other);
    void Copy(const CElementArray& other);
    /// Gives room beyond the size back.
    void FreeExtra();

    /// Reading brings the array to the stored count, then takes over the stored element size and grow factor
    /// (elements of another size are destructed and constructed anew), and reads each element into one
    /// scratch element, from which it is copied. The scratch is constructed, unless the count is 0, and freed
    /// without DestructElement: what it owns, the derived class frees.
    ///
    /// The stored element size is taken as it is. A class whose hooks know only one size throws from
    /// ConstructElement when GetSizeOfElement is another.
    ///
    /// Throws endOfFile if fewer bytes are left than elements, each storing at least one; badIndex for more
    /// elements than an array can have, for an element size for which the room of the count is too small, and
    /// for elements that have lost their size; and what the hooks throw. The array is then empty, with its
    /// old element size and grow factor.
    void Serialize(CArchive& archive) override;

    // The order of the virtual operations is part of the interface.
    virtual void RemoveAll();
    /// Makes an element of the element size out of raw bytes.
    virtual void ConstructElement(void* element) = 0;
    virtual void DestructElement(void* element) = 0;
    /// Both are constructed; the source may be the destination.
    virtual void CopyElement(void* destination, const void* source) = 0;
    virtual void SerializeElement(CArchive& archive, void* element) = 0;

protected:
    ~CElementArray() override;

    /// Apply the hooks to `count` elements from the given ones on. When ConstructElement throws, the elements
    /// before are destructed again.
    void MyConstructElements(void* elements, int count);
    void MyDestructElements(void* elements, int count);
    void MyCopyElements(void* destination, const void* source, int count);

    // The order is part of the interface.
    unsigned int m_id;
    std::byte* m_data = nullptr;
    unsigned int m_elementSize = 0;
    int m_size = 0;
    int m_capacity = 0;
    int m_growFactor = 0;

private:
    int Checked(int index) const
    {
        if (static_cast<unsigned int>(index) >= static_cast<unsigned int>(m_size))
            ThrowBadIndex();
        return index;
    }
    [[noreturn]] static void ThrowBadIndex();
    std::byte* Element(int index) const { return m_data + std::size_t(index) * m_elementSize; }
    std::size_t Bytes(int count) const { return std::size_t(count) * m_elementSize; }
    int IndexOf(const void* element) const;
    bool TryReallocate(int capacity);
    void MakeRoom(int size);
    void Resize(int size);
    void OpenGap(int index, int count);
    void CloseGap(int index, int count);
    void CheckSameElements(const CElementArray& other) const;
    void Write(CArchive& archive);
    void Read(CArchive& archive);
    void ReplaceElementSize(unsigned int elementSize);
    void LengthenTo(int size);
    void ReadElements(CArchive& archive, int count, std::size_t scratchSize);
};
