#pragma once

#include <objbase.h>

namespace vak::win32 {

/// COM for the duration of one question. A thread that has it already, in whatever apartment, keeps that; one
/// that has not is given an apartment until the scope ends.
class ComScope
{
public:
    ComScope() : m_result(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    ~ComScope()
    {
        // RPC_E_CHANGED_MODE: the thread's own apartment is of the other kind and serves as well; nothing was
        // counted that would have to be given back.
        if (SUCCEEDED(m_result))
            CoUninitialize();
    }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;

private:
    HRESULT m_result;
};

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
