#include "framework/base/Exception.h"
#include "framework/ui/Menu.h"
#include "framework/ui/RichEditCtrl.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using vak::test::MessageRecorder;

namespace {

constexpr RECT kArea{0, 0, 300, 200};

/// Notes which hooks were called and ends its loop by a timer.
class ProbeWindow : public CWnd
{
public:
    bool Make()
    {
        return CreateEx(0, AfxRegisterWndClass(0), L"probe", WS_OVERLAPPEDWINDOW, kArea, nullptr, 0);
    }

    std::vector<UINT> m_seen;
    CPoint m_asked;
    int m_created = 0;
    bool m_refuses = false;

protected:
    int OnCreate(CREATESTRUCT*) override { return m_refuses ? -1 : ++m_created - 1; }
    void OnContextMenu(HWND, CPoint point) override { m_asked = point; }
    void OnTimer(UINT_PTR id) override
    {
        KillTimer(id);
        EndModalLoop(static_cast<int>(id));
    }
    BOOL OnCommand(UINT id, UINT) override
    {
        if (id == 1)
            AfxThrowNotSupportedException();
        return FALSE;
    }
    BOOL PreTranslateMessage(MSG* message) override
    {
        m_seen.push_back(message->message);
        return FALSE;
    }
};

DWORD CALLBACK Feed(DWORD_PTR cookie, BYTE* buffer, LONG wanted, LONG* given)
{
    auto& source = *reinterpret_cast<CStringA*>(cookie);
    *given = std::min<LONG>(wanted, source.GetLength());
    std::copy_n(source.GetString(), *given, buffer);
    source = source.Mid(*given);
    return 0;
}

DWORD CALLBACK Collect(DWORD_PTR cookie, BYTE* buffer, LONG given, LONG* taken)
{
    reinterpret_cast<CStringA*>(cookie)->Append(reinterpret_cast<const char*>(buffer), given);
    *taken = given;
    return 0;
}

} // namespace

TEST(Window, CallsItsHooksFromItsLoopUntilATimerEndsIt)
{
    ProbeWindow window;
    ASSERT_TRUE(window.Make());
    EXPECT_FALSE(window.Make());
    EXPECT_EQ(window.m_created, 1);
    EXPECT_EQ(window.GetWindowText(), L"probe");
    window.SendMessage(WM_CONTEXTMENU, 0, MAKELPARAM(-1, 40));
    EXPECT_EQ(window.m_asked, CPoint(-1, 40));
    window.SetTimer(7, 1);
    EXPECT_EQ(window.RunModalLoop(), 7);
    EXPECT_NE(std::find(window.m_seen.begin(), window.m_seen.end(), UINT{WM_TIMER}), window.m_seen.end());
}

