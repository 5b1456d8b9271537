#include "view/detail/TrackerShape.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <limits>

using namespace vak::detail;

namespace {

constexpr int kMin = std::numeric_limits<int>::min(), kMax = std::numeric_limits<int>::max();
const CRect kRect(10, 20, 110, 80);
const CRect kInverted(110, 80, 10, 20);

TrackerShape Shape(int style, const CRect& rect = kRect, const CRect& reach = CRect())
{
    return {rect, static_cast<unsigned int>(style), 9, 9, 0xFF, reach};
}

} // namespace

TEST(TrackerShapeTest, HandlesShrinkAndDisappearWhereThereIsNoRoom)
{
    // Right and bottom of a rectangle at the origin, style, size and mask.
    const int rows[][5] = {{100, 100, 8, 9, 0xFF}, {20, 20, 8, 9, 0x0F}, {17, 50, 8, 8, 0xAF},
                           {-50, -17, 8, 8, 0x5F}, {31, 32, 8, 9, 0xAF}, {32, 31, 8, 9, 0x5F},
                           {0, 0, 8, 2, 0x0F},     {5, 5, 16, 9, 0x0F},  {kMin, kMax, 8, 9, 0xFF}};
    for (const auto& row : rows) {
        const CRect rect(0, 0, row[0], row[1]);
        EXPECT_EQ(HandleSizeOn(rect, static_cast<unsigned int>(row[2]), 9), row[3]) << row[0];
        EXPECT_EQ(HandleMaskOf(rect, row[3], false), static_cast<unsigned int>(row[4])) << row[0];
        EXPECT_EQ(HandleMaskOf(rect, row[3], true), 0x0Fu);
    }
}

TEST(TrackerShapeTest, HandlesStandAlongTheFrameThatTheStyleGives)
{
    const CPoint boxes[] = {{10, 20}, {101, 20}, {101, 71}, {10, 71},
                            {55, 20}, {101, 45}, {55, 71},  {10, 45}};
    const int turned[] = {2, 3, 0, 1, 6, 7, 4, 5};
    for (int hit = 0; hit < 8; ++hit) {
        EXPECT_EQ(HandleBox(Shape(8), hit), CRect(boxes[hit], CSize(9, 9))) << hit;
        EXPECT_EQ(HandleBox(Shape(8, kInverted), turned[hit]), CRect(boxes[hit], CSize(9, 9))) << hit;
        EXPECT_EQ(NormalizedHit(kInverted, turned[hit]), hit);
    }
    EXPECT_EQ(NormalizedHit(CRect(110, 20, 10, 80), 3), 2) << "the axes invert one by one";
    EXPECT_EQ(NormalizedHit(kInverted, 8) * NormalizedHit(kInverted, -1), -8);
    EXPECT_EQ(HandleBox(Shape(16 | 1), 0), CRect(1, 11, 10, 20));
    EXPECT_EQ(HandleBox(Shape(32), 2), CRect(105, 75, 114, 84));
    EXPECT_EQ(OuterRect(Shape(2, kInverted)), CRect(9, 19, 111, 81));
    EXPECT_EQ(OuterRect(Shape(4 | 16 | 32 | 1)), CRect(-3, 7, 123, 93));
    EXPECT_EQ(OuterRect(Shape(4, CRect(kMin, 0, kMax, 9))), CRect(kMin, -8, kMax, 17));
}

TEST(TrackerShapeTest, HitsTheFirstHandleBeforeTheMiddle)
{
    // Style, point and hit.
    const int rows[][4] = {{8, 10, 20, 0},   {8, 18, 28, 0},   {8, 19, 28, 8},  {8, 60, 72, 6},
                           {8, 109, 79, 2},  {8, 110, 80, -1}, {1, 110, 40, 8}, {16, 5, 12, 0},
                           {16, 30, 15, -1}, {4, 5, 30, 8},    {4, 1, 30, -1}};
    for (const auto& row : rows)
        EXPECT_EQ(HitHandles(Shape(row[0]), CPoint(row[1], row[2])), row[3]) << row[1] << ' ' << row[2];
    EXPECT_EQ(HitHandles(Shape(8, kInverted), CPoint(10, 20)), 2);
    EXPECT_EQ(HitHandles(Shape(8, CRect(10, 20, 20, 28)), CPoint(14, 24)), 0) << "all of them lie there";
}

TEST(TrackerShapeTest, HandlesStayWithinReachAsLongAsThereIsRoom)
{
    // Rectangle, style, handle, and where its box begins.
    const int rows[][8] = {{-300, -50, 700, 500, 8, 0, 0, 0},    {-300, -50, 700, 500, 8, 4, 95, 0},
                           {-300, -50, 700, 500, 8, 2, 191, 91}, {0, 0, 200, 100, 16, 5, 191, 45},
                           {0, 0, 200, 100, 8 | 1, 0, -1, -1},   {-100, 10, 27, 60, 8, 0, 0, 10},
                           {-100, 10, 26, 60, 8, 0, -100, 10},   {300, 10, 400, 60, 8, 0, 300, 10}};
    for (const auto& row : rows) {
        const CRect rect(row[0], row[1], row[2], row[3]);
        const TrackerShape shape = Shape(row[4], rect, CRect(0, 0, 200, 100));
        EXPECT_EQ(HandleBox(shape, row[5]).TopLeft(), CPoint(row[6], row[7])) << testing::PrintToString(rect);
        EXPECT_EQ(HitHandles(shape, CPoint(row[6] + 4, row[7] + 4)), row[5]);
        EXPECT_EQ(HitHandles(shape, rect.TopLeft() + CSize(1, 1)), 0);
    }
}
