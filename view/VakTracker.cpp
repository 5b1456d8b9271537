#include "view/VakTracker.h"

#include "framework/ui/Wnd.h"

#include "view/detail/Saturated.h"
#include "view/detail/TrackerAdjust.h"
#include "view/detail/TrackerDrag.h"
#include "view/detail/TrackerShape.h"
#include "view/detail/TrackerTools.h"
#include "view/detail/TrackerWatch.h"

#include <algorithm>
#include <utility>

using vak::detail::TrackerDrag;
using vak::detail::TrackerShape;
using vak::detail::TrackerTools;
using vak::detail::TrackerWatch;

namespace {

/// What stands for the ratio 0, which no rectangle has.
constexpr float kSmallestRatio = 0.01f;
/// Room for two handles of the library's own size.
constexpr int kDefaultMinimum = 2 * vak::detail::kDefaultHandleSize;
constexpr unsigned int kHandleStyles = vak::ResizeInside | vak::ResizeOutside | vak::HatchedInside;

/// The way an arrow key goes; zero for every other key.
CSize StepOf(unsigned int key)
{
    switch (key) {
    case VK_LEFT:
        return {-1, 0};
    case VK_RIGHT:
        return {1, 0};
    case VK_UP:
        return {0, -1};
    case VK_DOWN:
        return {0, 1};
    default:
        return {};
    }
}

} // namespace

CVakTracker::CVakTracker(tagRECT const* rect, unsigned int style, unsigned int options)
    : m_options(options), m_style(style), m_minSize(kDefaultMinimum, kDefaultMinimum),
      m_handleSize(vak::detail::kDefaultHandleSize)
{
    TrackerTools::Shared();
    if (rect)
        m_rect = *rect;
}

CVakTracker::~CVakTracker()
{
    TrackerWatch::Bury(m_watch);
}

void CVakTracker::Follow() const {}

CRect CVakTracker::GetRect() const
{
    Follow();
    return m_rect;
}

void CVakTracker::GetTrueRect(tagRECT* rect) const
{
    Follow();
    *rect = vak::detail::OuterRect(Shape());
}

int CVakTracker::GetConstraint(float& ratio) const
{
    ratio = m_ratio;
    return m_constraint;
}

TrackerShape CVakTracker::Shape() const
{
    return {m_rect, m_style, m_handleSize, GetHandleSize(), GetHandleMask(), m_reach};
}

int CVakTracker::HitTest(CPoint point) const
{
    Follow();
    const TrackerShape shape = Shape();
    if (!vak::detail::OuterRect(shape).PtInRect(point))
        return vak::HitNothing;
    return m_style & kHandleStyles ? vak::detail::HitHandles(shape, point) : vak::HitMiddle;
}

int CVakTracker::HitTestHandles(CPoint point) const
{
    Follow();
    return vak::detail::HitHandles(Shape(), point);
}

int CVakTracker::NormalizeHit(int hit) const
{
    Follow();
    return vak::detail::NormalizedHit(m_rect, hit);
}

void CVakTracker::SetRect(CRect const& rect)
{
    Follow();
    if (!(rect == m_rect))
        Store(rect);
}

void CVakTracker::Store(CRect const& rect)
{
    // The hooks may end the tracker, and with it what `rect` may refer to.
    const CRect stored = rect;
    TrackerWatch watch(*this);
    m_rect = stored;
    OnRectChanged(stored);
    if (watch.IsAlive())
        OnTrackerCallback(vak::RectChanged, stored);
}

unsigned int CVakTracker::SetStyle(unsigned int style)
{
    return std::exchange(m_style, style);
}

void CVakTracker::SetMinSize(CSize const& size)
{
    m_minSize = CSize(std::max<int>(0, size.cx), std::max<int>(0, size.cy));
}

int CVakTracker::SetHandleSize(int size)
{
    return std::exchange(m_handleSize, std::max(1, size));
}

void CVakTracker::SetConstraint(int mode, float ratio)
{
    m_constraint = mode;
    m_ratio = ratio == 0 ? kSmallestRatio : ratio;
}

