#pragma once

/// Paths of the network: "\\server\share\...".

#include "framework/base/Platform.h"
#include "framework/base/String.h"

/// Returns 1 for a path that begins with a server and a share.
VAK_API int fileIsUNCPath(const CString& path);
/// Returns 1 for a network path and for a path on a mapped network drive.
VAK_API int fileIsOnNetworkDrive(const CString& path);
/// Gives the network form of a path: the path itself if it is one already, the universal name of a path on a
/// mapped drive, else the name by which a share of this computer reaches it. Returns 0, with `network` as it
/// was, when there is none.
VAK_API int fileConvertToUNCPath(const CString& path, CString& network);
