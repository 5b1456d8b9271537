#include "view/detail/ViewGeometry.h"
#include "tests/support/Print.h"
#include "view/NearestInt.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

using namespace vak::detail;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();
constexpr float kThird = 1.0f / 3;

ViewGeometry View(CSize document, CSize client, float zoom, CPoint scroll = CPoint())
{
    ViewGeometry view;
    view.document = document;
    view.client = client;
    view.zoom = zoom;
    view.zoomed = view.ZoomedDocument();
    view.scroll = scroll;
    view.Derive();
    return view;
}

template <class Function, class Result = std::invoke_result_t<Function, float>>
void ExpectEach(Function function, const std::vector<float>& values, const std::vector<Result>& results)
{
    for (std::size_t i = 0; i < results.size(); ++i)
        EXPECT_EQ(function(values.at(i)), results[i]) << values[i];
}

} // namespace

TEST(NearestIntTest, HalvesGoDownAndWhatNoIntegerHoldsSaturates)
{
    ExpectEach(NearestInt, {2.5f, -2.5f, 0.5f, -0.5f, 2.51f, -2.4f, 8388607.5f},
               {2, -3, 0, -1, 3, -2, 8388607});
    ExpectEach(NearestInt, {2147483648.0f, 2147483520.0f, -3e9f, kInfinity, kNaN},
               {kMax, 2147483520, kMin, kMax, 0});
}

TEST(ZoomLadderTest, SnapsStepsAndClamps)
{
    constexpr float kLow = 1 / 32.0f, kSecond = 1 / 16.0f, kTwoThirds = 2 / 3.0f;
    const std::vector<float> from = {1, 0.9995f, 0.99f, 1.5f, 32, 31.9995f, kThird, kLow, 0.02f, 40};
    ExpectEach(SnappedZoom, {0.9f, 0.75f, 1.5f, 12, kLow, kThird, 0.03f, 33, 27.9f},
               {1, kTwoThirds, 2, 16, kLow, kThird, 0.03f, 33, 24});
    ExpectEach([](float zoom) { return SteppedZoom(zoom, true); }, from,
               {2, 2, 1, 2, 32, 31.9995f, 0.5f, kSecond, kSecond, kSecond});
    ExpectEach([](float zoom) { return SteppedZoom(zoom, false); }, from,
               {kTwoThirds, kTwoThirds, kTwoThirds, 1, 24, 24, 0.25f, kLow, 0.02f, 40});
    ExpectEach([](float zoom) { return ViewGeometry().ClampedZoom(zoom, false); },
               {100, 0.001f, -1, 0.9f, kInfinity, -kInfinity, kNaN}, {32, kLow, kLow, 0.9f, 32, kLow, kLow});
    EXPECT_EQ(ViewGeometry().ClampedZoom(0.9f, true), 1);
}

TEST(ViewGeometryTest, DerivesPageDiscreteAndVisibleParts)
{
    const auto expect = [](const ViewGeometry& view, CRect page, CPoint discreteScroll, CSize discretePage,
                           CRect seen) {
        EXPECT_EQ(view.page, page);
        EXPECT_EQ(view.discreteScroll, discreteScroll) << view.zoom;
        EXPECT_EQ(view.discretePage, discretePage);
        EXPECT_EQ(view.visible, seen);
    };
    expect(View({100, 50}, {300, 200}, 1), {100, 75, 200, 125}, {0, 0}, {100, 50}, {0, 0, 99, 49});
    expect(View({400, 100}, {101, 101}, 0.5f, {31, 0}), {0, 25, 101, 75}, {31, 0}, {101, 50},
           {62, 0, 264, 99});
    // As wide as the client area counts as filled; an odd rest goes to the right.
    expect(View({100, 9}, {100, 20}, 1), {0, 5, 100, 14}, {0, 0}, {100, 9}, {0, 0, 99, 8});
    // The page times the zoom happens to be the document's size: taken for all of it.
    expect(View({200, 200}, {100, 100}, 2), {0, 0, 100, 100}, {0, 0}, {100, 100}, {0, 0, 199, 199});
    expect(View({100, 100}, {0, 0}, 2, {40, 0}), {0, 0, 0, 0}, {40, 0}, {0, 0}, {20, 0, 20, 0});
    expect(View({0, 50}, {300, 200}, 2), {150, 50, 150, 150}, {0, 0}, {0, 100}, {0, 0, 0, 49});
    const ViewGeometry view = View({100, 100}, {50, 50}, 3, {100, 7});
    expect(view, {0, 0, 50, 50}, {99, 6}, {51, 51}, {33, 2, 51, 20});
    EXPECT_EQ(view.VisibleDocument(), CRect(33, 2, 52, 21));
    EXPECT_EQ(view.VisiblePage(), CRect(99, 6, 156, 63));
    EXPECT_EQ(View({100, 9}, {100, 20}, 1).VisibleCenter(), CPoint(50, 4));
    EXPECT_EQ(View({0, 50}, {300, 200}, 2).VisibleDocument(), CRect()) << "no pixels";
}

