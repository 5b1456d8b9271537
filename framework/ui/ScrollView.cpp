#include "framework/ui/ScrollView.h"

#include "framework/base/Exception.h"
#include "framework/ui/detail/ScrollLayout.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CScrollView, CView)

using vak::detail::ScrollLayout;

const SIZE CScrollView::sizeDefault{0, 0};

namespace {

/// More than anybody sets a notch of the wheel to.
constexpr UINT kMostLines = 100;

/// What the window can show: found out from what it has now, whichever bars are there.
ScrollLayout LayoutOf(const CWnd& window, CSize total)
{
    const CSize bars(GetSystemMetrics(SM_CXVSCROLL), GetSystemMetrics(SM_CYHSCROLL));
    CSize room = window.GetClientRect().Size();
    room.cx += window.GetStyle() & WS_VSCROLL ? bars.cx : 0;
    room.cy += window.GetStyle() & WS_HSCROLL ? bars.cy : 0;
    return vak::detail::LayOutBars(room, bars, total);
}

LONG Added(LONG position, LONG by)
{
    const LONGLONG sum = LONGLONG{position} + by;
    return static_cast<LONG>(std::clamp<LONGLONG>(sum, 0, MAXLONG));
}

void ShowBar(HWND window, int bar, bool isNeeded)
{
    const LONG_PTR style = bar == SB_HORZ ? WS_HSCROLL : WS_VSCROLL;
    if (isNeeded != ((GetWindowLongPtr(window, GWL_STYLE) & style) != 0))
        ShowScrollBar(window, bar, isNeeded);
}

void SetBar(HWND window, int bar, LONG total, LONG page, LONG position)
{
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = total - 1;
    info.nPage = static_cast<UINT>(page);
    info.nPos = position;
    SetScrollInfo(window, bar, &info, TRUE);
}

} // namespace

void CScrollView::SetScrollSizes(int mapMode, SIZE total, const SIZE& page, const SIZE& line)
{
    if (mapMode != MM_TEXT)
        AfxThrowNotSupportedException();
    m_total.SetSize(std::max(total.cx, 0L), std::max(total.cy, 0L));
    m_page = page;
    m_line = line;
    UpdateBars();
}

void CScrollView::ScrollToPosition(POINT position)
{
    const CPoint target = Within(position);
    if (target == m_position)
        return;
    const CSize way = m_position - target;
    m_position = target;
    ShowPosition();
    ::ScrollWindow(m_hWnd, way.cx, way.cy, nullptr, nullptr);
}

void CScrollView::OnPrepareDC(CDC* dc)
{
    dc->SetMapMode(MM_TEXT);
    dc->SetViewportOrg(-m_position);
}

BOOL CScrollView::OnScrollBy(CSize by, BOOL doScroll)
{
    const CPoint target = Within(CPoint(Added(m_position.x, by.cx), Added(m_position.y, by.cy)));
    if (target == m_position)
        return FALSE;
    if (doScroll)
        ScrollToPosition(target);
    return TRUE;
}

void CScrollView::OnSize(UINT type, int, int)
{
    if (type != SIZE_MINIMIZED)
        UpdateBars();
}

void CScrollView::OnHScroll(UINT code, UINT, HWND bar)
{
    if (bar)
        Default();
    else
        OnScrollBy(CSize(Target(SB_HORZ, code) - m_position.x, 0));
}

void CScrollView::OnVScroll(UINT code, UINT, HWND bar)
{
    if (bar)
        Default();
    else
        OnScrollBy(CSize(0, Target(SB_VERT, code) - m_position.y));
}

BOOL CScrollView::OnMouseWheel(UINT flags, short delta, CPoint)
{
    if (flags & (MK_CONTROL | MK_SHIFT))
        return FALSE;
    const ScrollLayout layout = LayoutOf(*this, m_total);
    UINT lines = 3;
    SystemParametersInfo(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    const bool byPage = lines == WHEEL_PAGESCROLL;
    const CSize step = byPage ? PageStep() : LineStep();
    const LONGLONG turned = -LONGLONG{delta} * (byPage ? 1 : std::min(lines, kMostLines));
    const LONGLONG way = turned * (layout.isHigh ? step.cy : step.cx) / WHEEL_DELTA;
    const auto by = static_cast<LONG>(std::clamp<LONGLONG>(way, -MAXLONG, MAXLONG));
    return OnScrollBy(layout.isHigh ? CSize(0, by) : CSize(by, 0));
}

CPoint CScrollView::Within(POINT position) const
{
    const CPoint last = LayoutOf(*this, m_total).last;
    return {static_cast<int>(std::clamp(position.x, 0L, last.x)),
            static_cast<int>(std::clamp(position.y, 0L, last.y))};
}

CSize CScrollView::PageStep() const
{
    const CSize client = GetClientRect().Size();
    return {static_cast<int>(m_page.cx ? m_page.cx : client.cx),
            static_cast<int>(m_page.cy ? m_page.cy : client.cy)};
}

CSize CScrollView::LineStep() const
{
    const CSize client = GetClientRect().Size();
    return {static_cast<int>(m_line.cx ? m_line.cx : std::max(client.cx / 10, 1L)),
            static_cast<int>(m_line.cy ? m_line.cy : std::max(client.cy / 10, 1L))};
}

/// Where a message of the bar wants to go.
LONG CScrollView::Target(int bar, UINT code) const
{
    const bool isWide = bar == SB_HORZ;
    const LONG position = isWide ? m_position.x : m_position.y;
    const LONG line = isWide ? LineStep().cx : LineStep().cy;
    const LONG page = isWide ? PageStep().cx : PageStep().cy;
    SCROLLINFO info{};
    switch (code) {
    case SB_TOP:
        return 0;
    case SB_BOTTOM:
        return MAXLONG;
    case SB_LINEUP:
        return Added(position, -line);
    case SB_LINEDOWN:
        return Added(position, line);
    case SB_PAGEUP:
        return Added(position, -page);
    case SB_PAGEDOWN:
        return Added(position, page);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        // The message itself has the low 16 bits only.
        info.cbSize = sizeof info;
        info.fMask = SIF_TRACKPOS;
        return GetScrollInfo(m_hWnd, bar, &info) ? info.nTrackPos : position;
    default:
        return position;
    }
}

/// Showing or hiding a bar changes the client area, which comes back here before it is done; and who hears of
/// that may set other sizes.
void CScrollView::UpdateBars()
{
    m_isOutdated = true;
    if (m_isUpdating || !m_hWnd)
        return;
    m_isUpdating = true;
    for (int round = 0; m_isOutdated && round < 4; ++round) {
        m_isOutdated = false;
        ArrangeBars();
    }
    m_isUpdating = false;
}

void CScrollView::ArrangeBars()
{
    const ScrollLayout layout = LayoutOf(*this, m_total);
    const CPoint position(std::min(m_position.x, layout.last.x), std::min(m_position.y, layout.last.y));
    // Whoever is told of the new client area meanwhile finds the position that belongs to it.
    if (!(position == m_position)) {
        m_position = position;
        Invalidate();
    }
    ShowBar(m_hWnd, SB_HORZ, layout.isWide);
    ShowBar(m_hWnd, SB_VERT, layout.isHigh);
    ShowPosition();
}

void CScrollView::ShowPosition()
{
    const ScrollLayout layout = LayoutOf(*this, m_total);
    if (layout.isWide)
        SetBar(m_hWnd, SB_HORZ, m_total.cx, layout.client.cx, m_position.x);
    if (layout.isHigh)
        SetBar(m_hWnd, SB_VERT, m_total.cy, layout.client.cy, m_position.y);
}
