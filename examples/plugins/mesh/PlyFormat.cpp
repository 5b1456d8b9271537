#include "examples/plugins/mesh/MeshFormat.h"
#include "examples/plugins/mesh/Text.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <vector>

namespace mesh {

namespace {

struct Scalar
{
    std::size_t size;
    bool isSigned;
    bool isFloat;
};

std::optional<Scalar> ScalarOf(std::string_view name)
{
    static constexpr struct
    {
        std::string_view names[2];
        Scalar scalar;
    } kScalars[] = {{{"char", "int8"}, {1, true, false}},    {{"uchar", "uint8"}, {1, false, false}},
                    {{"short", "int16"}, {2, true, false}},  {{"ushort", "uint16"}, {2, false, false}},
                    {{"int", "int32"}, {4, true, false}},    {{"uint", "uint32"}, {4, false, false}},
                    {{"float", "float32"}, {4, true, true}}, {{"double", "float64"}, {8, true, true}}};
    for (const auto& known : kScalars) {
        if (name == known.names[0] || name == known.names[1])
            return known.scalar;
    }
    return std::nullopt;
}

struct Property
{
    std::string name;
    Scalar value;
    std::optional<Scalar> listCount; ///< set for lists
};

struct Element
{
    std::string name;
    std::size_t count = 0;
    std::vector<Property> properties;
};

enum class Encoding
{
    Text,
    LittleEndian,
    BigEndian
};

struct Header
{
    Encoding encoding = Encoding::Text;
    std::vector<Element> elements;
};

bool ReadProperty(TextScanner& line, Element& element)
{
    Property property;
    std::string_view type = line.Word();
    if (type == "list") {
        property.listCount = ScalarOf(line.Word());
        if (!property.listCount || property.listCount->isFloat)
            return false;
        type = line.Word();
    }
    const std::optional<Scalar> value = ScalarOf(type);
    property.name = line.Word();
    if (!value || property.name.empty())
        return false;
    property.value = *value;
    element.properties.push_back(property);
    return true;
}

bool ReadEncoding(TextScanner& line, Encoding& encoding)
{
    const std::string_view word = line.Word();
    if (word == "ascii")
        encoding = Encoding::Text;
    else if (word == "binary_little_endian")
        encoding = Encoding::LittleEndian;
    else if (word == "binary_big_endian")
        encoding = Encoding::BigEndian;
    else
        return false;
    return line.Word() == "1.0";
}

bool ReadHeader(TextScanner& text, Header& header)
{
    if (text.Line() != "ply")
        return false;
    bool encodingSeen = false;
    while (!text.AtEnd()) {
        TextScanner line(text.Line());
        const std::string_view keyword = line.Word();
        if (keyword == "end_header")
            return encodingSeen;
        if (keyword == "format") {
            encodingSeen = ReadEncoding(line, header.encoding);
            if (!encodingSeen)
                return false;
        } else if (keyword == "element") {
            Element& element = header.elements.emplace_back();
            element.name = line.Word();
            if (!line.Number(element.count))
                return false;
        } else if (keyword == "property") {
            if (header.elements.empty() || !ReadProperty(line, header.elements.back()))
                return false;
        } else if (keyword != "comment" && keyword != "obj_info") {
            return false;
        }
    }
    return false;
}

/// Reads values one after another in the file's encoding; false at the end or when a text is no number.
class ValueReader
{
public:
    ValueReader(std::string_view bytes, Encoding encoding)
        : m_bytes(bytes), m_text(bytes), m_encoding(encoding)
    {
    }

    bool Read(const Scalar& scalar, double& value)
    {
        return m_encoding == Encoding::Text ? ReadText(value) : ReadBinary(scalar, value);
    }

    /// The fewest bytes that `count` rows of these properties take, held against what is left.
    bool CanHold(const Element& element) const
    {
        std::size_t row = 0;
        for (const Property& property : element.properties) {
            const Scalar& scalar = property.listCount ? *property.listCount : property.value;
            row += m_encoding == Encoding::Text ? 2 : scalar.size;
        }
        const std::size_t left = m_encoding == Encoding::Text ? m_text.Rest().size() + 1 : m_bytes.size();
        return row == 0 ? element.count == 0 : element.count <= left / row;
    }

private:
    bool ReadText(double& value)
    {
        const std::string_view word = m_text.Word();
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        return error == std::errc() && end == word.data() + word.size() && !word.empty();
    }

    bool ReadBinary(const Scalar& scalar, double& value)
    {
        if (m_bytes.size() < scalar.size)
            return false;
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < scalar.size; ++i) {
            const std::size_t at = m_encoding == Encoding::BigEndian ? i : scalar.size - 1 - i;
            bits = bits << 8 | static_cast<unsigned char>(m_bytes[at]);
        }
        m_bytes.remove_prefix(scalar.size);
        value = Decode(scalar, bits);
        return true;
    }

