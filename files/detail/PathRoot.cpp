#include "files/detail/PathRoot.h"

namespace vak::detail {
namespace {

bool IsDrive(const CString& path, int at)
{
    if (path.GetLength() < at + 2 || path[at + 1] != L':')
        return false;
    const wchar_t letter = path[at];
    return (letter >= L'A' && letter <= L'Z') || (letter >= L'a' && letter <= L'z');
}

/// Returns the position behind the separator that ends the component at `at`, or the end of the path.
int BehindComponent(const CString& path, int at)
{
    const int separator = path.Find(L'\\', at);
    return separator < 0 ? path.GetLength() : separator + 1;
}

int DriveEnd(const CString& path, int at)
{
    const int end = at + 2;
    return path.GetLength() > end && path[end] == L'\\' ? end + 1 : end;
}

} // namespace

int PathRootLength(const CString& path)
{
    constexpr int kPrefix = 4; // "\\?\" or "\\.\"
    if (IsDrive(path, 0))
        return DriveEnd(path, 0);
    if (path.Left(2) != L"\\\\")
        return path.Left(1) == L"\\" ? 1 : 0;
    const CString prefix = path.Left(kPrefix);
    if (prefix != L"\\\\?\\" && prefix != L"\\\\.\\")
        return BehindComponent(path, BehindComponent(path, 2));
    if (IsDrive(path, kPrefix))
        return DriveEnd(path, kPrefix);
    if (path.Mid(kPrefix, 4).CompareNoCase(L"UNC\\") == 0)
        return BehindComponent(path, BehindComponent(path, kPrefix + 4));
    return BehindComponent(path, kPrefix);
}

} // namespace vak::detail
