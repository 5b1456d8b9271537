#include "files/FilePath.h"

#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <tuple>

TEST(FilePath, IsSplitByItsText)
{
    // Nothing of these names exists: the disk says no.
    // Path, directory, name, name without extension, extension.
    const LPCWSTR rows[][5] = {
        {L"C:\\x1\\b.tar.GZ", L"C:\\x1\\", L"b.tar.GZ", L"b.tar", L".GZ"},
        {L"C:\\x.1\\none", L"C:\\x.1\\", L"none", L"none", L""},
        {L"no-such.txt", L"", L"no-such.txt", L"no-such", L".txt"},
        {L"\\\\srv\\share", L"\\\\srv\\share\\", L"", L"", L""},
        {L"\\\\srv\\share\\f.x", L"\\\\srv\\share\\", L"f.x", L"f", L".x"},
        {L"C:\\x1\\Dr. No", L"C:\\x1\\", L"Dr. No", L"Dr. No", L""},
    };
    for (const auto& [path, directory, name, bareName, extension] : rows) {
        EXPECT_EQ(CString(directory), fileStripName(path));
        EXPECT_EQ(CString(name), fileStripPath(path));
        EXPECT_EQ(CString(bareName), fileStripPath(path, 1));
        EXPECT_EQ(CString(extension), fileGetExtension(path));
    }
}

TEST(FilePath, AnExistingDirectoryHasNoFileName)
{
    const vak::test::TempFolder folder;
    folder.Write("d.x\\f", "");
    EXPECT_EQ(CString(), fileStripPath(folder.Path("d.x")));
    EXPECT_EQ(folder.Path("d.x\\"), fileStripName(folder.Path("d.x")));
}

TEST(FilePath, DirectoriesCompareByText)
{
    const std::tuple<LPCWSTR, LPCWSTR, DirCompare> rows[] = {
        {L"C:\\A", L"c:\\a\\", DirCompareSame},
        {L"rel\\\u00c9", L"REL\\\u00e9", DirCompareSame},
        {L"C:\\a\\b", L"C:\\A", DirCompareSubdir},
        {L"a", L"C:\\a", DirCompareUnrelated},
        // Anywhere within, not only at the beginning.
        {L"C:\\x\\a\\b", L"\\a", DirCompareSubdir},
        {L"\\a", L"C:\\x\\a\\b", DirCompareParent},
    };
    for (const auto& [first, second, result] : rows)
        EXPECT_EQ(result, fileCompareDirectory(first, second)) << CStringA(first).GetString();
}

TEST(FilePath, IsMadeRelativeAndAbsolute)
{
    const LPCWSTR relative[][3] = {
        {L"c:\\data\\", L"C:\\Data\\x\\y.obj", L".\\x\\y.obj"},
        {L"c:\\other\\", L"C:\\Data\\y.obj", L"C:\\Data\\y.obj"},
        {L"c:\\data\\", L"C:\\DATA\\", L""},
    };
    for (const auto& [base, path, result] : relative)
        EXPECT_EQ(CString(result), fileMakeRelativePath(base, path));
    const LPCWSTR absolute[][3] = {
        {L"C:\\a\\b\\", L"..\\c.txt", L"C:\\a\\c.txt"},
        {L"C:\\a\\", L".\\x\\.\\y\\..\\z", L"C:\\a\\x\\z"},
        {L"C:\\a\\", L"..\\..\\..\\z", L"C:\\z"},
        {L"C:\\a\\", L"..", L"C:\\"},
        {L"\\\\s\\h\\a\\", L"..\\..\\z", L"\\\\s\\h\\z"},
        {L"C:\\a\\", L"\\x\\..\\y", L"\\x\\..\\y"},
        {L"C:\\a\\", L"D:x", L"D:x"},
        {L"C:\\a\\", L"...\\..x", L"C:\\a\\...\\..x"},
    };
    for (const auto& [base, path, result] : absolute)
        EXPECT_EQ(CString(result), fileMakeAbsolutePath(base, path));
}

TEST(FilePath, OnlyAnAbsolutePathThatFitsTheBufferIsMade)
{
    const CString fits(L'x', 254);
    EXPECT_EQ(L"C:\\a\\" + fits, fileMakeAbsolutePath(L"C:\\a\\", fits));
    EXPECT_EQ(fits + L"x", fileMakeAbsolutePath(L"C:\\a\\", fits + L"x"));
    // It is the result that has to fit.
    EXPECT_EQ(CString(L"C:\\y"), fileMakeAbsolutePath(L"C:\\", fits + L"\\..\\y"));
}

TEST(FilePath, CompactionKeepsBeginningAndName)
{
    const CString path = L"C:\\documents\\models\\2003\\chair.obj";
    EXPECT_EQ(path, fileCompactPath(path, path.GetLength()));
    for (int width = 14; width < path.GetLength(); ++width) {
        const CString compact = fileCompactPath(path, width);
        EXPECT_EQ(path.Left(width - 13) + L"...\\chair.obj", compact);
    }
    for (const int width : {0, 1, 3, 13})
        EXPECT_LE(fileCompactPath(path, width).GetLength(), width);
    EXPECT_EQ(300, fileCompactPath(path + L"\\" + CString(L'y', 400), 300).GetLength());
}

TEST(FilePath, WalkingUpwardsEndsAtTheTop)
{
    CString path = L"C:\\a\\b\\no-such.txt";
    EXPECT_EQ(CString(L"b"), fileTopDirectory(path));
    for (const LPCWSTR parent : {L"C:\\a\\", L"C:\\"}) {
        EXPECT_EQ(1, fileGetParentDirectory(path));
        EXPECT_EQ(CString(parent), path);
    }
    EXPECT_EQ(0, fileGetParentDirectory(path));
    path = L"\\\\srv\\share\\a";
    EXPECT_EQ(0, fileGetParentDirectory(path));
}
