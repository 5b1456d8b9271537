#include "core/CustomData.h"

#include "core/IntMap.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <new>

using vak::detail::StoredEntry;

CCustomData::CCustomData() = default;

CCustomData::CCustomData(const CCustomData& other)
    : m_stringMode(other.m_stringMode), m_entries(other.m_entries)
{
    if (!HasData())
        m_stringMode = 0;
}

CCustomData& CCustomData::operator=(const CCustomData& other)
{
    if (this == &other)
        return *this;
    RemoveAll();
    if (m_entries.Assign(other.m_entries.Data(), other.m_entries.Size(), other.m_entries.Count()))
        m_stringMode = other.m_stringMode;
    return *this;
}

CCustomData::~CCustomData()
{
    if (m_image != nullptr)
        std::free(m_image);
}

CCustomData* CCustomData::Copy() const
{
    if (!HasData())
        return nullptr;
    std::unique_ptr<CCustomData> copy(new (std::nothrow) CCustomData(*this));
    return copy != nullptr && copy->HasData() ? copy.release() : nullptr;
}

int CCustomData::HasData() const
{
    return m_entries.Size() != 0;
}

int CCustomData::HasData(unsigned int id) const
{
    return static_cast<bool>(m_entries.Find(id));
}

unsigned int CCustomData::GetDataKindOf(unsigned int id) const
{
    const StoredEntry entry = m_entries.Find(id);
    return entry ? entry.Kind() : 0;
}

unsigned int CCustomData::GetDataSize(unsigned int id) const
{
    // Read once through a volatile, or the compiler takes for granted that there is an object.
    const CCustomData* const volatile self = this;
    if (self == nullptr)
        return 0;
    const StoredEntry entry = m_entries.Find(id);
    return entry ? entry.Size() : 0;
}

void* CCustomData::GetCustomPtr(unsigned int id)
{
    const StoredEntry entry = m_entries.Find(id);
    return entry ? entry.Value() : nullptr;
}

const void* CCustomData::GetCustomPtr(unsigned int id) const
{
    const StoredEntry entry = m_entries.Find(id);
    return entry ? entry.Value() : nullptr;
}

int CCustomData::IsEqual(const CCustomData& other) const
{
    CIntMap offsets(101);
    const unsigned char* const start = m_entries.Data();
    for (StoredEntry entry = m_entries.Begin(); !m_entries.IsEnd(entry); entry = entry.Next())
        offsets.Insert(static_cast<int>(entry.Id()), static_cast<int>(entry.header - start));
    for (StoredEntry theirs = other.m_entries.Begin(); !other.m_entries.IsEnd(theirs);
         theirs = theirs.Next()) {
        int offset = 0;
        if (!offsets.Find(static_cast<int>(theirs.Id()), offset))
            continue;
        const StoredEntry ours{m_entries.Begin().header + static_cast<unsigned int>(offset)};
        if (ours.Size() != theirs.Size() || std::memcmp(ours.Value(), theirs.Value(), ours.Size()) != 0)
            return 0;
    }
    return offsets.GetCount() == other.m_entries.Count();
}

void CCustomData::RemoveAll()
{
    m_entries.Clear();
    m_stringMode = 0;
    std::free(m_image);
    m_image = nullptr;
    m_imageSize = 0;
}

void CCustomData::RemoveCustom(unsigned int id)
{
    if (const StoredEntry entry = m_entries.Find(id))
        Remove(entry);
}

void CCustomData::Remove(StoredEntry entry)
{
    if (m_entries.Count() == 1)
        RemoveAll();
    else
        m_entries.Remove(entry);
}

int CCustomData::ChangeID(unsigned int oldId, unsigned int newId)
{
    RemoveCustom(newId);
    const StoredEntry entry = m_entries.Find(oldId);
    if (!entry)
        return 0;
    m_entries.Rename(entry, newId);
    return 1;
}

void CCustomData::Copy(const CCustomData* src, int flags)
{
    constexpr int kKeepExisting = 1;
    constexpr int kReplaceExisting = 2;
    if (src == nullptr || (flags & (kKeepExisting | kReplaceExisting)) == 0)
        return;
    if (src == this) {
        const CCustomData same(*this);
        Copy(&same, flags);
        return;
    }
    const auto& from = src->m_entries;
    for (StoredEntry entry = from.Begin(); !from.IsEnd(entry); entry = entry.Next()) {
        const StoredEntry existing = m_entries.Find(entry.Id());
        if (existing && (flags & kKeepExisting) != 0)
            continue;
        unsigned int kind = entry.Kind();
        if (kind == vak::kind::Untyped) {
            kind = existing ? existing.Kind() : vak::kind::Invalid;
            if (kind == vak::kind::Invalid && m_stringMode != src->m_stringMode)
                continue;
        }
        SetCustom(entry.Id(), entry.Value(), entry.Size(), kind);
    }
}

void CCustomData::CopyID(const CCustomData* src, unsigned int id, ...)
{
    std::va_list ids;
    va_start(ids, id);
    for (; src != nullptr && id != 0; id = va_arg(ids, unsigned int))
        if (const StoredEntry entry = src->m_entries.Find(id))
            SetCustom(id, entry.Value(), entry.Size(), entry.Kind());
    va_end(ids);
}

void CCustomData::SetCustom(unsigned int id, const void* data, unsigned int size, unsigned int kind)
{
    if (size == 0) {
        RemoveCustom(id);
        return;
    }
    const auto* const bytes = static_cast<const unsigned char*>(data);
    const std::less<const unsigned char*> before;
    if (m_entries.Contains(data) || (!before(bytes, m_image) && before(bytes, m_image + m_imageSize))) {
        // Making room may move the bytes away.
        const std::unique_ptr<unsigned char[]> copy(new (std::nothrow) unsigned char[size]);
        if (copy == nullptr)
            return;
        std::memcpy(copy.get(), data, size);
        SetCustom(id, copy.get(), size, kind);
        return;
    }
    if (const StoredEntry entry = Reserve(id, size, kind))
        std::memcpy(entry.Value(), data, size);
}

/// The place for a value of `size` bytes, at least 1, under the id; null when memory ran out.
StoredEntry CCustomData::Reserve(unsigned int id, unsigned int size, unsigned int kind)
{
    StoredEntry entry = m_entries.Find(id);
    if (!entry)
        return m_entries.Append(id, size, kind);
    if (entry.Size() != size) {
        const StoredEntry first = entry;
        entry = m_entries.FindSized(id, size);
        if (!entry) {
            Remove(first);
            return m_entries.Append(id, size, kind);
        }
    }
    entry.SetKind(kind);
    return entry;
}
