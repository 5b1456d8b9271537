#include "view/detail/ZoomLadder.h"

#include <cmath>

namespace vak::detail {

namespace {

constexpr int kLastRung = static_cast<int>(kZoomLadder.size()) - 1;

float Rung(int index)
{
    return kZoomLadder[static_cast<std::size_t>(index)];
}

} // namespace

int ZoomInterval(float zoom)
{
    for (int i = 0; i < kLastRung; ++i) {
        if (Rung(i) <= zoom && zoom <= Rung(i + 1))
            return i;
    }
    return -1;
}

float SnappedZoom(float zoom)
{
    const int interval = ZoomInterval(zoom);
    if (interval < 0)
        return zoom;
    const float below = Rung(interval);
    const float above = Rung(interval + 1);
    return above - zoom > zoom - below ? below : above;
}

float SteppedZoom(float zoom, bool in)
{
    // A zoom this near to a rung is on it: what was computed may miss it by a rounding error.
    constexpr float kOnRung = 0.001f;
    const int interval = ZoomInterval(zoom);
    if (!in)
        return interval < 0 ? zoom : Rung(interval);
    if (interval < 0)
        return Rung(1);
    const int next = std::fabs(zoom - Rung(interval + 1)) > kOnRung ? interval + 1 : interval + 2;
    return next > kLastRung ? zoom : Rung(next);
}

} // namespace vak::detail
