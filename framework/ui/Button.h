#pragma once

/// The platform's button. Windows only; belongs to the thread that made it.

#include "framework/ui/Wnd.h"

class VAK_API CButton : public CWnd
{
    DECLARE_DYNAMIC(CButton)

public:
    /// Makes a button with the styles `style` (BS_ and WS_) and attaches to it; `rect` in pixels of the
    /// parent's client area. Returns 0 when it cannot be made. Its parent gets its commands.
    BOOL Create(LPCTSTR caption, DWORD style, const RECT& rect, CWnd* parent, UINT id);
};
