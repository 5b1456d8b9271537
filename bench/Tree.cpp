#include "core/Tree.h"
#include "framework/base/Archive.h"
#include "framework/base/MemFile.h"

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

/// A tree of a million nodes, each with two numbers and a name: beside an XML document of the same elements
/// and attributes, and beside nested vectors of the bare values as the floor, which no tree with parents,
/// siblings and typed values reaches. Memory is written to and read from; everything is counted per node.

namespace {

constexpr int kWide = 100;
constexpr int kLeaves = 99;
constexpr int kNodes = kWide + kWide * kWide + kWide * kWide * kLeaves;

constexpr unsigned int kNumber = 1;
constexpr unsigned int kSize = 2;
constexpr unsigned int kName = 3;

/// Calls `add(parent, number)`, which returns the new node, for each node in pre-order.
template <class NODE, class ADD>
void ForEachNew(NODE root, ADD add)
{
    int number = 0;
    for (int i = 0; i < kWide; ++i) {
        const NODE outer = add(root, number++);
        for (int j = 0; j < kWide; ++j) {
            const NODE inner = add(outer, number++);
            for (int k = 0; k < kLeaves; ++k)
                add(inner, number++);
        }
    }
}

void Count(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * kNodes);
}

struct Ours
{
    Ours() { tree->SetRoot(new CTreeNode); }

    void Build()
    {
        const CStringA name("mesh");
        ForEachNew(tree->GetRoot(), [&](CTreeNode* parent, int number) {
            auto* const node = new CTreeNode;
            CCustomData& data = node->GetCustomData();
            data.SetInt(kNumber, number);
            data.SetUInt(kSize, static_cast<unsigned int>(number) * 7);
            data.SetStringA(kName, name);
            tree->AddChild(parent, node, 1);
            return node;
        });
    }
    long long Walk()
    {
        struct Sum : TreeTraversalCallback
        {
            using TreeTraversalCallback::TreeTraversalCallback;
            int Visit(CTreeNode* node, int code) override
            {
                if (code == vak::traversal::Leaving)
                    return 1;
                const CCustomData& data = node->GetCustomData();
                int number = 0;
                unsigned int size = 0;
                data.GetInt(kNumber, number, 0);
                data.GetUInt(kSize, size, 0);
                sum += number + size + data.GetDataSize(kName);
                return 1;
            }
            long long sum = 0;
        } visitor(tree.get());
        tree->DoTraversal(nullptr, TreeTraversalBelow, &visitor);
        return visitor.sum;
    }
    std::size_t Write(std::vector<BYTE>& buffer)
    {
        CMemFile file(buffer.data(), UINT(buffer.size()));
        CArchive archive(&file, CArchive::store);
        tree->Serialize(archive);
        archive.Close();
        return std::size_t(file.GetPosition());
    }
    bool Read(std::vector<BYTE>& bytes, std::size_t size)
    {
        CMemFile file(bytes.data(), UINT(size));
        CArchive archive(&file, CArchive::load);
        tree->Serialize(archive);
        return !tree->IsEmpty();
    }

    std::unique_ptr<CTree> tree = std::make_unique<CTree>();
};

struct Pugixml
{
    void Build()
    {
        ForEachNew(pugi::xml_node(*document), [](pugi::xml_node parent, int number) {
            pugi::xml_node node = parent.append_child("node");
            node.append_attribute("number").set_value(number);
            node.append_attribute("size").set_value(static_cast<unsigned int>(number) * 7);
            node.append_attribute("name").set_value("mesh");
            return node;
        });
    }
    long long Walk()
    {
        struct Sum : pugi::xml_tree_walker
        {
            bool for_each(pugi::xml_node& node) override
            {
                sum += node.attribute("number").as_int() + node.attribute("size").as_uint();
                sum += static_cast<long long>(std::strlen(node.attribute("name").value())) + 1;
                return true;
            }
            long long sum = 0;
        } walker;
        document->traverse(walker);
        return walker.sum;
    }
    std::size_t Write(std::vector<BYTE>& buffer)
    {
        struct Writer : pugi::xml_writer
        {
            void write(const void* data, std::size_t size) override
            {
                std::memcpy(at, data, size);
                at += size;
            }
            BYTE* at = nullptr;
        } writer;
        writer.at = buffer.data();
        document->save(writer, "", pugi::format_raw);
        return std::size_t(writer.at - buffer.data());
    }
    bool Read(std::vector<BYTE>& bytes, std::size_t size)
    {
        return static_cast<bool>(document->load_buffer(bytes.data(), size));
    }

