#include "core/CustomData.h"

#include "framework/base/Archive.h"
#include "framework/base/Exception.h"
#include "framework/base/FileException.h"

#include <cstdlib>
#include <cstring>
#include <vector>

using vak::detail::EntryBlock;
using vak::detail::LoadLittleEndian;
using vak::detail::StoredEntry;
using vak::detail::StoreLittleEndian;

namespace {

constexpr unsigned int kCurrentForm = 'CUS4';
constexpr unsigned int kWideOldForm = 'CUSU';
constexpr unsigned int kNarrowOldForm = 'CUST';

constexpr unsigned int kRawHeaderSize = 20;
constexpr unsigned int kImageHeaderSize = offsetof(CustomPrivateData, value);
constexpr unsigned int kImageIdAt = offsetof(CustomPrivateData, id);
constexpr unsigned int kImageSizeAt = offsetof(CustomPrivateData, size);
constexpr unsigned int kImageKindAt = offsetof(CustomPrivateData, kind);

/// The old structure counted a byte of the value in its header of 16.
constexpr unsigned int kOldHeaderSize = 12;
constexpr unsigned int kOldStride = 15;

[[noreturn]] void ThrowDamaged()
{
    AfxThrowFileException(CFileException::genericException, -1);
}

std::vector<BYTE> ReadBlock(CArchive& archive, unsigned int size)
{
    try {
        return vak::detail::ReadArchiveBytes(archive, size);
    } catch (CArchiveException* e) {
        if (e->m_cause != CArchiveException::endOfFile)
            throw;
        e->Delete();
    }
    ThrowDamaged();
}

/// True when the entries are those that their header tells of.
bool IsEntries(const unsigned char* entries, std::size_t size, std::uint32_t count, std::uint32_t valueBytes)
{
    return size == std::uint64_t{count} * StoredEntry::kHeaderSize + valueBytes &&
           EntryBlock::Fits(size, count) && EntryBlock::Check(entries, size, count);
}

/// Adds the entries of an image up to the one without a link; false when it runs past `size` bytes.
bool ReadImage(EntryBlock& entries, const unsigned char* image, std::size_t size)
{
    for (;;) {
        if (size < kImageHeaderSize)
            return false;
        const auto valueSize = LoadLittleEndian<std::uint32_t>(image + kImageSizeAt);
        if (size - kImageHeaderSize < valueSize)
            return false;
        const StoredEntry entry =
            entries.Append(LoadLittleEndian<std::uint32_t>(image + kImageIdAt), valueSize,
                           LoadLittleEndian<std::uint32_t>(image + kImageKindAt));
        if (!entry)
            return false;
        std::memcpy(entry.Value(), image + kImageHeaderSize, valueSize);
        if (LoadLittleEndian<std::uintptr_t>(image) == 0)
            return true;
        image += kImageHeaderSize + valueSize;
        size -= kImageHeaderSize + valueSize;
    }
}

} // namespace

unsigned int CCustomData::GetRawSize() const
{
    return HasData() ? kRawHeaderSize + m_entries.Size() : 0;
}

void CCustomData::WriteRawHeader(unsigned char* raw) const
{
    StoreLittleEndian<std::uint16_t>(raw, 1);
    StoreLittleEndian<std::uint16_t>(raw + 2, 0);
    StoreLittleEndian(raw + 4, m_entries.Count());
    StoreLittleEndian(raw + 8, m_entries.ValueBytes());
    StoreLittleEndian(raw + 12, m_stringMode);
    StoreLittleEndian<std::uint32_t>(raw + 16, 0);
}

/// Writes GetRawSize bytes.
void CCustomData::WriteRaw(unsigned char* raw) const
{
    WriteRawHeader(raw);
    std::memcpy(raw + kRawHeaderSize, m_entries.Data(), m_entries.Size());
}

