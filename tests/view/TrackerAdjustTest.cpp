#include "view/detail/TrackerAdjust.h"
#include "tests/support/Print.h"
#include "view/NearestInt.h"
#include "view/detail/Saturated.h"
#include "view/detail/TrackerShape.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

using namespace vak::detail;

namespace {

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();
const CRect kDocument(0, 0, 300, 200);

/// Rectangles of any orientation in and around the document, now and then at the end of the integers.
class RandomRects
{
public:
    int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    int Coordinate() { return Number(0, 50) ? Number(-100, 400) : Number(kMin, kMax); }
    CRect Anywhere() { return {Coordinate(), Coordinate(), Coordinate(), Coordinate()}; }
    CRect Inside() { return {Number(0, 300), Number(0, 200), Number(0, 300), Number(0, 200)}; }
    float Ratio() { return static_cast<float>(Number(1, 400)) / 100.0f; }

private:
    std::mt19937 m_random{4};
};

/// The corner that stays while `hit` is dragged.
CPoint OppositeOf(int hit, const CRect& rect)
{
    return {hit == vak::HitTopLeft || hit == vak::HitBottomLeft ? rect.right : rect.left,
            hit == vak::HitTopLeft || hit == vak::HitTopRight ? rect.bottom : rect.top};
}

} // namespace

