#include "framework/base/Application.h"
#include "tests/support/Print.h"
#include "tests/support/TagEngine.h"

#include <gtest/gtest.h>

TEST(TagInfo, NamesItselfByATextOfTheModuleThatRegisteredIt)
{
    CTagInfo tag;
    tag.m_friendlyNameId = 20000;
    tag.m_classNameId = 5302;
    ASSERT_EQ(AfxGetResourceHandle(), nullptr) << "the host must not be what finds the text";
    EXPECT_TRUE(tag.GetTagFriendlyName().IsEmpty());
    tag.m_callback = vak::test::GiveValue;
    EXPECT_EQ(tag.GetTagFriendlyName(), CString(L"Balise de l'hôte"));
    EXPECT_EQ(tag.GetClassName(), CString(L"Vrai")) << "the library's own text comes first";
}
