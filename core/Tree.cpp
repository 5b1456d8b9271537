#include "core/Tree.h"

#include "core/detail/TreeLinks.h"
#include "framework/base/Exception.h"

#include <memory>
#include <new>
#include <utility>
#include <vector>

using vak::detail::TreeGrowth;
using vak::detail::TreeLinks;

IMPLEMENT_SERIAL(CTree, CObject, VERSIONABLE_SCHEMA | 2)

CTree::~CTree()
{
    TreeLinks::DeleteChain(m_root);
}

int CTree::GetDepth(const CTreeNode* node)
{
    int depth = 0;
    while ((node = GetConstParent(node)) != nullptr)
        ++depth;
    return depth;
}

int CTree::IsEmpty() const
{
    return m_root == nullptr || m_root->m_child == nullptr;
}

CTreeNode* CTree::GetFirstNode(CTreeNode* node) const
{
    return GetChild(node != nullptr ? node : m_root);
}

CTreeNode* CTree::GetNextNode(CTreeNode* node, CTreeNode* stop) const
{
    if (node == nullptr)
        return nullptr;
    CTreeNode* next = node->m_child != nullptr ? node->m_child : node->m_right;
    while (next == nullptr) {
        node = node->m_parent;
        if (node == nullptr || node == stop)
            return nullptr;
        next = node->m_right;
    }
    return next != stop ? next : nullptr;
}

int CTree::GetChildNbr(const CTreeNode* node, int directOnly) const
{
    const CTreeNode* const top = node != nullptr ? node : m_root;
    const CTreeNode* at = GetConstChild(top);
    int count = 0;
    while (at != nullptr && at != top) {
        ++count;
        if (directOnly == 0 && at->m_child != nullptr) {
            at = at->m_child;
            continue;
        }
        while (at != nullptr && at != top && at->m_right == nullptr)
            at = at->m_parent;
        if (at != nullptr && at != top)
            at = at->m_right;
    }
    return count;
}

void CTree::SetRoot(CTreeNode* node)
{
    if (node == m_root)
        return;
    RemoveNode(node);
    TreeLinks::DeleteChain(std::exchange(m_root, node));
}

void CTree::AddChild(CTreeNode* parent, CTreeNode* node, int atEnd)
{
    if (parent == nullptr)
        parent = m_root;
    if (parent == nullptr || node == nullptr || node == parent)
        return;
    // A node without children has nothing below it: chains of any depth are built without a climb.
    if (node->m_child != nullptr && TreeLinks::IsWithin(parent, *node))
        return;
    const bool isLinked = node->m_parent != nullptr || node->m_left != nullptr || node->m_right != nullptr;
    if (isLinked || node == m_root)
        RemoveNode(node);
    node->m_parent = parent;
    if (atEnd != 0) {
        node->m_right = nullptr;
        TreeLinks::AppendChain(*parent, node, node);
        return;
    }
    node->m_left = nullptr;
    node->m_right = parent->m_child;
    if (parent->m_child != nullptr)
        parent->m_child->m_left = node;
    parent->m_child = node;
}

void CTree::AddRight(CTreeNode* after, CTreeNode* node)
{
    if (after == nullptr)
        after = m_root;
    if (after == nullptr || node == nullptr || node == after)
        return;
    // What stood on the right may be cut off from the children: the last one is searched anew.
    for (CTreeNode* const parent : {GetParent(after), GetParent(after->m_right), node->m_parent}) {
        if (parent != nullptr)
            parent->m_lastChild = nullptr;
    }
    after->m_right = node;
    node->m_left = after;
}

CTreeNode* CTree::RemoveNode(CTreeNode* node)
{
    if (node == nullptr)
        return nullptr;
    CTreeNode* const parent = node->m_parent;
    CTreeNode* const left = node->m_left;
    CTreeNode* const right = node->m_right;
    if (parent != nullptr && parent->m_child == node)
        parent->m_child = right;
    // A sibling that AddRight linked may be without a parent, which would not notice that it goes.
    if (parent != nullptr && parent->m_lastChild == node)
        parent->m_lastChild = GetParent(left) == parent ? left : nullptr;
    if (right != nullptr)
        right->m_left = left;
    if (left != nullptr)
        left->m_right = right;
    node->m_parent = node->m_left = node->m_right = nullptr;
    if (node == m_root)
        m_root = nullptr;
    return left != nullptr ? left : parent;
}