void CVakTracker::SetCallback(Callback callback, void* data)
{
    m_callback = callback;
    m_callbackData = data;
}

/// The client area is where handles stay reachable.
void CVakTracker::ReachIn(HWND window)
{
    if (window)
        GetClientRect(window, &m_reach);
}

int CVakTracker::SetCursor(CWnd* wnd, unsigned int hitTestCode)
{
    CPoint mouse;
    if (hitTestCode != HTCLIENT || !wnd || !GetCursorPos(&mouse))
        return FALSE;
    wnd->ScreenToClient(&mouse);
    ReachIn(wnd->GetSafeHwnd());
    const int hit = HitTestHandles(mouse);
    if (hit == vak::HitNothing)
        return FALSE;
    ::SetCursor(TrackerTools::Shared().CursorAt(NormalizeHit(hit)));
    return TRUE;
}

int CVakTracker::Track(CWnd* wnd, CPoint point, int allowInvert, CWnd* clipTo)
{
    if (!wnd || m_tracking)
        return FALSE;
    ReachIn(wnd->GetSafeHwnd());
    const int hit = HitTestHandles(point);
    if (hit == vak::HitNothing)
        return FALSE;
    m_allowInvert = allowInvert;
    return TrackHandle(hit, wnd, point, clipTo);
}

int CVakTracker::TrackRubberBand(CWnd* wnd, CPoint point, int allowInvert)
{
    // A drag that cannot begin leaves the rectangle as it is.
    if (m_tracking || !wnd || !TrackerDrag::MayBegin(wnd->GetSafeHwnd()))
        return FALSE;
    m_allowInvert = allowInvert;
    TrackerWatch watch(*this);
    SetRect(CRect(point, point));
    if (!watch.IsAlive())
        return FALSE;
    CRect rect = m_rect;
    AdjustRect(vak::HitBottomRight, rect);
    if (watch.IsAlive())
        SetRect(rect);
    return watch.IsAlive() && TrackHandle(vak::HitBottomRight, wnd, m_rect.TopLeft(), nullptr);
}

bool CVakTracker::TrackHandle(int hit, CWnd* wnd, CPoint point, CWnd* clipTo)
{
    if (!TrackerDrag::MayBegin(wnd->GetSafeHwnd()))
        return false;
    return TrackerDrag(*this, hit, wnd, point, clipTo).Run();
}

void CVakTracker::AdjustRect(int hit, CRect& rect)
{
    if (vak::detail::KeepMinimum(hit, rect, m_minSize, m_allowInvert))
        AdjustConstraint(hit, rect, 0);
}

void CVakTracker::AdjustConstraint(int hit, CRect& rect, int mode) const
{
    if (m_constraint != 0 && hit != vak::HitMiddle)
        rect = vak::detail::WithRatio(hit, rect, m_ratio, mode);
}

void CVakTracker::OnRectChanged(CRect const&) {}

unsigned int CVakTracker::GetHandleMask() const
{
    return vak::detail::HandleMaskOf(m_rect, GetHandleSize(), m_constraint != 0);
}

int CVakTracker::GetHandleSize(tagRECT const* rect) const
{
    return vak::detail::HandleSizeOn(rect ? CRect(rect) : m_rect, m_style, m_handleSize);
}

void CVakTracker::OnTrackerCallback(int event, CRect const& rect)
{
    if (m_callback)
        m_callback(event, rect, m_callbackData);
}

int CVakTracker::OnKey(unsigned int key, CRect const* bounds)
{
    Follow();
    CRect rect = m_rect;
    if (!OnKey(key, rect, bounds))
        return FALSE;
    SetRect(rect);
    return TRUE;
}

int CVakTracker::OnKey(unsigned int key, CRect& rect, CRect const* bounds)
{
    const CSize step = StepOf(key);
    if (step == CSize())
        return FALSE;
    const vak::detail::HeldKeys held{GetKeyState(VK_SHIFT) < 0, GetKeyState(VK_CONTROL) < 0};
    rect = vak::detail::Nudged(rect, step, held, m_constraint != 0 ? &m_ratio : nullptr, bounds);
    return TRUE;
}
