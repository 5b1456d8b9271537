#pragma once

/// Where a raster document lies in the window that shows it: zoom, scroll position, and the way between
/// document pixels and the client area. Windows only; for the thread of the window.
///
/// Three kinds of coordinates:
/// - document: integer pixel indexes, from 0 to width - 1 and height - 1;
/// - client ("page"): pixels of the window's client area, as the mouse reports them;
/// - viewport: client coordinates before the scroll position is subtracted, the logical coordinates of a
/// scrolling
///   view.
/// Scroll positions and ranges are zoomed pixels, counted from the document's top-left at the current zoom.
///
/// A document smaller than the client area is centred in it; a larger one scrolls, on each axis by itself.
/// The zoom is client pixels per document pixel, from 1/32 to 32.
///
/// Nothing fails: zooms are clamped to the limits, document pixels to the document, and what no integer holds
/// becomes the nearest one that exists.

#include "framework/base/Geometry.h"

#include "view/detail/ViewGeometry.h"

class CDC;
class CScrollView;
class CViewTracker;
class CWnd;

/// Holds the geometry, not the window, which must outlive it or be gone from its CWnd (then everything that
/// asks the window is harmless: the client area counts as empty). A copy is a second view of the same window.
///
/// Who owns it calls ClientSizeChange when the window is resized, and scrolls through Scroll and the zoom
/// operations alone, so that position, view and derived values stay consistent. Parameters that are
/// references to plain values without being results are only read.
class VAK_API CVakCoord
{
public:
    /// Zoom 1 of nothing; Init makes it usable.
    CVakCoord() = default;
    CVakCoord(CWnd* wnd, CSize& docSize);
    CVakCoord(const CVakCoord&) = default;
    CVakCoord& operator=(const CVakCoord&) = default;
    virtual ~CVakCoord();

    /// Binds the window (not owned, may be null) and the size of the document, in pixels; keeps the zoom, and
    /// the scroll position as far as it fits. With a CScrollView its scroll bars follow.
    void Init(CWnd* wnd, CSize& docSize);
    /// The window has another client area, which is read from it; does nothing when `newClientSize` is the
    /// known one. The scroll position is the view's, or without one stays: scrolling by nothing brings it
    /// back into a range that has become smaller. Repaints nothing, though a centred document moves.
    void ClientSizeChange(CSize& newClientSize);

    CWnd* GetWnd() const { return m_wnd; }
    /// The window if it is a CScrollView, else null.
    CScrollView* GetView() const { return m_view; }
    CSize GetDocSize() const { return m_geometry.document; }
    float GetZoom() const { return m_geometry.zoom; }
    CPoint GetScrollPos() const { return m_geometry.scroll; }
    /// Whether the zoomed document is not larger than the client area.
    int IsDocFitInView() const;
    /// The middle of the page, counted from the page's own top-left.
    CPoint ClientCenter() const;

    /// @name Zoom
    /// With `snap` the zoom goes to the nearest factor of a ladder from 1/32 to 32; NaN becomes the smallest
    /// zoom. What returns an int returns 0, and changes and repaints nothing, when the zoom is the current
    /// one already.
    /// @{
    int SetZoom(float zoom, int snap);
    /// Brings the document point under the cursor (`atCursor`) or the middle of the client area, as far as
    /// the scroll range allows. The position follows from point, anchor and zoom alone: who zooms in and out
    /// around one and the same document point comes back to the same pixels at the same zoom, any number of
    /// times. (A point that is asked for anew at each step, by ClientToDoc, loses its fraction of a pixel
    /// each time.)
    int SetZoomAndCenter(float zoom, CPoint const& docPoint, int snap, int atCursor);
    /// One step of the ladder around the middle of the visible part, which is taken anew in whole document
    /// pixels: a step in and one out may end two of them away.
    int Zoom(int zoomIn);
    /// The zoom that Zoom leads to.
    float GetDefaultRatio(int zoomIn) const;
    /// The zoom at which the whole document fits in the window, less 2 % with `withMargin`; at most 1,
    /// without margin then, unless `allowEnlarge`.
    void AutoFit(int withMargin, int allowEnlarge);
    /// Fills the window with the rectangle's longer side (right and bottom exclusive) and its middle; the
    /// shorter side may not fit.
    void SetVisDoc(CRect const& docRect);
    /// @}

