#include "framework/base/SystemShortcut.h"

#include "framework/base/SystemFile.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/detail/ShellLinkFormat.h"
#include "framework/base/win32/Com.h"

#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>
#include <vector>

namespace vak::system {

namespace {

/// As long as a text of the shell's can be, the final zero included.
constexpr int kMostUnits = 32767;

static_assert(kMostDescription < INFOTIPSIZE);

/// A new shell link and the interface that loads and saves it.
class ShellLink
{
public:
    bool Create()
    {
        return SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                          m_link.Receive())) &&
               SUCCEEDED(m_link->QueryInterface(IID_IPersistFile, m_file.Receive()));
    }
    IShellLinkW& Link() const { return *m_link; }
    IPersistFile& File() const { return *m_file; }

private:
    const ShellScope m_scope; // outlives the interfaces
    win32::ComPointer<IShellLinkW> m_link;
    win32::ComPointer<IPersistFile> m_file;
};

/// Calls `get(buffer, size)` with room for any text; false when it fails.
template <class Get>
bool Receive(CString& text, Get get)
{
    wchar_t* const buffer = text.GetBuffer(kMostUnits);
    buffer[0] = 0; // what there is none of need not be written
    const bool isDone = SUCCEEDED(get(buffer, kMostUnits));
    text.ReleaseBuffer(isDone ? -1 : 0);
    return isDone;
}

bool ReadBytes(const CString& path, std::vector<BYTE>& bytes)
{
    OpenOptions options;
    options.read = options.shareRead = options.shareWrite = options.shareDelete = true;
    const HANDLE file = OpenFile(path, options);
    if (file == kNoFile)
        return false;
    ULONGLONG length = 0;
    UINT done = 0;
    const bool fits = GetFileLength(file, length) && length <= kMostShortcutBytes;
    bytes.resize(fits ? static_cast<std::size_t>(length) : 0);
    const bool isRead =
        fits && ReadFile(file, bytes.data(), static_cast<UINT>(length), done) && done == length;
    CloseFile(file);
    return isRead;
}

/// The path of the link's item in the shell's own tree; empty when it has none.
CString ItemPath(IShellLinkW& link)
{
    LPITEMIDLIST item = nullptr;
    if (link.GetIDList(&item) != S_OK || item == nullptr)
        return {};
    WCHAR path[MAX_PATH] = L"";
    if (!SHGetPathFromIDListW(item, path))
        path[0] = 0;
    CoTaskMemFree(item);
    return path;
}

/// Replaces a path that the file has in the ANSI code page alone, with similar characters and '?' for what is
/// not there, by the one that was meant.
CString Exact(const CString& path, IShellLinkW& link)
{
    const CString item = ItemPath(link);
    return CStringA(item) == CStringA(path) ? item : path;
}

/// True when the bytes hold the text with the zero that ends it, in either width.
bool Holds(const std::vector<BYTE>& bytes, const CString& text)
{
    const CStringA narrow(text);
    const auto holds = [&](const void* data, std::size_t size) {
        const auto* const first = static_cast<const BYTE*>(data);
        return std::search(bytes.begin(), bytes.end(), first, first + size) != bytes.end();
    };
    return holds(narrow.GetString(), static_cast<std::size_t>(narrow.GetLength()) + 1) ||
           holds(text.GetString(), (static_cast<std::size_t>(text.GetLength()) + 1) * sizeof(wchar_t));
}

bool ReadTarget(IShellLinkW& link, const std::vector<BYTE>& bytes, CString& target)
{
    constexpr int kMostOfOldShells = MAX_PATH - 1;
    constexpr int kMarkOfPrefix = 2; // in "\\?\", which long paths may begin with
    CString path;
    if (!Receive(path,
                 [&](LPWSTR buffer, int size) { return link.GetPath(buffer, size, nullptr, SLGP_RAWPATH); }))
        return false;
    // Shells that give no more than this cut what is longer without a word.
    if (path.GetLength() == kMostOfOldShells && !Holds(bytes, path))
        return false;
    path = ExpandedPath(Exact(path, link));
    // No name has a question mark: a character was lost on its way into the code page.
    if (path.ReverseFind(L'?') > kMarkOfPrefix)
        return false;
    return !path.IsEmpty() && !PathIsRelativeW(path) && FullPath(path, target);
}

