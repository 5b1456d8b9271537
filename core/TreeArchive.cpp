// The archive form of trees: docs/formats/tree.md.
#include "core/Tree.h"

#include "core/detail/TreeLinks.h"
#include "framework/base/Archive.h"

#include <memory>
#include <new>
#include <vector>

using vak::detail::TreeGrowth;

namespace {

enum Tag : unsigned int
{
    kEndOfChain = 0,
    kChildren = 1,
    kNoChildren = 2,
    kNode = 3,
    kRoot = 4
};

constexpr UINT kTreeSchema = 2;

[[noreturn]] void Throw(const CArchive& archive, int cause)
{
    AfxThrowArchiveException(cause, archive.m_strFileName);
}

unsigned int ReadTag(CArchive& archive)
{
    unsigned int tag = 0;
    archive >> tag;
    return tag;
}

/// What stands behind each node.
bool ReadHasChildren(CArchive& archive)
{
    const unsigned int tag = ReadTag(archive);
    if (tag != kChildren && tag != kNoChildren)
        Throw(archive, CArchiveException::badIndex);
    return tag == kChildren;
}

CTreeNode* ReadNode(CArchive& archive)
{
    const CRuntimeClass* const nodeClass = archive.ReadClass(RUNTIME_CLASS(CTreeNode));
    std::unique_ptr<CTreeNode> node(static_cast<CTreeNode*>(nodeClass->CreateObject()));
    if (node == nullptr)
        Throw(archive, CArchiveException::badClass);
    node->Serialize(archive);
    return node.release();
}

/// Reads the nodes of a chain, whose first tag is `tag`, and all that is below them.
void ReadChain(CArchive& archive, TreeGrowth& growth, unsigned int tag)
{
    for (;; tag = ReadTag(archive)) {
        if (tag == kEndOfChain) {
            if (!growth.Climb())
                return;
            continue;
        }
        if (tag != kNode)
            Throw(archive, CArchiveException::badIndex);
        growth.Add(ReadNode(archive));
        if (ReadHasChildren(archive))
            growth.Descend();
    }
}

} // namespace

void CTree::Serialize(CArchive& archive)
try {
    if (archive.IsStoring())
        WriteTree(archive);
    else
        ReadTree(archive);
} catch (CArchiveException* exception) {
    if (m_silent == 0)
        exception->ReportError();
    throw;
} catch (const std::bad_alloc&) {
    AfxThrowMemoryException();
}

void CTree::WriteTree(CArchive& archive)
{
    archive.WriteClass(RUNTIME_CLASS(CTree));
    NodeSerialize(m_root, archive);
}

void CTree::ReadTree(CArchive& archive)
{
    if (m_root == nullptr)
        Throw(archive, CArchiveException::genericException);
    DeleteAll();
    DeleteChilds(m_root->m_right);
    UINT schema = 0;
    archive.ReadClass(RUNTIME_CLASS(CTree), &schema);
    if (schema != kTreeSchema)
        Throw(archive, CArchiveException::badSchema);
    NodeSerialize(m_root, archive);
}

void CTree::NodeSerialize(CTreeNode* firstNode, CArchive& archive)
try {
    if (archive.IsStoring()) {
        WriteNodes(firstNode, archive);
        return;
    }
    if (firstNode == nullptr)
        Throw(archive, CArchiveException::genericException);
    TreeGrowth below(firstNode);
    TreeGrowth beside(firstNode->m_parent);
    const unsigned int tag = ReadTag(archive);
    if (tag != kRoot) {
        ReadChain(archive, below, tag);
    } else {
        if (ReadHasChildren(archive))
            ReadChain(archive, below, ReadTag(archive));
        ReadChain(archive, beside, ReadTag(archive));
    }
    below.AttachToParent();
    beside.AttachBeside(*firstNode);
} catch (const std::bad_alloc&) {
    AfxThrowMemoryException();
}

void CTree::WriteNodes(const CTreeNode* first, CArchive& archive) const
{
    std::vector<const CTreeNode*> path;
    const CTreeNode* node = first;
    for (;;) {
        while (node != nullptr) {
            if (node == m_root) {
                archive << unsigned{kRoot};
            } else {
                archive << unsigned{kNode};
                archive.WriteClass(node->GetRuntimeClass());
                const_cast<CTreeNode*>(node)->Serialize(archive);
            }
            archive << unsigned{node->m_child != nullptr ? kChildren : kNoChildren};
            if (node->m_child != nullptr)
                path.push_back(node);
            node = node->m_child != nullptr ? node->m_child : node->m_right;
        }
        archive << unsigned{kEndOfChain};
        if (path.empty())
            return;
        node = path.back()->m_right;
        path.pop_back();
    }
}
