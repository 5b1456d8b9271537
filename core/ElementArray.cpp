#include "core/ElementArray.h"

#include "core/detail/ArrayGrowth.h"

#include <atomic>
#include <cstring>
#include <new>

namespace {

unsigned int NextArrayId()
{
    static constinit std::atomic<unsigned int> next{0};
    return next.fetch_add(1, std::memory_order_relaxed);
}

} // namespace

CElementArray::CElementArray() : m_id(NextArrayId()) {}

CElementArray::CElementArray(int elementSize) : CElementArray()
{
    if (elementSize < 0)
        AfxThrowInvalidArgException();
    m_elementSize = static_cast<unsigned int>(elementSize);
}

CElementArray::~CElementArray()
{
    delete[] m_data;
}

void CElementArray::InitElement(int elementSize)
{
    if (elementSize < 0)
        AfxThrowInvalidArgException();
    Resize(0);
    m_id = NextArrayId();
    m_elementSize = static_cast<unsigned int>(elementSize);
    m_growFactor = 0;
}

void CElementArray::ThrowBadIndex()
{
    AfxThrowInvalidArgException();
}

int CElementArray::SetGrowFactor(int count)
{
    const int previous = m_growFactor;
    if (count >= 0)
        m_growFactor = count;
    return previous;
}

void CElementArray::MyConstructElements(void* elements, int count)
{
    auto* element = static_cast<std::byte*>(elements);
    int done = 0;
    try {
        for (; done < count; ++done)
            ConstructElement(element + Bytes(done));
    } catch (...) {
        MyDestructElements(elements, done);
        throw;
    }
}

void CElementArray::MyDestructElements(void* elements, int count)
{
    auto* element = static_cast<std::byte*>(elements);
    for (int i = 0; i < count; ++i)
        DestructElement(element + Bytes(i));
}

void CElementArray::MyCopyElements(void* destination, const void* source, int count)
{
    auto* to = static_cast<std::byte*>(destination);
    const auto* from = static_cast<const std::byte*>(source);
    for (int i = 0; i < count; ++i)
        CopyElement(to + Bytes(i), from + Bytes(i));
}

/// The index of an element that stands in the array, -1 for one of the caller's.
int CElementArray::IndexOf(const void* element) const
{
    const auto offset = reinterpret_cast<std::uintptr_t>(element) - reinterpret_cast<std::uintptr_t>(m_data);
    return offset < Bytes(m_size) ? static_cast<int>(offset / m_elementSize) : -1;
}

/// Moves the elements to a block for exactly `capacity`, at least the size; false without memory.
bool CElementArray::TryReallocate(int capacity)
{
    // A block is there even for elements without a byte: it tells an array with room from one without.
    auto* block = new (std::nothrow) std::byte[std::max(Bytes(capacity), std::size_t{1})];
    if (block == nullptr)
        return false;
    if (m_size != 0)
        std::memcpy(block, m_data, Bytes(m_size));
    delete[] m_data;
    m_data = block;
    m_capacity = capacity;
    return true;
}

/// Makes room for `size` elements by the rule of growth. A grow factor may come from a file: room that it
/// asks for beyond the size is only a wish.
void CElementArray::MakeRoom(int size)
{
    if (size <= m_capacity)
        return;
    const int step = m_growFactor != 0 ? m_growFactor : vak::detail::AutomaticGrowth(m_size);
    const int capacity = vak::detail::GrownCapacity(m_capacity, step, size);
    if (!TryReallocate(capacity) && (capacity == size || !TryReallocate(size)))
        AfxThrowMemoryException();
}

void CElementArray::SetSize(int size, int growBy)
{
    if (size < 0)
        AfxThrowInvalidArgException();
    if (growBy != -1)
        m_growFactor = growBy;
    Resize(size);
}

void CElementArray::Resize(int size)
{
    if (size > m_size) {
        MakeRoom(size);
        MyConstructElements(Element(m_size), size - m_size);
    }
    const int dropped = std::max(m_size - size, 0);
    m_size = size;
    if (dropped != 0)
        MyDestructElements(Element(size), dropped);
    if (size != 0)
        return;
    delete[] m_data;
    m_data = nullptr;
    m_capacity = 0;
}

void CElementArray::SetAt(int index, const void* element)
{
    if (index >= 0 && index < m_size)
        CopyElement(Element(index), element);
}

void CElementArray::SetAtGrow(int index, const void* element)
{
    if (index < 0)
        AfxThrowInvalidArgException();
    const int own = IndexOf(element);
    if (index >= m_size)
        Resize(vak::detail::SizeAfterInsertion(m_size, index, 1));
    CopyElement(Element(index), own < 0 ? element : Element(own));
}

int CElementArray::Add(const void* element)
{
    const int index = m_size;
    SetAtGrow(index, element);
    return index;
}

/// Lengthens the array so that `count` newly constructed elements stand at `index`.
void CElementArray::OpenGap(int index, int count)
{
    const int size = vak::detail::SizeAfterInsertion(m_size, index, count);
    if (index >= m_size)
        return Resize(size);
    MakeRoom(size);
    const std::size_t behind = Bytes(m_size - index);
    std::memmove(Element(index + count), Element(index), behind);
    try {
        MyConstructElements(Element(index), count);
    } catch (...) {
        std::memmove(Element(index), Element(index + count), behind);
        throw;
    }
    m_size = size;
}

/// Moves what is behind `count` elements at `index` down to where they stood.
void CElementArray::CloseGap(int index, int count)
{
    std::memmove(Element(index), Element(index + count), Bytes(m_size - index - count));
    m_size -= count;
}

void CElementArray::InsertAt(int index, const void* element, int count)
{
    if (index < 0 || count < 1)
        AfxThrowInvalidArgException();
    const int own = IndexOf(element);
    OpenGap(index, count);
    if (own >= 0)
        element = Element(own < index ? own : own + count);
    for (int i = 0; i < count; ++i)
        CopyElement(Element(index + i), element);
}

/// Elements of another size are other elements.
void CElementArray::CheckSameElements(const CElementArray& other) const
{
    if (other.m_size != 0 && other.m_elementSize != m_elementSize)
        AfxThrowInvalidArgException();
}

void CElementArray::InsertAt(int index, const CElementArray* other)
{
    if (index < 0 || other == nullptr)
        AfxThrowInvalidArgException();
    CheckSameElements(*other);
    const int count = other->m_size;
    if (count == 0)
        return;
    OpenGap(index, count);
    // An array inserted into itself has its end behind the gap now.
    const int front = other == this ? std::min(index, count) : count;
    MyCopyElements(Element(index), other->m_data, front);
    if (front < count)
        MyCopyElements(Element(index + front), Element(index + count), count - front);
}

void CElementArray::RemoveAt(int index, int count)
{
    vak::detail::CheckRange(m_size, index, count);
    if (count == 0)
        return;
    try {
        MyDestructElements(Element(index), count);
    } catch (...) { // none of them is destructed again
        CloseGap(index, count);
        throw;
    }
    CloseGap(index, count);
}

int CElementArray::Append(const CElementArray& other)
{
    const int first = m_size;
    InsertAt(first, &other);
    return first;
}

void CElementArray::Copy(const CElementArray& other)
{
    if (this == &other)
        return;
    CheckSameElements(other);
    Resize(other.m_size);
    MyCopyElements(m_data, other.m_data, m_size);
}

void CElementArray::FreeExtra()
{
    if (m_size == m_capacity)
        return;
    if (m_size == 0)
        return Resize(0);
    if (!TryReallocate(m_size))
        AfxThrowMemoryException();
}

void CElementArray::RemoveAll()
{
    Resize(0);
}
