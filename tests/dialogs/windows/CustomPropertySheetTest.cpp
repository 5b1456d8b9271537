#include "tests/dialogs/windows/SheetFixture.h"
#include "tests/support/ArchiveBytes.h"

#include <prsht.h>

using namespace vak::test;

TEST_F(SheetTest, SavesPagesThatWereNeverShownAsTheyAre)
{
    m_sheet.GetData().SetInt('SIZE', 700);
    EXPECT_EQ(Run({Key('7'), Key(VK_RETURN)}), IDOK);
    EXPECT_EQ(m_sheet.m_log, L"init;page applies;save;ok;");
    EXPECT_EQ(m_sheet.Stored('QUAL'), 7);
    EXPECT_EQ(m_sheet.Stored('SIZE'), 700);
    EXPECT_TRUE(m_boxes.Boxes().empty());
}

TEST_F(SheetTest, IsServedByTheKeyboardAlone)
{
    m_sheet.AddButton(L"&Valeurs", 0);
    const auto focus = [] { return GetDlgCtrlID(GetFocus()); };
    EXPECT_EQ(Run({
                  [&] { EXPECT_EQ(focus(), kNumber); },
                  Key('3'),
                  Key('V', VK_MENU),
                  [&] { ::SetFocus(m_sheet.GetDlgItem(kApply)); },
                  Key(VK_TAB),
                  Key(VK_SPACE),
                  [&] { EXPECT_EQ(m_sheet.m_log, L"init;button 0;button 0;"); },
                  Key(VK_TAB, VK_CONTROL),
                  [&] { EXPECT_EQ(m_sheet.GetActiveIndex(), 1); },
                  Key(VK_TAB, VK_CONTROL, VK_SHIFT),
                  [&] { EXPECT_EQ(m_sheet.GetActivePage(), &m_quality); },
                  Key('Q', VK_MENU),
                  [&] { EXPECT_EQ(focus(), kNumber); },
                  Key(VK_ESCAPE),
              }),
              IDCANCEL);
    EXPECT_EQ(m_sheet.Stored('QUAL'), 50);

    m_sheet.SetActivePage(&m_size);
    EXPECT_EQ(Run({[&] { ::SetFocus(m_size.GetDlgItem(kSeveralLines)); }, Key(VK_ESCAPE)}), IDCANCEL)
        << "an edit control of several lines";
    EXPECT_EQ(Run({[&] { m_sheet.SendMessage(WM_SYSCOMMAND, SC_CLOSE); }}), IDCANCEL);
}

TEST_F(SheetTest, StaysOnAPageThatIsNotValid)
{
    EXPECT_EQ(Run({
                  [&] { m_quality.Type(L"700"); },
                  Key(VK_TAB, VK_CONTROL),
                  [&] { EXPECT_EQ(m_boxes.Boxes().size(), 1u); },
                  Key(VK_RETURN),
                  [&] {
                      EXPECT_EQ(m_boxes.Boxes().size(), 2u);
                      EXPECT_EQ(m_sheet.GetActiveIndex(), 0);
                      EXPECT_EQ(m_quality.Shown(), L"700");
                      EXPECT_EQ(m_sheet.m_log, L"init;");
                  },
                  [&] { m_quality.Type(L"70"); },
                  Key(VK_RETURN),
              }),
              IDOK);
    EXPECT_EQ(m_sheet.Stored('QUAL'), 70);
}

TEST_F(SheetTest, EndsOnTheLastPageThatFailsAndSavesTheOthers)
{
    NumberPage third('THIR');
    m_sheet.AddPage(&third);
    EXPECT_EQ(Run({
                  [&] { m_sheet.SetActivePage(2); },
                  [&] { m_sheet.SetActivePage(1); },
                  [&] { m_sheet.SetActivePage(0); },
                  [&] {
                      m_quality.Type(L"60");
                      m_size.Type(L"0");
                      third.Type(L"x");
                      m_sheet.Press(IDOK);
                  },
                  [&] {
                      EXPECT_EQ(m_sheet.GetActiveIndex(), 2);
                      EXPECT_EQ(m_boxes.Boxes().size(), 2u);
                      EXPECT_EQ(m_sheet.Stored('QUAL'), 60);
                      EXPECT_EQ(m_sheet.Stored('SIZE'), 5);
                      m_sheet.Press(IDCANCEL);
                  },
              }),
              IDCANCEL);
}

