#include "framework/base/SystemText.h"

#include "framework/base/detail/CaseTable.h"
#include "framework/base/detail/CodePage.h"
#include "framework/base/detail/TextCodec.h"
#include "framework/base/posix/TextTables.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <iterator>
#include <string>

namespace vak::detail {

namespace {

constexpr UINT kAnsi = 1252;

std::string EncodingName(UINT codePage)
{
    switch (codePage) {
    case 1:
        return "CP437";
    case 20127:
        return "US-ASCII";
    case 20866:
        return "KOI8-R";
    case 21866:
        return "KOI8-U";
    case 54936:
        return "GB18030";
    case 65000:
        return "UTF-7";
    default:
        if (codePage > 28590 && codePage < 28607)
            return "ISO-8859-" + std::to_string(codePage - 28590);
        return "CP" + std::to_string(codePage);
    }
}

/// A conversion of one thread, kept open: opening one loads a module.
class Converter
{
public:
    Converter() = default;
    ~Converter() { Close(); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    /// Ready at its initial state, or false when the system does not know the page.
    bool Open(UINT codePage, bool toWide)
    {
        if (m_handle != kClosed && m_codePage == codePage) {
            iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
            return true;
        }
        Close();
        const std::string page = EncodingName(codePage);
        m_handle = toWide ? iconv_open("UTF-16LE", page.c_str()) : iconv_open(page.c_str(), "UTF-16LE");
        m_codePage = codePage;
        return m_handle != kClosed;
    }

    /// Converts what it can, moves the arguments on and returns the error, 0 for none.
    int Run(const char*& in, std::size_t& inLeft, char*& out, std::size_t& outLeft)
    {
        char* input = const_cast<char*>(in); // the interface is older than const; nothing is written
        const bool done = iconv(m_handle, &input, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1);
        in = input;
        return done ? 0 : errno;
    }

private:
    void Close()
    {
        if (m_handle != kClosed)
            iconv_close(m_handle);
        m_handle = kClosed;
    }

    static inline const iconv_t kClosed = reinterpret_cast<iconv_t>(-1);
    iconv_t m_handle = kClosed;
    UINT m_codePage = 0;
};

template <class C>
void AppendBytes(CStringT<C>& out, const std::array<char, 1024>& buffer, const char* end)
{
    out.Append(reinterpret_cast<const C*>(buffer.data()),
               static_cast<int>(static_cast<std::size_t>(end - buffer.data()) / sizeof(C)));
}

/// Runs the converter over all of `in`; `stuck(at, left)` appends a substitute for what cannot be converted
/// and returns how many bytes of the input that was.
template <class C, class Stuck>
void ConvertAll(Converter& converter, const char* in, std::size_t left, CStringT<C>& out, Stuck stuck)
{
    alignas(C) std::array<char, 1024> buffer;
    while (left != 0) {
        char* to = buffer.data();
        std::size_t room = buffer.size();
        const int error = converter.Run(in, left, to, room);
        AppendBytes(out, buffer, to);
        if (error == EILSEQ || error == EINVAL) {
            const std::size_t used = std::min(stuck(in, left), left);
            in += used;
            left -= used;
        }
    }
    // Shifting encodings end in their initial state.
    char* to = buffer.data();
    std::size_t room = buffer.size();
    const char* nothing = nullptr;
    std::size_t none = 0;
    converter.Run(nothing, none, to, room);
    AppendBytes(out, buffer, to);
}

/// The byte of code page 1252 for `unit`, or one of a similar character; -1 for none.
int Byte1252(wchar_t unit)
{
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF))
        return unit;
    const wchar_t* const own = std::find(std::begin(kUpper1252), std::end(kUpper1252), unit);
    if (own != std::end(kUpper1252))
        return 0x80 + static_cast<int>(own - kUpper1252);
    const auto* range =
        std::lower_bound(std::begin(kSimilar1252), std::end(kSimilar1252), unit,
                         [](const SimilarRange& r, wchar_t wanted) { return r.last < wanted; });
    if (range == std::end(kSimilar1252) || unit < range->first)
        return -1;
    return range->byte + (unit - range->first);
}

void Encode1252(const wchar_t* text, std::size_t length, CStringA& out, char substitute)
{
    char* to = out.GetBufferSetLength(static_cast<int>(length));
    for (std::size_t i = 0; i < length; ++i) {
        const int byte = Byte1252(text[i]);
        to[i] = byte < 0 ? substitute : static_cast<char>(byte);
    }
}

/// Letters with the combining mark behind them as the one character that stands for both.
CStringW Composed(const wchar_t* text, std::size_t length)
{
    CStringW out;
    for (std::size_t i = 0; i < length; ++i) {
        wchar_t unit = text[i];
        if (i + 1 < length && text[i + 1] >= 0x300 && text[i + 1] < 0x370) {
            const auto* found =
                std::find_if(std::begin(kCompositions), std::end(kCompositions), [&](const Composition& c) {
                    return c.letter == text[i] && c.mark == text[i + 1];
                });
            if (found != std::end(kCompositions)) {
                unit = found->composed;
                ++i;
            }
        }
        out.AppendChar(unit);
    }
    return out;
}

} // namespace

bool DecodePage(UINT codePage, const char* bytes, std::size_t length, CStringW& out)
{
    thread_local Converter converter;
    if (!converter.Open(codePage, true))
        return false;
    const wchar_t substitute = codePage == 932 ? L'\x30FB' : L'\xFFFD';
    ConvertAll(converter, bytes, length, out, [&](const char*, std::size_t) {
        out.AppendChar(substitute);
        return std::size_t{1};
    });
    return true;
}

bool EncodePage(UINT codePage, const wchar_t* text, std::size_t length, CStringA& out,
                system::Unmapped unmapped)
{
    const bool compose = unmapped == system::Unmapped::NumberSign;
    const char substitute = compose ? '#' : '?';
    const CStringW composed = compose ? Composed(text, length) : CStringW();
    if (compose) {
        text = composed.GetString();
        length = static_cast<std::size_t>(composed.GetLength());
    }
    if (codePage == kAnsi) {
        Encode1252(text, length, out, substitute);
        return true;
    }
    thread_local Converter converter;
    if (!converter.Open(codePage, false))
        return false;
    ConvertAll(converter, reinterpret_cast<const char*>(text), length * sizeof(wchar_t), out,
               [&](const char*, std::size_t) {
                   out.AppendChar(substitute);
                   return sizeof(wchar_t);
               });
    return true;
}

void FillCaseTables(wchar_t* upper, wchar_t* lower)
{
    for (std::size_t unit = 0; unit < kUnits; ++unit)
        upper[unit] = lower[unit] = static_cast<wchar_t>(unit);
    for (const CaseRange& range : kCaseRanges) {
        for (int unit = range.first; unit <= range.last; unit += range.step) {
            const int folded = unit + range.toUpper;
            upper[unit] = static_cast<wchar_t>(folded);
            lower[folded] = static_cast<wchar_t>(unit);
        }
    }
}

} // namespace vak::detail

namespace vak::system {

UINT AnsiCodePage()
{
    return detail::kAnsi;
}

UINT UserAnsiCodePage()
{
    return detail::kAnsi;
}

} // namespace vak::system
