#include "examples/sdk/ImageParser.h"
#include "examples/sdk/MeshParser.h"
#include "files/FileIo.h"
#include "files/IoPlugins.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <tuple>

namespace {

/// The plug-ins as a host finds them, loaded for as long as the program runs its cases.
class Plugins : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        RegisterIOPlugins(kIoPlugin3D);
        RegisterIOPlugins(kIoPluginBitmaps);
    }
    static void TearDownTestSuite()
    {
        FreeIOPlugins(kIoPluginBitmaps);
        FreeIOPlugins(kIoPlugin3D);
    }

    template <class PARSER, class DATA>
    static IO_FILE_RESULT Use(const CString& path, bool loading, DATA& data,
                              const CCustomData& parameters = {})
    {
        CFileIo io(CFileNameSpec(path, 0),
                   FILE_PARSER_SILENT | FILE_PARSER_NO_PREFERENCES | (loading ? FILE_PARSER_LOADING : 0u),
                   nullptr);
        io.GetCustomData() = parameters;
        auto* parser = static_cast<PARSER*>(io.InitParser());
        if (parser == nullptr)
            return IO_FILE_UNKNOWN_TYPE;
        return loading ? parser->Load(data) : parser->Save(data);
    }

    /// What comes back when `data` is saved under that name and loaded again.
    template <class PARSER, class DATA>
    DATA ThroughAFile(const char* name, DATA data, const CCustomData& parameters = {})
    {
        const CString path = m_folder.Path(name);
        EXPECT_EQ(Use<PARSER>(path, false, data, parameters), IO_FILE_SUCCESS);
        DATA loaded;
        EXPECT_EQ(Use<PARSER>(path, true, loaded), IO_FILE_SUCCESS);
        return loaded;
    }

    IO_FILE_RESULT LoadMesh(const char* name, std::string_view bytes, Mesh& mesh)
    {
        return Use<CMeshParser>(m_folder.Write(name, bytes), true, mesh);
    }
    IO_FILE_RESULT LoadImage(const char* name, std::string_view bytes, Image& image)
    {
        return Use<CImageParser>(m_folder.Write(name, bytes), true, image);
    }

    vak::test::TempFolder m_folder;
};

CCustomData Binary(bool on)
{
    CCustomData parameters;
    parameters.SetBool('BINA', on);
    return parameters;
}

/// A quad and a triangle that share two positions, with attributes and two materials.
Mesh TwoFaces()
{
    Mesh mesh;
    mesh.positions = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0.5f, 2, -0.25f}};
    mesh.texcoords = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    mesh.normals = {{0, 0, 1}};
    mesh.corners = {{0, 0, 0}, {1, 1, 0}, {2, 2, 0}, {3, 3, 0}, {3, 0, 0}, {2, 1, 0}, {4, 2, 0}};
    mesh.faceSizes = {4, 3};
    mesh.materials = {{L"bois", {}, {0.5f, 0.25f, 0}, {}, 8, 1, {}},
                      {L"bois", {}, {0, 0, 1}, {}, 1, 0.5f, {}}};
    mesh.groups = {{L"mur", 0, 0, 1}, {L"pignon", 1, 1, 1}};
    return mesh;
}

/// The faces as their corners' positions, which every format keeps.
std::vector<std::vector<std::array<float, 3>>> Outlines(const Mesh& mesh)
{
    std::vector<std::vector<std::array<float, 3>>> outlines;
    std::size_t corner = 0;
    for (const unsigned int size : mesh.faceSizes) {
        auto& outline = outlines.emplace_back();
        for (unsigned int i = 0; i < size; ++i)
            outline.push_back(mesh.positions[static_cast<std::size_t>(mesh.corners[corner++].position)]);
    }
    return outlines;
}

} // namespace

TEST_F(Plugins, MeshesComeBackFromEveryFormAsTheyWere)
{
    const Mesh mesh = TwoFaces();
    for (const auto& [name, binary] : {std::pair("a.ply", false), {"a.ply", true}, {"été 1.obj", false}}) {
        SCOPED_TRACE(name);
        const Mesh loaded = ThroughAFile<CMeshParser>(name, mesh, Binary(binary));
        EXPECT_EQ(Outlines(loaded), Outlines(mesh));
        ASSERT_EQ(loaded.corners.size(), 7u);
        for (std::size_t i = 0; i < 7; ++i) {
            const auto texcoord = static_cast<std::size_t>(loaded.corners[i].texcoord);
            EXPECT_EQ(loaded.texcoords.at(texcoord),
                      mesh.texcoords[static_cast<std::size_t>(mesh.corners[i].texcoord)]);
        }
    }
    EXPECT_TRUE(m_folder.Has("été_1.mtl")) << "the format separates names by blanks";
}

