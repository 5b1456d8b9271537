#include "framework/base/Exception.h"
#include "framework/ui/Wnd.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace {

/// Throws at command 1 and ends its loop by a timer.
class ProbeWindow : public CWnd
{
public:
    bool Make()
    {
        return CreateEx(0, AfxRegisterWndClass(0), L"probe", WS_POPUP, CRect(0, 0, 9, 9), nullptr, 0);
    }

    CPoint m_asked;
    int m_created = 0;
    int m_timersSeen = 0;

protected:
    int OnCreate(CREATESTRUCT*) override { return m_created++; }
    void OnContextMenu(HWND, CPoint point) override { m_asked = point; }
    void OnTimer(UINT_PTR id) override { EndModalLoop(static_cast<int>(id)); }
    BOOL OnCommand(UINT id, UINT) override { return id == 1 ? throw new CNotSupportedException : FALSE; }
    BOOL PreTranslateMessage(MSG* message) override
    {
        return message->message == WM_TIMER && !m_timersSeen++;
    }
};

} // namespace

TEST(Window, CallsItsHooksAndReportsWhatTheyThrow)
{
    vak::test::MessageRecorder recorder;
    ProbeWindow window;
    window.m_created = -1;
    EXPECT_FALSE(window.Make()) << "refused by OnCreate";
    EXPECT_EQ(window.GetSafeHwnd(), nullptr);
    ASSERT_TRUE(window.Make());
    EXPECT_FALSE(window.Make()) << "has a window";
    EXPECT_EQ(window.GetWindowText(), L"probe");
    window.SendMessage(WM_CONTEXTMENU, 0, MAKELPARAM(-1, 40));
    EXPECT_EQ(window.m_asked, CPoint(-1, 40));
    window.SendMessage(WM_COMMAND, 1);
    EXPECT_EQ(recorder.Boxes().size(), 1u);
}

TEST(Window, RunsItsLoopUntilItIsEndedOrClosedOrTheThreadShallQuit)
{
    ProbeWindow window;
    ASSERT_TRUE(window.Make());
    window.SetTimer(7, 1);
    EXPECT_EQ(window.RunModalLoop(), 7);
    EXPECT_EQ(window.m_timersSeen, 2) << "the first one was kept from the hook";
    window.KillTimer(7);

    MSG message{};
    PostQuitMessage(5);
    EXPECT_EQ(window.RunModalLoop(), -1);
    EXPECT_EQ(GetMessage(&message, nullptr, 0, 0), 0) << "the loop outside sees it too";
    EXPECT_EQ(message.wParam, 5u);

    const HWND handle = window.GetSafeHwnd();
    PostMessage(handle, WM_CLOSE, 0, 0);
    EXPECT_EQ(window.RunModalLoop(), -1);
    EXPECT_FALSE(IsWindow(handle));
}
