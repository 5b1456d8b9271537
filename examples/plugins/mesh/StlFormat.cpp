#include "examples/plugins/mesh/MeshFormat.h"
#include "examples/plugins/mesh/Text.h"
#include "examples/sdk/LittleEndian.h"
#include "examples/sdk/Utf8.h"

#include <map>

namespace mesh {

namespace {

constexpr std::size_t kHeaderSize = 80;
constexpr std::size_t kTriangleSize = 50; // normal, three corners, 16 bits of attributes

/// Joins equal positions, which the format repeats for every triangle.
class PositionPool
{
public:
    explicit PositionPool(Mesh& mesh) : m_mesh(mesh) {}

    int Index(const std::array<float, 3>& position)
    {
        const auto [place, added] = m_known.try_emplace(position, static_cast<int>(m_mesh.positions.size()));
        if (added)
            m_mesh.positions.push_back(position);
        return place->second;
    }

private:
    Mesh& m_mesh;
    std::map<std::array<float, 3>, int> m_known;
};

bool IsFinite(const std::array<float, 3>& vector)
{
    return std::isfinite(vector[0]) && std::isfinite(vector[1]) && std::isfinite(vector[2]);
}

void AddTriangle(const std::array<float, 3> (&corners)[3], PositionPool& pool, Mesh& mesh)
{
    for (const auto& corner : corners)
        mesh.corners.push_back({pool.Index(corner), -1, -1});
    mesh.faceSizes.push_back(3);
}

IO_FILE_RESULT ReadBinary(const std::string& bytes, std::size_t triangles, Mesh& mesh)
{
    PositionPool pool(mesh);
    mesh.faceSizes.reserve(triangles);
    mesh.corners.reserve(3 * triangles);
    for (std::size_t i = 0; i < triangles; ++i) {
        const char* at = bytes.data() + kHeaderSize + 4 + i * kTriangleSize + 12;
        std::array<float, 3> corners[3];
        for (auto& corner : corners) {
            for (float& value : corner) {
                value = LittleEndianFloat(at);
                at += 4;
            }
            if (!IsFinite(corner))
                return IO_FILE_BAD_FORMAT;
        }
        AddTriangle(corners, pool, mesh);
    }
    mesh.groups.push_back({CString(), -1, 0, mesh.faceSizes.size()});
    return IO_FILE_SUCCESS;
}

bool ReadVertex(TextScanner& text, std::array<float, 3>& vertex)
{
    return text.Word() == "vertex" && text.Number(vertex[0]) && text.Number(vertex[1]) &&
           text.Number(vertex[2]);
}

/// facet normal n n n outer loop vertex ... vertex ... vertex ... endloop endfacet
bool ReadFacet(TextScanner& text, PositionPool& pool, Mesh& mesh)
{
    std::array<float, 3> corners[3];
    if (text.Word() != "normal")
        return false;
    for (int axis = 0; axis < 3; ++axis)
        text.Word(); // stored normals are recomputed when they are needed: writers often leave them zero
    if (text.Word() != "outer" || text.Word() != "loop")
        return false;
    for (auto& corner : corners) {
        if (!ReadVertex(text, corner))
            return false;
    }
    if (text.Word() != "endloop" || text.Word() != "endfacet")
        return false;
    AddTriangle(corners, pool, mesh);
    return true;
}

IO_FILE_RESULT ReadText(const std::string& bytes, Mesh& mesh)
{
    PositionPool pool(mesh);
    TextScanner text(bytes);
    while (text.Word() == "solid") {
        std::string_view name = text.Line();
        while (!name.empty() && name.front() == ' ')
            name.remove_prefix(1);
        mesh.groups.push_back({FromUtf8(name), -1, mesh.faceSizes.size(), 0});
        std::string_view word = text.Word();
        for (; word == "facet"; word = text.Word()) {
            if (!ReadFacet(text, pool, mesh))
                return IO_FILE_BAD_FORMAT;
        }
        if (word != "endsolid")
            return IO_FILE_BAD_FORMAT;
        text.Line();
        mesh.groups.back().faceCount = mesh.faceSizes.size() - mesh.groups.back().firstFace;
    }
    return text.AtEnd() && !mesh.groups.empty() ? IO_FILE_SUCCESS : IO_FILE_BAD_FORMAT;
}

std::array<float, 3> NormalOf(const std::array<float, 3>& a, const std::array<float, 3>& b,
                              const std::array<float, 3>& c)
{
    const float u[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const float v[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    std::array<float, 3> normal{u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2],
                                u[0] * v[1] - u[1] * v[0]};
    const float length = std::hypot(normal[0], normal[1], normal[2]);
    if (!(length > 0.0f) || !std::isfinite(length))
        return {0.0f, 0.0f, 0.0f};
    for (float& value : normal)
        value /= length;
    return normal;
}

/// Calls `visit` with each triangle of the group, polygons as fans around their first corner.
template <typename Visit>
void ForEachTriangle(const Mesh& mesh, std::size_t firstFace, std::size_t faceCount, std::size_t& corner,
                     const Visit& visit)
{
    for (std::size_t face = firstFace; face < firstFace + faceCount; ++face) {
        const unsigned int size = mesh.faceSizes[face];
        const auto position = [&](std::size_t i) -> const std::array<float, 3>& {
            return mesh.positions[static_cast<std::size_t>(mesh.corners[corner + i].position)];
        };
        for (unsigned int i = 2; i < size; ++i)
            visit(position(0), position(i - 1), position(i));
        corner += size;
    }
}

std::string BinaryStl(const Mesh& mesh)
{
    std::string out = "binary triangles"; // must not begin with "solid", the mark of the text form
    out.resize(kHeaderSize, ' ');
    std::uint32_t triangles = 0;
    for (const unsigned int size : mesh.faceSizes)
        triangles += size - 2;
    AppendLittleEndian(out, triangles);
    out.reserve(out.size() + triangles * kTriangleSize);
    std::size_t corner = 0;
    ForEachTriangle(mesh, 0, mesh.faceSizes.size(), corner, [&](const auto& a, const auto& b, const auto& c) {
        for (const auto& vector : {NormalOf(a, b, c), a, b, c}) {
            for (const float value : vector)
                AppendLittleEndian(out, value);
        }
        AppendLittleEndian(out, std::uint16_t{0});
    });
    return out;
}

void AppendTextVector(std::string& out, const char* before, const std::array<float, 3>& vector)
{
    out += before;
    for (const float value : vector) {
        out += ' ';
        AppendNumber(out, value);
    }
    out += '\n';
}

std::string TextStl(const Mesh& mesh)
{
    std::string out;
    std::size_t corner = 0;
    const std::vector<MeshGroup> whole{{CString(), -1, 0, mesh.faceSizes.size()}};
    for (const MeshGroup& group : mesh.groups.empty() ? whole : mesh.groups) {
        const std::string name = ToUtf8(group.name);
        out += "solid " + name + "\n";
        ForEachTriangle(mesh, group.firstFace, group.faceCount, corner,
                        [&](const auto& a, const auto& b, const auto& c) {
                            AppendTextVector(out, "  facet normal", NormalOf(a, b, c));
                            out += "    outer loop\n";
                            for (const auto& vector : {a, b, c})
                                AppendTextVector(out, "      vertex", vector);
                            out += "    endloop\n  endfacet\n";
                        });
        out += "endsolid " + name + "\n";
    }
    return out;
}

} // namespace

IO_FILE_RESULT ReadStl(const std::string& bytes, Mesh& mesh)
{
    // Binary files may begin with "solid" too, so the count that fits the file's size decides.
    if (bytes.size() >= kHeaderSize + 4) {
        const std::size_t triangles = LittleEndian32(bytes.data() + kHeaderSize);
        const std::size_t rest = bytes.size() - kHeaderSize - 4;
        if (rest % kTriangleSize == 0 && rest / kTriangleSize == triangles)
            return ReadBinary(bytes, triangles, mesh);
    }
    return ReadText(bytes, mesh);
}

std::string StlBytes(const Mesh& mesh, const WriteOptions& options)
{
    return options.binary ? BinaryStl(mesh) : TextStl(mesh);
}

} // namespace mesh
