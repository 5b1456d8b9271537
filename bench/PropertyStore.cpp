#include "core/CustomData.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

/// A store of 30 mixed settings beside what one would write by hand: a flat vector and a map of variants, and
/// plain copies of the same bytes.

namespace {

using Value = std::variant<int, float, double, CString, std::vector<unsigned char>>;
using Flat = std::vector<std::pair<unsigned int, Value>>;
using Map = std::unordered_map<unsigned int, Value>;

constexpr unsigned int kEntries = 30;

unsigned int IdOf(unsigned int i)
{
    return 1000 + i * 3;
}

/// What stands under the i-th id: 12 ints, 6 floats, 6 doubles, 4 texts, 2 blobs.
int TypeOf(unsigned int i)
{
    static constexpr int kTypes[kEntries] = {0, 0, 1, 2, 3, 0, 0, 1, 2, 0, 0, 4, 1, 2, 0,
                                             3, 0, 1, 2, 0, 0, 3, 1, 2, 0, 4, 0, 1, 2, 3};
    return kTypes[i];
}

/// Three of the texts are short, one is a path.
const CString& TextOf(unsigned int i)
{
    static const CString path(L"C:\\Models\\chair.obj");
    static const CString unit(L"mm");
    return i == 21 ? path : unit;
}

const unsigned char kBlob[24] = {1, 2, 3};

void Fill(CCustomData& store)
{
    for (unsigned int i = 0; i < kEntries; ++i) {
        const unsigned int id = IdOf(i);
        switch (TypeOf(i)) {
        case 0:
            store.SetInt(id, static_cast<int>(i));
            break;
        case 1:
            store.SetFloat(id, 1.5f);
            break;
        case 2:
            store.SetDouble(id, 2.5);
            break;
        case 3:
            store.SetString(id, TextOf(i));
            break;
        default:
            store.SetBinary(id, kBlob, sizeof kBlob);
        }
    }
}

Value ValueOf(unsigned int i)
{
    switch (TypeOf(i)) {
    case 0:
        return static_cast<int>(i);
    case 1:
        return 1.5f;
    case 2:
        return 2.5;
    case 3:
        return TextOf(i);
    default:
        return std::vector<unsigned char>(kBlob, kBlob + sizeof kBlob);
    }
}

void Fill(Flat& flat)
{
    for (unsigned int i = 0; i < kEntries; ++i) {
        const unsigned int id = IdOf(i);
        const auto found =
            std::find_if(flat.begin(), flat.end(), [id](const auto& pair) { return pair.first == id; });
        if (found != flat.end())
            found->second = ValueOf(i);
        else
            flat.emplace_back(id, ValueOf(i));
    }
}

void Fill(Map& map)
{
    for (unsigned int i = 0; i < kEntries; ++i)
        map.insert_or_assign(IdOf(i), ValueOf(i));
}

/// Reads one value into locals, as a dialog does.
double Read(const CCustomData& store, unsigned int i)
{
    const unsigned int id = IdOf(i);
    switch (TypeOf(i)) {
    case 0: {
        int number = 0;
        store.GetInt(id, number, 0);
        return number;
    }
    case 1: {
        float number = 0;
        store.GetFloat(id, number, 0);
        return number;
    }
    case 2: {
        double number = 0;
        store.GetDouble(id, number, 0);
        return number;
    }
    case 3: {
        CString text;
        store.GetString(id, text, text);
        return text.GetLength();
    }
    default: {
        unsigned char blob[sizeof kBlob];
        store.GetBinary(id, blob, sizeof blob);
        return blob[0];
    }
    }
}

double Read(const Map& map, unsigned int i)
{
    const auto found = map.find(IdOf(i));
    if (found == map.end())
        return 0;
    switch (TypeOf(i)) {
    case 0:
        return std::get<int>(found->second);
    case 1:
        return std::get<float>(found->second);
    case 2:
        return std::get<double>(found->second);
    case 3: {
        const CString text = std::get<CString>(found->second);
        return text.GetLength();
    }
    default: {
        unsigned char blob[sizeof kBlob];
        std::memcpy(blob, std::get<4>(found->second).data(), sizeof blob);
        return blob[0];
    }
    }
}

template <class STORE>
void FillOne(benchmark::State& state)
{
    for (auto _ : state) {
        STORE store;
        Fill(store);
        benchmark::DoNotOptimize(store);
    }
}

template <class STORE, bool shuffled>
void ReadAll(benchmark::State& state)
{
    STORE store;
    Fill(store);
    std::vector<unsigned int> order(kEntries);
    for (unsigned int i = 0; i < kEntries; ++i)
        order[i] = i;
    if (shuffled)
        std::shuffle(order.begin(), order.end(), std::mt19937(3));
    for (auto _ : state) {
        double sum = 0;
        for (const unsigned int i : order)
            sum += Read(store, i);
        benchmark::DoNotOptimize(sum);
    }
}

struct RawStore : CCustomData
{
    using CCustomData::CustomDataFromRaw;
    using CCustomData::RawFromCustomData;
};

std::vector<unsigned char> RawBytes()
{
    RawStore store;
    Fill(store);
    unsigned int size = 0;
    unsigned char* const raw = store.RawFromCustomData(store, size);
    std::vector<unsigned char> bytes(raw, raw + size);
    std::free(raw);
    return bytes;
}

void CopyOurs(benchmark::State& state)
{
    CCustomData store;
    Fill(store);
    for (auto _ : state) {
        CCustomData copy(store);
        benchmark::DoNotOptimize(copy);
    }
}

void CopyBytes(benchmark::State& state)
{
    const auto bytes = RawBytes();
    for (auto _ : state) {
        void* const copy = std::malloc(bytes.size());
        std::memcpy(copy, bytes.data(), bytes.size());
        benchmark::DoNotOptimize(copy);
        benchmark::ClobberMemory();
        std::free(copy);
    }
}

void WriteOurs(benchmark::State& state)
{
    RawStore store;
    Fill(store);
    for (auto _ : state) {
        unsigned int size = 0;
        unsigned char* const raw = store.RawFromCustomData(store, size);
        benchmark::DoNotOptimize(raw);
        benchmark::ClobberMemory();
        std::free(raw);
    }
}

void ReadBackOurs(benchmark::State& state)
{
    CCustomData store, outer;
    Fill(store);
    outer.SetCustomData(1, store);
    for (auto _ : state) {
        CCustomData back;
        if (outer.GetCustomData(1, back) == 0)
            state.SkipWithError("not read");
        benchmark::DoNotOptimize(back);
    }
}

void ReadBackVector(benchmark::State& state)
{
    struct Item
    {
        unsigned int id, kind;
        std::vector<unsigned char> value;
    };
    const auto bytes = RawBytes();
    for (auto _ : state) {
        std::vector<Item> items;
        for (std::size_t at = 20; bytes.size() - at >= 12;) {
            unsigned int words[3];
            std::memcpy(words, bytes.data() + at, sizeof words);
            if (words[1] > bytes.size() - at - 12)
                break;
            const auto value = bytes.begin() + static_cast<std::ptrdiff_t>(at + 12);
            items.push_back({words[0], words[2], {value, value + words[1]}});
            at += 12 + words[1];
        }
        benchmark::DoNotOptimize(items);
    }
}

/// A store that grows far beyond the usual by setters: look-ups and additions must stay as fast.
void GrowOurs(benchmark::State& state)
{
    for (auto _ : state) {
        CCustomData store;
        for (unsigned int id = 1; id <= 1024; ++id)
            store.SetUInt(id, id);
        benchmark::DoNotOptimize(store);
    }
}

void GrowMap(benchmark::State& state)
{
    for (auto _ : state) {
        std::unordered_map<unsigned int, unsigned int> map;
        for (unsigned int id = 1; id <= 1024; ++id)
            map.insert_or_assign(id, id);
        benchmark::DoNotOptimize(map);
    }
}

BENCHMARK(GrowOurs)->Name("property_store/grow_to_1024/vak");
BENCHMARK(GrowMap)->Name("property_store/grow_to_1024/unordered_map");
BENCHMARK(FillOne<CCustomData>)->Name("property_store/fill/vak");
BENCHMARK(FillOne<Flat>)->Name("property_store/fill/vector");
BENCHMARK(ReadAll<CCustomData, true>)->Name("property_store/read_shuffled/vak");
BENCHMARK(ReadAll<Map, true>)->Name("property_store/read_shuffled/unordered_map");
BENCHMARK(ReadAll<CCustomData, false>)->Name("property_store/read_in_order/vak");
BENCHMARK(ReadAll<Map, false>)->Name("property_store/read_in_order/unordered_map");
BENCHMARK(CopyOurs)->Name("property_store/copy/vak");
BENCHMARK(CopyBytes)->Name("property_store/copy/malloc+memcpy");
BENCHMARK(WriteOurs)->Name("property_store/write_raw/vak");
BENCHMARK(CopyBytes)->Name("property_store/write_raw/malloc+memcpy");
BENCHMARK(ReadBackOurs)->Name("property_store/read_raw/vak");
BENCHMARK(ReadBackVector)->Name("property_store/read_raw/vector");

} // namespace
