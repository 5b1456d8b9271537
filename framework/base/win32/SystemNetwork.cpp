#include "framework/base/SystemNetwork.h"

#include "framework/base/win32/NetworkEntries.h"

#include <memory>
#include <type_traits>

namespace vak::win32 {

NetworkEntries& CurrentNetworkEntries()
{
    static NetworkEntries entries{GetDriveTypeW, WNetGetUniversalNameW, GetComputerNameW, nullptr, nullptr};
    return entries;
}

} // namespace vak::win32

namespace vak::system {

namespace {

struct LibraryFreer
{
    void operator()(HMODULE module) const { FreeLibrary(module); }
};
using Library = std::unique_ptr<std::remove_pointer_t<HMODULE>, LibraryFreer>;

template <class Entry>
void FindEntry(Entry& entry, HMODULE module, const char* name)
{
    entry = reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

/// Fills in the entry points of the network-management library. It stays loaded as long as `library` lives.
bool LoadShareEntries(win32::NetworkEntries& entries, Library& library)
{
    if (entries.enumerateShares != nullptr)
        return entries.freeShares != nullptr;
    library.reset(LoadLibraryExW(L"Netapi32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
    if (library == nullptr)
        return false;
    FindEntry(entries.enumerateShares, library.get(), "NetShareEnum");
    FindEntry(entries.freeShares, library.get(), "NetApiBufferFree");
    return entries.enumerateShares != nullptr && entries.freeShares != nullptr;
}

void AppendDisks(std::vector<DiskShare>& shares, const SHARE_INFO_2* infos, DWORD count)
{
    for (DWORD i = 0; i < count; ++i) {
        const bool isDisk = (infos[i].shi2_type & ~static_cast<DWORD>(STYPE_SPECIAL)) == STYPE_DISKTREE;
        if (isDisk)
            shares.push_back({infos[i].shi2_netname, infos[i].shi2_path});
    }
}

} // namespace

bool UniversalName(const CString& path, CString& name)
{
    alignas(REMOTE_NAME_INFOW) BYTE buffer[sizeof(REMOTE_NAME_INFOW) + 4 * MAX_PATH * sizeof(WCHAR)];
    DWORD size = sizeof buffer;
    const auto ask = win32::CurrentNetworkEntries().getUniversalName;
    if (ask(path, REMOTE_NAME_INFO_LEVEL, buffer, &size) != NO_ERROR)
        return false;
    name = reinterpret_cast<const REMOTE_NAME_INFOW*>(buffer)->lpUniversalName;
    return true;
}

bool ListDiskShares(std::vector<DiskShare>& shares)
{
    Library library;
    win32::NetworkEntries entries = win32::CurrentNetworkEntries();
    if (!LoadShareEntries(entries, library))
        return false;

    std::vector<DiskShare> found;
    DWORD resume = 0;
    NET_API_STATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        LPBYTE buffer = nullptr;
        DWORD count = 0;
        DWORD total = 0;
        status = entries.enumerateShares(nullptr, 2, &buffer, MAX_PREFERRED_LENGTH, &count, &total, &resume);
        const bool answered = status == NERR_Success || status == ERROR_MORE_DATA;
        if (answered && buffer != nullptr)
            AppendDisks(found, reinterpret_cast<const SHARE_INFO_2*>(buffer), count);
        if (buffer != nullptr)
            entries.freeShares(buffer);
        if (!answered)
            return false;
        // An answer that promises more but brings nothing would be asked for for ever.
        if (count == 0)
            break;
    }
    shares.swap(found);
    return true;
}

CString NetworkNameOfThisComputer()
{
    WCHAR name[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
    return win32::CurrentNetworkEntries().getComputerName(name, &size) ? CString(name) : CString();
}

} // namespace vak::system
