#include "examples/vakconvert/viewer/DocumentView.h"

#include "framework/ui/Menu.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr COLORREF kDesk = RGB(0x50, 0x54, 0x58);
constexpr unsigned int kTrackerStyle = vak::SolidOutline | vak::ResizeInside;
/// Pixels that a notch of the wheel, or an arrow key, scrolls by.
constexpr int kScrollStep = 60;
constexpr wchar_t kCtrlS = 0x13;
constexpr wchar_t kEscape = 0x1B;

enum MenuCommand : UINT
{
    kFit = 1,
    kActualSize,
    kSave,
    kDrop,
    kFirstAspect ///< the other aspects follow
};

} // namespace

DocumentView::DocumentView(const Document& document, ViewListener& listener)
    : m_document(document), m_listener(listener)
{
}

DocumentView::~DocumentView()
{
    // While it still is one of this class, which releases the tracker.
    DestroyWindow();
}

bool DocumentView::Create(CWnd* parent)
{
    const LPCTSTR windowClass =
        AfxRegisterWndClass(CS_HREDRAW | CS_VREDRAW, LoadCursor(nullptr, IDC_CROSS), nullptr, nullptr);
    if (!CreateEx(0, windowClass, L"", WS_CHILD | WS_VISIBLE, CRect(), parent, 0))
        return false;
    CSize size = m_document.Size();
    m_coord.Init(this, size);
    return true;
}

void DocumentView::ShowWhole()
{
    m_coord.AutoFit(FALSE, FALSE);
    Repaint();
}

ViewStatus DocumentView::Status() const
{
    ViewStatus status{m_coord.GetZoom(), m_document.Size(), std::nullopt, Selection(), m_aspect};
    CPoint pixel = m_cursor.value_or(CPoint());
    if (m_cursor && m_coord.ClientToDoc(pixel))
        status.cursor = pixel;
    return status;
}

CRect DocumentView::Selection() const
{
    return m_tracker ? m_tracker->GetDocRect() : CRect();
}

// Drawing

void DocumentView::OnDraw(CDC* dc)
{
    CRect area;
    dc->GetClipBox(area);
    dc->LPtoDP(area);
    area &= GetClientRect();
    if (area.IsRectEmpty())
        return;
    m_canvas.Prepare(GetClientRect().Size());
    Compose(area);
    dc->DPtoLP(area);
    const CPoint from(area.TopLeft() - m_coord.GetScrollPos());
    dc->BitBlt(area.left, area.top, area.Width(), area.Height(), &m_canvas, from.x, from.y, SRCCOPY);
}

BOOL DocumentView::OnEraseBkgnd(CDC*)
{
    return TRUE; // it is drawn with the rest
}

void DocumentView::Compose(const CRect& area)
{
    const int saved = m_canvas.SaveDC();
    m_canvas.IntersectClipRect(area);
    FillBehind(area);
    m_canvas.RestoreDC(saved);
    m_canvas.SaveDC();
    m_canvas.IntersectClipRect(area);
    CRect page;
    m_coord.GetVisClient(page, FALSE);
    m_document.Draw(m_canvas, m_coord, page & area);
    if (m_tracker)
        m_tracker->Draw(&m_canvas);
    m_canvas.RestoreDC(saved);
}

/// What is seen of the desk that the document lies on.
void DocumentView::FillBehind(const CRect& area)
{
    CRect page;
    // One pixel of the desk on the right or at the bottom has no other side.
    if (m_coord.GetVisClient(page, FALSE) && (page & area) != area)
        m_canvas.FillSolidRect(area, kDesk);
    m_coord.EraseBackground(&m_canvas, kDesk, 1);
}

void DocumentView::Repaint()
{
    Invalidate(FALSE);
    m_listener.OnViewChanged();
}

// Zoom and position

void DocumentView::OnSize(UINT type, int cx, int cy)
{
    CScrollView::OnSize(type, cx, cy);
    CSize client = GetClientRect().Size();
    m_coord.ClientSizeChange(client);
}

BOOL DocumentView::OnScrollBy(CSize by, BOOL doScroll)
{
    if (!doScroll)
        return CScrollView::OnScrollBy(by, FALSE);
    if (!m_coord.Scroll(by))
        return FALSE;
    // The window has moved its pixels; handles at its border stay there.
    if (m_tracker)
        Invalidate(FALSE);
    m_listener.OnViewChanged();
    return TRUE;
}

