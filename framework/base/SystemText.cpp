#include "framework/base/SystemText.h"

#include "framework/base/detail/CodePage.h"
#include "framework/base/detail/TextCodec.h"

#include <algorithm>

namespace vak::system {

namespace {

/// No string is longer, and the platform's converters count in `int`.
int CheckedLength(std::size_t length)
{
    if (length > INT_MAX)
        detail::ThrowMemory();
    return static_cast<int>(length);
}

std::size_t IncompleteUtf8(const unsigned char* bytes, std::size_t length)
{
    const std::size_t most = std::min<std::size_t>(length, 3);
    for (std::size_t back = 1; back <= most; ++back) {
        const unsigned char byte = bytes[length - back];
        if (byte >= 0xC0) {
            const std::size_t whole = byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : byte < 0xF5 ? 4 : 1;
            return back < whole ? back : 0;
        }
        if (byte < 0x80)
            return 0;
    }
    return 0;
}

bool IsLead(UINT codePage, unsigned char byte)
{
    if (codePage == 932)
        return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
    return byte >= 0x81 && byte <= 0xFE;
}

} // namespace

bool ToWide(UINT codePage, const char* bytes, std::size_t length, CStringW& out)
{
    const UINT page = codePage == CP_ACP ? AnsiCodePage() : codePage;
    const int count = CheckedLength(length);
    if (page != CP_UTF8 && page != 1252 && page != 28591) {
        out.Empty();
        return detail::DecodePage(page, bytes, length, out);
    }
    // Nothing needs more units than bytes.
    wchar_t* const units = out.GetBufferSetLength(count);
    if (page == CP_UTF8)
        out.ReleaseBuffer(static_cast<int>(detail::DecodeUtf8(bytes, length, units)));
    else if (page == 1252)
        detail::Decode1252(bytes, length, units);
    else
        detail::DecodeLatin1(bytes, length, units);
    return true;
}

bool ToNarrow(UINT codePage, const wchar_t* text, std::size_t length, CStringA& out, Unmapped unmapped)
{
    const UINT page = codePage == CP_ACP ? AnsiCodePage() : codePage;
    CheckedLength(length);
    out.Empty();
    if (page != CP_UTF8)
        return detail::EncodePage(page, text, length, out, unmapped);
    char* const bytes = out.GetBufferSetLength(CheckedLength(detail::Utf8Length(text, length)));
    detail::EncodeUtf8(text, length, bytes);
    return true;
}

std::size_t IncompleteTail(UINT codePage, const char* bytes, std::size_t length)
{
    const UINT page = codePage == CP_ACP ? AnsiCodePage() : codePage;
    const auto* const p = reinterpret_cast<const unsigned char*>(bytes);
    if (page == CP_UTF8)
        return IncompleteUtf8(p, length);
    if (page != 932 && page != 936 && page != 949 && page != 950 && page != 1361)
        return 0;
    // A trail byte may look like a lead byte: only counting from a known beginning tells them apart.
    std::size_t at = 0;
    while (at < length)
        at += IsLead(page, p[at]) ? 2 : 1;
    return at == length ? 0 : 1;
}

} // namespace vak::system
