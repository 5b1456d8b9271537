// Row "zip", its reading half: the same archives listed, searched and extracted by the library, by libzip, by
// Info-ZIP's unzip and by the bare decoder.

#include "files/Zip.h"
#include "files/zip/ZipDirectory.h"
#include "framework/base/MemFile.h"

#include <benchmark/benchmark.h>
#include <zip.h>
#include <zlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr int kSmallFiles = 20000;
constexpr int kLookUps = 1000;
constexpr std::size_t kLargeBytes = 200000000;

std::string NameOf(int number)
{
    return "models/set" + std::to_string(number / 100) + "/part_" + std::to_string(number) + ".obj";
}

/// Lines as a mesh has them, of which deflate leaves about a third.
std::string MeshText(std::size_t size, std::mt19937& random)
{
    std::string text;
    while (text.size() < size)
        text += "v " + std::to_string(random() % 2000) + "." + std::to_string(random() % 1000) + " " +
                std::to_string(random() % 2000) + ".5 0.25\n";
    text.resize(size);
    return text;
}

/// The archives of the row, written when first asked for and removed at the end of the program.
class Archives
{
public:
    Archives()
        : m_folder(fs::temp_directory_path() / ("vakbench-zip-" + std::to_string(std::random_device()())))
    {
    }
    ~Archives()
    {
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
    }

    /// 20,000 files of some 3 KB.
    const std::string& Small()
    {
        if (m_small.empty())
            m_small = Write("small.zip", kSmallFiles, 3000);
        return m_small;
    }
    /// Ten files of 20 MB, every third without structure.
    const std::string& Large()
    {
        if (m_large.empty())
            m_large = Write("large.zip", 10, kLargeBytes / 10);
        return m_large;
    }
    /// A new folder. Nothing is removed before the end of the program: file systems exist that go on for
    /// minutes to step over what was just deleted whenever a file is made, and the time would be theirs.
    std::string Folder()
    {
        const fs::path folder = m_folder / std::to_string(++m_folders);
        fs::create_directories(folder);
        return folder.string();
    }

private:
    std::string Write(const char* name, int count, std::size_t size)
    {
        fs::create_directories(m_folder);
        const std::string path = (m_folder / name).string();
        std::mt19937 random(1);
        std::vector<std::string> data;
        zip_t* const archive = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
        for (int i = 0; i < count; ++i) {
            data.push_back(MeshText(size + random() % (size / 10), random));
            if (count < 100 && i % 3 == 0)
                for (char& byte : data.back())
                    byte = static_cast<char>(random());
        }
        for (int i = 0; i < count; ++i) {
            const std::string& bytes = data[static_cast<std::size_t>(i)];
            zip_file_add(archive, NameOf(i).c_str(),
                         zip_source_buffer(archive, bytes.data(), bytes.size(), 0), 0);
        }
        zip_close(archive);
        return path;
    }

    fs::path m_folder;
    int m_folders = 0;
    std::string m_small;
    std::string m_large;
};

Archives archives;

CString PathOf(const std::string& host)
{
    CString path(host.c_str());
    path.Replace(L'/', L'\\');
    return L"Z:" + path;
}

void ListVak(benchmark::State& state)
{
    const CString path = PathOf(archives.Small());
    for (auto _ : state) {
        CZip zip;
        zip.Open(path, CZip::zipOpenReadOnly);
        CZipHeader header;
        ULONGLONG total = 0;
        for (int i = 0, count = zip.GetCount(); i < count; ++i) {
            zip.GetFileInfo(header, static_cast<WORD>(i));
            total += header.GetUncompressedSize() + static_cast<ULONGLONG>(header.GetFileName().GetLength());
        }
        benchmark::DoNotOptimize(total);
    }
}

void ListLibzip(benchmark::State& state)
{
    for (auto _ : state) {
        zip_t* const archive = zip_open(archives.Small().c_str(), ZIP_RDONLY, nullptr);
        zip_uint64_t total = 0;
        const zip_int64_t count = zip_get_num_entries(archive, 0);
        for (zip_int64_t i = 0; i < count; ++i) {
            zip_stat_t entry;
            zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &entry);
            total += entry.size;
        }
        benchmark::DoNotOptimize(total);
        zip_discard(archive);
    }
}

