#pragma once

#include "framework/base/Geometry.h"
#include "framework/base/String.h"

#include <optional>

/// A proportion of the sides that a selection may be held to; zeros leave it free.
struct Aspect
{
    const wchar_t* name;
    int width;
    int height;

    bool IsFree() const { return width == 0; }
    /// Height divided by width, as trackers take it.
    float Ratio() const { return IsFree() ? 1.0f : static_cast<float>(height) / static_cast<float>(width); }
};

inline constexpr Aspect kAspects[] = {
    {L"Free", 0, 0}, {L"1:1", 1, 1}, {L"4:3", 4, 3}, {L"3:2", 3, 2}, {L"16:9", 16, 9}, {L"3:4", 3, 4},
};

/// The selection with that aspect, at its place and as wide as it is, as far as the document has room for
/// that; at least one pixel wide and high. Right and bottom are exclusive.
CRect WithAspect(const CRect& selection, const Aspect& aspect, CSize document);

/// What the status line tells.
struct ViewStatus
{
    float zoom = 1.0f;
    CSize document;
    std::optional<CPoint> cursor; ///< the document pixel under the mouse
    CRect selection;              ///< empty: nothing is selected
    const Aspect* aspect = &kAspects[0];
};

CString TextOf(const ViewStatus& status);
