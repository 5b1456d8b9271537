#include "view/detail/TrackerShape.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <limits>

using vak::detail::HandleBox;
using vak::detail::HandleMaskOf;
using vak::detail::HandleSizeOn;
using vak::detail::HitHandles;
using vak::detail::NormalizedHit;
using vak::detail::OuterRect;
using vak::detail::TrackerShape;

namespace {

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();
constexpr unsigned int kCorners = 0x0F;

const CRect kRect(10, 20, 110, 80);

TrackerShape Shape(unsigned int style, const CRect& rect = kRect, const CRect& reach = CRect())
{
    TrackerShape shape;
    shape.rect = rect;
    shape.style = style;
    shape.reach = reach;
    return shape;
}

} // namespace

TEST(TrackerShapeTest, HandlesShrinkAndDisappearWhereThereIsNoRoom)
{
    const struct
    {
        CRect rect;
        unsigned int style;
        int size;
        unsigned int mask;
    } rows[] = {
        {CRect(0, 0, 100, 100), 8, 9, 0xFF},  {CRect(0, 0, 20, 20), 8, 9, kCorners},
        {CRect(0, 0, 18, 50), 8, 9, 0xAF},    {CRect(0, 0, 17, 50), 8, 8, 0xAF},
        {CRect(50, 17, 0, 0), 8, 8, 0x5F},    {CRect(0, 0, 31, 32), 8, 9, 0xAF},
        {CRect(0, 0, 32, 31), 8, 9, 0x5F},    {CRect(), 8, 2, kCorners},
        {CRect(0, 0, 5, 5), 16, 9, kCorners}, {CRect(kMin, kMin, kMax, kMax), 8, 9, 0xFF},
    };
    for (const auto& row : rows) {
        const int size = HandleSizeOn(row.rect, row.style, 9);
        EXPECT_EQ(size, row.size) << testing::PrintToString(row.rect);
        EXPECT_EQ(HandleMaskOf(row.rect, size, false), row.mask) << testing::PrintToString(row.rect);
        EXPECT_EQ(HandleMaskOf(row.rect, size, true), kCorners);
    }
}

TEST(TrackerShapeTest, HandlesStandAlongTheFrameThatTheStyleGives)
{
    const CRect boxes[] = {
        {10, 20, 19, 29}, {101, 20, 110, 29}, {101, 71, 110, 80}, {10, 71, 19, 80},
        {55, 20, 64, 29}, {101, 45, 110, 54}, {55, 71, 64, 80},   {10, 45, 19, 54},
    };
    const int inBoth[] = {2, 3, 0, 1, 6, 7, 4, 5};
    const CRect inverted(110, 80, 10, 20);
    for (int hit = 0; hit < 8; ++hit) {
        EXPECT_EQ(HandleBox(Shape(8), hit), boxes[hit]) << hit;
        EXPECT_EQ(HandleBox(Shape(8, inverted), inBoth[hit]), boxes[hit]) << hit;
        EXPECT_EQ(NormalizedHit(inverted, inBoth[hit]), hit);
    }
    EXPECT_EQ(NormalizedHit(CRect(110, 20, 10, 80), 3), 2) << "the axes invert one by one";
    EXPECT_EQ(NormalizedHit(inverted, 8), 8);
    EXPECT_EQ(NormalizedHit(inverted, -1), -1);
    EXPECT_EQ(HandleBox(Shape(16 | 1), 0), CRect(1, 11, 10, 20));
    EXPECT_EQ(HandleBox(Shape(32), 2), CRect(105, 75, 114, 84));
    EXPECT_EQ(HandleBox(Shape(16 | 32), 4), CRect(55, 12, 64, 21)) << "the outside counts alone";
    EXPECT_EQ(OuterRect(Shape(8)), kRect);
    EXPECT_EQ(OuterRect(Shape(2, inverted)), CRect(9, 19, 111, 81));
    EXPECT_EQ(OuterRect(Shape(4 | 16 | 32 | 1)), CRect(-3, 7, 123, 93));
    EXPECT_EQ(OuterRect(Shape(4, CRect(kMin, 0, kMax, 9))), CRect(kMin, -8, kMax, 17));
}

TEST(TrackerShapeTest, HitsTheFirstHandleBeforeTheMiddle)
{
    const struct
    {
        TrackerShape shape;
        CPoint point;
        int hit;
    } rows[] = {
        {Shape(8), {10, 20}, 0},
        {Shape(8), {18, 28}, 0},
        {Shape(8), {19, 28}, 8},
        {Shape(8), {60, 72}, 6},
        {Shape(8), {109, 79}, 2},
        {Shape(8), {110, 80}, -1},
        {Shape(1), {110, 40}, 8},
        {Shape(16), {5, 12}, 0},
        {Shape(16), {30, 15}, -1},
        {Shape(4), {5, 30}, 8},
        {Shape(4), {1, 30}, -1},
        {Shape(8, CRect(110, 80, 10, 20)), {10, 20}, 2},
        {Shape(8, CRect(10, 20, 20, 28)), {14, 24}, 0},
    };
    for (const auto& row : rows)
        EXPECT_EQ(HitHandles(row.shape, row.point), row.hit)
            << testing::PrintToString(row.point) << " in style " << row.shape.style;
    TrackerShape corners = Shape(8);
    corners.mask = kCorners;
    EXPECT_EQ(HitHandles(corners, CPoint(60, 72)), 8) << "a handle that is not shown";
}

TEST(TrackerShapeTest, HandlesStayWithinReachAsLongAsThereIsRoom)
{
    const CRect client(0, 0, 200, 100);
    const struct
    {
        CRect rect;
        unsigned int style;
        int hit;
        CRect box;
    } rows[] = {
        {CRect(-300, -50, 700, 500), 8, 0, CRect(0, 0, 9, 9)},
        {CRect(-300, -50, 700, 500), 8, 4, CRect(95, 0, 104, 9)},
        {CRect(-300, -50, 700, 500), 8, 2, CRect(191, 91, 200, 100)},
        {CRect(0, 0, 200, 100), 16, 0, CRect(0, 0, 9, 9)},
        {CRect(0, 0, 200, 100), 16, 5, CRect(191, 45, 200, 54)},
        {CRect(0, 0, 200, 100), 8 | 1, 0, CRect(-1, -1, 8, 8)},
        {CRect(-100, 10, 27, 60), 8, 0, CRect(0, 10, 9, 19)},
        {CRect(-100, 10, 26, 60), 8, 0, CRect(-100, 10, -91, 19)},
        {CRect(300, 10, 400, 60), 8, 0, CRect(300, 10, 309, 19)},
    };
    for (const auto& row : rows) {
        const TrackerShape shape = Shape(row.style, row.rect, client);
        EXPECT_EQ(HandleBox(shape, row.hit), row.box) << testing::PrintToString(row.rect);
        EXPECT_EQ(HitHandles(shape, row.box.TopLeft() + CSize(4, 4)), row.hit);
    }
}