void ListInfoZip(benchmark::State& state)
{
    const std::string command = "unzip -l '" + archives.Small() + "' >/dev/null";
    for (auto _ : state) {
        if (std::system(command.c_str()) != 0)
            state.SkipWithError("unzip failed");
    }
}

void FindVak(benchmark::State& state)
{
    const CString path = PathOf(archives.Small());
    std::vector<CString> names;
    for (int i = 0; i < kLookUps; ++i)
        names.emplace_back(NameOf(i * 17 % kSmallFiles).c_str());
    for (auto _ : state) {
        CZip zip;
        zip.Open(path, CZip::zipOpenReadOnly);
        int found = 0;
        for (const CString& name : names)
            found += zip.FindFile(name) >= 0 ? 1 : 0;
        if (found != kLookUps)
            state.SkipWithError("a name is missing");
    }
}

void FindLibzip(benchmark::State& state)
{
    std::vector<std::string> names;
    for (int i = 0; i < kLookUps; ++i)
        names.push_back(NameOf(i * 17 % kSmallFiles));
    for (auto _ : state) {
        zip_t* const archive = zip_open(archives.Small().c_str(), ZIP_RDONLY, nullptr);
        int found = 0;
        for (const std::string& name : names)
            found += zip_name_locate(archive, name.c_str(), 0) >= 0 ? 1 : 0;
        benchmark::DoNotOptimize(found);
        zip_discard(archive);
    }
}

/// Counts what it is given.
class CountingFile : public CFile
{
public:
    void Write(const void*, UINT count) override { m_count += count; }
    ULONGLONG m_count = 0;
};

void ExtractVak(benchmark::State& state, const std::string& archive)
{
    const CString path = PathOf(archive);
    for (auto _ : state) {
        CZip zip;
        zip.Open(path, CZip::zipOpenReadOnly);
        CountingFile to;
        const std::size_t count = zip.GetEntryCount();
        for (std::size_t i = 0; i < count; ++i)
            zip.ExtractTo(i, to);
        benchmark::DoNotOptimize(to.m_count);
    }
}

/// Hands every piece of every entry to `take(index, bytes, size)`.
template <class Take>
void ReadLibzip(const std::string& path, Take take)
{
    zip_t* const archive = zip_open(path.c_str(), ZIP_RDONLY, nullptr);
    std::vector<char> buffer(65536);
    const auto count = static_cast<zip_uint64_t>(zip_get_num_entries(archive, 0));
    for (zip_uint64_t i = 0; i < count; ++i) {
        zip_file_t* const file = zip_fopen_index(archive, i, 0);
        for (zip_int64_t got; (got = zip_fread(file, buffer.data(), buffer.size())) > 0;)
            take(i, buffer.data(), static_cast<std::size_t>(got));
        zip_fclose(file);
    }
    zip_discard(archive);
}

void ExtractLibzip(benchmark::State& state, const std::string& archive)
{
    for (auto _ : state) {
        std::size_t total = 0;
        ReadLibzip(archive, [&](zip_uint64_t, const char*, std::size_t size) { total += size; });
        benchmark::DoNotOptimize(total);
    }
}

/// The decoder and its CRC over the bytes of the archive in memory: nothing is opened, sought or checked.
void ExtractBare(benchmark::State& state, const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    vak::detail::ZipMemory source({data, bytes.size()});
    vak::detail::ZipDirectory directory;
    directory.Read(source, 437, bytes.size(), L"bench");
    std::vector<Bytef> buffer(65536);
    for (auto _ : state) {
        z_stream stream{};
        inflateInit2(&stream, -MAX_WBITS);
        uLong total = 0;
        for (const auto& entry : directory.Entries()) {
            inflateReset(&stream);
            stream.next_in = const_cast<Bytef*>(data + entry.localOffset + 30 + entry.nameLength);
            stream.avail_in = static_cast<uInt>(entry.compressed);
            int code = entry.method == 0 ? Z_STREAM_END : Z_OK;
            if (entry.method == 0)
                total += crc32(0, stream.next_in, stream.avail_in);
            uLong crc = 0;
            while (code == Z_OK) {
                stream.next_out = buffer.data();
                stream.avail_out = static_cast<uInt>(buffer.size());
                code = inflate(&stream, Z_NO_FLUSH);
                crc = crc32(crc, buffer.data(), static_cast<uInt>(buffer.size() - stream.avail_out));
            }
            total += crc;
        }
        inflateEnd(&stream);
        benchmark::DoNotOptimize(total);
    }
}

