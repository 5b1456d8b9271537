#include "files/NetworkPath.h"

#include "files/FilePath.h"
#include "files/detail/ShareForm.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/detail/PathText.h"

using namespace vak;

namespace {

bool IsOnMappedDrive(const CString& fullPath)
{
    CString root = fullPath.Left(detail::RootLength(fullPath));
    fileSlashTerminate(root);
    return system::IsRemoteDrive(root);
}

} // namespace

int fileIsUNCPath(const CString& path)
{
    return detail::IsNetworkPath(path) ? 1 : 0;
}

int fileIsOnNetworkDrive(const CString& path)
{
    CString fullPath = path;
    system::FullPath(path, fullPath);
    return detail::IsNetworkPath(fullPath) || IsOnMappedDrive(fullPath) ? 1 : 0;
}

int fileConvertToUNCPath(const CString& path, CString& network)
{
    if (detail::IsNetworkPath(path)) {
        network = path;
        return 1;
    }
    CString fullPath = path;
    system::FullPath(path, fullPath);
    if (IsOnMappedDrive(fullPath))
        return system::UniversalName(fullPath, network) ? 1 : 0;

    std::vector<system::DiskShare> shares;
    if (!system::ListDiskShares(shares))
        return 0;
    const detail::LocalPath local{fileStripName(fullPath), fileStripPath(fullPath)};
    return detail::NetworkFormByShares(local, system::NetworkNameOfThisComputer(), shares, network) ? 1 : 0;
}
