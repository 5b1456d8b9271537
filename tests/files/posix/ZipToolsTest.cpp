#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

using namespace vak::test;

namespace {

/// Makes an archive in $PWD of the folder "in"; `archive` is what is then opened.
struct Tool
{
    const char* name;
    const char* needs;
    const char* command;
    const char* archive;
};

const Tool kTools[] = {
    {"InfoZip", "zip", "zip -qr a.zip in", "a.zip"},
    {"InfoZipStreamed", "zip", "zip -qr - in | cat > a.zip", "a.zip"},
    {"InfoZipWide", "zip", "zip -qr -fz a.zip in", "a.zip"},
    {"InfoZipSplit", "zip", "zip -qr -s 64k a.zip in", "a.zip"},
    {"InfoZipCommented", "zip", "zip -qr a.zip in && echo 'a note' | zip -qz a.zip", "a.zip"},
    {"InfoZipSelfExtracting", "zip", "zip -qr b.zip in && cat /bin/true b.zip > a.zip", "a.zip"},
    {"InfoZipAdjusted", "zip", "zip -qr b.zip in && cat /bin/true b.zip > a.zip && zip -qA a.zip", "a.zip"},
    {"SevenZip", "7z", "7z a -bd a.zip in", "a.zip"},
    {"SevenZipUtf8", "7z", "7z a -bd -mcu=on a.zip in", "a.zip"},
    {"SevenZipPieces", "7z", "7z a -bd -v50k a.zip in", "a.zip.001"},
    {"Python", "python3", "python3 -m zipfile -c a.zip in", "a.zip"},
};

class ZipToolsTest : public testing::TestWithParam<Tool>
{
protected:
    int Run(const std::string& command) const
    {
        return std::system(
            ("cd '" + folder.Host().string() + "' && { " + command + "; } > log 2>&1").c_str());
    }

    TempFolder folder;
};

} // namespace

TEST_P(ZipToolsTest, WhatTheToolPacksComesBack)
{
    const Tool& tool = GetParam();
    if (Run("command -v " + std::string(tool.needs)) != 0)
        GTEST_SKIP() << tool.needs << " is not installed";
    const Contents files = {{"in/empty", ""},
                            {"in/sub/mixed.bin", Noise(100000) + Words(100000)},
                            {"in/sub/text.txt", std::string(70000, 't')},
                            {"in/sub/deep/blank name", "x"}};
    for (const auto& [name, bytes] : files)
        folder.Write(name, bytes);
    ASSERT_EQ(Run(tool.command), 0) << folder.Read("log");
    CZip zip;
    zip.Open(folder.Path(tool.archive));
    EXPECT_EQ(zip.IsReadOnly(), folder.Has("a.z01") || folder.Has("a.zip.002"));
    Contents contents = ContentsOf(zip);
    std::erase_if(contents, [](const auto& entry) { return entry.first.back() == '/'; });
    EXPECT_TRUE(contents == files);
}

INSTANTIATE_TEST_SUITE_P(Tools, ZipToolsTest, testing::ValuesIn(kTools),
                         [](const auto& tool) { return std::string(tool.param.name); });

TEST_F(ZipToolsTest, EncryptedAndForeignMethodsAreListedAndRefused)
{
    if (Run("command -v 7z") != 0)
        GTEST_SKIP() << "7z is not installed";
    folder.Write("in/a", std::string(5000, 'a'));
    const struct
    {
        const char* command;
        int cause;
        int method;
    } rows[] = {{"7z a -bd -psecret a.zip in/a", CZipException::encrypted, 0},
                {"7z a -bd -psecret -mem=AES256 b.zip in/a", CZipException::encrypted, 0},
                {"7z a -bd -mm=BZip2 c.zip in/a", CZipException::unknownMethod, 12},
                {"7z a -bd -mm=LZMA d.zip in/a", CZipException::unknownMethod, 14}};
    std::string archive = "a.zip";
    for (const auto& row : rows) {
        ASSERT_EQ(Run(row.command), 0) << folder.Read("log");
        CZip zip;
        zip.Open(folder.Path(archive));
        EXPECT_EQ(HeaderOf(zip, L"in\\a").GetUncompressedSize(), 5000u);
        try {
            zip.ExtractFile(0, folder.Path("out"));
            ADD_FAILURE() << row.command;
        } catch (CZipException* e) {
            EXPECT_EQ(e->m_cause, row.cause) << row.command;
            EXPECT_EQ(e->m_method, row.method) << row.command;
            e->Delete();
        }
        ++archive[0];
    }
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
