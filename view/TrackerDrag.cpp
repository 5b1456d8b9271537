#include "view/detail/TrackerDrag.h"

#include "framework/ui/Wnd.h"

#include "view/detail/DeviceCoordinates.h"
#include "view/detail/Saturated.h"

namespace vak::detail {

namespace {

/// The innermost drag of the thread.
thread_local TrackerDrag* t_drag = nullptr;

bool IsThere(CWnd* wnd, HWND window)
{
    return window && CWnd::FromHandlePermanent(window) == wnd;
}

CPoint MouseOf(const MSG& message)
{
    // Beyond the left and top of the window they are negative.
    return {static_cast<short>(LOWORD(message.lParam)), static_cast<short>(HIWORD(message.lParam))};
}

bool IsButtonDown()
{
    return GetKeyState(VK_LBUTTON) < 0;
}

HeldKeys KeysHeld()
{
    return {GetKeyState(VK_SHIFT) < 0, GetKeyState(VK_CONTROL) < 0};
}

} // namespace

bool TrackerDrag::MayBegin(HWND window)
{
    const HWND capture = CWnd::GetCapture();
    if (!window || (capture && capture != window))
        return false;
    for (const TrackerDrag* drag = t_drag; drag; drag = drag->m_previous)
        if (drag->m_isTracking && drag->m_window == window)
            return false;
    return true;
}

TrackerDrag::TrackerDrag(CVakTracker& tracker, int hit, CWnd* wnd, CPoint mouse, CWnd* clipTo)
    : m_tracker(tracker), m_watch(tracker), m_outer(tracker.m_drag), m_previous(t_drag), m_wnd(wnd),
      m_window(wnd->GetSafeHwnd()), m_clipTo(clipTo), m_clipWindow(clipTo ? clipTo->GetSafeHwnd() : nullptr),
      m_start(tracker.m_rect), m_working(tracker.m_rect), m_step(BeginDrag(hit, tracker.m_rect, mouse)),
      m_wasButtonDown(IsButtonDown())
{
    tracker.m_drag = this;
    tracker.m_tracking = TRUE;
    tracker.m_erase = FALSE;
    t_drag = this;
}

TrackerDrag::~TrackerDrag()
{
    // The tracker is gone, or an exception passes: no hook is called any more.
    if (m_dc && AreWindowsThere() && (m_outlineSize.cx != 0 || m_outlineSize.cy != 0)) {
        const DeviceCoordinates coordinates(*m_dc);
        m_dc->DrawDragRect(m_outline, CSize(), m_outline, m_outlineSize);
    }
    Release();
    if (m_watch.IsAlive()) {
        m_tracker.m_drag = m_outer;
        m_tracker.m_erase = FALSE;
        m_tracker.m_finalErase = FALSE;
    }
    t_drag = m_previous;
}

bool TrackerDrag::Run()
{
    Begin();
    while (IsRunning() && !IsReleaseMissed()) {
        MSG message{};
        if (NextMessage(message))
            Handle(message);
    }
    return m_watch.IsAlive() && Finish();
}

void TrackerDrag::Begin()
{
    m_tracker.OnTrackerCallback(TrackingBegins, CRect(m_start));
    if (!m_watch.IsAlive() || !AreWindowsThere() || IsReleaseMissed())
        return;
    m_wnd->SetCapture();
    m_wnd->UpdateWindow();
    if (m_clipTo && AreWindowsThere())
        m_clipTo->UpdateWindow();
}

bool TrackerDrag::IsRunning() const
{
    return m_state == State::Running && m_watch.IsAlive() && AreWindowsThere() &&
           CWnd::GetCapture() == m_window;
}

bool TrackerDrag::IsReleaseMissed() const
{
    return m_wasButtonDown && !IsButtonDown();
}

bool TrackerDrag::AreWindowsThere() const
{
    return IsThere(m_wnd, m_window) && (!m_clipTo || IsThere(m_clipTo, m_clipWindow));
}

bool TrackerDrag::NextMessage(MSG& message)
{
    if (PeekMessage(&message, nullptr, 0, 0, PM_REMOVE))
        return true;
    // Also a message that is sent wakes it: it may have taken the capture, and nothing need follow it.
    MsgWaitForMultipleObjectsEx(0, nullptr, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    return false;
}

void TrackerDrag::Handle(const MSG& message)
{
    if (message.message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(message.wParam));
        m_state = State::TakenBack;
        return;
    }
    // Taking the message can have run what ends the drag.
    if (!IsRunning() || !Settle(message))
        Dispatch(message);
}

bool TrackerDrag::Settle(const MSG& message)
{
    const bool isOwn = message.hwnd == m_window;
    switch (message.message) {
    case WM_MOUSEMOVE:
    case WM_LBUTTONUP:
        if (!isOwn)
            return false;
        MoveTo(MouseOf(message));
        if (message.message == WM_LBUTTONUP)
            m_state = State::Dropped;
        return true;
    case WM_RBUTTONDOWN:
    case WM_KEYDOWN:
        if (message.message == WM_KEYDOWN ? message.wParam != VK_ESCAPE : !isOwn)
            return false;
        m_state = State::TakenBack;
        return true;
    default:
        return false;
    }
}

void TrackerDrag::Dispatch(const MSG& message)
{
    // What is drawn over an inverted outline, or scrolled, would leave traces of it.
    const bool wasOutlined = m_isOutlined;
    HideOutline();
    DispatchMessage(&message);
    if (!wasOutlined || !IsRunning())
        return;
    m_tracker.Follow();
    DrawOutline(false, true);
}

void TrackerDrag::MoveTo(CPoint mouse)
{
    m_tracker.Follow();
    const CRect rect = Proposed(mouse);
    if (!m_watch.IsAlive())
        return;
    m_working = rect;
    if (!(rect == m_tracker.m_rect)) {
        m_hasMoved = true;
        // The hooks may draw.
        HideOutline();
        Store(rect);
    }
    if (IsRunning())
        ShowOutline();
}

CRect TrackerDrag::Proposed(CPoint mouse)
{
    CRect rect = Dragged(m_step, m_working, mouse);
    m_tracker.AdjustConstraint(m_step.hit, rect, 0);
    m_tracker.AdjustRect(m_step.hit, rect);
    // Back where it began it is what it was, though minimum or ratio may not allow that.
    if (Dragged(m_step, m_start, mouse) == m_start)
        return m_start;
    if (m_watch.IsAlive() && m_tracker.m_constraint == 0)
        return HeldBack(rect, m_start, KeysHeld());
    return rect;
}

void TrackerDrag::ShowOutline()
{
    if ((m_tracker.m_options & NoDragOutline) == 0)
        DrawOutline(false, false);
}

void TrackerDrag::HideOutline()
{
    if (m_isOutlined)
        DrawOutline(true, true);
}

void TrackerDrag::DrawOutline(bool isFinal, bool isSilent)
{
    if (!m_watch.IsAlive() || !AreWindowsThere())
        return;
    if (!m_dc)
        m_dc.emplace(m_clipTo ? m_clipTo : m_wnd);
    m_isOutlined = !isFinal;
    m_isSilent = isSilent;
    m_tracker.m_finalErase = isFinal;
    const CRect rect = m_tracker.m_rect;
    m_tracker.DrawTrackerRect(rect, m_clipTo, &*m_dc, m_wnd);
    m_isSilent = false;
    if (m_watch.IsAlive())
        m_tracker.m_finalErase = FALSE;
}

void TrackerDrag::NoteOutline(bool isOnScreen, const CRect& rect, CSize size)
{
    m_outline = rect;
    m_outlineSize = isOnScreen ? size : CSize();
}

void TrackerDrag::Store(const CRect& rect)
{
    if (m_watch.IsAlive())
        m_tracker.Store(rect);
}

void TrackerDrag::Rebase(const CRect& start, const CRect& working)
{
    m_start = start;
    m_working = working;
    m_step.size = CSize(Saturated(WidthOf(start)), Saturated(HeightOf(start)));
}

bool TrackerDrag::Finish()
{
    if (m_isOutlined)
        DrawOutline(true, false);
    Release();
    if (!m_watch.IsAlive())
        return false;
    if (!IsThere(m_wnd, m_window)) {
        m_tracker.OnTrackerCallback(TrackingEnds, CRect(m_tracker.m_rect));
        return false;
    }
    m_tracker.Follow();
    const bool isTakenBack = m_state == State::TakenBack;
    const CRect last = isTakenBack ? m_start : m_working;
    const bool isElsewhere = !(last == m_start);
    if (isElsewhere || (isTakenBack && !(m_tracker.m_rect == m_start)))
        Store(last);
    if (m_watch.IsAlive())
        m_tracker.OnTrackerCallback(TrackingEnds, last);
    return m_watch.IsAlive() && (isElsewhere || (!isTakenBack && m_hasMoved));
}

void TrackerDrag::Release()
{
    m_dc.reset();
    if (!m_isTracking)
        return;
    m_isTracking = false;
    if (m_watch.IsAlive()) {
        m_tracker.m_tracking = FALSE;
        m_tracker.m_isOrphan |= !IsThere(m_wnd, m_window);
    }
    // The window is told, and may do anything.
    if (CWnd::GetCapture() == m_window)
        ::ReleaseCapture();
}

} // namespace vak::detail
