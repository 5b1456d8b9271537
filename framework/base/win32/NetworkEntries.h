#pragma once

#include "framework/base/Platform.h"

#include <lm.h>

namespace vak::win32 {

/// The system's entry points that SystemNetwork and IsRemoteDrive call. A test puts others in their place: no
/// test machine has a mapped drive and shares.
struct NetworkEntries
{
    UINT(WINAPI* getDriveType)(LPCWSTR root);
    DWORD(WINAPI* getUniversalName)(LPCWSTR path, DWORD level, LPVOID buffer, LPDWORD size);
    BOOL(WINAPI* getComputerName)(LPWSTR name, LPDWORD size);
    /// Null: "NetShareEnum" and "NetApiBufferFree" of "Netapi32.dll", loaded for the question.
    NET_API_STATUS(WINAPI* enumerateShares)
    (LMSTR server, DWORD level, LPBYTE* buffer, DWORD wanted, LPDWORD read, LPDWORD total, LPDWORD resume);
    NET_API_STATUS(WINAPI* freeShares)(LPVOID buffer);
};

/// The entries in use. Changed by tests only, while nothing else runs.
VAK_INTERNAL_API NetworkEntries& CurrentNetworkEntries();

} // namespace vak::win32