    static double Decode(const Scalar& scalar, std::uint64_t bits)
    {
        if (scalar.isFloat)
            return scalar.size == 4
                       ? static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)))
                       : std::bit_cast<double>(bits);
        if (!scalar.isSigned)
            return static_cast<double>(bits);
        const unsigned shift = static_cast<unsigned>(64 - 8 * scalar.size);
        return static_cast<double>(static_cast<std::int64_t>(bits << shift) >> shift);
    }

    std::string_view m_bytes;
    TextScanner m_text;
    Encoding m_encoding;
};

/// What a vertex property fills: an axis of the position, the normal or the texture coordinate.
struct VertexRow
{
    double values[8] = {};

    static int SlotOf(std::string_view name)
    {
        static constexpr struct
        {
            std::string_view name;
            int slot;
        } kSlots[] = {{"x", 0}, {"y", 1}, {"z", 2},         {"nx", 3},        {"ny", 4}, {"nz", 5},
                      {"s", 6}, {"t", 7}, {"texture_u", 6}, {"texture_v", 7}, {"u", 6},  {"v", 7}};
        for (const auto& known : kSlots) {
            if (name == known.name)
                return known.slot;
        }
        return -1;
    }
};

bool ToFloat(double value, float& out)
{
    if (!(std::fabs(value) <= 3.4028234663852886e38))
        return false;
    out = static_cast<float>(value);
    return true;
}

class BodyReader
{
public:
    BodyReader(ValueReader& values, Mesh& mesh) : m_values(values), m_mesh(mesh) {}

    bool Read(const Element& element)
    {
        if (!m_values.CanHold(element))
            return false;
        if (element.name == "vertex")
            return ReadVertices(element);
        if (element.name == "face")
            return ReadRows(element, [this](const Property& property) { return ReadFace(property); });
        return ReadRows(element, [](const Property&) { return true; });
    }

private:
    bool ReadList(const Property& property)
    {
        double count = 0;
        if (!m_values.Read(*property.listCount, count) || !(count >= 0) || count > 1e9)
            return false;
        m_list.clear();
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            double value = 0;
            if (!m_values.Read(property.value, value))
                return false;
            m_list.push_back(value);
        }
        return true;
    }

    /// Reads every value of every row; `take` is told of each list when m_list holds it.
    template <typename Take>
    bool ReadRows(const Element& element, const Take& take)
    {
        double ignored = 0;
        for (std::size_t row = 0; row < element.count; ++row) {
            for (const Property& property : element.properties) {
                const bool read = property.listCount ? ReadList(property) && take(property)
                                                     : m_values.Read(property.value, ignored);
                if (!read)
                    return false;
            }
        }
        return true;
    }

    bool ReadVertices(const Element& element)
    {
        std::vector<int> slots;
        for (const Property& property : element.properties)
            slots.push_back(property.listCount ? -1 : VertexRow::SlotOf(property.name));
        const auto has = [&](int slot) { return std::count(slots.begin(), slots.end(), slot) == 1; };
        if (!has(0) || !has(1) || !has(2))
            return false;
        const bool normals = has(3) && has(4) && has(5);
        const bool texcoords = has(6) && has(7);
        for (std::size_t row = 0; row < element.count; ++row) {
            VertexRow vertex;
            if (!ReadVertex(element, slots, vertex) || !TakeVertex(vertex, normals, texcoords))
                return false;
        }
        return true;
    }

    bool ReadVertex(const Element& element, const std::vector<int>& slots, VertexRow& vertex)
    {
        for (std::size_t i = 0; i < slots.size(); ++i) {
            double value = 0;
            const Property& property = element.properties[i];
            if (!(property.listCount ? ReadList(property) : m_values.Read(property.value, value)))
                return false;
            if (slots[i] >= 0)
                vertex.values[slots[i]] = value;
        }
        return true;
    }

    bool TakeVertex(const VertexRow& vertex, bool normals, bool texcoords)
    {
        float values[8];
        for (int i = 0; i < 8; ++i) {
            if (!ToFloat(vertex.values[i], values[i]))
                return false;
        }
        m_mesh.positions.push_back({values[0], values[1], values[2]});
        if (normals)
            m_mesh.normals.push_back({values[3], values[4], values[5]});
        if (texcoords)
            m_mesh.texcoords.push_back({values[6], values[7]});
        return true;
    }

    bool ReadFace(const Property& property)
    {
        if (property.name != "vertex_indices" && property.name != "vertex_index")
            return true;
        if (m_list.size() < 3)
            return true; // points and lines are no faces
        for (const double index : m_list) {
            if (!(index >= 0 && index <= 2147483647.0))
                return false;
            const int vertex = static_cast<int>(index);
            m_mesh.corners.push_back(
                {vertex, m_mesh.texcoords.empty() ? -1 : vertex, m_mesh.normals.empty() ? -1 : vertex});
        }
        m_mesh.faceSizes.push_back(static_cast<unsigned int>(m_list.size()));
        return true;
    }

    ValueReader& m_values;
    Mesh& m_mesh;
    std::vector<double> m_list;
};

