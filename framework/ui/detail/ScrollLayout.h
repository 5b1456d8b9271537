#pragma once

#include "framework/base/Geometry.h"

namespace vak::detail {

/// Which scroll bars a view needs, and what they leave of it, in pixels.
struct ScrollLayout
{
    bool isWide = false; ///< there is a bar to scroll sideways
    bool isHigh = false; ///< there is a bar to scroll up and down
    CSize client;
    CPoint last; ///< the furthest scroll position
};

/// `room` is the client area with the bars' places, `bars` how wide the upright bar is and how high the
/// other, `total` what the view shows. Each bar takes room that may make the other one needed.
inline ScrollLayout LayOutBars(CSize room, CSize bars, CSize total)
{
    ScrollLayout layout;
    layout.isHigh = total.cy > room.cy;
    layout.isWide = total.cx > room.cx - (layout.isHigh ? bars.cx : 0);
    layout.isHigh = total.cy > room.cy - (layout.isWide ? bars.cy : 0);
    layout.isWide = total.cx > room.cx - (layout.isHigh ? bars.cx : 0);
    const LONG width = room.cx - (layout.isHigh ? bars.cx : 0);
    const LONG height = room.cy - (layout.isWide ? bars.cy : 0);
    layout.client.SetSize(width > 0 ? width : 0, height > 0 ? height : 0);
    layout.last.SetPoint(layout.isWide ? total.cx - layout.client.cx : 0,
                         layout.isHigh ? total.cy - layout.client.cy : 0);
    return layout;
}

} // namespace vak::detail
