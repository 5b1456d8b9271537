#include "view/VakCoord.h"

#include "framework/ui/DC.h"
#include "framework/ui/ScrollView.h"

#include <algorithm>

static_assert(sizeof(CVakCoord) == 3 * sizeof(void*) + 96, "the fields, and nothing else");

using vak::detail::ToDocumentRule;
using vak::detail::ZoomTarget;

namespace {

CScrollView* AsScrollView(CWnd* window)
{
    const bool isView = window && window->IsKindOf(RUNTIME_CLASS(CScrollView));
    return isView ? static_cast<CScrollView*>(window) : nullptr;
}

constexpr unsigned int kFrame = 1;
constexpr unsigned int kClipToPage = 2;
constexpr COLORREF kLight = RGB(255, 255, 255);
constexpr COLORREF kShade = RGB(128, 128, 128);

/// Keeps a window from drawing. One that does not draw anyway is left alone: resuming would show a hidden
/// one, and would end what its owner has begun.
class RedrawPause
{
public:
    explicit RedrawPause(CWnd* window)
    {
        if (!window || !window->GetSafeHwnd() || !(window->GetStyle() & WS_VISIBLE))
            return;
        m_window = window;
        m_window->SetRedraw(FALSE);
    }
    ~RedrawPause()
    {
        if (m_window && m_window->GetSafeHwnd())
            m_window->SetRedraw(TRUE);
    }
    RedrawPause(const RedrawPause&) = delete;
    RedrawPause& operator=(const RedrawPause&) = delete;

private:
    CWnd* m_window = nullptr;
};

/// Restores the brush that the device context had.
class SelectedBrush
{
public:
    SelectedBrush(CDC* dc, CBrush* brush) : m_dc(dc), m_former(dc->SelectObject(brush)) {}
    ~SelectedBrush() { m_dc->SelectObject(m_former); }
    SelectedBrush(const SelectedBrush&) = delete;
    SelectedBrush& operator=(const SelectedBrush&) = delete;

private:
    CDC* m_dc;
    CBrush* m_former;
};

void FillAround(CDC* dc, const CRect& page, const CRect& area, COLORREF colour)
{
    CBrush brush;
    dc->ExcludeClipRect(&page);
    if (!brush.CreateSolidBrush(colour))
        return;
    const SelectedBrush selected(dc, &brush);
    dc->PatBlt(area.left, area.top, area.Width(), area.Height(), PATCOPY);
}

} // namespace

CVakCoord::CVakCoord(CWnd* wnd, CSize& docSize)
{
    Init(wnd, docSize);
}

CVakCoord::~CVakCoord() = default;

void CVakCoord::Init(CWnd* wnd, CSize& docSize)
{
    m_wnd = wnd;
    m_view = AsScrollView(wnd);
    m_geometry.document.SetSize(std::max(docSize.cx, 0L), std::max(docSize.cy, 0L));
    m_geometry.zoomed = m_geometry.ZoomedDocument();
    m_geometry.scroll = m_geometry.ClampedScroll(m_geometry.scroll);
    UpdateWindow();
}

void CVakCoord::ClientSizeChange(CSize& newClientSize)
{
    if (!(newClientSize == m_geometry.client))
        InitInfo();
}

int CVakCoord::IsDocFitInView() const
{
    return m_geometry.IsDocumentFitting();
}

CPoint CVakCoord::ClientCenter() const
{
    return {m_geometry.page.Width() / 2, m_geometry.page.Height() / 2};
}

int CVakCoord::SetZoom(float zoom, int snap)
{
    if (!StoreZoom(zoom, snap))
        return FALSE;
    UpdateWindow();
    if (HasWindow())
        m_wnd->Invalidate(TRUE);
    return TRUE;
}

