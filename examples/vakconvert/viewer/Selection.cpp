#include "examples/vakconvert/viewer/Selection.h"

#include <algorithm>

namespace {

/// `length` * `by` / `per`, rounded, between 1 and `most`.
int Scaled(int length, int by, int per, int most)
{
    const LONGLONG scaled = (2 * LONGLONG{length} * by + per) / (2 * per);
    return static_cast<int>(std::clamp<LONGLONG>(scaled, 1, std::max(most, 1)));
}

} // namespace

CRect WithAspect(const CRect& selection, const Aspect& aspect, CSize document)
{
    if (aspect.IsFree())
        return selection;
    const int roomX = document.cx - selection.left;
    const int roomY = document.cy - selection.top;
    const int width =
        std::min({selection.Width(), roomX, Scaled(roomY, aspect.width, aspect.height, selection.Width())});
    const int height = Scaled(width, aspect.height, aspect.width, roomY);
    return {selection.TopLeft(), CSize(std::max(width, 1), height)};
}

CString TextOf(const ViewStatus& status)
{
    CString text;
    text.Format(L"%g %%    %d x %d", static_cast<int>(1000 * status.zoom + 0.5f) / 10.0,
                static_cast<int>(status.document.cx), static_cast<int>(status.document.cy));
    if (status.cursor)
        text.AppendFormat(L"    at %d, %d", static_cast<int>(status.cursor->x),
                          static_cast<int>(status.cursor->y));
    const CRect& part = status.selection;
    if (!part.IsRectEmpty())
        text.AppendFormat(L"    selected: %d, %d to %d, %d (%d x %d)", static_cast<int>(part.left),
                          static_cast<int>(part.top), static_cast<int>(part.right),
                          static_cast<int>(part.bottom), part.Width(), part.Height());
    if (!status.aspect->IsFree())
        text.AppendFormat(L"    %s", status.aspect->name);
    if (part.IsRectEmpty())
        text += L"    (drag to select; right button: menu)";
    return text;
}