CTreeNode* CTree::DeleteNode(CTreeNode* node)
{
    if (node != nullptr && node == m_root) {
        TreeLinks::DeleteChain(std::exchange(m_root, nullptr));
        return nullptr;
    }
    CTreeNode* const neighbour = RemoveNode(node);
    TreeLinks::DeleteChain(node);
    return neighbour;
}

void CTree::DeleteAll()
{
    if (m_root != nullptr)
        DeleteChilds(m_root->m_child);
}

void CTree::DeleteChilds(CTreeNode* firstChild)
{
    if (firstChild == nullptr)
        return;
    // One that AddRight linked may be without a parent: what is deleted may still be the last child of one.
    const CTreeNode* sibling = firstChild;
    while (sibling->m_parent == nullptr && sibling->m_left != nullptr)
        sibling = sibling->m_left;
    CTreeNode* const parent = sibling->m_parent;
    if (parent != nullptr)
        parent->m_lastChild = nullptr;
    if (parent != nullptr && parent->m_child == firstChild)
        parent->m_child = nullptr;
    if (firstChild->m_left != nullptr)
        firstChild->m_left->m_right = nullptr;
    if (firstChild == m_root)
        m_root = nullptr;
    TreeLinks::DeleteChain(firstChild);
}

int CTree::MoveNode(CTreeNode* node, CTreeNode* newParent)
{
    if (newParent == nullptr)
        newParent = m_root;
    if (node == nullptr || newParent == nullptr || TreeLinks::IsWithin(newParent, *node))
        return 0;
    RemoveNode(node);
    AddChild(newParent, node, 0);
    return 1;
}

CTreeNode* CTree::CopyNode(const CTreeNode* src, CTreeNode* parent, int withChildren)
{
    return AddCopy(src, parent != nullptr ? parent : m_root, withChildren, &CTreeNode::Copy);
}

CTreeNode* CTree::CloneNode(const CTreeNode* src, CTreeNode* parent, int withChildren)
{
    return AddCopy(src, parent, withChildren, &CTreeNode::Clone);
}

void CTree::CopyChilds(const CTreeNode* src, CTreeNode* parent)
{
    AddCopies(src, parent, &CTreeNode::Copy);
}

void CTree::CloneChilds(const CTreeNode* src, CTreeNode* parent)
{
    AddCopies(src, parent, &CTreeNode::Clone);
}

CTreeNode* CTree::AddCopy(const CTreeNode* src, CTreeNode* parent, int withChildren, MakeCopy make)
try {
    if (src == nullptr || parent == nullptr)
        return nullptr;
    CTreeNode* const copy = (src->*make)();
    if (copy == nullptr)
        return nullptr;
    TreeGrowth growth(parent);
    growth.Add(copy);
    if (withChildren != 0)
        AddCopies(src, copy, make);
    growth.AttachToParent();
    return copy;
} catch (const std::bad_alloc&) {
    AfxThrowMemoryException();
}

void CTree::AddCopies(const CTreeNode* src, CTreeNode* parent, MakeCopy make)
try {
    if (src == nullptr || parent == nullptr)
        return;
    TreeGrowth growth(parent);
    std::vector<const CTreeNode*> path;
    const CTreeNode* from = src->m_child;
    do {
        while (from != nullptr) {
            CTreeNode* const copy = (from->*make)();
            if (copy != nullptr)
                growth.Add(copy);
            if (copy != nullptr && from->m_child != nullptr) {
                growth.Descend();
                path.push_back(from);
                from = from->m_child;
            } else {
                from = from->m_right;
            }
        }
        if (!path.empty()) {
            from = path.back()->m_right;
            path.pop_back();
        }
    } while (growth.Climb());
    growth.AttachToParent();
} catch (const std::bad_alloc&) {
    AfxThrowMemoryException();
}
