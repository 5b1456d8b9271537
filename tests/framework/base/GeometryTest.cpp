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
    EXPECT_EQ(CPoint(5, 7) - CSize(2, 9), CPoint(3, -2));
    EXPECT_EQ(-CPoint(1, -2) + CSize(1, 1), CPoint(0, 3));
    EXPECT_EQ(CSize(1, 2) + CSize(3, 4) - CSize(1, 1), CSize(3, 5));
    EXPECT_EQ(CPoint(1, 2) + CRect(0, 0, 5, 5), CRect(1, 2, 6, 7));
    EXPECT_NE(CSize(1, 2), CSize(2, 1));
    EXPECT_EQ(CPoint(), CPoint(0, 0));
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
    EXPECT_EQ(rect.Size(), CSize(30, 40));
    EXPECT_EQ(rect.CenterPoint(), CPoint(25, 40));
    EXPECT_EQ(CRect(-3, -3, 0, 0).CenterPoint(), CPoint(-1, -1)) << "toward zero";
    rect.MoveToXY(0, 1);
    EXPECT_EQ(rect, CRect(0, 1, 30, 41));
    rect.InflateRect(CSize(1, 2));
    EXPECT_EQ(rect, CRect(-1, -1, 31, 43));
    rect.DeflateRect(1, 2, 3, 4);
    EXPECT_EQ(rect, CRect(0, 1, 28, 39));
    const RECT by = {1, 2, 3, 4};
    EXPECT_EQ(rect + &by, CRect(-1, -1, 31, 43));
    EXPECT_EQ(rect - &by, CRect(1, 3, 25, 35));
    EXPECT_EQ(rect - CPoint(1, 1) + CSize(2, 3), CRect(1, 3, 29, 41));
    CRect inverted(9, 8, 1, 2);
    EXPECT_TRUE(inverted.IsRectEmpty());
    EXPECT_EQ(inverted.Width(), -8);
    inverted.NormalizeRect();
    EXPECT_EQ(inverted, CRect(1, 2, 9, 8));
    EXPECT_TRUE(CRect(1, 1, 1, 5).IsRectEmpty() && !CRect(1, 1, 1, 5).IsRectNull() && CRect().IsRectNull());
}

TEST(Geometry, RightAndBottomAreOutside)
{
    const CRect rect(1, 2, 4, 5);
    EXPECT_TRUE(rect.PtInRect(CPoint(1, 2)) && rect.PtInRect(CPoint(3, 4)));
    EXPECT_FALSE(rect.PtInRect(CPoint(4, 4)) || rect.PtInRect(CPoint(3, 5)) || rect.PtInRect(CPoint(0, 3)));
    EXPECT_FALSE(CRect(4, 5, 1, 2).PtInRect(CPoint(2, 3))) << "nothing lies in an inverted rectangle";
}

TEST(Geometry, IntersectionsUnionsAndDifferences)
{
    const CRect a(0, 0, 10, 10);
    EXPECT_EQ(a & CRect(5, -5, 20, 5), CRect(5, 0, 10, 5));
    EXPECT_EQ(a & CRect(10, 0, 20, 10), CRect()) << "touching is nothing in common";
    EXPECT_EQ(a & CRect(8, 8, 2, 2), CRect()) << "an inverted one is empty";
    EXPECT_EQ(a | CRect(20, 20, 21, 21), CRect(0, 0, 21, 21));
    EXPECT_EQ(a | CRect(50, 50, 50, 60), a);
    CRect result(a);
    EXPECT_FALSE(result.UnionRect(CRect(5, 5, 5, 5), CRect(3, 3, 1, 1)));
    EXPECT_EQ(result, CRect());
    EXPECT_TRUE(result.UnionRect(CRect(), a));
    EXPECT_EQ(result, a);

    const struct
    {
        CRect cut;
        CRect rest;
    } rows[] = {
        {CRect(6, -1, 20, 20), CRect(0, 0, 6, 10)}, {CRect(-5, 0, 4, 10), CRect(4, 0, 10, 10)},
        {CRect(0, 7, 10, 30), CRect(0, 0, 10, 7)},  {CRect(0, -3, 10, 3), CRect(0, 3, 10, 10)},
        {CRect(4, 0, 6, 10), a /* two pieces */},   {CRect(5, 5, 20, 20), a /* a corner */},
        {CRect(20, 0, 30, 10), a /* beside it */},  {CRect(-1, -1, 11, 11), CRect()},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(result.SubtractRect(a, row.cut), row.rest != CRect());
        EXPECT_EQ(result, row.rest);
    }
}
