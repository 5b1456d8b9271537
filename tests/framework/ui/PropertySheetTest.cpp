#include "framework/ui/PropertySheet.h"

#include "framework/ui/PropertyPage.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace {

class ProbePage : public CPropertyPage
{
public:
    ProbePage() : CPropertyPage(4000) {}

    BOOL OnSetActive() override { return Tell(L"shown;"); }
    BOOL OnKillActive() override { return Tell(L"left;"); }
    BOOL OnQueryCancel() override { return Tell(L"asked;"); }
    void OnOK() override { Tell(L"OK;"); }
    void OnCancel() override { Tell(L"cancelled;"); }

    CString m_log;
    bool m_accepts = true;
    bool m_throws = false;
    bool m_ends = false;

private:
    bool Tell(const wchar_t* what)
    {
        m_log += what;
        if (m_throws)
            throw 1;
        if (m_ends)
            EndDialog(88);
        return m_accepts;
    }
};

/// Changes its pages before the base makes them.
class ChangingSheet : public CPropertySheet
{
public:
    CPropertyPage* m_late = nullptr;
    CPropertyPage* m_lost = nullptr;

protected:
    BOOL OnInitDialog() override
    {
        RemovePage(m_lost);
        AddPage(m_late);
        SetActivePage(m_late);
        return CPropertySheet::OnInitDialog();
    }
};

} // namespace

TEST(PropertySheet, AsksItsPagesAndTellsThem)
{
    CPropertySheet sheet;
    ProbePage first, second;
    sheet.AddPage(&first);
    sheet.AddPage(&second);
    const auto press = [&](WPARAM id) { sheet.SendMessage(WM_COMMAND, id); };
    ASSERT_TRUE(sheet.Create());
    first.m_accepts = false;
    EXPECT_FALSE(sheet.SetActivePage(1));
    press(IDCANCEL);
    press(IDOK);
    first.m_accepts = true;
    EXPECT_TRUE(sheet.SetActivePage(1));
    press(IDOK);
    EXPECT_EQ(sheet.GetSafeHwnd(), nullptr);
    EXPECT_EQ(first.m_log, L"shown;left;asked;left;left;OK;");
    EXPECT_EQ(second.m_log, L"shown;left;OK;");

    first.m_accepts = false;
    ASSERT_TRUE(sheet.Create());
    EXPECT_EQ(sheet.GetActivePage(), &second) << "the first does not want to be shown";
    sheet.RemovePage(&first);
    second.m_throws = true;
    press(IDOK);
    EXPECT_NE(sheet.GetSafeHwnd(), nullptr) << "the page has not agreed";
    press(IDCANCEL);
    EXPECT_EQ(sheet.GetSafeHwnd(), nullptr);
    EXPECT_EQ(second.m_log, L"shown;left;OK;shown;left;asked;cancelled;");
    second.m_throws = false;
    second.m_ends = true;
    EXPECT_EQ(sheet.DoModal(), 88) << "it ends before its loop begins";
}

TEST(PropertySheet, MayGetPagesWhileItsWindowIsMadeButNotLoseThem)
{
    ChangingSheet sheet;
    ProbePage first, late;
    sheet.AddPage(&first);
    sheet.m_late = &late;
    ASSERT_TRUE(sheet.Create());
    EXPECT_EQ(sheet.GetActivePage(), &late);
    EXPECT_EQ(late.m_log, L"shown;");
    sheet.DestroyWindow();
    sheet.m_lost = &first;
    EXPECT_FALSE(sheet.Create());
    EXPECT_EQ(sheet.GetPageCount(), 1);
}
