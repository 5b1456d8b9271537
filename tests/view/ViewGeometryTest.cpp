#include "view/detail/ViewGeometry.h"
#include "tests/support/Print.h"
#include "view/NearestInt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

using vak::detail::MovedInside;
using vak::detail::SnappedZoom;
using vak::detail::SteppedZoom;
using vak::detail::ToDocumentRule;
using vak::detail::ViewGeometry;

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

/// Views as users have them, the scroll position clamped.
class RandomViews
{
public:
    int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    CPoint Point(int low, int high) { return {Number(low, high), Number(low, high)}; }
    ViewGeometry Next()
    {
        const auto rung = static_cast<std::size_t>(Number(0, 18));
        const float zoom = Number(0, 1) ? vak::detail::kZoomLadder[rung]
                                        : static_cast<float>(std::exp2(Number(-500, 500) / 100.0));
        ViewGeometry view = View(Point(1, 3000), Point(0, 1500), zoom);
        view.scroll = view.ClampedScroll(Point(0, 20000));
        view.Derive();
        return view;
    }

private:
    std::mt19937 m_random{20};
};

} // namespace

TEST(NearestIntTest, HalvesGoDownAndWhatNoIntegerHoldsSaturates)
{
    const std::pair<float, int> rows[] = {{2.5f, 2},
                                          {-2.5f, -3},
                                          {0.5f, 0},
                                          {-0.5f, -1},
                                          {2.51f, 3},
                                          {-2.4f, -2},
                                          {8388607.5f, 8388607},
                                          {2147483648.0f, kMax},
                                          {2147483520.0f, 2147483520},
                                          {-3e9f, kMin},
                                          {kInfinity, kMax},
                                          {-kInfinity, kMin},
                                          {kNaN, 0}};
    for (const auto& [value, nearest] : rows)
        EXPECT_EQ(NearestInt(value), nearest) << value;
}

TEST(ZoomLadderTest, SnapsStepsAndClamps)
{
    const float snapped[][2] = {
        {0.9f, 1},        {0.75f, 2.0f / 3}, {1.5f, 2}, {12, 16}, {1.0f / 32, 1.0f / 32},
        {kThird, kThird}, {0.03f, 0.03f},    {33, 33},  {28, 32}, {27.9f, 24}};
    for (const auto& row : snapped)
        EXPECT_EQ(SnappedZoom(row[0]), row[1]) << row[0];
    // The zoom, a step in, a step out.
    const float steps[][3] = {{1, 2, 2.0f / 3},
                              {0.9995f, 2, 2.0f / 3},
                              {0.99f, 1, 2.0f / 3},
                              {1.0005f, 2, 1},
                              {1.5f, 2, 1},
                              {0.9f, 1, 2.0f / 3},
                              {32, 32, 24},
                              {31.9995f, 31.9995f, 24},
                              {kThird, 0.5f, 0.25f},
                              {1.0f / 32, 1.0f / 16, 1.0f / 32},
                              {0.02f, 1.0f / 16, 0.02f},
                              {40, 1.0f / 16, 40}};
    for (const auto& row : steps) {
        EXPECT_EQ(SteppedZoom(row[0], true), row[1]) << row[0];
        EXPECT_EQ(SteppedZoom(row[0], false), row[2]) << row[0];
    }
    const float clamped[][2] = {{100, 32},       {0.001f, 1.0f / 32},     {-1, 1.0f / 32},  {0.9f, 0.9f},
                                {kInfinity, 32}, {-kInfinity, 1.0f / 32}, {kNaN, 1.0f / 32}};
    for (const auto& row : clamped)
        EXPECT_EQ(ViewGeometry().ClampedZoom(row[0], false), row[1]) << row[0];
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
        EXPECT_EQ(row.view.discreteScroll, row.discreteScroll) << row.page.left;
        EXPECT_EQ(row.view.discretePage, row.discretePage);
        EXPECT_EQ(row.view.visible, row.visible);
    }
    EXPECT_EQ(rows[1].view.VisibleDocument(), CRect(33, 2, 52, 21));
    EXPECT_EQ(rows[1].view.VisiblePage(), CRect(99, 6, 156, 63));
    EXPECT_EQ(rows[1].view.VisibleCenter(), CPoint(42, 11));
    EXPECT_EQ(rows[6].view.VisibleDocument(), CRect()) << "no pixels";
    EXPECT_EQ(View({0, 0}, {300, 200}, 1).VisibleDocument(), CRect());
}

