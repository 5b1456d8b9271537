#include "files/BatchInfo.h"
#include "files/FileExt.h"
#include "files/FileIo.h"
#include "tests/support/Slots.h"

#include <gtest/gtest.h>

#include <cstddef>

using vak::test::InOrder;
using vak::test::SlotOf;

namespace {

struct OpenFileIo : CFileIo
{
    using CFileIo::CFileIo;

    bool IsInOrder() const
    {
        return InOrder({&m_alternativeClass, &m_customData, &m_fileInfo, &m_alternativeInfo, &m_flags,
                        &m_ioError, &m_ioErrorText, &m_parser, &m_parentWnd});
    }
};

} // namespace

TEST(FileLayout, StaysWherePluginsThatAreInUseExpectIt)
{
    constexpr std::size_t kCodes = 2 * sizeof(CString);
    EXPECT_EQ(offsetof(CFileExt, m_extension), sizeof(CString));
    EXPECT_EQ(offsetof(CFileExt, m_class), kCodes);
    EXPECT_EQ(offsetof(CFileExt, m_properties), kCodes + 4);
    EXPECT_EQ(offsetof(CFileExt, m_loader), kCodes + 8);
    EXPECT_EQ(offsetof(CFileExt, m_saver), kCodes + 12);
    EXPECT_EQ(offsetof(CFileExt, m_initCallback), kCodes + 16);
    EXPECT_TRUE(OpenFileIo(CFileNameSpec(L"a"), 0, nullptr).IsInOrder());
    EXPECT_EQ(SlotOf(&CFileIo::CloseParser), 2u);
    EXPECT_EQ(SlotOf(&CFileIo::InitParser), 3u);
    const BatchInfo b;
    EXPECT_TRUE(InOrder({&b.m_srcMode, &b.m_dstMode, &b.m_srcFolder, &b.m_dstFolder, &b.m_recreateFolderTree,
                         &b.m_recurseFolder, &b.m_albumFolder, &b.m_selFiles, &b.m_albumFiles, &b.m_flags}));
}
