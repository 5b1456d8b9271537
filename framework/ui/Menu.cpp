#include "framework/ui/Menu.h"

#include "framework/ui/Wnd.h"

#include <utility>

IMPLEMENT_DYNAMIC(CMenu, CObject)

CMenu::~CMenu()
{
    DestroyMenu();
}

BOOL CMenu::CreatePopupMenu()
{
    return !m_hMenu && Attach(::CreatePopupMenu());
}

BOOL CMenu::DestroyMenu()
{
    const HMENU menu = Detach();
    return menu && ::DestroyMenu(menu);
}

BOOL CMenu::Attach(HMENU menu)
{
    if (!menu || m_hMenu)
        return FALSE;
    m_hMenu = menu;
    return TRUE;
}

HMENU CMenu::Detach()
{
    return std::exchange(m_hMenu, nullptr);
}

BOOL CMenu::AppendMenu(UINT flags, UINT_PTR item, LPCTSTR text)
{
    return ::AppendMenu(m_hMenu, flags, item, text);
}

BOOL CMenu::TrackPopupMenu(UINT flags, int x, int y, CWnd* owner)
{
    HWND window = owner ? owner->GetSafeHwnd() : GetActiveWindow();
    CWnd standIn;
    if (!window && standIn.CreateEx(WS_EX_TOOLWINDOW, L"STATIC", nullptr, WS_POPUP, CRect(), nullptr, 0)) {
        window = standIn.GetSafeHwnd();
        // The menu of a window in the background would not notice a click beside it.
        SetForegroundWindow(window);
    }
    return ::TrackPopupMenu(m_hMenu, flags, x, y, 0, window, nullptr);
}
