#include "platform/Shortcut.h"

#include "framework/base/StringTable.h"
#include "framework/base/SystemText.h"
#include "framework/ui/win32/IconEntries.h"
#include "platform/ShortcutsArray.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/FaultyFile.h"
#include "tests/support/Print.h"
#include "tests/support/ShortcutFile.h"
#include "tests/support/Slots.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <set>

using vak::test::IsRefused;
using vak::test::ShortcutTo;
using vak::test::TempFolder;

namespace {

/// What the script that knows the published format reads from a shortcut file of a folder on the host's
/// drive.
CString ReadByScript(const TempFolder& folder, const char* name)
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

/// While it lives, the icons that the shell gives are known; freeing one that is not alive fails the test.
struct CountedIcons
{
    CountedIcons()
    {
        vak::win32::CurrentIconEntries() = {
            [](LPCWSTR path, DWORD attributes, SHFILEINFOW* info, UINT size, UINT flags) {
                const DWORD_PTR found = SHGetFileInfoW(path, attributes, info, size, flags);
                EXPECT_TRUE(s_alive.insert(info->hIcon).second);
                EXPECT_EQ(flags & ~UINT(SHGFI_SMALLICON), UINT(SHGFI_ICON));
                return found;
            },
            [](HICON icon) {
                EXPECT_EQ(s_alive.erase(icon), 1u);
                return DestroyIcon(icon);
            }};
    }
    ~CountedIcons() { vak::win32::CurrentIconEntries() = m_before; }

    static inline std::set<HICON> s_alive;
    const vak::win32::IconEntries m_before = vak::win32::CurrentIconEntries();
};

const CString kTarget = L"C:\\windows\\system32\\shell32.dll";

int Create(const CString& path, const CString& target, const CString& description = L"",
           const CString& folder = L"", const CString& arguments = L"")
{
    return CShortcut::CreateShortcut(path, target, arguments, folder, description, MAKEWORD('K', 6));
}

/// What the shortcut says in the script's form; empty, and no field left over, when it cannot be read.
CString Said(CShortcut& shortcut, const CString& path)
{
    const bool isRead = shortcut.Init(path, 1) != 0;
    CString text = shortcut.GetPath() + shortcut.GetLinkPath() + shortcut.GetLinkArguments() +
                   shortcut.GetLinkDescription() + shortcut.GetLinkWorkingDirectory();
    EXPECT_TRUE(isRead || (!shortcut.GetLinkHotKey() && !shortcut.GetLinkIcon()));
    if (!isRead)
        return text;
    text.Format(L"target=%s\narguments=%s\nfolder=%s\ndescription=%s\nhotkey=%04x\n",
                shortcut.GetLinkPath().GetString(), shortcut.GetLinkArguments().GetString(),
                shortcut.GetLinkWorkingDirectory().GetString(), shortcut.GetLinkDescription().GetString(),
                shortcut.GetLinkHotKey());
    return text;
}

/// Shows what derived classes see.
struct Opened : CShortcut
{
    using CShortcut::GetIconLocation;
    bool IsInOrder() const
    {
        return vak::test::InOrder({&m_path, &m_linkPath, &m_arguments, &m_description, &m_workingDirectory,
                                   &m_hotKey, &m_linkIcon, &m_targetIcon});
    }
};

} // namespace

TEST(Shortcut, SaysWhatItWasMadeOfToUsAndToOthers)
{
    const TempFolder folder("shortcut"); // on the host's drive, for the script
    CShortcut shortcut;
    const CString path = folder.Path("Été.lnk");
    ASSERT_EQ(Create(path, L"%WINDIR%\\été.txt", L"Une \x4E2D", L"%TEMP%", L"/a \"b c\""), 1);
    const CString wanted = L"target=C:\\windows\\été.txt\narguments=/a \"b c\"\nfolder=%TEMP%\n"
                           L"description=Une \x4E2D\nhotkey=064b\n";
    EXPECT_EQ(Said(shortcut, path), wanted);
    EXPECT_EQ(ReadByScript(folder, "Été.lnk"), wanted);
    EXPECT_EQ(shortcut.GetPath(), path);
    EXPECT_EQ(shortcut.GetLinkName(), CString(L"été"));
    EXPECT_TRUE(!shortcut.TargetExists() && shortcut.GetLinkIcon() && !shortcut.GetTargetIcon());

    // Characters that the code page of the file's path lacks; replacing the file; a description of its own.
    ASSERT_EQ(Create(path, L"Q:\\\x0101\x4E2D.txt"), 1);
    shortcut.Init(path, 0);
    EXPECT_EQ(shortcut.GetLinkPath(), CString(L"Q:\\\x0101\x4E2D.txt"));
    EXPECT_EQ(shortcut.GetLinkDescription(), CString(L"Été.lnk"));
    ASSERT_EQ(Create(path, kTarget), 1);
    shortcut.Init(path, 0);
    EXPECT_EQ(shortcut.GetLinkDescription(), CString(L"Wine core dll"));
    EXPECT_TRUE(shortcut.TargetExists() && shortcut.GetTargetIcon());
}

