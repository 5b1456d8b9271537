#pragma once

/// The codes of rectangle trackers (CVakTracker): handles, styles and events.

namespace vak {

/// What lies under a point. The corner and side codes are also the numbers of the handles, and bit n of a
/// handle mask stands for handle n.
enum TrackerHit : int
{
    HitNothing = -1,
    HitTopLeft = 0,
    HitTopRight = 1,
    HitBottomRight = 2,
    HitBottomLeft = 3,
    HitTop = 4,
    HitRight = 5,
    HitBottom = 6,
    HitLeft = 7,
    HitMiddle = 8
};

enum TrackerStyle : unsigned int
{
    SolidOutline = 1,
    DottedOutline = 2,
    HatchedBorder = 4,
    ResizeInside = 8,
    ResizeOutside = 16,
    HatchedInside = 32
};

enum TrackerOption : unsigned int
{
    /// Dragging draws no outline; the rectangle and its events follow the mouse all the same.
    NoDragOutline = 1
};

/// What CVakTracker::OnTrackerCallback is told.
enum TrackerEvent : int
{
    RectChanged = 1,
    TrackingBegins = 2,
    TrackingEnds = 3,
    BeforeOutline = 4,
    AfterOutline = 5
};

enum ViewTrackerFlag : unsigned int
{
    /// The rectangle stays inside the document.
    InsideDocument = 1
};

} // namespace vak
