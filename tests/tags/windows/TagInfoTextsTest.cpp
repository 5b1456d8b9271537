#include "framework/base/Application.h"
#include "tags/TagInfo.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned int kOwnText = 20000;

int Nothing(CTagInfo&, CTagValue&, _TAGDATA_INFO)
{
    return 0;
}

} // namespace

TEST(TagInfo, NamesItselfByATextOfTheModuleThatRegisteredIt)
{
    CTagInfo tag;
    tag.m_friendlyNameId = kOwnText;
    tag.m_classNameId = 5302;
    ASSERT_EQ(AfxGetResourceHandle(), nullptr) << "the host must not be what finds the text";
    EXPECT_TRUE(tag.GetTagFriendlyName().IsEmpty());
    tag.m_callback = Nothing;
    EXPECT_EQ(tag.GetTagFriendlyName(), CString(L"Balise de l'hôte"));
    EXPECT_EQ(tag.GetClassName(), CString(L"Vrai")) << "the library's own text comes first";
}
