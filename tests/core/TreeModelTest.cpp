#include "tests/core/TestNode.h"
#include "tests/support/ArchiveBytes.h"

#include <random>
#include <vector>

namespace {

/// A tree as nested vectors. A node without a name is swept away.
struct Model
{
    char name = '/';
    std::vector<Model> children;

    void List(std::vector<Model*>& all)
    {
        all.push_back(this);
        for (Model& child : children)
            child.List(all);
    }
    std::string Text() const
    {
        std::string text;
        for (const Model& child : children)
            text += child.name + (child.children.empty() ? "" : '(' + child.Text() + ')');
        return text;
    }
    void Sweep()
    {
        std::erase_if(children, [](const Model& child) { return child.name == 0; });
        for (Model& child : children)
            child.Sweep();
    }
};

} // namespace

TEST(TreeModelTest, DoesWhatNestedVectorsDo)
{
    TestTree tree;
    Model root;
    std::mt19937 random(7);
    for (int step = 0; step < 5000; ++step) {
        std::vector<Model*> all, inside;
        root.List(all);
        const std::size_t from = random() % all.size();
        const std::size_t to = random() % all.size();
        CTreeNode* nodes[] = {tree.GetRoot(), tree.GetRoot()};
        for (std::size_t i = 0; i < std::max(from, to); ++i) {
            nodes[0] = i < from ? tree.GetNextNode(nodes[0], nullptr) : nodes[0];
            nodes[1] = i < to ? tree.GetNextNode(nodes[1], nullptr) : nodes[1];
        }
        std::vector<Model>& children = all[to]->children;
        const Model copy = *all[from];
        const auto what = all.size() > 60 ? 3 : random() % 6;
        if (what < 2 || from == 0) {
            const char name = static_cast<char>('A' + random() % 26);
            tree.AddChild(nodes[1], new TestNode(name), int(what));
            children.insert(what != 0 ? children.end() : children.begin(), Model{name, {}});
        } else if (what == 2) {
            all[from]->List(inside);
            const bool free = std::find(inside.begin(), inside.end(), all[to]) == inside.end();
            ASSERT_EQ(tree.MoveNode(nodes[0], nodes[1]), int(free));
            all[from]->name = free ? 0 : copy.name;
            if (free)
                children.insert(children.begin(), copy);
        } else if (what == 3) {
            tree.DeleteNode(nodes[0]);
            all[from]->name = 0;
        } else if (what == 4) {
            tree.CopyNode(nodes[0], nodes[1], 1);
            children.push_back(copy);
        } else {
            EXPECT_EQ(vak::test::ReadCause(tree, vak::test::StoredBytes(tree)), -1);
        }
        root.Sweep();
        ASSERT_EQ(tree.Text(), root.Text()) << step;
    }
}
