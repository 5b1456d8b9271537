// The hooks of CWnd for drawing, mouse and keyboard.

#include "framework/ui/DC.h"
#include "framework/ui/Wnd.h"

namespace {

/// A point in a message; it may lie left of and above the origin.
CPoint PointOf(LPARAM lParam)
{
    return {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
}

/// A device context that the system lends for a message.
class LentDC : public CDC
{
public:
    explicit LentDC(WPARAM dc) { Attach(reinterpret_cast<HDC>(dc)); }
    ~LentDC() override { Detach(); }
};

} // namespace

bool CWnd::CallDrawingHook(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    const auto bar = reinterpret_cast<HWND>(lParam);
    switch (message) {
    case WM_PAINT:
        OnPaint();
        return true;
    case WM_ERASEBKGND: {
        LentDC dc(wParam);
        *result = OnEraseBkgnd(&dc);
        return true;
    }
    case WM_HSCROLL:
        OnHScroll(LOWORD(wParam), HIWORD(wParam), bar);
        return true;
    case WM_VSCROLL:
        OnVScroll(LOWORD(wParam), HIWORD(wParam), bar);
        return true;
    default:
        return CallInputHook(message, wParam, lParam, result);
    }
}

bool CWnd::CallInputHook(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    switch (message) {
    case WM_KEYDOWN:
        OnKeyDown(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam));
        return true;
    case WM_CHAR:
        OnChar(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam));
        return true;
    case WM_SETCURSOR:
        *result = OnSetCursor(reinterpret_cast<HWND>(wParam), LOWORD(lParam), HIWORD(lParam));
        return true;
    case WM_CAPTURECHANGED:
        OnCaptureChanged(reinterpret_cast<HWND>(lParam));
        return true;
    case WM_MOUSEWHEEL:
        return OnMouseWheel(LOWORD(wParam), static_cast<short>(HIWORD(wParam)), PointOf(lParam));
    case WM_MOUSELEAVE:
        OnMouseLeave();
        return true;
    default:
        return CallMouseHook(message, static_cast<UINT>(wParam), PointOf(lParam));
    }
}

bool CWnd::CallMouseHook(UINT message, UINT flags, CPoint point)
{
    switch (message) {
    case WM_MOUSEMOVE:
        OnMouseMove(flags, point);
        return true;
    case WM_LBUTTONDOWN:
        OnLButtonDown(flags, point);
        return true;
    case WM_LBUTTONUP:
        OnLButtonUp(flags, point);
        return true;
    case WM_MBUTTONDOWN:
        OnMButtonDown(flags, point);
        return true;
    case WM_MBUTTONUP:
        OnMButtonUp(flags, point);
        return true;
    default:
        return false;
    }
}

void CWnd::OnPaint()
{
    Default();
}

BOOL CWnd::OnEraseBkgnd(CDC*)
{
    Default();
    return FALSE;
}

void CWnd::OnMouseMove(UINT, CPoint)
{
    Default();
}

void CWnd::OnLButtonDown(UINT, CPoint)
{
    Default();
}

void CWnd::OnLButtonUp(UINT, CPoint)
{
    Default();
}

void CWnd::OnMButtonDown(UINT, CPoint)
{
    Default();
}

void CWnd::OnMButtonUp(UINT, CPoint)
{
    Default();
}

BOOL CWnd::OnMouseWheel(UINT, short, CPoint)
{
    return FALSE;
}

void CWnd::OnMouseLeave()
{
    Default();
}

void CWnd::OnCaptureChanged(HWND)
{
    Default();
}

BOOL CWnd::OnSetCursor(HWND, UINT, UINT)
{
    Default();
    return FALSE;
}

void CWnd::OnKeyDown(UINT, UINT, UINT)
{
    Default();
}

void CWnd::OnChar(UINT, UINT, UINT)
{
    Default();
}

void CWnd::OnHScroll(UINT, UINT, HWND)
{
    Default();
}

void CWnd::OnVScroll(UINT, UINT, HWND)
{
    Default();
}
