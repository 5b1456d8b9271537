#include "fuzz/support/Target.h"
#include "tags/Tags.h"

namespace {

using vak::fuzz::Require;

CTags MakeTags()
{
    CTags tags;
    unsigned int id = 0;
    for (const wchar_t* name : {L"<n>", L"<name>", L"<file>", L"<\x00E9t\x00E9>", L"<\x3C3C>", L"<>"})
        tags.InsertTag(name, TAGDATA_TEXT, 'FUZZ', ++id, 0, 0, nullptr, nullptr);
    return tags;
}

/// Requires that no stretch of `text` from a "<" to the next bracket is a registered tag.
void RequireNoTag(const CTags& tags, const CString& text)
{
    for (int start = text.Find(L'<'); start >= 0; start = text.Find(L'<', start + 1)) {
        const int length = text.Mid(start + 1).FindOneOf(L"<>") + 2;
        Require(length == 1 || tags.IsTagValid(text.Mid(start, length)) == 0 ||
                text[start + length - 1] == L'<');
    }
}

/// The first byte: bit 0 for UTF-16 units, little-endian, else Latin-1. Then the template. Literal text and
/// tags in turn must be the template again, with nothing missed in between.
void Run(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kMost = 2048;
    static CTags tags = MakeTags();
    if (size == 0 || size > kMost)
        return;
    const std::size_t width = (data[0] & 1) + 1u;
    CString text;
    for (std::size_t i = 1; i + width <= size; i += width)
        text.AppendChar(static_cast<wchar_t>(data[i] | (width == 2 ? data[i + 1] << 8 : 0)));

    tags.StartScan(text);
    CTagInfo info;
    CString literal;
    int done = 0;
    while (tags.Scan(literal, info) != 0) {
        Require(text.Mid(done, literal.GetLength()) == literal);
        RequireNoTag(tags, literal);
        done += literal.GetLength();
        literal.Empty();

        const CString raw = text.Mid(done, text.Find(L'>', done) + 1 - done);
        CTagInfo known;
        Require(raw.ReverseFind(L'<') == 0 && tags.GetTagInfo(raw, known) != 0);
        Require(known.GetTagID() == info.GetTagID() && known.GetParameters() == info.GetParameters());
        tags.GetTagFriendlyName(raw);
        done += raw.GetLength();
    }
    Require(text.Mid(done) == literal);
    RequireNoTag(tags, literal);
}

const vak::fuzz::Target target("TagScan", Run);

} // namespace
