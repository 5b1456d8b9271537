#pragma once

#include "framework/ui/GdiObject.h"

namespace vak::detail {

/// What all trackers draw with, and the cursors over them. Windows only.
struct TrackerTools
{
    /// Throws CResourceException when a brush or a pen cannot be made.
    VAK_INTERNAL_API TrackerTools();

    /// Made by the first call that succeeds; for the thread of the windows.
    static TrackerTools& Shared();

    /// `hit` as it appears: a handle, or the middle.
    HCURSOR CursorAt(int hit) const;

    CBrush hatch;
    CPen dottedBlack;
    CPen dottedRed;
    CPen solidRed;
    /// In the order of the directions they show: \ / | - and all four.
    HCURSOR cursors[5];
};

} // namespace vak::detail
