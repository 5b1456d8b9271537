#include "core/ElementArray.h"

#include "framework/base/Archive.h"

#include <algorithm>
#include <climits>
#include <memory>
#include <new>

namespace {

/// The bytes that are taken on the word of a count when the file does not tell its length.
constexpr unsigned int kPiece = 1 << 16;

} // namespace

void CElementArray::Serialize(CArchive& archive)
{
    if (archive.IsStoring())
        return Write(archive);
    const unsigned int elementSize = m_elementSize;
    const int growFactor = m_growFactor;
    try {
        Read(archive);
    } catch (...) {
        Resize(0);
        m_elementSize = elementSize;
        m_growFactor = growFactor;
        throw;
    }
}

void CElementArray::Write(CArchive& archive)
{
    archive.WriteCount(DWORD_PTR(m_size));
    archive << DWORD(m_elementSize) << DWORD(m_growFactor);
    for (int i = 0; i < m_size; ++i)
        SerializeElement(archive, Element(i));
}

void CElementArray::Read(CArchive& archive)
{
    const ULONGLONG stored = archive.ReadCount();
    const ULONGLONG left = vak::detail::ArchiveBytesLeft(archive);
    if (stored > left)
        AfxThrowArchiveException(CArchiveException::endOfFile, archive.m_strFileName);
    if (stored > INT_MAX)
        AfxThrowArchiveException(CArchiveException::badIndex, archive.m_strFileName);
    const int count = static_cast<int>(stored);
    const int piece = static_cast<int>(kPiece / std::max(m_elementSize, 1u)) + 1;
    const bool isKnown = left != vak::detail::kBytesLeftUnknown;
    Resize(isKnown ? count : std::min(count, std::max(piece, m_capacity)));

    DWORD elementSize, growFactor;
    archive >> elementSize >> growFactor;
    const ULONGLONG room = ULONGLONG(std::max(count, m_capacity)) * m_elementSize;
    const bool isLost = elementSize == 0 && m_elementSize != 0 && count != 0;
    if (isLost || elementSize > INT_MAX || ULONGLONG(count) * elementSize > room)
        AfxThrowArchiveException(CArchiveException::badIndex, archive.m_strFileName);
    // The scratch is never smaller than what the class was made for.
    const std::size_t scratchSize = std::max<std::size_t>({elementSize, m_elementSize, 1});
    if (elementSize != m_elementSize)
        ReplaceElementSize(static_cast<unsigned int>(elementSize));
    m_growFactor = static_cast<int>(growFactor);
    if (count != 0)
        ReadElements(archive, count, scratchSize);
}

/// Constructs as many elements of another size in the same storage, which has room for them.
void CElementArray::ReplaceElementSize(unsigned int elementSize)
{
    const int size = m_size;
    m_size = 0;
    MyDestructElements(m_data, size);
    if (elementSize > m_elementSize)
        m_capacity = static_cast<int>(Bytes(m_capacity) / elementSize);
    m_elementSize = elementSize;
    MyConstructElements(m_data, size);
    m_size = size;
}

/// Makes room as the elements of a file that does not tell its length arrive, whatever its grow factor says.
void CElementArray::LengthenTo(int size)
{
    if (size > m_capacity && !TryReallocate(size))
        AfxThrowMemoryException();
    Resize(size);
}

void CElementArray::ReadElements(CArchive& archive, int count, std::size_t scratchSize)
{
    const std::unique_ptr<std::byte[]> scratch(new (std::nothrow) std::byte[scratchSize]);
    if (scratch == nullptr)
        AfxThrowMemoryException();
    ConstructElement(scratch.get());
    for (int i = 0; i < count; ++i) {
        if (i == m_size)
            LengthenTo(static_cast<int>(std::min<LONGLONG>(count, 2 * LONGLONG(i))));
        SerializeElement(archive, scratch.get());
        CopyElement(Element(i), scratch.get());
    }
}
