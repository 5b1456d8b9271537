#include "framework/base/posix/HostPath.h"

#include "framework/base/SystemFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <vector>

namespace vak::posix {

namespace {

constexpr wchar_t kFirstRawByte = 0xDC80;
constexpr wchar_t kLastRawByte = 0xDCFF;

thread_local DWORD lastError = 0;

bool IsHighSurrogate(wchar_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(wchar_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendUtf8(std::string& out, std::uint32_t code)
{
    const auto trail = [&out](std::uint32_t bits) { out += static_cast<char>(0x80 | (bits & 0x3F)); };
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | code >> 6);
        trail(code);
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | code >> 12);
        trail(code >> 6);
        trail(code);
    } else {
        out += static_cast<char>(0xF0 | code >> 18);
        trail(code >> 12);
        trail(code >> 6);
        trail(code);
    }
}

/// The character at the beginning of `bytes` and how many bytes it takes; 0 bytes when they are no UTF-8.
std::size_t DecodeUtf8(std::string_view bytes, std::uint32_t& code)
{
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x80) {
        code = lead;
        return 1;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length)
        return 0;
    code = lead & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto trail = static_cast<unsigned char>(bytes[i]);
        if ((trail & 0xC0) != 0x80)
            return 0;
        code = code << 6 | (trail & 0x3F);
    }
    constexpr std::uint32_t shortest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool valid = code >= shortest[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    return valid ? length : 0;
}

bool StartsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

/// Whether there is nothing to resolve, as in nearly every path.
bool IsNormal(std::string_view path)
{
    char before = 0;
    for (const char c : path) {
        if (before == '/' && (c == '/' || c == '.'))
            return false;
        before = c;
    }
    return StartsWith(path, "/");
}

/// Resolves "." and ".." by the text alone, as the platform does: a folder that ".." leaves need not exist.
std::string Normalise(std::string_view path)
{
    if (IsNormal(path))
        return std::string(path);
    const bool rooted = StartsWith(path, "/");
    const bool slashed = path.size() > 1 && path.back() == '/';
    std::vector<std::string_view> parts;
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        const std::string_view part = path.substr(at, end - at);
        at = end + 1;
        if (part.empty() || part == ".")
            continue;
        if (part != ".." || (!rooted && (parts.empty() || parts.back() == "..")))
            parts.push_back(part);
        else if (!parts.empty())
            parts.pop_back();
    }
    std::string out = rooted ? "/" : "";
    for (const std::string_view part : parts) {
        if (!out.empty() && out.back() != '/')
            out += '/';
        out += part;
    }
    if (out.empty())
        out = ".";
    if (slashed && out.back() != '/')
        out += '/';
    return out;
}

std::string Refuse(DWORD* error, DWORD code)
{
    if (error != nullptr)
        *error = code;
    return {};
}

bool HasForbiddenCharacter(std::string_view host)
{
    const auto isForbidden = [](char c) {
        const bool control = static_cast<unsigned char>(c) < 0x20;
        return control || c == '<' || c == '>' || c == '|' || c == '"' || c == '?' || c == '*' || c == ':';
    };
    return std::any_of(host.begin(), host.end(), isForbidden);
}

} // namespace

std::string HostFromName(LPCWSTR name, std::size_t length)
{
    // Nearly every name is plain to its end.
    std::string out(length, '\0');
    std::size_t plain = 0;
    for (; plain < length && name[plain] < 0x80; ++plain)
        out[plain] = static_cast<char>(name[plain]);
    out.resize(plain);
    for (std::size_t i = plain; i < length; ++i) {
        const wchar_t unit = name[i];
        if (IsHighSurrogate(unit) && i + 1 < length && IsLowSurrogate(name[i + 1])) {
            const std::uint32_t low = name[++i];
            AppendUtf8(out, 0x10000 + ((static_cast<std::uint32_t>(unit) - 0xD800) << 10) + (low - 0xDC00));
        } else if (unit >= kFirstRawByte && unit <= kLastRawByte) {
            out += static_cast<char>(unit & 0xFF);
        } else {
            AppendUtf8(out, unit);
        }
    }
    return out;
}

