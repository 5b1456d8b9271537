#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr const char* kTriangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

/// Runs the host as a user does: arguments in, output and exit code out.
class Vakconvert : public testing::Test
{
protected:
    /// `arguments` as on a command line; "@" stands for the test's folder.
    DWORD Run(CString arguments)
    {
        arguments.Replace(L"@", m_folder.Path());
        CString command = L"vakconvert.exe --preferences " + m_folder.Path("prefs.dat") + L" " + arguments;
        SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
        const HANDLE output = CreateFileW(m_folder.Path("output.txt"), GENERIC_WRITE, FILE_SHARE_READ,
                                          &inherit, CREATE_ALWAYS, 0, nullptr);
        STARTUPINFOW start{};
        start.cb = sizeof(start);
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdOutput = start.hStdError = output;
        PROCESS_INFORMATION process{};
        DWORD code = 0xFFFF;
        if (CreateProcessW(nullptr, command.GetBuffer(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                           &process)) {
            WaitForSingleObject(process.hProcess, 60000);
            GetExitCodeProcess(process.hProcess, &code);
            CloseHandle(process.hThread);
            CloseHandle(process.hProcess);
        }
        CloseHandle(output);
        m_output = m_folder.Read("output.txt");
        return code;
    }

    bool Says(const char* text) const { return m_output.find(text) != std::string::npos; }

    vak::test::TempFolder m_folder;
    std::string m_output;
};

} // namespace

TEST_F(Vakconvert, ConvertsATreeAndReportsTheFileThatFailed)
{
    m_folder.Write("in/été/a b.obj", kTriangle);
    m_folder.Write("in/deep/er/damaged.stl", "solid x\nfacet");
    m_folder.Write("in/notes.txt", "nothing to convert");
    EXPECT_EQ(Run(L"-r --to .ply --dest @out @in"), 1u) << m_output;
    EXPECT_TRUE(Says("Mauvais format de fichier")) << m_output;
    EXPECT_TRUE(Says("1 converted, 1 failed, 1 passed over")) << m_output;
    EXPECT_EQ(m_folder.Names(),
              (std::vector<std::string>{"in", "in/deep", "in/deep/er", "in/deep/er/damaged.stl",
                                        "in/notes.txt", "in/été", "in/été/a b.obj", "out", "out/été",
                                        "out/été/a b.ply", "output.txt"}))
        << "no temporary file or folder may stay";
}

TEST_F(Vakconvert, ReplacesAFileOnlyWhenAsked)
{
    m_folder.Write("a.obj", kTriangle);
    m_folder.Write("a.ply", "mine");
    EXPECT_EQ(Run(L"--to ply @a.obj"), 1u);
    EXPECT_TRUE(Says("a.ply exists")) << m_output;
    EXPECT_EQ(m_folder.Read("a.ply"), "mine");
    EXPECT_EQ(Run(L"--to ply -y @a.obj"), 0u) << m_output;
    EXPECT_EQ(m_folder.Read("a.ply").substr(0, 4), "ply\n");
}

TEST_F(Vakconvert, OneSourceNeverReplacesTheResultOfAnother)
{
    m_folder.Write("in/a.obj", kTriangle);
    m_folder.Write("in/a.ply", "ply\nformat ascii 1.0\n");
    m_folder.Write("in/b.obj", "v 0 0 0\n");
    EXPECT_EQ(Run(L"-y --to stl --dest @out @in\\*.obj @in/a.obj @in\\a.ply"), 1u);
    EXPECT_TRUE(Says("a.stl is already the result of another source")) << m_output;
    EXPECT_TRUE(Says("1 converted, 2 failed")) << m_output;
}

TEST_F(Vakconvert, WrongCallsAreToldApartFromFailures)
{
    m_folder.Write("a.obj", kTriangle);
    for (const wchar_t* arguments :
         {L"", L"@a.obj", L"--to .xyz @a.obj", L"--to stl --option nonsense=1 @a.obj",
          L"--to jpg --option quality=101 @a.obj", L"--to stl --to ply @a.obj", L"--frobnicate", L"--to"})
        EXPECT_EQ(Run(arguments), 2u) << m_output;
    EXPECT_EQ(Run(L"--to stl @missing.obj"), 1u);
    EXPECT_TRUE(Says("there is no such file or folder")) << m_output;
    EXPECT_EQ(Run(L"--list-plugins"), 0u);
    EXPECT_TRUE(Says("loaded, 3 kinds")) << m_output;
}

TEST_F(Vakconvert, KeepsOptionsForLaterRunsWhenAsked)
{
    m_folder.Write("a.obj", kTriangle);
    EXPECT_EQ(Run(L"--to stl -y --option binary=0 @a.obj"), 0u) << m_output;
    EXPECT_EQ(m_folder.Read("a.stl").substr(0, 5), "solid");
    EXPECT_EQ(Run(L"--to stl -y @a.obj"), 0u) << "the option was for that run";
    EXPECT_EQ(m_folder.Read("a.stl").substr(0, 6), "binary");
    EXPECT_EQ(Run(L"--to stl -y --option binary=0 --save-options @a.obj"), 0u) << m_output;
    EXPECT_EQ(Run(L"--to stl -y @a.obj"), 0u);
    EXPECT_EQ(m_folder.Read("a.stl").substr(0, 5), "solid");
}
