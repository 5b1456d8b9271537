#pragma once

/// A popup menu. Windows only; a menu and its object belong to the thread that made it.

#include "framework/base/Object.h"
#include "framework/base/String.h"

class CWnd;

/// Owns a menu handle, with the menus inside it.
class VAK_API CMenu : public CObject
{
    DECLARE_DYNAMIC(CMenu)

public:
    CMenu() = default;
    /// Destroys the menu.
    ~CMenu() override;

    BOOL CreatePopupMenu();
    BOOL DestroyMenu();
    /// Takes over `menu`; returns 0 when it is null or this object has one.
    BOOL Attach(HMENU menu);
    /// Lets go of the menu and returns it.
    HMENU Detach();
    HMENU GetSafeHmenu() const { return m_hMenu; }

    /// Adds an item at the end: `flags` MF_STRING with a command and its text, MF_SEPARATOR, or MF_POPUP with
    /// a menu handle, which this menu then owns. A single '&' of the text underlines the next character.
    BOOL AppendMenu(UINT flags, UINT_PTR item = 0, LPCTSTR text = nullptr);

    /// Shows the menu at that point of the screen until an item is chosen or the user gives up. With
    /// TPM_RETURNCMD the result is the command chosen, 0 for none. `owner` is a window of this thread; null
    /// takes the active one, or where the thread has none, a hidden one that stands in and comes to the
    /// foreground.
    BOOL TrackPopupMenu(UINT flags, int x, int y, CWnd* owner);

    HMENU m_hMenu = nullptr;
};
