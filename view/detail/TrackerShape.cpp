#include "view/detail/TrackerShape.h"

#include "view/detail/Saturated.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace vak::detail {

namespace {

constexpr RectSide kLeft = &tagRECT::left;
constexpr RectSide kTop = &tagRECT::top;
constexpr RectSide kRight = &tagRECT::right;
constexpr RectSide kBottom = &tagRECT::bottom;

constexpr std::array<TrackerHandle, kHandleCount> kHandles = {{
    {kLeft, kTop, false, false, 0, 0, HitTopRight, HitBottomLeft},
    {kRight, kTop, false, false, -1, 0, HitTopLeft, HitBottomRight},
    {kRight, kBottom, false, false, -1, -1, HitBottomLeft, HitTopRight},
    {kLeft, kBottom, false, false, 0, -1, HitBottomRight, HitTopLeft},
    {nullptr, kTop, true, false, 0, 0, HitTop, HitBottom},
    {kRight, nullptr, false, true, -1, 0, HitLeft, HitRight},
    {nullptr, kBottom, true, false, 0, -1, HitBottom, HitTop},
    {kLeft, nullptr, false, true, 0, 0, HitRight, HitLeft},
}};

constexpr unsigned int kCorners = 0x0F;
constexpr unsigned int kTopAndBottom = 0x50;
constexpr unsigned int kLeftAndRight = 0xA0;

bool HasOutline(unsigned int style)
{
    return (style & (SolidOutline | DottedOutline)) != 0;
}

/// One axis of the handles' frame, cut to the reach.
void CutToReach(LONG& low, LONG& high, WideInt reachLow, WideInt reachHigh, int boxSize)
{
    const WideInt tolerance = boxSize / 2;
    const WideInt cutLow = low < reachLow - tolerance ? reachLow : low;
    const WideInt cutHigh = high > reachHigh + tolerance ? reachHigh : high;
    if (cutHigh - cutLow < 3 * WideInt(boxSize))
        return;
    low = Saturated(cutLow);
    high = Saturated(cutHigh);
}

/// The rectangle along whose sides the handles stand.
CRect HandleFrame(const TrackerShape& shape)
{
    CRect frame = Inflated(Normalized(shape.rect), HasOutline(shape.style) ? 1 : 0);
    if (shape.style & ResizeOutside)
        frame = Inflated(frame, WideInt(shape.handleSize) - 1);
    else if (shape.style & HatchedInside)
        frame = Inflated(frame, shape.handleSize / 2);
    if (shape.reach.IsRectEmpty())
        return frame;
    CutToReach(frame.left, frame.right, shape.reach.left, shape.reach.right, shape.boxSize);
    CutToReach(frame.top, frame.bottom, shape.reach.top, shape.reach.bottom, shape.boxSize);
    return frame;
}

TrackerShape Unlimited(TrackerShape shape)
{
    shape.reach = CRect();
    return shape;
}

WideInt BoxOrigin(WideInt side, int boxes, int boxSize, bool isCentred, WideInt extent)
{
    return side + WideInt(boxes) * boxSize + (isCentred ? (extent - boxSize) / 2 : 0);
}

} // namespace

const TrackerHandle& HandleAt(int hit)
{
    return kHandles[static_cast<std::size_t>(hit)];
}

int HandleSizeOn(const CRect& rect, unsigned int style, int handleSize)
{
    if (style & ResizeOutside)
        return handleSize;
    const WideInt room = std::max<WideInt>(4, std::min(std::abs(WidthOf(rect)), std::abs(HeightOf(rect))));
    return 2 * WideInt(handleSize) <= room ? handleSize : Saturated(room / 2);
}

unsigned int HandleMaskOf(const CRect& rect, int boxSize, bool isConstrained)
{
    // The handle of a side alone cannot keep a ratio.
    if (isConstrained)
        return kCorners;
    const WideInt corners = 3 * WideInt(boxSize);
    unsigned int mask = kCorners;
    if (std::abs(WidthOf(rect)) - corners > 4)
        mask |= kTopAndBottom;
    if (std::abs(HeightOf(rect)) - corners > 4)
        mask |= kLeftAndRight;
    return mask;
}

CRect OuterRect(const TrackerShape& shape)
{
    WideInt around = 0;
    if (shape.style & (HatchedBorder | ResizeOutside))
        around += WideInt(shape.handleSize) - 1;
    if (shape.style & HatchedInside)
        around += shape.handleSize / 2;
    if (HasOutline(shape.style))
        around += 1;
    return Inflated(Normalized(shape.rect), around);
}

CRect HandleBox(const TrackerShape& shape, int hit)
{
    const CRect frame = HandleFrame(shape);
    const TrackerHandle& handle = HandleAt(NormalizedHit(shape.rect, hit));
    const WideInt x = BoxOrigin(frame.*(handle.x ? handle.x : kLeft), handle.boxX, shape.boxSize,
                                handle.isCentredX, WidthOf(frame));
    const WideInt y = BoxOrigin(frame.*(handle.y ? handle.y : kTop), handle.boxY, shape.boxSize,
                                handle.isCentredY, HeightOf(frame));
    return {Saturated(x), Saturated(y), Saturated(x + shape.boxSize), Saturated(y + shape.boxSize)};
}

int HitHandles(const TrackerShape& shape, CPoint point)
{
    if (!OuterRect(shape).PtInRect(point))
        return HitNothing;
    if (!shape.reach.IsRectEmpty() && !shape.reach.PtInRect(point))
        return HitHandles(Unlimited(shape), point);
    for (int hit = 0; hit < kHandleCount; ++hit)
        if ((shape.mask >> hit & 1) && HandleBox(shape, hit).PtInRect(point))
            return hit;
    if (shape.style & HatchedBorder)
        return HitMiddle;
    return Inflated(Normalized(shape.rect), 1).PtInRect(point) ? HitMiddle : HitNothing;
}

int NormalizedHit(const CRect& rect, int hit)
{
    if (!IsHandle(hit))
        return hit;
    if (WidthOf(rect) < 0)
        hit = HandleAt(hit).invertedX;
    if (HeightOf(rect) < 0)
        hit = HandleAt(hit).invertedY;
    return hit;
}

} // namespace vak::detail
