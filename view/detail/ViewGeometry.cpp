#include "view/detail/ViewGeometry.h"

#include "view/NearestInt.h"
#include "view/detail/Saturated.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <limits>

namespace vak::detail {

static_assert(FLT_EVAL_METHOD == 0, "floats are computed as floats");
static_assert(offsetof(ViewGeometry, client) == 0 && offsetof(ViewGeometry, discretePage) == 8 &&
              offsetof(ViewGeometry, scroll) == 16 && offsetof(ViewGeometry, discreteScroll) == 24 &&
              offsetof(ViewGeometry, document) == 32 && offsetof(ViewGeometry, zoomed) == 40 &&
              offsetof(ViewGeometry, visible) == 48 && offsetof(ViewGeometry, page) == 64 &&
              offsetof(ViewGeometry, minZoom) == 80 && offsetof(ViewGeometry, maxZoom) == 84 &&
              offsetof(ViewGeometry, zoom) == 88 && sizeof(ViewGeometry) == 92);

namespace {

int SumOf(int a, int b)
{
    return Saturated(WideInt(a) + b);
}

int DifferenceOf(int a, int b)
{
    return Saturated(WideInt(a) - b);
}

int Scaled(int value, float zoom)
{
    return Truncate(static_cast<float>(value) * zoom);
}

float Unscaled(int value, float zoom)
{
    return Quotient(static_cast<float>(value), zoom);
}

int DiscreteCoordinate(int value, float zoom)
{
    return Truncate(std::floor(Unscaled(value, zoom)) * zoom);
}

int DiscreteExtent(int value, float zoom)
{
    return Truncate(std::ceil(Unscaled(value, zoom)) * zoom);
}

/// Within 0 and `last`; 0 where that is negative.
int OnDocument(int value, int last)
{
    return std::max(0, std::min(value, last));
}

int ClampedCoordinate(int wanted, int zoomed, int client)
{
    if (zoomed <= client)
        return 0;
    return std::clamp(wanted, 0, DifferenceOf(zoomed, client));
}

int AnchoredCoordinate(int documentPoint, int anchor, float zoom)
{
    return Truncate((static_cast<float>(documentPoint) - Unscaled(anchor, zoom)) * zoom);
}

/// The zoomed document pixel's middle or corner, moved by `origin`.
int Mapped(int value, float zoom, bool center, WideInt origin)
{
    const float corner = static_cast<float>(value) * zoom;
    return Saturated(NearestInt(center ? corner + zoom / 2 : corner) + origin);
}

/// One axis of the page: from `low` on, `length` long, cut off at the end of the client area.
void PlaceAxis(LONG& low, LONG& high, int length, int client)
{
    low = 0;
    high = client;
    if (length < client) {
        low = DifferenceOf(client, length) / 2;
        high = SumOf(int(low), length);
    }
}

/// One axis of the visible part, inclusive.
void SeeAxis(LONG& low, LONG& high, int scroll, int length, int document, float zoom)
{
    const int begin = Truncate(std::floor(Unscaled(scroll, zoom)));
    const int end = Truncate(std::ceil(Unscaled(SumOf(scroll, length), zoom)));
    low = OnDocument(begin, document - 1);
    high = OnDocument(end, document - 1);
}

} // namespace

float Quotient(float a, float b)
{
    if (b != 0)
        return a / b;
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    if (a > 0)
        return kInfinity;
    return a < 0 ? -kInfinity : std::numeric_limits<float>::quiet_NaN();
}

void ViewGeometry::Derive()
{
    const CSize length = ZoomedDocument();
    PlaceAxis(page.left, page.right, length.cx, client.cx);
    PlaceAxis(page.top, page.bottom, length.cy, client.cy);
    page.NormalizeRect();
    discreteScroll = Discrete(scroll);
    discretePage = Discrete(page.Size());
    if (Scaled(page.Width(), zoom) == document.cx && Scaled(page.Height(), zoom) == document.cy) {
        visible = CRect(0, 0, document.cx - 1, document.cy - 1);
        return;
    }
    SeeAxis(visible.left, visible.right, scroll.x, discretePage.cx, document.cx, zoom);
    SeeAxis(visible.top, visible.bottom, scroll.y, discretePage.cy, document.cy, zoom);
    visible.NormalizeRect();
}

CSize ViewGeometry::ZoomedDocument() const
{
    return {Scaled(document.cx, zoom), Scaled(document.cy, zoom)};
}

float ViewGeometry::ClampedZoom(float wanted, bool snap) const
{
    const float rung = snap ? SnappedZoom(wanted) : wanted;
    // Not a number fails this comparison too.
    if (!(rung >= minZoom))
        return minZoom;
    return rung > maxZoom ? maxZoom : rung;
}

float ViewGeometry::FittingZoom(CSize room) const
{
    // Also one that has a length, but no width, is nothing to be fitted by the other side.
    if (document.cx == 0 || document.cy == 0)
        return std::numeric_limits<float>::infinity();
    return std::min(static_cast<float>(room.cx) / static_cast<float>(document.cx),
                    static_cast<float>(room.cy) / static_cast<float>(document.cy));
}

ZoomTarget ViewGeometry::Filling(const CRect& documentRect) const
{
    const int width = DifferenceOf(documentRect.right, documentRect.left);
    const int height = DifferenceOf(documentRect.bottom, documentRect.top);
    const float filling = width > height ? Unscaled(client.cx, static_cast<float>(width))
                                         : Unscaled(client.cy, static_cast<float>(height));
    return {filling, {SumOf(documentRect.left, width / 2), SumOf(documentRect.top, height / 2)}};
}

CPoint ViewGeometry::VisibleCenter() const
{
    CRect seen = visible;
    seen.NormalizeRect();
    const auto middle = [](int low, int high) { return static_cast<int>((WideInt(low) + high + 1) / 2); };
    return {middle(seen.left, seen.right), middle(seen.top, seen.bottom)};
}

CPoint ViewGeometry::ScrollAround(CPoint documentPoint, CPoint anchor) const
{
    return {AnchoredCoordinate(documentPoint.x, anchor.x, zoom),
            AnchoredCoordinate(documentPoint.y, anchor.y, zoom)};
}

CPoint ViewGeometry::ScrolledBy(CSize delta) const
{
    return {SumOf(scroll.x, delta.cx), SumOf(scroll.y, delta.cy)};
}

CPoint ViewGeometry::ClampedScroll(CPoint wanted) const
{
    return {ClampedCoordinate(wanted.x, zoomed.cx, client.cx),
            ClampedCoordinate(wanted.y, zoomed.cy, client.cy)};
}

CPoint ViewGeometry::Discrete(CPoint zoomedPoint) const
{
    if (IsFilledX())
        zoomedPoint.x = DiscreteCoordinate(zoomedPoint.x, zoom);
    if (IsFilledY())
        zoomedPoint.y = DiscreteCoordinate(zoomedPoint.y, zoom);
    return zoomedPoint;
}

CSize ViewGeometry::Discrete(CSize zoomedSize) const
{
    if (IsFilledX())
        zoomedSize.cx = DiscreteExtent(zoomedSize.cx, zoom);
    if (IsFilledY())
        zoomedSize.cy = DiscreteExtent(zoomedSize.cy, zoom);
    return zoomedSize;
}

CPoint ViewGeometry::ToViewport(CPoint point, bool center) const
{
    return {Mapped(point.x, zoom, center, page.left), Mapped(point.y, zoom, center, page.top)};
}

CRect ViewGeometry::ToViewport(const CRect& rect, bool center) const
{
    return {ToViewport(rect.TopLeft(), center), ToViewport(rect.BottomRight(), center)};
}

CPoint ViewGeometry::ToPage(CPoint point, bool center) const
{
    return {Mapped(point.x, zoom, center, WideInt(page.left) - scroll.x),
            Mapped(point.y, zoom, center, WideInt(page.top) - scroll.y)};
}

CRect ViewGeometry::ToPage(const CRect& rect, bool center) const
{
    return {ToPage(rect.TopLeft(), center), ToPage(rect.BottomRight(), center)};
}

bool ViewGeometry::IsOnPage(CRect rect) const
{
    rect.NormalizeRect();
    return (rect | page) == page;
}

bool ViewGeometry::ToDocument(CPoint& point) const
{
    const auto pixel = [this](int value, int origin, int by) {
        return Truncate(Unscaled(Saturated(WideInt(value) - origin + by), zoom));
    };
    const CPoint hit(pixel(point.x, page.left, scroll.x), pixel(point.y, page.top, scroll.y));
    point = CPoint(OnDocument(hit.x, document.cx - 1), OnDocument(hit.y, document.cy - 1));
    return CRect(CPoint(), document).PtInRect(hit) != 0;
}

CRect ViewGeometry::ToDocument(const CRect& rect, ToDocumentRule rule) const
{
    const auto side = [this, rule](int value, int by, int origin, bool isLow, int size) {
        const float exact = Unscaled(Saturated(WideInt(value) + by - origin), zoom);
        const int rounded =
            !rule.outward ? NearestInt(exact) : Truncate(isLow ? std::floor(exact) : std::ceil(exact));
        return rule.clamp ? OnDocument(rounded, rule.exclusiveEdge ? size : size - 1) : rounded;
    };
    return {side(rect.left, scroll.x, page.left, true, document.cx),
            side(rect.top, scroll.y, page.top, true, document.cy),
            side(rect.right, scroll.x, page.left, false, document.cx),
            side(rect.bottom, scroll.y, page.top, false, document.cy)};
}

CRect ViewGeometry::VisibleDocument() const
{
    CRect seen = visible;
    seen.NormalizeRect();
    seen.InflateRect(0, 0, 1, 1);
    // Without pixels, the inclusive rectangle cannot be empty.
    return seen & CRect(CPoint(), document);
}

CRect ViewGeometry::VisiblePage() const
{
    const auto mapped = [this](int value, int origin) { return SumOf(Scaled(value, zoom), origin); };
    return {mapped(visible.left, page.left), mapped(visible.top, page.top),
            mapped(SumOf(visible.right, 1), page.left), mapped(SumOf(visible.bottom, 1), page.top)};
}

} // namespace vak::detail
