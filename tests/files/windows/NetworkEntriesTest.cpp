#include "framework/base/win32/NetworkEntries.h"
#include "files/NetworkPath.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

/// A network of our own: drive M: is mapped, and shares come in answers of one each.
class NetworkEntries : public testing::Test
{
protected:
    NetworkEntries()
    {
        m_universalError = NO_ERROR;
        m_lastStatus = NERR_Success;
        m_shares.clear();
        vak::win32::NetworkEntries& entries = vak::win32::CurrentNetworkEntries();
        entries.getDriveType = [](LPCWSTR root) -> UINT {
            return CString(root) == L"M:\\" ? DRIVE_REMOTE : DRIVE_FIXED;
        };
        entries.getUniversalName = UniversalName;
        entries.getComputerName = [](LPWSTR name, LPDWORD) -> BOOL {
            std::memcpy(name, L"PC", sizeof L"PC");
            return TRUE;
        };
        entries.enumerateShares = EnumerateShares;
        entries.freeShares = [](LPVOID) -> NET_API_STATUS { return --m_open, NERR_Success; };
    }
    ~NetworkEntries() override { vak::win32::CurrentNetworkEntries() = m_system; }

    static void Share(LPCWSTR name, DWORD type, LPCWSTR path)
    {
        m_shares.push_back(
            {const_cast<LPWSTR>(name), type, nullptr, 0, 0, 0, const_cast<LPWSTR>(path), nullptr});
    }

    static DWORD WINAPI UniversalName(LPCWSTR path, DWORD level, LPVOID buffer, LPDWORD size)
    {
        const CString name = CString(L"\\\\srv\\maps") + (path + 2);
        const std::size_t bytes = (static_cast<std::size_t>(name.GetLength()) + 1) * sizeof(WCHAR);
        auto* info = static_cast<REMOTE_NAME_INFOW*>(buffer);
        EXPECT_EQ(static_cast<DWORD>(REMOTE_NAME_INFO_LEVEL), level);
        EXPECT_LE(sizeof *info + bytes, *size);
        info->lpUniversalName = reinterpret_cast<LPWSTR>(info + 1);
        std::memcpy(info->lpUniversalName, name.GetString(), bytes);
        return m_universalError;
    }
    static NET_API_STATUS WINAPI EnumerateShares(LMSTR, DWORD, LPBYTE* buffer, DWORD, LPDWORD read,
                                                 LPDWORD total, LPDWORD resume)
    {
        *total = static_cast<DWORD>(m_shares.size());
        *read = *resume < m_shares.size() ? 1 : 0;
        if (*read == 0)
            return m_lastStatus;
        *buffer = reinterpret_cast<LPBYTE>(&m_shares[(*resume)++]);
        ++m_open;
        return *resume < m_shares.size() ? NET_API_STATUS{ERROR_MORE_DATA} : m_lastStatus;
    }

    static inline DWORD m_universalError;
    static inline NET_API_STATUS m_lastStatus;
    static inline std::vector<SHARE_INFO_2> m_shares;
    static inline int m_open = 0;
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
    m_universalError = ERROR_NOT_CONNECTED;
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
    EXPECT_EQ(0, m_open);
    m_lastStatus = ERROR_NOT_SUPPORTED;
    EXPECT_EQ(0, fileConvertToUNCPath(L"C:\\no-such\\g.x", form));
    m_lastStatus = ERROR_MORE_DATA;
    EXPECT_EQ(1, fileConvertToUNCPath(L"C:\\no-such\\h.x", form)) << "must not ask for ever";
    EXPECT_EQ(CString(L"\\\\PC\\Work\\h.x"), form);
    EXPECT_EQ(0, m_open);
}
