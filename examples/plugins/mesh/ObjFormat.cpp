#include "examples/plugins/mesh/MeshFormat.h"
#include "examples/plugins/mesh/Text.h"
#include "examples/sdk/FileBytes.h"
#include "examples/sdk/Utf8.h"

#include "files/FilePath.h"

#define TINYOBJLOADER_IMPLEMENTATION
#include <tiny_obj_loader.h>

#include <sstream>

namespace mesh {

namespace {

/// Finds material libraries beside the object file, through the library, so that every name that the file
/// system can hold works.
class MaterialsBeside : public tinyobj::MaterialReader
{
public:
    explicit MaterialsBeside(const CString& folder) : m_folder(folder) {}

    bool operator()(const std::string& name, std::vector<tinyobj::material_t>* materials,
                    std::map<std::string, int>* indexes, std::string* warning, std::string* error) override
    {
        std::string bytes;
        // A library is looked for by its bare name: an object file cannot make us read elsewhere.
        const CString bare = fileStripPath(Backslashes(FromUtf8(name)), 0);
        if (bare.IsEmpty() || ReadFileBytes(m_folder + bare, bytes) != IO_FILE_SUCCESS)
            return false;
        std::istringstream stream(bytes);
        tinyobj::LoadMtl(indexes, materials, &stream, warning, error);
        return true;
    }

private:
    static CString Backslashes(CString path)
    {
        path.Replace(L'/', L'\\');
        return path;
    }

    CString m_folder;
};

std::array<float, 3> Colour(const tinyobj::real_t (&values)[3])
{
    return {values[0], values[1], values[2]};
}

void TakeMaterials(const std::vector<tinyobj::material_t>& materials, Mesh& mesh)
{
    for (const tinyobj::material_t& material : materials) {
        MeshMaterial& taken = mesh.materials.emplace_back();
        taken.name = FromUtf8(material.name);
        taken.ambient = Colour(material.ambient);
        taken.diffuse = Colour(material.diffuse);
        taken.specular = Colour(material.specular);
        taken.shininess = material.shininess;
        taken.opacity = material.dissolve;
        taken.diffuseMap = FromUtf8(material.diffuse_texname);
    }
}

template <std::size_t N>
void TakeVectors(const std::vector<tinyobj::real_t>& values, std::vector<std::array<float, N>>& vectors)
{
    vectors.resize(values.size() / N);
    for (std::size_t i = 0; i < vectors.size(); ++i) {
        for (std::size_t axis = 0; axis < N; ++axis)
            vectors[i][axis] = values[N * i + axis];
    }
}

/// Adds the shape's faces, one group for each run of faces with the same material.
void TakeShape(const tinyobj::shape_t& shape, Mesh& mesh)
{
    const tinyobj::mesh_t& faces = shape.mesh;
    std::size_t corner = 0;
    for (std::size_t face = 0; face < faces.num_face_vertices.size(); ++face) {
        const unsigned int size = faces.num_face_vertices[face];
        if (size >= 3) {
            const int material = face < faces.material_ids.size() ? faces.material_ids[face] : -1;
            if (face == 0 || mesh.groups.empty() || mesh.groups.back().material != material)
                mesh.groups.push_back({FromUtf8(shape.name), material, mesh.faceSizes.size(), 0});
            ++mesh.groups.back().faceCount;
            mesh.faceSizes.push_back(size);
            for (std::size_t i = corner; i < corner + size; ++i) {
                const tinyobj::index_t& index = faces.indices[i];
                mesh.corners.push_back({index.vertex_index, index.texcoord_index, index.normal_index});
            }
        }
        corner += size;
    }
}

void AppendVector(std::string& out, const char* keyword, const float* values, std::size_t count)
{
    out += keyword;
    for (std::size_t i = 0; i < count; ++i) {
        out += ' ';
        AppendNumber(out, values[i]);
    }
    out += '\n';
}

/// A name as one word, since the format separates words by blanks.
std::string WordOf(const CString& name)
{
    std::string word = ToUtf8(name);
    for (char& c : word) {
        if (static_cast<unsigned char>(c) <= ' ')
            c = '_';
    }
    return word.empty() ? "unnamed" : word;
}

/// Names of materials are keys in this format: equal ones get a number.
std::vector<std::string> MaterialWords(const Mesh& mesh)
{
    std::vector<std::string> words;
    std::map<std::string, int> taken;
    for (const MeshMaterial& material : mesh.materials) {
        const std::string stem = WordOf(material.name);
        std::string word = stem;
        while (taken.count(word) != 0)
            word = stem + "_" + std::to_string(++taken[stem]);
        taken.emplace(word, 1);
        words.push_back(word);
    }
    return words;
}

std::string MaterialText(const Mesh& mesh, const std::vector<std::string>& words)
{
    std::string out;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const MeshMaterial& material = mesh.materials[i];
        out += "newmtl " + words[i] + "\n";
        AppendVector(out, "Ka", material.ambient.data(), 3);
        AppendVector(out, "Kd", material.diffuse.data(), 3);
        AppendVector(out, "Ks", material.specular.data(), 3);
        AppendVector(out, "Ns", &material.shininess, 1);
        AppendVector(out, "d", &material.opacity, 1);
        if (!material.diffuseMap.IsEmpty())
            out += "map_Kd " + ToUtf8(material.diffuseMap) + "\n";
    }
    return out;
}

void AppendCorner(std::string& out, const MeshCorner& corner)
{
    out += ' ';
    AppendNumber(out, corner.position + 1);
    if (corner.texcoord < 0 && corner.normal < 0)
        return;
    out += '/';
    if (corner.texcoord >= 0)
        AppendNumber(out, corner.texcoord + 1);
    if (corner.normal >= 0) {
        out += '/';
        AppendNumber(out, corner.normal + 1);
    }
}

} // namespace

