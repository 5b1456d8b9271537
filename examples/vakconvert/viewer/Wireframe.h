#pragma once

#include "examples/sdk/Mesh.h"
#include "framework/base/Geometry.h"

#include <array>
#include <vector>

/// The edges of a model, seen from above and the side, laid out on a sheet of pixels once and for all.
class Wireframe
{
public:
    using Edge = std::array<CPoint, 2>;

    /// An edge that several faces share is there once; corners that are no numbers have none.
    explicit Wireframe(const Mesh& mesh);

    /// The sheet, in pixels; empty when there is no edge.
    CSize Size() const { return m_size; }
    const std::vector<Edge>& Edges() const { return m_edges; }

    /// Whether part of the edge may be in `area`.
    static bool IsNear(const Edge& edge, const CRect& area);

private:
    CSize m_size;
    std::vector<Edge> m_edges;
};