    /// Moves the scroll position, as far as it goes; returns 0 when it stays. The caller repaints.
    int Scroll(CSize& delta);

    /// @name Document to window
    /// The point forms give the middle of the zoomed pixel, those for polygons its top-left corner.
    /// Rectangles keep their orientation and map their sides like corners, or like middles with `centre`.
    /// @{
    /// Return whether the result lies in the page; a rectangle with all of itself.
    int DocToPage(CPoint& point) const;
    int DocToPageForPolygon(CPoint& point) const;
    int DocToPage(CRect& rect, int centre) const;
    void DocToViewport(CPoint const& docPoint, CPoint& viewPoint) const;
    void DocToViewportForPolygon(CPoint const& docPoint, CPoint& viewPoint) const;
    void DocToViewport(CRect const& docRect, CRect& viewRect, int centre) const;
    /// @}

    /// The document pixel at a client point; returns 0 when it had to be clamped to the document. Pixel 0 in
    /// a document without pixels.
    int ClientToDoc(CPoint& point) const;
    /// Rounds to the nearest pixel, or `outward`. `clamp` keeps the sides on the document: up to its size
    /// with `exclusiveEdge`, else to its last pixel.
    void ClientToDoc(CRect& rect, int exclusiveEdge, int outward, int clamp) const;
    /// The part of the document that is visible, also in part; right and bottom exclusive. Never leaves the
    /// document.
    void GetVisDoc(CRect& docRect) const;
    /// The part of the client area that the document covers, with `addScroll` in viewport coordinates.
    /// Returns whether it begins in the client area's top-left corner: no background shows on the left or
    /// top.
    int GetVisClient(CRect& rect, int addScroll) const;
    /// The visible part of the document in viewport coordinates.
    void GetVisPage(CRect& rect) const;

    /// Fills what is not document with a colour (COLORREF) and sets the clipping for what is drawn next,
    /// unless the page begins in the client area's corner. Bit 0 of `flags` draws a frame around the page;
    /// with bit 1 the caller's drawing stays on the page. `dc` has client coordinates, as one that comes with
    /// WM_ERASEBKGND; its clipping is all that changes.
    void EraseBackground(CDC* dc, unsigned long colour, unsigned int flags);

    /// @name Trackers
    /// They stay inside the document. `constraint` and `ratio` as CVakTracker::SetConstraint takes them.
    /// @{
    /// Lets the user drag a rectangle from the client point `start` on; returns whether one with an area came
    /// of it. `docRect` is then that rectangle, normalised, right and bottom exclusive; else empty.
    int DoRubberBandTracker(CRect& docRect, CPoint start, int constraint, float ratio);
    /// A tracker on a rectangle of the client area, which keeps that rectangle's ratio with a `constraint`.
    /// The caller gives it back through ReleaseTracker, before this object and its window go.
    CViewTracker* InitTracker(CRect const& clientRect, int constraint, unsigned int style);
    /// The same from a rectangle that the user drags (DoRubberBandTracker), drawn at once; null when none
    /// came of it.
    CViewTracker* InitTracker(CPoint const& start, int constraint, float ratio, unsigned int style);
    /// Takes the tracker's picture away and deletes it; null is allowed.
    void ReleaseTracker(CViewTracker* tracker);
    /// @}

protected:
    /// Reads the view and the client rectangle and computes everything that follows from them.
    void InitInfo();
    /// Hands the scroll range to the view, clamps the position, and recomputes.
    void UpdateWindow();
    float VerifyZoom(float zoom, int snap) const;
    CPoint VerifyScrollPos(CPoint& pos) const;
    /// Down (up) to whole zoomed document pixels on each axis that the document fills.
    CPoint DiscretCoord(CPoint const& point) const;
    CSize DiscretSize(CSize const& size) const;

    // The order is part of the interface.
    CWnd* m_wnd = nullptr;
    CScrollView* m_view = nullptr;
    /// The rest of the fields: sizes, positions, rectangles, limits and zoom.
    vak::detail::ViewGeometry m_geometry;

private:
    bool HasWindow() const;
    CSize ClientSize() const;
    CPoint CursorPos() const;
    bool StoreZoom(float zoom, int snap);
    void ScrollTo(CPoint pos);
    void Show(CPoint wanted);
};
