#include "framework/base/detail/PathText.h"

#include <vector>

namespace vak::detail {

namespace {

constexpr int kPrefixLength = 4; // "\\?\" or "\\.\"

bool IsDrive(const CString& path, int at)
{
    if (path.GetLength() < at + 2 || path[at + 1] != L':')
        return false;
    const wchar_t letter = path[at];
    return (letter >= L'A' && letter <= L'Z') || (letter >= L'a' && letter <= L'z');
}

int DriveEnd(const CString& path, int at)
{
    const int end = at + 2;
    return path.GetLength() > end && path[end] == L'\\' ? end + 1 : end;
}

/// The position behind the separator that ends the component at `at`, or the end of the path.
int BehindComponent(const CString& path, int at)
{
    const int separator = path.Find(L'\\', at);
    return separator < 0 ? path.GetLength() : separator + 1;
}

bool HasDevicePrefix(const CString& path)
{
    const CString prefix = path.Left(kPrefixLength);
    return prefix == L"\\\\?\\" || prefix == L"\\\\.\\";
}

/// Where the server's name begins in a path of the network; 0 in any other.
int ServerStart(const CString& path)
{
    if (path.Left(2) != L"\\\\")
        return 0;
    if (!HasDevicePrefix(path))
        return 2;
    return path.Mid(kPrefixLength, 4).CompareNoCase(L"UNC\\") == 0 ? kPrefixLength + 4 : 0;
}

} // namespace

bool IsRelativePath(const CString& path)
{
    if (EndsInSlash(path.Left(1)))
        return false;
    return path.GetLength() < 2 || path[1] != L':';
}

bool IsNetworkPath(const CString& path)
{
    const int server = ServerStart(path);
    const int share = path.Find(L'\\', server) + 1;
    return server > 0 && share > server + 1 && share < path.GetLength() && path[share] != L'\\';
}

int RootLength(const CString& path)
{
    if (IsDrive(path, 0))
        return DriveEnd(path, 0);
    if (const int server = ServerStart(path); server > 0)
        return BehindComponent(path, BehindComponent(path, server));
    if (!HasDevicePrefix(path))
        return EndsInSlash(path.Left(1)) ? 1 : 0;
    return IsDrive(path, kPrefixLength) ? DriveEnd(path, kPrefixLength)
                                        : BehindComponent(path, kPrefixLength);
}

bool IsRootPath(const CString& path)
{
    const int root = RootLength(path);
    return root > 0 && root == path.GetLength() && path[root - 1] != L':';
}

bool EndsInSlash(const CString& path)
{
    return !path.IsEmpty() && path[path.GetLength() - 1] == L'\\';
}

int NameStart(const CString& path)
{
    return path.ReverseFind(L'\\') + 1;
}

int ExtensionStart(const CString& path)
{
    // A blank behind the last dot means that the dot belongs to the name, as the platform sees it.
    const int dot = path.ReverseFind(L'.');
    if (dot < NameStart(path) || path.Find(L' ', dot) >= 0)
        return path.GetLength();
    return dot;
}

CString ResolveDots(const CString& path)
{
    const int root = RootLength(path);
    std::vector<CString> components;
    for (int start = root; start <= path.GetLength();) {
        const int slash = path.Find(L'\\', start);
        const int end = slash < 0 ? path.GetLength() : slash;
        const CString component = path.Mid(start, end - start);
        const bool canGoUp = !components.empty() && components.back() != L"..";
        if (component == L".." && canGoUp)
            components.pop_back();
        else if (component != L"." && (component != L".." || root == 0))
            components.push_back(component);
        start = end + 1;
    }

    CString resolved = path.Left(root);
    for (std::size_t i = 0; i < components.size(); ++i)
        resolved += i == 0 ? components[i] : L'\\' + components[i];
    return resolved;
}

} // namespace vak::detail
