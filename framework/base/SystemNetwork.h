#pragma once

/// What the operating system knows about this computer's place in the network. Where there is no network
/// layer every question is answered with false or an empty text.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

#include <vector>

namespace vak::system {

/// A folder of this computer that others reach by `name`; `path` is its local path as the system holds it.
struct DiskShare
{
    CString name;
    CString path;
};

/// The "\\server\share\..." form of a path on a mapped drive. False, `name` untouched, when there is none.
VAK_INTERNAL_API bool UniversalName(const CString& path, CString& name);
/// All disk shares in the system's order. False, `shares` untouched, when they cannot be listed.
VAK_INTERNAL_API bool ListDiskShares(std::vector<DiskShare>& shares);
VAK_INTERNAL_API CString NetworkNameOfThisComputer();

} // namespace vak::system
