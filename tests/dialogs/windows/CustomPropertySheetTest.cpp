#include "dialogs/CustomPropertySheet.h"

#include "dialogs/CustomPropertyPage.h"
#include "framework/base/Exception.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <prsht.h>

#include <vector>

using namespace vak::test;

namespace {

constexpr UINT kQualityPage = 4000;
constexpr UINT kSizePage = 4001;
constexpr int kNumber = 101;
constexpr int kDetails = 103;
constexpr int kSeveralLines = 104;
constexpr int kApply = 0x3021;
constexpr int kFirstCustom = 53280;

/// Shows the number `property`, of which 1 to 100 is valid.
class NumberPage : public CCustomPropertyPage
{
public:
    explicit NumberPage(unsigned int property, UINT templateId = kSizePage) : CCustomPropertyPage(templateId)
    {
        GetDialogPart().AddField({.control = kNumber, .property = property, .minimum = 1, .maximum = 100});
    }
    void Type(const wchar_t* text) { SetDlgItemText(kNumber, text); }
    CString Shown() const { return DialogDriver::TextOf(GetSafeHwnd(), kNumber); }
    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) override
    {
        return id == kDetails ? (m_details(), TRUE) : CCustomPropertyPage::OnCmdMsg(id, code, extra, info);
    }

    std::function<void()> m_details;
};

/// Logs what happens to it.
class ProbeSheet : public CCustomPropertySheet
{
public:
    explicit ProbeSheet(CWnd* parent = nullptr) : CCustomPropertySheet(L"Options", parent) {}

    void InitPagesFromData(CCustomData& data) override
    {
        Tell(GetPage(0)->GetSafeHwnd() ? L"init again;" : L"init;");
        CCustomPropertySheet::InitPagesFromData(data);
    }
    int SaveDataFromPages(CCustomData& data) override
    {
        return Tell(L"save;") && CCustomPropertySheet::SaveDataFromPages(data);
    }
    int OnApplyOrOK(int isOK) override { return Tell(isOK ? L"ok;" : L"apply;") && m_accepts; }
    int OnPushCustomButton(int index) override { return Tell(index ? L"button 1;" : L"button 0;"); }
    int Stored(unsigned int property)
    {
        int value = 0;
        GetData().GetInt(property, value, -1);
        return value;
    }
    CRect AreaOf(int id) const
    {
        CRect area(DialogDriver::AreaOf(GetDlgItem(id)));
        ::MapWindowPoints(nullptr, GetSafeHwnd(), reinterpret_cast<POINT*>(&area), 2);
        return area;
    }
    bool CanApply() const { return IsWindowEnabled(GetDlgItem(kApply)); }
    void Press(int id) { SendMessage(WM_COMMAND, static_cast<WPARAM>(id)); }

    CString m_log;
    bool m_accepts = true;

private:
    bool Tell(const wchar_t* what)
    {
        m_log += what;
        return true;
    }
};

/// A sheet with two pages, and a user who takes one step a tick.
class SheetTest : public testing::Test
{
protected:
    using Steps = std::vector<std::function<void()>>;

    SheetTest()
    {
        m_sheet.AddPage(&m_quality);
        m_sheet.AddPage(&m_size);
        m_sheet.GetData().SetInt('QUAL', 50);
        m_sheet.GetData().SetInt('SIZE', 5);
    }

    /// Takes the steps while `show` runs and returns its result; the last one has it return.
    template <class Show>
    static auto Take(const Steps& steps, Show show)
    {
        std::size_t taken = 0;
        DialogDriver driver([&](HWND window) {
            SetForegroundWindow(window);
            steps[taken]();
            return ++taken == steps.size();
        });
        const auto result = show();
        EXPECT_EQ(taken, steps.size());
        return result;
    }
    INT_PTR Run(const Steps& steps)
    {
        return Take(steps, [this] { return m_sheet.DoModal(); });
    }
    /// Presses a key, with others held.
    static std::function<void()> Key(BYTE key, BYTE held = VK_NONAME, BYTE alsoHeld = VK_NONAME)
    {
        return [=] {
            for (const BYTE code : {held, alsoHeld, key})
                keybd_event(code, 0, 0, 0);
            for (const BYTE code : {key, alsoHeld, held})
                keybd_event(code, 0, KEYEVENTF_KEYUP, 0);
        };
    }

    MessageRecorder m_boxes;
    ProbeSheet m_sheet;
    NumberPage m_quality{'QUAL', kQualityPage};
    NumberPage m_size{'SIZE'};
};

/// What the process holds. The last sixteen bits of a handle are its number: all are tried.
struct Holdings
{
    int gdiObjects, userObjects, blocks;
};

