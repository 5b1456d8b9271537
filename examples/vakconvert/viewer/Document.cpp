#include "examples/vakconvert/viewer/Document.h"

#include <utility>

namespace {

constexpr COLORREF kPaper = RGB(0xFF, 0xFF, 0xFF);
constexpr std::uint32_t kLine = 0x204080;

/// The document pixels that the columns and rows of an area of the page show: the same as the mouse finds
/// there.
PixelMap MapOf(const CVakCoord& coord, const CRect& area)
{
    PixelMap map;
    for (int x = area.left; x < area.right; ++x) {
        CPoint point(x, area.top);
        coord.ClientToDoc(point);
        map.columns.push_back(point.x);
    }
    for (int y = area.top; y < area.bottom; ++y) {
        CPoint point(area.left, y);
        coord.ClientToDoc(point);
        map.rows.push_back(point.y);
    }
    return map;
}

} // namespace

Document::Document(Content&& content) : m_content(std::move(content))
{
    if (!m_content.isMesh)
        return;
    m_wireframe.emplace(m_content.mesh);
    m_content.mesh = Mesh();
}

CSize Document::Size() const
{
    if (m_wireframe)
        return m_wireframe->Size();
    const Image& image = m_content.image;
    return image.IsConsistent() ? CSize(static_cast<int>(image.width), static_cast<int>(image.height))
                                : CSize();
}

void Document::Draw(Canvas& canvas, const CVakCoord& coord, const CRect& area) const
{
    if (area.IsRectEmpty())
        return;
    if (m_wireframe)
        DrawWireframe(canvas, coord, area);
    else
        DrawImage(canvas, coord, area);
}

void Document::DrawImage(Canvas& canvas, const CVakCoord& coord, const CRect& area) const
{
    const CPoint origin = area.TopLeft() + coord.GetScrollPos();
    DrawPixels(m_content.image, MapOf(coord, area), origin, canvas.PixelsAt(area.TopLeft()));
}

void Document::DrawWireframe(Canvas& canvas, const CVakCoord& coord, const CRect& area) const
{
    canvas.FillSolidRect(area, kPaper);
    const PixelRows pixels = canvas.PixelsAt(area.TopLeft());
    CRect visible = area;
    coord.ClientToDoc(visible, TRUE, TRUE, TRUE);
    // A line lies in the top left corners of its document pixels: those of the next ones may be seen.
    visible.InflateRect(1, 1);
    for (const Wireframe::Edge& edge : m_wireframe->Edges()) {
        if (!Wireframe::IsNear(edge, visible))
            continue;
        CPoint from;
        CPoint to;
        coord.DocToViewportForPolygon(edge[0], from);
        coord.DocToViewportForPolygon(edge[1], to);
        const CPoint scroll = coord.GetScrollPos();
        DrawLine(CPoint(from - scroll), CPoint(to - scroll), kLine, area, pixels);
    }
}