TEST(Shortcut, HasItsPathsWholeOrNotAtAll)
{
    const TempFolder folder;
    CShortcut shortcut;
    const std::string distant = "C:\\" + std::string(300, 'x');
    const struct
    {
        std::string stored;
        CString target;
    } rows[] = {{distant, CString(distant.c_str())},
                {distant.substr(0, 259), CString(distant.substr(0, 259).c_str())},
                {"%windir%\\a.txt", L"C:\\windows\\a.txt"},
                {"%nobody%\\a.txt", L""},
                {"C:\\lost ?.txt", L""},
                {"a.txt", L""},
                {"", L""}};
    for (const auto& row : rows) {
        const CString path = folder.Write("a.lnk", ShortcutTo(row.stored));
        EXPECT_EQ(shortcut.Init(path, 0), row.target.IsEmpty() ? 0 : 1) << row.stored;
        EXPECT_EQ(shortcut.GetLinkPath(), row.target);
    }
    // What cannot be kept is not written, and what was there stays.
    const std::string before = folder.Read("a.lnk");
    const CString path = folder.Path("a.lnk");
    const CString longest(distant.substr(0, 259).c_str());
    EXPECT_TRUE(!Create(path, longest + L"x") && !Create(path, kTarget, L"", longest + L"x"));
    EXPECT_TRUE(!Create(path, kTarget, CString(L'd', 1024)) && !Create(path, L""));
    EXPECT_TRUE(!Create(path, kTarget, L"", L"", CString(L'a', 32767)));
    EXPECT_EQ(Create(folder.Path("none\\a.lnk"), kTarget), 0);
    int failing = 0;
    for (bool isMade = false; !isMade;) {
        const vak::test::FailingSystem disk(++failing);
        isMade = Create(path, kTarget) != 0;
        EXPECT_EQ(folder.Read("a.lnk") != before, isMade) << failing;
        EXPECT_EQ(folder.Names().size(), 1u) << failing;
    }
    EXPECT_GT(failing, 3); // it was opened, flushed and put into its place
    ASSERT_EQ(Create(path, longest, CString(L'd', 1023), longest, CString(L'a', 32766)), 1);
    ASSERT_EQ(shortcut.Init(path, 0), 1);
    EXPECT_TRUE(shortcut.GetLinkPath() == longest && shortcut.GetLinkWorkingDirectory() == longest);
    EXPECT_EQ(shortcut.GetLinkDescription().GetLength() + shortcut.GetLinkArguments().GetLength(), 33789);
}

TEST(Shortcut, DamagedFilesAreNone)
{
    const TempFolder folder;
    CShortcut shortcut;
    ASSERT_EQ(Create(folder.Path("a.lnk"), kTarget, L"d", L"C:\\", L"a"), 1);
    const std::string sound = folder.Read("a.lnk");
    for (std::size_t at = 0; at < sound.size(); at += 3) {
        EXPECT_EQ(Said(shortcut, folder.Write("b.lnk", sound.substr(0, at))), CString()) << at;
        std::string damaged = sound;
        damaged[at] ^= static_cast<char>(1 << at % 8);
        Said(shortcut, folder.Write("b.lnk", damaged));
    }
    EXPECT_EQ(Said(shortcut, folder.Path("none.lnk")) + Said(shortcut, folder.Path()), CString());
    EXPECT_EQ(Said(shortcut, folder.Write("c.lnk", sound + std::string(1 << 20, '\0'))), CString());
}

TEST(Shortcut, FreesEachIconOnceWhateverHappensToIt)
{
    const TempFolder folder;
    ASSERT_TRUE(Create(folder.Path("a.lnk"), kTarget) && Create(folder.Path("b.lnk"), kTarget));
    EXPECT_TRUE(Opened().IsInOrder());
    int index = 7;
    EXPECT_TRUE(Opened().GetIconLocation(L"", index).IsEmpty() && index == 0);
    EXPECT_EQ(Opened().GetIconLocation(kTarget, index).CompareNoCase(kTarget), 0);
    const CountedIcons icons;
    {
        CShortcut first;
        ASSERT_EQ(first.Init(folder.Path("a.lnk"), 0xFF01), 1);
        ASSERT_EQ(first.Init(first.GetPath(), 1), 1);
        CShortcut second(first);
        EXPECT_TRUE(second.GetLinkIcon() && second.GetLinkIcon() != first.GetLinkIcon());
        const CShortcut& same = second = first;
        second = same;
        EXPECT_EQ(CountedIcons::s_alive.size(), 4u);
        EXPECT_EQ(second.Init(folder.Path("none.lnk"), 1), 0);

        CShortcutsArray array;
        CShortcutsArray copies;
        CString path = folder.Path();
        EXPECT_EQ(array.ReadShortcuts(path, 0, 0), 2);
        array.Copy(copies);
        array.Copy(copies);
        array.Copy(array);
        copies.RemoveAt(0, 1);
        EXPECT_TRUE(IsRefused([&] { copies.RemoveAt(0, 2); }));
        EXPECT_EQ(CountedIcons::s_alive.size(), 2u + 4 + 2);
        array.RemoveAll();
        EXPECT_EQ(copies[0]->GetLinkPath(), kTarget);
    }
    EXPECT_EQ(CountedIcons::s_alive.size(), 0u);
}