Holdings Count()
{
    Holdings found{};
    for (UINT_PTR number = 1; number <= 0xFFFF; ++number) {
        found.gdiObjects += GetObjectType(reinterpret_cast<HGDIOBJ>(number)) != 0;
        found.userObjects +=
            IsWindow(reinterpret_cast<HWND>(number)) || IsMenu(reinterpret_cast<HMENU>(number));
    }
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(GetProcessHeap(), &entry))
        found.blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
    return found;
}

} // namespace

TEST_F(SheetTest, IsServedByTheKeyboardAlone)
{
    m_sheet.GetData().SetInt('SIZE', 700);
    m_sheet.AddButton(L"&Valeurs", 0);
    EXPECT_EQ(Run({Key('7'), Key(VK_RETURN)}), IDOK);
    EXPECT_EQ(m_sheet.m_log, L"init;save;ok;");
    EXPECT_EQ(m_sheet.Stored('QUAL'), 7);
    EXPECT_EQ(m_sheet.Stored('SIZE'), 700) << "a page that was never opened is not validated";
    EXPECT_TRUE(m_boxes.Boxes().empty());
    m_sheet.m_log.Empty();
    EXPECT_EQ(Run({Key('3'), Key('V', VK_MENU), [&] { ::SetFocus(m_sheet.GetDlgItem(kApply)); }, Key(VK_TAB),
                   Key(VK_SPACE), [&] { EXPECT_EQ(m_sheet.m_log, L"init;button 0;button 0;"); },
                   Key(VK_TAB, VK_CONTROL), [&] { EXPECT_EQ(m_sheet.GetActiveIndex(), 1); },
                   Key(VK_TAB, VK_CONTROL, VK_SHIFT), [&] { EXPECT_EQ(m_sheet.GetActivePage(), &m_quality); },
                   Key('Q', VK_MENU), [&] { EXPECT_EQ(GetFocus(), m_quality.GetDlgItem(kNumber)); },
                   Key(VK_ESCAPE)}),
              IDCANCEL);
    EXPECT_EQ(m_sheet.Stored('QUAL'), 7);

    m_sheet.SetActivePage(&m_size);
    EXPECT_EQ(Run({[&] { ::SetFocus(m_size.GetDlgItem(kSeveralLines)); }, Key(VK_ESCAPE)}), IDCANCEL)
        << "an edit control of several lines";
    EXPECT_EQ(Run({[&] { m_sheet.SendMessage(WM_SYSCOMMAND, SC_CLOSE); }}), IDCANCEL);
}

TEST_F(SheetTest, StaysOnPagesThatAreNotValidTheLastOneInTheEnd)
{
    NumberPage third('THIR');
    m_sheet.AddPage(&third);
    EXPECT_EQ(Run({[&] {
                       m_quality.Type(L"700");
                       EXPECT_FALSE(m_sheet.SetActivePage(2));
                       m_sheet.Press(IDOK);
                       EXPECT_EQ(m_boxes.Boxes().size(), 2u);
                       EXPECT_EQ(m_sheet.m_log, L"init;") << "the page refused before anything was saved";
                       EXPECT_EQ(m_quality.Shown(), L"700");
                       m_quality.Type(L"60");
                   },
                   [&] {
                       for (const int index : {2, 1, 0})
                           EXPECT_TRUE(m_sheet.SetActivePage(index));
                       m_size.Type(L"0");
                       third.Type(L"x");
                       m_sheet.Press(IDOK);
                       EXPECT_EQ(m_sheet.GetActiveIndex(), 2);
                       EXPECT_EQ(m_boxes.Boxes().size(), 4u);
                       EXPECT_EQ(m_sheet.Stored('QUAL'), 60);
                       EXPECT_EQ(m_sheet.Stored('SIZE'), 5);
                       m_sheet.Press(IDCANCEL);
                   }}),
              IDCANCEL);
}

