#include "framework/base/detail/CompactPath.h"

namespace vak::detail {

namespace {

constexpr LPCWSTR kLeftOut = L"...";
constexpr int kLeftOutLength = 3;

/// Cuts to at most `count` units, never between the two of a surrogate pair.
CString Beginning(const CString& text, int count)
{
    CString beginning = text.Left(count);
    const int last = beginning.GetLength() - 1;
    if (last >= 0 && beginning[last] >= 0xD800 && beginning[last] <= 0xDBFF)
        beginning.Delete(last);
    return beginning;
}

} // namespace

CString CompactPathText(const CString& path, int width)
{
    if (width <= 0)
        return {};
    if (path.GetLength() <= width)
        return path;
    const int slash = path.ReverseFind(L'\\');
    const CString name = slash > 0 ? path.Mid(slash) : path;
    const int room = width - kLeftOutLength - name.GetLength();
    if (slash > 0 && room >= 0)
        return Beginning(path, room) + kLeftOut + name;

    const CString front = slash > 0 ? CString(kLeftOut) + L'\\' : CString();
    const CString bareName = path.Mid(slash > 0 ? slash + 1 : 0);
    const int nameRoom = width - kLeftOutLength - front.GetLength();
    if (nameRoom <= 0)
        return CString(kLeftOut).Left(width);
    return front + Beginning(bareName, nameRoom) + kLeftOut;
}

} // namespace vak::detail