DocumentView::Place DocumentView::CurrentPlace() const
{
    return {m_coord.GetScrollPos(), GetClientRect().Size(), m_coord.GetZoom()};
}

void DocumentView::ZoomTo(float zoom)
{
    const CPoint center = m_cursor.value_or(GetClientRect().CenterPoint());
    if (m_anchor.At() != center || m_anchorPlace != CurrentPlace()) {
        CRect page;
        m_coord.GetVisClient(page, FALSE);
        m_anchor = ZoomAnchor(center, page.TopLeft(), m_coord.GetScrollPos(), m_coord.GetZoom());
    }
    // Both steps are to be seen as one.
    SetRedraw(FALSE);
    m_coord.SetZoom(zoom, FALSE);
    CSize rest = m_anchor.ScrollAt(m_coord.GetZoom()) - m_coord.GetScrollPos();
    m_coord.Scroll(rest);
    SetRedraw();
    m_anchorPlace = CurrentPlace();
    // The scroll bars may have changed, too.
    RedrawWindow(GetSafeHwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME);
    Repaint();
}

void DocumentView::Step(bool isIn)
{
    ZoomTo(m_coord.GetDefaultRatio(isIn));
}

void DocumentView::Fit()
{
    m_coord.AutoFit(FALSE, TRUE);
    Repaint();
}

BOOL DocumentView::OnMouseWheel(UINT flags, short delta, CPoint point)
{
    ScreenToClient(&point);
    if (GetClientRect().PtInRect(point))
        TrackCursor(point);
    if (flags & (MK_CONTROL | MK_SHIFT)) {
        const int by = -delta * kScrollStep / WHEEL_DELTA;
        OnScrollBy(flags & MK_SHIFT ? CSize(by, 0) : CSize(0, by));
        return TRUE;
    }
    m_wheel += delta;
    for (; m_wheel >= WHEEL_DELTA; m_wheel -= WHEEL_DELTA)
        Step(true);
    for (; m_wheel <= -WHEEL_DELTA; m_wheel += WHEEL_DELTA)
        Step(false);
    return TRUE;
}

// The mouse

void DocumentView::OnLButtonDown(UINT, CPoint point)
{
    SetFocus();
    if (m_tracker && m_tracker->HitTest(point) != vak::HitNothing)
        m_tracker->Track(point);
    else
        Select(point);
    m_isMenuOff = GetKeyState(VK_RBUTTON) < 0;
    if (GetSafeHwnd())
        Repaint();
}

void DocumentView::Select(CPoint point)
{
    DropSelection();
    CViewTracker* const tracker =
        m_coord.InitTracker(point, !m_aspect->IsFree(), m_aspect->Ratio(), kTrackerStyle);
    // Whatever happens while the mouse is followed: the window may have gone.
    if (GetSafeHwnd() && tracker)
        Adopt(tracker);
    else
        m_coord.ReleaseTracker(tracker);
}

void DocumentView::Adopt(CViewTracker* tracker)
{
    m_tracker = tracker;
    m_tracker->SetCallback(&DocumentView::OnTracker, this);
}

void DocumentView::OnTracker(int event, CRect const&, void* view)
{
    if (event == vak::RectChanged)
        static_cast<DocumentView*>(view)->Repaint();
}

void DocumentView::OnMButtonDown(UINT, CPoint point)
{
    SetFocus();
    SetCapture();
    m_grip = point + m_coord.GetScrollPos();
}

void DocumentView::OnMButtonUp(UINT, CPoint)
{
    if (m_grip)
        ReleaseCapture();
}

void DocumentView::OnCaptureChanged(HWND)
{
    m_grip.reset();
}

void DocumentView::OnMouseMove(UINT, CPoint point)
{
    if (m_grip)
        OnScrollBy(CPoint(*m_grip - point) - m_coord.GetScrollPos());
    TrackCursor(point);
}

void DocumentView::TrackCursor(CPoint point)
{
    if (!m_cursor) {
        TRACKMOUSEEVENT wanted{sizeof wanted, TME_LEAVE, GetSafeHwnd(), 0};
        TrackMouseEvent(&wanted);
    }
    m_cursor = point;
    m_listener.OnViewChanged();
}

