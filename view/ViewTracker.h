#pragma once

/// A tracker on a rectangle of a document that a window shows at a zoom. Windows only; for the thread of the
/// window.

#include "view/VakTracker.h"

class CVakCoord;

/// Keeps its rectangle in document pixels, exactly, and shows it at the zoom and scroll position of a
/// CVakCoord (not owned; it outlives the tracker, but may go together with its window in a drag: the tracker
/// then keeps its rectangles, and is of no use any more). When these change, the rectangle in the window
/// follows by itself, before it is used the next time; the document rectangle changes by drags, keys, SetRect
/// and SetDocRect alone. A side that a drag brings back to where it began gets back its document pixel too,
/// also where the zoom shows several pixels as one.
///
/// Handles of a rectangle that touches or leaves the client area are moved to its border.
class VAK_API CViewTracker : public CVakTracker
{
public:
    /// `flags` is a sum of vak::ViewTrackerFlag. The document rectangle is the normalised client rectangle in
    /// whole document pixels, cut to the document. Throws as CVakTracker does.
    CViewTracker(CVakCoord& coord, unsigned int flags, CRect const& clientRect, unsigned int style);
    /// Has the window painted anew where the tracker was.
    ~CViewTracker() override;

    /// In document pixels, right and bottom exclusive.
    CRect GetDocRect() const { return m_docRect; }
    /// Returns 0 when the rectangle leaves a document that it must stay inside. It is shown as a drag of the
    /// top-left corner would leave it: one below the minimum size in the window moves up and left by what is
    /// missing, and keeps its size. The present rectangle stays exactly where it is.
    int SetDocRect(CRect const& docRect);

    /// One press of an arrow key is one document pixel. `bounds` in document pixels; null for the document
    /// where the rectangle must stay inside it. RectChanged follows also where the zoom shows no difference.
    int OnKey(unsigned int key, CRect const* bounds) override;
    /// Lets the user drag what lies under the client point; sides may pass each other, and the result is
    /// normalised.
    int Track(CPoint const& point);
    using CVakTracker::Track;
    void Draw(CDC* dc);
    /// Has the window painted anew where the tracker is.
    void Close();

protected:
    using CVakTracker::OnKey;
    /// A rectangle that must stay inside the document is put on whole document pixels too: a move is shifted
    /// back, a resize stops at the edge, one with a constraint stops where the ratio still fits.
    void AdjustRect(int hit, CRect& rect) override;
    /// Computes the document rectangle from the one in the window.
    void OnRectChanged(CRect const& rect) override;
    /// A move keeps the size in document pixels.
    void OnTrackerCallback(int event, CRect const& rect) override;

    // The order is part of the interface.
    /// A drag that Track began is running.
    unsigned int m_dragState = 0;
    /// OnRectChanged leaves the document rectangle alone.
    unsigned int m_suspended = 0;
    int m_hit = vak::HitNothing;
    unsigned int m_flags;
    CVakCoord* m_coord;
    CRect m_startDocRect;
    CRect m_docRect;

private:
    /// What decides where a document rectangle appears.
    struct Place
    {
        float zoom = 0;
        CPoint page;
        CPoint scroll;
        bool operator==(const Place&) const = default;
    };

    Place CurrentPlace() const;
    void Follow() const override;
    CRect ToClient(CRect docRect) const;
    CRect ToDocument(CRect const& rect, bool clamp) const;
    CRect Kept(CRect const& docRect) const;
    void Show(CRect const& docRect, CRect const& clientRect);
    /// Has the window painted anew where the tracker is, and was.
    void InvalidateWith(CRect const& former) const;
    bool IsBounded() const { return (m_flags & vak::InsideDocument) && !m_isOrphan; }
    CRect Document() const;

    mutable Place m_place;
};
