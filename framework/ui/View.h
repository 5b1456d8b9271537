#pragma once

/// A window whose client area shows something. Windows only.

#include "framework/ui/DC.h"
#include "framework/ui/Wnd.h"

class VAK_API CView : public CWnd
{
    DECLARE_DYNAMIC(CView)

protected:
    CView() = default;

    /// Before OnDraw, and for whoever draws or converts coordinates outside of it: sets the mapping of `dc`.
    virtual void OnPrepareDC(CDC* dc);
    /// Draws, in the coordinates that OnPrepareDC has set; `dc` is clipped to what is to be drawn anew.
    virtual void OnDraw(CDC* dc) = 0;
    /// Asks to scroll by that much, as far as there is something to scroll to; only says whether there is
    /// when `doScroll` is 0. Non-zero when the position changes. Scroll bars and wheel come here.
    virtual BOOL OnScrollBy(CSize by, BOOL doScroll = TRUE);
    void OnPaint() override;
};
