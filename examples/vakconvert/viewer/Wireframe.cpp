#include "examples/vakconvert/viewer/Wireframe.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace {

/// Pixels of the sheet: the longer side of the model, and what is left empty around it.
constexpr double kLongSide = 2000;
constexpr int kMargin = 40;

struct Flat
{
    double x;
    double y;
};

/// Seen from the front right and above, y being up.
Flat Project(const std::array<float, 3>& position)
{
    constexpr double kTurnCos = 0.866, kTurnSin = 0.5;   // 30 degrees
    constexpr double kTiltCos = 0.906, kTiltSin = 0.423; // 25 degrees
    const double x = position[0], y = position[1], z = position[2];
    const double depth = z * kTurnCos + x * kTurnSin;
    return {x * kTurnCos - z * kTurnSin, depth * kTiltSin - y * kTiltCos};
}

bool IsFinite(const Flat& point)
{
    return std::isfinite(point.x) && std::isfinite(point.y);
}

using Pair = std::pair<int, int>;

/// The pairs of positions that a face's side joins, each once.
std::vector<Pair> Sides(const Mesh& mesh)
{
    std::vector<Pair> sides;
    sides.reserve(mesh.corners.size());
    std::size_t first = 0;
    for (const unsigned int size : mesh.faceSizes) {
        for (unsigned int i = 0; i < size; ++i) {
            const int a = mesh.corners[first + i].position;
            const int b = mesh.corners[first + (i + 1) % size].position;
            sides.emplace_back(std::minmax(a, b));
        }
        first += size;
    }
    std::sort(sides.begin(), sides.end());
    sides.erase(std::unique(sides.begin(), sides.end()), sides.end());
    return sides;
}

/// What the points used cover.
struct Extent
{
    double left = std::numeric_limits<double>::max();
    double top = std::numeric_limits<double>::max();
    double right = std::numeric_limits<double>::lowest();
    double bottom = std::numeric_limits<double>::lowest();

    void Add(const Flat& point)
    {
        left = std::min(left, point.x);
        right = std::max(right, point.x);
        top = std::min(top, point.y);
        bottom = std::max(bottom, point.y);
    }
    double Longer() const { return std::max(right - left, bottom - top); }
};

} // namespace

Wireframe::Wireframe(const Mesh& mesh)
{
    std::vector<Flat> points;
    points.reserve(mesh.positions.size());
    for (const auto& position : mesh.positions)
        points.push_back(Project(position));
    std::vector<Pair> sides = Sides(mesh);
    const auto at = [&](int index) -> const Flat& { return points[static_cast<std::size_t>(index)]; };
    std::erase_if(sides,
                  [&](const Pair& side) { return !IsFinite(at(side.first)) || !IsFinite(at(side.second)); });
    if (sides.empty())
        return;
    Extent extent;
    for (const auto& [a, b] : sides) {
        extent.Add(at(a));
        extent.Add(at(b));
    }
    const double scale = extent.Longer() > 0 ? kLongSide / extent.Longer() : 0;
    const auto placed = [&](const Flat& point) {
        return CPoint(kMargin + static_cast<int>(std::lround((point.x - extent.left) * scale)),
                      kMargin + static_cast<int>(std::lround((point.y - extent.top) * scale)));
    };
    for (const auto& [a, b] : sides)
        m_edges.push_back({placed(at(a)), placed(at(b))});
    m_size = placed({extent.right, extent.bottom}) + CPoint(kMargin + 1, kMargin + 1);
}

bool Wireframe::IsNear(const Edge& edge, const CRect& area)
{
    const auto& [a, b] = edge;
    return std::min(a.x, b.x) < area.right && std::max(a.x, b.x) >= area.left &&
           std::min(a.y, b.y) < area.bottom && std::max(a.y, b.y) >= area.top;
}
