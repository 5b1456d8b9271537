#pragma once

/// A view of something larger than its window. It shows the scroll bars that are needed, and none else, and
/// keeps the position within what there is to scroll. Windows only.

#include "framework/ui/View.h"

class VAK_API CScrollView : public CView
{
    DECLARE_DYNAMIC(CScrollView)

public:
    /// Asks SetScrollSizes for its own steps: a page is the client area, a line a tenth of it.
    static const SIZE sizeDefault;

    /// Says how large the whole is, in pixels, and by how much a click in a scroll bar's shaft and on its
    /// arrows scrolls. The position is kept where that is possible. Throws CNotSupportedException for a
    /// mapping mode other than MM_TEXT.
    void SetScrollSizes(int mapMode, SIZE total, const SIZE& page = sizeDefault,
                        const SIZE& line = sizeDefault);
    CSize GetTotalSize() const { return m_total; }
    /// What lies in the top left corner of the client area, in logical coordinates and in pixels: the same,
    /// as long as MM_TEXT is the only mapping.
    CPoint GetScrollPosition() const { return m_position; }
    CPoint GetDeviceScrollPosition() const { return m_position; }
    /// Scrolls there, or as far as there is something to scroll to.
    void ScrollToPosition(POINT position);

protected:
    CScrollView() = default;

    /// Moves the origin by the scroll position.
    void OnPrepareDC(CDC* dc) override;
    BOOL OnScrollBy(CSize by, BOOL doScroll = TRUE) override;
    /// To be called first by classes that override it.
    void OnSize(UINT type, int cx, int cy) override;
    void OnHScroll(UINT code, UINT position, HWND bar) override;
    void OnVScroll(UINT code, UINT position, HWND bar) override;
    /// Scrolls up and down, or sideways when there is nothing above and below; the wheel with a modifier key
    /// is left to others.
    BOOL OnMouseWheel(UINT flags, short delta, CPoint point) override;

private:
    CPoint Within(POINT position) const;
    CSize PageStep() const;
    CSize LineStep() const;
    LONG Target(int bar, UINT code) const;
    void UpdateBars();
    void ArrangeBars();
    void ShowPosition();

    CSize m_total;
    CSize m_page;
    CSize m_line;
    CPoint m_position;
    bool m_isUpdating = false;
    bool m_isOutdated = false;
};
