// Row "zip", its writing half: an archive created beside the bare encoder on the same bytes, and one entry
// deleted beside Info-ZIP's zip, run as a process.

#include "files/Zip.h"

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kParts = 40;
constexpr std::size_t kPart = 1 << 20;
/// Entries of the archive of which one is deleted: 200 MB.
constexpr std::size_t kStored = 200;
constexpr int kLevel = 6;

CString Library(const fs::path& host)
{
    CString text(host.c_str());
    text.Replace(L'/', L'\\');
    return L"Z:" + text;
}

/// Lines as a mesh has them, with stretches of noise: deflate leaves about a half.
std::string Mixed(unsigned seed)
{
    std::mt19937 random(seed);
    std::string bytes;
    while (bytes.size() < kPart) {
        for (int i = 0; i < 200; ++i)
            bytes += "v " + std::to_string(random() % 100000) + ' ' + std::to_string(i) + ".5 0.25\n";
        for (int i = 0; i < 1024; ++i)
            bytes += static_cast<char>(random());
    }
    bytes.resize(kPart);
    return bytes;
}

/// The files of the row, made when first asked for and removed at the end of the program.
class Files
{
public:
    Files() : folder(fs::temp_directory_path() / ("vakbench-zip-" + std::to_string(std::random_device()())))
    {
        fs::create_directories(folder);
        for (unsigned i = 0; i < kParts; ++i) {
            parts.push_back(Mixed(i));
            paths.push_back(folder / ("part" + std::to_string(i)));
            std::ofstream(paths.back(), std::ios::binary) << parts.back();
        }
        Pack("stored.zip", kStored, 0);
    }
    ~Files()
    {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    void Pack(const char* archive, std::size_t count, int level) const
    {
        CZip zip;
        zip.Open(Library(folder / archive), CZip::zipCreate);
        for (std::size_t i = 0; i < count; ++i) {
            CString name;
            name.Format(L"part%u", static_cast<unsigned>(i));
            zip.AddNewFile(Library(paths[i % kParts]), name.GetString(), level);
        }
        zip.Close();
    }

    fs::path folder;
    std::vector<std::string> parts;
    std::vector<fs::path> paths;
};

const Files& Data()
{
    static const Files files;
    return files;
}

void CreateVak(benchmark::State& state)
{
    for (auto _ : state)
        Data().Pack("created.zip", kParts, kLevel);
}

/// From memory to memory.
void CreateBare(benchmark::State& state)
{
    std::vector<Bytef> packed(2 * kPart);
    z_stream z{};
    deflateInit2(&z, kLevel, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    for (auto _ : state) {
        for (const std::string& part : Data().parts) {
            auto* const bytes = reinterpret_cast<Bytef*>(const_cast<char*>(part.data()));
            benchmark::DoNotOptimize(crc32_z(0, bytes, part.size()));
            deflateReset(&z);
            z.next_in = bytes;
            z.avail_in = static_cast<uInt>(part.size());
            z.next_out = packed.data();
            z.avail_out = static_cast<uInt>(packed.size());
            if (deflate(&z, Z_FINISH) != Z_STREAM_END)
                state.SkipWithError("deflate failed");
        }
    }
    deflateEnd(&z);
}

/// Every round deletes another entry of a copy, so that each finds one to delete.
template <class Delete>
void DeleteEach(benchmark::State& state, const char* copy, Delete act)
{
    const fs::path archive = Data().folder / copy;
    fs::copy_file(Data().folder / "stored.zip", archive, fs::copy_options::overwrite_existing);
    std::size_t next = 0;
    for (auto _ : state)
        act(archive, "part" + std::to_string(next++ % kStored));
}

/// Flushed to the disk before it replaces the old archive, which the tool does not do.
void DeleteVak(benchmark::State& state)
{
    DeleteEach(state, "deleted.zip", [](const fs::path& archive, const std::string& entry) {
        CZip zip;
        zip.Open(Library(archive));
        CStringArray names;
        names.Add(CString(entry.c_str()));
        zip.DeleteFiles(names);
        zip.Close();
    });
}

void DeleteInfoZip(benchmark::State& state)
{
    DeleteEach(state, "deleted-by-tool.zip", [&state](const fs::path& archive, const std::string& entry) {
        if (std::system(("zip -qd '" + archive.string() + "' " + entry + " >/dev/null").c_str()) != 0)
            state.SkipWithError("zip failed");
    });
}

BENCHMARK(CreateVak)->Name("zip/create/40MB/vak")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(CreateBare)->Name("zip/create/40MB/bare-zlib")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(DeleteVak)->Name("zip/delete_one/200MB/vak")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(DeleteInfoZip)->Name("zip/delete_one/200MB/info-zip")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
