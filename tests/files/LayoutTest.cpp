#include "files/BatchInfo.h"
#include "files/FileExt.h"
#include "files/FileIo.h"
#include "tests/support/Slots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace {

struct OpenFileIo : CFileIo
{
    using CFileIo::CFileIo;

    bool IsInOrder() const
    {
        const void* const members[] = {&m_alternativeClass, &m_customData, &m_fileInfo,
                                       &m_alternativeInfo,  &m_flags,      &m_ioError,
                                       &m_ioErrorText,      &m_parser,     &m_parentWnd};
        return std::is_sorted(std::begin(members), std::end(members));
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
    EXPECT_EQ(vak::test::SlotOf(&CFileIo::CloseParser), 2u);
    EXPECT_EQ(vak::test::SlotOf(&CFileIo::InitParser), 3u);
    const BatchInfo b;
    const void* const members[] = {
        &b.m_srcMode,       &b.m_dstMode,     &b.m_srcFolder, &b.m_dstFolder,  &b.m_recreateFolderTree,
        &b.m_recurseFolder, &b.m_albumFolder, &b.m_selFiles,  &b.m_albumFiles, &b.m_flags,
    };
    EXPECT_TRUE(std::is_sorted(std::begin(members), std::end(members)));
}
