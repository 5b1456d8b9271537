#include "tests/support/Print.h"
#include "view/NearestInt.h"
#include "view/detail/Saturated.h"
#include "view/detail/TrackerAdjust.h"
#include "view/detail/TrackerShape.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

using namespace vak::detail;

namespace {

constexpr int kMin = std::numeric_limits<int>::min(), kMax = std::numeric_limits<int>::max();
const CRect kRect(10, 20, 110, 80), kInverted(110, 80, 10, 20), kDocument(0, 0, 300, 200);

TrackerShape Shape(int style, const CRect& rect = kRect, const CRect& reach = CRect())
{
    return {rect, static_cast<unsigned int>(style), 9, 9, 0xFF, reach};
}

CRect RectOf(const int* sides)
{
    return {sides[0], sides[1], sides[2], sides[3]};
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

TEST(TrackerAdjustTest, RatioKeepsTheOppositeCornerAndTheMinimumTheSideOfTheDrag)
{
    const CRect rect(100, 100, 140, 130);
    EXPECT_EQ(WithRatio(0, rect, 0.5f, 0), CRect(100, 110, 140, 130));
    EXPECT_EQ(WithRatio(0, rect, 2.0f, 0), CRect(125, 100, 140, 130));
    EXPECT_EQ(WithRatio(1, rect, 0.5f, 2), CRect(100, 100, 160, 130));
    EXPECT_EQ(WithRatio(2, rect, 0.0625f, 1), CRect(100, 100, 140, 102)) << "2.5 goes down";
    EXPECT_EQ(WithRatio(2, rect, 1e-30f, 2), CRect(100, 100, kMax, 130));
    // Handle, whether it may invert, what is dragged and what comes of it.
    const int rows[][10] = {{0, 1, 95, 90, 100, 100, 82, 82, 100, 100},
                            {0, 1, 105, 60, 100, 100, 118, 60, 100, 100},
                            {0, 0, 125, 60, 100, 100, 82, 60, 100, 100},
                            {2, 1, 100, 100, 100, 90, 100, 100, 118, 82},
                            {5, 1, 100, 100, 101, 101, 100, 100, 118, 101},
                            {6, 0, 0, 9, 5, 9, 0, 9, 5, 27},
                            {8, 1, 0, 0, 1, 1, 0, 0, 1, 1},
                            {1, 1, kMax, 0, kMax, 30, kMax, 0, kMax, 30}};
    for (const auto& row : rows) {
        CRect large = RectOf(row + 2);
        EXPECT_EQ(KeepMinimum(row[0], large, CSize(18, 18), row[1] != 0), row[0] != 8);
        EXPECT_EQ(large, RectOf(row + 6)) << row[0];
    }
}

TEST(TrackerAdjustTest, KeysMoveOrResizeByOnePixelAndUndoWhatBoundsWouldShift)
{
    const CRect rect(0, 10, 40, 30);
    const CRect bounds(0, 0, 40, 60);
    const CSize left(-1, 0), down(0, 1);
    const HeldKeys none, shift{true, false}, control{false, true};
    const float half = 0.5f;
    EXPECT_EQ(Nudged(rect, left, none, nullptr, &bounds), rect);
    EXPECT_EQ(Nudged(rect, down, none, &half, &bounds), CRect(0, 11, 40, 31));
    EXPECT_EQ(Nudged(rect, left, shift, nullptr, nullptr), CRect(-1, 10, 40, 30));
    EXPECT_EQ(Nudged(rect, left, control, nullptr, nullptr), CRect(0, 10, 39, 30));
    EXPECT_EQ(Nudged(rect, left, shift, nullptr, &bounds), rect) << "it fills the width";
    EXPECT_EQ(Nudged(rect, left + left, control, &half, nullptr), CRect(0, 10, 38, 29));
    EXPECT_EQ(Nudged(rect, down, control, &half, nullptr), CRect(0, 10, 42, 31));
    EXPECT_EQ(ShiftedInside(CRect(60, 5, -10, 1), bounds), CRect(70, 5, 0, 1)) << "too wide, and inverted";
}

TEST(TrackerAdjustTest, WhateverIsDraggedEndsInsideTheDocumentOnceAndForAll)
{
    // Handle, what is dragged at half as high as wide, and what comes of it.
    const int rows[][9] = {{2, 100, 20, 340, 140, 100, 20, 300, 120},
                           {2, 40, 100, 260, 210, 40, 100, 240, 200},
                           {1, 50, -30, 330, 110, 50, 0, 270, 110},
                           {3, -60, 50, 100, 130, 0, 50, 100, 100},
                           {0, 330, 130, 250, 90, 300, 115, 250, 90}};
    const float half = 0.5f;
    for (const auto& row : rows)
        EXPECT_EQ(ResizedInside(row[0], RectOf(row + 1), kDocument, &half), RectOf(row + 5)) << row[0];

    std::mt19937 random{4};
    const auto number = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
    const auto side = [&] { return number(0, 50) ? number(-100, 400) : number(kMin, kMax); };
    for (int round = 0; round < 20000; ++round) {
        const int hit = number(0, 3);
        const float ratio = static_cast<float>(number(1, 400)) / 100.0f;
        const CRect start(number(0, 300), number(0, 200), number(0, 300), number(0, 200));
        const CRect anywhere(side(), side(), side(), side());
        const CRect dragged = Dragged(BeginDrag(hit, start, CPoint(9, 9)), start, anywhere.TopLeft());
        const CRect kept = ResizedInside(hit, WithRatio(hit, dragged, ratio, 0), kDocument, &ratio);
        SCOPED_TRACE(testing::PrintToString(dragged) + testing::PrintToString(kept));
        ASSERT_TRUE(LiesInside(kept, kDocument));
        ASSERT_TRUE(hit == 0 || hit == 3 ? kept.right == start.right : kept.left == start.left);
        ASSERT_TRUE(hit < 2 ? kept.bottom == start.bottom : kept.top == start.top);
        ASSERT_EQ(ResizedInside(hit, kept, kDocument, &ratio), kept);
        ASSERT_TRUE(HeightOf(kept) == NearestInt(static_cast<float>(kept.Width()) * ratio) ||
                    WidthOf(kept) == NearestInt(static_cast<float>(kept.Height()) / ratio));
        ASSERT_TRUE(LiesInside(ResizedInside(round % 8, anywhere, kDocument, nullptr), kDocument));
        const CRect moved = ShiftedInside(Offset(start, anywhere.left, anywhere.top), kDocument);
        ASSERT_TRUE(LiesInside(moved, kDocument) && moved.Size() == start.Size());
        CRect large = anywhere;
        KeepMinimum(hit, large, CSize(18, 18), true);
        ASSERT_FALSE(KeepMinimum(hit, large, CSize(18, 18), true) && LiesInside(anywhere, kDocument));
        Nudged(anywhere, CSize(1, 0), HeldKeys{true, round % 2 == 0}, &ratio, &kDocument);
    }
}
