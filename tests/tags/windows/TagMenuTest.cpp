#include "framework/ui/Wnd.h"
#include "tests/support/Print.h"
#include "tests/support/TagEngine.h"

#include <gtest/gtest.h>

namespace tagmenu = vak::tagmenu;

namespace {

class InsertTagMenu : public testing::Test
{
protected:
    void SetUp() override
    {
        m_tags.InsertTag(L"<day>", TAGDATA_DATE, 'TEST', 1, CString(L"Day"), 0, nullptr, nullptr);
        m_tags.InsertTag(L"<it>", TAGDATA_TEXT, 'TEST', 2, CString(L"It & more"), 0, nullptr, nullptr);
    }

    /// Shows the menu and presses keys in it, one a tick: D(own), R(ight), E(nter), X (escape).
    CString Choose(const CString& keys, unsigned int flags, const CTags::TagClasses* listed = nullptr,
                   const CTags::TagClasses* leftOut = nullptr)
    {
        s_keys = keys;
        s_idle = 0;
        const UINT_PTR timer = SetTimer(nullptr, 0, 20, &InsertTagMenu::OnTimer);
        const CString tag = m_tags.DoPopupMenu(CPoint(20, 20), flags, listed, leftOut, &m_result);
        KillTimer(nullptr, timer);
        return tag;
    }
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD)
    {
        if (!IsWindowVisible(FindWindowW(L"#32768", nullptr)))
            return;
        if (s_keys.IsEmpty() && ++s_idle > 100)
            EndMenu(); // a menu that stays open
        if (s_keys.IsEmpty())
            return;
        constexpr WORD kCodes[] = {VK_DOWN, VK_RIGHT, VK_RETURN, VK_ESCAPE};
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = kCodes[CString(L"DREX").Find(s_keys[0])];
        SendInput(1, &input, sizeof input);
        input.ki.dwFlags = KEYEVENTF_KEYUP;
        SendInput(1, &input, sizeof input);
        s_keys.Delete(0);
    }

    static inline CString s_keys;
    static inline int s_idle = 0;

    CTags m_tags = vak::test::ConditionalTags();
    int m_result = -1;
};

} // namespace

TEST_F(InsertTagMenu, ReturnsTheTagStringOfEveryCommand)
{
    CWnd owner;
    owner.CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP | WS_VISIBLE, CRect(0, 0, 9, 9), nullptr, 0);
    SetForegroundWindow(owner.GetSafeHwnd());
    // No criteria; the conditional tags: begin, end; Day: two dates, two with the time, the time; It & more;
    // the two entries for all tags.
    constexpr const wchar_t* kRows[][2] = {
        {L"DE", L""},
        {L"DDRDE", L"<tagendifexist>"},
        {L"DDDRE", L"<day(d)>"},
        {L"DDDRDDDDE", L"<day(h)>"},
        {L"DDDDE", L"<it>"},
        {L"DDDDDDE", L"<allwritabletags>"},
    };
    for (const auto& [keys, tag] : kRows) {
        SCOPED_TRACE(testing::PrintToString(CString(keys)));
        EXPECT_EQ(Choose(keys, tagmenu::NoCriteria | tagmenu::AllTags), CString(tag));
        EXPECT_EQ(m_result, *tag ? tagmenu::ChoseTag : tagmenu::ChoseNoCriteria);
    }
    EXPECT_EQ(Choose(L"DDXX", 0), L"");
    EXPECT_EQ(m_result, tagmenu::Cancelled);

    // The host's window is no condition.
    owner.DestroyWindow();
    CTags::TagClasses test;
    CTags::TagClasses conditions;
    test.Insert('TEST');
    conditions.Insert('TAGC');
    EXPECT_EQ(Choose(L"DDE", tagmenu::Restricted), L"<it>");
    EXPECT_EQ(Choose(L"DDE", 0, &test), L"<it>");
    EXPECT_EQ(Choose(L"DDE", 0, nullptr, &conditions), L"<it>");
    EXPECT_EQ(Choose(L"DDE", 0, &test, &test), L"") << "nothing to show";
}
