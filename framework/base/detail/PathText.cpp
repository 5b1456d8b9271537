#include "framework/base/detail/PathText.h"

#include <vector>

namespace vak::detail {

namespace {

bool IsDriveLetter(wchar_t unit)
{
    return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

/// The end of "\\server\share", without a backslash behind it; 0 for any other beginning.
int ShareEnd(const CString& path)
{
    if (path.Left(2) != L"\\\\")
        return 0;
    const int serverEnd = path.Find(L'\\', 2);
    if (serverEnd <= 2)
        return 0;
    const int next = path.Find(L'\\', serverEnd + 1);
    const int end = next < 0 ? path.GetLength() : next;
    return end > serverEnd + 1 ? end : 0;
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
    // "\\?\" and "\\.\" lead into the system's own names of devices, not to a server.
    const bool device = path.GetLength() > 3 && path[3] == L'\\' && (path[2] == L'?' || path[2] == L'.');
    return !device && ShareEnd(path) > 0;
}

int RootLength(const CString& path)
{
    const int length = path.GetLength();
    if (length >= 2 && path[1] == L':' && IsDriveLetter(path[0]))
        return length > 2 && path[2] == L'\\' ? 3 : 2;
    if (const int end = ShareEnd(path); end > 0)
        return end < length ? end + 1 : end;
    return EndsInSlash(path.Left(1)) ? 1 : 0;
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
