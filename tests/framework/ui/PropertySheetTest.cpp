#include "framework/ui/PropertySheet.h"

#include "framework/ui/PropertyPage.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

using vak::test::DialogDriver;

namespace {

constexpr UINT kPage = 4000;
constexpr UINT kMissing = 4999;

class ProbePage : public CPropertyPage
{
public:
    explicit ProbePage(UINT templateId = kPage) : CPropertyPage(templateId) {}

    BOOL OnSetActive() override { return Tell(L"shown", m_accepts); }
    BOOL OnKillActive() override { return Tell(L"left", m_accepts); }
    BOOL OnQueryCancel() override { return Tell(L"asked", m_accepts); }
    void OnOK() override { Tell(L"OK", true); }
    void OnCancel() override { Tell(L"cancelled", true); }

    CString m_log;
    bool m_accepts = true;

private:
    BOOL Tell(const wchar_t* what, bool result)
    {
        m_log += CString(what) + L";";
        return result;
    }
};

class ProbeSheet : public CPropertySheet
{
public:
    ProbeSheet() : CPropertySheet(L"Probe") {}

    bool m_endsAtOnce = false;

protected:
    BOOL OnInitDialog() override
    {
        const BOOL result = CPropertySheet::OnInitDialog();
        if (m_endsAtOnce)
            EndDialog(88);
        return result;
    }
};

/// Shows the sheet, and has `act` done by a user.
template <class Act>
INT_PTR Show(CPropertySheet& sheet, Act act)
{
    DialogDriver driver([&](HWND window) {
        EXPECT_EQ(CWnd::FromHandlePermanent(window), &sheet);
        act();
        return true;
    });
    const INT_PTR result = sheet.DoModal();
    EXPECT_EQ(sheet.GetSafeHwnd(), nullptr);
    return result;
}

} // namespace

TEST(PropertySheet, AsksItsPagesAndTellsThem)
{
    ProbeSheet sheet;
    ProbePage first, second;
    sheet.AddPage(&first);
    sheet.AddPage(&second);
    const auto press = [&](int id) { DialogDriver::Press(sheet.GetSafeHwnd(), id); };
    EXPECT_EQ(Show(sheet,
                   [&] {
                       first.m_accepts = false;
                       EXPECT_FALSE(sheet.SetActivePage(1));
                       sheet.SendMessage(WM_COMMAND, IDCANCEL);
                       sheet.SendMessage(WM_COMMAND, IDOK);
                       EXPECT_EQ(first.m_log, L"shown;left;asked;left;");
                       first.m_accepts = true;
                       EXPECT_TRUE(sheet.SetActivePage(1));
                       press(IDOK);
                   }),
              IDOK);
    EXPECT_EQ(first.m_log, L"shown;left;asked;left;left;OK;");
    EXPECT_EQ(second.m_log, L"shown;left;OK;");

    second.m_log.Empty();
    sheet.SetActivePage(&second);
    EXPECT_EQ(Show(sheet, [&] { press(IDCANCEL); }), IDCANCEL);
    EXPECT_EQ(second.m_log, L"shown;asked;cancelled;");
    EXPECT_EQ(Show(sheet, [&] { sheet.EndDialog(77); }), 77);
    EXPECT_EQ(Show(sheet, [&] { sheet.DestroyWindow(); }), -1);

    first.m_accepts = false;
    sheet.SetActivePage(&first);
    EXPECT_EQ(Show(sheet,
                   [&] {
                       EXPECT_EQ(sheet.GetActivePage(), &second) << "the first does not want to be shown";
                       second.EndDialog(7);
                   }),
              7);
}

TEST(PropertySheet, IsNotShownWithoutItsPagesAndEndsBeforeItsLoop)
{
    ProbeSheet sheet;
    EXPECT_FALSE(sheet.Create());
    ProbePage page;
    sheet.AddPage(&page);
    {
        ProbePage missing(kMissing);
        sheet.AddPage(&missing);
        EXPECT_EQ(sheet.DoModal(), -1);
    }
    sheet.m_endsAtOnce = true;
    EXPECT_EQ(sheet.DoModal(), 88);
    EXPECT_FALSE(sheet.Create());
    EXPECT_EQ(page.GetSafeHwnd(), nullptr);
}