TEST(TrackerAdjustTest, RatioGivesTheOtherSideAndKeepsTheOppositeCorner)
{
    const CRect rect(100, 100, 140, 130);
    const struct
    {
        int hit;
        float ratio;
        int mode;
        CRect expected;
    } rows[] = {
        {0, 0.5f, 0, CRect(100, 110, 140, 130)},
        {0, 2.0f, 0, CRect(125, 100, 140, 130)},
        {1, 0.5f, 2, CRect(100, 100, 160, 130)},
        {2, 2.0f, 1, CRect(100, 100, 140, 180)},
        {3, 1.0f, 0, CRect(110, 100, 140, 130)},
        {2, 0.0625f, 1, CRect(100, 100, 140, 102)},
        {4, 0.5f, 0, rect},
        {2, 1e-30f, 2, CRect(100, 100, kMax, 130)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(WithRatio(row.hit, rect, row.ratio, row.mode), row.expected) << row.hit << ' ' << row.ratio;
}

TEST(TrackerAdjustTest, MinimumIsKeptOnTheSideOfTheDragOrElseOnTheHandlesOwn)
{
    const struct
    {
        int hit;
        bool allowInvert;
        CRect rect;
        CRect expected;
    } rows[] = {
        {0, true, CRect(95, 90, 100, 100), CRect(82, 82, 100, 100)},
        {0, true, CRect(105, 60, 100, 100), CRect(118, 60, 100, 100)},
        {0, false, CRect(105, 60, 100, 100), CRect(82, 60, 100, 100)},
        {2, true, CRect(100, 100, 100, 90), CRect(100, 100, 118, 82)},
        {2, false, CRect(100, 100, 40, 150), CRect(100, 100, 118, 150)},
        {5, true, CRect(100, 100, 101, 101), CRect(100, 100, 118, 101)},
        {6, false, CRect(0, 9, 5, 9), CRect(0, 9, 5, 27)},
        {1, true, CRect(kMax, 0, kMax, 30), CRect(kMax, 0, kMax, 30)},
        {8, true, CRect(0, 0, 1, 1), CRect(0, 0, 1, 1)},
    };
    for (const auto& row : rows) {
        CRect rect = row.rect;
        EXPECT_EQ(KeepMinimum(row.hit, rect, CSize(18, 18), row.allowInvert), row.hit != 8);
        EXPECT_EQ(rect, row.expected) << row.hit << testing::PrintToString(row.rect);
    }
    RandomRects random;
    for (int round = 0; round < 2000; ++round) {
        CRect rect = random.Inside();
        KeepMinimum(random.Number(0, 7), rect, CSize(18, 18), round % 2 == 0);
        CRect again = rect;
        const int corner = random.Number(0, 3);
        KeepMinimum(corner, again, CSize(18, 18), true);
        EXPECT_TRUE(std::abs(WidthOf(again)) >= 18 && std::abs(HeightOf(again)) >= 18);
        EXPECT_FALSE(KeepMinimum(corner, again, CSize(18, 18), true));
    }
}

TEST(TrackerAdjustTest, DragMovesTheSidesOfItsHandleByTheWayOfTheMouse)
{
    const CRect start(10, 20, 110, 80);
    const CRect expected[] = {{15, 13, 110, 80}, {10, 13, 115, 80}, {10, 20, 115, 73},
                              {15, 20, 110, 73}, {10, 13, 110, 80}, {10, 20, 115, 80},
                              {10, 20, 110, 73}, {15, 20, 110, 80}, {15, 13, 115, 73}};
    for (int hit = 0; hit <= 8; ++hit) {
        const DragStep step = BeginDrag(hit, start, CPoint(50, 50));
        EXPECT_EQ(Dragged(step, start, CPoint(55, 43)), expected[hit]) << hit;
        EXPECT_EQ(Dragged(step, start, CPoint(50, 50)), start);
    }
    EXPECT_EQ(HeldBack(expected[8], start, {true, false}), CRect(10, 13, 110, 73));
    EXPECT_EQ(HeldBack(expected[8], start, {false, true}), CRect(15, 20, 115, 80));
}

TEST(TrackerAdjustTest, KeysMoveOrResizeByOnePixelAndUndoWhatBoundsWouldShift)
{
    const CRect rect(0, 10, 40, 30);
    const CRect bounds(0, 0, 40, 60);
    const HeldKeys none;
    const HeldKeys shift{true, false};
    const HeldKeys control{false, true};
    const float ratio = 0.5f;
    const struct
    {
        CSize step;
        HeldKeys keys;
        const float* ratio;
        const CRect* bounds;
        CRect expected;
    } rows[] = {
        {{-1, 0}, none, nullptr, nullptr, CRect(-1, 10, 39, 30)},
        {{-1, 0}, none, nullptr, &bounds, rect},
        {{0, 1}, none, &ratio, &bounds, CRect(0, 11, 40, 31)},
        {{-1, 0}, shift, nullptr, nullptr, CRect(-1, 10, 40, 30)},
        {{-1, 0}, control, nullptr, nullptr, CRect(0, 10, 39, 30)},
        {{0, -1}, shift, nullptr, &bounds, CRect(0, 9, 40, 30)},
        {{-1, 0}, shift, nullptr, &bounds, rect},
        {{1, 0}, control, nullptr, &bounds, rect},
        {{-2, 0}, control, &ratio, nullptr, CRect(0, 10, 38, 29)},
        {{0, 1}, control, &ratio, nullptr, CRect(0, 10, 42, 31)},
        {{0, 1}, control, &ratio, &bounds, rect},
        {{1, 0}, {true, true}, nullptr, nullptr, CRect(1, 10, 41, 30)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Nudged(rect, row.step, row.keys, row.ratio, row.bounds), row.expected)
            << row.step.cx << ' ' << row.step.cy << row.keys.shift << row.keys.control;
    EXPECT_EQ(ShiftedInside(CRect(60, 5, -10, 1), bounds), CRect(40, 5, -30, 1)) << "too wide, and inverted";
}

TEST(TrackerAdjustTest, ResizeStopsAtTheDocumentAndARatioTakesTheSideThatHasRoom)
{
    const float half = 0.5f;
    const struct
    {
        int hit;
        CRect rect;
        const float* ratio;
        CRect expected;
    } rows[] = {
        {2, CRect(100, 100, 340, 250), nullptr, CRect(100, 100, 300, 200)},
        {7, CRect(-40, 100, 50, 120), nullptr, CRect(0, 100, 50, 120)},
        {2, CRect(100, 20, 340, 140), &half, CRect(100, 20, 300, 120)},
        {2, CRect(40, 100, 260, 210), &half, CRect(40, 100, 240, 200)},
        {2, CRect(100, 120, 360, 250), &half, CRect(100, 120, 260, 200)},
        {0, CRect(-40, -20, 200, 100), &half, CRect(0, 0, 200, 100)},
        {1, CRect(50, -30, 330, 110), &half, CRect(50, 0, 270, 110)},
        {3, CRect(-60, 50, 100, 130), &half, CRect(0, 50, 100, 100)},
        {0, CRect(330, 130, 250, 90), &half, CRect(300, 115, 250, 90)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ResizedInside(row.hit, row.rect, kDocument, row.ratio), row.expected)
            << row.hit << testing::PrintToString(row.rect);
}

TEST(TrackerAdjustTest, WhateverIsDraggedEndsInsideTheDocumentOnceAndForAll)
{
    RandomRects random;
    for (int round = 0; round < 20000; ++round) {
        const int hit = random.Number(0, 3);
        const float ratio = random.Ratio();
        const CRect start = random.Inside();
        const CRect anywhere = random.Anywhere();
        const DragStep step = BeginDrag(hit, start, CPoint(9, 9));
        const CRect dragged = Dragged(step, start, CPoint(anywhere.left, anywhere.top));
        const CRect wanted = WithRatio(hit, dragged, ratio, 0);
        const CRect kept = ResizedInside(hit, wanted, kDocument, &ratio);
        const auto shown = testing::PrintToString(wanted) + " by " + std::to_string(hit);
        ASSERT_TRUE(LiesInside(kept, kDocument)) << shown;
        ASSERT_EQ(OppositeOf(hit, kept), OppositeOf(hit, start)) << shown;
        ASSERT_EQ(ResizedInside(hit, kept, kDocument, &ratio), kept) << shown;
        const bool followsWidth = HeightOf(kept) == NearestInt(float(kept.Width()) * ratio);
        const bool followsHeight = WidthOf(kept) == NearestInt(float(kept.Height()) / ratio);
        ASSERT_TRUE(followsWidth || followsHeight) << shown << testing::PrintToString(kept) << ratio;
        ASSERT_TRUE(LiesInside(ResizedInside(round % 8, anywhere, kDocument, nullptr), kDocument));
        const CRect moved = ShiftedInside(Offset(start, anywhere.left, anywhere.top), kDocument);
        ASSERT_TRUE(LiesInside(moved, kDocument));
        ASSERT_EQ(moved.Size(), start.Size());
        Nudged(anywhere, CSize(1, 0), HeldKeys{true, round % 2 == 0}, &ratio, &kDocument);
        HitHandles({anywhere, static_cast<unsigned int>(round % 64), kMax, kMax, 0xFF, start},
                   dragged.TopLeft());
    }
}