TEST_F(SheetTest, OffersApplyWhileSomethingIsNotApplied)
{
    NumberPage same('QUAL');
    m_sheet.AddPage(&same);
    m_sheet.AddButton(L"Défaut", 0);
    m_sheet.SetCustomButtonCallback(
        [](int, void* sheet) {
            CCustomData defaults;
            defaults.SetInt('QUAL', 11);
            static_cast<ProbeSheet*>(sheet)->InitPagesFromData(defaults);
            return 0;
        },
        &m_sheet);
    EXPECT_EQ(Run({[&] { EXPECT_FALSE(m_sheet.CanApply()); }, Key('8'),
                   [&] {
                       EXPECT_TRUE(m_sheet.CanApply());
                       m_sheet.m_accepts = false;
                       m_sheet.Press(kApply);
                       EXPECT_TRUE(m_sheet.CanApply()) << "the hook refused";
                       m_sheet.Press(IDOK);
                       m_sheet.m_accepts = true;
                       m_sheet.SendMessage(PSM_PRESSBUTTON, PSBTN_APPLYNOW);
                       EXPECT_FALSE(m_sheet.CanApply());
                       EXPECT_EQ(m_sheet.Stored('QUAL'), 8);
                       EXPECT_EQ(m_sheet.m_log, L"init;save;apply;save;ok;save;apply;");
                       m_sheet.SetActivePage(&same);
                       same.Type(L"9");
                       m_sheet.SetActivePage(0);
                       m_sheet.Press(kApply);
                       EXPECT_EQ(m_quality.Shown(), L"9") << "a value of two pages";
                       m_sheet.Press(kFirstCustom);
                       EXPECT_TRUE(m_sheet.CanApply());
                       EXPECT_EQ(m_sheet.Stored('QUAL'), 9);
                       m_sheet.SetActivePage(1);
                       m_sheet.SetActivePage(0);
                       EXPECT_EQ(m_quality.Shown(), L"11");
                       m_sheet.Press(IDOK);
                   }}),
              IDOK);
    EXPECT_EQ(m_sheet.Stored('QUAL'), 11);
}

TEST_F(SheetTest, PutsItsButtonsBesideTheStandardOnes)
{
    m_sheet.AddButton(L"Usual", 0);
    m_sheet.AddButton(L"Wide", 120);
    const auto check = [&] {
        const CRect at = m_sheet.AreaOf(kApply); // also when Cancel has come here
        EXPECT_EQ(m_sheet.AreaOf(kFirstCustom), at + CPoint(5 + at.Width(), 0));
        const LONG left = at.right + 5 + at.Width() + 5;
        EXPECT_EQ(m_sheet.AreaOf(kFirstCustom + 1), CRect(left, at.top, left + 120, at.bottom));
        CRect margin(0, 0, 7, 7);
        MapDialogRect(m_sheet.GetSafeHwnd(), &margin);
        EXPECT_EQ(m_sheet.GetClientRect().right, left + 120 + margin.right);
        LOGFONT font{};
        GetObject(reinterpret_cast<HGDIOBJ>(m_sheet.SendDlgItemMessage(kFirstCustom, WM_GETFONT)),
                  sizeof font, &font);
        EXPECT_EQ(CString(font.lfFaceName), L"MS Shell Dlg");
        m_sheet.SendMessage(WM_COMMAND, MAKEWPARAM(kFirstCustom, BN_SETFOCUS));
        m_sheet.Press(kFirstCustom + 1);
    };
    CRect ok;
    const auto look = [&] {
        check();
        ok = m_sheet.AreaOf(IDOK);
        m_sheet.RemoveApplyButton();
        EXPECT_EQ(m_sheet.AreaOf(IDCANCEL), m_sheet.AreaOf(kApply));
        m_sheet.Press(IDCANCEL);
    };
    EXPECT_EQ(Run({look}), IDCANCEL);
    const auto lookAgain = [&] {
        check();
        EXPECT_FALSE(IsWindowVisible(m_sheet.GetDlgItem(kApply)));
        EXPECT_EQ(m_sheet.AreaOf(IDCANCEL), m_sheet.AreaOf(kApply));
        EXPECT_EQ(m_sheet.AreaOf(IDOK), ok + CPoint(81, 0)) << "as far as Cancel";
        m_sheet.Press(IDCANCEL);
    };
    EXPECT_EQ(Run({lookAgain}), IDCANCEL);
    EXPECT_EQ(m_sheet.m_log, L"init;button 1;init;button 1;");
}

TEST_F(SheetTest, OpensFromInsideAPageAndGoesWithItsOwner)
{
    CWnd owner;
    owner.CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP | WS_VISIBLE, CRect(0, 0, 9, 9), nullptr, 0);
    ProbeSheet inner(&m_quality);
    inner.AddPage(&m_size);
    INT_PTR result = 0;
    m_quality.m_details = [&] { result = inner.DoModal(); };
    EXPECT_EQ(Run({Key('D', VK_MENU), [&] { EXPECT_FALSE(IsWindowEnabled(m_sheet.GetSafeHwnd())); }, Key('9'),
                   Key(VK_RETURN),
                   [&] {
                       EXPECT_EQ(result, IDOK);
                       EXPECT_EQ(inner.Stored('SIZE'), 9);
                       EXPECT_TRUE(IsWindowEnabled(m_sheet.GetSafeHwnd()));
                       EXPECT_EQ(GetActiveWindow(), m_sheet.GetSafeHwnd());
                   },
                   Key(VK_ESCAPE)}),
              IDCANCEL);

    ProbeSheet outer(&owner);
    outer.AddPage(&m_quality);
    const auto show = [&] { return outer.DoModal(); };
    EXPECT_EQ(Take({Key('D', VK_MENU), [&] { owner.DestroyWindow(); }}, show), -1);
    EXPECT_EQ(result, -1);
}

