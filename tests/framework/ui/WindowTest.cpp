#include "framework/base/Exception.h"
#include "framework/ui/Wnd.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace {

class ProbeWindow : public CWnd
{
public:
    BOOL Make(LPCTSTR className = AfxRegisterWndClass(0))
    {
        return CreateEx(0, className, L"", WS_POPUP | WS_VISIBLE, CRect(), nullptr, 0);
    }

    CPoint m_asked;
    int m_created = -2;

protected:
    int OnCreate(CREATESTRUCT*) override { return m_created++ < -1 ? OnCommand(0, 0) : m_created - 1; }
    void OnContextMenu(HWND, CPoint point) override { m_asked = point; }
    void OnTimer(UINT_PTR id) override { EndModalLoop(static_cast<int>(id)); }
    BOOL OnCommand(UINT, UINT) override { throw new CNotSupportedException; }
    BOOL PreTranslateMessage(MSG* message) override { return message->message == WM_TIMER && !m_created++; }
};

} // namespace

TEST(Window, CallsItsHooksWithinItsLoopAndReportsWhatTheyThrow)
{
    vak::test::MessageRecorder recorder;
    ProbeWindow window;
    EXPECT_FALSE(window.Make()) << "OnCreate throws";
    EXPECT_FALSE(window.Make()) << "OnCreate refuses";
    ASSERT_TRUE(window.Make());
    window.SendMessage(WM_CONTEXTMENU, 0, MAKELPARAM(-1, 40));
    EXPECT_EQ(window.m_asked, CPoint(-1, 40));
    window.SendMessage(WM_COMMAND, 1);
    EXPECT_EQ(recorder.Boxes().size(), 2u);
    window.m_created = 0;
    window.SetTimer(7, 1);
    EXPECT_EQ(window.RunModalLoop(), 7);
    EXPECT_EQ(window.m_created, 2) << "the first timer message was kept from the hook";

    MSG message{};
    PostQuitMessage(5);
    EXPECT_EQ(window.RunModalLoop(), -1);
    EXPECT_EQ(GetMessage(&message, nullptr, 0, 0), 0) << "the loop outside sees it too";
    PostMessage(window.GetSafeHwnd(), WM_CLOSE, 0, 0);
    EXPECT_EQ(window.RunModalLoop(), -1);
}

TEST(Window, IsAttachedToOneObjectAtATime)
{
    ProbeWindow window;
    window.m_created = 0;
    ASSERT_TRUE(window.Make());
    const HWND left = window.Detach();
    EXPECT_TRUE(window.Make(L"STATIC")) << "messages to a window without object come first";
    EXPECT_FALSE(CWnd().Attach(window.GetSafeHwnd()));
    EXPECT_TRUE(CWnd().Attach(left));
    EXPECT_TRUE(CWnd().Attach(left)) << "a window outlives the object that did not make it";
    ::DestroyWindow(left);
}

TEST(Window, SeesTheMessagesOfASubclassedOneUntilItLetsGo)
{
    CWnd control;
    control.CreateEx(0, L"BUTTON", L"text", WS_POPUP, CRect(), nullptr, 0);
    const HWND button = control.Detach();
    const auto procedure = GetWindowLongPtr(button, GWLP_WNDPROC);
    ProbeWindow window;
    ASSERT_TRUE(window.SubclassWindow(button));
    EXPECT_FALSE(ProbeWindow().SubclassWindow(button));
    SendMessageW(button, WM_CONTEXTMENU, 0, MAKELPARAM(3, 4));
    EXPECT_EQ(window.m_asked, CPoint(3, 4));
    EXPECT_EQ(window.GetWindowText(), L"text") << "what is not handled goes on";
    window.Detach();
    EXPECT_EQ(GetWindowLongPtr(button, GWLP_WNDPROC), procedure);
    ::DestroyWindow(button);
}
