#include "view/detail/ViewGeometry.h"
#include "tests/support/Print.h"
#include "view/NearestInt.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

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

} // namespace

TEST(NearestIntTest, HalvesGoDownAndWhatNoIntegerHoldsSaturates)
{
    const float values[] = {2.5f,       -2.5f,         0.5f,          -0.5f, 2.51f,     -2.4f,
                            8388607.5f, 2147483648.0f, 2147483520.0f, -3e9f, kInfinity, kNaN};
    const int nearest[] = {2, -3, 0, -1, 3, -2, 8388607, kMax, 2147483520, kMin, kMax, 0};
    for (std::size_t i = 0; i < std::size(values); ++i)
        EXPECT_EQ(NearestInt(values[i]), nearest[i]) << values[i];
}

TEST(ZoomLadderTest, SnapsStepsAndClamps)
{
    const float zooms[] = {0.9f, 0.75f, 1.5f, 12, 1 / 32.0f, kThird, 0.03f, 33, 27.9f};
    const float snapped[] = {1, 2 / 3.0f, 2, 16, 1 / 32.0f, kThird, 0.03f, 33, 24};
    for (std::size_t i = 0; i < std::size(zooms); ++i)
        EXPECT_EQ(SnappedZoom(zooms[i]), snapped[i]) << zooms[i];
    const float from[] = {1, 0.9995f, 0.99f, 1.5f, 32, 31.9995f, kThird, 1 / 32.0f, 0.02f, 40};
    const float in[] = {2, 2, 1, 2, 32, 31.9995f, 0.5f, 1 / 16.0f, 1 / 16.0f, 1 / 16.0f};
    const float out[] = {2 / 3.0f, 2 / 3.0f, 2 / 3.0f, 1, 24, 24, 0.25f, 1 / 32.0f, 0.02f, 40};
    for (std::size_t i = 0; i < std::size(from); ++i) {
        EXPECT_EQ(SteppedZoom(from[i], true), in[i]) << from[i];
        EXPECT_EQ(SteppedZoom(from[i], false), out[i]) << from[i];
    }
    const float wanted[] = {100, 0.001f, -1, 0.9f, kInfinity, -kInfinity, kNaN};
    const float clamped[] = {32, 1 / 32.0f, 1 / 32.0f, 0.9f, 32, 1 / 32.0f, 1 / 32.0f};
    for (std::size_t i = 0; i < std::size(wanted); ++i)
        EXPECT_EQ(ViewGeometry().ClampedZoom(wanted[i], false), clamped[i]) << wanted[i];
    EXPECT_EQ(ViewGeometry().ClampedZoom(0.9f, true), 1);
}

TEST(ViewGeometryTest, DerivesPageDiscreteAndVisibleParts)
{
    struct
    {
        ViewGeometry view;
        CRect page;
        CPoint discreteScroll;
        CSize discretePage;
        CRect visible;
    } const rows[] = {
        {View({100, 50}, {300, 200}, 1), {100, 75, 200, 125}, {0, 0}, {100, 50}, {0, 0, 99, 49}},
        {View({100, 100}, {50, 50}, 3, {100, 7}), {0, 0, 50, 50}, {99, 6}, {51, 51}, {33, 2, 51, 20}},
        {View({400, 100}, {101, 101}, 0.5f, {31, 0}), {0, 25, 101, 75}, {31, 0}, {101, 50}, {62, 0, 264, 99}},
        // As wide as the client area counts as filled; an odd rest goes to the right.
        {View({100, 9}, {100, 20}, 1), {0, 5, 100, 14}, {0, 0}, {100, 9}, {0, 0, 99, 8}},
        // The page times the zoom happens to be the document's size: taken for all of it.
        {View({200, 200}, {100, 100}, 2), {0, 0, 100, 100}, {0, 0}, {100, 100}, {0, 0, 199, 199}},
        {View({100, 100}, {0, 0}, 2, {40, 0}), {0, 0, 0, 0}, {40, 0}, {0, 0}, {20, 0, 20, 0}},
        {View({0, 50}, {300, 200}, 2), {150, 50, 150, 150}, {0, 0}, {0, 100}, {0, 0, 0, 49}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.view.page, row.page);
        EXPECT_EQ(row.view.discreteScroll, row.discreteScroll) << row.view.zoom;
        EXPECT_EQ(row.view.discretePage, row.discretePage);
        EXPECT_EQ(row.view.visible, row.visible);
    }
    EXPECT_EQ(rows[1].view.VisibleDocument(), CRect(33, 2, 52, 21));
    EXPECT_EQ(rows[1].view.VisiblePage(), CRect(99, 6, 156, 63));
    EXPECT_EQ(rows[1].view.VisibleCenter(), CPoint(42, 11));
    EXPECT_EQ(rows[6].view.VisibleDocument(), CRect()) << "no pixels";
}

