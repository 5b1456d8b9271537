#include "framework/base/Geometry.h"

#include <algorithm>
#include <utility>

using vak::detail::Difference;
using vak::detail::Sum;

CPoint CSize::operator+(POINT point) const
{
    return CPoint(point) + *this;
}

CPoint CSize::operator-(POINT point) const
{
    return CPoint(*this - CSize(point));
}

CRect CSize::operator+(const RECT* rect) const
{
    return CRect(rect) + *this;
}

CRect CSize::operator-(const RECT* rect) const
{
    return CRect(rect) - *this;
}

CRect CPoint::operator+(const RECT* rect) const
{
    return CRect(rect) + *this;
}

CRect CPoint::operator-(const RECT* rect) const
{
    return CRect(rect) - *this;
}

CRect::CRect(POINT topLeft, SIZE size) : CRect(topLeft, CPoint(topLeft) + size) {}

CPoint CRect::CenterPoint() const
{
    return {Sum(left, right) / 2, Sum(top, bottom) / 2};
}

void CRect::NormalizeRect()
{
    if (left > right)
        std::swap(left, right);
    if (top > bottom)
        std::swap(top, bottom);
}

void CRect::InflateRect(int l, int t, int r, int b)
{
    *this = CRect(Difference(left, l), Difference(top, t), Sum(right, r), Sum(bottom, b));
}

void CRect::DeflateRect(int l, int t, int r, int b)
{
    *this = CRect(Sum(left, l), Sum(top, t), Difference(right, r), Difference(bottom, b));
}

void CRect::OffsetRect(int x, int y)
{
    *this = CRect(Sum(left, x), Sum(top, y), Sum(right, x), Sum(bottom, y));
}

void CRect::MoveToXY(int x, int y)
{
    MoveToX(x);
    MoveToY(y);
}

BOOL CRect::IntersectRect(LPCRECT a, LPCRECT b)
{
    const CRect common(std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
                       std::min(a->bottom, b->bottom));
    const BOOL exists = !common.IsRectEmpty();
    *this = exists ? common : CRect();
    return exists;
}

BOOL CRect::UnionRect(LPCRECT a, LPCRECT b)
{
    const CRect first(a);
    const CRect second(b);
    if (first.IsRectEmpty())
        *this = second.IsRectEmpty() ? CRect() : second;
    else if (second.IsRectEmpty())
        *this = first;
    else
        *this = CRect(std::min(first.left, second.left), std::min(first.top, second.top),
                      std::max(first.right, second.right), std::max(first.bottom, second.bottom));
    return !IsRectEmpty();
}

BOOL CRect::SubtractRect(LPCRECT from, LPCRECT cut)
{
    CRect rest(from);
    CRect common;
    if (common.IntersectRect(from, cut)) {
        // Only a cut across the whole height or width leaves a rectangle.
        if (common.top == rest.top && common.bottom == rest.bottom) {
            if (common.left == rest.left)
                rest.left = common.right;
            else if (common.right == rest.right)
                rest.right = common.left;
        } else if (common.left == rest.left && common.right == rest.right) {
            if (common.top == rest.top)
                rest.top = common.bottom;
            else if (common.bottom == rest.bottom)
                rest.bottom = common.top;
        }
    }
    *this = rest.IsRectEmpty() ? CRect() : rest;
    return !IsRectEmpty();
}

CRect CRect::operator+(POINT point) const
{
    CRect result(*this);
    result += point;
    return result;
}

CRect CRect::operator+(SIZE size) const
{
    CRect result(*this);
    result += size;
    return result;
}

CRect CRect::operator+(LPCRECT by) const
{
    CRect result(*this);
    result += by;
    return result;
}

CRect CRect::operator-(POINT point) const
{
    CRect result(*this);
    result -= point;
    return result;
}

CRect CRect::operator-(SIZE size) const
{
    CRect result(*this);
    result -= size;
    return result;
}

CRect CRect::operator-(LPCRECT by) const
{
    CRect result(*this);
    result -= by;
    return result;
}

CRect CRect::operator&(const RECT& rect) const
{
    CRect result(*this);
    result &= rect;
    return result;
}

CRect CRect::operator|(const RECT& rect) const
{
    CRect result(*this);
    result |= rect;
    return result;
}
