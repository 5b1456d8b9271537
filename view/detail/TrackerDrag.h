#pragma once

#include "framework/ui/DC.h"

#include "view/detail/TrackerAdjust.h"
#include "view/detail/TrackerWatch.h"

#include <optional>

namespace vak::detail {

/// A drag, from its beginning to its end: the mouse, the outline on the screen and the message loop. It lives
/// on the stack of the operation that drags and asks, after each hook, what is still there: the tracker, the
/// window and the capture can all be gone by then. What it took it gives back in its destructor at the
/// latest.
class TrackerDrag
{
public:
    /// Whether a drag may begin there: nobody else has the mouse, and no drag runs in the window.
    static bool MayBegin(HWND window);

    TrackerDrag(CVakTracker& tracker, int hit, CWnd* wnd, CPoint mouse, CWnd* clipTo);
    TrackerDrag(const TrackerDrag&) = delete;
    TrackerDrag& operator=(const TrackerDrag&) = delete;
    ~TrackerDrag();

    /// Returns whether anything moved.
    bool Run();

    const CRect& Start() const { return m_start; }
    /// Where the rectangles are in a view that has moved meanwhile.
    void Rebase(const CRect& start, const CRect& working);
    /// Whether the outline is only taken off and put back for something else to be drawn.
    bool IsSilent() const { return m_isSilent; }
    /// The tracker has drawn an outline, or taken it off.
    void NoteOutline(bool isOnScreen, const CRect& rect, CSize size);

private:
    enum class State
    {
        Running,
        Dropped,
        TakenBack
    };

    void Begin();
    bool IsRunning() const;
    /// A hook that shows a message or reads messages itself also takes the one of the button that goes up,
    /// for which the drag would wait.
    bool IsReleaseMissed() const;
    bool AreWindowsThere() const;
    static bool NextMessage(MSG& message);
    void Handle(const MSG& message);
    /// Whether the message is the drag's own, and done.
    bool Settle(const MSG& message);
    void Dispatch(const MSG& message);
    void MoveTo(CPoint mouse);
    CRect Proposed(CPoint mouse);
    void ShowOutline();
    void HideOutline();
    void DrawOutline(bool isFinal, bool isSilent);
    void Store(const CRect& rect);
    bool Finish();
    void Release();

    CVakTracker& m_tracker;
    TrackerWatch m_watch;
    /// Of the same tracker, and of this thread: those that are about to end and called a hook for the last
    /// time.
    TrackerDrag* m_outer;
    TrackerDrag* m_previous;
    CWnd* m_wnd;
    HWND m_window;
    CWnd* m_clipTo;
    HWND m_clipWindow;
    std::optional<CClientDC> m_dc;
    State m_state = State::Running;
    bool m_isTracking = true;
    bool m_hasMoved = false;
    bool m_isOutlined = false;
    bool m_isSilent = false;
    /// The outline that stands on the screen, if the thickness is not zero.
    CRect m_outline;
    CSize m_outlineSize;
    CRect m_start;
    CRect m_working;
    DragStep m_step;
    /// As the messages read so far tell.
    bool m_wasButtonDown;
};

} // namespace vak::detail
