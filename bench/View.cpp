// Rows "view": what a window asks of its geometry with every mouse move, for the record: conversions, the
// state after a scroll or zoom, hit tests of a tracker.

#include "view/detail/TrackerShape.h"
#include "view/detail/ViewGeometry.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

using vak::detail::ViewGeometry;

ViewGeometry LargeImage()
{
    ViewGeometry view;
    view.client = CSize(1600, 1000);
    view.document = CSize(10000, 10000);
    view.zoom = 1.5f;
    view.zoomed = view.ZoomedDocument();
    view.scroll = CPoint(4321, 1234);
    view.Derive();
    return view;
}

const std::vector<CPoint>& Points()
{
    static const std::vector<CPoint> points = [] {
        std::mt19937 random(1);
        std::vector<CPoint> made;
        for (int i = 0; i < 4096; ++i)
            made.emplace_back(static_cast<int>(random() % 1600), static_cast<int>(random() % 1000));
        return made;
    }();
    return points;
}

/// `use(view, point)` for every point.
template <class Use>
void EachPoint(benchmark::State& state, Use use)
{
    ViewGeometry view = LargeImage();
    for (auto _ : state) {
        for (const CPoint& point : Points())
            benchmark::DoNotOptimize(use(view, point));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(Points().size()));
}

int SumOf(const CRect& rect)
{
    return rect.left ^ rect.top ^ rect.right ^ rect.bottom;
}

void PointToPage(benchmark::State& state)
{
    EachPoint(state, [](const ViewGeometry& view, CPoint point) {
        const CPoint page = view.ToPage(point, true);
        return page.x ^ page.y;
    });
}

void PointToDocument(benchmark::State& state)
{
    EachPoint(state, [](const ViewGeometry& view, CPoint point) {
        const bool isInside = view.ToDocument(point);
        return point.x ^ point.y ^ static_cast<int>(isInside);
    });
}

void RectToPage(benchmark::State& state)
{
    EachPoint(state, [](const ViewGeometry& view, CPoint point) {
        return SumOf(view.ToPage(CRect(point, CSize(100, 80)), false));
    });
}

void RectToDocument(benchmark::State& state)
{
    EachPoint(state, [](const ViewGeometry& view, CPoint point) {
        return SumOf(view.ToDocument(CRect(point, CSize(100, 80)), {true, false, true}));
    });
}

void ScrollTo(benchmark::State& state)
{
    EachPoint(state, [](ViewGeometry& view, CPoint point) {
        view.scroll = view.ClampedScroll(point);
        view.Derive();
        return SumOf(view.visible);
    });
}

void ZoomAround(benchmark::State& state)
{
    EachPoint(state, [](ViewGeometry& view, CPoint point) {
        const CPoint anchor(view.client.cx / 2, view.client.cy / 2);
        view.zoom = view.ClampedZoom(vak::detail::SteppedZoom(view.zoom, (point.x & 1) != 0), true);
        view.zoomed = view.ZoomedDocument();
        view.scroll = view.ClampedScroll(view.ScrollAround(point, anchor));
        view.Derive();
        return SumOf(view.visible);
    });
}

void HitTest(benchmark::State& state, const CRect& rect)
{
    vak::detail::TrackerShape shape;
    shape.rect = rect;
    shape.style = vak::ResizeOutside | vak::SolidOutline;
    shape.reach = CRect(0, 0, 1600, 1000);
    EachPoint(state,
              [&](const ViewGeometry&, CPoint point) { return vak::detail::HitHandles(shape, point); });
}

BENCHMARK(PointToPage)->Name("view/point_to_page/vak");
BENCHMARK(PointToDocument)->Name("view/point_to_document/vak");
BENCHMARK(RectToPage)->Name("view/rect_to_page/vak");
BENCHMARK(RectToDocument)->Name("view/rect_to_document/vak");
BENCHMARK(ScrollTo)->Name("view/scroll/vak");
BENCHMARK(ZoomAround)->Name("view/zoom/vak");
BENCHMARK_CAPTURE(HitTest, inside, CRect(0, 0, 1600, 1000))->Name("view/hit_test/inside/vak");
BENCHMARK_CAPTURE(HitTest, outside, CRect(2000, 2000, 2100, 2100))->Name("view/hit_test/outside/vak");

} // namespace