TEST_F(SheetTest, OffersApplyWhileSomethingIsNotApplied)
{
    EXPECT_EQ(Run({
                  [&] { EXPECT_FALSE(m_sheet.CanApply()); },
                  Key('8'),
                  [&] {
                      EXPECT_TRUE(m_sheet.CanApply());
                      m_sheet.m_accepts = false;
                  },
                  Key('A', VK_MENU),
                  [&] {
                      EXPECT_TRUE(m_sheet.CanApply()) << "the hook refused";
                      m_sheet.m_accepts = true;
                      m_sheet.SendMessage(PSM_PRESSBUTTON, PSBTN_APPLYNOW);
                      EXPECT_FALSE(m_sheet.CanApply());
                      EXPECT_EQ(m_sheet.Stored('QUAL'), 8);
                      EXPECT_EQ(m_sheet.m_log, L"init;page applies;save;apply;page applies;save;apply;");
                      m_sheet.m_accepts = false;
                      m_sheet.Press(IDOK);
                  },
                  [&] {
                      m_sheet.m_accepts = true;
                      m_sheet.Press(IDOK);
                  },
              }),
              IDOK);
}

TEST_F(SheetTest, ShowsWhatAButtonFillsInUntilItIsSaved)
{
    m_sheet.AddButton(L"Défaut", 0);
    m_sheet.SetCustomButtonCallback(
        [](int, void* sheet) {
            CCustomData defaults;
            defaults.SetInt('QUAL', 11);
            static_cast<ProbeSheet*>(sheet)->InitPagesFromData(defaults);
            return 0;
        },
        &m_sheet);
    EXPECT_EQ(Run({
                  [&] { m_sheet.Press(kFirstCustom); },
                  [&] {
                      EXPECT_EQ(m_sheet.m_log, L"init;button 0;init again;");
                      EXPECT_TRUE(m_sheet.CanApply());
                      EXPECT_EQ(m_sheet.Stored('QUAL'), 50);
                      m_sheet.SetActivePage(1);
                      m_sheet.SetActivePage(0);
                      EXPECT_EQ(m_quality.Shown(), L"11");
                      m_sheet.Press(IDOK);
                  },
              }),
              IDOK);
    EXPECT_EQ(m_sheet.Stored('QUAL'), 11);
}

TEST_F(SheetTest, PutsItsButtonsBesideTheStandardOnes)
{
    m_sheet.AddButton(L"Usual", 0);
    m_sheet.AddButton(L"Wide", 120);
    m_sheet.m_applyArea = CRect(325, 199, 400, 222);
    const auto check = [&](LONG first, LONG second) {
        EXPECT_EQ(m_sheet.AreaOf(kFirstCustom), CRect(first, 199, first + 75, 222));
        EXPECT_EQ(m_sheet.AreaOf(kFirstCustom + 1), CRect(second, 199, second + 120, 222));
        CRect margin(0, 0, 7, 7);
        MapDialogRect(m_sheet.GetSafeHwnd(), &margin);
        EXPECT_EQ(m_sheet.GetClientRect().right, second + 120 + margin.right);
        EXPECT_LE(CRect(DialogDriver::AreaOf(m_sheet.GetSafeHwnd())).right, GetSystemMetrics(SM_CXSCREEN));
    };
    LOGFONT font{};
    CRect ok;
    EXPECT_EQ(Run({[&] {
                  check(405, 485);
                  const auto handle = m_sheet.SendDlgItemMessage(kFirstCustom + 1, WM_GETFONT);
                  GetObject(reinterpret_cast<HGDIOBJ>(handle), sizeof font, &font);
                  EXPECT_EQ(CString(font.lfFaceName), L"MS Shell Dlg");
                  m_sheet.SendMessage(WM_COMMAND, MAKEWPARAM(kFirstCustom, BN_SETFOCUS));
                  m_sheet.SendMessage(WM_COMMAND, kFirstCustom + 1);
                  EXPECT_EQ(m_sheet.m_log, L"init;button 1;");
                  ok = m_sheet.AreaOf(IDOK);
                  m_sheet.Press(IDCANCEL);
              }}),
              IDCANCEL);

    // Cancel ends where Apply did, and OK keeps its distance to it.
    m_sheet.m_applyArea = CRect();
    m_sheet.RemoveApplyButton();
    EXPECT_EQ(Run({[&] {
                  EXPECT_FALSE(IsWindowVisible(m_sheet.GetDlgItem(kApply)));
                  const CRect apply = m_sheet.AreaOf(kApply);
                  const CRect cancel = m_sheet.AreaOf(IDCANCEL);
                  EXPECT_EQ(cancel, apply);
                  EXPECT_EQ(m_sheet.AreaOf(IDOK), CRect(ok.left + 81, ok.top, ok.right + 81, ok.bottom));
                  check(cancel.right + 5, cancel.right + 85);
                  m_sheet.Press(IDCANCEL);
              }}),
              IDCANCEL);
}

