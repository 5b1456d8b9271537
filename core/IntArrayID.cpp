#include "core/IntArrayID.h"

#include "core/detail/ArrayGrowth.h"
#include "framework/base/Archive.h"
#include "framework/base/File.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

namespace {

/// Elements that one call to the archive takes when writing: their bytes still fit into 31 bits.
constexpr int kChunk = 0x1FFFFFFF;
/// Bytes that one call takes when reading: they stay in the cache.
constexpr std::size_t kPiece = 1 << 18;
constexpr std::size_t kCacheLine = 64;

void WriteInts(CArchive& archive, const int* values, int count)
{
    if constexpr (std::endian::native == std::endian::little) {
        archive.Write(values, UINT(count) * sizeof(int));
        return;
    }
    std::for_each_n(values, count, [&](int value) { archive << value; });
}

/// By how many bytes `target` is off from where the archive's next bytes lie within a cache line of the file;
/// 0 while the archive has bytes of its own.
std::size_t Misalignment(const CArchive& archive, const std::byte* target)
{
    if (!archive.IsBufferEmpty())
        return 0;
    const ULONGLONG position = archive.GetFile()->GetPosition();
    return std::size_t(position - reinterpret_cast<std::uintptr_t>(target)) % kCacheLine;
}

/// The count in front of the numbers puts them at an odd place of the file, and from there the operating
/// system copies a third slower. So each piece is read a few bytes behind its place, and moved while it is in
/// the cache.
void ReadBytes(CArchive& archive, std::byte* target, std::size_t size)
{
    while (size != 0) {
        const std::size_t piece = std::min(size, kPiece);
        std::size_t shift = Misalignment(archive, target);
        if (shift > size - piece)
            shift = 0;
        archive.EnsureRead(target + shift, UINT(piece));
        if (shift != 0)
            std::memmove(target, target + shift, piece);
        target += piece;
        size -= piece;
    }
}

void ReadInts(CArchive& archive, int* values, int count)
{
    if constexpr (std::endian::native == std::endian::little) {
        ReadBytes(archive, reinterpret_cast<std::byte*>(values), std::size_t(count) * sizeof(int));
        return;
    }
    std::for_each_n(values, count, [&](int& value) { archive >> value; });
}

} // namespace

CIntArrayID::CIntArrayID(int count, int keepSize)
{
    SetSize(count);
    if (keepSize == 0)
        m_size = 0;
}

CIntArrayID::~CIntArrayID()
{
    delete[] m_data;
}

CIntArrayID& CIntArrayID::operator=(const CIntArrayID& other)
{
    Copy(other);
    return *this;
}

void CIntArrayID::Init(int count)
{
    if (count < 0)
        AfxThrowInvalidArgException();
    m_size = 0;
    SetSize(count);
    m_size = 0;
}

int* CIntArrayID::GetData(int& size)
{
    size = m_size;
    return m_data;
}

const int* CIntArrayID::GetData(int& size) const
{
    size = m_size;
    return m_data;
}

void CIntArrayID::ThrowBadIndex()
{
    AfxThrowInvalidArgException();
}

/// Moves the first `kept` elements to a block of exactly `capacity`; 0 frees it.
void CIntArrayID::Reallocate(int capacity, int kept)
{
    int* block = nullptr;
    if (capacity != 0) {
        block = new (std::nothrow) int[static_cast<std::size_t>(capacity)];
        if (block == nullptr)
            AfxThrowMemoryException();
        std::copy_n(m_data, kept, block);
    }
    delete[] m_data;
    m_data = block;
    m_capacity = capacity;
}

/// Makes room for `size` elements by the rule of growth; only the first `kept` keep their values.
void CIntArrayID::MakeRoom(int size, int kept)
{
    if (size > m_capacity)
        Reallocate(vak::detail::GrownCapacity(m_capacity, vak::detail::AutomaticGrowth(m_size), size), kept);
}

