#include "files/Zip.h"

#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
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

void PrintTo(const Tool& tool, std::ostream* out)
{
    *out << tool.name;
}

const Tool kTools[] = {
    {"InfoZip", "zip", "zip -qr a.zip in", "a.zip"},
    {"InfoZipStored", "zip", "zip -qr0 a.zip in", "a.zip"},
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
    {"PythonFolder", "python3",
     "python3 -c 'import shutil; shutil.make_archive(\"a\", \"zip\", \".\", \"in\")'", "a.zip"},
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
    std::string mixed;
    for (unsigned int i = 0, state = 1; i < 150000; ++i, state = state * 1103515245 + 12345)
        mixed += static_cast<char>(i % 3 == 0 ? state >> 16 : 'm');
    std::map<CString, std::string> files = {{L"in\\empty", ""},
                                            {L"in\\sub\\mixed.bin", mixed},
                                            {L"in\\sub\\text.txt", std::string(70000, 't')},
                                            {L"in\\sub\\deep\\blank name", "x"}};
    for (const auto& [name, bytes] : files)
        folder.Write(CStringA(name).GetString(), bytes);
    ASSERT_EQ(Run(tool.command), 0) << folder.Read("log");
    CZip zip;
    zip.Open(folder.Path(tool.archive));
    EXPECT_EQ(zip.IsReadOnly(), folder.Has("a.z01") || folder.Has("a.zip.002"));
    EXPECT_EQ(zip.GetCount(true), 4);
    for (const auto& [name, bytes] : files) {
        const int index = zip.FindFile(name);
        ASSERT_NE(index, -1) << testing::PrintToString(name);
        EXPECT_EQ(DataOf(zip, static_cast<std::size_t>(index)), bytes) << testing::PrintToString(name);
    }
    for (WORD i = 0; i < zip.GetCount(); ++i)
        EXPECT_TRUE(zip.ExtractFile(i, folder.Path("out")));
    EXPECT_EQ(folder.Read("out/in/sub/mixed.bin"), mixed);
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
    } rows[] = {{"7z a -bd -psecret a.zip in/a", CZipException::encrypted},
                {"7z a -bd -psecret -mem=AES256 b.zip in/a", CZipException::encrypted},
                {"7z a -bd -mm=BZip2 c.zip in/a", CZipException::unknownMethod},
                {"7z a -bd -mm=LZMA d.zip in/a", CZipException::unknownMethod}};
    char archive[] = "a.zip";
    for (const auto& row : rows) {
        ASSERT_EQ(Run(row.command), 0) << folder.Read("log");
        CZip zip;
        zip.Open(folder.Path(archive));
        CZipHeader header;
        ASSERT_TRUE(zip.GetFileInfo(header, 0));
        EXPECT_EQ(header.GetFileName(), L"in\\a");
        EXPECT_EQ(header.GetUncompressedSize(), 5000u);
        EXPECT_EQ(ZipCause([&] { zip.ExtractFile(0, folder.Path("out")); }), row.cause) << row.command;
        ++archive[0];
    }
}

/// Links that the user's folder holds already, on the way and in the place of the file.
TEST_F(ZipToolsTest, LinksInTheDestinationAreNotFollowed)
{
    namespace fs = std::filesystem;
    if (Run("command -v zip") != 0)
        GTEST_SKIP() << "zip is not installed";
    folder.Write("d/a", "new");
    ASSERT_EQ(Run("zip -qr a.zip d"), 0);
    folder.Write("safe/a", "kept");
    const fs::path safe = folder.Host("safe");
    CZip zip;
    zip.Open(folder.Path("a.zip"));
    const auto index = static_cast<std::size_t>(zip.FindFile(L"d\\a"));
    fs::create_directories(folder.Host("out"));
    fs::create_directory_symlink(safe, folder.Host("out/d"));
    EXPECT_EQ(ZipCause([&] { zip.Extract(index, folder.Path("out")); }), CZipException::linkInPath);
    fs::remove(folder.Host("out/d"));
    fs::create_directories(folder.Host("out/d"));
    fs::create_symlink(safe / "a", folder.Host("out/d/a"));
    EXPECT_EQ(ZipCause([&] { zip.Extract(index, folder.Path("out")); }), CZipException::linkInPath);
    EXPECT_EQ(folder.Read("safe/a"), "kept");
    // The destination itself is the user's choice.
    fs::create_directory_symlink(safe, folder.Host("chosen"));
    zip.Extract(index, folder.Path("chosen"), false);
    EXPECT_EQ(folder.Read("safe/a"), "new");
}

/// A link in an archive is data: nothing that the archive holds makes a link.
TEST_F(ZipToolsTest, AStoredLinkBecomesAPlainFile)
{
    namespace fs = std::filesystem;
    if (Run("command -v zip") != 0)
        GTEST_SKIP() << "zip is not installed";
    ASSERT_EQ(Run("ln -s /etc link && zip -qy a.zip link"), 0);
    CZip zip;
    zip.Open(folder.Path("a.zip"));
    EXPECT_TRUE(zip.ExtractFile(0, folder.Path("out")));
    EXPECT_FALSE(fs::is_symlink(folder.Host("out/link")));
    EXPECT_EQ(folder.Read("out/link"), "/etc");
}