/// Replaces the store by a raw form of exactly `length` bytes; false, and empty, when it is damaged.
bool CCustomData::ReadRaw(const unsigned char* raw, std::size_t length)
{
    RemoveAll();
    if (length < kRawHeaderSize)
        return false;
    const auto count = LoadLittleEndian<std::uint32_t>(raw + 4);
    const auto valueBytes = LoadLittleEndian<std::uint32_t>(raw + 8);
    if (valueBytes == 0)
        return true;
    const unsigned char* const entries = raw + kRawHeaderSize;
    const std::size_t size = length - kRawHeaderSize;
    if (!IsEntries(entries, size, count, valueBytes))
        return false;
    if (!m_entries.Assign(entries, static_cast<std::uint32_t>(size), count))
        return false;
    m_stringMode = LoadLittleEndian<std::uint32_t>(raw + 12);
    return true;
}

unsigned char* CCustomData::RawFromCustomData(const CCustomData& data, unsigned int& size) const
{
    size = data.GetRawSize();
    auto* raw = size != 0 ? static_cast<unsigned char*>(std::malloc(size)) : nullptr;
    if (raw == nullptr)
        size = 0;
    else
        data.WriteRaw(raw);
    return raw;
}

void CCustomData::CustomDataFromRaw(CCustomData& out, const unsigned char* raw) const
{
    if (raw == nullptr) {
        out.RemoveAll();
        return;
    }
    const auto count = LoadLittleEndian<std::uint32_t>(raw + 4);
    const auto valueBytes = LoadLittleEndian<std::uint32_t>(raw + 8);
    out.ReadRaw(raw, kRawHeaderSize + std::size_t{count} * StoredEntry::kHeaderSize + valueBytes);
}

const void* CCustomData::GetData(unsigned int& size) const
{
    unsigned char* last = nullptr;
    const void* const image = BuildImage(last);
    size = image != nullptr ? m_imageSize : 0;
    return image;
}

CustomPrivateData* CCustomData::UpdateDataPointers()
{
    unsigned char* last = nullptr;
    BuildImage(last);
    // Entries lie unaligned: the type is a name for the layout, whoever reads it does so bytewise.
    return static_cast<CustomPrivateData*>(static_cast<void*>(last));
}

/// Writes the entries with their links into the image, which keeps its place while the store does not change.
unsigned char* CCustomData::BuildImage(unsigned char*& last) const
{
    constexpr unsigned int kLink = kImageHeaderSize - StoredEntry::kHeaderSize;
    const unsigned int size = m_entries.Size() + m_entries.Count() * kLink;
    if (size == 0)
        return nullptr;
    if (size != m_imageSize) {
        std::free(m_image);
        m_image = static_cast<unsigned char*>(std::malloc(size));
        m_imageSize = m_image != nullptr ? size : 0;
    }
    if (m_image == nullptr)
        return nullptr;
    unsigned char* at = m_image;
    for (StoredEntry entry = m_entries.Begin(); !m_entries.IsEnd(entry); entry = entry.Next()) {
        last = at;
        const unsigned int length = StoredEntry::kHeaderSize + entry.Size();
        const unsigned char* const next = at + kLink + length;
        std::memcpy(at, &next, sizeof next);
        std::memcpy(at + kLink, entry.header, length);
        at += kLink + length;
    }
    std::memset(last, 0, sizeof(CustomPrivateData*));
    return m_image;
}

void CCustomData::SetData(const void* image, unsigned int size)
{
    EntryBlock entries;
    if (image != nullptr && size != 0 && !ReadImage(entries, static_cast<const unsigned char*>(image), size))
        entries.Clear();
    // The image may be this store's own, so it is given up last.
    RemoveAll();
    m_entries.Swap(entries);
}

void CCustomData::Serialize(CArchive& archive)
{
    if (archive.IsStoring())
        WriteArchiveForm(archive);
    else
        ReadArchiveForm(archive);
}

