#include "files/DirectoryStack.h"

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
