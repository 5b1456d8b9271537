#include "framework/ui/Wnd.h"

IMPLEMENT_DYNAMIC(CWnd, CObject)

namespace {

constexpr wchar_t kObjectProperty[] = L"VakToolsWindow";

} // namespace

CWnd::~CWnd()
{
    Detach();
}

CWnd* CWnd::FromHandlePermanent(HWND window)
{
    return window ? static_cast<CWnd*>(GetPropW(window, kObjectProperty)) : nullptr;
}

BOOL CWnd::Attach(HWND window)
{
    if (!window || m_hWnd || FromHandlePermanent(window) || !SetPropW(window, kObjectProperty, this))
        return FALSE;
    m_hWnd = window;
    return TRUE;
}

HWND CWnd::Detach()
{
    const HWND window = m_hWnd;
    if (window && FromHandlePermanent(window) == this)
        RemovePropW(window, kObjectProperty);
    m_hWnd = nullptr;
    return window;
}

CRect CWnd::GetClientRect() const
{
    CRect area(0, 0, 0, 0);
    ::GetClientRect(m_hWnd, &area);
    return area;
}

CString CWnd::GetWindowText() const
{
    const int length = ::GetWindowTextLength(m_hWnd);
    CString text;
    const int copied = ::GetWindowText(m_hWnd, text.GetBuffer(length), length + 1);
    text.ReleaseBuffer(copied);
    return text;
}

void CWnd::SetWindowText(LPCTSTR text)
{
    ::SetWindowText(m_hWnd, text);
}

HWND CWnd::GetDlgItem(int id) const
{
    return ::GetDlgItem(m_hWnd, id);
}

void CWnd::SetDlgItemText(int id, LPCTSTR text)
{
    ::SetDlgItemText(m_hWnd, id, text);
}

LRESULT CWnd::SendDlgItemMessage(int id, UINT message, WPARAM wParam, LPARAM lParam) const
{
    return ::SendDlgItemMessage(m_hWnd, id, message, wParam, lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    *result = 0;
    switch (message) {
    case WM_COMMAND:
        return OnCommand(LOWORD(wParam), HIWORD(wParam));
    case WM_SIZE:
        OnSize(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam));
        return TRUE;
    case WM_GETMINMAXINFO:
        OnGetMinMaxInfo(reinterpret_cast<MINMAXINFO*>(lParam));
        return TRUE;
    default:
        return FALSE;
    }
}

BOOL CWnd::OnCommand(UINT, UINT)
{
    return FALSE;
}

void CWnd::OnSize(UINT, int, int) {}

void CWnd::OnGetMinMaxInfo(MINMAXINFO*) {}
