// Classes and objects in archives: each is written once and referred to by number afterwards.
#include "framework/base/Archive.h"

#include "framework/base/detail/ArchiveMaps.h"
#include "framework/base/detail/ClassRegistry.h"

#include <cstring>
#include <utility>

namespace {

constexpr WORD kNewClassTag = 0xFFFF;
constexpr WORD kClassTag = 0x8000;
constexpr WORD kBigTag = 0x7FFF;
constexpr DWORD kBigClassTag = 0x80000000;
/// Numbers stay below this, so that none looks like a marker.
constexpr DWORD kNumberLimit = 0x3FFFFFFE;
constexpr UINT kLongestName = 255;

UINT StoredSchema(const CRuntimeClass& runtimeClass)
{
    return runtimeClass.m_wSchema & 0xFFFF;
}

bool ReadsSchema(const CRuntimeClass& runtimeClass, UINT schema)
{
    return (runtimeClass.m_wSchema & VERSIONABLE_SCHEMA) != 0 || StoredSchema(runtimeClass) == schema;
}

void RequireSerializable(const CRuntimeClass& runtimeClass)
{
    if (runtimeClass.m_wSchema == 0xFFFF)
        AfxThrowNotSupportedException();
}

/// Counts how deep objects stand inside each other while one is written or read.
class Nesting
{
public:
    explicit Nesting(int& depth) : m_depth(depth) { ++m_depth; }
    ~Nesting() { --m_depth; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    int& m_depth;
};

} // namespace

namespace vak::detail {

CObject* ReadSerialObject(CArchive& archive, const CRuntimeClass* runtimeClass)
{
    return archive.ReadObject(runtimeClass);
}

} // namespace vak::detail

CArchive& operator<<(CArchive& archive, const CObject* object)
{
    archive.WriteObject(object);
    return archive;
}

CArchive& operator>>(CArchive& archive, CObject*& object)
{
    object = archive.ReadObject(nullptr);
    return archive;
}

CArchive& operator>>(CArchive& archive, const CObject*& object)
{
    object = archive.ReadObject(nullptr);
    return archive;
}

vak::detail::StoreMap& CArchive::Stored()
{
    RequireStoring();
    if (m_stored == nullptr)
        m_stored = std::make_unique<vak::detail::StoreMap>();
    if (m_stored->next > kNumberLimit)
        Throw(CArchiveException::badIndex);
    return *m_stored;
}

vak::detail::LoadMap& CArchive::Loaded()
{
    RequireLoading();
    if (m_loaded == nullptr)
        m_loaded = std::make_unique<vak::detail::LoadMap>();
    if (m_loaded->entries.size() > kNumberLimit)
        Throw(CArchiveException::badIndex);
    return *m_loaded;
}

/// Writes a number in 16 bits or, behind a marker, in 32; `classBit` is kBigClassTag for a class, else 0.
void CArchive::WriteTag(DWORD index, DWORD classBit)
{
    if (index < kBigTag)
        *this << WORD(index | (classBit != 0 ? kClassTag : 0));
    else
        *this << kBigTag << DWORD(index | classBit);
}

/// Reads a tag into the 32-bit form; `newClass` says that a class follows and there is no number.
DWORD CArchive::ReadTag(bool& newClass)
{
    WORD tag;
    *this >> tag;
    newClass = tag == kNewClassTag;
    if (tag == kBigTag) {
        DWORD bigTag;
        *this >> bigTag;
        return bigTag;
    }
    return (tag & kClassTag) != 0 ? kBigClassTag | DWORD(tag & ~kClassTag) : tag;
}

void CArchive::MapObject(const CObject* object)
{
    if (IsStoring()) {
        auto& map = Stored();
        if (object != nullptr)
            map.indices[object] = map.next++;
    } else if (auto& map = Loaded(); object != nullptr) {
        map.entries.push_back({.object = const_cast<CObject*>(object)});
    }
}

void CArchive::WriteClass(const CRuntimeClass* runtimeClass)
{
    auto& map = Stored();
    if (map.lastClass == runtimeClass) {
        WriteTag(map.lastClassIndex, kBigClassTag);
        return;
    }
    RequireSerializable(*runtimeClass);
    const auto found = map.indices.find(runtimeClass);
    if (found != map.indices.end()) {
        map.lastClass = runtimeClass;
        map.lastClassIndex = found->second;
        WriteTag(found->second, kBigClassTag);
        return;
    }
    const std::size_t length = std::strlen(runtimeClass->m_lpszClassName);
    if (length > kLongestName)
        AfxThrowNotSupportedException();
    *this << kNewClassTag << WORD(StoredSchema(*runtimeClass)) << WORD(length);
    Write(runtimeClass->m_lpszClassName, UINT(length));
    map.indices[runtimeClass] = map.next++;
}

void CArchive::WriteObject(const CObject* object)
{
    auto& map = Stored();
    if (object == nullptr) {
        WriteTag(0, 0);
        return;
    }
    const auto found = map.indices.find(object);
    if (found != map.indices.end()) {
        WriteTag(found->second, 0);
        return;
    }
    if (m_nesting >= kMaxObjectNesting)
        Throw(CArchiveException::genericException);
    const Nesting nesting(m_nesting);
    WriteClass(object->GetRuntimeClass());
    MapObject(object);
    const_cast<CObject*>(object)->Serialize(*this);
}

/// Reads a class that appears for the first time and returns its number.
DWORD CArchive::ReadNewClass()
{
    WORD schema;
    WORD length;
    *this >> schema >> length;
    if (length > kLongestName)
        Throw(CArchiveException::badClass);
    char name[kLongestName];
    EnsureRead(name, length);
    CRuntimeClass* found = vak::detail::FindRegisteredClass({name, length});
    if (found == nullptr)
        Throw(CArchiveException::badClass);
    if (!ReadsSchema(*found, schema))
        Throw(CArchiveException::badSchema);
    auto& entries = Loaded().entries;
    entries.push_back({.runtimeClass = found, .schema = schema});
    return DWORD(entries.size() - 1);
}

CRuntimeClass* CArchive::ReadClass(const CRuntimeClass* requested, UINT* schema, DWORD* objectTag)
{
    if (requested != nullptr)
        RequireSerializable(*requested);
    const auto& entries = Loaded().entries;
    bool newClass;
    const DWORD tag = ReadTag(newClass);
    if ((tag & kBigClassTag) == 0) {
        if (objectTag == nullptr)
            Throw(CArchiveException::badIndex);
        *objectTag = tag;
        return nullptr;
    }
    const DWORD index = newClass ? ReadNewClass() : tag & ~kBigClassTag;
    if (index >= entries.size() || entries[index].runtimeClass == nullptr)
        Throw(CArchiveException::badIndex);
    CRuntimeClass* read = entries[index].runtimeClass;
    if (requested != nullptr && !read->IsDerivedFrom(requested))
        Throw(CArchiveException::badClass);
    if (objectTag != nullptr)
        *objectTag = 0;
    *(schema != nullptr ? schema : &m_objectSchema) = entries[index].schema;
    return read;
}

void CArchive::SerializeClass(const CRuntimeClass* runtimeClass)
{
    if (IsStoring())
        WriteClass(runtimeClass);
    else
        ReadClass(runtimeClass);
}

CObject* CArchive::ReadReference(DWORD index, const CRuntimeClass* requested)
{
    if (index == 0)
        return nullptr;
    auto& map = Loaded();
    if (index >= map.entries.size() || map.entries[index].runtimeClass != nullptr ||
        map.entries[index].failed)
        Throw(CArchiveException::badIndex);
    CObject* object = map.entries[index].object;
    if (object != nullptr && requested != nullptr && !object->IsKindOf(requested))
        Throw(CArchiveException::badClass);
    ++map.referencesGiven;
    return object;
}

CObject* CArchive::ReadNewObject(const CRuntimeClass* runtimeClass, UINT schema)
{
    if (m_nesting >= kMaxObjectNesting)
        Throw(CArchiveException::genericException);
    const Nesting nesting(m_nesting);
    CObject* object = runtimeClass->CreateObject();
    if (object == nullptr)
        Throw(CArchiveException::badClass);
    auto& map = Loaded();
    const std::size_t index = map.entries.size();
    const ULONGLONG referencesBefore = map.referencesGiven;
    const UINT outerSchema = std::exchange(m_objectSchema, schema);
    try {
        map.entries.push_back({.object = object});
        object->Serialize(*this);
    } catch (...) {
        if (index < map.entries.size())
            map.entries[index].failed = true;
        if (map.referencesGiven == referencesBefore)
            delete object;
        throw;
    }
    m_objectSchema = outerSchema;
    return object;
}

CObject* CArchive::ReadObject(const CRuntimeClass* requested)
{
    UINT schema = 0;
    DWORD tag = 0;
    const CRuntimeClass* read = ReadClass(requested, &schema, &tag);
    return read == nullptr ? ReadReference(tag, requested) : ReadNewObject(read, schema);
}
