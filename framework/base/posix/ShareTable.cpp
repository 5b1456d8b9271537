#include "framework/base/posix/ShareTable.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace vak::posix {

namespace {

struct OpenFile
{
    int descriptor;
    dev_t device;
    ino_t inode;
    system::OpenOptions options;
};

struct Table
{
    std::mutex mutex;
    std::vector<OpenFile> files;
};

/// Never destroyed: files may be closed while the process ends.
Table& OpenFiles()
{
    static Table* const table = new Table;
    return *table;
}

bool Lets(const system::OpenOptions& holder, const system::OpenOptions& comer)
{
    return (holder.shareRead || !comer.read) && (holder.shareWrite || !comer.write);
}

bool IsSame(const OpenFile& open, const struct stat& file)
{
    return open.device == file.st_dev && open.inode == file.st_ino;
}

} // namespace

bool AdmitOpen(int descriptor, const struct stat& file, const system::OpenOptions& options)
{
    Table& table = OpenFiles();
    const std::lock_guard lock(table.mutex);
    for (const OpenFile& open : table.files) {
        if (IsSame(open, file) && !(Lets(open.options, options) && Lets(options, open.options)))
            return false;
    }
    table.files.push_back({descriptor, file.st_dev, file.st_ino, options});
    return true;
}

void ForgetOpen(int descriptor)
{
    Table& table = OpenFiles();
    const std::lock_guard lock(table.mutex);
    std::erase_if(table.files, [=](const OpenFile& open) { return open.descriptor == descriptor; });
}

bool MayDelete(const struct stat& file)
{
    Table& table = OpenFiles();
    const std::lock_guard lock(table.mutex);
    return std::none_of(table.files.begin(), table.files.end(), [&](const OpenFile& open) {
        return IsSame(open, file) && !open.options.shareDelete;
    });
}

} // namespace vak::posix
