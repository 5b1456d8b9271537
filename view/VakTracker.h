#pragma once

/// A rectangle with handles that the user moves and resizes by mouse and arrow keys. Windows only; for the
/// thread of the window.
///
/// Whoever owns the tracker calls Draw when the window is painted, SetCursor when the window asks for a
/// cursor, and Track when the left button goes down; then, or from the callback, has the window painted anew
/// where the tracker was and is: the tracker itself draws nothing but the outline of a drag. Coordinates are
/// pixels of the window's client area.
///
/// Handles that would lie beyond the window's border are moved to it, as soon as Draw, SetCursor or Track has
/// made the window known.
///
/// The hooks and the callback may do anything: change the rectangle, show messages, take the capture,
/// destroy the window or the tracker, throw. A drag then ends in good order: the outline is off the screen,
/// capture and device context are given back, and an exception goes on to the caller.

#include "framework/base/Geometry.h"

#include "view/TrackerCodes.h"

class CDC;
class CWnd;

namespace vak::detail {
class TrackerDrag;
class TrackerWatch;
struct TrackerShape;
} // namespace vak::detail

class VAK_API CVakTracker
{
public:
    /// `event` is a vak::TrackerEvent; `rect` the tracker's rectangle, or with the events about the outline
    /// what is outlined. It stays valid during the call, also when that destroys the tracker.
    using Callback = void (*)(int event, CRect const& rect, void* data);

    /// `style` and `options` are sums of vak::TrackerStyle and vak::TrackerOption. Throws CResourceException
    /// when the brush and the pens that all trackers share cannot be made; the next tracker tries again.
    CVakTracker(tagRECT const* rect, unsigned int style, unsigned int options);
    CVakTracker(const CVakTracker&) = delete;
    CVakTracker& operator=(const CVakTracker&) = delete;

    /// Handles one of the four arrow keys, any other returns 0: the rectangle moves by a pixel; with Shift
    /// its left (top) side alone, with Ctrl its right (bottom) side. It stays within `bounds` (right and
    /// bottom are the last places of a side; null for none), where a side that has no room stays.
    virtual int OnKey(unsigned int key, CRect const* bounds);
    /// A drag that runs ends.
    virtual ~CVakTracker();

    /// May be inverted: left > right, top > bottom.
    CRect GetRect() const;
    /// What the tracker covers with its outline, hatching and handles.
    void GetTrueRect(tagRECT* rect) const;
    /// Returns the constraint's mode, 0 for none; `ratio` is given in every case.
    int GetConstraint(float& ratio) const;
    /// True from a drag's first event (TrackingBegins) to its last.
    int IsTracking() const { return m_tracking; }

    /// A vak::TrackerHit; the first handle in their order wins over those behind it and over the middle.
    /// HitTest knows handles only where a style shows them, HitTestHandles always.
    int HitTest(CPoint point) const;
    int HitTestHandles(CPoint point) const;
    /// The handle as it appears: that of an inverted rectangle's left side is seen on its right.
    int NormalizeHit(int hit) const;

    /// Changes the rectangle as a drag does, with OnRectChanged and RectChanged; nothing when it is equal.
    void SetRect(CRect const& rect);
    /// Returns the previous style.
    unsigned int SetStyle(unsigned int style);
    /// The smallest width and height that dragging a handle leaves; negative values are 0.
    void SetMinSize(CSize const& size);
    /// The edge length of handles, 9 at first, at least 1; returns the previous one. Displays of high
    /// resolution want larger ones.
    int SetHandleSize(int size);
    /// A `mode` other than 0 keeps the `ratio` of height to width when corners are dragged and by the keys;
    /// the sides then have no handles. The ratio 0 becomes 0.01.
    void SetConstraint(int mode, float ratio);
    /// `callback` may be null; `data` is handed to it.
    void SetCallback(Callback callback, void* data);

    /// Call it when the window asks for a cursor: sets that of the handle under the mouse, or of the middle.
    /// Returns 0, with the cursor as it was, elsewhere and for other codes than HTCLIENT.
    int SetCursor(CWnd* wnd, unsigned int hitTestCode);

