#include "framework/base/Geometry.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <climits>

TEST(Geometry, PointsAndSizesAddUp)
{
    CPoint point(3, 4);
    point.Offset(1, -1);
    point += CSize(10, 10);
    point -= CPoint(4, 3);
    EXPECT_EQ(point, CPoint(10, 10));
    EXPECT_EQ(CPoint(5, 7) - CPoint(2, 9), CSize(3, -2));
    EXPECT_EQ(-CPoint(1, -2) + CSize(1, 1), CPoint(0, 3));
    EXPECT_EQ(CPoint(1, 2) + CRect(0, 0, 5, 5), CRect(1, 2, 6, 7));
}

TEST(Geometry, OverflowWraps)
{
    EXPECT_EQ(CPoint(INT_MAX, INT_MIN) + CSize(1, -1), CPoint(INT_MIN, INT_MAX));
    EXPECT_EQ(-CSize(INT_MIN, 1), CSize(INT_MIN, -1));
    EXPECT_EQ(CRect(INT_MIN, 0, INT_MAX, 1).Width(), -1);
    CRect rect(0, 0, INT_MAX, 10);
    rect.InflateRect(1, 1);
    EXPECT_EQ(rect, CRect(-1, -1, INT_MIN, 11));
}

TEST(Geometry, RectanglesMoveGrowAndTurnUpright)
{
    CRect rect(CPoint(10, 20), CSize(30, 40));
    EXPECT_EQ(rect, CRect(10, 20, 40, 60));
    EXPECT_EQ(rect.CenterPoint(), CPoint(25, 40));
    EXPECT_EQ(CRect(-3, -3, 0, 0).CenterPoint(), CPoint(-1, -1)) << "toward zero";
    rect.MoveToXY(0, 1);
    rect.InflateRect(CSize(1, 2));
    EXPECT_EQ(rect, CRect(-1, -1, 31, 43));
    rect.DeflateRect(1, 2, 3, 4);
    EXPECT_EQ(rect, CRect(0, 1, 28, 39));
    const RECT by = {1, 2, 3, 4};
    EXPECT_EQ(rect + &by, CRect(-1, -1, 31, 43));
    EXPECT_EQ(rect - &by, CRect(1, 3, 25, 35));
    CRect inverted(9, 8, 1, 2);
    EXPECT_TRUE(inverted.IsRectEmpty());
    inverted.NormalizeRect();
    EXPECT_EQ(inverted, CRect(1, 2, 9, 8));
    EXPECT_TRUE(CRect(1, 1, 1, 5).IsRectEmpty() && !CRect(1, 1, 1, 5).IsRectNull() && CRect().IsRectNull());
}

// What two rectangles have in common is compared with the platform's own answers in the other build.
TEST(Geometry, IntersectionsUnionsAndDifferences)
{
    const CRect a(0, 0, 10, 10);
    EXPECT_EQ(a & CRect(5, -5, 20, 5), CRect(5, 0, 10, 5));
    EXPECT_EQ(a & CRect(10, 0, 20, 10), CRect()) << "touching is nothing in common";
    EXPECT_EQ(a | CRect(20, 20, 21, 21), CRect(0, 0, 21, 21));
    CRect rest;
    EXPECT_TRUE(rest.SubtractRect(a, CRect(-5, 0, 4, 10)));
    EXPECT_EQ(rest, CRect(4, 0, 10, 10));
}
