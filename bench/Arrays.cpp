// Row "arrays": the archive of 100 million identifiers, written to a file and read back, beside fwrite and
// fread of the same bytes. Every reading fills new memory.

#include "core/IntArrayID.h"
#include "framework/base/Archive.h"
#include "framework/base/File.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>

namespace {

constexpr int kCount = 100'000'000;

/// A name below the temporary folder, and the numbers that are written to it.
class Workload
{
public:
    Workload()
        : host(std::filesystem::temp_directory_path() /
               ("vakbench-" + std::to_string(std::random_device()()) + ".bin"))
    {
        CString text(host.c_str());
        text.Replace(L'/', L'\\');
        path = L"Z:" + text;
        ids.Init(kCount);
        for (int i = 0; i < kCount; ++i)
            ids.Set(NumberAt(i));
    }
    ~Workload()
    {
        std::error_code ignored;
        std::filesystem::remove(host, ignored);
    }

    static int NumberAt(int index) { return int(unsigned(index) * 2654435761u); }

    std::string host;
    CString path;
    CIntArrayID ids;
};

Workload& Load()
{
    static Workload load;
    return load;
}

void Finish(benchmark::State& state)
{
    state.SetItemsProcessed(std::int64_t(state.iterations()) * kCount);
}

void WriteVak()
{
    CFile file(Load().path, CFile::modeCreate | CFile::modeWrite);
    CArchive archive(&file, CArchive::store);
    Load().ids.Serialize(archive);
    archive.Close();
}

void WriteStdio()
{
    int size = 0;
    const int* const numbers = Load().ids.GetData(size);
    std::FILE* file = std::fopen(Load().host.c_str(), "wb");
    std::fwrite(numbers, sizeof(int), std::size_t(size), file);
    std::fclose(file);
}

void Writes(benchmark::State& state, void (*write)())
{
    Load();
    for (auto _ : state)
        write();
    if (std::filesystem::file_size(Load().host) < std::uintmax_t{sizeof(int)} * kCount)
        state.SkipWithError("not everything was written");
    Finish(state);
}

void Check(benchmark::State& state, const int* numbers)
{
    for (int i = 0; i < kCount; i += 99'991)
        if (numbers[i] != Workload::NumberAt(i))
            return state.SkipWithError("other numbers than were written");
}

void ReadVak(benchmark::State& state)
{
    WriteVak();
    for (auto _ : state) {
        CIntArrayID ids;
        CFile file(Load().path, CFile::modeRead);
        CArchive archive(&file, CArchive::load);
        ids.Serialize(archive);
        int size = 0;
        const int* const numbers = ids.GetData(size);
        state.PauseTiming();
        Check(state, numbers);
        state.ResumeTiming();
    }
    Finish(state);
}

void ReadStdio(benchmark::State& state)
{
    WriteStdio();
    for (auto _ : state) {
        const auto numbers = std::make_unique_for_overwrite<int[]>(kCount);
        std::FILE* file = std::fopen(Load().host.c_str(), "rb");
        const std::size_t count = std::fread(numbers.get(), sizeof(int), kCount, file);
        std::fclose(file);
        state.PauseTiming();
        if (count == kCount)
            Check(state, numbers.get());
        state.ResumeTiming();
    }
    Finish(state);
}

const int registered = [] {
    const auto add = [](const char* name, auto body) {
        benchmark::RegisterBenchmark(name, body)->Unit(benchmark::kMillisecond);
    };
    add("arrays/write/100M/vak", [](benchmark::State& state) { Writes(state, WriteVak); });
    add("arrays/write/100M/fwrite", [](benchmark::State& state) { Writes(state, WriteStdio); });
    add("arrays/read/100M/vak", ReadVak);
    add("arrays/read/100M/fread", ReadStdio);
    return 0;
}();

} // namespace
