#include "tests/core/TestNode.h"
#include "tests/support/ArchiveBytes.h"

#include <memory>
#include <random>
#include <vector>

namespace {

/// A tree as nested vectors.
struct Model
{
    char name = '/';
    Model* parent = nullptr;
    std::vector<std::unique_ptr<Model>> children;

    Model* Insert(std::size_t at, std::unique_ptr<Model> child)
    {
        child->parent = this;
        return children.insert(children.begin() + std::ptrdiff_t(at), std::move(child))->get();
    }
    std::unique_ptr<Model> Take()
    {
        auto& among = parent->children;
        auto at = among.begin();
        while (at->get() != this)
            ++at;
        std::unique_ptr<Model> taken = std::move(*at);
        among.erase(at);
        return taken;
    }
    std::unique_ptr<Model> Copy() const
    {
        auto copy = std::make_unique<Model>(Model{name, nullptr, {}});
        for (const auto& child : children)
            copy->Insert(copy->children.size(), child->Copy());
        return copy;
    }
    bool IsWithin(const Model* other) const { return this == other || (parent && parent->IsWithin(other)); }
    std::string Text() const
    {
        std::string text;
        for (const auto& child : children)
            text += child->name + (child->children.empty() ? "" : '(' + child->Text() + ')');
        return text;
    }
    void List(std::vector<Model*>& all)
    {
        all.push_back(this);
        for (const auto& child : children)
            child->List(all);
    }
};

} // namespace

TEST(TreeModelTest, DoesWhatNestedVectorsDo)
{
    TestTree tree;
    Model root;
    std::mt19937 random(7);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    for (int step = 0; step < 5000; ++step) {
        std::vector<Model*> all;
        root.List(all);
        std::vector<CTreeNode*> nodes;
        for (CTreeNode* node = tree.GetRoot(); node != nullptr; node = tree.GetNextNode(node, nullptr))
            nodes.push_back(node);
        ASSERT_EQ(all.size(), nodes.size());
        const std::size_t from = below(all.size());
        const std::size_t to = below(all.size());
        const std::size_t last = all[to]->children.size();
        const auto what = all.size() > 60 ? 3 : below(6);
        if (what < 2 || from == 0) {
            const char name = static_cast<char>('A' + below(26));
            tree.AddChild(nodes[to], new TestNode(name), int(what));
            all[to]->Insert(what != 0 ? last : 0, std::make_unique<Model>(Model{name, nullptr, {}}));
        } else if (what == 2) {
            const bool free = !all[to]->IsWithin(all[from]);
            ASSERT_EQ(tree.MoveNode(nodes[from], nodes[to]), int(free));
            if (free)
                all[to]->Insert(0, all[from]->Take());
        } else if (what == 3) {
            tree.DeleteNode(nodes[from]);
            all[from]->Take();
        } else if (what == 4) {
            tree.CopyNode(nodes[from], nodes[to], 1);
            all[to]->Insert(last, all[from]->Copy());
        } else {
            const auto serialize = [&](CArchive& archive) { tree.Serialize(archive); };
            vak::test::Load(vak::test::Stored(serialize, 128), serialize, 128);
        }
        ASSERT_EQ(tree.Text(), root.Text()) << step;
    }
}
