#include "core/HashMap.h"
#include "core/HashTable.h"

#include <absl/container/flat_hash_map.h>
#include <absl/container/flat_hash_set.h>
#include <benchmark/benchmark.h>
#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/unordered/unordered_flat_set.hpp>

#include <algorithm>
#include <numeric>
#include <random>
#include <string_view>
#include <unordered_set>
#include <vector>

/// Tables of ints and of file names, ours and the fastest flat ones. Every peer keeps its own hash.

namespace {

struct OurMap
{
    CHashMap<int, int, int> map;

    void Insert(int key, int value) { map.Insert(key, value); }
    void Erase(int key) { map.Remove(key); }
    bool Find(int key, int& value) const { return map.Find(key, value) != 0; }
    long long Sum() const
    {
        long long sum = 0;
        for (unsigned int pos = map.GetFirst(); pos != 0xFFFFFFFF;) {
            int value = 0;
            sum += map.GetNext(pos, value);
            sum += value;
        }
        return sum;
    }
};

template <class MAP>
struct PeerMap
{
    MAP map;

    void Insert(int key, int value) { map.insert_or_assign(key, value); }
    void Erase(int key) { map.erase(key); }
    bool Find(int key, int& value) const
    {
        const auto found = map.find(key);
        if (found == map.end())
            return false;
        value = found->second;
        return true;
    }
    long long Sum() const
    {
        long long sum = 0;
        for (const auto& [key, value] : map)
            sum += key + value;
        return sum;
    }
};

using BoostMap = PeerMap<boost::unordered_flat_map<int, int>>;
using AbslMap = PeerMap<absl::flat_hash_map<int, int>>;

/// `count` different random keys of 28 bits, the first half for what is in the map, the second for what is
/// not.
std::vector<int> RandomKeys(std::size_t count)
{
    std::mt19937 random(1);
    std::unordered_set<int> seen;
    std::vector<int> keys;
    while (keys.size() < count * 2)
        if (const int key = static_cast<int>(random() >> 4); seen.insert(key).second)
            keys.push_back(key);
    return keys;
}

template <class MAP>
MAP Filled(const std::vector<int>& keys, std::size_t count)
{
    MAP map;
    for (std::size_t i = 0; i < count; ++i)
        map.Insert(keys[i], static_cast<int>(i));
    return map;
}

void CountItems(benchmark::State& state, std::size_t count)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}

template <class MAP>
void Insert(benchmark::State& state, std::size_t count)
{
    const auto keys = RandomKeys(count);
    for (auto _ : state)
        benchmark::DoNotOptimize(Filled<MAP>(keys, count));
    CountItems(state, count);
}

template <class MAP>
void Find(benchmark::State& state, std::size_t count, bool present)
{
    const auto keys = RandomKeys(count);
    const auto map = Filled<MAP>(keys, count);
    std::vector<int> wanted(keys.begin() + static_cast<std::ptrdiff_t>(present ? 0 : count),
                            keys.begin() + static_cast<std::ptrdiff_t>(present ? count : count * 2));
    std::shuffle(wanted.begin(), wanted.end(), std::mt19937(2));
    for (auto _ : state) {
        long long sum = 0;
        for (const int key : wanted) {
            int value = 0;
            sum += map.Find(key, value) ? value : 1;
        }
        benchmark::DoNotOptimize(sum);
    }
    CountItems(state, count);
}

template <class MAP>
void Iterate(benchmark::State& state, std::size_t count)
{
    const auto map = Filled<MAP>(RandomKeys(count), count);
    for (auto _ : state)
        benchmark::DoNotOptimize(map.Sum());
    CountItems(state, count);
}

/// Takes each key of a fresh map out and puts it back, or puts a new one in its place. A fresh one, because
/// ours counts tombstones and grows with every round.
template <class MAP>
void Replace(benchmark::State& state, std::size_t count, std::size_t shift)
{
    const auto keys = RandomKeys(count);
    for (auto _ : state) {
        state.PauseTiming();
        auto map = Filled<MAP>(keys, count);
        state.ResumeTiming();
        for (std::size_t i = 0; i < count; ++i) {
            map.Erase(keys[i]);
            map.Insert(keys[i + shift], 1);
        }
        state.PauseTiming();
        map = MAP();
        state.ResumeTiming();
    }
    CountItems(state, count);
}