CString NameFromHost(std::string_view host)
{
    CString out;
    while (!host.empty()) {
        std::uint32_t code = 0;
        const std::size_t length = DecodeUtf8(host, code);
        if (length == 0) {
            out += static_cast<wchar_t>(0xDC00 | static_cast<unsigned char>(host[0]));
            host.remove_prefix(1);
            continue;
        }
        host.remove_prefix(length);
        if (code < 0x10000) {
            out += static_cast<wchar_t>(code);
        } else {
            out += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
            out += static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        }
    }
    return out;
}

std::string HostFromPath(LPCWSTR path, DWORD* error)
{
    std::size_t length = 0;
    while (path != nullptr && path[length] != 0)
        ++length;
    std::string text = HostFromName(path, length);
    for (char& c : text) {
        if (c == '\\')
            c = '/';
    }
    std::string_view rest = text;
    if (StartsWith(rest, "//?/"))
        rest.remove_prefix(4);
    if (rest.empty())
        return Refuse(error, system::kErrorPathNotFound);
    if (StartsWith(rest, "//") || StartsWith(rest, "UNC/"))
        return Refuse(error, system::kErrorBadNetPath);
    if (rest.size() > 1 && rest[1] == ':') {
        if ((rest[0] | 0x20) < 'a' || (rest[0] | 0x20) > 'z')
            return Refuse(error, system::kErrorInvalidName);
        if ((rest[0] | 0x20) != 'z')
            return Refuse(error, system::kErrorPathNotFound);
        rest.remove_prefix(2);
    }
    if (HasForbiddenCharacter(rest))
        return Refuse(error, system::kErrorInvalidName);
    return Normalise(rest);
}

CString PathFromHost(std::string_view host)
{
    CString path = NameFromHost(host);
    path.Replace(L'/', L'\\');
    if (StartsWith(host, "/"))
        path.Insert(0, L"Z:");
    return path;
}

DWORD ErrorFromErrno(int error)
{
    switch (error) {
    case 0:
        return 0;
    case ENOENT:
        return system::kErrorFileNotFound;
    case ENOTDIR:
        return system::kErrorPathNotFound;
    case EMFILE:
    case ENFILE:
        return system::kErrorTooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EISDIR:
        return system::kErrorAccessDenied;
    case EBADF:
        return system::kErrorInvalidHandle;
    case ENOMEM:
        return system::kErrorNotEnoughMemory;
    case EXDEV:
        return system::kErrorNotSameDevice;
    case EROFS:
        return system::kErrorWriteProtect;
    case EBUSY:
    case ETXTBSY:
        return system::kErrorSharingViolation;
    case ENOTSUP:
        return system::kErrorNotSupported;
    case EEXIST:
        return system::kErrorAlreadyExists;
    case EINVAL:
        return system::kErrorInvalidParameter;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return system::kErrorDiskFull;
    case EILSEQ:
        return system::kErrorInvalidName;
    case ENOTEMPTY:
        return system::kErrorDirNotEmpty;
    case ENAMETOOLONG:
        return system::kErrorFilenameTooLong;
    default:
        return system::kErrorGenFailure;
    }
}

bool Fail(DWORD error)
{
    lastError = error;
    return false;
}

bool FailErrno()
{
    return Fail(ErrorFromErrno(errno));
}

bool Refused(system::FileOperation operation)
{
    const DWORD error = system::FileFault(operation);
    return error != 0 && !Fail(error);
}

bool FailPath(const std::string& host)
{
    if (errno != ENOENT)
        return FailErrno();
    std::size_t end = host.find_last_not_of('/');
    end = end == std::string::npos ? end : host.rfind('/', end);
    const std::string parent = end == std::string::npos ? "." : host.substr(0, end + 1);
    struct stat found;
    const bool isThere = stat(parent.c_str(), &found) == 0 && S_ISDIR(found.st_mode);
    return Fail(isThere ? system::kErrorFileNotFound : system::kErrorPathNotFound);
}

} // namespace vak::posix

DWORD vak::system::LastFileError()
{
    return vak::posix::lastError;
}
