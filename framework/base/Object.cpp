#include "framework/base/Object.h"

#include "framework/base/detail/ClassRegistry.h"

#include <mutex>
#include <string_view>

namespace {

/// Newest first.
constinit CRuntimeClass* registeredClasses = nullptr;

/// Made on first use and never destroyed: modules register before this file's static objects live and leave
/// after they have gone.
std::mutex& RegistryLock()
{
    static auto* const lock = new std::mutex;
    return *lock;
}

} // namespace

constinit CRuntimeClass CObject::classCObject = {"CObject", int(sizeof(CObject)), 0xFFFF, nullptr, nullptr,
                                                 nullptr};

CObject* CRuntimeClass::CreateObject() const
{
    return m_pfnCreateObject == nullptr ? nullptr : m_pfnCreateObject();
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const
{
    const CRuntimeClass* candidate = this;
    while (candidate != nullptr && candidate != base)
        candidate = candidate->m_pfnGetBaseClass == nullptr ? nullptr : candidate->m_pfnGetBaseClass();
    return candidate != nullptr;
}

CRuntimeClass* CRuntimeClass::FromName(LPCSTR name)
{
    return name == nullptr ? nullptr : vak::detail::FindRegisteredClass(name);
}

CObject* CRuntimeClass::CreateObject(LPCSTR name)
{
    const CRuntimeClass* found = FromName(name);
    return found == nullptr ? nullptr : found->CreateObject();
}

CRuntimeClass* CObject::GetThisClass()
{
    return &classCObject;
}

CRuntimeClass* CObject::GetRuntimeClass() const
{
    return GetThisClass();
}

BOOL CObject::IsSerializable() const
{
    return GetRuntimeClass()->m_wSchema != 0xFFFF;
}

BOOL CObject::IsKindOf(const CRuntimeClass* runtimeClass) const
{
    return GetRuntimeClass()->IsDerivedFrom(runtimeClass);
}

void CObject::Serialize(CArchive&) {}

namespace vak::detail {

ClassRegistration::ClassRegistration(CRuntimeClass* runtimeClass) : m_class(runtimeClass)
{
    const std::scoped_lock lock(RegistryLock());
    m_class->m_pNextClass = registeredClasses;
    registeredClasses = m_class;
}

ClassRegistration::~ClassRegistration()
{
    const std::scoped_lock lock(RegistryLock());
    CRuntimeClass** link = &registeredClasses;
    while (*link != nullptr && *link != m_class)
        link = &(*link)->m_pNextClass;
    if (*link != nullptr)
        *link = m_class->m_pNextClass;
}

CRuntimeClass* FindRegisteredClass(std::string_view name)
{
    const std::scoped_lock lock(RegistryLock());
    CRuntimeClass* candidate = registeredClasses;
    while (candidate != nullptr && name != candidate->m_lpszClassName)
        candidate = candidate->m_pNextClass;
    return candidate;
}

} // namespace vak::detail
