#include "framework/base/SystemModule.h"

#include "framework/base/win32/QuietErrors.h"

#include <winver.h>

#include <vector>

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

HMODULE WithError(HMODULE module, DWORD& error)
{
    error = module ? ERROR_SUCCESS : GetLastError();
    return module;
}

/// The version information of a file; empty when it has none.
std::vector<BYTE> VersionOf(const CString& path)
{
    constexpr DWORD kMost = 1 << 20;
    DWORD unused = 0;
    const DWORD size = GetFileVersionInfoSizeW(path, &unused);
    if (size == 0 || size > kMost)
        return {};
    std::vector<BYTE> version(size);
    if (!GetFileVersionInfoW(path, 0, size, version.data()))
        return {};
    return version;
}

/// A value of version information; `count` in the value's own units, null and 0 when it is not there.
template <class Unit>
const Unit* VersionValue(const std::vector<BYTE>& version, const CString& name, UINT& count)
{
    void* value = nullptr;
    count = 0;
    if (version.empty() || !VerQueryValueW(version.data(), name, &value, &count))
        count = 0;
    return count > 0 ? static_cast<const Unit*>(value) : nullptr;
}

} // namespace

HMODULE MapModule(const CString& path, DWORD& error)
{
    const win32::QuietErrors quiet;
    return WithError(LoadLibraryExW(Absolute(path), nullptr, DONT_RESOLVE_DLL_REFERENCES), error);
}

HMODULE LoadModule(const CString& path, DWORD& error)
{
    const win32::QuietErrors quiet;
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

CString ModuleDescription(const CString& path)
{
    struct Language
    {
        WORD language;
        WORD codePage;
    };
    const win32::QuietErrors quiet;
    const std::vector<BYTE> version = VersionOf(path);
    UINT size = 0;
    const Language* const languages = VersionValue<Language>(version, L"\\VarFileInfo\\Translation", size);
    for (UINT i = 0; i < size / sizeof(Language); ++i) {
        CString name;
        name.Format(L"\\StringFileInfo\\%04x%04x\\FileDescription", languages[i].language,
                    languages[i].codePage);
        UINT length = 0;
        const wchar_t* const text = VersionValue<wchar_t>(version, name, length);
        const CString description(text, static_cast<int>(length));
        const int end = description.Find(L'\0');
        if (length > 0 && end != 0)
            return end < 0 ? description : description.Left(end);
    }
    return {};
}

} // namespace vak::system
