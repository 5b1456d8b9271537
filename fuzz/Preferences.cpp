#include "core/CustomData.h"
#include "files/FileNames.h"
#include "files/FileSystem.h"
#include "framework/base/File.h"
#include "fuzz/support/Target.h"

#include <random>
#include <string>

using vak::fuzz::Require;

namespace {

/// A folder of the process's own, gone with what the store put into it when the process ends.
struct Scratch
{
    const CString name = ("vakfuzz-" + std::to_string(std::random_device()())).c_str();
    const CString folder = fileCreateTmpFolder(name, 1);

    ~Scratch() { fileRemoveDirectory(folder, 1); }
};

std::string Read(const CString& path)
{
    CFile file(path, CFile::modeRead);
    std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

/// The input is the file; the keys are those of the seeds.
void Run(const std::uint8_t* data, std::size_t size)
{
    static const Scratch scratch;
    const CString path = scratch.folder + L"f";
    CFile(path, CFile::modeCreate | CFile::modeWrite).Write(data, static_cast<UINT>(size));
    CCustomData found;
    const int loaded = found.LoadFromPrefs(path, 1, 2);
    Require(loaded != 0 || !found.HasData());

    CCustomData store;
    store.SetInt(1, 42);
    if (store.SaveToPrefs(path, 2, 1) == 0) {
        Require(!fileExists(path) && Read(path + L".bad") == std::string(data, data + size));
        return;
    }
    CCustomData again;
    Require(again.LoadFromPrefs(path, 2, 1) == 1 && again.IsEqual(store));
    Require(again.LoadFromPrefs(path, 1, 2) == loaded);
}

const vak::fuzz::Target target("Preferences", Run);

} // namespace
