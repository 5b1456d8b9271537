#include "framework/ui/PropertySheet.h"

#include "framework/ui/PropertyPage.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/Print.h"

namespace {

class ProbePage : public CPropertyPage
{
public:
    ProbePage() : CPropertyPage(4000) {}

    BOOL OnSetActive() override
    {
        if (m_ends)
            EndDialog(88);
        return Tell(L"shown;");
    }
    BOOL OnKillActive() override { return Tell(L"left;"); }
    BOOL OnQueryCancel() override { return Tell(L"asked;"); }
    void OnOK() override { Tell(L"OK;"); }
    void OnCancel() override { Tell(L"cancelled;"); }

    CString m_log;
    bool m_accepts = true;
    bool m_ends = false;

private:
    bool Tell(const wchar_t* what)
    {
        m_log += what;
        return m_accepts;
    }
};

template <class Act>
INT_PTR Show(CPropertySheet& sheet, Act act)
{
    vak::test::DialogDriver driver([&](HWND) {
        act();
        return true;
    });
    return sheet.DoModal();
}

} // namespace

TEST(PropertySheet, AsksItsPagesAndTellsThem)
{
    CPropertySheet sheet;
    ProbePage first, second;
    sheet.AddPage(&first);
    sheet.AddPage(&second);
    const auto press = [&](WPARAM id) { sheet.SendMessage(WM_COMMAND, id); };
    EXPECT_EQ(Show(sheet,
                   [&] {
                       first.m_accepts = false;
                       EXPECT_FALSE(sheet.SetActivePage(1));
                       press(IDCANCEL);
                       press(IDOK);
                       EXPECT_EQ(first.m_log, L"shown;left;asked;left;");
                       first.m_accepts = true;
                       EXPECT_TRUE(sheet.SetActivePage(1));
                       press(IDOK);
                   }),
              IDOK);
    EXPECT_EQ(first.m_log, L"shown;left;asked;left;left;OK;");
    EXPECT_EQ(second.m_log, L"shown;left;OK;");

    first.m_accepts = false;
    const CPropertyPage* shown = nullptr;
    const auto look = [&] {
        shown = sheet.GetActivePage();
        second.EndDialog(7);
    };
    EXPECT_EQ(Show(sheet, look), 7);
    EXPECT_EQ(shown, &second) << "the first does not want to be shown";
    sheet.RemovePage(&first);
    EXPECT_EQ(Show(sheet, [&] { press(IDCANCEL); }), IDCANCEL);
    EXPECT_EQ(second.m_log.Right(22), L"shown;asked;cancelled;");
    EXPECT_EQ(Show(sheet, [&] { sheet.DestroyWindow(); }), -1);
    second.m_ends = true;
    EXPECT_EQ(sheet.DoModal(), 88) << "it ends before its loop begins";
}
