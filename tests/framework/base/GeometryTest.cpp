#include "framework/base/Geometry.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <climits>

TEST(Geometry, OverflowWraps)
{
    EXPECT_EQ(CPoint(INT_MAX, INT_MIN) + CSize(1, -1), CPoint(INT_MIN, INT_MAX));
    EXPECT_EQ(-CSize(INT_MIN, 1), CSize(INT_MIN, -1));
    EXPECT_EQ(CRect(INT_MIN, 0, INT_MAX, 1).Width(), -1);
    CRect rect(0, 0, INT_MAX, 10);
    rect.InflateRect(1, 1);
    EXPECT_EQ(rect, CRect(-1, -1, INT_MIN, 11));
}

TEST(Geometry, RectanglesGrowAndTurnUpright)
{
    CRect rect(CPoint(10, 20), CSize(30, 40));
    EXPECT_EQ(rect, CRect(10, 20, 40, 60));
    EXPECT_EQ(rect.CenterPoint(), CPoint(25, 40));
    EXPECT_EQ(CRect(-3, -3, 0, 0).CenterPoint(), CPoint(-1, -1)) << "toward zero";
    const RECT by = {1, 2, 3, 4};
    EXPECT_EQ(rect + &by, CRect(9, 18, 43, 64));
    EXPECT_EQ(rect - &by, CRect(11, 22, 37, 56));
    CRect inverted(9, 8, 1, 2);
    EXPECT_TRUE(inverted.IsRectEmpty());
    inverted.NormalizeRect();
    EXPECT_EQ(inverted, CRect(1, 2, 9, 8));
    EXPECT_TRUE(CRect(1, 1, 1, 5).IsRectEmpty() && !CRect(1, 1, 1, 5).IsRectNull() && CRect().IsRectNull());
}