TEST(ViewGeometryTest, ConvertsPointsAndRectangles)
{
    const ViewGeometry view = View({200, 50}, {100, 100}, 2, {30, 0});
    EXPECT_EQ(view.ToPage(CPoint(20, 3), true), CPoint(11, 7));
    EXPECT_EQ(view.ToPage(CRect(25, 4, 20, 2), false), CRect(20, 8, 10, 4)) << "the orientation stays";
    EXPECT_EQ(view.ToViewport(CPoint(20, 3), true), CPoint(41, 7));
    const ViewGeometry small = View({100, 50}, {300, 200}, 1);
    EXPECT_TRUE(small.IsOnPage(small.ToPage(CRect(100, 50, 0, 0), false)));
    EXPECT_FALSE(small.IsOnPage(small.ToPage(CRect(0, 0, 101, 50), false)));

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
    EXPECT_EQ(view.Filling(CRect(10, 20, 110, 60)).zoom, 3) << "the width";
    EXPECT_EQ(view.Filling(CRect(10, 20, 110, 60)).center, CPoint(60, 40));
    EXPECT_EQ(view.Filling(CRect(0, 0, 40, 40)).zoom, 5) << "the height, when both are equal";
    EXPECT_EQ(view.ClampedZoom(view.Filling(CRect(7, 7, 7, 7)).zoom, false), 32);
    EXPECT_EQ(view.ScrollAround(CPoint(60, 40), CPoint(150, 100)), CPoint(-30, -20));
    EXPECT_EQ(View({9, 9}, {9, 9}, 1.5f).ScrollAround(CPoint(1, 9), CPoint(2, 2)), CPoint(0, 11))
        << "cut off";
    EXPECT_EQ(view.ClampedScroll(CPoint(-5, 7)), CPoint(0, 0));
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
        ASSERT_EQ(view.VisibleDocument() & document, view.VisibleDocument());
        ASSERT_EQ(view.ClampedScroll(view.scroll), view.scroll);
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
        const float zoom = std::array{1.0f / 32, 1.0f, 32.0f, 0.0f}[static_cast<std::size_t>(i % 4)];
        const int size = std::max(0, numbers[i / 4 % 3 + 2]), client = numbers[i / 12 % 3 + 2];
        const int at = numbers[i / 36 % 5], other = numbers[i / 180];
        const ViewGeometry view = View({size, size}, {client, client}, zoom, {at, other});
        EXPECT_GE(view.ClampedScroll(view.ScrollAround({at, at}, {client, other})).x, 0);
        CPoint pixel(at, other);
        view.ToDocument(pixel);
        EXPECT_TRUE(pixel.x >= 0 && pixel.x <= std::max(0, size - 1)) << zoom << ' ' << size;
        view.ToDocument(view.ToPage(CRect(at, kMin, kMax, other), true), {true, true, at > 0});
        EXPECT_GT(view.ClampedZoom(view.Filling(view.VisiblePage()).zoom, true), 0);
    }
    EXPECT_EQ(View({kMax, kMax}, {9, 9}, 32).zoomed, CSize(kMax, kMax));
    EXPECT_EQ(View({9, 9}, {9, 9}, 32, {9, 0}).ToPage(CPoint(kMax, kMin), false), CPoint(kMax - 9, kMin));
}
