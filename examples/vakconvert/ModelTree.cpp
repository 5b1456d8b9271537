#include "examples/vakconvert/ModelTree.h"

#include "core/RGBColor.h"
#include "examples/vakconvert/Archives.h"
#include "examples/vakconvert/Batch.h"
#include "examples/vakconvert/Conversion.h"
#include "examples/vakconvert/Sources.h"
#include "files/FileKinds.h"
#include "files/FilePath.h"
#include "files/FileText.h"
#include "files/IoPlugins.h"
#include "framework/base/Archive.h"
#include "framework/base/MemFile.h"

namespace {

// The values of the nodes.
constexpr unsigned int kName = 'NAME';
constexpr unsigned int kVertices = 'VERT';
constexpr unsigned int kFaces = 'FACE';
constexpr unsigned int kMaterial = 'MATL';
constexpr unsigned int kShininess = 'SHIN';
constexpr unsigned int kOpacity = 'OPAC';
constexpr unsigned int kMap = 'MAP ';

CString TextOf(const CTreeNode& node, unsigned int id)
{
    CString text;
    node.GetCustomData().GetString(id, text, L"");
    return text;
}

CString NumberOf(const CTreeNode& node, unsigned int id, const wchar_t* one, const wchar_t* many)
{
    ULONGLONG number = 0;
    node.GetCustomData().GetULongLong(id, number, 0);
    CString text;
    text.Format(L"%I64u %s", number, number == 1 ? one : many);
    return text;
}

float FloatOf(const CTreeNode& node, unsigned int id)
{
    float value = 0;
    node.GetCustomData().GetFloat(id, value, 0);
    return value;
}

CString Named(const CTreeNode& node, const wchar_t* unnamed)
{
    const CString name = TextOf(node, kName);
    return name.IsEmpty() ? CString(unnamed) : name;
}

} // namespace

/// A model: its file name, how many vertices and faces it has.
class ModelNode : public CTreeNode
{
    DECLARE_SERIAL(ModelNode)

public:
    CString GetDisplayName() const override
    {
        return TextOf(*this, kName) + L": " + NumberOf(*this, kVertices, L"vertex", L"vertices") + L", " +
               NumberOf(*this, kFaces, L"face", L"faces");
    }
};

/// A group of faces and the name of its material.
class GroupNode : public CTreeNode
{
    DECLARE_SERIAL(GroupNode)

public:
    CString GetDisplayName() const override
    {
        const CString material = TextOf(*this, kMaterial);
        return L"group " + Named(*this, L"without a name") + L": " +
               NumberOf(*this, kFaces, L"face", L"faces") + (material.IsEmpty() ? L"" : L" of " + material);
    }
};

/// A material; its colours are its children.
class MaterialNode : public CTreeNode
{
    DECLARE_SERIAL(MaterialNode)

public:
    CString GetDisplayName() const override
    {
        CString text;
        text.Format(L"material %s: shininess %g, opacity %g", Named(*this, L"without a name").GetString(),
                    FloatOf(*this, kShininess), FloatOf(*this, kOpacity));
        const CString map = TextOf(*this, kMap);
        return map.IsEmpty() ? text : text + L", picture " + map;
    }
};

/// A colour of a material. It is no value of the store but a member, so the class copies, compares and stores
/// it itself.
class ColorNode : public CTreeNode
{
    DECLARE_SERIAL(ColorNode)

public:
    ColorNode() = default;
    ColorNode(const wchar_t* role, const std::array<float, 3>& channels)
        : m_color(channels[0], channels[1], channels[2], 255.0f)
    {
        GetCustomData().SetString(kName, role);
    }

    CString GetDisplayName() const override { return TextOf(*this, kName) + L"  " + m_color.GetString(); }
    CTreeNode* Copy() const override
    {
        auto* const copy = static_cast<ColorNode*>(CTreeNode::Copy());
        copy->m_color = m_color;
        return copy;
    }
    CTreeNode* Clone() const override { return Copy(); }
    int operator==(const CTreeNode& other) const override
    {
        const auto* const color = dynamic_cast<const ColorNode*>(&other);
        return color != nullptr && color->m_color == m_color && TextOf(*color, kName) == TextOf(*this, kName);
    }
    void Serialize(CArchive& archive) override
    {
        CTreeNode::Serialize(archive);
        m_color.Serialize(archive);
    }

private:
    CRGBColor m_color;
};

IMPLEMENT_SERIAL(ModelTree, CTree, VERSIONABLE_SCHEMA | 2)
IMPLEMENT_SERIAL(ModelNode, CTreeNode, VERSIONABLE_SCHEMA | 2)
IMPLEMENT_SERIAL(GroupNode, CTreeNode, VERSIONABLE_SCHEMA | 2)
IMPLEMENT_SERIAL(MaterialNode, CTreeNode, VERSIONABLE_SCHEMA | 2)
IMPLEMENT_SERIAL(ColorNode, CTreeNode, VERSIONABLE_SCHEMA | 2)

