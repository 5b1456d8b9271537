#include "files/FileInfo.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string LittleEndian(unsigned int value)
{
    std::string bytes;
    for (int i = 0; i < 4; ++i)
        bytes += static_cast<char>(value >> 8 * i);
    return bytes;
}

/// The smallest shell link that names a local file: the fixed header, then where the target lies.
std::string Shortcut(const std::string& target)
{
    constexpr unsigned int kHasLocation = 2, kNormalWindow = 1, kFixedDrive = 3;
    const std::string identifier("\x01\x14\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16);
    const std::string header = LittleEndian(0x4C) + identifier + LittleEndian(kHasLocation) +
                               std::string(36, '\0') + LittleEndian(kNormalWindow) + std::string(12, '\0');
    const std::string volume =
        LittleEndian(0x11) + LittleEndian(kFixedDrive) + LittleEndian(0) + LittleEndian(0x10) + '\0';
    const unsigned int targetAt = 0x1C + 0x11;
    const unsigned int suffixAt = targetAt + static_cast<unsigned int>(target.size()) + 1;
    return header + LittleEndian(suffixAt + 1) + LittleEndian(0x1C) + LittleEndian(1) + LittleEndian(0x1C) +
           LittleEndian(targetAt) + LittleEndian(0) + LittleEndian(suffixAt) + volume + target +
           std::string(2, '\0') + LittleEndian(0);
}

} // namespace

TEST(FileInfo, BecomesTheTargetOfItsShortcutWithThatOnesKind)
{
    const vak::test::TempFolder folder;
    const CString target = L"C:\\none\\made up.zip";
    CFileInfo info(folder.Write("a.zip.lnk", Shortcut(CStringA(target).GetString())));
    EXPECT_EQ(info.GetClass(), 0u);
    ASSERT_EQ(info.ResolveShortcut(), 1);
    EXPECT_EQ(info.GetCompleteName(), target);
    EXPECT_EQ(info.GetClass(), unsigned('ZIP '));
    EXPECT_EQ(info.ResolveShortcut(), 0);

    info.Init(folder.Write("bad.lnk", Shortcut("C:\\x").substr(0, 40)));
    EXPECT_EQ(info.ResolveShortcut(), 0);
    EXPECT_EQ(info.GetName(), CString(L"bad.lnk"));
}
