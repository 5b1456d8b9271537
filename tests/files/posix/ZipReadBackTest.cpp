#include "files/ZipArchive.h"
#include "files/zip/ZipState.h"
#include "framework/base/SystemFileFault.h"
#include "tests/support/ZipChanges.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>

using namespace vak::test;

namespace {

/// The tools that judge an archive: "%" stands for its path.
constexpr std::pair<std::string_view, std::string_view> kJudges[] = {
    {"unzip", "unzip -tq %"},
    {"7z", "7z t -bd %"},
    {"python3", "python3 -W error -c 'import sys, zipfile; "
                "sys.exit(zipfile.ZipFile(sys.argv[1]).testzip() is not None)' %"},
};

/// Every tool of `tools` that is there opens and tests the archive without a word against it.
void ExpectSound(const TempFolder& folder, const char* name, std::string_view tools = "unzip 7z python3")
{
    const auto run = [&folder](const std::string& command) {
        return std::system(("(" + command + ") > '" + folder.Host("log").string() + "' 2>&1").c_str());
    };
    for (const auto& [tool, call] : kJudges) {
        if (tools.find(tool) == tools.npos)
            continue;
        if (run("command -v " + std::string(tool)) != 0) {
            std::cout << "[   NOTE   ] " << tool << " is not there\n";
            continue;
        }
        std::string command(call);
        command.replace(command.find('%'), 1, "'" + folder.Host(name).string() + "'");
        EXPECT_EQ(run(command), 0) << name << ": " << tool << ": " << folder.Read("log");
        for (const char* const word : {"arning", "extra bytes", "ERROR"})
            EXPECT_EQ(folder.Read("log").find(word), std::string::npos) << name << ": " << folder.Read("log");
    }
}

class ZipReadBackTest : public ZipFixture
{
protected:
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

TEST_F(ZipReadBackTest, OtherToolsFindNothingWrong)
{
    Create();
    AddSome();
    zip.SetComment(L"a comment");
    zip.Close();
    ExpectSound(folder, "pack.zip");
    zip.Open(path);
    Add("noise", "short now");
    zip.DeleteFiles(ZipNames({L"empty"}));
    zip.Close();
    ExpectSound(folder, "pack.zip");
    folder.Write("front.zip", "#!stub\n" + BuildZip({{"a", "1"}, {"b", "2", true}}).bytes);
    zip.Open(folder.Path("front.zip"));
    Add("c", "3");
    zip.Close();
    EXPECT_EQ(folder.Read("front.zip").substr(0, 7), "#!stub\n");
    // 7-Zip has a word against every archive that does not begin its file.
    ExpectSound(folder, "front.zip", "unzip python3");
    zip.Open(folder.Path("parts.zip"), CZip::zipCreateSplit, 65536);
    AddSome();
    zip.Close();
    // The others read no parts.
    ExpectSound(folder, "parts.zip", "7z");
}

TEST_F(ZipReadBackTest, LargeNumbersGoIntoZip64Records)
{
    SmallFormatZip small;
    small.Open(path, CZip::zipCreate);
    Contents wanted;
    const auto add = [&](const char* name, const std::string& data) {
        small.AddNewFile(folder.Write("in/file", wanted[name] = data), CString(name).GetString());
    };
    add("short", "x");
    add("noise", Noise(200000));
    add("words", Words(300000));
    add("last", "y");
    small.Close();
    EXPECT_EQ(ContentsOf(path), wanted);
    EXPECT_NE(folder.Read("pack.zip").find("PK\x06\x06"), std::string::npos);
    ExpectSound(folder, "pack.zip");
    // Entries move across the border where their offsets fit.
    small.Open(path);
    small.DeleteFiles(ZipNames({L"noise"}));
    wanted.erase("noise");
    add("more", Noise(200000));
    small.Close();
    EXPECT_EQ(ContentsOf(path), wanted);
    ExpectSound(folder, "pack.zip");
    folder.Write("front.zip", std::string(2000, '-') + BuildZip({{"a", "1"}, {"b", "2"}}).bytes);
    small.Open(folder.Path("front.zip"));
    small.SetComment(L"moved");
    small.Close();
    EXPECT_EQ(ContentsOf(folder.Path("front.zip")), (Contents{{"a", "1"}, {"b", "2"}}));
    ExpectSound(folder, "front.zip", "unzip python3");
}

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
