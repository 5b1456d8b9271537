#pragma once

/// The platform's integer geometry: CSize, CPoint and CRect, laid out as its structs, which they derive from.
///
/// Coordinates are signed 32-bit; arithmetic that leaves the range wraps. The default objects are all zeros.
/// A rectangle's right and bottom are outside of it; it is empty when its width or height is not positive, an
/// inverted one included, until NormalizeRect.

#include "framework/base/Platform.h"

class CPoint;
class CRect;

namespace vak::detail {

constexpr LONG Sum(LONG a, LONG b)
{
    return static_cast<LONG>(static_cast<ULONG>(a) + static_cast<ULONG>(b));
}

constexpr LONG Difference(LONG a, LONG b)
{
    return static_cast<LONG>(static_cast<ULONG>(a) - static_cast<ULONG>(b));
}

} // namespace vak::detail

class VAK_API CSize : public tagSIZE
{
public:
    CSize() : tagSIZE{0, 0} {}
    CSize(int width, int height) : tagSIZE{width, height} {}
    CSize(SIZE size) : tagSIZE(size) {}
    CSize(POINT point) : tagSIZE{point.x, point.y} {}

    void SetSize(int width, int height) { *this = CSize(width, height); }
    void operator+=(SIZE size) { *this = *this + size; }
    void operator-=(SIZE size) { *this = *this - size; }

    friend bool operator==(const CSize& a, const CSize& b) { return a.cx == b.cx && a.cy == b.cy; }
    CSize operator+(SIZE size) const
    {
        return {vak::detail::Sum(cx, size.cx), vak::detail::Sum(cy, size.cy)};
    }
    CSize operator-(SIZE size) const
    {
        return {vak::detail::Difference(cx, size.cx), vak::detail::Difference(cy, size.cy)};
    }
    CSize operator-() const { return CSize() - *this; }
    CPoint operator+(POINT point) const;
    CPoint operator-(POINT point) const;
    CRect operator+(const RECT* rect) const;
    CRect operator-(const RECT* rect) const;
};

class VAK_API CPoint : public tagPOINT
{
public:
    CPoint() : tagPOINT{0, 0} {}
    CPoint(int left, int top) : tagPOINT{left, top} {}
    CPoint(POINT point) : tagPOINT(point) {}
    CPoint(SIZE size) : tagPOINT{size.cx, size.cy} {}

    void SetPoint(int left, int top) { *this = CPoint(left, top); }
    void Offset(int right, int down) { *this += CSize(right, down); }
    void Offset(POINT point) { *this += point; }
    void Offset(SIZE size) { *this += size; }
    void operator+=(SIZE size) { *this = *this + size; }
    void operator-=(SIZE size) { *this = *this - size; }
    void operator+=(POINT point) { *this = *this + point; }
    void operator-=(POINT point) { *this = *this - CSize(point); }

    friend bool operator==(const CPoint& a, const CPoint& b) { return a.x == b.x && a.y == b.y; }
    CPoint operator+(SIZE size) const { return CPoint(CSize(*this) + size); }
    CPoint operator-(SIZE size) const { return CPoint(CSize(*this) - size); }
    CPoint operator+(POINT point) const { return CPoint(CSize(*this) + CSize(point)); }
    /// The way from `point` to this one.
    CSize operator-(POINT point) const { return CSize(*this) - CSize(point); }
    CPoint operator-() const { return CPoint(-CSize(*this)); }
    CRect operator+(const RECT* rect) const;
    CRect operator-(const RECT* rect) const;
};

