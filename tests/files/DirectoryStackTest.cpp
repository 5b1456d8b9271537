#include "files/DirectoryStack.h"

#include "files/CurrentDir.h"
#include "framework/base/Exception.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

TEST(DirectoryStack, GivesBackWhatWasCurrent)
{
    const CString start = fileGetCurrentDirectory();
    {
        const vak::test::TempFolder folder;
        folder.Write("\u00e9t\u00e9\\f", "");
        EXPECT_EQ(start, filePushCurrentDirectory(folder.Path()));
        EXPECT_EQ(folder.Path(), fileGetCurrentDirectory());
        EXPECT_EQ(folder.Path(), filePushCurrentDirectory(folder.Path("\u00e9t\u00e9")));
        // A directory that cannot be entered keeps the pairs together.
        EXPECT_EQ(folder.Path("\u00e9t\u00e9\\"), filePushCurrentDirectory(folder.Path("absent")));
        EXPECT_EQ(folder.Path("\u00e9t\u00e9\\"), filePopCurrentDirectory());
        EXPECT_EQ(folder.Path(), filePopCurrentDirectory());
        EXPECT_EQ(start, filePopCurrentDirectory());
    }
    EXPECT_EQ(start, fileGetCurrentDirectory());
    EXPECT_THROW(filePopCurrentDirectory(), CInvalidArgException*); // a static object
}

TEST(CurrentDir, RemembersOneDirectoryForEachKind)
{
    constexpr auto kOpened = static_cast<DirectoryType>(7);
    CCurrentDir directories;
    EXPECT_EQ(CString(), directories.SetDirectory(L"C:\\a\\", kOpened));
    EXPECT_EQ(CString(L"C:\\a\\"), directories.SetDirectory(L"C:\\c\\", kOpened));
    EXPECT_EQ(CString(), directories.GetDirectory(L"", static_cast<DirectoryType>(0x80000007)));
}
