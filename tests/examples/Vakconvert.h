#pragma once

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vak::test {

using Names = std::vector<std::string>;

constexpr const char* kTriangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

/// Runs the host as a user does: arguments in, output and exit code out.
class Vakconvert : public testing::Test
{
protected:
    /// `arguments` as on a command line; "@" stands for the test's folder.
    DWORD Run(const CString& arguments)
    {
        Start(arguments);
        return Finish();
    }

    void Start(CString arguments)
    {
        arguments.Replace(L"@", m_folder.Path());
        CString command = L"vakconvert.exe --preferences " + m_folder.Path("prefs.dat") + L" " + arguments;
        SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
        // A program that has just ended may hold its output a moment longer.
        const HANDLE output =
            CreateFileW(m_folder.Path("output.txt"), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                        &inherit, CREATE_ALWAYS, 0, nullptr);
        STARTUPINFOW start{};
        start.cb = sizeof(start);
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdOutput = start.hStdError = output;
        m_process = {};
        CreateProcessW(nullptr, command.GetBuffer(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                       &m_process);
        CloseHandle(output);
    }

    /// Waits for its end; one that does not come fails the test.
    DWORD Finish()
    {
        DWORD code = 0xFFFF;
        if (WaitForSingleObject(m_process.hProcess, 60000) == WAIT_TIMEOUT) {
            ADD_FAILURE() << "vakconvert does not end";
            TerminateProcess(m_process.hProcess, code);
        }
        GetExitCodeProcess(m_process.hProcess, &code);
        CloseHandle(m_process.hThread);
        CloseHandle(m_process.hProcess);
        m_output = m_folder.Read("output.txt");
        return code;
    }

    bool Says(const char* text) const { return m_output.find(text) != std::string::npos; }

    /// The files of that extension.
    Names Made(const char* extension) const
    {
        Names names = m_folder.Names();
        std::erase_if(names, [&](const std::string& name) { return !name.ends_with(extension); });
        return names;
    }

    TempFolder m_folder;
    std::string m_output;
    PROCESS_INFORMATION m_process{};
};

} // namespace vak::test
