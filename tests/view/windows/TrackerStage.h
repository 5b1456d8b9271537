#pragma once

#include "framework/ui/DC.h"
#include "framework/ui/Wnd.h"
#include "view/VakTracker.h"

#include <functional>
#include <map>
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
        CBitmap picture;
        memory.CreateCompatibleDC(&window);
        picture.CreateCompatibleBitmap(&window, 300, 200);
        CBitmap* const former = memory.SelectObject(&picture);
        memory.BitBlt(0, 0, 300, 200, &window, 0, 0, SRCCOPY);
        memory.SelectObject(former);
        BITMAPINFO info{{sizeof(BITMAPINFOHEADER), 300, -200, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
        std::vector<COLORREF> pixels(300 * 200);
        GetDIBits(memory.GetSafeHdc(), static_cast<HBITMAP>(picture.GetSafeHandle()), 0, 200, pixels.data(),
                  &info, DIB_RGB_COLORS);
        return pixels;
    }
    void Repaint()
    {
        Invalidate();
        UpdateWindow();
    }

    std::function<void(CDC*)> m_draw = [](CDC*) {};
    std::map<UINT, std::function<void(LPARAM)>> m_on;

protected:
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
    CRect m_rect;
    std::map<int, std::function<void()>> m_once;
    std::function<void()> m_onChange = [] {};

private:
    static void Note(int event, CRect const& rect, void* data)
    {
        auto* const events = static_cast<TrackerEvents*>(data);
        events->m_seen += std::to_string(event);
        events->m_rect = rect;
        if (event == vak::RectChanged)
            events->m_onChange();
        if (auto action = events->m_once.extract(event))
            action.mapped()();
    }
};

/// Holds keys down for the messages that are read meanwhile.
class KeysDown
{
public:
    explicit KeysDown(std::initializer_list<int> keys)
    {
        BYTE state[256] = {};
        for (const int key : keys)
            state[key] = 0x80;
        SetKeyboardState(state);
    }
    KeysDown(const KeysDown&) = delete;
    KeysDown& operator=(const KeysDown&) = delete;
    ~KeysDown()
    {
        BYTE state[256] = {};
        SetKeyboardState(state);
    }
};

/// Posts what the mouse and the keyboard would, to be read by the drag that follows.
inline void Post(CWnd& window, UINT message, int x, int y = 0)
{
    const bool isKey = message == WM_KEYDOWN;
    PostMessage(window.GetSafeHwnd(), message, isKey ? static_cast<WPARAM>(x) : 0,
                isKey ? 0 : MAKELPARAM(x, y));
}

inline void ServeMessages()
{
    MSG message{};
    while (PeekMessage(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT)
        DispatchMessage(&message);
}

} // namespace vak::test
