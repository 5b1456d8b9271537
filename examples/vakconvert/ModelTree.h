#pragma once

#include "core/Tree.h"
#include "examples/sdk/Mesh.h"
#include "examples/vakconvert/Console.h"
#include "examples/vakconvert/Settings.h"

#include <vector>

/// The structure of models as a tree that can be stored: each model is a top-level node, below it its groups
/// and materials, below a material its colours. The node classes are found by name when the tree is read.
class ModelTree : public CTree
{
    DECLARE_SERIAL(ModelTree)

public:
    ModelTree();

    void AddModel(const CString& name, const Mesh& mesh);

    /// The tree as the bytes of an archive, and back; what is wrong with the bytes is thrown as
    /// CTree::Serialize does.
    std::vector<BYTE> ToArchive();
    void FromArchive(std::vector<BYTE>& bytes);

    /// A line for each node, indented by its depth.
    CString Lines();
};

/// Shows the structure of the models among the sources, from a tree that was stored and read back. Returns
/// the program's exit code.
int ShowModels(const Console& console, const Settings& settings);
