#include "framework/base/SystemFile.h"

#include "framework/base/SystemText.h"

#include <algorithm>

namespace vak::system {

bool ListFolder(LPCWSTR folder, std::vector<FileEntry>& entries)
{
    entries.clear();
    if (!ReadFolder(folder, entries))
        return false;
    const auto before = [](const FileEntry& a, const FileEntry& b) {
        const int order = CompareOrdinalIgnoreCase(a.name, static_cast<size_t>(a.name.GetLength()), b.name,
                                                   static_cast<size_t>(b.name.GetLength()));
        return order != 0 ? order < 0 : a.name < b.name;
    };
    std::sort(entries.begin(), entries.end(), before);
    return true;
}

} // namespace vak::system