TEST_F(Plugins, TriangleFilesFanPolygonsAndScaleThem)
{
    for (const bool binary : {false, true}) {
        CCustomData parameters = Binary(binary);
        parameters.SetFloat('SCAL', 2.0f);
        const Mesh mesh = ThroughAFile<CMeshParser>("a.stl", TwoFaces(), parameters);
        using V = std::array<float, 3>;
        const std::vector<std::vector<V>> wanted{{V{0, 0, 0}, V{2, 0, 0}, V{2, 2, 0}},
                                                 {V{0, 0, 0}, V{2, 2, 0}, V{0, 2, 0}},
                                                 {V{0, 2, 0}, V{2, 2, 0}, V{1, 4, -0.5f}}};
        EXPECT_EQ(Outlines(mesh), wanted);
        EXPECT_EQ(mesh.positions.size(), 5u) << "equal positions are shared again";
    }
}

TEST_F(Plugins, DamagedMeshesAreRefusedBeforeAnythingIsAllocatedForThem)
{
    const std::string vertices = "property float x\nproperty float y\nproperty float z\n";
    const std::string face = "element face 1\nproperty list uchar int vertex_indices\nend_header\n";
    const std::string three =
        "ply\nformat ascii 1.0\nelement vertex 3\n" + vertices + face + "0 0 0\n1 0 0\n0 1 0\n";
    const std::string solid = "solid a\nfacet normal 0 0 0\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n";
    std::string binary(84, '\0');
    binary[80] = binary[81] = binary[82] = binary[83] = '\xFF';
    std::string nan(84 + 50, '\0');
    nan[80] = 1;
    nan[84 + 14] = '\xC0';
    nan[84 + 15] = '\x7F';
    const std::tuple<const char*, const char*, std::string, IO_FILE_RESULT> rows[] = {
        {"nothing wrong", "a.ply", three + "3 0 1 2\n", IO_FILE_SUCCESS},
        {"index outside", "a.ply", three + "3 0 1 3\n", IO_FILE_BAD_FORMAT},
        {"list longer than the file", "a.ply", three + "200 0 1 2\n", IO_FILE_BAD_FORMAT},
        {"no faces", "a.ply", three + "2 0 1\n", IO_FILE_EMPTY},
        {"count beyond the file", "a.ply",
         "ply\nformat binary_little_endian 1.0\nelement vertex 4000000000\n" + vertices + face + "1234",
         IO_FILE_BAD_FORMAT},
        {"list count beyond the file", "a.ply",
         "ply\nformat binary_big_endian 1.0\nelement face 1\nproperty list uint int "
         "vertex_indices\nend_header\n\x7F\xFF\xFF\xFF",
         IO_FILE_BAD_FORMAT},
        {"header without end", "a.ply", "ply\nformat ascii 1.0\nelement vertex 3\n", IO_FILE_BAD_FORMAT},
        {"loop without end", "a.stl", solid, IO_FILE_BAD_FORMAT},
        {"count beyond the file", "a.stl", binary, IO_FILE_BAD_FORMAT},
        {"coordinate that is no number", "a.stl", nan, IO_FILE_BAD_FORMAT},
        {"index outside", "a.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 4\n", IO_FILE_BAD_FORMAT},
        {"empty file", "a.obj", "", IO_FILE_EMPTY},
    };
    for (const auto& [defect, name, bytes, result] : rows) {
        Mesh mesh = TwoFaces();
        EXPECT_EQ(LoadMesh(name, bytes, mesh), result) << name << ": " << defect;
        EXPECT_EQ(mesh.positions.empty(), result != IO_FILE_SUCCESS) << name << ": " << defect;
    }
}

