#pragma once

#include "examples/sdk/MeshParser.h"

#include <string>
#include <string_view>

/// The formats of this plug-in, as functions between bytes and a mesh; files and options are the parser's.
/// Readers take untrusted bytes: every declared count is held against the bytes that are there before
/// anything is allocated for it. They return the documented results of `CMeshParser` and may leave `mesh`
/// half filled.
namespace mesh {

/// Options of the writers, the same identifiers for every format.
constexpr unsigned int kBinaryOption = 'BINA';
constexpr unsigned int kScaleOption = 'SCAL';

struct WriteOptions
{
    bool binary = false;
};

/// `path` is the object file's, for the material libraries that stand beside it.
IO_FILE_RESULT ReadObj(const std::string& bytes, const CString& path, Mesh& mesh);
IO_FILE_RESULT ReadStl(const std::string& bytes, Mesh& mesh);
IO_FILE_RESULT ReadPly(const std::string& bytes, Mesh& mesh);

/// The object file's text; `materialText` is empty when the mesh has no materials, else what to write as
/// `materialName`, to which the object file refers.
std::string ObjText(const Mesh& mesh, const CString& materialName, std::string& materialText);
std::string StlBytes(const Mesh& mesh, const WriteOptions& options);
std::string PlyBytes(const Mesh& mesh, const WriteOptions& options);

} // namespace mesh