TEST(ViewGeometryTest, ConvertsPointsAndRectangles)
{
    const ViewGeometry view = View({200, 50}, {100, 100}, 2, {30, 0});
    EXPECT_EQ(view.ToPage(CPoint(20, 3), true), CPoint(11, 7));
    EXPECT_EQ(view.ToPage(CPoint(20, 3), false), CPoint(10, 6));
    EXPECT_EQ(view.ToViewport(CPoint(20, 3), true), CPoint(41, 7));
    EXPECT_EQ(view.ToPage(CRect(25, 4, 20, 2), false), CRect(20, 8, 10, 4)) << "the orientation stays";
    const ViewGeometry small = View({100, 50}, {300, 200}, 1);
    EXPECT_TRUE(small.IsOnPage(small.ToPage(CRect(100, 50, 0, 0), false)));
    EXPECT_FALSE(small.IsOnPage(small.ToPage(CRect(0, 0, 101, 50), false)));

    struct
    {
        const ViewGeometry& view;
        CPoint client;
        CPoint document;
        bool isInside;
    } const points[] = {{view, {11, 7}, {20, 3}, true},    {view, {-31, 120}, {0, 49}, false},
                        {view, {-31, 0}, {0, 0}, true},    {view, {-32, 0}, {0, 0}, false},
                        {small, {99, 80}, {0, 5}, false},  {small, {199, 124}, {99, 49}, true},
                        {small, {200, 80}, {99, 5}, false}};
    for (const auto& row : points) {
        CPoint point = row.client;
        EXPECT_EQ(row.view.ToDocument(point), row.isInside) << row.client.x;
        EXPECT_EQ(point, row.document);
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
    EXPECT_EQ(MovedInside(CRect(-5, 3, 5, 60), CRect(0, 0, 100, 50)), CRect(0, -7, 10, 50));
    EXPECT_EQ(MovedInside(CRect(90, 10, 120, 50), CRect(0, 0, 100, 50)), CRect(70, 10, 100, 50));
}

TEST(ViewGeometryTest, StaysInRangeMonotonousAndReversible)
{
    RandomViews random;
    for (int round = 0; round < 20000; ++round) {
        const ViewGeometry view = random.Next();
        const CRect document(CPoint(), view.document);
        const CRect client(CPoint(), view.client);
        SCOPED_TRACE(::testing::Message() << view.zoom << ' ' << view.document.cx << ' ' << view.client.cx);
        ASSERT_EQ(view.page | client, client | CRect());
        ASSERT_EQ(view.VisibleDocument() & document, view.VisibleDocument());
        ASSERT_EQ(view.ClampedScroll(view.scroll), view.scroll);
        ASSERT_EQ(view.VisibleDocument(),
                  View(view.document, view.client, view.zoom, view.scroll).VisibleDocument());
        ASSERT_LE(view.Discrete(view.scroll).x, view.scroll.x);
        ASSERT_GE(view.Discrete(view.page.Size()).cy + 1, view.page.Height());
        for (const float rung : vak::detail::kZoomLadder)
            ASSERT_GE(std::fabs(rung - view.zoom), std::fabs(SnappedZoom(view.zoom) - view.zoom));

        const CPoint mouse = random.Point(-10, 1500);
        CPoint pixel = mouse;
        const bool isInside = view.ToDocument(pixel);
        ASSERT_TRUE(document.PtInRect(pixel));
        ASSERT_TRUE(!view.page.PtInRect(mouse) || (isInside && view.VisibleDocument().PtInRect(pixel)));
        CPoint right = mouse + CPoint(1, 1);
        view.ToDocument(right);
        ASSERT_TRUE(right.x >= pixel.x && right.y >= pixel.y);

        const CRect area(random.Point(0, 3000), random.Point(0, 3000));
        if (view.zoom < 1)
            continue;
        CPoint again = view.ToPage(pixel, true);
        ASSERT_TRUE(view.ToDocument(again));
        ASSERT_EQ(again, pixel);
        ASSERT_EQ(view.ToDocument(view.ToPage(area, false), {}), area);
    }
}

TEST(ViewGeometryTest, HasResultsForTheWorstInput)
{
    const int numbers[] = {kMin, -1, 0, 1, kMax};
    for (const float zoom : {1.0f / 32, 1.0f, 32.0f, 0.0f}) {
        for (const int size : {0, 1, kMax}) {
            for (const int client : {0, 1, kMax}) {
                for (const int at : numbers) {
                    const ViewGeometry view = View({size, size}, {client, client}, zoom, {at, at});
                    const CPoint wanted = view.ClampedScroll(view.ScrollAround({at, at}, {client, at}));
                    EXPECT_GE(wanted.x, 0);
                    CPoint pixel(at, kMax);
                    view.ToDocument(pixel);
                    EXPECT_TRUE(pixel.x >= 0 && pixel.x <= std::max(0, size - 1)) << zoom << ' ' << size;
                    view.ToDocument(view.ToPage(CRect(at, kMin, kMax, at), true), {true, true, at > 0});
                    view.ClampedZoom(view.Filling(view.VisiblePage()).zoom, true);
                    view.ClampedZoom(view.FittingZoom(view.client), true);
                    EXPECT_EQ(view.VisibleDocument() & CRect(CPoint(), view.document),
                              view.VisibleDocument());
                }
            }
        }
    }
    EXPECT_EQ(View({kMax, kMax}, {9, 9}, 32).zoomed, CSize(kMax, kMax));
    EXPECT_EQ(View({9, 9}, {9, 9}, 32, {9, 0}).ToPage(CPoint(kMax, kMin), false), CPoint(kMax - 9, kMin));
}