bool ReadFields(IShellLinkW& link, const std::vector<BYTE>& bytes, Shortcut& fields)
{
    const auto arguments = [&](LPWSTR buffer, int size) { return link.GetArguments(buffer, size); };
    const auto description = [&](LPWSTR buffer, int size) { return link.GetDescription(buffer, size); };
    const auto folder = [&](LPWSTR buffer, int size) { return link.GetWorkingDirectory(buffer, size); };
    return ReadTarget(link, bytes, fields.target) && Receive(fields.arguments, arguments) &&
           Receive(fields.description, description) && Receive(fields.workingDirectory, folder) &&
           SUCCEEDED(link.GetHotkey(&fields.hotKey));
}

bool IsKept(const Shortcut& fields)
{
    return !fields.target.IsEmpty() && fields.target.GetLength() < MAX_PATH &&
           fields.workingDirectory.GetLength() < MAX_PATH &&
           fields.description.GetLength() <= kMostDescription && fields.arguments.GetLength() < kMostUnits;
}

bool SetFields(IShellLinkW& link, const Shortcut& fields)
{
    return SUCCEEDED(link.SetPath(fields.target)) && SUCCEEDED(link.SetArguments(fields.arguments)) &&
           SUCCEEDED(link.SetWorkingDirectory(fields.workingDirectory)) &&
           SUCCEEDED(link.SetDescription(fields.description)) &&
           (fields.hotKey == 0 || SUCCEEDED(link.SetHotkey(fields.hotKey)));
}

/// A name beside `path` that is free.
CString NameBeside(const CString& path)
{
    CString name;
    int number = 0;
    do {
        name.Format(L"%s.%d.tmp", path.GetString(), ++number);
    } while (FileAttributes(name) != kInvalidAttributes);
    return name;
}

/// Puts the file `from` on the disk and in the place of `to`.
bool Replace(const CString& from, const CString& to)
{
    OpenOptions options;
    options.read = options.write = options.shareRead = options.shareDelete = true;
    const HANDLE file = OpenFile(from, options);
    if (file == kNoFile)
        return false;
    const bool isReplaced = FlushFile(file) && ReplaceFileBy(file, from, to);
    CloseFile(file);
    return isReplaced;
}

bool Save(IPersistFile& file, const CString& path)
{
    constexpr BOOL kRemember = TRUE;
    const CString name = NameBeside(path);
    if (SUCCEEDED(file.Save(name, kRemember)) && Replace(name, path))
        return true;
    RemoveFile(name);
    return false;
}

} // namespace

ShellScope::ShellScope()
    : m_isCounted(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)))
{
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &m_errorMode);
}

ShellScope::~ShellScope()
{
    SetThreadErrorMode(m_errorMode, nullptr);
    // RPC_E_CHANGED_MODE: the thread's own apartment is of the other kind and serves as well; nothing was
    // counted that would have to be given back.
    if (m_isCounted)
        CoUninitialize();
}

bool ReadShortcut(const CString& path, Shortcut& out)
{
    const ShellScope scope; // reading the file may ask for a disk, too
    CString full;
    std::vector<BYTE> bytes;
    if (!FullPath(path, full) || !ReadBytes(full, bytes) || !detail::IsShellLink(bytes.data(), bytes.size()))
        return false;
    ShellLink shell;
    Shortcut fields;
    if (!shell.Create() || FAILED(shell.File().Load(full, STGM_READ)) ||
        !ReadFields(shell.Link(), bytes, fields))
        return false;
    out = fields;
    return true;
}

bool WriteShortcut(const CString& path, const Shortcut& shortcut)
{
    CString full;
    Shortcut fields = shortcut;
    fields.target = ExpandedPath(fields.target);
    if (!FullPath(path, full) || !IsKept(fields))
        return false;
    ShellLink shell;
    return shell.Create() && SetFields(shell.Link(), fields) && Save(shell.File(), full);
}

CString ExpandedPath(const CString& path)
{
    const DWORD size = ExpandEnvironmentStringsW(path, nullptr, 0);
    CString expanded;
    const DWORD length = ExpandEnvironmentStringsW(path, expanded.GetBuffer(static_cast<int>(size)), size);
    expanded.ReleaseBuffer(length > 0 && length <= size ? static_cast<int>(length) - 1 : 0);
    return expanded;
}

} // namespace vak::system