void ToDiskVak(benchmark::State& state)
{
    const CString path = PathOf(archives.Small());
    for (auto _ : state) {
        state.PauseTiming();
        const CString folder = PathOf(archives.Folder());
        state.ResumeTiming();
        CZip zip;
        zip.Open(path, CZip::zipOpenReadOnly);
        for (int i = 0, count = zip.GetCount(); i < count; ++i)
            zip.ExtractFile(static_cast<WORD>(i), folder);
    }
}

void ToDiskLibzip(benchmark::State& state)
{
    std::vector<std::string> names;
    for (int i = 0; i < kSmallFiles; ++i)
        names.push_back(NameOf(i));
    for (auto _ : state) {
        state.PauseTiming();
        const std::string folder = archives.Folder() + "/";
        const std::string& path = archives.Small();
        state.ResumeTiming();
        std::FILE* out = nullptr;
        zip_uint64_t current = ~zip_uint64_t{0};
        ReadLibzip(path, [&](zip_uint64_t index, const char* bytes, std::size_t size) {
            if (index != current) {
                if (out != nullptr)
                    std::fclose(out);
                const std::string to = folder + names[index];
                fs::create_directories(fs::path(to).parent_path());
                out = std::fopen(to.c_str(), "wb");
                current = index;
            }
            std::fwrite(bytes, 1, size, out);
        });
        std::fclose(out);
    }
}

void ExtractSmallVak(benchmark::State& state)
{
    ExtractVak(state, archives.Small());
}

void ExtractSmallLibzip(benchmark::State& state)
{
    ExtractLibzip(state, archives.Small());
}

void ExtractSmallBare(benchmark::State& state)
{
    ExtractBare(state, archives.Small());
}

void ExtractLargeVak(benchmark::State& state)
{
    ExtractVak(state, archives.Large());
}

void ExtractLargeBare(benchmark::State& state)
{
    ExtractBare(state, archives.Large());
}

BENCHMARK(ListVak)->Name("zip/list/20k/vak")->Unit(benchmark::kMillisecond);
BENCHMARK(ListInfoZip)->Name("zip/list/20k/info-zip")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ListLibzip)->Name("zip/list-api/20k/libzip")->Unit(benchmark::kMillisecond);
BENCHMARK(ListVak)->Name("zip/list-api/20k/vak")->Unit(benchmark::kMillisecond);
BENCHMARK(FindVak)->Name("zip/find/20k/vak")->Unit(benchmark::kMillisecond);
BENCHMARK(FindLibzip)->Name("zip/find/20k/libzip")->Unit(benchmark::kMillisecond);
BENCHMARK(ExtractSmallVak)->Name("zip/extract_memory/20k/vak")->Unit(benchmark::kMillisecond);
BENCHMARK(ExtractSmallLibzip)->Name("zip/extract_memory/20k/libzip")->Unit(benchmark::kMillisecond);
BENCHMARK(ExtractSmallBare)->Name("zip/extract_memory/20k/bare-zlib")->Unit(benchmark::kMillisecond);
BENCHMARK(ToDiskVak)->Name("zip/extract_disk/20k/vak")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ToDiskLibzip)->Name("zip/extract_disk/20k/libzip")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ExtractLargeVak)->Name("zip/extract/200MB/vak")->Unit(benchmark::kMillisecond);
BENCHMARK(ExtractLargeBare)->Name("zip/extract/200MB/bare-zlib")->Unit(benchmark::kMillisecond);

} // namespace
