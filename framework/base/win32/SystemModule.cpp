#include "framework/base/SystemModule.h"

namespace vak::system {

namespace {

/// An absolute path, without which the system searches for the file.
CString Absolute(const CString& path)
{
    const DWORD needed = GetFullPathNameW(path, 0, nullptr, nullptr);
    CString full;
    const DWORD length = GetFullPathNameW(path, needed, full.GetBuffer(static_cast<int>(needed)), nullptr);
    full.ReleaseBuffer(length < needed ? static_cast<int>(length) : 0);
    return full;
}

/// A Windows 7 without its update KB2533623 refuses the LOAD_LIBRARY_SEARCH_ flags; the update brought this
/// function together with them.
bool HasSearchFlags()
{
    static const bool has = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "AddDllDirectory") != nullptr;
    return has;
}

/// Without those flags the search ends in the current directory, unless the process has taken it out.
HMODULE LoadWithoutCurrentDirectory(const CString& path)
{
    wchar_t before[MAX_PATH] = {};
    const DWORD length = GetDllDirectoryW(MAX_PATH, before);
    SetDllDirectoryW(L"");
    const HMODULE module = LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    const DWORD error = GetLastError();
    if (length < MAX_PATH)
        SetDllDirectoryW(length ? before : nullptr);
    SetLastError(error);
    return module;
}

/// Keeps the system from showing boxes of its own about a library that it cannot load.
class QuietErrors
{
public:
    QuietErrors() { SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &m_before); }
    ~QuietErrors() { SetThreadErrorMode(m_before, nullptr); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

private:
    DWORD m_before = 0;
};

HMODULE WithError(HMODULE module, DWORD& error)
{
    error = module ? ERROR_SUCCESS : GetLastError();
    return module;
}

} // namespace

HMODULE MapModule(const CString& path, DWORD& error)
{
    const QuietErrors quiet;
    return WithError(LoadLibraryExW(Absolute(path), nullptr, DONT_RESOLVE_DLL_REFERENCES), error);
}

HMODULE LoadModule(const CString& path, DWORD& error)
{
    const QuietErrors quiet;
    const CString full = Absolute(path);
    if (!HasSearchFlags())
        return WithError(LoadWithoutCurrentDirectory(full), error);
    return WithError(
        LoadLibraryExW(full, nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS),
        error);
}

void UnloadModule(HMODULE module)
{
    FreeLibrary(module);
}

void* FindSymbol(HMODULE module, const CStringA& name)
{
    return reinterpret_cast<void*>(GetProcAddress(module, name));
}

HMODULE ModuleAt(const void* address)
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<LPCWSTR>(address), &module);
    return module;
}

} // namespace vak::system
