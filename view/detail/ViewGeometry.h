#pragma once

/// Where a raster document lies in a window that shows it at a zoom, without the window: plain values and
/// pure functions of them.
///
/// Computed in 32-bit floats throughout, in the order that is written; products and quotients of integers are
/// floats too. Every operation is defined for every input: results that no integer holds become the nearest
/// one that exists, and what is no number becomes 0.

#include "framework/base/Geometry.h"

#include "view/detail/ZoomLadder.h"

namespace vak::detail {

/// `a / b`, also where b is 0: infinity with the sign of a, or NaN for 0 / 0.
VAK_INTERNAL_API float Quotient(float a, float b);

/// How a rectangle of the client area becomes one of the document.
struct ToDocumentRule
{
    /// Sides may be the document's size; else its last pixel at most. For `clamp`.
    bool exclusiveEdge = false;
    /// Left and top round down, right and bottom up; else to the nearest.
    bool outward = false;
    /// Sides stay on the document.
    bool clamp = false;
};

/// A zoom, and the document point to bring to the middle of the client area at it.
struct ZoomTarget
{
    float zoom;
    CPoint center;
};

/// "Zoomed pixels" count from the document's top-left at the current zoom; an axis is filled where the client
/// area is not longer than the page.
struct VAK_INTERNAL_API ViewGeometry
{
    /// Computes what depends on the other fields: page, discreteScroll, discretePage and visible.
    void Derive();
    /// The document's size at the zoom.
    CSize ZoomedDocument() const;
    bool IsFilledX() const { return client.cx <= page.Width(); }
    bool IsFilledY() const { return client.cy <= page.Height(); }
    bool IsDocumentFitting() const { return zoomed.cx <= client.cx && zoomed.cy <= client.cy; }

    /// The zoom within the limits, snapped to the ladder before if `snap`; NaN gives the smallest.
    float ClampedZoom(float wanted, bool snap) const;
    /// The zoom at which the whole document fits into `room`; infinite for a document without pixels.
    float FittingZoom(CSize room) const;
    /// What fills the client area's side with the rectangle's longer one.
    ZoomTarget Filling(const CRect& documentRect) const;
    /// The middle of the visible part, in document pixels.
    CPoint VisibleCenter() const;
    /// The scroll position, not clamped, at which the document point lies under the client point `anchor`.
    CPoint ScrollAround(CPoint documentPoint, CPoint anchor) const;
    CPoint ScrolledBy(CSize delta) const;
    /// Within the scroll range; 0 on an axis on which everything is visible.
    CPoint ClampedScroll(CPoint wanted) const;

    /// Down to whole zoomed document pixels, on the axes that the document fills.
    CPoint Discrete(CPoint zoomedPoint) const;
    /// Up to whole zoomed document pixels, on the axes that the document fills.
    CSize Discrete(CSize zoomedSize) const;

    /// Document to viewport coordinates (client coordinates before the scroll position is subtracted): the
    /// middle of the zoomed pixel, or its top-left corner. Rectangles keep their orientation.
    CPoint ToViewport(CPoint point, bool center) const;
    CRect ToViewport(const CRect& rect, bool center) const;
    /// Document to client coordinates.
    CPoint ToPage(CPoint point, bool center) const;
    CRect ToPage(const CRect& rect, bool center) const;
    /// Whether the normalised rectangle adds nothing to the page.
    bool IsOnPage(CRect rect) const;
    /// Client coordinates to the document pixel there; false when it had to be clamped to the document.
    bool ToDocument(CPoint& point) const;
    CRect ToDocument(const CRect& rect, ToDocumentRule rule) const;

    /// The visible part in document pixels, normalised, right and bottom exclusive; empty without pixels.
    CRect VisibleDocument() const;
    /// The visible part in viewport coordinates.
    CRect VisiblePage() const;

    // The order is part of the interface of CVakCoord, which continues with these fields.
    CSize client;
    CSize discretePage;
    CPoint scroll;
    CPoint discreteScroll;
    CSize document;
    CSize zoomed;
    /// Inclusive document pixels.
    CRect visible;
    CRect page;
    float minZoom = kSmallestZoom;
    float maxZoom = kLargestZoom;
    float zoom = 1.0f;
};

} // namespace vak::detail
