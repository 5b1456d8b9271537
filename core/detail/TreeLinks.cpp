#include "core/detail/TreeLinks.h"

#include <utility>

namespace vak::detail {

void TreeLinks::DeleteChain(CTreeNode* first)
{
    // The parent link of the foremost node leads to the chain that is deleted when its own is done.
    CTreeNode* chain = first;
    if (chain != nullptr)
        chain->m_parent = nullptr;
    while (chain != nullptr) {
        CTreeNode* const node = chain;
        CTreeNode* const pending = node->m_parent;
        chain = node->m_right;
        if (chain != nullptr)
            chain->m_parent = pending;
        else
            chain = pending;
        if (node->m_child != nullptr) {
            node->m_child->m_parent = chain;
            chain = node->m_child;
        }
        // Its class sees a node without neighbours: some are gone already.
        node->m_child = node->m_parent = node->m_left = node->m_right = node->m_lastChild = nullptr;
        delete node;
    }
}

CTreeNode* TreeLinks::LastChild(const CTreeNode& parent)
{
    CTreeNode* last = parent.m_lastChild;
    const bool inPlace = last != nullptr && last->m_parent == &parent &&
                         (last->m_left != nullptr ? last->m_left->m_right == last : parent.m_child == last);
    if (!inPlace)
        last = parent.m_child;
    while (last != nullptr && last->m_right != nullptr)
        last = last->m_right;
    return last;
}

void TreeLinks::AppendChain(CTreeNode& parent, CTreeNode* first, CTreeNode* last)
{
    CTreeNode* const before = LastChild(parent);
    first->m_left = before;
    (before != nullptr ? before->m_right : parent.m_child) = first;
    parent.m_lastChild = last;
}

bool TreeLinks::IsWithin(const CTreeNode* node, const CTreeNode& ancestor)
{
    while (node != nullptr && node != &ancestor)
        node = node->m_parent;
    return node != nullptr;
}

void TreeGrowth::AttachToParent()
{
    if (m_first != nullptr && m_topParent != nullptr)
        TreeLinks::AppendChain(*m_topParent, std::exchange(m_first, nullptr), m_previous);
}

void TreeGrowth::AttachBeside(CTreeNode& node)
{
    CTreeNode* last = &node;
    while (last->m_right != nullptr)
        last = last->m_right;
    if (m_first != nullptr)
        m_first->m_left = last;
    last->m_right = std::exchange(m_first, nullptr);
}

} // namespace vak::detail
