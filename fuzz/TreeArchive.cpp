// Trees from arbitrary bytes. What is refused leaves the tree empty and no node behind; what is read is
// walked, copied and stored, and reads back to the same bytes.
#include "core/Tree.h"
#include "framework/base/Archive.h"
#include "framework/base/Exception.h"
#include "framework/base/MemFile.h"
#include "fuzz/support/Target.h"

#include <algorithm>
#include <string>

class FuzzTreeNode : public CTreeNode
{
    DECLARE_SERIAL(FuzzTreeNode)

public:
    FuzzTreeNode() { ++alive; }
    ~FuzzTreeNode() override { --alive; }

    static inline int alive = 0;
};

IMPLEMENT_SERIAL(FuzzTreeNode, CTreeNode, VERSIONABLE_SCHEMA | 2)

namespace {

using vak::fuzz::Require;

struct FuzzTree : CTree
{
    FuzzTree()
    {
        SetSilent(1);
        SetRoot(new CTreeNode);
    }
    using CTree::CopyNode;
};

bool Load(CTree& tree, std::string bytes)
{
    CMemFile file(reinterpret_cast<BYTE*>(bytes.data()), UINT(bytes.size()));
    CArchive archive(&file, CArchive::load, 128);
    try {
        tree.Serialize(archive);
        return true;
    } catch (CException* exception) {
        exception->Delete();
    }
    Require(tree.IsEmpty() && tree.GetRoot() != nullptr && CTree::GetRight(tree.GetRoot()) == nullptr);
    return false;
}

std::string Store(CTree& tree)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    tree.Serialize(archive);
    archive.Close();
    std::string bytes(std::size_t(file.GetLength()), '\0');
    file.SeekToBegin();
    file.Read(bytes.data(), UINT(bytes.size()));
    return bytes;
}

struct Counter : TreeTraversalCallback
{
    using TreeTraversalCallback::TreeTraversalCallback;
    int Visit(CTreeNode*, int code) override
    {
        m_entered += code != vak::traversal::Leaving;
        m_open += code == vak::traversal::Parent;
        m_open -= code == vak::traversal::Leaving;
        return 1;
    }
    int m_entered = 0;
    int m_open = 0;
};

void Run(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kLongest = 1 << 16;
    {
        FuzzTree tree;
        if (Load(tree, std::string(reinterpret_cast<const char*>(data), std::min(size, kLongest)))) {
            const std::string stored = Store(tree);
            FuzzTree again;
            Require(Load(again, stored) && Store(again) == stored);
            Counter counter(&tree);
            tree.DoTraversal(nullptr, TreeTraversalBelow, &counter);
            Require(counter.m_open == 0 && counter.m_entered == tree.GetChildNbr(nullptr, 0));
            CTreeNode* const first = tree.GetFirstNode(nullptr);
            if (first != nullptr)
                Require(tree.CopyNode(first, first, 1) != nullptr);
            tree.DeleteNode(first);
        }
    }
    Require(FuzzTreeNode::alive == 0);
}

const vak::fuzz::Target target("TreeArchive", Run);

} // namespace
