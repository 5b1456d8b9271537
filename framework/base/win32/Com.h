#pragma once

#include <objbase.h>

namespace vak::win32 {

/// Owns one reference to an object.
template <class Interface>
class ComPointer
{
public:
    ComPointer() = default;
    ~ComPointer()
    {
        if (m_object != nullptr)
            m_object->Release();
    }
    ComPointer(const ComPointer&) = delete;
    ComPointer& operator=(const ComPointer&) = delete;
    Interface* operator->() const { return m_object; }
    Interface& operator*() const { return *m_object; }
    void** Receive() { return reinterpret_cast<void**>(&m_object); }

private:
    Interface* m_object = nullptr;
};

} // namespace vak::win32
