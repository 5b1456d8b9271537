#pragma once

/// The root of the serialisable classes, and what a class knows about itself at run time.
///
/// A class derived from CObject names itself with one of three pairs of macros, each including the one
/// before: DYNAMIC (a run-time class), DYNCREATE (objects can be created from it), SERIAL (objects travel
/// through a CArchive and are found by name when read back). Run-time class records are static data of the
/// module that implements the class: pointers to them are invalid once that module is unloaded.

#include "framework/base/Platform.h"

class CArchive;
class CObject;
struct CRuntimeClass;

/// Or'ed into the schema number of IMPLEMENT_SERIAL: objects of other schemas are read too, and `Serialize`
/// asks CArchive::GetObjectSchema which one lies before it.
#define VERSIONABLE_SCHEMA 0x80000000u

/// What a class knows about itself. Static data, never built by hand: the macros below do.
struct VAK_API CRuntimeClass
{
    LPCSTR m_lpszClassName;
    int m_nObjectSize;
    /// 0xFFFF for a class that does not serialise; VERSIONABLE_SCHEMA may be set.
    UINT m_wSchema;
    /// Null for a class that cannot be created dynamically.
    CObject* (*m_pfnCreateObject)();
    /// Null for CObject itself.
    CRuntimeClass* (*m_pfnGetBaseClass)();
    /// The next of the registered classes; the registry's, not the reader's.
    CRuntimeClass* m_pNextClass;

    /// A new object that the caller deletes; null when the class is not dynamically creatable.
    CObject* CreateObject() const;
    /// Non-zero when this is `base` or derives from it.
    BOOL IsDerivedFrom(const CRuntimeClass* base) const;

    /// The serialisable class of that name, or null. Of two modules that register the same name the later one
    /// answers, until it is unloaded. Any thread may ask.
    static CRuntimeClass* FromName(LPCSTR name);
    static CObject* CreateObject(LPCSTR name);
};

/// Root of everything that serialises or wants a run-time class. Not copyable.
class VAK_API CObject
{
public:
    virtual CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    /// Non-zero when objects of the class travel through CArchive::WriteObject.
    BOOL IsSerializable() const;
    /// Non-zero when the object is of `runtimeClass` or of a class derived from it.
    BOOL IsKindOf(const CRuntimeClass* runtimeClass) const;

    /// Writes the object to the archive or reads it back; the base does neither.
    virtual void Serialize(CArchive& archive);

    static CRuntimeClass classCObject;
    static CRuntimeClass* GetThisClass();

protected:
    CObject() = default;
};

namespace vak::detail {

/// Keeps a class in the registry of serialisable classes for as long as its module is loaded.
class VAK_API ClassRegistration
{
public:
    explicit ClassRegistration(CRuntimeClass* runtimeClass);
    ~ClassRegistration();
    ClassRegistration(const ClassRegistration&) = delete;
    ClassRegistration& operator=(const ClassRegistration&) = delete;

private:
    CRuntimeClass* m_class;
};

/// CArchive::ReadObject, for the macro below, which knows the archive by name only.
VAK_API CObject* ReadSerialObject(CArchive& archive, const CRuntimeClass* runtimeClass);

} // namespace vak::detail

#define RUNTIME_CLASS(class_name) (class_name::GetThisClass())

#define DECLARE_DYNAMIC(class_name)                                                                          \
public:                                                                                                      \
    static CRuntimeClass class##class_name;                                                                  \
    static CRuntimeClass* GetThisClass();                                                                    \
    CRuntimeClass* GetRuntimeClass() const override;                                                         \
                                                                                                             \
protected:                                                                                                   \
    static CRuntimeClass* GetBaseClassOfThis();

#define DECLARE_DYNCREATE(class_name)                                                                        \
    DECLARE_DYNAMIC(class_name)                                                                              \
public:                                                                                                      \
    static CObject* CreateObject();

#define DECLARE_SERIAL(class_name)                                                                           \
    DECLARE_DYNCREATE(class_name)                                                                            \
    friend CArchive& operator>>(CArchive& archive, class_name*& object)                                      \
    {                                                                                                        \
        object =                                                                                             \
            static_cast<class_name*>(vak::detail::ReadSerialObject(archive, RUNTIME_CLASS(class_name)));     \
        return archive;                                                                                      \
    }

#define VAK_IMPLEMENT_CLASS(class_name, base_class_name, schema, create)                                     \
    CRuntimeClass* class_name::GetBaseClassOfThis()                                                          \
    {                                                                                                        \
        return RUNTIME_CLASS(base_class_name);                                                               \
    }                                                                                                        \
    constinit CRuntimeClass class_name::class##class_name = {                                                \
        #class_name, int(sizeof(class_name)), schema, create, &class_name::GetBaseClassOfThis, nullptr};     \
    CRuntimeClass* class_name::GetThisClass()                                                                \
    {                                                                                                        \
        return &class##class_name;                                                                           \
    }                                                                                                        \
    CRuntimeClass* class_name::GetRuntimeClass() const                                                       \
    {                                                                                                        \
        return GetThisClass();                                                                               \
    }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                                       \
    VAK_IMPLEMENT_CLASS(class_name, base_class_name, 0xFFFF, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                                                     \
    CObject* class_name::CreateObject()                                                                      \
    {                                                                                                        \
        return new class_name;                                                                               \
    }                                                                                                        \
    VAK_IMPLEMENT_CLASS(class_name, base_class_name, 0xFFFF, &class_name::CreateObject)

#define IMPLEMENT_SERIAL(class_name, base_class_name, schema)                                                \
    CObject* class_name::CreateObject()                                                                      \
    {                                                                                                        \
        return new class_name;                                                                               \
    }                                                                                                        \
    VAK_IMPLEMENT_CLASS(class_name, base_class_name, schema, &class_name::CreateObject)                      \
    static const vak::detail::ClassRegistration registrationOf##class_name(RUNTIME_CLASS(class_name));