void CCustomData::WriteArchiveForm(CArchive& archive) const
{
    unsigned char head[8 + kRawHeaderSize];
    StoreLittleEndian(head, kCurrentForm);
    StoreLittleEndian(head + 4, GetRawSize());
    if (!HasData()) {
        archive.Write(head, 8);
        return;
    }
    WriteRawHeader(head + 8);
    archive.Write(head, sizeof head);
    archive.Write(m_entries.Data(), m_entries.Size());
}

void CCustomData::ReadArchiveForm(CArchive& archive)
{
    RemoveAll();
    unsigned int form = 0;
    archive >> form;
    if (form == kCurrentForm) {
        ReadCurrentForm(archive);
        return;
    }
    if (form != kWideOldForm && form != kNarrowOldForm)
        ThrowDamaged();
    const unsigned int mode = form == kWideOldForm ? 1 : 2;
    m_stringMode = mode;
    try {
        ReadPreviousVersion(archive);
    } catch (...) {
        RemoveAll();
        throw;
    }
    // A record that replaces the only one empties the store for a moment, which clears the mode.
    m_stringMode = HasData() ? mode : 0;
}

void CCustomData::ReadCurrentForm(CArchive& archive)
{
    unsigned int length = 0;
    archive >> length;
    if (length == 0)
        return;
    const ULONGLONG left = vak::detail::ArchiveBytesLeft(archive);
    if (left == vak::detail::kBytesLeftUnknown || length <= kRawHeaderSize) {
        if (!ReadRaw(ReadBlock(archive, length).data(), length))
            ThrowDamaged();
        return;
    }
    if (length > left)
        ThrowDamaged();
    unsigned char header[kRawHeaderSize];
    archive.EnsureRead(header, sizeof header);
    const unsigned int size = length - kRawHeaderSize;
    // The entries go where they stay, with no block in between.
    EntryBlock entries;
    unsigned char* const place = entries.Prepare(size);
    if (place == nullptr)
        AfxThrowMemoryException();
    archive.EnsureRead(place, size);
    const auto valueBytes = LoadLittleEndian<std::uint32_t>(header + 8);
    if (valueBytes == 0)
        return;
    const auto count = LoadLittleEndian<std::uint32_t>(header + 4);
    if (!IsEntries(place, size, count, valueBytes))
        ThrowDamaged();
    entries.Accept(size, count);
    m_entries.Swap(entries);
    m_stringMode = LoadLittleEndian<std::uint32_t>(header + 12);
}

void CCustomData::ReadPreviousVersion(CArchive& archive)
{
    unsigned int size = 0;
    archive >> size;
    if (size == 0)
        return;
    const std::vector<BYTE> chain = ReadBlock(archive, size);
    if (ReadChain(chain.data(), chain.size()))
        return;
    RemoveAll();
    ThrowDamaged();
}

/// Sets each record of a chain that must end within `length` bytes; false, and empty, when it does not.
bool CCustomData::ReadChain(const unsigned char* chain, std::size_t length)
{
    for (;;) {
        const std::size_t size = length >= kOldHeaderSize ? LoadLittleEndian<std::uint32_t>(chain + 4) : 0;
        if (length < kOldHeaderSize + size)
            break;
        SetCustom(LoadLittleEndian<std::uint32_t>(chain), chain + kOldHeaderSize,
                  static_cast<unsigned int>(size), vak::kind::Untyped);
        if (LoadLittleEndian<std::uint32_t>(chain + 8) == 0)
            return true;
        // The last record may lack the stride's three bytes behind its value, the others may not.
        if (length < size + kOldStride)
            break;
        chain += size + kOldStride;
        length -= size + kOldStride;
    }
    RemoveAll();
    return false;
}

void CCustomData::ConvertPreviousData(CCustomData& out, const CustomPrivateDataOld* chain) const
{
    out.ReadChain(static_cast<const unsigned char*>(static_cast<const void*>(chain)), SIZE_MAX);
}
