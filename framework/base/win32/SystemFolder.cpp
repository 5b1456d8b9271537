#include "framework/base/SystemFolder.h"

#include "framework/base/detail/CompactPath.h"
#include "framework/base/win32/NetworkEntries.h"

#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>

namespace vak::system {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

CString WithSlash(CString folder)
{
    if (!folder.IsEmpty() && folder[folder.GetLength() - 1] != L'\\')
        folder += L'\\';
    return folder;
}

CString WithoutSlash(CString path)
{
    const int last = path.GetLength() - 1;
    if (last > 0 && path[last] == L'\\' && path[last - 1] != L':')
        path.Delete(last);
    return path;
}

/// Calls what fills a buffer of the size that it asks for: `fill` gets buffer and size in units, returns the
/// length, the size needed when the buffer is too small, or 0. Empty on failure.
template <class Fill>
CString Filled(Fill fill)
{
    CString text;
    DWORD size = MAX_PATH;
    for (;;) {
        const DWORD length = fill(text.GetBuffer(static_cast<int>(size)), size);
        if (length < size) {
            text.ReleaseBuffer(static_cast<int>(length));
            return text;
        }
        text.ReleaseBuffer(0);
        // The module's name is cut to the buffer without saying how long it is.
        size = length == size ? size * 2 : length;
    }
}

/// The path of what the system opens under a name without following it; empty when it does not tell.
CString OpenedPath(const CString& path)
{
    const HANDLE file = CreateFileW(path, 0, kShareAll, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return {};
    const CString opened = Filled(
        [file](LPWSTR buffer, DWORD size) { return GetFinalPathNameByHandleW(file, buffer, size, 0); });
    CloseHandle(file);
    return opened;
}

/// The font and the context that a window draws its own text with.
class WindowContext
{
public:
    explicit WindowContext(HWND window) : m_window(window), m_context(GetDC(window))
    {
        WPARAM font = 0;
        if (window != nullptr)
            font = static_cast<WPARAM>(SendMessageW(window, WM_GETFONT, 0, 0));
        if (font != 0)
            m_oldFont = SelectObject(m_context, reinterpret_cast<HGDIOBJ>(font));
    }
    ~WindowContext()
    {
        if (m_oldFont != nullptr)
            SelectObject(m_context, m_oldFont);
        ReleaseDC(m_window, m_context);
    }
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;
    operator HDC() const { return m_context; }

private:
    HWND m_window;
    HDC m_context;
    HGDIOBJ m_oldFont = nullptr;
};

} // namespace

bool MakeFolder(const CString& path)
{
    return CreateDirectoryW(path, nullptr) != 0;
}

bool RemoveEmptyFolder(const CString& path)
{
    return !RemovesElsewhere(path) && RemoveDirectoryW(WithoutSlash(path)) != 0;
}

bool IdentifyFolder(const CString& path, FolderIdentity& identity)
{
    const HANDLE folder =
        CreateFileW(path, 0, kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (folder == INVALID_HANDLE_VALUE)
        return false;
    BY_HANDLE_FILE_INFORMATION found;
    const bool isFolder = GetFileInformationByHandle(folder, &found) &&
                          (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    CloseHandle(folder);
    if (!isFolder)
        return false;
    const auto joined = [](ULONGLONG high, DWORD low) { return high << 32 | low; };
    identity.volume = found.dwVolumeSerialNumber;
    identity.number = joined(found.nFileIndexHigh, found.nFileIndexLow);
    identity.created = joined(found.ftCreationTime.dwHighDateTime, found.ftCreationTime.dwLowDateTime);
    return true;
}

bool IsLink(const CString& path)
{
    WIN32_FIND_DATAW data;
    const HANDLE found = FindFirstFileW(WithoutSlash(path), &data);
    if (found == INVALID_HANDLE_VALUE)
        return false;
    FindClose(found);
    // Other reparse points (files kept in a cloud) stay where they are. Where the kind is not told, a link is
    // assumed: not following one never destroys anything.
    const DWORD tag = data.dwReserved0;
    return (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (tag == 0 || IsReparseTagNameSurrogate(tag));
}

bool RemovesElsewhere(const CString& path)
{
    // Wine opens and removes what a link of the host leads to, and shows links to files as plain files. What
    // it opened then lies in another folder or has another name.
    CString name = path;
    if (!FullPath(path, name) || !LongPath(WithoutSlash(name), name))
        return false;
    const int slash = name.ReverseFind(L'\\');
    const CString opened = OpenedPath(name);
    const CString folder = OpenedPath(name.Left(slash + 1));
    if (opened.IsEmpty() || folder.IsEmpty())
        return false;
    return opened.CompareNoCase(WithSlash(folder) + name.Mid(slash + 1)) != 0;
}

CString CurrentFolder()
{
    return WithSlash(Filled([](LPWSTR buffer, DWORD size) { return GetCurrentDirectoryW(size, buffer); }));
}

bool EnterFolder(const CString& path)
{
    return SetCurrentDirectoryW(path) != 0;
}

CString TemporaryFolder()
{
    CString folder = Filled([](LPWSTR buffer, DWORD size) { return GetTempPathW(size, buffer); });
    LongPath(folder, folder);
    return WithSlash(folder);
}

CString ApplicationFolder()
{
    const CString program =
        Filled([](LPWSTR buffer, DWORD size) { return GetModuleFileNameW(nullptr, buffer, size); });
    return program.Left(program.ReverseFind(L'\\') + 1);
}

CString UserDataFolder()
{
    WCHAR folder[MAX_PATH];
    if (SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder) != S_OK)
        return {};
    return WithSlash(folder);
}

bool FullPath(const CString& path, CString& full)
{
    const CString found =
        Filled([&path](LPWSTR buffer, DWORD size) { return GetFullPathNameW(path, size, buffer, nullptr); });
    if (found.IsEmpty())
        return false;
    full = found;
    return true;
}

bool LongPath(const CString& path, CString& longPath)
{
    const CString found =
        Filled([&path](LPWSTR buffer, DWORD size) { return GetLongPathNameW(path, buffer, size); });
    if (found.IsEmpty())
        return false;
    longPath = found;
    return true;
}

bool IsRemoteDrive(const CString& root)
{
    return win32::CurrentNetworkEntries().getDriveType(root) == DRIVE_REMOTE;
}

bool IsProgramImage(const CString& path)
{
    DWORD kind = 0;
    return GetBinaryTypeW(path, &kind) != 0;
}

CString FileTypeName(const CString& extension, bool isFolder)
{
    // No more than the shell's buffers hold; no kind of file has so long an extension.
    const CString name = L"a" + (extension.GetLength() < MAX_PATH - 1 ? extension : CString());
    const DWORD attributes = isFolder ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
    SHFILEINFOW info{};
    SHGetFileInfoW(name, attributes, &info, sizeof info, SHGFI_TYPENAME | SHGFI_USEFILEATTRIBUTES);
    return info.szTypeName;
}

CString CompactPath(const CString& path, int width)
{
    // The service takes sources of up to MAX_PATH units and counts the final zero.
    if (width <= 0 || path.GetLength() <= width || path.GetLength() >= MAX_PATH)
        return detail::CompactPathText(path, width);
    WCHAR buffer[MAX_PATH];
    if (!PathCompactPathExW(buffer, path, static_cast<UINT>(width) + 1, 0))
        return detail::CompactPathText(path, width);
    return buffer;
}

CString CompactPath(HWND window, const CString& path, int width)
{
    if (width <= 0)
        return {};
    CString text = detail::CompactPathText(path, MAX_PATH - 1);
    const WindowContext context(window);
    const int length = text.GetLength();
    const BOOL done = PathCompactPathW(context, text.GetBuffer(MAX_PATH), static_cast<UINT>(width));
    text.ReleaseBuffer(done ? -1 : length);
    return text;
}

} // namespace vak::system
