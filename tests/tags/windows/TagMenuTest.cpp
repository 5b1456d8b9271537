#include "framework/base/StringTable.h"
#include "framework/ui/Wnd.h"
#include "resources/Ids.h"
#include "tags/Tags.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace tagmenu = vak::tagmenu;

namespace {

/// While it lives, presses keys in the menu that this thread shows, one a tick: D(own), R(ight), E(nter),
/// X (escape). A menu that stays open is ended and fails the test.
class MenuKeys
{
public:
    explicit MenuKeys(const CString& keys) : m_keys(keys)
    {
        s_current = this;
        m_timer = SetTimer(nullptr, 0, kPeriod, &MenuKeys::OnTimer);
    }
    ~MenuKeys()
    {
        KillTimer(nullptr, m_timer);
        s_current = nullptr;
    }
    MenuKeys(const MenuKeys&) = delete;
    MenuKeys& operator=(const MenuKeys&) = delete;

    bool WasShown() const { return m_pressed > 0; }

private:
    static constexpr UINT kPeriod = 20;
    static constexpr int kPatience = 250;

    static WORD CodeOf(wchar_t key)
    {
        switch (key) {
        case L'D':
            return VK_DOWN;
        case L'R':
            return VK_RIGHT;
        case L'E':
            return VK_RETURN;
        default:
            return VK_ESCAPE;
        }
    }
    static void Press(WORD code)
    {
        INPUT inputs[2]{};
        for (INPUT& input : inputs) {
            input.type = INPUT_KEYBOARD;
            input.ki.wVk = code;
        }
        inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
        SendInput(2, inputs, sizeof *inputs);
    }
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD)
    {
        MenuKeys& keys = *s_current;
        if (!IsWindowVisible(FindWindowW(L"#32768", nullptr)))
            return;
        if (keys.m_pressed < keys.m_keys.GetLength()) {
            Press(CodeOf(keys.m_keys[keys.m_pressed++]));
        } else if (++keys.m_waited == kPatience) {
            ADD_FAILURE() << "the menu stays open";
            EndMenu();
        }
    }

    static inline MenuKeys* s_current = nullptr;

    CString m_keys;
    UINT_PTR m_timer = 0;
    int m_pressed = 0;
    int m_waited = 0;
};

class InsertTagMenu : public testing::Test
{
protected:
    void SetUp() override
    {
        vak::SetTextLanguage(1033);
        m_tags.InsertTag(L"<if>", TAGDATA_TEXT | 0x1000000, 'TAGC', 1, IDS_TAG_IF_EXIST, IDS_TAG_CONDITIONALS,
                         nullptr, nullptr);
        m_tags.InsertTag(L"<endif>", TAGDATA_TEXT | 0x1000000, 'TAGC', 2, IDS_TAG_END_IF_EXIST,
                         IDS_TAG_CONDITIONALS, nullptr, nullptr);
        m_tags.InsertTag(L"<day>", TAGDATA_DATE, 'TEST', 1, CString(L"Day"), 0, nullptr, nullptr);
        m_tags.InsertTag(L"<it>", TAGDATA_TEXT, 'TEST', 2, CString(L"It & more"), 0, nullptr, nullptr);
    }
    void TearDown() override { vak::SetTextLanguage(vak::kDefaultTextLanguage); }

    CString Choose(const CString& keys, unsigned int flags, const CTags::TagClasses* listed = nullptr)
    {
        MenuKeys pressed(keys);
        m_result = -1;
        const CString tag = m_tags.DoPopupMenu(CPoint(20, 20), flags, listed, nullptr, &m_result);
        EXPECT_TRUE(pressed.WasShown());
        return tag;
    }

    CTags m_tags;
    int m_result = -1;
};

} // namespace

TEST_F(InsertTagMenu, ReturnsTheTagStringOfEveryCommand)
{
    CWnd owner;
    ASSERT_TRUE(owner.CreateEx(0, AfxRegisterWndClass(0), L"owner", WS_POPUP | WS_VISIBLE, CRect(0, 0, 9, 9),
                               nullptr, 0));
    SetForegroundWindow(owner.GetSafeHwnd());
    struct Row
    {
        const wchar_t* keys;
        const wchar_t* tag;
        int result = tagmenu::ChoseTag;
    };
    // No criteria; Conditionals tags: Begin ..., End ...; Day: two dates, two with the time, the time;
    // It & more; Add all tags; Add all tags that can be reimported.
    constexpr Row kRows[] = {
        {L"DE", L"", tagmenu::ChoseNoCriteria},
        {L"DDRE", L"<if>"},
        {L"DDRDE", L"<endif>"},
        {L"DDDRE", L"<day(d)>"},
        {L"DDDRDE", L"<day(d+t)>"},
        {L"DDDRDDE", L"<day(d+h)>"},
        {L"DDDRDDDE", L"<day(d+h+t)>"},
        {L"DDDRDDDDE", L"<day(h)>"},
        {L"DDDDE", L"<it>"},
        {L"DDDDDE", L"<alltags>"},
        {L"DDDDDDE", L"<allwritabletags>"},
        {L"DDXX", L"", tagmenu::Cancelled},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(CString(row.keys)));
        EXPECT_EQ(Choose(row.keys, tagmenu::NoCriteria | tagmenu::AllTags), CString(row.tag));
        EXPECT_EQ(m_result, row.result);
    }
    EXPECT_EQ(Choose(L"DDE", tagmenu::Restricted), L"<it>");
}

TEST_F(InsertTagMenu, NeedsNoWindowOfTheHost)
{
    CTags::TagClasses listed;
    listed.Insert('TEST');
    EXPECT_EQ(Choose(L"DDE", 0, &listed), L"<it>");
    CTags::TagClasses none;
    int result = -1;
    EXPECT_EQ(m_tags.DoPopupMenu(CPoint(0, 0), 0, &none, nullptr, &result), L"");
    EXPECT_EQ(result, tagmenu::Cancelled);
}
