#include "framework/base/SystemFolder.h"

#include <objbase.h>
#include <shlobj.h>

namespace vak::system {

namespace {

/// COM for the duration of one question, whatever the calling thread has set up.
class ComScope
{
public:
    ComScope() : m_result(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    ~ComScope()
    {
        if (SUCCEEDED(m_result))
            CoUninitialize();
    }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;

private:
    HRESULT m_result;
};

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
    void** Receive() { return reinterpret_cast<void**>(&m_object); }

private:
    Interface* m_object = nullptr;
};

} // namespace

bool ReadShortcutTarget(const CString& shortcut, CString& target)
{
    const ComScope com;
    ComPointer<IShellLinkW> link;
    ComPointer<IPersistFile> file;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                link.Receive())))
        return false;
    if (FAILED(link->QueryInterface(IID_IPersistFile, file.Receive())))
        return false;
    WCHAR path[MAX_PATH] = L"";
    if (FAILED(file->Load(shortcut, STGM_READ)) || link->GetPath(path, MAX_PATH, nullptr, 0) != S_OK)
        return false;
    if (path[0] == 0)
        return false;
    target = path;
    return true;
}

} // namespace vak::system
