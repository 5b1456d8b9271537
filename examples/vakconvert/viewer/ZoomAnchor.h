#pragma once

#include "framework/base/Geometry.h"

#include <cmath>

/// A place of the document that zooming keeps under a pixel of the client area. It knows the place more
/// finely than in document pixels: however often the zoom changes around one anchor, the same zoom shows the
/// same pixels again.
class ZoomAnchor
{
public:
    ZoomAnchor() = default;
    /// What lies at the client point `at`; `page` is where the document begins, in client pixels.
    ZoomAnchor(CPoint at, CPoint page, CPoint scroll, float zoom)
        : m_at(at), m_x(Place(at.x, page.x, scroll.x, zoom)), m_y(Place(at.y, page.y, scroll.y, zoom))
    {
    }

    CPoint At() const { return m_at; }
    /// The scroll position that brings the place there; it may lie beyond what can be scrolled to.
    CPoint ScrollAt(float zoom) const { return {Position(m_x, m_at.x, zoom), Position(m_y, m_at.y, zoom)}; }

private:
    static double Place(int at, int page, int scroll, float zoom)
    {
        return (static_cast<double>(at) - page + scroll) / static_cast<double>(zoom);
    }
    static int Position(double place, int at, float zoom)
    {
        return static_cast<int>(std::lround(place * static_cast<double>(zoom) - at));
    }

    CPoint m_at{-1, -1};
    double m_x = 0;
    double m_y = 0;
};
