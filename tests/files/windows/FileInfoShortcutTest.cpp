#include "files/FileInfo.h"

#include "tests/support/ShortcutFile.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using vak::test::ShortcutTo;

TEST(FileInfo, BecomesTheTargetOfItsShortcutWithThatOnesKind)
{
    const vak::test::TempFolder folder;
    const CString target = L"C:\\none\\made up.zip";
    CFileInfo info(folder.Write("a.zip.lnk", ShortcutTo(CStringA(target).GetString())));
    EXPECT_EQ(info.GetClass(), 0u);
    ASSERT_EQ(info.ResolveShortcut(), 1);
    EXPECT_EQ(info.GetCompleteName(), target);
    EXPECT_EQ(info.GetClass(), unsigned('ZIP '));
    EXPECT_EQ(info.ResolveShortcut(), 0);

    info.Init(folder.Write("bad.lnk", ShortcutTo("C:\\x").substr(0, 40)));
    EXPECT_EQ(info.ResolveShortcut(), 0);
    EXPECT_EQ(info.GetName(), CString(L"bad.lnk"));
}