TEST(Window, ReportsWhatAHookThrowsAndPassesOnAQuit)
{
    MessageRecorder recorder;
    ProbeWindow window;
    window.m_refuses = true;
    EXPECT_FALSE(window.Make());
    EXPECT_EQ(window.GetSafeHwnd(), nullptr);
    window.m_refuses = false;
    ASSERT_TRUE(window.Make());
    window.SendMessage(WM_COMMAND, 1);
    EXPECT_EQ(recorder.Boxes().size(), 1u);

    PostQuitMessage(5);
    EXPECT_EQ(window.RunModalLoop(), -1);
    MSG message{};
    EXPECT_EQ(GetMessage(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, 5u);
    const HWND handle = window.GetSafeHwnd();
    PostMessage(handle, WM_CLOSE, 0, 0);
    EXPECT_EQ(window.RunModalLoop(), -1);
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_EQ(window.GetSafeHwnd(), nullptr);
}

TEST(Window, GoesWithItsObjectUnlessItWasLetGo)
{
    HWND kept = nullptr;
    HWND gone = nullptr;
    {
        ProbeWindow first;
        ProbeWindow second;
        ASSERT_TRUE(first.Make() && second.Make());
        kept = first.Detach();
        gone = second.GetSafeHwnd();
    }
    EXPECT_TRUE(IsWindow(kept));
    EXPECT_FALSE(IsWindow(gone));
    DestroyWindow(kept);
}

TEST(RichEditCtrl, CountsPositionsAsItsRangesDo)
{
    ProbeWindow parent;
    CRichEditCtrl control;
    ASSERT_TRUE(parent.Make() && control.Create(WS_CHILD | ES_MULTILINE, kArea, &parent, 3));
    control.SetWindowText(L"one\r\ntwo");
    CString text;
    EXPECT_EQ(control.GetTextLengthEx(GTL_NUMCHARS | GTL_PRECISE), 7);
    EXPECT_EQ(control.GetTextRange(2, -1, text), 5);
    EXPECT_EQ(text, L"e\rtwo");
    EXPECT_EQ(control.GetTextRange(5, 3, text), 0);
    EXPECT_EQ(control.LineFromChar(5), 1);
    EXPECT_EQ(control.LineIndex(1), 4);
    wchar_t letter[] = L"t";
    FINDTEXTEX find{{0, -1}, letter, {}};
    EXPECT_EQ(control.FindText(FR_DOWN | FR_MATCHCASE, &find), 4);
    EXPECT_EQ(find.chrgText.cpMax, 5);
    find.chrg = {5, -1};
    EXPECT_EQ(control.FindText(FR_DOWN | FR_MATCHCASE, &find), -1);

    control.SetModify(FALSE);
    control.SetSel(4, 7);
    control.ReplaceSel(L"2\r\n2");
    CHARRANGE caret{};
    control.GetSel(caret);
    EXPECT_EQ(caret.cpMin, 7);
    EXPECT_EQ(caret.cpMax, 7);
    EXPECT_TRUE(control.GetModify());
    control.LimitText(12345);
    EXPECT_EQ(control.GetLimitText(), 12345);
}

TEST(RichEditCtrl, StreamsFormattedText)
{
    ProbeWindow parent;
    CRichEditCtrl control;
    ASSERT_TRUE(parent.Make() && control.Create(WS_CHILD | ES_MULTILINE, kArea, &parent, 3));
    CStringA source("{\\rtf1 plain {\\b bold}}");
    EDITSTREAM in{reinterpret_cast<DWORD_PTR>(&source), 0, &Feed};
    EXPECT_GT(control.StreamIn(SF_RTF, in), 0);
    EXPECT_EQ(in.dwError, 0u);
    control.SetSel(6, 10);
    CHARFORMAT2 format{};
    EXPECT_TRUE(control.GetSelectionCharFormat(format) & CFM_BOLD);
    EXPECT_TRUE(format.dwEffects & CFE_BOLD);
    format.dwMask = CFM_ITALIC;
    format.dwEffects = CFE_ITALIC;
    EXPECT_TRUE(control.SetSelectionCharFormat(format));
    CStringA written;
    EDITSTREAM out{reinterpret_cast<DWORD_PTR>(&written), 0, &Collect};
    const LONG length = control.StreamOut(SF_RTF, out);
    EXPECT_EQ(length, written.GetLength());
    EXPECT_GE(written.Find("\\i"), 0);
}

TEST(Menu, OwnsItsItemsAndTheMenusInside)
{
    HMENU inside = nullptr;
    {
        CMenu menu;
        CMenu submenu;
        ASSERT_TRUE(menu.CreatePopupMenu() && submenu.CreatePopupMenu());
        EXPECT_FALSE(menu.CreatePopupMenu());
        EXPECT_TRUE(submenu.AppendMenu(MF_STRING, 5, L"five"));
        inside = submenu.Detach();
        EXPECT_TRUE(menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(inside), L"more"));
        EXPECT_TRUE(menu.AppendMenu(MF_SEPARATOR));
        EXPECT_EQ(menu.GetMenuItemCount(), 2);
        EXPECT_EQ(menu.GetSubMenu(0), inside);
        EXPECT_EQ(menu.GetSubMenu(1), nullptr);
        CString text;
        EXPECT_EQ(menu.GetMenuString(5, text, MF_BYCOMMAND), 4);
        EXPECT_EQ(text, L"five");
    }
    EXPECT_FALSE(IsMenu(inside));
}