TEST_F(SheetTest, WorksInALoopOfTheHost)
{
    ASSERT_TRUE(m_sheet.Create());
    EXPECT_EQ(m_sheet.DoModal(), -1) << "it is open";
    Take({Key('4'), Key(VK_RETURN)}, [&] {
        MSG message{};
        while (m_sheet.GetSafeHwnd() && GetMessage(&message, nullptr, 0, 0) > 0)
            if (!m_sheet.PreTranslateMessage(&message))
                DispatchMessage(&message);
        return 0;
    });
    EXPECT_EQ(m_sheet.Stored('QUAL'), 4);
}

TEST_F(SheetTest, OutlivesPagesAndWhatHooksThrow)
{
    CCustomPropertySheet empty;
    EXPECT_TRUE(empty.SaveDataFromPages(empty.GetData()) && !empty.GetData().HasData());
    EXPECT_EQ(empty.DoModal(), -1);
    for (const UINT templateId : {4002u, 4999u}) {
        NumberPage cannotBeMade('NONE', templateId);
        empty.AddPage(&cannotBeMade);
        EXPECT_EQ(empty.DoModal(), -1);
    }
    EXPECT_TRUE(IsRefused([&] { m_sheet.GetPage(-1); }));
    EXPECT_TRUE(IsRefused([&] { m_sheet.SetActivePage(2); }));
    CPropertySheet().AddPage(&m_size);
    EXPECT_EQ(m_sheet.GetPageCount(), 1);
    EXPECT_EQ(m_size.GetPropertySheet(), nullptr) << "a sheet of another class took it";
    ProbeSheet().AddPage(&m_size);
    EXPECT_EQ(m_size.GetPropertySheet(), nullptr) << "the page outlives its sheet";

    auto* doomed = new NumberPage('SIZE');
    m_sheet.AddButton(L"Défaut", 0);
    m_sheet.SetCustomButtonCallback([](int, void*) -> int { throw 1; }, nullptr);
    m_quality.m_details = [] { AfxThrowNotSupportedException(); };
    EXPECT_EQ(Run({[&] {
                       m_quality.SendMessage(WM_COMMAND, kDetails);
                       EXPECT_EQ(m_boxes.Boxes().size(), 1u);
                       m_sheet.Press(kFirstCustom);
                       m_sheet.AddPage(&m_size);
                       m_sheet.AddPage(doomed);
                       NumberPage cannotBeMade('NONE', 4999);
                       m_sheet.AddPage(&cannotBeMade);
                       EXPECT_EQ(cannotBeMade.GetPropertySheet(), nullptr);
                       EXPECT_TRUE(m_sheet.SetActivePage(doomed));
                       EXPECT_EQ(doomed->Shown(), L"5");
                   },
                   [&] {
                       delete doomed;
                       EXPECT_EQ(m_sheet.GetPageCount(), 2);
                       EXPECT_TRUE(m_sheet.SetActivePage(1));
                       m_sheet.RemovePage(&m_quality);
                       m_sheet.RemovePage(&m_size);
                   }}),
              -1)
        << "the last page takes the sheet's window with it";
}

TEST_F(SheetTest, AnyNumberOfThemLeavesNothingBehind)
{
    wchar_t controls[MAX_PATH] = {};
    GetModuleFileNameW(GetModuleHandleW(L"comctl32.dll"), controls, MAX_PATH);
    EXPECT_EQ(CString(controls).Find(L"common-controls_6595b64144ccf1df_6.") >= 0, VAK_COMMON_CONTROLS == 6)
        << "the program runs with the version that it is built for";
    const auto show = [] {
        ProbeSheet sheet;
        NumberPage first('QUAL', kQualityPage), second('SIZE');
        sheet.AddPage(&first);
        sheet.AddPage(&second);
        sheet.AddButton(L"Défaut", 0);
        ASSERT_TRUE(sheet.Create() && sheet.SetActivePage(1));
        sheet.Press(IDOK);
        ASSERT_EQ(sheet.GetSafeHwnd(), nullptr);
    };
    constexpr int kCount = VAK_COMMON_CONTROLS > 5 ? 1000 : 100;
    for (int warmUp = 0; warmUp < 10; ++warmUp)
        show();
    const Holdings before = Count();
    for (int count = 0; count < kCount; ++count)
        show();
    const Holdings after = Count();
    EXPECT_GT(before.gdiObjects, 0);
    EXPECT_LE(after.gdiObjects, before.gdiObjects);
    EXPECT_LE(after.userObjects, before.userObjects);
    // The newer system library keeps one small block of each page that is shown.
    EXPECT_LE(after.blocks, before.blocks + (VAK_COMMON_CONTROLS > 5 ? 2 * kCount : 0));
}
