#include "framework/base/SystemFolder.h"

#include "framework/base/SystemFile.h"
#include "framework/base/detail/CompactPath.h"
#include "framework/base/detail/PathText.h"
#include "framework/base/posix/HostPath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace vak::system {

namespace {

/// A host path without slash at its end: with one, a link would stand for what it leads to.
std::string HostName(const CString& path)
{
    std::string host = posix::HostFromPath(path);
    while (host.size() > 1 && host.back() == '/')
        host.pop_back();
    return host;
}

bool IsHostLink(const std::string& host)
{
    struct stat found;
    return !host.empty() && lstat(host.c_str(), &found) == 0 && S_ISLNK(found.st_mode);
}

CString FolderFromHost(const std::string& host)
{
    if (host.empty() || host[0] != '/')
        return {};
    CString folder = posix::PathFromHost(host);
    if (folder[folder.GetLength() - 1] != L'\\')
        folder += L'\\';
    return folder;
}

std::string Environment(const char* name)
{
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

std::uint32_t LittleEndian(const unsigned char* bytes, int count)
{
    std::uint32_t value = 0;
    for (int i = count - 1; i >= 0; --i)
        value = value << 8 | bytes[i];
    return value;
}

} // namespace

bool MakeFolder(const CString& path)
{
    const std::string host = HostName(path);
    return !host.empty() && mkdir(host.c_str(), 0777) == 0;
}

bool RemoveEmptyFolder(const CString& path)
{
    const std::string host = HostName(path);
    if (host.empty())
        return false;
    return (IsHostLink(host) ? unlink(host.c_str()) : rmdir(host.c_str())) == 0;
}

bool IdentifyFolder(const CString& path, FolderIdentity& identity)
{
    struct statx found;
    const std::string host = posix::HostFromPath(path);
    if (host.empty() || statx(AT_FDCWD, host.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &found) != 0 ||
        !S_ISDIR(found.stx_mode))
        return false;
    const auto joined = [](ULONGLONG high, ULONGLONG low) { return high << 32 | low; };
    identity.volume = joined(found.stx_dev_major, found.stx_dev_minor);
    identity.number = found.stx_ino;
    identity.created = joined(static_cast<ULONGLONG>(found.stx_btime.tv_sec), found.stx_btime.tv_nsec);
    return true;
}

bool IsLink(const CString& path)
{
    return IsHostLink(HostName(path));
}

bool RemovesElsewhere(const CString&)
{
    return false;
}

CString CurrentFolder()
{
    std::error_code error;
    const std::filesystem::path current = std::filesystem::current_path(error);
    return error ? CString() : FolderFromHost(current.string());
}

bool EnterFolder(const CString& path)
{
    const std::string host = posix::HostFromPath(path);
    return !host.empty() && chdir(host.c_str()) == 0;
}

CString TemporaryFolder()
{
    const std::string host = Environment("TMPDIR");
    return FolderFromHost(host.empty() ? "/tmp" : host);
}

CString ApplicationFolder()
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? CString() : FolderFromHost(program.parent_path().string());
}

CString UserDataFolder()
{
    if (const std::string host = Environment("XDG_CONFIG_HOME"); !host.empty())
        return FolderFromHost(host);
    const std::string home = Environment("HOME");
    return home.empty() ? CString() : FolderFromHost(home + "/.config");
}

bool FullPath(const CString& path, CString& full)
{
    if (path.IsEmpty())
        return false;
    CString absolute = path;
    absolute.Replace(L'/', L'\\');
    const bool hasDrive = path.GetLength() > 1 && path[1] == L':';
    if (hasDrive && (path[0] | 0x20) == L'z' && absolute.Mid(2, 1) != L"\\")
        absolute = CurrentFolder() + absolute.Mid(2);
    else if (!hasDrive && absolute[0] != L'\\')
        absolute = CurrentFolder() + absolute;
    else if (!hasDrive && absolute.Left(2) != L"\\\\")
        absolute = L"Z:" + absolute;
    full = detail::ResolveDots(absolute);
    return true;
}

bool LongPath(const CString& path, CString& longPath)
{
    // This host has no short names.
    if (FileAttributes(path) == kInvalidAttributes)
        return false;
    longPath = path;
    return true;
}

bool IsRemoteDrive(const CString&)
{
    // The one drive there is shows this host's own tree.
    return false;
}

bool IsProgramImage(const CString& path)
{
    constexpr std::streamoff kHeaderPosition = 0x3C;
    constexpr std::uint32_t kSignature = 0x4550; // "PE", two zeros
    constexpr std::uint32_t kIsLibrary = 0x2000;

    std::ifstream file(posix::HostFromPath(path), std::ios::binary);
    std::array<unsigned char, 24> header{};
    const auto read = [&](std::streamoff position, int count) {
        file.seekg(position);
        file.read(reinterpret_cast<char*>(header.data()), count);
        return file.good();
    };
    if (!read(0, 2) || header[0] != 'M' || header[1] != 'Z' || !read(kHeaderPosition, 4))
        return false;
    if (!read(LittleEndian(header.data(), 4), 24) || LittleEndian(header.data(), 4) != kSignature)
        return false;
    return (LittleEndian(header.data() + 22, 2) & kIsLibrary) == 0;
}

CString FileTypeName(const CString& extension, bool isFolder)
{
    if (isFolder)
        return L"File folder";
    return extension.IsEmpty() ? CString(L"File") : extension.Mid(1) + L" file";
}

CString CompactPath(const CString& path, int width)
{
    return detail::CompactPathText(path, width);
}

} // namespace vak::system
