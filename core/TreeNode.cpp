#include "core/TreeNode.h"

#include "framework/base/Archive.h"
#include "framework/base/Exception.h"

#include <memory>
#include <new>

IMPLEMENT_SERIAL(CTreeNode, CObject, VERSIONABLE_SCHEMA | 2)

namespace {

constexpr unsigned int kNodeForm = 2;
constexpr UINT kSchemaMask = 0xFFFF;

} // namespace

void CTreeNode::SetFlag(TreeNodeFlag flag, int on)
{
    m_flags = on != 0 ? m_flags | flag : m_flags & ~static_cast<unsigned int>(flag);
}

void CTreeNode::SetChild(CTreeNode* child)
{
    m_child = child;
    m_lastChild = nullptr;
}

void CTreeNode::SetParent(CTreeNode* parent)
{
    if (m_parent != nullptr)
        m_parent->m_lastChild = nullptr;
    m_parent = parent;
    if (parent != nullptr)
        parent->m_lastChild = nullptr;
}

void CTreeNode::SetLeft(CTreeNode* left)
{
    m_left = left;
}

void CTreeNode::SetRight(CTreeNode* right)
{
    if (m_parent != nullptr)
        m_parent->m_lastChild = nullptr;
    m_right = right;
}

void CTreeNode::Serialize(CArchive& archive)
{
    if (archive.IsStoring()) {
        // The store would be there and the reader, who goes by the schema of the class, not expect it.
        if ((GetRuntimeClass()->m_wSchema & kSchemaMask) < kNodeForm)
            AfxThrowArchiveException(CArchiveException::badSchema, archive.m_strFileName);
        archive << kNodeForm << m_flags;
        m_data.Serialize(archive);
        return;
    }
    if (archive.GetObjectSchema() < kNodeForm) {
        m_data.RemoveAll();
        archive >> m_flags;
        return;
    }
    unsigned int form = 0;
    archive >> form >> m_flags;
    m_data.Serialize(archive);
}

CString CTreeNode::GetDisplayName() const
{
    return {};
}

CTreeNode* CTreeNode::Copy() const
try {
    std::unique_ptr<CTreeNode> copy(static_cast<CTreeNode*>(GetRuntimeClass()->CreateObject()));
    if (copy == nullptr)
        return nullptr;
    copy->m_data = m_data;
    if (copy->m_data.HasData() != m_data.HasData())
        AfxThrowMemoryException();
    copy->m_flags = m_flags;
    return copy.release();
} catch (const std::bad_alloc&) {
    AfxThrowMemoryException();
}

CTreeNode* CTreeNode::Clone() const
{
    return CTreeNode::Copy();
}

int CTreeNode::operator==(const CTreeNode&) const
{
    return 1;
}
