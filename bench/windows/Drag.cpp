// A drag of 1,000 mouse moves in a real window, for the record: from the posted messages to the rectangle in
// document pixels, with and without the outline on the screen.

#include "framework/ui/Wnd.h"
#include "view/VakCoord.h"
#include "view/ViewTracker.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace {

constexpr int kMoves = 1000;
constexpr int kRounds = 20;

/// Milliseconds of one drag that goes around in the window and comes back.
double MillisecondsOf(CWnd& window, CVakTracker& tracker)
{
    const CPoint start = tracker.GetRect().CenterPoint();
    for (int i = 1; i <= kMoves; ++i) {
        const UINT message = i < kMoves ? WM_MOUSEMOVE : WM_LBUTTONUP;
        const int way = i < kMoves / 2 ? i : kMoves - i;
        PostMessage(window.GetSafeHwnd(), message, 0, MAKELPARAM(start.x + way % 200, start.y + way % 170));
    }
    const auto begin = std::chrono::steady_clock::now();
    tracker.Track(&window, start, TRUE, nullptr);
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

void Measure(const char* name, CWnd& window, CVakTracker& tracker)
{
    double best = MillisecondsOf(window, tracker);
    for (int round = 1; round < kRounds; ++round)
        best = std::min(best, MillisecondsOf(window, tracker));
    std::printf("view/drag/%s: %.2f ms, %.0f ns a move\n", name, best, best * 1e6 / kMoves);
}

} // namespace

int main()
{
    CWnd window;
    if (!window.CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP | WS_VISIBLE, CRect(50, 50, 850, 650),
                         nullptr, 0))
        return 1;
    CSize document(10000, 10000);
    CVakCoord coord(&window, document);
    coord.SetZoom(0.5f, FALSE);
    const CRect rect(200, 150, 500, 350);
    CVakTracker silent(rect, vak::ResizeInside, vak::NoDragOutline);
    CVakTracker plain(rect, vak::ResizeInside, 0);
    CViewTracker bound(coord, vak::InsideDocument, rect, vak::ResizeInside);
    Measure("without_outline", window, silent);
    Measure("with_outline", window, plain);
    Measure("in_a_document", window, bound);
    return 0;
}
