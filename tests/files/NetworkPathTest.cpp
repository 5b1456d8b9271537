#include "files/NetworkPath.h"

#include "files/detail/ShareForm.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <utility>

using vak::detail::NetworkFormByShares;

TEST(NetworkPath, NeedsServerAndShare)
{
    const std::pair<LPCWSTR, int> rows[] = {
        {L"\\\\srv\\share", 1}, {L"\\\\srv\\share\\d\\f.x", 1}, {L"\\\\?\\UNC\\srv\\share\\f", 1},
        {L"\\\\srv\\", 0},      {L"\\\\srv\\\\x", 0},           {L"\\\\\\share", 0},
        {L"\\\\?\\C:\\d", 0},   {L"\\\\.\\pipe\\x", 0},
    };
    for (const auto& [path, isNetwork] : rows)
        EXPECT_EQ(isNetwork, fileIsUNCPath(path)) << testing::PrintToString(CString(path));
    CString form = L"before";
    EXPECT_EQ(1, fileConvertToUNCPath(L"\\\\srv\\share\\f.x", form));
    EXPECT_EQ(CString(L"\\\\srv\\share\\f.x"), form);
}

TEST(NetworkPath, IsBuiltFromTheNearestShare)
{
    const std::vector<vak::system::DiskShare> shares = {
        {L"C$", L"C:\\"}, {L"Base", L"c:\\data\\Base"}, {L"Data", L"C:\\Data\\"}, {L"empty", L""}};
    const LPCWSTR rows[][3] = {
        {L"c:\\dATA\\X\\", L"y.obj", L"\\\\PC\\Data\\X\\y.obj"},
        {L"C:\\Data\\", L"", L"\\\\PC\\Data\\"},
        {L"C:\\Data\\base\\", L"f", L"\\\\PC\\Base\\f"},
        {L"C:\\Data\\Basement\\", L"f", L"\\\\PC\\Data\\Basement\\f"},
        {L"C:\\Database\\", L"f", L"\\\\PC\\C$\\Database\\f"},
    };
    for (const auto& [directory, name, expected] : rows) {
        CString form;
        EXPECT_TRUE(NetworkFormByShares({directory, name}, L"PC", shares, form));
        EXPECT_EQ(CString(expected), form);
    }
    CString form = L"before";
    EXPECT_FALSE(NetworkFormByShares({L"D:\\", L"f"}, L"PC", shares, form));
    EXPECT_FALSE(NetworkFormByShares({L"C:\\", L"f"}, L"", shares, form));
    EXPECT_EQ(CString(L"before"), form);
}
