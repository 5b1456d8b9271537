#pragma once

#include "framework/ui/DC.h"
#include "framework/ui/Wnd.h"
#include "view/VakTracker.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace vak::test {

/// A window with a striped client area of 300 x 200 pixels, on which inverted pixels cannot hide.
class TrackerStage : public CWnd
{
public:
    TrackerStage()
    {
        const CRect place(200, 200, 500, 400);
        CreateEx(WS_EX_TOPMOST, AfxRegisterWndClass(0), L"", WS_POPUP | WS_VISIBLE, place, nullptr, 0);
        SetCursorPos(900, 900);
        UpdateWindow();
    }
    std::vector<COLORREF> Pixels()
    {
        CClientDC window(this);
        CDC memory;
        memory.CreateCompatibleDC(&window);
        BITMAPINFO info{{sizeof(BITMAPINFOHEADER), 300, -200, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
        void* bits = nullptr;
        CBitmap picture;
        picture.Attach(CreateDIBSection(window.GetSafeHdc(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
        CBitmap* const former = memory.SelectObject(&picture);
        memory.BitBlt(0, 0, 300, 200, &window, 0, 0, SRCCOPY);
        memory.SelectObject(former);
        const auto* const pixels = static_cast<const COLORREF*>(bits);
        return {pixels, pixels + 300 * 200};
    }
    void Repaint()
    {
        Invalidate();
        UpdateWindow();
    }
    /// Posts what the mouse and the user do, to be read by the drag that follows: "move 20 30 up 40 50",
    /// "escape", "right", "close", and "app" for a hook.
    void Play(const std::string& script)
    {
        std::istringstream words(script);
        for (std::string verb; words >> verb;) {
            int x = 0, y = 0;
            if (verb == "move" || verb == "up")
                words >> x >> y;
            const UINT message = kMessages.at(verb);
            PostMessage(m_hWnd, message, message == WM_KEYDOWN ? VK_ESCAPE : 0, MAKELPARAM(x, y));
        }
    }

    std::function<void(CDC*)> m_draw = [](CDC*) {};
    std::map<UINT, std::function<void(LPARAM)>> m_on;

protected:
    inline static const std::map<std::string, UINT> kMessages = {
        {"move", WM_MOUSEMOVE},    {"up", WM_LBUTTONUP}, {"escape", WM_KEYDOWN},
        {"right", WM_RBUTTONDOWN}, {"close", WM_CLOSE},  {"app", WM_APP}};

    void OnPaint() override
    {
        CPaintDC dc(this);
        for (int x = 0; x < 300; x += 10)
            dc.FillSolidRect(CRect(x, 0, x + 10, 200), RGB(x % 256, 255 - x / 2, x % 20 * 10));
        m_draw(&dc);
    }
    BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override
    {
        if (const auto hook = m_on.find(message); hook != m_on.end())
            hook->second(lParam);
        return CWnd::OnWndMsg(message, wParam, lParam, result);
    }
};

/// What a tracker tells, one digit an event, and what is done upon it: once, the first time.
class TrackerEvents
{
public:
    void Listen(CVakTracker& tracker) { tracker.SetCallback(&Note, this); }

    std::string m_seen;
    std::map<int, std::function<void()>> m_once;

private:
    static void Note(int event, CRect const&, void* data)
    {
        auto* const events = static_cast<TrackerEvents*>(data);
        events->m_seen += std::to_string(event);
        if (auto action = events->m_once.extract(event))
            action.mapped()();
    }
};

/// One key is held down for the messages that are read from now on; 0 for none.
inline void HoldKey(int key)
{
    BYTE state[256] = {};
    state[key] = 0x80;
    SetKeyboardState(state);
}

} // namespace vak::test
