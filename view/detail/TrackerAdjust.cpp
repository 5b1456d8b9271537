#include "view/detail/TrackerAdjust.h"

#include "view/NearestInt.h"
#include "view/detail/Saturated.h"
#include "view/detail/TrackerShape.h"
#include "view/detail/ViewGeometry.h"

#include <algorithm>
#include <cstdlib>

namespace vak::detail {

namespace {

constexpr RectSide kSides[] = {&tagRECT::left, &tagRECT::top, &tagRECT::right, &tagRECT::bottom};

int Scaled(WideInt length, float ratio)
{
    return NearestInt(static_cast<float>(Saturated(length)) * ratio);
}

int Unscaled(WideInt length, float ratio)
{
    return NearestInt(Quotient(static_cast<float>(Saturated(length)), ratio));
}

/// Moves side `moved` of an axis at least `minimum` away from `fixed`; `isFar` for the right or bottom side.
bool KeepApart(LONG& moved, LONG fixed, int minimum, bool isFar, bool allowInvert)
{
    const WideInt extent = isFar ? WideInt(moved) - fixed : WideInt(fixed) - moved;
    if ((allowInvert ? std::abs(extent) : extent) >= minimum)
        return false;
    const bool isOnOwnSide = !allowInvert || extent >= 0;
    moved = Saturated(WideInt(fixed) + (isFar == isOnOwnSide ? minimum : -WideInt(minimum)));
    return true;
}

void MoveSides(LONG& low, LONG& high, int step, HeldKeys keys)
{
    if (keys.shift || !keys.control)
        low = Saturated(WideInt(low) + step);
    if (keys.control || !keys.shift)
        high = Saturated(WideInt(high) + step);
}

/// How far one axis is to be moved: first for side `low`, then for side `high`.
WideInt ShiftInto(WideInt low, WideInt high, WideInt first, WideInt last)
{
    WideInt shift = 0;
    for (const WideInt side : {low, high})
        shift += std::clamp(side + shift, first, std::max(first, last)) - (side + shift);
    return shift;
}

CRect CutTo(const CRect& rect, const CRect& bounds)
{
    return {std::max(bounds.left, std::min(rect.left, bounds.right)),
            std::max(bounds.top, std::min(rect.top, bounds.bottom)),
            std::max(bounds.left, std::min(rect.right, bounds.right)),
            std::max(bounds.top, std::min(rect.bottom, bounds.bottom))};
}

} // namespace

CRect WithRatio(int hit, const CRect& rect, float ratio, int mode)
{
    WideInt width = WidthOf(rect);
    WideInt height = HeightOf(rect);
    if (mode == 1 || (mode == 0 && ratio < 1.0f))
        height = Scaled(width, ratio);
    else
        width = Unscaled(height, ratio);
    CRect result = rect;
    if (hit == HitTopLeft || hit == HitTopRight)
        result.top = Saturated(rect.bottom - height);
    if (hit == HitBottomRight || hit == HitBottomLeft)
        result.bottom = Saturated(rect.top + height);
    if (hit == HitTopLeft || hit == HitBottomLeft)
        result.left = Saturated(rect.right - width);
    if (hit == HitTopRight || hit == HitBottomRight)
        result.right = Saturated(rect.left + width);
    return result;
}

bool KeepMinimum(int hit, CRect& rect, CSize minimum, bool allowInvert)
{
    if (!IsHandle(hit))
        return false;
    const TrackerHandle& handle = HandleAt(hit);
    bool isCorrected = false;
    if (handle.x == &tagRECT::left)
        isCorrected = KeepApart(rect.left, rect.right, minimum.cx, false, allowInvert);
    else if (handle.x)
        isCorrected = KeepApart(rect.right, rect.left, minimum.cx, true, allowInvert);
    if (handle.y == &tagRECT::top)
        isCorrected |= KeepApart(rect.top, rect.bottom, minimum.cy, false, allowInvert);
    else if (handle.y)
        isCorrected |= KeepApart(rect.bottom, rect.top, minimum.cy, true, allowInvert);
    return isCorrected;
}

DragStep BeginDrag(int hit, const CRect& rect, CPoint mouse)
{
    // A move drags the top-left corner, and the rest goes along.
    const TrackerHandle& handle = HandleAt(IsHandle(hit) ? hit : HitTopLeft);
    DragStep step{hit, CSize(), CSize(Saturated(WidthOf(rect)), Saturated(HeightOf(rect)))};
    if (handle.x)
        step.grip.cx = Saturated(WideInt(mouse.x) - rect.*handle.x);
    if (handle.y)
        step.grip.cy = Saturated(WideInt(mouse.y) - rect.*handle.y);
    return step;
}

CRect Dragged(const DragStep& step, CRect rect, CPoint mouse)
{
    const TrackerHandle& handle = HandleAt(IsHandle(step.hit) ? step.hit : HitTopLeft);
    if (handle.x)
        rect.*handle.x = Saturated(WideInt(mouse.x) - step.grip.cx);
    if (handle.y)
        rect.*handle.y = Saturated(WideInt(mouse.y) - step.grip.cy);
    if (step.hit == HitMiddle) {
        rect.right = Saturated(WideInt(rect.left) + step.size.cx);
        rect.bottom = Saturated(WideInt(rect.top) + step.size.cy);
    }
    return rect;
}

CRect HeldBack(CRect rect, const CRect& start, HeldKeys keys)
{
    if (keys.shift) {
        rect.left = start.left;
        rect.right = start.right;
    }
    if (keys.control) {
        rect.top = start.top;
        rect.bottom = start.bottom;
    }
    return rect;
}

CRect Nudged(const CRect& rect, CSize step, HeldKeys keys, const float* ratio, const CRect* bounds)
{
    const bool isResize = keys.shift || keys.control;
    CRect result = rect;
    if (step.cx != 0)
        MoveSides(result.left, result.right, step.cx, keys);
    else
        MoveSides(result.top, result.bottom, step.cy, keys);
    if (isResize && ratio && step.cx != 0)
        result.bottom = Saturated(WideInt(result.top) + Scaled(WidthOf(result), *ratio));
    else if (isResize && ratio)
        result.right = Saturated(WideInt(result.left) + Unscaled(HeightOf(result), *ratio));
    if (!bounds)
        return result;
    if (!isResize)
        return ShiftedInside(result, *bounds);
    return LiesInside(result, *bounds) ? result : rect;
}

CRect ShiftedInside(const CRect& rect, const CRect& bounds)
{
    return Offset(rect, ShiftInto(rect.left, rect.right, bounds.left, bounds.right),
                  ShiftInto(rect.top, rect.bottom, bounds.top, bounds.bottom));
}

bool LiesInside(const CRect& rect, const CRect& bounds)
{
    return CutTo(rect, bounds) == rect;
}

CRect ResizedInside(int hit, const CRect& rect, const CRect& bounds, const float* ratio)
{
    const CRect cut = CutTo(rect, bounds);
    if (cut == rect || !ratio)
        return cut;
    const CRect byWidth = WithRatio(hit, cut, *ratio, 1);
    if (LiesInside(byWidth, bounds))
        return byWidth;
    return CutTo(WithRatio(hit, cut, *ratio, 2), bounds);
}

CRect WithExactSides(CRect computed, const CRect& shown, const CRect& shownExact, const CRect& exact)
{
    for (const RectSide side : kSides)
        if (shown.*side == shownExact.*side)
            computed.*side = exact.*side;
    return computed;
}

} // namespace vak::detail
