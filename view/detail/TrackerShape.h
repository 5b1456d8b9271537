#pragma once

/// What a rectangle tracker looks like and where it is hit, without a window: plain values and pure functions
/// of them. Defined for every rectangle; coordinates that no integer holds become the nearest one that does.

#include "framework/base/Geometry.h"

#include "view/TrackerCodes.h"

namespace vak::detail {

constexpr int kHandleCount = 8;
/// The library's own edge length of handles, in pixels.
constexpr int kDefaultHandleSize = 9;

/// A side of a rectangle; null for none.
using RectSide = LONG tagRECT::*;

/// What a handle does and where it stands.
struct TrackerHandle
{
    /// The sides that dragging it moves; a handle of a side moves one of them alone.
    RectSide x;
    RectSide y;
    /// It stands in the middle of the axis.
    bool isCentredX;
    bool isCentredY;
    /// Where its box begins, in box sizes from the side.
    int boxX;
    int boxY;
    /// What it becomes in a rectangle that is inverted on the axis.
    int invertedX;
    int invertedY;
};

/// `hit` from 0 to 7.
VAK_INTERNAL_API const TrackerHandle& HandleAt(int hit);

inline bool IsHandle(int hit)
{
    return hit >= 0 && hit < kHandleCount;
}

struct TrackerShape
{
    CRect rect;
    /// A sum of vak::TrackerStyle.
    unsigned int style = 0;
    /// As set by the host: the outer rectangle and the place of the handles follow it.
    int handleSize = kDefaultHandleSize;
    /// The edge length that handles have on this rectangle.
    int boxSize = kDefaultHandleSize;
    /// The handles there are.
    unsigned int mask = 0xFF;
    /// Where handles stay reachable; empty for no limit.
    CRect reach;
};

/// The edge length of handles on a rectangle: it leaves room for two in both directions, but is at least 2;
/// outside of the rectangle it is the one that is set.
VAK_INTERNAL_API int HandleSizeOn(const CRect& rect, unsigned int style, int handleSize);

/// Bit n stands for handle n; `boxSize` is the edge length they have.
VAK_INTERNAL_API unsigned int HandleMaskOf(const CRect& rect, int boxSize, bool isConstrained);

/// The normalised rectangle with everything that is drawn around it.
VAK_INTERNAL_API CRect OuterRect(const TrackerShape& shape);

/// Where handle `hit` is. Where the rectangle leaves the reach by more than half a handle, its handles are
/// those of the part that is within, if that has room for three.
VAK_INTERNAL_API CRect HandleBox(const TrackerShape& shape, int hit);

/// What is hit where all the handles of the mask are shown. A point beyond the reach meets them where they
/// would be without it.
VAK_INTERNAL_API int HitHandles(const TrackerShape& shape, CPoint point);

/// The handle that `hit` appears as.
VAK_INTERNAL_API int NormalizedHit(const CRect& rect, int hit);

} // namespace vak::detail