struct NameHash
{
    std::size_t operator()(const CString& name) const
    {
        return std::hash<std::string_view>()({reinterpret_cast<const char*>(name.GetString()),
                                              static_cast<std::size_t>(name.GetLength()) * sizeof(wchar_t)});
    }
};

struct OurNames
{
    CHashTable<CString> set;

    void Insert(const CString& name) { set.Insert(name); }
    bool Has(const CString& name) const { return set.IsFound(name) != 0; }
    long long Sum() const
    {
        long long sum = 0;
        for (unsigned int pos = set.GetFirst(); pos != 0xFFFFFFFF;)
            sum += set.GetNext(pos).GetLength();
        return sum;
    }
};

template <class SET>
struct PeerNames
{
    SET set;

    void Insert(const CString& name) { set.insert(name); }
    bool Has(const CString& name) const { return set.contains(name); }
    long long Sum() const
    {
        long long sum = 0;
        for (const CString& name : set)
            sum += name.GetLength();
        return sum;
    }
};

using BoostNames = PeerNames<boost::unordered_flat_set<CString, NameHash>>;
using AbslNames = PeerNames<absl::flat_hash_set<CString, NameHash>>;

std::vector<CString> FileNames(std::size_t count, LPCWSTR end)
{
    const LPCWSTR subjects[] = {L"chair_", L"Table leg ", L"lamp-", L"SCENE", L"wheel_lowres_"};
    std::vector<CString> names(count);
    for (std::size_t i = 0; i < count; ++i)
        names[i].Format(L"%s%05u%s", subjects[i % 5], static_cast<unsigned int>(i * 7919 % 100003), end);
    return names;
}

constexpr std::size_t kNames = 20000;

template <class SET>
void FindName(benchmark::State& state, bool present)
{
    SET set;
    for (const CString& name : FileNames(kNames, L".obj"))
        set.Insert(name);
    auto wanted = FileNames(kNames, present ? L".obj" : L".3ds");
    std::shuffle(wanted.begin(), wanted.end(), std::mt19937(2));
    for (auto _ : state) {
        std::size_t found = 0;
        for (const CString& name : wanted)
            found += set.Has(name) ? 1 : 0;
        benchmark::DoNotOptimize(found);
        if (found != (present ? kNames : 0))
            state.SkipWithError("wrong result");
    }
    CountItems(state, kNames);
}

template <class SET>
void IterateNames(benchmark::State& state)
{
    SET set;
    for (const CString& name : FileNames(kNames, L".obj"))
        set.Insert(name);
    for (auto _ : state)
        benchmark::DoNotOptimize(set.Sum());
    CountItems(state, kNames);
}

template <class MAP>
void RegisterMap(const std::string& who)
{
    const auto add = [&who](const std::string& what, auto body) {
        benchmark::RegisterBenchmark(("hash_tables/" + what + "/" + who).c_str(), body);
    };
    for (const auto& [size, count] : {std::pair<const char*, std::size_t>{"10k", 10000}, {"1M", 1000000}}) {
        const std::size_t n = count;
        const std::string at = std::string("/") + size;
        add("insert" + at, [n](benchmark::State& state) { Insert<MAP>(state, n); });
        add("find" + at, [n](benchmark::State& state) { Find<MAP>(state, n, true); });
        add("miss" + at, [n](benchmark::State& state) { Find<MAP>(state, n, false); });
        add("iterate" + at, [n](benchmark::State& state) { Iterate<MAP>(state, n); });
    }
    add("reinsert/10k", [](benchmark::State& state) { Replace<MAP>(state, 10000, 0); });
    add("replace/1M", [](benchmark::State& state) { Replace<MAP>(state, 1000000, 1000000); });
}

template <class SET>
void RegisterNames(const std::string& who)
{
    const auto add = [&who](const std::string& what, auto body) {
        benchmark::RegisterBenchmark(("hash_tables/" + what + "/20k/" + who).c_str(), body);
    };
    add("find_name", [](benchmark::State& state) { FindName<SET>(state, true); });
    add("miss_name", [](benchmark::State& state) { FindName<SET>(state, false); });
    add("iterate_names", [](benchmark::State& state) { IterateNames<SET>(state); });
}

const bool registered = [] {
    RegisterMap<OurMap>("vak");
    RegisterMap<BoostMap>("boost");
    RegisterMap<AbslMap>("absl");
    RegisterNames<OurNames>("vak");
    RegisterNames<BoostNames>("boost");
    RegisterNames<AbslNames>("absl");
    return true;
}();

} // namespace