TEST(Shortcut, LeavesTheThreadAsItsCallerHasIt)
{
    const TempFolder folder;
    APTTYPE before{}, after{};
    APTTYPEQUALIFIER qualifier{};
    const DWORD errors = GetThreadErrorMode();
    for (const DWORD model : {DWORD(COINIT_APARTMENTTHREADED), DWORD(COINIT_MULTITHREADED), ~DWORD(0)}) {
        const bool hasCom = model != ~DWORD(0) && SUCCEEDED(CoInitializeEx(nullptr, model));
        const HRESULT hadCom = CoGetApartmentType(&before, &qualifier);
        CShortcut shortcut;
        EXPECT_TRUE(Create(folder.Path("a.lnk"), kTarget) && shortcut.Init(folder.Path("a.lnk"), 0));
        EXPECT_EQ(shortcut.Init(folder.Write("b.lnk", ShortcutTo("a")), 0), 0);
        EXPECT_TRUE(CoGetApartmentType(&after, &qualifier) == hadCom && after == before);
        if (hasCom)
            CoUninitialize();
        EXPECT_TRUE(CoGetApartmentType(&after, &qualifier) != S_OK && GetThreadErrorMode() == errors);
    }
}

TEST(ShortcutsArray, ReadsAFolderAndPrunesOnlyWhatLeadsNowhere)
{
    const TempFolder folder;
    ASSERT_TRUE(Create(folder.Path("1 file.lnk"), folder.Write("text.txt", "x")) &&
                Create(folder.Path("2 gone.LNK"), folder.Path("gone.txt")) &&
                Create(folder.Path("3 folder.lnk"), folder.Path()) &&
                Create(folder.Path("4 drive.lnk"), L"Q:\\gone.txt") &&
                Create(folder.Path("sub\\..\\5 gone.lnkx"), folder.Path("gone.txt")));
    folder.Write("6 damaged.lnk", folder.Read("2 gone.LNK").substr(1));
    folder.Write("7 folder.lnk\\in.txt", "x");
    CShortcutsArray array;
    CString path = folder.Path();
    path.Delete(path.GetLength() - 1);
    EXPECT_EQ(array.ReadShortcuts(path, 0, 0), 4);
    EXPECT_EQ(path, folder.Path());
    EXPECT_EQ(array.ReadShortcuts(path, 0, 1), 2);
    CString names;
    for (int i = 0; i < array.GetSize(); ++i)
        names += array[i]->GetPath().Mid(path.GetLength()).Left(1);
    EXPECT_EQ(names, CString(L"123413"));
    EXPECT_EQ(folder.Names(),
              (std::vector<std::string>{"1 file.lnk", "3 folder.lnk", "5 gone.lnkx", "6 damaged.lnk",
                                        "7 folder.lnk", "7 folder.lnk/in.txt", "text.txt"}));
    path = L"Q:\\none";
    EXPECT_EQ(array.ReadShortcuts(path, 0, 1), 0);
}

TEST(Shortcut, NamesHotKeysInBothLanguages)
{
    const struct
    {
        WORD hotKey;
        const wchar_t* french;
        const wchar_t* english;
    } rows[] = {{0, L"", L""},
                {MAKEWORD('K', 6), L"CTRL + ALT + K", L"Ctrl + Alt + K"},
                {MAKEWORD(VK_F12, 1), L"MAJ + F12", L"Shift + F12"},
                {MAKEWORD(VK_NEXT, 0xF), L"CTRL + MAJ + ALT + PG.SUIV", L"Ctrl + Shift + Alt + Page Down"},
                {MAKEWORD(VK_RETURN, 8), L"ENTREE (PAVE NUM.)", L"Num Enter"},
                {MAKEWORD(VK_NUMPAD7, 0), L"7 (PAVE NUM.)", L"Num 7"},
                {MAKEWORD(VK_DECIMAL, 0), L". (PAVE NUM.)", L"Num Del"},
                {MAKEWORD(VK_OEM_COMMA, 2), L"CTRL + ,", L"Ctrl + ,"},
                {0x00FF, L"0xFF", L"0xFF"}};
    for (const auto& row : rows) {
        EXPECT_EQ(CShortcut::GetLinkHotKeyString(row.hotKey), CString(row.french));
        vak::SetTextLanguage(1033);
        EXPECT_EQ(CShortcut::GetLinkHotKeyString(row.hotKey), CString(row.english));
        vak::SetTextLanguage(vak::kDefaultTextLanguage);
    }
}
