#include "files/FileSystem.h"

#include "files/FilePath.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

TEST(FileSystemOnWindows, ProgramsAreTheOnesThatTheSystemStarts)
{
    WCHAR program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    EXPECT_EQ(1, fileIsExecutable(program));
    EXPECT_EQ(0, fileIsExecutable(fileStripName(program) + L"vaktools.dll"));
}

TEST(FileSystemOnWindows, ShortNamesBecomeLong)
{
    const vak::test::TempFolder folder;
    const CString file = folder.Write("a long folder name\\a long file name.text", "");
    WCHAR shortName[MAX_PATH];
    ASSERT_NE(0u, GetShortPathNameW(file, shortName, MAX_PATH));
    EXPECT_EQ(file, fileGetLongPathName(shortName));
    EXPECT_EQ(1, fileIsSameFile(file, shortName));
    EXPECT_EQ(folder.Path("absent~1"), fileGetLongPathName(folder.Path("absent~1")));
    ASSERT_NE(0u, GetShortPathNameW(folder.Path("a long folder name"), shortName, MAX_PATH));
    EXPECT_EQ(1, fileRemoveDirectory(shortName, 1));
    EXPECT_TRUE(folder.Names().empty());
}

TEST(FileSystemOnWindows, CompactedPathFitsTheWindowsPixels)
{
    const CString path = L"C:\\documents\\models\\2003\\chair.obj";
    const HDC context = GetDC(nullptr);
    const auto pixels = [context](const CString& text) {
        SIZE size{};
        GetTextExtentPoint32W(context, text, text.GetLength(), &size);
        return static_cast<int>(size.cx);
    };
    const int whole = pixels(path);
    EXPECT_EQ(path, fileCompactPath(path, static_cast<CWnd*>(nullptr), whole));
    const CString compact = fileCompactPath(path, static_cast<CWnd*>(nullptr), whole - 20);
    EXPECT_LE(pixels(compact), whole - 20);
    EXPECT_EQ(CString(L"\\chair.obj"), compact.Right(10));
    EXPECT_GE(compact.Find(L"..."), 0);
    ReleaseDC(nullptr, context);
}
