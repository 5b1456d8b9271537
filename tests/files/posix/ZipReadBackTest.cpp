#include "files/ZipArchive.h"
#include "files/detail/ZipState.h"
#include "framework/base/SystemFile.h"
#include "framework/base/SystemFileFault.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ZipBuilder.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

using namespace vak::test;

namespace {

/// What a shell command prints; `code` is its exit code.
std::string Run(const std::string& command, int& code)
{
    std::string output;
    FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    char piece[4096];
    for (std::size_t got; (got = fread(piece, 1, sizeof piece, pipe)) > 0;)
        output.append(piece, got);
    code = WEXITSTATUS(pclose(pipe));
    return output;
}

/// The tools that judge an archive: "%" stands for its path.
struct Judge
{
    const char* tool;
    const char* command;
};
constexpr Judge kJudges[] = {
    {"unzip", "unzip -tq %"},
    {"7z", "7z t -bd %"},
    {"python3",
     "python3 -W error -c 'import sys, zipfile; z = zipfile.ZipFile(sys.argv[1]); sys.exit(z.testzip() is "
     "not "
     "None)' %"},
};

bool IsThere(const char* tool)
{
    int code = 1;
    Run(std::string("command -v ") + tool, code);
    return code == 0;
}

/// Every tool of `tools` that is there opens and tests the archive without a word against it.
void ExpectSound(const TempFolder& folder, const char* name, std::string_view tools = "unzip 7z python3")
{
    for (const Judge& judge : kJudges) {
        if (tools.find(judge.tool) == std::string_view::npos)
            continue;
        if (!IsThere(judge.tool)) {
            std::cout << "[   NOTE   ] " << judge.tool << " is not there\n";
            continue;
        }
        std::string command = judge.command;
        command.replace(command.find('%'), 1, "'" + folder.Host(name).string() + "'");
        int code = 1;
        const std::string output = Run(command, code);
        EXPECT_EQ(code, 0) << name << ": " << judge.tool << ": " << output;
        for (const char* const word : {"arning", "extra bytes", "ERROR"})
            EXPECT_EQ(output.find(word), std::string::npos) << name << ": " << output;
    }
}

class ZipReadBackTest : public testing::Test
{
protected:
    void Add(const char* name, const std::string& data)
    {
        zip.AddNewFile(folder.Write("in/file", data), CString(CStringW(name)).GetString());
    }
    void AddSome()
    {
        Add("words.txt", Words(500000));
        Add("noise", Noise(200000));
        Add("empty", "");
        zip.AddNewFile(folder.Path("in/file"), L"\x00E9t\x00E9/\x65E5.txt");
        zip.AddNewFile(folder.Path("in"), L"folder");
    }

    TempFolder folder;
    CZip zip;
};

class SmallFormatZip : public CZip
{
public:
    SmallFormatZip() { State().start64 = {1000, 3}; }
};

} // namespace

TEST_F(ZipReadBackTest, OtherToolsFindNothingWrong)
{
    zip.Open(folder.Path("new.zip"), CZip::zipCreate);
    AddSome();
    zip.SetComment(L"a comment");
    zip.Close();
    ExpectSound(folder, "new.zip");
    zip.Open(folder.Path("new.zip"));
    Add("noise", "short now");
    CStringArray names;
    names.Add(L"empty");
    zip.DeleteFiles(names);
    zip.Close();
    ExpectSound(folder, "new.zip");
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

TEST_F(ZipReadBackTest, OtherToolsReadZip64Records)
{
    SmallFormatZip small;
    small.Open(folder.Path("wide.zip"), CZip::zipCreate);
    for (const char* const name : {"a", "b", "c", "d"})
        small.AddNewFile(folder.Write("in/file", Words(200000)), CString(name).GetString());
    small.Close();
    EXPECT_NE(folder.Read("wide.zip").find("PK\x06\x06"), std::string::npos);
    ExpectSound(folder, "wide.zip");
}

/// The process ends at every operation on files in turn, while an archive is added to, cut and renamed.
TEST_F(ZipReadBackTest, AnEndAtAnyMomentLeavesTheOldArchiveOrANewOne)
{
    const CString path = folder.Path("pack.zip");
    const CString file = folder.Write("in/file", Words(150000));
    zip.Open(path, CZip::zipCreate);
    for (LPCWSTR name : {L"a", L"b", L"c"})
        zip.AddNewFile(file, name);
    zip.Close();
    const std::string bytes = folder.Read("pack.zip");
    const Contents before = ContentsOf(path);
    static int left;
    int ended = 1;
    for (int number = 1; ended != 0; ++number) {
        folder.Write("pack.zip", bytes);
        const pid_t child = fork();
        if (child == 0) {
            left = number;
            vak::system::SetFileFaultHook(
                [](vak::system::FileOperation) -> DWORD { return --left == 0 ? (_exit(1), 1) : 0; });
            zip.Open(path);
            zip.AddNewFile(file, L"d");
            CStringArray names;
            names.Add(L"a");
            zip.DeleteFiles(names);
            zip.AddNewFile(file, L"a");
            zip.Close();
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ended = WEXITSTATUS(status);
        const Contents now = ContentsOf(path);
        EXPECT_TRUE(now == before || now.count("d") == 1) << number;
        EXPECT_EQ(now.count("b") + now.count("c"), 2u) << number;
        for (int i = 1; i < 4; ++i)
            std::filesystem::remove(folder.Host("pack.zip." + std::to_string(i) + ".tmp"));
        ASSERT_LT(number, 300);
    }
    EXPECT_EQ(ContentsOf(path).size(), 4u);
}