TEST_F(Plugins, MeshesCutAnywhereAreRefusedOrConsistent)
{
    for (const auto& [name, binary] :
         std::map<std::string, bool>{{"b.stl", true}, {"t.stl", false}, {"b.ply", true}}) {
        Mesh mesh = TwoFaces();
        ASSERT_EQ(Use<CMeshParser>(m_folder.Path(name), false, mesh, Binary(binary)), IO_FILE_SUCCESS);
        const std::string whole = m_folder.Read(name);
        for (std::size_t length = 0; length + 1 < whole.size(); length += 7) {
            const IO_FILE_RESULT result = LoadMesh(name.c_str(), whole.substr(0, length), mesh);
            // A text may end between two solids, or within the last one's name.
            EXPECT_TRUE(result != IO_FILE_SUCCESS || (!binary && mesh.IsConsistent()))
                << name << " cut to " << length;
        }
    }
}

TEST_F(Plugins, PicturesComeBackFromEveryLosslessFormAsTheyWere)
{
    for (const unsigned int channels : {1u, 2u, 3u, 4u}) {
        Image image{5, 3, channels, {}};
        for (unsigned int i = 0; i < 15 * channels; ++i)
            image.pixels.push_back(static_cast<std::uint8_t>(i * 37));
        for (const int compress : {0, 1}) {
            CCustomData parameters;
            parameters.SetBool('RLE ', compress);
            for (const char* name : {"a.png", "a.tga", "a.bmp"}) {
                if (name == std::string("a.bmp") && channels != 3)
                    continue;
                const Image loaded = ThroughAFile<CImageParser>(name, image, parameters);
                EXPECT_EQ(loaded.channels, channels) << name;
                EXPECT_EQ(loaded.pixels, image.pixels) << name << ", " << channels << " channels";
            }
        }
    }
}

TEST_F(Plugins, FormatsWithoutAlphaShowThePictureOverWhite)
{
    const Image hidden{8, 8, 4, std::vector<std::uint8_t>(256, 0)};
    for (const char* name : {"a.bmp", "a.jpg"})
        EXPECT_GE(ThroughAFile<CImageParser>(name, hidden).pixels.at(0), 254) << name;
}

TEST_F(Plugins, DamagedPicturesAreRefused)
{
    std::string bomb("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\xEA\x60\0\0\xEA\x60\x08\x06\0\0\0\0\0\0\0", 33);
    const std::tuple<const char*, std::string, IO_FILE_RESULT> rows[] = {
        {"60000 x 60000 pixels in 33 bytes.png", bomb, IO_FILE_BAD_FORMAT},
        {"not what it says.png", "BM and more text than a header has, so that the size is no reason",
         IO_FILE_BAD_FORMAT},
        {"cut.jpg", "\xFF\xD8\xFF\xE0", IO_FILE_BAD_FORMAT},
        {"empty.bmp", "", IO_FILE_EMPTY},
        {"header only.tga", std::string("\0\0\2\0\0\0\0\0\0\0\0\0\xFF\x7F\xFF\x7F\x18\0", 18),
         IO_FILE_BAD_FORMAT},
    };
    for (const auto& [name, bytes, result] : rows) {
        Image image{1, 1, 1, {0}};
        EXPECT_EQ(LoadImage(name, bytes, image), result) << name;
        EXPECT_TRUE(image.pixels.empty()) << name;
    }
}

TEST_F(Plugins, ObjectFilesKeepGroupsAndMaterialsOfTheSameName)
{
    Mesh mesh = TwoFaces();
    ASSERT_EQ(Use<CMeshParser>(m_folder.Path("été 1.obj"), false, mesh), IO_FILE_SUCCESS);
    EXPECT_TRUE(m_folder.Has("été_1.mtl")) << "the format separates names by blanks";
    ASSERT_EQ(Use<CMeshParser>(m_folder.Path("été 1.obj"), true, mesh), IO_FILE_SUCCESS);
    ASSERT_EQ(mesh.groups.size(), 2u);
    EXPECT_EQ(mesh.groups[1].name, L"pignon");
    ASSERT_EQ(mesh.materials.size(), 2u);
    const MeshMaterial& second = mesh.materials[static_cast<std::size_t>(mesh.groups[1].material)];
    EXPECT_EQ(second.diffuse[2], 1.0f);
    EXPECT_EQ(second.opacity, 0.5f);
}
