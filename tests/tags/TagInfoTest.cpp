#include "tags/TagInfo.h"
#include "resources/Ids.h"
#include "tests/support/Print.h"
#include "tests/tags/TagTexts.h"

#include <gtest/gtest.h>

#include <cstddef>

TEST(TagInfo, KeepsItsMembersWhereRegistrarsExpectThem)
{
    constexpr std::size_t kText = sizeof(CString);
    const CTagInfo tag;
    const std::pair<const void*, std::size_t> rows[] = {
        {&tag.m_tagId, 0},
        {&tag.m_tagClass, 4},
        {&tag.m_tagName, 8},
        {&tag.m_dataType, 8 + kText},
        {&tag.m_flags, 12 + kText},
        {&tag.m_friendlyNameId, 16 + kText},
        {&tag.m_classNameId, 20 + kText},
        {&tag.m_callback, 24 + kText},
        {&tag.m_callbackData, 32 + kText},
        {&tag.m_parameters, 40 + kText},
    };
    for (const auto& [member, offset] : rows)
        EXPECT_EQ(static_cast<const char*>(member), reinterpret_cast<const char*>(&tag) + offset) << offset;
}

TEST(TagInfo, NamesItselfByATextOfTheLibraryUnlessTheNameIsLiteral)
{
    CTagInfo tag('TAGC', 'IFNE');
    EXPECT_EQ(tag.GetTagClass(), 0x54414743u);
    EXPECT_EQ(tag.GetTagID(), 0x49464E45u);
    EXPECT_TRUE(tag.GetTagFriendlyName().IsEmpty());
    tag.m_friendlyNameId = IDS_TRUE;
    tag.m_classNameId = IDS_TAG_PARAMETER + 1;
    EXPECT_EQ(vak::test::InBoth([&] { return tag.GetTagFriendlyName(); }), CString(L"Vrai | True"));
    EXPECT_EQ(tag.GetClassName(), CString(L"Extension"));
    tag.SetFriendlyName(L"Mon nom");
    EXPECT_EQ(CTagInfo(tag).GetTagFriendlyName(), CString(L"Mon nom"));
    EXPECT_EQ(tag.m_friendlyNameId, 0u);
    tag.Init();
    EXPECT_TRUE(tag.GetTagFriendlyName().IsEmpty() && tag.GetClassName().IsEmpty() && tag.GetTagID() == 0);
}