void DocumentView::OnMouseLeave()
{
    m_cursor.reset();
    m_listener.OnViewChanged();
}

BOOL DocumentView::OnSetCursor(HWND window, UINT hitTest, UINT message)
{
    return (m_tracker && m_tracker->SetCursor(this, hitTest)) ||
           CScrollView::OnSetCursor(window, hitTest, message);
}

// Keys and commands

void DocumentView::OnKeyDown(UINT key, UINT, UINT)
{
    if (!m_tracker || !m_tracker->OnKey(key, nullptr))
        ScrollByKey(key);
}

void DocumentView::ScrollByKey(UINT key)
{
    const CSize client = GetClientRect().Size();
    const std::pair<UINT, CSize> steps[] = {
        {VK_LEFT, {-kScrollStep, 0}},       {VK_RIGHT, {kScrollStep, 0}},     {VK_UP, {0, -kScrollStep}},
        {VK_DOWN, {0, kScrollStep}},        {VK_PRIOR, {0, -int(client.cy)}}, {VK_NEXT, {0, int(client.cy)}},
        {VK_HOME, -m_coord.GetScrollPos()}, {VK_END, GetTotalSize()},
    };
    for (const auto& [known, by] : steps)
        if (key == known)
            OnScrollBy(by);
}

void DocumentView::OnChar(UINT character, UINT, UINT)
{
    switch (character) {
    case L'+':
    case L'=':
        return Step(true);
    case L'-':
        return Step(false);
    case L'0':
    case L'1':
        return ZoomTo(1.0f);
    case L'f':
    case L'F':
        return Fit();
    case L'a':
    case L'A':
        return SetAspect(m_aspect + 1 == std::end(kAspects) ? kAspects[0] : m_aspect[1]);
    case kCtrlS:
        return m_listener.OnSaveWanted();
    case kEscape:
        return DropSelection();
    default:
        break;
    }
}

void DocumentView::OnContextMenu(HWND, CPoint point)
{
    if (std::exchange(m_isMenuOff, false))
        return;
    if (point == CPoint(-1, -1)) {
        point = GetClientRect().CenterPoint();
        ClientToScreen(&point);
    }
    const UINT needsSelection = MF_STRING | (m_tracker ? MF_ENABLED : MF_GRAYED);
    CMenu menu;
    menu.CreatePopupMenu();
    menu.AppendMenu(MF_STRING, kFit, L"&Fit\tF");
    menu.AppendMenu(MF_STRING, kActualSize, L"&100 %\t1");
    menu.AppendMenu(MF_SEPARATOR);
    for (const Aspect& aspect : kAspects)
        menu.AppendMenu(MF_STRING | (&aspect == m_aspect ? MF_CHECKED : MF_UNCHECKED),
                        kFirstAspect + static_cast<UINT>(&aspect - kAspects), aspect.name);
    menu.AppendMenu(MF_SEPARATOR);
    menu.AppendMenu(needsSelection, kSave, L"&Save the selection...\tCtrl+S");
    menu.AppendMenu(needsSelection, kDrop, L"&Drop the selection\tEsc");
    Command(static_cast<UINT>(menu.TrackPopupMenu(TPM_RETURNCMD | TPM_RIGHTBUTTON, point.x, point.y, this)));
}

void DocumentView::Command(UINT command)
{
    if (command == kFit)
        Fit();
    else if (command == kActualSize)
        ZoomTo(1.0f);
    else if (command == kSave)
        m_listener.OnSaveWanted();
    else if (command == kDrop)
        DropSelection();
    else if (command >= kFirstAspect)
        SetAspect(kAspects[command - kFirstAspect]);
}

void DocumentView::SetAspect(const Aspect& aspect)
{
    m_aspect = &aspect;
    if (m_tracker) {
        m_tracker->SetConstraint(!aspect.IsFree(), aspect.Ratio());
        m_tracker->SetDocRect(WithAspect(m_tracker->GetDocRect(), aspect, m_document.Size()));
    }
    Repaint();
}

void DocumentView::DropSelection()
{
    m_coord.ReleaseTracker(std::exchange(m_tracker, nullptr));
    m_listener.OnViewChanged();
}

void DocumentView::OnDestroy()
{
    DropSelection();
    CScrollView::OnDestroy();
}
