#pragma once

#include "framework/base/Platform.h"

#include <shellapi.h>

namespace vak::win32 {

/// The system's entry points that SystemIcon calls. A test puts others in their place, which count.
struct IconEntries
{
    DWORD_PTR(WINAPI* getFileInfo)(LPCWSTR path, DWORD attributes, SHFILEINFOW* info, UINT size, UINT flags);
    BOOL(WINAPI* destroyIcon)(HICON icon);
};

/// The entries in use. Changed by tests only, while nothing else runs.
VAK_INTERNAL_API IconEntries& CurrentIconEntries();

} // namespace vak::win32
