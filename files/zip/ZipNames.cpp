#include "files/zip/ZipNames.h"

#include "files/ZipException.h"
#include "framework/base/SystemText.h"

#include <algorithm>
#include <string_view>

namespace vak::detail::zip {

namespace {

using Units = std::span<const wchar_t>;

constexpr UINT kCodePage437 = 437;

/// The upper half of code page 437.
constexpr wchar_t kUpper437[129] =
    L"\u00C7\u00FC\u00E9\u00E2\u00E4\u00E0\u00E5\u00E7\u00EA\u00EB\u00E8\u00EF\u00EE\u00EC\u00C4\u00C5"
    L"\u00C9\u00E6\u00C6\u00F4\u00F6\u00F2\u00FB\u00F9\u00FF\u00D6\u00DC\u00A2\u00A3\u00A5\u20A7\u0192"
    L"\u00E1\u00ED\u00F3\u00FA\u00F1\u00D1\u00AA\u00BA\u00BF\u2310\u00AC\u00BD\u00BC\u00A1\u00AB\u00BB"
    L"\u2591\u2592\u2593\u2502\u2524\u2561\u2562\u2556\u2555\u2563\u2551\u2557\u255D\u255C\u255B\u2510"
    L"\u2514\u2534\u252C\u251C\u2500\u253C\u255E\u255F\u255A\u2554\u2569\u2566\u2560\u2550\u256C\u2567"
    L"\u2568\u2564\u2565\u2559\u2558\u2552\u2553\u256B\u256A\u2518\u250C\u2588\u2584\u258C\u2590\u2580"
    L"\u03B1\u00DF\u0393\u03C0\u03A3\u03C3\u00B5\u03C4\u03A6\u0398\u03A9\u03B4\u221E\u03C6\u03B5\u2229"
    L"\u2261\u00B1\u2265\u2264\u2320\u2321\u00F7\u2248\u00B0\u2219\u00B7\u221A\u207F\u00B2\u25A0\u00A0";

wchar_t Turned(wchar_t unit)
{
    return unit == L'/' ? L'\\' : unit;
}

bool IsSeparator(wchar_t unit)
{
    return unit == L'/' || unit == L'\\';
}

bool IsLetter(wchar_t unit)
{
    return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

bool Equals(Units text, const char* upper)
{
    const std::string_view wanted(upper);
    return std::equal(text.begin(), text.end(), wanted.begin(), wanted.end(),
                      [](wchar_t a, char b) { return system::ToUpper(a) == static_cast<wchar_t>(b); });
}

/// Whether the digit makes a device of "COM" or "LPT": 1 to 9, and the raised ones of Latin 1.
bool IsPortNumber(wchar_t unit)
{
    return (unit >= L'1' && unit <= L'9') || unit == 0xB9 || unit == 0xB2 || unit == 0xB3;
}

/// The system looks at what stands before the first dot, without blanks at its end.
bool IsDevice(Units component)
{
    Units base = component.first(
        static_cast<std::size_t>(std::find(component.begin(), component.end(), L'.') - component.begin()));
    while (!base.empty() && base.back() == L' ')
        base = base.first(base.size() - 1);
    if (base.size() == 4 && IsPortNumber(base[3]))
        return Equals(base.first(3), "COM") || Equals(base.first(3), "LPT");
    constexpr const char* names[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    return std::any_of(std::begin(names), std::end(names),
                       [&](const char* name) { return Equals(base, name); });
}

/// Why the component may not become a name on the disk; 0 when it may.
int Judge(Units component)
{
    for (const wchar_t unit : component) {
        if (unit == L':')
            return CZipException::nameStream;
        if (unit < L' ' || std::string_view("<>\"|?*").find(static_cast<char>(unit < 128 ? unit : 0)) !=
                               std::string_view::npos)
            return CZipException::nameCharacter;
    }
    if (component.back() == L'.' || component.back() == L' ')
        return CZipException::nameTrailing;
    return IsDevice(component) ? CZipException::nameDevice : 0;
}

bool IsRooted(Units name)
{
    return IsSeparator(name[0]) || (name.size() > 1 && IsLetter(name[0]) && name[1] == L':');
}

/// Takes the text up to the next separator off the front of `name`.
Units TakeComponent(Units& name)
{
    const auto end = std::find_if(name.begin(), name.end(), IsSeparator);
    const auto length = static_cast<std::size_t>(end - name.begin());
    const Units component = name.first(length);
    name = name.subspan(std::min(length + 1, name.size()));
    return component;
}

bool DropLast(CString& path)
{
    if (path.IsEmpty())
        return false;
    int start = path.GetLength() - 1;
    while (start > 0 && path[start - 1] != L'\\')
        --start;
    path.Delete(start, path.GetLength() - start);
    return true;
}

/// Appends the component to the slash-terminated `path`.
int AddComponent(CString& path, Units component)
{
    if (component.empty() || Equals(component, "."))
        return 0;
    if (Equals(component, ".."))
        return DropLast(path) ? 0 : int(CZipException::nameParent);
    const int cause = Judge(component);
    path.Append(component.data(), static_cast<int>(component.size()));
    path += L'\\';
    return cause;
}

} // namespace

namespace {

/// Appends `turn(unit)` for every unit of the text.
template <class Turn>
void Decode(std::span<const std::uint8_t> bytes, UINT codePage, ZipVector<wchar_t>& text, Turn turn)
{
    const bool isPlain =
        std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte < 0x80; });
    CString wide;
    if (!isPlain && codePage != kCodePage437)
        system::ToWide(codePage, reinterpret_cast<const char*>(bytes.data()), bytes.size(), wide);
    const auto append = [&text, turn](std::size_t count, auto unit) {
        const std::size_t start = text.size();
        text.resize(start + count);
        for (std::size_t i = 0; i < count; ++i)
            text[start + i] = turn(unit(i));
    };
    if (!wide.IsEmpty())
        return append(static_cast<std::size_t>(wide.GetLength()),
                      [&](std::size_t i) { return wide.GetString()[i]; });
    append(bytes.size(), [&](std::size_t i) {
        return bytes[i] < 0x80 ? static_cast<wchar_t>(bytes[i]) : kUpper437[bytes[i] - 0x80];
    });
}

} // namespace

void AppendText(std::span<const std::uint8_t> bytes, UINT codePage, ZipVector<wchar_t>& text)
{
    Decode(bytes, codePage, text, Turned);
}

CString CommentText(std::span<const std::uint8_t> bytes, UINT codePage)
{
    ZipVector<wchar_t> text;
    Decode(bytes, codePage, text, [](wchar_t unit) { return unit; });
    return {text.data(), static_cast<int>(text.size())};
}

bool CommentBytes(const CString& text, UINT codePage, ZipVector<std::uint8_t>& bytes)
{
    const auto length = static_cast<std::size_t>(text.GetLength());
    bytes.clear();
    CStringA narrow;
    if (codePage == kCodePage437) {
        const wchar_t* const end = std::end(kUpper437) - 1;
        for (std::size_t i = 0; i < length; ++i) {
            const wchar_t unit = text.GetString()[i];
            const auto upper = unit < 0x80 ? 0 : std::find(kUpper437, end, unit) - kUpper437 + 0x80;
            bytes.push_back(static_cast<std::uint8_t>(unit < 0x80 ? unit : upper));
        }
    } else if (system::ToNarrow(codePage, text, length, narrow)) {
        bytes.assign(narrow.GetString(), narrow.GetString() + narrow.GetLength());
    }
    return CommentText(bytes, codePage) == text;
}

StoredName StoredFrom(const CString& name)
{
    CString slashed = name;
    slashed.Replace(L'\\', L'/');
    StoredName stored;
    const auto length = static_cast<std::size_t>(slashed.GetLength());
    stored.isUtf8 = std::any_of(slashed.GetString(), slashed.GetString() + length,
                                [](wchar_t unit) { return unit >= 0x80; });
    system::ToNarrow(CP_UTF8, slashed.GetString(), length, stored.bytes);
    return stored;
}

CString WithBackslashes(LPCWSTR name)
{
    CString turned(name);
    turned.Replace(L'/', L'\\');
    return turned;
}

CString WithoutRoot(const CString& name)
{
    constexpr int kDrive = 2;
    CString rest = name;
    if (rest.Left(2) == L"\\\\") {
        // A server and what it shares.
        const int share = rest.Find(L'\\', 2);
        const int end = share < 0 ? -1 : rest.Find(L'\\', share + 1);
        rest = end < 0 ? CString() : rest.Mid(end);
    } else if (rest.GetLength() >= kDrive && IsLetter(rest[0]) && rest[1] == L':') {
        rest = rest.Mid(kDrive);
    }
    return rest.TrimLeft(L'\\');
}

std::span<const wchar_t> FileNameOf(std::span<const wchar_t> name)
{
    std::size_t start = name.size();
    while (start > 0 && !IsSeparator(name[start - 1]))
        --start;
    return name.subspan(start);
}

int MakeSafe(const CString& name, CString& safe)
{
    safe.Empty();
    Units rest(name.GetString(), static_cast<std::size_t>(name.GetLength()));
    if (rest.empty())
        return CZipException::nameEmpty;
    if (IsRooted(rest))
        return CZipException::nameRooted;
    const bool isFolder = IsSeparator(rest.back());
    CString path;
    while (!rest.empty()) {
        if (const int cause = AddComponent(path, TakeComponent(rest)); cause != 0)
            return cause;
    }
    if (path.IsEmpty())
        return CZipException::nameEmpty;
    safe = isFolder ? path : path.Left(path.GetLength() - 1);
    return 0;
}

} // namespace vak::detail::zip