int CVakCoord::SetZoomAndCenter(float zoom, CPoint const& docPoint, int snap, int atCursor)
{
    if (!StoreZoom(zoom, snap))
        return FALSE;
    const CPoint anchor = atCursor ? CursorPos() : CPoint(m_geometry.client.cx / 2, m_geometry.client.cy / 2);
    {
        const RedrawPause pause(m_wnd);
        Show(m_geometry.ScrollAround(docPoint, anchor));
    }
    // Scroll bars that came or moved meanwhile were not drawn either.
    if (HasWindow())
        ::RedrawWindow(m_wnd->GetSafeHwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
    return TRUE;
}

int CVakCoord::Zoom(int zoomIn)
{
    return SetZoomAndCenter(GetDefaultRatio(zoomIn), m_geometry.VisibleCenter(), TRUE, FALSE);
}

float CVakCoord::GetDefaultRatio(int zoomIn) const
{
    return vak::detail::SteppedZoom(m_geometry.zoom, zoomIn != 0);
}

void CVakCoord::AutoFit(int withMargin, int allowEnlarge)
{
    constexpr float kMargin = 0.98f;
    // What fits needs no scroll bars, so that their room is there too.
    const DWORD style = HasWindow() ? m_wnd->GetStyle() : 0;
    CSize room = m_geometry.client;
    if (style & WS_VSCROLL)
        room.cx += ::GetSystemMetrics(SM_CXVSCROLL);
    if (style & WS_HSCROLL)
        room.cy += ::GetSystemMetrics(SM_CYHSCROLL);
    const float ratio = m_geometry.FittingZoom(room);
    if (!allowEnlarge && ratio > 1.0f)
        SetZoom(1.0f, FALSE);
    else
        SetZoom(withMargin ? ratio * kMargin : ratio, FALSE);
}

void CVakCoord::SetVisDoc(CRect const& docRect)
{
    const ZoomTarget target = m_geometry.Filling(docRect);
    SetZoomAndCenter(target.zoom, target.center, FALSE, FALSE);
}

int CVakCoord::Scroll(CSize& delta)
{
    const CPoint target = m_geometry.ClampedScroll(m_geometry.ScrolledBy(delta));
    if (target == m_geometry.scroll)
        return FALSE;
    ScrollTo(target);
    InitInfo();
    return TRUE;
}

int CVakCoord::DocToPage(CPoint& point) const
{
    point = m_geometry.ToPage(point, true);
    return m_geometry.page.PtInRect(point);
}

int CVakCoord::DocToPageForPolygon(CPoint& point) const
{
    point = m_geometry.ToPage(point, false);
    return m_geometry.page.PtInRect(point);
}

int CVakCoord::DocToPage(CRect& rect, int centre) const
{
    rect = m_geometry.ToPage(rect, centre != 0);
    return m_geometry.IsOnPage(rect);
}

void CVakCoord::DocToViewport(CPoint const& docPoint, CPoint& viewPoint) const
{
    viewPoint = m_geometry.ToViewport(docPoint, true);
}

void CVakCoord::DocToViewportForPolygon(CPoint const& docPoint, CPoint& viewPoint) const
{
    viewPoint = m_geometry.ToViewport(docPoint, false);
}

void CVakCoord::DocToViewport(CRect const& docRect, CRect& viewRect, int centre) const
{
    viewRect = m_geometry.ToViewport(docRect, centre != 0);
}

int CVakCoord::ClientToDoc(CPoint& point) const
{
    return m_geometry.ToDocument(point);
}

void CVakCoord::ClientToDoc(CRect& rect, int exclusiveEdge, int outward, int clamp) const
{
    rect = m_geometry.ToDocument(rect, ToDocumentRule{exclusiveEdge != 0, outward != 0, clamp != 0});
}

void CVakCoord::GetVisDoc(CRect& docRect) const
{
    docRect = m_geometry.VisibleDocument();
}

int CVakCoord::GetVisClient(CRect& rect, int addScroll) const
{
    rect = m_geometry.page;
    if (addScroll)
        rect.OffsetRect(m_geometry.scroll);
    return m_geometry.page.left == 0 && m_geometry.page.top == 0;
}

void CVakCoord::GetVisPage(CRect& rect) const
{
    rect = m_geometry.VisiblePage();
}

void CVakCoord::EraseBackground(CDC* dc, unsigned long colour, unsigned int flags)
{
    CRect page;
    if (!dc || !HasWindow() || GetVisClient(page, FALSE))
        return;
    const CRect client = m_wnd->GetClientRect();
    CRect area;
    dc->GetClipBox(&area);
    area.IntersectRect(&area, &client);
    FillAround(dc, page, area, colour);
    if (flags & kFrame) {
        CRect frame = page;
        frame.InflateRect(1, 1);
        // Solid rectangles are drawn in the background colour, which is the caller's.
        const COLORREF former = dc->SetBkColor(kLight);
        dc->Draw3dRect(&frame, kLight, kShade);
        dc->SetBkColor(former);
    }
    if (area.IsRectEmpty())
        return;
    const CRect free = flags & kClipToPage ? area & page : client;
    CRgn region;
    if (region.CreateRectRgnIndirect(&free))
        dc->SelectClipRgn(&region);
}

void CVakCoord::InitInfo()
{
    if (m_view)
        m_geometry.zoomed = m_view->GetTotalSize();
    if (m_view && HasWindow())
        m_geometry.scroll = m_view->GetScrollPosition();
    m_geometry.client = ClientSize();
    m_geometry.Derive();
}

void CVakCoord::UpdateWindow()
{
    Show(m_geometry.scroll);
}

float CVakCoord::VerifyZoom(float zoom, int snap) const
{
    return m_geometry.ClampedZoom(zoom, snap != 0);
}

CPoint CVakCoord::VerifyScrollPos(CPoint& pos) const
{
    return m_geometry.ClampedScroll(pos);
}

CPoint CVakCoord::DiscretCoord(CPoint const& point) const
{
    return m_geometry.Discrete(point);
}

CSize CVakCoord::DiscretSize(CSize const& size) const
{
    return m_geometry.Discrete(size);
}

bool CVakCoord::HasWindow() const
{
    return m_wnd && m_wnd->GetSafeHwnd();
}

CSize CVakCoord::ClientSize() const
{
    return HasWindow() ? m_wnd->GetClientRect().Size() : CSize();
}

CPoint CVakCoord::CursorPos() const
{
    CPoint cursor;
    if (HasWindow() && ::GetCursorPos(&cursor))
        m_wnd->ScreenToClient(&cursor);
    return cursor;
}

bool CVakCoord::StoreZoom(float zoom, int snap)
{
    const float wanted = VerifyZoom(zoom, snap);
    if (wanted == m_geometry.zoom)
        return false;
    m_geometry.zoom = wanted;
    m_geometry.zoomed = m_geometry.ZoomedDocument();
    return true;
}

void CVakCoord::ScrollTo(CPoint pos)
{
    m_geometry.scroll = pos;
    if (m_view && HasWindow())
        m_view->ScrollToPosition(pos);
}

/// Another scroll range may show or hide scroll bars, whose window then comes back to ClientSizeChange, where
/// the view still has its old position. So the position that is wanted waits here, and is clamped to the
/// client area that there is in the end: where a zoom ends does not depend on the bars that were there
/// before.
void CVakCoord::Show(CPoint wanted)
{
    m_geometry.scroll = m_geometry.ClampedScroll(wanted);
    if (m_view)
        m_view->SetScrollSizes(MM_TEXT, m_geometry.zoomed);
    m_geometry.client = ClientSize();
    ScrollTo(m_geometry.ClampedScroll(wanted));
    InitInfo();
}
