#include "framework/ui/detail/TrackControls.h"

#include <commctrl.h>

#include <algorithm>

namespace vak::detail {

int SliderPosition(HWND slider)
{
    return static_cast<int>(SendMessage(slider, TBM_GETPOS, 0, 0));
}

void SetSliderPosition(HWND slider, int position)
{
    SendMessage(slider, TBM_SETPOS, TRUE, position);
}

void SetSliderRange(HWND slider, int lowest, int highest)
{
    SendMessage(slider, TBM_SETRANGEMIN, FALSE, lowest);
    SendMessage(slider, TBM_SETRANGEMAX, TRUE, highest);
}

bool SpinPosition(HWND spin, int& position)
{
    BOOL failed = FALSE;
    position = static_cast<int>(SendMessage(spin, UDM_GETPOS32, 0, reinterpret_cast<LPARAM>(&failed)));
    // Without a buddy that shows numbers there is nothing that could be wrong, but it is reported.
    return !failed || !SpinBuddy(spin) || !(GetWindowLongPtr(spin, GWL_STYLE) & UDS_SETBUDDYINT);
}

void SetSpinPosition(HWND spin, int position)
{
    SendMessage(spin, UDM_SETPOS32, 0, position);
}

void SetSpinRange(HWND spin, int lowest, int highest)
{
    SendMessage(spin, UDM_SETRANGE32, static_cast<WPARAM>(lowest), highest);
}

std::pair<int, int> SpinRange(HWND spin)
{
    int first = 0;
    int last = 0;
    SendMessage(spin, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&first), reinterpret_cast<LPARAM>(&last));
    return std::minmax({first, last});
}

HWND SpinBuddy(HWND spin)
{
    return reinterpret_cast<HWND>(SendMessage(spin, UDM_GETBUDDY, 0, 0));
}

} // namespace vak::detail
