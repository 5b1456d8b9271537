#include "files/detail/ShareForm.h"

#include "files/FilePath.h"

namespace vak::detail {

namespace {

/// The share's path as it stands at the beginning of paths inside it: without a final backslash, lower-cased.
CString Beginning(const system::DiskShare& share)
{
    CString path = share.path;
    fileRemoveSlashTermination(path);
    return path.MakeLower();
}

} // namespace

bool NetworkFormByShares(const LocalPath& path, const CString& computer,
                         const std::vector<system::DiskShare>& shares, CString& network)
{
    const CString directory = CString(path.directory).MakeLower();
    const system::DiskShare* nearest = nullptr;
    int nearestLength = 0;
    for (const system::DiskShare& share : shares) {
        const CString beginning = Beginning(share);
        const int length = beginning.GetLength();
        // A separator must follow: C:\Data does not contain C:\Database.
        const bool contains = length > nearestLength && directory.Left(length + 1) == beginning + L'\\';
        if (!contains)
            continue;
        nearest = &share;
        nearestLength = length;
    }
    if (nearest == nullptr || computer.IsEmpty())
        return false;
    network.Format(L"\\\\%s\\%s%s%s", computer.GetString(), nearest->name.GetString(),
                   path.directory.Mid(nearestLength).GetString(), path.name.GetString());
    return true;
}

} // namespace vak::detail
