#include "files/zip/ZipState.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>

using namespace vak::test;
using E = CZipException;

namespace {

class ZipToolsTest : public ZipFixture
{
protected:
    /// Runs a command of the shell in the folder; its words go to "log". `tool` is what it needs: without it
    /// -1, and a notice.
    int Run(const char* tool, const std::string& command) const
    {
        const auto call = [this](const std::string& text) {
            return std::system(
                ("cd '" + folder.Host().string() + "' && { " + text + "; } > log 2>&1").c_str());
        };
        if (call("command -v " + std::string(tool)) == 0)
            return call(command);
        std::cout << "[   NOTE   ] " << tool << " is not there\n";
        return -1;
    }

    /// Every tool of `tools` opens and tests the archive without a word against it.
    void ExpectSound(const std::string& name, std::string_view tools = "unzip 7z python3") const
    {
        const std::pair<const char*, const char*> judges[] = {
            {"unzip", "unzip -tq "},
            {"7z", "7z t -bd "},
            {"python3", "python3 -W error -c 'import sys, zipfile; "
                        "sys.exit(zipfile.ZipFile(sys.argv[1]).testzip() is not None)' "},
        };
        for (const auto& [tool, command] : judges) {
            const int result = tools.find(tool) == tools.npos ? -1 : Run(tool, command + name);
            EXPECT_LE(result, 0) << name << ": " << tool << ": " << folder.Read("log");
            for (const char* const word : {"arning", "extra bytes", "ERROR"})
                EXPECT_TRUE(result < 0 || folder.Read("log").find(word) == std::string::npos)
                    << name << ": " << folder.Read("log");
        }
    }

    void AddSome()
    {
        Add("words.txt", Words(500000));
        Add("noise", Noise(200000));
        Add("empty", "");
        zip.AddNewFile(folder.Path("in/file"), L"\x00E9t\x00E9/\x65E5.txt");
        zip.AddNewFile(folder.Path("in"), L"folder");
    }
};

/// An archive that goes over to zip64 records at small numbers.
class SmallFormatZip : public CZip
{
public:
    SmallFormatZip() { State().start64 = {1000, 3}; }
};

} // namespace

TEST_F(ZipToolsTest, WhatToolsPackComesBackOrIsListedAndRefused)
{
    const Contents files = {{"in/empty", ""},
                            {"in/sub/mixed.bin", Noise(100000) + Words(100000)},
                            {"in/sub/text.txt", std::string(70000, 't')},
                            {"in/sub/deep/blank name", "x"}};
    const struct
    {
        const char* tool;
        const char* command; ///< makes "a.zip" of the folder "in"
        int cause = -1;      ///< why the text cannot be read
        int method = 0;
        const char* archive = "a.zip";
    } rows[] = {
        {"zip", "zip -qr a.zip in"},
        {"zip", "zip -qr - in | cat > a.zip"},
        {"zip", "zip -qr -fz a.zip in"},
        {"zip", "zip -qr -s 64k a.zip in"},
        {"zip", "zip -qr a.zip in && echo 'a note' | zip -qz a.zip"},
        {"zip", "zip -qr b.zip in && cat /bin/true b.zip > a.zip"},
        {"zip", "zip -qr b.zip in && cat /bin/true b.zip > a.zip && zip -qA a.zip"},
        {"7z", "7z a -bd a.zip in"},
        {"7z", "7z a -bd -mcu=on a.zip in"},
        {"7z", "7z a -bd -v50k a.zip in", -1, 0, "a.zip.001"},
        {"python3", "python3 -m zipfile -c a.zip in"},
        {"7z", "7z a -bd -psecret a.zip in", E::encrypted},
        {"7z", "7z a -bd -psecret -mem=AES256 a.zip in", E::encrypted},
        {"7z", "7z a -bd -mm=BZip2 a.zip in", E::unknownMethod, 12},
        {"7z", "7z a -bd -mm=LZMA a.zip in", E::unknownMethod, 14},
    };
    for (const auto& row : rows) {
        for (const auto& [name, bytes] : files)
            folder.Write(name, bytes);
        const int made = Run(row.tool, std::string("rm -f a.* b.*; ") + row.command);
        ASSERT_LE(made, 0) << folder.Read("log");
        if (made < 0)
            continue;
        zip.Open(folder.Path(row.archive));
        EXPECT_EQ(zip.IsReadOnly(), folder.Has("a.z01") || folder.Has("a.zip.002"));
        const LPCWSTR text = L"in\\sub\\text.txt";
        EXPECT_EQ(HeaderOf(zip, text).GetUncompressedSize(), 70000u);
        try {
            zip.Test(zip.Find(text));
            EXPECT_EQ(row.cause, -1) << row.command;
            Contents contents = ContentsOf(zip);
            std::erase_if(contents, [](const auto& entry) { return entry.first.back() == '/'; });
            EXPECT_TRUE(contents == files) << row.command;
        } catch (E* e) {
            EXPECT_EQ(e->m_cause, row.cause) << row.command;
            EXPECT_EQ(e->m_method, row.method) << row.command;
            e->Delete();
        }
    }
}

TEST_F(ZipToolsTest, ToolsFindNothingWrongWithWhatIsWritten)
{
    Create();
    AddSome();
    zip.SetComment(L"a comment");
    zip.Close();
    ExpectSound("pack.zip");
    zip.Open(path);
    Add("noise", "short now");
    zip.DeleteFiles(ZipNames({L"empty"}));
    zip.Close();
    ExpectSound("pack.zip");
    folder.Write("front.zip", "#!stub\n" + BuildZip({{"a", "1"}, {"b", "2", true}}).bytes);
    zip.Open(folder.Path("front.zip"));
    Add("c", "3");
    zip.Close();
    EXPECT_EQ(folder.Read("front.zip").substr(0, 7), "#!stub\n");
    // 7-Zip has a word against every archive that does not begin its file.
    ExpectSound("front.zip", "unzip python3");
    zip.Open(folder.Path("parts.zip"), CZip::zipCreateSplit, 65536);
    AddSome();
    zip.Close();
    // The others read no parts.
    ExpectSound("parts.zip", "7z");
}

TEST_F(ZipToolsTest, LargeNumbersGoIntoZip64Records)
{
    SmallFormatZip small;
    Contents wanted;
    const auto add = [&](const char* name, const std::string& data) {
        small.AddNewFile(folder.Write("in/file", wanted[name] = data), CString(name).GetString());
    };
    small.Open(path, CZip::zipCreate);
    add("short", "x");
    add("noise", Noise(200000));
    add("words", Words(300000));
    add("last", "y");
    small.Close();
    EXPECT_EQ(ContentsOf(path), wanted);
    EXPECT_NE(folder.Read("pack.zip").find("PK\x06\x06"), std::string::npos);
    ExpectSound("pack.zip");
    // Entries move across the border where their offsets fit.
    small.Open(path);
    small.DeleteFiles(ZipNames({L"noise"}));
    wanted.erase("noise");
    add("more", Noise(200000));
    small.Close();
    EXPECT_EQ(ContentsOf(path), wanted);
    ExpectSound("pack.zip");
    folder.Write("front.zip", std::string(2000, '-') + BuildZip({{"a", "1"}, {"b", "2"}}).bytes);
    small.Open(folder.Path("front.zip"));
    small.SetComment(L"moved");
    small.Close();
    EXPECT_EQ(ContentsOf(folder.Path("front.zip")), (Contents{{"a", "1"}, {"b", "2"}}));
    ExpectSound("front.zip", "unzip python3");
}
