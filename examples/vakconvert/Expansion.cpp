#include "examples/vakconvert/Expansion.h"

#include "examples/vakconvert/Tags.h"
#include "framework/base/StringArray.h"

#include <algorithm>
#include <vector>

namespace {

constexpr unsigned int kConditionalBegin = 'IFNE';

/// The value of a tag as text; the lines of a list are separated by `separator`.
CString ValueOf(CTags& tags, CTagInfo& tag, const CString& separator)
{
    CTagValue value;
    if (!tags.GetDataFromTag(tag, value, TAGDATA_NONE))
        return {};
    if (value.GetDataType() != TAGDATA_STRINGARRAY)
        return value.HandleParametersAndConvertToType(TAGDATA_TEXT, CString()) ? value.GetText() : CString();
    CString lines;
    for (int i = 0; i < value.GetStringArray().GetCount(); ++i)
        lines += (i > 0 ? separator : CString()) + value.GetStringArray()[i];
    return lines;
}

CString LineBreakOf(const CString& text)
{
    return text.Find(L"\r\n") >= 0 ? L"\r\n" : L"\n";
}

/// Where the line begins that ends at the end of `text`.
int LastLine(const CString& text)
{
    return text.ReverseFind(L'\n') + 1;
}

/// A plain template while it is expanded.
class TextExpansion
{
public:
    TextExpansion(CTags& tags, const CString& text) : m_tags(tags), m_lineBreak(LineBreakOf(text))
    {
        m_tags.StartScan(text);
    }

    CString Run()
    {
        CTagInfo tag;
        for (;;) {
            const int before = m_out.GetLength();
            const bool found = m_tags.Scan(m_out, tag) != 0;
            DropEmptyLine(before, !found);
            if (!found)
                break;
            if (tag.GetTagClass() != kConditionalClass)
                AddValue(tag);
            else if (tag.GetTagID() == kConditionalBegin)
                Open();
            else
                Close(tag);
        }
        PutBackOpenMarkers();
        return m_out;
    }

private:
    /// A "<tagifexist>" that is taken out of the text, with the line break behind it if that went too.
    struct Marker
    {
        int position;
        CString taken;
    };

    void AddValue(CTagInfo& tag)
    {
        const CString line = m_out.Mid(LastLine(m_out));
        const CString lead = line.SpanIncluding(L" \t-*\u2022") == line ? line : CString();
        const CString value = ValueOf(m_tags, tag, m_lineBreak + lead);
        m_hasEmptyTag = m_hasEmptyTag || value.IsEmpty();
        m_out += value;
    }

    void Open()
    {
        m_open.push_back({m_out.GetLength(), L"<tagifexist>"});
        m_hasEmptyTag = false;
        MarkerWasHere(true);
    }

    void Close(const CTagInfo& tag)
    {
        const bool isEmpty = m_hasEmptyTag;
        m_hasEmptyTag = false;
        if (m_open.empty()) {
            m_out += tag.GetTagName();
            return;
        }
        if (isEmpty)
            CutAt(m_open.back().position);
        m_open.pop_back();
        MarkerWasHere(false);
    }

    /// Remembers a line that is empty up to here: when nothing else comes in it, it goes.
    void MarkerWasHere(bool isOpen)
    {
        m_mayDropLine = LastLine(m_out) == m_out.GetLength();
        m_isOpenMarker = isOpen;
    }

    void DropEmptyLine(int at, bool isEnd)
    {
        if (!m_mayDropLine)
            return;
        m_mayDropLine = false;
        const CString next = m_out.Mid(at, 2);
        const int length = next == L"\r\n" ? 2 : next.Left(1) == L"\n" ? 1 : 0;
        if (m_isOpenMarker)
            m_open.back().taken += next.Left(length);
        m_out.Delete(at, length);
        if (length == 0 && isEnd && at == m_out.GetLength() && !m_isOpenMarker)
            DropLastLineBreak();
    }

    void DropLastLineBreak()
    {
        if (m_out.Right(1) == L"\n")
            CutAt(m_out.GetLength() - (m_out.Right(2) == L"\r\n" ? 2 : 1));
    }

    void CutAt(int position) { m_out.Delete(position, m_out.GetLength() - position); }

    void PutBackOpenMarkers()
    {
        for (; !m_open.empty(); m_open.pop_back())
            m_out.Insert(m_open.back().position, m_open.back().taken);
    }

    CTags& m_tags;
    CString m_lineBreak;
    CString m_out;
    std::vector<Marker> m_open;
    bool m_hasEmptyTag = false;
    bool m_mayDropLine = false;
    bool m_isOpenMarker = false;
};

DWORD CALLBACK Give(DWORD_PTR cookie, BYTE* buffer, LONG wanted, LONG* given)
{
    auto& rest = *reinterpret_cast<std::string_view*>(cookie);
    const std::size_t count = std::min(rest.size(), static_cast<std::size_t>(wanted));
    std::copy_n(rest.data(), count, buffer);
    rest.remove_prefix(count);
    *given = static_cast<LONG>(count);
    return 0;
}

DWORD CALLBACK Take(DWORD_PTR cookie, BYTE* bytes, LONG count, LONG* taken)
{
    auto& document = *reinterpret_cast<std::string*>(cookie);
    *taken = count;
    try {
        document.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
    } catch (const std::exception&) {
        return 1; // nothing may be thrown through the control
    }
    return 0;
}

} // namespace

CString ExpandText(CTags& tags, const CString& text)
{
    return TextExpansion(tags, text).Run();
}

void ExpandRichText(CTags& tags, CRichEditCtrl& control)
{
    CTagInfo tag;
    tags.StartRTFScan();
    while (tags.RTFScan(control, tag)) {
        const CString value = ValueOf(tags, tag, L"\r");
        if (!tags.SetRTFTag(control, value))
            return;
    }
}

CRichEditCtrl* HiddenRichText::Control()
{
    const CRect nowhere(0, 0, 600, 400);
    if (m_control.GetSafeHwnd() == nullptr &&
        m_parent.CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP, nowhere, nullptr, 0))
        m_control.Create(WS_CHILD | ES_MULTILINE, nowhere, &m_parent, 1);
    return m_control.GetSafeHwnd() != nullptr ? &m_control : nullptr;
}

bool SetDocument(CRichEditCtrl& control, const std::string& document)
{
    if (document.rfind("{\\rtf", 0) != 0)
        return false;
    control.LimitText(0x7FFFFFFE);
    std::string_view rest = document;
    EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&rest), 0, &Give};
    control.StreamIn(SF_RTF, stream);
    return stream.dwError == 0;
}

std::string DocumentOf(const CRichEditCtrl& control)
{
    std::string document;
    EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&document), 0, &Take};
    control.StreamOut(SF_RTF, stream);
    if (stream.dwError != 0)
        document.clear();
    // Some versions of the control write the zero of their last piece, too.
    while (!document.empty() && document.back() == '\0')
        document.pop_back();
    return document;
}

CString PlainTextOf(const CRichEditCtrl& control)
{
    CString text;
    control.GetTextRange(0, -1, text);
    text.Replace(L'\r', L'\n');
    text.Replace(L'\v', L'\n');
    return text;
}