TEST_F(SheetTest, OpensFromInsideAPageAndGoesWithItsOwner)
{
    CWnd owner;
    owner.CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP | WS_VISIBLE, CRect(0, 0, 9, 9), nullptr, 0);
    ProbeSheet inner(&m_quality);
    NumberPage only('QUAL');
    inner.AddPage(&only);
    int opened = 0;
    INT_PTR innerResult = 0;
    m_quality.m_details = [&] {
        ++opened;
        innerResult = inner.DoModal();
    };
    EXPECT_EQ(Run({
                  Key('D', VK_MENU),
                  [&] { EXPECT_FALSE(IsWindowEnabled(m_sheet.GetSafeHwnd())); },
                  Key('9'),
                  Key(VK_RETURN),
                  [&] {
                      EXPECT_EQ(innerResult, IDOK);
                      EXPECT_EQ(inner.Stored('QUAL'), 9);
                      EXPECT_TRUE(IsWindowEnabled(m_sheet.GetSafeHwnd()));
                      EXPECT_EQ(GetActiveWindow(), m_sheet.GetSafeHwnd());
                  },
                  Key(VK_ESCAPE),
              }),
              IDCANCEL);

    ProbeSheet outer(&owner);
    outer.AddPage(&m_quality);
    const auto show = [&] { return outer.DoModal(); };
    EXPECT_EQ(Take({Key('D', VK_MENU), [&] { owner.DestroyWindow(); }}, show), -1);
    EXPECT_EQ(innerResult, -1);
    EXPECT_EQ(opened, 2);
}

TEST_F(SheetTest, WorksWithoutALoopOfItsOwn)
{
    CWnd owner;
    owner.CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP | WS_VISIBLE, CRect(0, 0, 9, 9), nullptr, 0);
    for (const auto& [key, stored] : {std::pair<WORD, int>{VK_ESCAPE, 50}, {VK_RETURN, 4}}) {
        ASSERT_TRUE(m_sheet.Create(&owner));
        EXPECT_FALSE(m_sheet.Create(&owner));
        EXPECT_EQ(m_sheet.DoModal(), -1) << "it is open";
        EXPECT_TRUE(m_sheet.IsModeless() && IsWindowEnabled(owner.GetSafeHwnd()));
        Take({Key('4'), Key(key)}, [&] {
            MSG message{};
            while (m_sheet.GetSafeHwnd() && GetMessage(&message, nullptr, 0, 0) > 0)
                if (!m_sheet.PreTranslateMessage(&message)) {
                    TranslateMessage(&message);
                    DispatchMessage(&message);
                }
            return 0;
        });
        EXPECT_EQ(m_sheet.Stored('QUAL'), stored);
    }
}

TEST_F(SheetTest, KeepsToItsPages)
{
    CCustomPropertySheet empty;
    EXPECT_TRUE(empty.SaveDataFromPages(empty.GetData()));
    EXPECT_FALSE(empty.GetData().HasData());
    EXPECT_EQ(empty.DoModal(), -1);
    for (const int index : {-1, 2}) {
        EXPECT_TRUE(IsRefused([&] { m_sheet.GetPage(index); }));
        EXPECT_TRUE(IsRefused([&] { m_sheet.SetActivePage(index); }));
    }
    {
        ProbeSheet other;
        other.AddPage(&m_size);
        EXPECT_EQ(m_sheet.GetPageCount(), 1);
        EXPECT_EQ(m_size.GetPropertySheet(), &other);
    }
    EXPECT_EQ(m_size.GetPropertySheet(), nullptr) << "the page outlives its sheet";
    auto* doomed = new NumberPage('SIZE');
    EXPECT_EQ(Run({
                  [&] {
                      m_sheet.AddPage(&m_size);
                      m_sheet.AddPage(doomed);
                      EXPECT_TRUE(m_sheet.SetActivePage(doomed));
                      EXPECT_EQ(doomed->Shown(), L"5");
                  },
                  [&] {
                      delete doomed;
                      EXPECT_EQ(m_sheet.GetPageCount(), 2);
                      EXPECT_TRUE(m_sheet.SetActivePage(1));
                      m_sheet.Press(IDOK);
                  },
              }),
              IDOK);
}

TEST_F(SheetTest, OutlivesWhatHooksThrow)
{
    m_sheet.m_initThrows = true;
    m_sheet.AddButton(L"Défaut", 0);
    m_sheet.SetCustomButtonCallback([](int, void*) -> int { throw 1; }, nullptr);
    m_quality.m_details = [] { AfxThrowNotSupportedException(); };
    EXPECT_EQ(Run({
                  [&] {
                      m_sheet.Press(kFirstCustom);
                      DialogDriver::Press(m_quality.GetSafeHwnd(), kDetails);
                  },
                  [&] {
                      EXPECT_EQ(m_boxes.Boxes().size(), 2u);
                      m_sheet.Press(IDOK);
                  },
              }),
              IDOK);
}