    std::unique_ptr<pugi::xml_document> document = std::make_unique<pugi::xml_document>();
};

struct Floor
{
    struct Values
    {
        int number;
        unsigned int size;
        char name[8];
    };
    struct Node
    {
        Values values;
        std::vector<Node> children;
    };

    void Build()
    {
        root->children.reserve(kWide); // nodes stay in their places while they are filled
        ForEachNew(root.get(), [](Node* parent, int number) {
            if (parent->children.empty())
                parent->children.reserve(kWide);
            parent->children.push_back({{number, static_cast<unsigned int>(number) * 7, "mesh"}, {}});
            return &parent->children.back();
        });
    }
    long long Walk() { return Sum(*root); }
    std::size_t Write(std::vector<BYTE>& buffer)
    {
        BYTE* at = buffer.data();
        Put(*root, at);
        return std::size_t(at - buffer.data());
    }
    bool Read(std::vector<BYTE>& bytes, std::size_t)
    {
        const BYTE* at = bytes.data();
        Get(*root, at);
        return !root->children.empty();
    }

    static long long Sum(const Node& node)
    {
        long long sum = 0;
        for (const Node& child : node.children) {
            sum += child.values.number + child.values.size;
            sum += static_cast<long long>(std::strlen(child.values.name)) + 1 + Sum(child);
        }
        return sum;
    }
    static void Put(const Node& node, BYTE*& at)
    {
        const std::size_t count = node.children.size();
        std::memcpy(at, &count, sizeof count);
        at += sizeof count;
        for (const Node& child : node.children) {
            std::memcpy(at, &child.values, sizeof child.values);
            at += sizeof child.values;
            Put(child, at);
        }
    }
    static void Get(Node& node, const BYTE*& at)
    {
        std::size_t count;
        std::memcpy(&count, at, sizeof count);
        at += sizeof count;
        node.children.resize(count);
        for (Node& child : node.children) {
            std::memcpy(&child.values, at, sizeof child.values);
            at += sizeof child.values;
            Get(child, at);
        }
    }

    std::unique_ptr<Node> root = std::make_unique<Node>();
};

template <class TREE>
void BuildAll(benchmark::State& state)
{
    for (auto _ : state) {
        auto tree = std::make_unique<TREE>();
        tree->Build();
        benchmark::ClobberMemory();
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
    Count(state);
}

template <class TREE>
void DeleteAll(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto tree = std::make_unique<TREE>();
        tree->Build();
        state.ResumeTiming();
        tree.reset();
    }
    Count(state);
}

template <class TREE>
void WalkAll(benchmark::State& state)
{
    constexpr long long kExpected = 4LL * kNodes * (kNodes - 1) + 5LL * kNodes;
    TREE tree;
    tree.Build();
    for (auto _ : state) {
        if (tree.Walk() != kExpected)
            state.SkipWithError("not walked");
    }
    Count(state);
}

/// Room for a million nodes, in memory that is there.
std::vector<BYTE> Buffer()
{
    return std::vector<BYTE>(std::size_t{160} * kNodes, 1);
}

template <class TREE>
void WriteAll(benchmark::State& state)
{
    TREE tree;
    tree.Build();
    std::vector<BYTE> buffer = Buffer();
    std::size_t size = 0;
    for (auto _ : state) {
        size = tree.Write(buffer);
        benchmark::ClobberMemory();
    }
    Count(state);
    state.counters["bytes"] = static_cast<double>(size);
}

template <class TREE>
void ReadAll(benchmark::State& state)
{
    std::vector<BYTE> buffer = Buffer();
    std::size_t size = 0;
    {
        TREE tree;
        tree.Build();
        size = tree.Write(buffer);
    }
    for (auto _ : state) {
        auto tree = std::make_unique<TREE>();
        if (!tree->Read(buffer, size))
            state.SkipWithError("not read");
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
    Count(state);
}

template <class TREE>
void Register(const std::string& who)
{
    const auto add = [&who](const char* what, void (*body)(benchmark::State&)) {
        return benchmark::RegisterBenchmark(("tree/" + std::string(what) + "/1M/" + who).c_str(), body);
    };
    add("build", BuildAll<TREE>);
    add("walk", WalkAll<TREE>);
    add("archive", WriteAll<TREE>);
    add("read", ReadAll<TREE>);
    // Each deletion wants a tree of its own, which takes far longer to build.
    add("delete", DeleteAll<TREE>)->Iterations(3);
}

const bool registered = [] {
    Register<Ours>("vak");
    Register<Pugixml>("pugixml");
    Register<Floor>("floor");
    return true;
}();

} // namespace