TEST(ViewGeometryTest, ConvertsPointsAndRectangles)
{
    const ViewGeometry view = View({200, 50}, {100, 100}, 2, {30, 0});
    EXPECT_EQ(view.ToPage(CPoint(20, 3), true), CPoint(11, 7));
    EXPECT_EQ(view.ToPage(CRect(25, 4, 20, 2), false), CRect(20, 8, 10, 4)) << "the orientation stays";
    EXPECT_EQ(view.ToViewport(CPoint(20, 3), true), CPoint(41, 7));
    const ViewGeometry small = View({100, 50}, {300, 200}, 1);
    EXPECT_TRUE(small.IsOnPage(small.ToPage(CRect(100, 50, 0, 0), false)));
    EXPECT_FALSE(small.IsOnPage(small.ToPage(CRect(101, 50, 0, 0), false)));

    const CPoint clients[] = {{11, 7}, {-31, 120}, {-31, 0}, {-32, 0}, {99, 80}, {199, 124}, {200, 80}};
    const CPoint pixels[] = {{20, 3}, {0, 49}, {0, 0}, {0, 0}, {0, 5}, {99, 49}, {99, 5}};
    for (std::size_t i = 0; i < std::size(clients); ++i) {
        CPoint point = clients[i];
        EXPECT_EQ((i < 4 ? view : small).ToDocument(point), i == 0 || i == 2 || i == 5) << i;
        EXPECT_EQ(point, pixels[i]);
    }
    EXPECT_EQ(view.ToDocument(CRect(10, 5, 21, 8), {}), CRect(20, 2, 25, 4));
    EXPECT_EQ(view.ToDocument(CRect(10, 5, 21, 8), {false, true, false}), CRect(20, 2, 26, 4));
    EXPECT_EQ(view.ToDocument(CRect(-101, -10, 500, 110), {}), CRect(-36, -5, 265, 55));
    EXPECT_EQ(view.ToDocument(CRect(-101, -10, 500, 110), {true, false, true}), CRect(0, 0, 200, 50));
    EXPECT_EQ(view.ToDocument(CRect(-101, -10, 500, 110), {false, true, true}), CRect(0, 0, 199, 49));
}

TEST(ViewGeometryTest, FindsZoomAndScrollPositionForWhatIsToBeSeen)
{
    const ViewGeometry view = View({400, 100}, {300, 200}, 2);
    EXPECT_EQ(view.FittingZoom(CSize(200, 100)), 0.5f);
    EXPECT_EQ(View({0, 50}, {300, 200}, 1).FittingZoom(CSize(0, 200)), kInfinity);
    const ZoomTarget wide = view.Filling(CRect(10, 20, 110, 60));
    EXPECT_TRUE(wide.zoom == 3 && wide.center == CPoint(60, 40)) << wide.zoom;
    EXPECT_EQ(view.Filling(CRect(0, 0, 40, 40)).zoom, 5) << "the height, when both are equal";
    EXPECT_EQ(view.ClampedZoom(view.Filling(CRect(7, 7, 7, 7)).zoom, false), 32);
    EXPECT_EQ(view.ScrollAround(CPoint(60, 40), CPoint(150, 100)), CPoint(-30, -20));
    // In floats, 101 and 128 are just missed, and cut.
    EXPECT_EQ(View({9, 9}, {9, 9}, 3).ScrollAround(CPoint(50, 60), CPoint(49, 52)), CPoint(100, 127));
    EXPECT_EQ(view.ClampedScroll(CPoint(kMax, kMin)), CPoint(500, 0));
}