class VAK_API CRect : public tagRECT
{
public:
    CRect() : tagRECT{0, 0, 0, 0} {}
    CRect(int l, int t, int r, int b) : tagRECT{l, t, r, b} {}
    CRect(const RECT& rect) : tagRECT(rect) {}
    CRect(LPCRECT rect) : tagRECT(*rect) {}
    CRect(POINT topLeft, SIZE size);
    CRect(POINT topLeft, POINT bottomRight) : tagRECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y} {}

    int Width() const { return vak::detail::Difference(right, left); }
    int Height() const { return vak::detail::Difference(bottom, top); }
    CSize Size() const { return {Width(), Height()}; }
    CPoint TopLeft() const { return {left, top}; }
    CPoint BottomRight() const { return {right, bottom}; }
    /// Half of the sums of the sides, rounded toward zero.
    CPoint CenterPoint() const;
    BOOL IsRectEmpty() const { return left >= right || top >= bottom; }
    /// True when every side is 0.
    BOOL IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
    BOOL PtInRect(POINT point) const
    {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }
    BOOL EqualRect(LPCRECT rect) const { return *this == CRect(rect); }
    operator LPRECT() { return this; }
    operator LPCRECT() const { return this; }

    void SetRect(int l, int t, int r, int b) { *this = CRect(l, t, r, b); }
    void SetRect(POINT topLeft, POINT bottomRight) { *this = CRect(topLeft, bottomRight); }
    void SetRectEmpty() { *this = CRect(); }
    void CopyRect(LPCRECT from) { *this = CRect(from); }
    /// Swaps left with right, top with bottom, where they are inverted.
    void NormalizeRect();
    /// Move the sides outward (inward), each by its own amount in the last two forms.
    void InflateRect(int x, int y) { InflateRect(x, y, x, y); }
    void InflateRect(SIZE size) { InflateRect(size.cx, size.cy); }
    void InflateRect(LPCRECT by) { InflateRect(by->left, by->top, by->right, by->bottom); }
    void InflateRect(int l, int t, int r, int b);
    void DeflateRect(int x, int y) { DeflateRect(x, y, x, y); }
    void DeflateRect(SIZE size) { DeflateRect(size.cx, size.cy); }
    void DeflateRect(LPCRECT by) { DeflateRect(by->left, by->top, by->right, by->bottom); }
    void DeflateRect(int l, int t, int r, int b);
    void OffsetRect(int x, int y);
    void OffsetRect(POINT by) { OffsetRect(by.x, by.y); }
    void OffsetRect(SIZE by) { OffsetRect(by.cx, by.cy); }
    /// Move the rectangle so that its left (top) side lies there.
    void MoveToX(int x) { OffsetRect(vak::detail::Difference(x, left), 0); }
    void MoveToY(int y) { OffsetRect(0, vak::detail::Difference(y, top)); }
    void MoveToXY(int x, int y);
    void MoveToXY(POINT to) { MoveToXY(to.x, to.y); }
    /// What both have in common; all zeros, and FALSE, when that is nothing. The sources may be this
    /// rectangle.
    BOOL IntersectRect(LPCRECT a, LPCRECT b);
    /// The smallest rectangle around both; an empty one adds nothing. FALSE, and all zeros, when both are
    /// empty.
    BOOL UnionRect(LPCRECT a, LPCRECT b);
    /// `from` without `cut`, where that is a rectangle; else `from` as it is. FALSE when the result is empty.
    BOOL SubtractRect(LPCRECT from, LPCRECT cut);

    friend bool operator==(const CRect& a, const CRect& b)
    {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }
    void operator+=(POINT point) { OffsetRect(point); }
    void operator+=(SIZE size) { OffsetRect(size); }
    void operator+=(LPCRECT by) { InflateRect(by); }
    void operator-=(POINT point) { OffsetRect(-CPoint(point)); }
    void operator-=(SIZE size) { OffsetRect(-CSize(size)); }
    void operator-=(LPCRECT by) { DeflateRect(by); }
    void operator&=(const RECT& rect) { IntersectRect(this, &rect); }
    void operator|=(const RECT& rect) { UnionRect(this, &rect); }
    CRect operator+(POINT point) const;
    CRect operator+(SIZE size) const;
    CRect operator+(LPCRECT by) const;
    CRect operator-(POINT point) const;
    CRect operator-(SIZE size) const;
    CRect operator-(LPCRECT by) const;
    CRect operator&(const RECT& rect) const;
    CRect operator|(const RECT& rect) const;
};
