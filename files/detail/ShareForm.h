#pragma once

#include "framework/base/Platform.h"
#include "framework/base/String.h"
#include "framework/base/SystemNetwork.h"

#include <vector>

namespace vak::detail {

/// A full path on a drive of this computer; the directory is slash-terminated, the name may be empty.
struct LocalPath
{
    CString directory;
    CString name;
};

/// Builds the network form of a local path from the share that contains it; when several do, from the one
/// nearest to it. False, `network` untouched, when none does.
VAK_INTERNAL_API bool NetworkFormByShares(const LocalPath& path, const CString& computer,
                                          const std::vector<system::DiskShare>& shares, CString& network);

} // namespace vak::detail