TEST(ViewGeometryTest, StaysInRangeMonotonousAndReversible)
{
    std::mt19937 random(20);
    const auto number = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    const auto point = [&](int low, int high) { return CPoint(number(low, high), number(low, high)); };
    for (int round = 0; round < 20000; ++round) {
        const float any = std::exp2(static_cast<float>(number(-500, 500)) / 100);
        const float zoom = round % 2 ? SnappedZoom(any) : any;
        ViewGeometry view = View(point(1, 3000), point(0, 1500), zoom);
        view.scroll = view.ClampedScroll(point(0, 20000));
        view.Derive();
        const CRect document(CPoint(), view.document);
        SCOPED_TRACE(::testing::Message() << zoom << ' ' << view.document.cx << ' ' << view.client.cx);
        ASSERT_TRUE((view.VisibleDocument() & document) == view.VisibleDocument() &&
                    view.ClampedScroll(view.scroll) == view.scroll);
        for (const float rung : kZoomLadder)
            ASSERT_GE(std::fabs(rung - zoom), std::fabs(SnappedZoom(zoom) - zoom));

        const CPoint mouse = point(-10, 1500);
        CPoint pixel = mouse, next = mouse + CPoint(1, 1);
        const bool isInside = view.ToDocument(pixel);
        ASSERT_TRUE(document.PtInRect(pixel));
        ASSERT_TRUE(!view.page.PtInRect(mouse) || (isInside && view.VisibleDocument().PtInRect(pixel)));
        view.ToDocument(next);
        ASSERT_TRUE(next.x >= pixel.x && next.y >= pixel.y);

        if (zoom < 1)
            continue;
        const CRect area(point(0, 3000), point(0, 3000));
        ASSERT_EQ(view.ToDocument(view.ToPage(area, false), {}), area);
        CPoint again = view.ToPage(pixel, true);
        ASSERT_TRUE(view.ToDocument(again) && again == pixel);
    }
}

TEST(ViewGeometryTest, HasResultsForTheWorstInput)
{
    const int numbers[] = {kMin, -1, 0, 1, kMax};
    for (int i = 0; i < 4 * 3 * 3 * 5 * 5; ++i) {
        const int size = numbers[i / 4 % 3 + 2], client = numbers[i / 12 % 3 + 2];
        CPoint point(numbers[i / 36 % 5], numbers[i / 180]);
        const ViewGeometry view = View({size, size}, {client, client}, (i % 4 - 1) * kThird * 32, point);
        EXPECT_GE(view.ClampedScroll(view.ScrollAround(point, {client, size})).x, 0);
        view.ToDocument(view.ToPage(CRect(point, CPoint(kMin, kMax)), true), {true, true, point.x > 0});
        EXPECT_GT(view.ClampedZoom(view.Filling(view.VisiblePage()).zoom, true), 0);
        view.ToDocument(point);
        EXPECT_TRUE(point.x >= 0 && point.x <= std::max(0, size - 1)) << size;
    }
    EXPECT_EQ(View({kMax, kMax}, {9, 9}, 32).zoomed, CSize(kMax, kMax));
    EXPECT_EQ(View({9, 9}, {9, 9}, 32, {9, 0}).ToPage(CPoint(kMax, kMin), false), CPoint(kMax - 9, kMin));
}
