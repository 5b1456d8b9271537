#pragma once

/// What dragging and the keys make of a rectangle, without a window: pure functions, defined for every input.
/// Coordinates that no integer holds become the nearest one that does. `hit` is a vak::TrackerHit; the sides
/// that its handle moves go by name, also in a rectangle that is inverted.

#include "framework/base/Geometry.h"

#include "view/TrackerCodes.h"

namespace vak::detail {

/// The rectangle with the ratio of height to width: its height follows from the width (`mode` 1), its width
/// from the height (2), or the height where the ratio is below 1, else the width (0). The corner opposite of
/// `hit` stays; for other hits than corners everything does. Computed in 32-bit floats.
VAK_INTERNAL_API CRect WithRatio(int hit, const CRect& rect, float ratio, int mode);

/// Puts what handle `hit` moves at least the minimum away from the opposite side: on the side of it where the
/// drag is if `allowInvert`, else, and from the opposite side itself, on the handle's own. Returns whether
/// anything was too small.
VAK_INTERNAL_API bool KeepMinimum(int hit, CRect& rect, CSize minimum, bool allowInvert);

/// A drag in client coordinates.
struct DragStep
{
    int hit = HitNothing;
    /// From the sides that are dragged to the mouse.
    CSize grip;
    /// A move keeps it.
    CSize size;
};

VAK_INTERNAL_API DragStep BeginDrag(int hit, const CRect& rect, CPoint mouse);
/// The rectangle with the dragged sides where the mouse takes them.
VAK_INTERNAL_API CRect Dragged(const DragStep& step, CRect rect, CPoint mouse);

/// Which of the keys are held that a drag and the arrow keys heed.
struct HeldKeys
{
    bool shift = false;
    bool control = false;
};

/// The sides of a drag that the keys held hold back: with Shift left and right stay, with Ctrl top and
/// bottom.
VAK_INTERNAL_API CRect HeldBack(CRect rect, const CRect& start, HeldKeys keys);

/// One press of an arrow key, `step` 1 or -1 on one of the axes. `ratio` is null without a constraint,
/// `bounds` for none. A resize that they would shift does not happen.
VAK_INTERNAL_API CRect Nudged(const CRect& rect, CSize step, HeldKeys keys, const float* ratio,
                              const CRect* bounds);

/// Shifted so that first its left, then its right side (top, then bottom) is not outside of the bounds; one
/// that is larger than they are ends with its right (bottom) side at them. Sides on the edge are inside.
VAK_INTERNAL_API CRect ShiftedInside(const CRect& rect, const CRect& bounds);

VAK_INTERNAL_API bool LiesInside(const CRect& rect, const CRect& bounds);

/// A resize by handle `hit` that stops at the bounds. With a ratio (null for none) the side that has room
/// gives the other one's length, so that the corner opposite of `hit` stays.
VAK_INTERNAL_API CRect ResizedInside(int hit, const CRect& rect, const CRect& bounds, const float* ratio);

/// `computed`, with the side of `exact` wherever `shown` lies where `shownExact` does: what is shown in the
/// same place is the same, also when several places are shown as one.
VAK_INTERNAL_API CRect WithExactSides(CRect computed, const CRect& shown, const CRect& shownExact,
                                      const CRect& exact);

} // namespace vak::detail
