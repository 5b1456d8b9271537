// Row "small reads": 50 million values of 4 bytes from a file in memory, beside fread of the same file.

#include "files/IoFile.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

/// A file of 25 million values, the largest that memory mode takes; it is read twice.
constexpr std::uint32_t kValues = 25'000'000;
constexpr int kPasses = 2;

class ValueFile
{
public:
    ValueFile()
        : host(std::filesystem::temp_directory_path() /
               ("vakbench-" + std::to_string(std::random_device()()) + ".bin"))
    {
        std::vector<std::uint32_t> values(kValues);
        for (std::uint32_t i = 0; i < kValues; ++i)
            values[i] = i * 2654435761u;
        std::ofstream(host, std::ios::binary)
            .write(reinterpret_cast<const char*>(values.data()), std::streamsize(4) * kValues);
        CString text(host.c_str());
        text.Replace(L'/', L'\\');
        path = L"Z:" + text;
        for (const std::uint32_t value : values)
            sum += kPasses * std::uint64_t(value);
    }
    ~ValueFile()
    {
        std::error_code ignored;
        std::filesystem::remove(host, ignored);
    }

    std::string host;
    CString path;
    std::uint64_t sum = 0;
};

const ValueFile& File()
{
    static const ValueFile file;
    return file;
}

void Finish(benchmark::State& state, std::uint64_t sum)
{
    if (sum != File().sum)
        state.SkipWithError("other values than were written");
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kValues) * kPasses);
}

__attribute__((noinline)) std::uint64_t SumVak(IoFile& file)
{
    std::uint64_t sum = 0;
    std::uint32_t value = 0;
    for (std::uint32_t i = 0; i < kValues; ++i) {
        if (!file.FileRead(&value, sizeof value))
            break;
        sum += value;
    }
    return sum;
}

__attribute__((noinline)) std::uint64_t SumFread(std::FILE* file)
{
    std::uint64_t sum = 0;
    std::uint32_t value = 0;
    for (std::uint32_t i = 0; i < kValues; ++i) {
        if (std::fread(&value, sizeof value, 1, file) != 1)
            break;
        sum += value;
    }
    return sum;
}

void ReadVak(benchmark::State& state)
{
    IoFile file(1, IoFile::kMemory);
    if (!file.OpenFile(File().path, 1))
        return state.SkipWithError("cannot open");
    std::uint64_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        for (int pass = 0; pass < kPasses; ++pass) {
            file.FileSeek(0, CFile::begin);
            sum += SumVak(file);
        }
    }
    Finish(state, sum);
}

void ReadFread(benchmark::State& state)
{
    std::FILE* file = std::fopen(File().host.c_str(), "rb");
    std::uint64_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        for (int pass = 0; pass < kPasses; ++pass) {
            std::rewind(file);
            sum += SumFread(file);
        }
    }
    std::fclose(file);
    Finish(state, sum);
}

const int registered = [] {
    benchmark::RegisterBenchmark("small_reads/4_bytes/50M/vak", ReadVak)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("small_reads/4_bytes/50M/fread", ReadFread)->Unit(benchmark::kMillisecond);
    return 0;
}();

} // namespace
