#include "core/CustomData.h"
#include "fuzz/support/Target.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace fs = std::filesystem;

using vak::fuzz::Require;

namespace {

/// A file of the process's own, gone with what the store put beside it when the process ends.
struct Scratch
{
    const fs::path folder = fs::temp_directory_path() / ("vakfuzz-" + std::to_string(std::random_device()()));
    const fs::path file = folder / "f";
    const fs::path aside = folder / "f.bad";

    Scratch() { fs::create_directories(folder); }
    ~Scratch() { fs::remove_all(folder); }

    /// As the library names it: natively the host's files are drive Z:.
    CString Path() const
    {
        CString path = file.u16string()[0] == u'/' ? L"Z:" : L"";
        for (const char16_t unit : file.u16string())
            path += unit == u'/' ? L'\\' : static_cast<wchar_t>(unit);
        return path;
    }
};

std::string Read(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The input is the file; the keys are those of the seeds.
void Run(const std::uint8_t* data, std::size_t size)
{
    static const Scratch scratch;
    const std::string bytes(data, data + size);
    std::ofstream(scratch.file, std::ios::binary) << bytes;
    const CString path = scratch.Path();
    CCustomData found;
    const int loaded = found.LoadFromPrefs(path, 1, 2);
    Require(loaded != 0 || !found.HasData());

    CCustomData store;
    store.SetInt(1, 42);
    if (store.SaveToPrefs(path, 2, 1) == 0) {
        Require(!fs::exists(scratch.file) && Read(scratch.aside) == bytes);
        return;
    }
    CCustomData again;
    Require(again.LoadFromPrefs(path, 2, 1) == 1 && again.IsEqual(store));
    Require(again.LoadFromPrefs(path, 1, 2) == loaded);
}

const vak::fuzz::Target target("Preferences", Run);

} // namespace