void CIntArrayID::SetSize(int size)
{
    if (size < 0)
        AfxThrowInvalidArgException();
    if (size == 0)
        Reallocate(0, 0);
    MakeRoom(size, m_size);
    if (size > m_size)
        std::fill(m_data + m_size, m_data + size, 0);
    m_size = size;
}

int CIntArrayID::Add(int value)
{
    const int index = m_size;
    SetAtGrow(index, value);
    return index;
}

void CIntArrayID::SetAtGrow(int index, int value)
{
    if (index < 0)
        AfxThrowInvalidArgException();
    if (index >= m_size)
        SetSize(vak::detail::SizeAfterInsertion(m_size, index, 1));
    m_data[index] = value;
}

/// Lengthens the array so that `count` elements of any value stand at `index`.
void CIntArrayID::OpenGap(int index, int count)
{
    const int oldSize = m_size;
    SetSize(vak::detail::SizeAfterInsertion(oldSize, index, count));
    if (index < oldSize)
        std::move_backward(m_data + index, m_data + oldSize, m_data + m_size);
}

void CIntArrayID::InsertAt(int index, int value, int count)
{
    if (index < 0 || count < 1)
        AfxThrowInvalidArgException();
    OpenGap(index, count);
    std::fill_n(m_data + index, count, value);
}

void CIntArrayID::InsertAt(int index, const CIntArrayID* other)
{
    if (index < 0 || other == nullptr)
        AfxThrowInvalidArgException();
    const int count = other->m_size;
    if (count == 0)
        return;
    OpenGap(index, count);
    // An array inserted into itself has its end behind the gap now.
    const int front = other == this ? std::min(index, count) : count;
    std::copy_n(other->m_data, front, m_data + index);
    if (front < count)
        std::copy_n(m_data + index + count, count - front, m_data + index + front);
}

void CIntArrayID::RemoveAt(int index, int count)
{
    vak::detail::CheckRange(m_size, index, count);
    if (count == 0)
        return;
    std::copy(m_data + index + count, m_data + m_size, m_data + index);
    m_size -= count;
}

int CIntArrayID::Append(const CIntArrayID& other)
{
    const int first = m_size;
    InsertAt(first, &other);
    return first;
}

void CIntArrayID::Copy(const CIntArrayID& other)
{
    if (this == &other)
        return;
    SetSize(other.m_size);
    std::copy_n(other.m_data, m_size, m_data);
}

void CIntArrayID::FreeExtra()
{
    if (m_size != m_capacity)
        Reallocate(m_size, m_size);
}

void CIntArrayID::Serialize(CArchive& archive)
{
    if (archive.IsStoring()) {
        archive.WriteCount(DWORD_PTR(m_size));
        for (int done = 0; done < m_size;) {
            const int count = std::min(m_size - done, kChunk);
            WriteInts(archive, m_data + done, count);
            done += count;
        }
        return;
    }
    try {
        Read(archive);
    } catch (...) {
        RemoveAll();
        throw;
    }
}

void CIntArrayID::Read(CArchive& archive)
{
    const ULONGLONG count = archive.ReadCount();
    const ULONGLONG left = vak::detail::ArchiveBytesLeft(archive);
    if (count > left / sizeof(int))
        AfxThrowArchiveException(CArchiveException::endOfFile, archive.m_strFileName);
    if (count > INT_MAX)
        AfxThrowArchiveException(CArchiveException::badIndex, archive.m_strFileName);
    const int size = static_cast<int>(count);
    if (left == vak::detail::kBytesLeftUnknown) {
        const auto bytes = vak::detail::ReadArchiveBytes(archive, count * sizeof(int));
        SetSize(size);
        for (int i = 0; i < size; ++i)
            m_data[i] = vak::detail::LoadLittleEndian<int>(&bytes[std::size_t(i) * sizeof(int)]);
        return;
    }
    if (size == 0)
        return RemoveAll();
    // Everything is overwritten: neither the old values nor zeros are put there first.
    MakeRoom(size, 0);
    m_size = size;
    ReadInts(archive, m_data, size);
}
