#pragma once

#include "framework/base/SystemText.h"
#include "framework/ui/win32/IconEntries.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <objbase.h>

#include <set>

namespace vak::test {

/// What the script that knows the published format reads from a shortcut file of a folder on the host's
/// drive.
inline CString ReadByScript(const TempFolder& folder, const char* name)
{
    // The host's own program: there is no handle of it to wait for.
    CString command = L"Z:\\usr\\bin\\python3 \"" + CString(VAK_SOURCE_DIR) +
                      L"/tests/support/read_shortcut.py\" \"" + folder.Path(name).Mid(2) + L"\" \"" +
                      folder.Path("script.out").Mid(2) + L"\"";
    command.Replace(L'\\', L'/');
    WinExec(CStringA(command), SW_HIDE);
    for (int i = 0; i < 400 && !folder.Has("script.out"); ++i)
        Sleep(50);
    const std::string bytes = folder.Read("script.out");
    std::filesystem::remove(folder.Host("script.out"));
    CString text;
    vak::system::ToWide(CP_UTF8, bytes.data(), bytes.size(), text);
    return text;
}

/// While it lives, the icons that the shell gives are counted; freeing one that is not alive fails the test.
class CountedIcons
{
public:
    CountedIcons() : m_before(win32::CurrentIconEntries())
    {
        s_alive.clear();
        s_flags = 0;
        win32::CurrentIconEntries() = {Get, Destroy};
    }
    ~CountedIcons() { win32::CurrentIconEntries() = m_before; }
    CountedIcons(const CountedIcons&) = delete;
    CountedIcons& operator=(const CountedIcons&) = delete;

    static int Alive() { return static_cast<int>(s_alive.size()); }
    /// All that the shell was asked with.
    static UINT Flags() { return s_flags; }

private:
    static DWORD_PTR WINAPI Get(LPCWSTR path, DWORD attributes, SHFILEINFOW* info, UINT size, UINT flags)
    {
        const DWORD_PTR found = SHGetFileInfoW(path, attributes, info, size, flags);
        EXPECT_TRUE(s_alive.insert(info->hIcon).second);
        s_flags |= flags;
        return found;
    }
    static BOOL WINAPI Destroy(HICON icon)
    {
        EXPECT_EQ(s_alive.erase(icon), 1u);
        return DestroyIcon(icon);
    }

    static inline std::set<HICON> s_alive;
    static inline UINT s_flags = 0;
    const win32::IconEntries m_before;
};

/// The calling thread's apartment of COM, -1 when it has none.
inline int Apartment()
{
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    return CoGetApartmentType(&type, &qualifier) == S_OK ? static_cast<int>(type) : -1;
}

} // namespace vak::test