/// The format has one index for all attributes of a vertex, so corners with equal indexes share a vertex.
class VertexTable
{
public:
    explicit VertexTable(const Mesh& mesh)
    {
        m_order.reserve(mesh.corners.size());
        for (std::size_t i = 0; i < mesh.corners.size(); ++i)
            m_order.push_back(i);
        const auto key = [&](std::size_t i) {
            const MeshCorner& corner = mesh.corners[i];
            return std::array<int, 3>{corner.position, corner.texcoord, corner.normal};
        };
        std::stable_sort(m_order.begin(), m_order.end(),
                         [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
        m_vertexOf.resize(m_order.size());
        for (std::size_t i = 0; i < m_order.size(); ++i) {
            if (i == 0 || key(m_order[i]) != key(m_order[i - 1]))
                m_vertices.push_back(mesh.corners[m_order[i]]);
            m_vertexOf[m_order[i]] = static_cast<int>(m_vertices.size() - 1);
        }
    }

    const std::vector<MeshCorner>& Vertices() const { return m_vertices; }
    int VertexOf(std::size_t corner) const { return m_vertexOf[corner]; }

private:
    std::vector<std::size_t> m_order;
    std::vector<MeshCorner> m_vertices;
    std::vector<int> m_vertexOf;
};

class BodyWriter
{
public:
    BodyWriter(std::string& out, bool binary) : m_out(out), m_binary(binary) {}

    template <typename T>
    void Add(T value)
    {
        if (m_binary) {
            AppendLittleEndian(m_out, value);
            return;
        }
        if (!m_lineStart)
            m_out += ' ';
        if constexpr (sizeof(T) == 1)
            AppendNumber(m_out, static_cast<int>(value));
        else
            AppendNumber(m_out, value);
        m_lineStart = false;
    }

    void EndRow()
    {
        if (!m_binary)
            m_out += '\n';
        m_lineStart = true;
    }

private:
    std::string& m_out;
    bool m_binary;
    bool m_lineStart = true;
};

template <std::size_t N>
void AddVector(BodyWriter& body, const std::vector<std::array<float, N>>& vectors, int index)
{
    for (std::size_t axis = 0; axis < N; ++axis)
        body.Add(index < 0 ? 0.0f : vectors[static_cast<std::size_t>(index)][axis]);
}

std::string HeaderText(const Mesh& mesh, std::size_t vertices, bool binary)
{
    std::string out = "ply\nformat ";
    out += binary ? "binary_little_endian" : "ascii";
    out += " 1.0\nelement vertex " + std::to_string(vertices);
    out += "\nproperty float x\nproperty float y\nproperty float z\n";
    if (!mesh.normals.empty())
        out += "property float nx\nproperty float ny\nproperty float nz\n";
    if (!mesh.texcoords.empty())
        out += "property float s\nproperty float t\n";
    out += "element face " + std::to_string(mesh.faceSizes.size());
    out += "\nproperty list uint int vertex_indices\nend_header\n";
    return out;
}

} // namespace

IO_FILE_RESULT ReadPly(const std::string& bytes, Mesh& mesh)
{
    TextScanner text(bytes);
    Header header;
    if (!ReadHeader(text, header))
        return IO_FILE_BAD_FORMAT;
    ValueReader values(text.Rest(), header.encoding);
    BodyReader body(values, mesh);
    for (const Element& element : header.elements) {
        if (!body.Read(element))
            return IO_FILE_BAD_FORMAT;
    }
    mesh.groups.push_back({CString(), -1, 0, mesh.faceSizes.size()});
    return IO_FILE_SUCCESS;
}

std::string PlyBytes(const Mesh& mesh, const WriteOptions& options)
{
    const VertexTable table(mesh);
    std::string out = HeaderText(mesh, table.Vertices().size(), options.binary);
    BodyWriter body(out, options.binary);
    for (const MeshCorner& vertex : table.Vertices()) {
        AddVector(body, mesh.positions, vertex.position);
        if (!mesh.normals.empty())
            AddVector(body, mesh.normals, vertex.normal);
        if (!mesh.texcoords.empty())
            AddVector(body, mesh.texcoords, vertex.texcoord);
        body.EndRow();
    }
    std::size_t corner = 0;
    for (const unsigned int size : mesh.faceSizes) {
        body.Add(static_cast<std::uint32_t>(size));
        for (unsigned int i = 0; i < size; ++i)
            body.Add(static_cast<std::int32_t>(table.VertexOf(corner++)));
        body.EndRow();
    }
    return out;
}

} // namespace mesh
