#include "examples/plugins/mesh/MeshFormat.h"
#include "examples/sdk/FileBytes.h"
#include "examples/sdk/OptionsSheet.h"
#include "examples/sdk/PluginExport.h"

#include "files/FileExt.h"
#include "files/FileIo.h"
#include "files/FileKinds.h"
#include "files/FilePath.h"
#include "files/IoPlugins.h"

/// The plug-in for polygon meshes: Wavefront object files, stereo-lithography files in both forms, polygon
/// files in all three encodings.

namespace mesh {

namespace {

constexpr unsigned int kObjClass = 'WOBJ';
constexpr unsigned int kStlClass = 'STL ';
constexpr unsigned int kPlyClass = 'PLY ';

constexpr FormatOption kScale{.name = L"scale",
                              .id = kScaleOption,
                              .kind = FormatOption::Kind::Float,
                              .defaultValue = 1.0,
                              .minimum = 1e-6,
                              .maximum = 1e6,
                              .description = L"factor for all positions",
                              .label = L"&Facteur d'échelle",
                              .tip = L"multiplie toutes les coordonnées"};
constexpr FormatOption kBinary{.name = L"binary",
                               .id = kBinaryOption,
                               .kind = FormatOption::Kind::Boolean,
                               .defaultValue = 1.0,
                               .minimum = 0.0,
                               .maximum = 1.0,
                               .description = L"binary form instead of text",
                               .label = L"Forme &binaire",
                               .tip = L"sinon le fichier est un texte"};

class Parser : public CMeshParser
{
public:
    Parser(CFileIo* io, unsigned int fileClass) : CMeshParser(io), m_io(*io), m_class(fileClass) {}

    IO_FILE_RESULT Load(Mesh& mesh) override
    {
        std::string bytes;
        mesh = Mesh();
        IO_FILE_RESULT result = ReadFileBytes(m_io.GetCompleteName(), bytes);
        if (result == IO_FILE_SUCCESS)
            result = bytes.empty() ? IO_FILE_EMPTY : Read(bytes, mesh);
        if (result == IO_FILE_SUCCESS)
            result = Check(mesh);
        if (result != IO_FILE_SUCCESS)
            mesh = Mesh();
        return result;
    }

    IO_FILE_RESULT Save(const Mesh& mesh) override
    {
        if (mesh.faceSizes.empty())
            return IO_FILE_NOTHING_TO_SAVE;
        if (!AskForOptions(m_io, GetOptions()))
            return IO_FILE_ABORTED;
        const float scale = static_cast<float>(GetFormatOption(m_io.GetCustomData(), kScale));
        if (scale == 1.0f)
            return Write(mesh);
        Mesh scaled = mesh;
        for (auto& position : scaled.positions) {
            for (float& value : position)
                value *= scale;
        }
        return Write(scaled);
    }

    FormatOptions GetOptions() const override
    {
        if (m_io.IsLoading())
            return {};
        return m_class == kObjClass ? FormatOptions{kScale} : FormatOptions{kScale, kBinary};
    }

private:
    IO_FILE_RESULT Read(const std::string& bytes, Mesh& mesh) const
    {
        if (m_class == kObjClass)
            return ReadObj(bytes, m_io.GetCompleteName(), mesh);
        return m_class == kStlClass ? ReadStl(bytes, mesh) : ReadPly(bytes, mesh);
    }

    static IO_FILE_RESULT Check(const Mesh& mesh)
    {
        if (mesh.faceSizes.empty())
            return IO_FILE_EMPTY;
        return mesh.IsConsistent() ? IO_FILE_SUCCESS : IO_FILE_BAD_FORMAT;
    }

    IO_FILE_RESULT Write(const Mesh& mesh) const
    {
        const CString path = m_io.GetCompleteName();
        const WriteOptions options{GetFormatOption(m_io.GetCustomData(), kBinary) != 0.0};
        if (m_class == kStlClass)
            return WriteFileBytes(path, StlBytes(mesh, options));
        if (m_class == kPlyClass)
            return WriteFileBytes(path, PlyBytes(mesh, options));
        std::string materials;
        CString materialName = fileStripPath(path, 1) + L".mtl";
        materialName.Replace(L' ', L'_'); // the format separates names by blanks
        const std::string text = ObjText(mesh, materialName, materials);
        const IO_FILE_RESULT result = WriteFileBytes(path, text);
        if (result != IO_FILE_SUCCESS || materials.empty())
            return result;
        return WriteFileBytes(fileStripName(path) + materialName, materials);
    }

    CFileIo& m_io;
    unsigned int m_class;
};

int Declare(CFileExtArray& kinds)
{
    constexpr unsigned int kReadAndWrite = 0x4000 | 0x1 | 0x2;
    kinds.Add(CFileExt(L"Wavefront object files", L".obj", kObjClass, kReadAndWrite, 'PLGP', 'PLGP'));
    kinds.Add(CFileExt(L"Stereolithography files", L".stl", kStlClass, kReadAndWrite, 'PLGP', 'PLGP'));
    kinds.Add(CFileExt(L"Polygon files", L".ply", kPlyClass, kReadAndWrite, 'PLGP', 'PLGP'));
    return 1;
}

} // namespace

} // namespace mesh

VAK_PLUGIN_EXPORT unsigned int GetLibraryVersion()
{
    return vak::kInterfaceVersion;
}

VAK_PLUGIN_EXPORT int Init3DParser(IoPluginMode mode, void* data)
{
    if (mode == IoPluginDeclare)
        return mesh::Declare(*static_cast<CFileExtArray*>(data));
    auto& request = *static_cast<IoParserRequest*>(data);
    request.parser = new mesh::Parser(request.fileIo, request.fileClass);
    return 1;
}