    /// Lets the user drag what lies under `point`, until the left button goes up, Escape or the right button
    /// takes everything back, or the window loses the capture, which leaves it as it is then. Shift keeps the
    /// horizontal, Ctrl the vertical position of the sides, without a constraint. Returns whether anything
    /// moved: 0 at once when nothing lies there, when another window has the mouse, or in a drag; 0 after a
    /// drag that was taken back, or whose window or tracker is gone.
    ///
    /// A drag that ends where it began, a mere click too, leaves the rectangle as it was, though minimum,
    /// ratio or AdjustRect would change it. `allowInvert` lets a side pass the opposite one, at the minimum
    /// size. The outline is drawn on `clipTo` if that is not null, else on `wnd`. Other messages are
    /// dispatched meanwhile; WM_QUIT takes the drag back and goes on to the loop outside.
    int Track(CWnd* wnd, CPoint point, int allowInvert, CWnd* clipTo);
    /// Starts anew with an empty rectangle at `point` and lets the user drag its bottom-right corner, ahead
    /// of the mouse by the minimum size. As Track else.
    int TrackRubberBand(CWnd* wnd, CPoint point, int allowInvert);

    /// Draws the tracker at its place in the client area: `dc` is one of the window, whatever its origin and
    /// mapping, or of a picture of the client area. The device context is left as it was.
    void Draw(CDC* dc);

protected:
    /// Draws the outline of a drag and takes the last one off, between the events about it. `rect` in client
    /// coordinates of `wnd`, which `dc` belongs to, or to `clipTo` if that is not null.
    virtual void DrawTrackerRect(tagRECT const* rect, CWnd* clipTo, CDC* dc, CWnd* wnd);
    /// May change what a drag of handle `hit` is about to make of the rectangle: here it gets the minimum
    /// size, on the side that the drag is on.
    virtual void AdjustRect(int hit, CRect& rect);
    /// The rectangle has become `rect`; RectChanged follows.
    virtual void OnRectChanged(CRect const& rect);
    /// Bit n stands for handle n: sides that are too short for a third handle have none.
    virtual unsigned int GetHandleMask() const;
    /// Passes the event on to the callback.
    virtual void OnTrackerCallback(int event, CRect const& rect);
    /// The edge length of handles on `rect`, or on the tracker's own if that is null: smaller on a rectangle
    /// that has no room for two.
    virtual int GetHandleSize(tagRECT const* rect = nullptr) const;

    /// What the public OnKey does, on any rectangle and without telling anybody.
    int OnKey(unsigned int key, CRect& rect, CRect const* bounds);
    /// Gives the rectangle the constraint's ratio, if there is one, by its height (`mode` 1), its width (2),
    /// or what the ratio makes the smaller side of (0). The corner opposite of `hit` stays.
    void AdjustConstraint(int hit, CRect& rect, int mode) const;

    // The order is part of the interface.
    unsigned int m_options;
    Callback m_callback = nullptr;
    void* m_callbackData = nullptr;
    int m_constraint = 0;
    int m_tracking = FALSE;
    float m_ratio = 1.0f;
    int m_allowInvert = FALSE;
    /// The outline that DrawTrackerRect drew last.
    CRect m_lastDragRect;
    CSize m_lastDragSize;
    /// It is on the screen, and has to come off it.
    int m_erase = FALSE;
    /// DrawTrackerRect is to take it off, and to draw none.
    int m_finalErase = FALSE;
    unsigned int m_style;
    /// Mutable for Follow: a rectangle that is bound to something else is kept here as it appears.
    mutable CRect m_rect;
    CSize m_minSize;
    int m_handleSize;

private:
    friend class vak::detail::TrackerDrag;
    friend class vak::detail::TrackerWatch;
    friend class CViewTracker;

    /// Brings the rectangle, and those of a drag that runs, where what they are bound to has moved them.
    /// Called before they are used; tells nobody.
    virtual void Follow() const;
    vak::detail::TrackerShape Shape() const;
    void Store(CRect const& rect);
    void ReachIn(HWND window);
    void TellAboutOutline(int event, CRect const& rect);
    void DrawHatching(CDC& dc) const;
    void DrawOutline(CDC& dc) const;
    void DrawHandles(CDC& dc) const;
    bool TrackHandle(int hit, CWnd* wnd, CPoint point, CWnd* clipTo);

    vak::detail::TrackerDrag* m_drag = nullptr;
    vak::detail::TrackerWatch* m_watch = nullptr;
    /// Where the handles stay reachable: the client area, where that is known.
    mutable CRect m_reach;
    /// The window went in a drag, and with it may have gone whatever the rectangle is bound to.
    bool m_isOrphan = false;
};