namespace {

/// Appends each node's line.
class LineWriter : public TreeTraversalCallback
{
public:
    LineWriter(CTree* tree, CString& lines) : TreeTraversalCallback(tree), m_lines(lines) {}

    int Visit(CTreeNode* node, int code) override
    {
        if (code != vak::traversal::Leaving)
            m_lines += CString(L' ', 2 * (CTree::GetDepth(node) - 1)) + node->GetDisplayName() + L"\n";
        return 1;
    }

private:
    CString& m_lines;
};

void AddMaterial(ModelTree& tree, CTreeNode* model, const MeshMaterial& material)
{
    auto* const node = new MaterialNode;
    tree.AddChild(model, node, 1);
    CCustomData& values = node->GetCustomData();
    values.SetString(kName, material.name);
    values.SetFloat(kShininess, material.shininess);
    values.SetFloat(kOpacity, material.opacity);
    if (!material.diffuseMap.IsEmpty())
        values.SetString(kMap, material.diffuseMap);
    tree.AddChild(node, new ColorNode(L"ambient", material.ambient), 1);
    tree.AddChild(node, new ColorNode(L"diffuse", material.diffuse), 1);
    tree.AddChild(node, new ColorNode(L"specular", material.specular), 1);
}

void AddGroup(ModelTree& tree, CTreeNode* model, const MeshGroup& group, const Mesh& mesh)
{
    auto* const node = new GroupNode;
    tree.AddChild(model, node, 1);
    CCustomData& values = node->GetCustomData();
    values.SetString(kName, group.name);
    values.SetULongLong(kFaces, group.faceCount);
    if (group.material >= 0)
        values.SetString(kMaterial, mesh.materials[static_cast<std::size_t>(group.material)].name);
}

} // namespace

ModelTree::ModelTree()
{
    SetRoot(new CTreeNode);
}

void ModelTree::AddModel(const CString& name, const Mesh& mesh)
{
    auto* const model = new ModelNode;
    AddChild(nullptr, model, 1);
    CCustomData& values = model->GetCustomData();
    values.SetString(kName, name);
    values.SetULongLong(kVertices, mesh.positions.size());
    values.SetULongLong(kFaces, mesh.faceSizes.size());
    for (const MeshGroup& group : mesh.groups)
        AddGroup(*this, model, group, mesh);
    for (const MeshMaterial& material : mesh.materials)
        AddMaterial(*this, model, material);
}

std::vector<BYTE> ModelTree::ToArchive()
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    Serialize(archive);
    archive.Close();
    std::vector<BYTE> bytes(static_cast<std::size_t>(file.GetLength()));
    file.SeekToBegin();
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

void ModelTree::FromArchive(std::vector<BYTE>& bytes)
{
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive archive(&file, CArchive::load);
    Serialize(archive);
}

CString ModelTree::Lines()
{
    CString lines;
    LineWriter writer(this, lines);
    DoTraversal(nullptr, TreeTraversalBelow, &writer);
    return lines;
}

namespace {

/// What the tree is after it was written and read back.
CString LinesFromArchive(ModelTree& tree)
{
    std::vector<BYTE> bytes = tree.ToArchive();
    ModelTree shown;
    shown.FromArchive(bytes);
    CString total;
    total.Format(L"%d nodes, %s in the archive\n", shown.GetChildNbr(nullptr, 0),
                 fileGetSizeText(bytes.size()).GetString());
    return shown.Lines() + total;
}

} // namespace

int ShowModels(const Console& console, const Settings& settings)
{
    std::vector<CString> problems;
    Archives archives;
    const std::vector<Source> sources = FindSources(settings, Batch(settings), archives, problems);
    ModelTree tree;
    for (const Source& source : sources) {
        if (source.failure.IsEmpty() && !source.named && (fileGetKindOf(source.path) & kIoPlugin3D) == 0)
            continue;
        Mesh mesh;
        const CString failure = source.failure.IsEmpty() ? LoadModel(source.path, mesh) : source.failure;
        if (failure.IsEmpty())
            tree.AddModel(ShownName(source), mesh);
        else
            problems.push_back(FullName(source) + L": " + failure);
    }
    console.Print(tree.IsEmpty() ? CString(L"no models to show\n") : LinesFromArchive(tree));
    for (const CString& problem : problems)
        console.PrintError(L"vakconvert: " + problem + L"\n");
    return problems.empty() ? 0 : 1;
}
