#include "tests/examples/Vakconvert.h"
#include "tests/support/Print.h"

#include <initializer_list>
#include <utility>

namespace {

constexpr int kTemplateId = 1;
constexpr int kPreviewId = 2;

/// The window for templates, driven by keys as a user does. The program that shows it is another one.
class TemplateWindow : public vak::test::Vakconvert
{
protected:
    void Open(const char* name)
    {
        Start(L"--edit-template @" + CString(name));
        ASSERT_TRUE(Awaits([&] { return IsTitle(CString(name)); }));
        EXPECT_TRUE(Awaits([&] {
            GUITHREADINFO thread{};
            thread.cbSize = sizeof thread;
            return GetGUIThreadInfo(0, &thread) && thread.hwndFocus == GetDlgItem(m_window, kTemplateId);
        }));
    }
    void TearDown() override
    {
        if (IsWindow(m_window))
            TerminateProcess(m_process.hProcess, 1);
    }

    bool IsTitle(const CString& title)
    {
        const HWND window = FindWindowW(nullptr, title + L" - vakconvert");
        m_window = window != nullptr ? window : m_window;
        return window != nullptr;
    }
    /// The text of a control; the platform sends it from one program to another.
    CString TextOf(int id) const
    {
        wchar_t text[1024] = {};
        SendMessageW(GetDlgItem(m_window, id), WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text));
        return text;
    }

    template <class Condition>
    static bool Awaits(Condition isMet)
    {
        for (int tries = 0; tries < 500; ++tries) {
            if (isMet())
                return true;
            Sleep(20);
        }
        return false;
    }
    static bool AwaitsWindow(const wchar_t* windowClass)
    {
        const bool isShown = Awaits([&] { return IsWindowVisible(FindWindowW(windowClass, nullptr)); });
        Sleep(100); // until it takes keys
        return isShown;
    }

    /// Presses the keys together.
    static void Press(std::initializer_list<int> keys)
    {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        for (const DWORD flags : {0, KEYEVENTF_KEYUP}) {
            input.ki.dwFlags = flags;
            for (const int key : keys) {
                input.ki.wVk = static_cast<WORD>(key);
                SendInput(1, &input, sizeof input);
            }
        }
        Sleep(60);
    }

    /// Presses the right button in the template.
    void RightClick() const
    {
        RECT area{};
        GetWindowRect(GetDlgItem(m_window, kTemplateId), &area);
        SetCursorPos(area.left + 100, area.top + 100);
        INPUT input{};
        input.type = INPUT_MOUSE;
        for (const DWORD flags : {MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP}) {
            input.mi.dwFlags = flags;
            SendInput(1, &input, sizeof input);
        }
        // The mouse shall choose nothing in the menu.
        SetCursorPos(0, 0);
        Sleep(60);
    }

    HWND m_window = nullptr;
};

} // namespace

TEST_F(TemplateWindow, InsertsTagsSavesAndAsksBeforeItCloses)
{
    m_folder.Write("t.txt", "é<nope>\n");
    Open("t.txt");
    Press({'X'});
    EXPECT_TRUE(Awaits([&] { return IsTitle(L"*t.txt"); }));
    Press({VK_APPS});
    ASSERT_TRUE(AwaitsWindow(L"#32768"));
    // Results, Faces in all models.
    for (const int key : {VK_DOWN, VK_DOWN, VK_RIGHT, VK_RETURN})
        Press({key});
    EXPECT_TRUE(Awaits([&] { return TextOf(kPreviewId) == L"x486é<nope>\r\n"; }))
        << CStringA(TextOf(kPreviewId));
    Press({VK_CONTROL, 'S'});
    EXPECT_TRUE(Awaits([&] { return IsTitle(L"t.txt"); }));
    EXPECT_EQ(m_folder.Read("t.txt"), "x<faces>é<nope>\n");

    Press({'Y'});
    constexpr std::pair<UINT, int> kRows[] = {
        {WM_QUERYENDSESSION, IDCANCEL}, {WM_CLOSE, IDCANCEL}, {WM_CLOSE, IDNO}};
    for (const auto& [request, answer] : kRows) {
        EXPECT_TRUE(IsWindow(m_window));
        PostMessageW(m_window, request, 0, 0);
        ASSERT_TRUE(AwaitsWindow(L"#32770"));
        PostMessageW(FindWindowW(L"#32770", nullptr), WM_COMMAND, static_cast<WPARAM>(answer), 0);
        Sleep(200);
    }
    EXPECT_EQ(Finish(), 0u);
    EXPECT_EQ(m_folder.Read("t.txt"), "x<faces>é<nope>\n");
}

TEST_F(TemplateWindow, EditsRichTextAndMakesNewFiles)
{
    Open("new.rtf");
    RightClick();
    ASSERT_TRUE(AwaitsWindow(L"#32768"));
    Press({VK_ESCAPE});
    EXPECT_TRUE(Awaits([] { return FindWindowW(L"#32768", nullptr) == nullptr; }));
    Press({VK_SHIFT, VK_F10});
    ASSERT_TRUE(AwaitsWindow(L"#32768"));
    // The last but one: all tags.
    for (const int key : {VK_UP, VK_UP, VK_RETURN})
        Press({key});
    EXPECT_TRUE(Awaits([&] { return TextOf(kPreviewId).Find(L"Number of files converted: 3\r\n") >= 0; }))
        << CStringA(TextOf(kPreviewId));
    Press({VK_CONTROL, 'S'});
    EXPECT_TRUE(Awaits([&] { return IsTitle(L"new.rtf"); }));
    PostMessageW(m_window, WM_CLOSE, 0, 0);
    EXPECT_EQ(Finish(), 0u);
    const std::string saved = m_folder.Read("new.rtf");
    EXPECT_EQ(saved.substr(0, 6), "{\\rtf1");
    EXPECT_NE(saved.find("<failedlist>"), std::string::npos) << saved;
}