IO_FILE_RESULT ReadObj(const std::string& bytes, const CString& path, Mesh& mesh)
{
    tinyobj::attrib_t attributes;
    std::vector<tinyobj::shape_t> shapes;
    std::vector<tinyobj::material_t> materials;
    std::string warning;
    std::string error;
    std::istringstream stream(bytes);
    MaterialsBeside beside(fileStripName(path));
    constexpr bool kTriangulate = false;
    constexpr bool kColoursFallback = false;
    if (!tinyobj::LoadObj(&attributes, &shapes, &materials, &warning, &error, &stream, &beside, kTriangulate,
                          kColoursFallback))
        return IO_FILE_BAD_FORMAT;
    TakeVectors(attributes.vertices, mesh.positions);
    TakeVectors(attributes.texcoords, mesh.texcoords);
    TakeVectors(attributes.normals, mesh.normals);
    TakeMaterials(materials, mesh);
    for (const tinyobj::shape_t& shape : shapes)
        TakeShape(shape, mesh);
    return IO_FILE_SUCCESS;
}

std::string ObjText(const Mesh& mesh, const CString& materialName, std::string& materialText)
{
    std::string out;
    const std::vector<std::string> words = MaterialWords(mesh);
    materialText = MaterialText(mesh, words);
    if (!materialText.empty())
        out += "mtllib " + ToUtf8(materialName) + "\n";
    for (const auto& position : mesh.positions)
        AppendVector(out, "v", position.data(), 3);
    for (const auto& texcoord : mesh.texcoords)
        AppendVector(out, "vt", texcoord.data(), 2);
    for (const auto& normal : mesh.normals)
        AppendVector(out, "vn", normal.data(), 3);
    std::size_t corner = 0;
    std::size_t group = 0;
    for (std::size_t face = 0; face < mesh.faceSizes.size(); ++face) {
        for (; group < mesh.groups.size() && mesh.groups[group].firstFace == face; ++group) {
            out += "g " + WordOf(mesh.groups[group].name) + "\n";
            if (mesh.groups[group].material >= 0)
                out += "usemtl " + words[static_cast<std::size_t>(mesh.groups[group].material)] + "\n";
        }
        out += 'f';
        for (unsigned int i = 0; i < mesh.faceSizes[face]; ++i)
            AppendCorner(out, mesh.corners[corner++]);
        out += '\n';
    }
    return out;
}

} // namespace mesh
