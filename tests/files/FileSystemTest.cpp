#include "files/FileSystem.h"

#include "framework/base/File.h"
#include "framework/base/StringArray.h"
#include "framework/base/Time.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>

using vak::test::TempFolder;
using Names = std::vector<std::string>;

TEST(FileSystem, DirectoriesAreKnownByLookOrByTheDisk)
{
    const TempFolder folder;
    const CString file = folder.Write("d\u00e9p\u00f4t\\caf\u00e9.txt", "12345");
    const struct
    {
        CString path;
        int isDirectory, onDisk, directoryExists, exists;
    } rows[] = {
        {file, 0, 0, 0, 1},
        {file + L"\\", 1, 0, 0, 0},
        {folder.Path("d\u00e9p\u00f4t"), 1, 1, 1, 1},
        {folder.Path("absent"), 0, 0, 0, 0},
        {L"Q:\\", 1, 1, 0, 0},
        {L"\\\\no-server\\share", 1, 1, 0, 0},
        {L"", 0, 0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.path));
        EXPECT_EQ(row.isDirectory, fileIsDirectory(row.path));
        EXPECT_EQ(row.onDisk, fileIsDirectory(row.path, 1));
        EXPECT_EQ(row.directoryExists, fileDirectoryExists(row.path));
        EXPECT_EQ(row.exists, fileExists(row.path));
    }
    std::filesystem::resize_file(folder.Host("d\u00e9p\u00f4t/caf\u00e9.txt"), 0x100000007);
    EXPECT_EQ(0x100000007u, fileGetSize(file));
    EXPECT_EQ(0u, fileGetSize(folder.Path()));
}

TEST(FileSystem, ProgramsAreTold)
{
    const TempFolder folder;
    EXPECT_EQ(1, fileIsExecutable(folder.Write("run.CMD", "")));
    EXPECT_EQ(0, fileIsExecutable(folder.Write("text.exe", "MZ, but no program")));
    EXPECT_EQ(0, fileIsExecutable(folder.Path()));
}

TEST(FileSystem, DatesAreSetAndReadToTheSecond)
{
    const TempFolder folder;
    const CString file = folder.Write("\u00e9t\u00e9", "");
    const CTime date(2003, 9, 1, 10, 0, 59);
    CTime read;
    EXPECT_EQ(1, fileSetLastWriteDate(file, date));
    EXPECT_EQ(1, fileGetLastWriteDate(file, read));
    EXPECT_EQ(date.GetTime(), read.GetTime());
    const CString absent = folder.Path("absent");
    EXPECT_EQ(0, fileGetLastWriteDate(absent, read) | fileGetCreationDate(absent, read) |
                     fileSetLastWriteDate(absent, date) | fileSetCreationDate(absent, date));
    EXPECT_EQ(date.GetTime(), read.GetTime());
}

TEST(FileSystem, ParentsAreCreatedOnlyWhenAsked)
{
    const TempFolder folder;
    EXPECT_EQ(0, fileCreateDirectory(folder.Path("a\\b"), 0));
    EXPECT_EQ(1, fileCreateDirectory(folder.Path("a\\b\u00e9\\c") + L"\\", 1));
    EXPECT_EQ(1, fileCreateDirectory(folder.Path("a\\b\u00e9\\c"), 1));
    EXPECT_EQ(0, fileCreateDirectory(folder.Path("a"), 0));
    EXPECT_EQ(1, fileCreateDirectory(folder.Path("d"), 0));
    folder.Write("file", "");
    EXPECT_EQ(0, fileCreateDirectory(folder.Path("file\\x"), 1));
    EXPECT_EQ(0, fileCreateDirectory(L"", 1));
    EXPECT_EQ((Names{"a", "a/b\u00e9", "a/b\u00e9/c", "d", "file"}), folder.Names());
}

TEST(FileSystem, RemovalKeepsToTheTree)
{
    const TempFolder folder;
    const Names outside{"outside", "outside/kept"};
    folder.Write("outside\\kept", "");
    folder.Write("tree\\d\u00e9j\u00e0\\deep\\f", "");
    // The Windows build's standard library makes no links; there this is a plain tree.
    std::error_code ignored;
    for (const char* link : {"tree/d\u00e9j\u00e0/link", "link"})
        std::filesystem::create_directory_symlink(folder.Host("outside"), folder.Host(link), ignored);
    EXPECT_EQ(0, fileRemoveDirectory(folder.Path("tree"), 0));
    const int hasLink = folder.Has("link") ? 1 : 0;
    EXPECT_EQ(hasLink, fileRemoveDirectory(folder.Path("link") + L"\\", 1));
    EXPECT_EQ(1, fileRemoveDirectory(folder.Path("tree") + CString(L'\0') + L"x", 1));
    EXPECT_EQ(outside, folder.Names());
    // A file of the host, whose name is a path to the library.
    folder.Write("tree\\f", "");
    std::ofstream(folder.Host("tree") / "..\\outside\\kept");
    fileRemoveDirectory(folder.Path("tree"), 1);
    EXPECT_TRUE(folder.Has("outside/kept"));
    EXPECT_EQ(0, fileRemoveDirectory(folder.Path("outside\\kept"), 1));
    EXPECT_EQ(0, fileRemoveDirectory(L"", 1));
    // The drive's current folder, one backslash away from the drive. Not recursive, in case of failure.
    CStringArray tried;
    EXPECT_EQ(0, fileRemoveDirectory(L"Z:", 0, &tried));
    EXPECT_EQ(0, tried.GetSize());
    EXPECT_TRUE(folder.Has("outside/kept"));
}

TEST(FileSystem, RemovalListsWhatStayed)
{
    const TempFolder folder;
    const CString held = folder.Write("tree\\sub\\held", "");
    folder.Write("tree\\sub\\free", "");
    folder.Write("tree\\other\\free", "");
    CStringArray remaining;
    remaining.Add(L"before");
    const CFile holder(held, CFile::modeRead);
    EXPECT_EQ(0, fileRemoveDirectory(folder.Path("tree"), 1, &remaining));
    ASSERT_EQ(4, remaining.GetSize());
    EXPECT_EQ(held, remaining[1]);
    EXPECT_EQ(folder.Path("tree\\sub\\"), remaining[2]);
    EXPECT_EQ(folder.Path("tree\\"), remaining[3]);
    EXPECT_EQ((Names{"tree", "tree/sub", "tree/sub/held"}), folder.Names());
}
