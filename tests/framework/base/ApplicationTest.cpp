#include "framework/base/Application.h"
#include "framework/base/StringTable.h"
#include "framework/base/SystemMessage.h"
#include "resources/Ids.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

TEST(Application, TheNewestIsCurrentInWhateverOrderTheyEnd)
{
    CWinApp* const before = AfxGetApp();
    auto first = std::make_unique<CWinApp>(L"premier");
    auto second = std::make_unique<CWinApp>(L"second");
    auto third = std::make_unique<CWinApp>();
    second.reset();
    EXPECT_EQ(AfxGetApp(), third.get());
    third.reset();
    EXPECT_EQ(AfxGetApp(), first.get());
    EXPECT_EQ(CString(AfxGetAppName()), CString(L"premier"));
    first.reset();
    EXPECT_EQ(AfxGetApp(), before);
}

TEST(Application, AnUnattendedBoxGetsItsDefaultButton)
{
    const std::pair<UINT, int> rows[] = {
        {MB_OK | MB_ICONSTOP, IDOK},      {MB_OKCANCEL | MB_DEFBUTTON2, IDCANCEL},
        {MB_YESNOCANCEL, IDYES},          {MB_YESNOCANCEL | 0x200, IDCANCEL},
        {MB_YESNO | MB_DEFBUTTON2, IDNO}, {2, 3},
        {MB_OK | MB_DEFBUTTON2, IDOK},    {0xF, IDOK}};
    for (const auto& [type, answer] : rows)
        EXPECT_EQ(vak::DefaultAnswer(type), answer) << type;
}

TEST(StringTable, TextsFollowTheLanguageAndFallBackToFrench)
{
    constexpr LANGID kEnglish = 1033;
    constexpr LANGID kBritish = 2057, kGerman = 1031;
    CString text;
    EXPECT_TRUE(vak::LoadText(text, IDS_DATE_SUNDAY, kBritish) && text == L"Sunday");
    EXPECT_TRUE(vak::LoadText(text, IDS_DATE_SUNDAY, kGerman) && text == L"Dimanche");
    vak::SetTextLanguage(kEnglish);
    EXPECT_TRUE(text.LoadString(IDS_DATE_SUNDAY) && text == L"Sunday");
    vak::SetTextLanguage(vak::kDefaultTextLanguage);
    EXPECT_FALSE(vak::LoadText(text, 999) || vak::LoadText(text, 0) ||
                 vak::LoadText(text, 0x10000 + IDS_OUT_OF_MEMORY));
    EXPECT_EQ(text, CString(L"Sunday"));
}

TEST(StringTable, PlaceholdersTakeTheirArgumentsOnce)
{
    CString text;
    AfxFormatString2(text, IDS_FILE_END, L"%2", L"%1");
    EXPECT_EQ(text, CString(L"La fin de %2 est dépassée."));
}

TEST(SystemMessage, ErrorTextsHaveNoLineEnd)
{
    for (const DWORD code : {2u, 5u, 112u, 0xDEADu}) {
        const CString text = vak::system::ErrorText(code);
        ASSERT_FALSE(text.IsEmpty()) << code;
        EXPECT_GT(text[text.GetLength() - 1], L' ') << code;
    }
    EXPECT_EQ(vak::system::ErrorText(0xDEAD), CString(L"Error 57005."));
}
