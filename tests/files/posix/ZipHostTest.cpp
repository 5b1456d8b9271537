#include "framework/base/SystemFileFault.h"
#include "tests/support/ZipChanges.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

using namespace vak::test;

/// The process ends at every operation on files in turn.
TEST(ZipEndTest, AnEndAtAnyMomentLeavesAnArchiveThatWasCompleted)
{
    static int left;
    ZipChanges changes;
    int ended = 1;
    for (int number = 1; ended != 0; ++number) {
        changes.Reset();
        const pid_t child = fork();
        if (child == 0) {
            left = number;
            vak::system::SetFileFaultHook(
                [](vak::system::FileOperation) -> DWORD { return --left == 0 ? (_exit(1), 1) : 0; });
            CZip zip;
            changes.Act(zip);
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ended = WEXITSTATUS(status);
        EXPECT_GE(changes.Stage(), 0) << number;
        ASSERT_LT(number, 300);
    }
    EXPECT_EQ(changes.Stage(), 3);
}

/// Links that the user's folder holds already, on the way and in the place of the file.
TEST(ZipLinksTest, LinksInTheDestinationAreNotFollowed)
{
    namespace fs = std::filesystem;
    const TempFolder folder;
    folder.Write("safe/a", "kept");
    const fs::path safe = folder.Host("safe");
    const CString out = folder.Path("out");
    CZip zip;
    zip.Open(folder.Write("a.zip", BuildZip({{"d/a", "new"}}).bytes));
    fs::create_directories(folder.Host("out"));
    fs::create_directory_symlink(safe, folder.Host("out/d"));
    EXPECT_EQ(ZipCause([&] { zip.Extract(0, out); }), CZipException::linkInPath);
    fs::remove(folder.Host("out/d"));
    fs::create_directories(folder.Host("out/d"));
    fs::create_symlink(safe / "a", folder.Host("out/d/a"));
    EXPECT_EQ(ZipCause([&] { zip.Extract(0, out); }), CZipException::linkInPath);
    // Nor is one that takes the place of a folder which the entry before went to.
    fs::remove(folder.Host("out/d/a"));
    zip.Extract(0, out);
    EXPECT_EQ(folder.Read("out/d/a"), "new");
    fs::remove_all(folder.Host("out/d"));
    fs::create_directory_symlink(safe, folder.Host("out/d"));
    EXPECT_EQ(ZipCause([&] { zip.Extract(0, out); }), CZipException::linkInPath);
    EXPECT_EQ(folder.Read("safe/a"), "kept");
    // The destination itself is the user's choice.
    fs::create_directory_symlink(safe, folder.Host("chosen"));
    zip.Extract(0, folder.Path("chosen"), false);
    EXPECT_EQ(folder.Read("safe/a"), "new");
}

TEST(ZipLinksTest, AStoredLinkBecomesAPlainFileAndLeadsNowhere)
{
    const TempFolder folder;
    CZip zip;
    const ZipSpec link{.name = "link", .data = "/tmp", .madeBy = 0x314, .attributes = 0xA1FF0000};
    zip.Open(folder.Write("a.zip", BuildZip({link, {"link/evil", "x"}}).bytes));
    zip.Extract(0, folder.Path("out"));
    EXPECT_FALSE(std::filesystem::is_symlink(folder.Host("out/link")));
    EXPECT_EQ(folder.Read("out/link"), "/tmp");
    EXPECT_EQ(ZipCause([&] { zip.Extract(1, folder.Path("out")); }), CZipException::nameTaken);
}
