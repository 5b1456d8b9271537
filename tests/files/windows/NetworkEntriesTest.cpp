#include "framework/base/win32/NetworkEntries.h"
#include "files/NetworkPath.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

/// What the network is made to look like: drive M: is mapped, and shares come in answers of one each.
struct FakeNetwork
{
    static inline DWORD universalError = NO_ERROR;
    static inline DWORD level = 0;
    static inline NET_API_STATUS lastStatus = NERR_Success;
    static inline std::vector<SHARE_INFO_2> shares;
    static inline int open = 0;

    static UINT WINAPI DriveType(LPCWSTR root)
    {
        return CString(root) == L"M:\\" ? DRIVE_REMOTE : DRIVE_FIXED;
    }
    static DWORD WINAPI Universal(LPCWSTR path, DWORD wantedLevel, LPVOID buffer, LPDWORD size)
    {
        level = wantedLevel;
        if (universalError != NO_ERROR)
            return universalError;
        const CString name = CString(L"\\\\srv\\maps") + (path + 2);
        auto* info = static_cast<REMOTE_NAME_INFOW*>(buffer);
        info->lpUniversalName = reinterpret_cast<LPWSTR>(info + 1);
        const std::size_t bytes = (static_cast<std::size_t>(name.GetLength()) + 1) * sizeof(WCHAR);
        EXPECT_LE(sizeof *info + bytes, *size);
        std::memcpy(info->lpUniversalName, name.GetString(), bytes);
        return NO_ERROR;
    }
    static BOOL WINAPI ComputerName(LPWSTR name, LPDWORD)
    {
        std::memcpy(name, L"PC", sizeof L"PC");
        return TRUE;
    }
    static NET_API_STATUS WINAPI Enumerate(LMSTR, DWORD, LPBYTE* buffer, DWORD, LPDWORD read, LPDWORD total,
                                           LPDWORD resume)
    {
        *total = static_cast<DWORD>(shares.size());
        *read = 0;
        if (*resume >= shares.size())
            return lastStatus;
        *buffer = reinterpret_cast<LPBYTE>(&shares[(*resume)++]);
        *read = 1;
        ++open;
        return *resume < shares.size() ? static_cast<NET_API_STATUS>(ERROR_MORE_DATA) : lastStatus;
    }
    static NET_API_STATUS WINAPI Free(LPVOID)
    {
        --open;
        return NERR_Success;
    }
};

class NetworkEntries : public testing::Test
{
protected:
    NetworkEntries()
    {
        vak::win32::CurrentNetworkEntries() = {FakeNetwork::DriveType, FakeNetwork::Universal,
                                               FakeNetwork::ComputerName, FakeNetwork::Enumerate,
                                               FakeNetwork::Free};
        FakeNetwork::universalError = NO_ERROR;
        FakeNetwork::lastStatus = NERR_Success;
        FakeNetwork::shares.clear();
    }
    ~NetworkEntries() override { vak::win32::CurrentNetworkEntries() = m_system; }

    static void Share(LPCWSTR name, DWORD type, LPCWSTR path)
    {
        FakeNetwork::shares.push_back(
            {const_cast<LPWSTR>(name), type, nullptr, 0, 0, 0, const_cast<LPWSTR>(path), nullptr});
    }

    const vak::win32::NetworkEntries m_system = vak::win32::CurrentNetworkEntries();
};

} // namespace

TEST_F(NetworkEntries, MappedDriveGivesItsUniversalName)
{
    CString form = L"before";
    EXPECT_EQ(1, fileIsOnNetworkDrive(L"M:\\d\\f.x"));
    EXPECT_EQ(0, fileIsOnNetworkDrive(L"C:\\d\\f.x"));
    EXPECT_EQ(1, fileConvertToUNCPath(L"M:\\d\\f.x", form));
    EXPECT_EQ(CString(L"\\\\srv\\maps\\d\\f.x"), form);
    EXPECT_EQ(static_cast<DWORD>(REMOTE_NAME_INFO_LEVEL), FakeNetwork::level);
    FakeNetwork::universalError = ERROR_NOT_CONNECTED;
    EXPECT_EQ(0, fileConvertToUNCPath(L"M:\\f", form));
    EXPECT_EQ(CString(L"\\\\srv\\maps\\d\\f.x"), form);
}

TEST_F(NetworkEntries, SharesAreListedUntilThereAreNoMore)
{
    Share(L"IPC$", static_cast<DWORD>(STYPE_IPC | STYPE_SPECIAL), L"");
    Share(L"Queue", STYPE_PRINTQ, L"C:\\no-such");
    Share(L"C$", static_cast<DWORD>(STYPE_DISKTREE | STYPE_SPECIAL), L"C:\\");
    Share(L"Work", STYPE_DISKTREE, L"C:\\No-Such");
    CString form;
    EXPECT_EQ(1, fileConvertToUNCPath(L"c:\\no-SUCH\\D\\f.x", form));
    EXPECT_EQ(CString(L"\\\\PC\\Work\\D\\f.x"), form);
    EXPECT_EQ(0, FakeNetwork::open);
    FakeNetwork::lastStatus = ERROR_NOT_SUPPORTED;
    EXPECT_EQ(0, fileConvertToUNCPath(L"C:\\no-such\\g.x", form));
    FakeNetwork::lastStatus = ERROR_MORE_DATA;
    EXPECT_EQ(1, fileConvertToUNCPath(L"C:\\no-such\\h.x", form)) << "must not ask for ever";
    EXPECT_EQ(CString(L"\\\\PC\\Work\\h.x"), form);
    EXPECT_EQ(0, FakeNetwork::open);
}

TEST_F(NetworkEntries, ComputerWithoutSharesGivesNoForm)
{
    vak::win32::CurrentNetworkEntries() = m_system;
    CString form = L"before";
    // The system's own entry points; a machine that shares the drive gives it a form.
    const int found = fileConvertToUNCPath(L"C:\\no-such\\f", form);
    EXPECT_EQ(found, form == L"before" ? 0 : 1);
}
