#include "framework/ui/RichEditCtrl.h"
#include "tags/Tags.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr RECT kArea{0, 0, 300, 200};

DWORD CALLBACK Feed(DWORD_PTR cookie, BYTE* buffer, LONG wanted, LONG* given)
{
    auto& source = *reinterpret_cast<CStringA*>(cookie);
    *given = std::min<LONG>(wanted, source.GetLength());
    std::copy_n(source.GetString(), *given, buffer);
    source = source.Mid(*given);
    return 0;
}

CString ValueOf(const CTagInfo& tag)
{
    const CString name = tag.GetTagName();
    if (name == L"<name>")
        return L"Anna" + tag.GetParameters();
    if (name == L"<lines>")
        return L"x\r\n<name>y";
    return {};
}

/// A control of the older class or of the newer one, and an engine with a few tags.
class RichText : public testing::TestWithParam<bool>
{
protected:
    void SetUp() override
    {
        AfxInitRichEdit2();
        AfxInitRichEdit5();
        ASSERT_TRUE(m_parent.CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP, kArea, nullptr, 0));
        ASSERT_TRUE(m_control.CreateEx(0, GetParam() ? MSFTEDIT_CLASS : RICHEDIT_CLASS, L"",
                                       WS_CHILD | WS_VISIBLE | ES_MULTILINE, kArea, &m_parent, 1));
        // By hand: InitTags serves one engine a process.
        Register(L"<tagifexist>", 'TAGC', 'IFNE');
        Register(L"<tagendifexist>", 'TAGC', 'EINE');
        Register(L"<name>", 'TEST', 1);
        Register(L"<empty>", 'TEST', 2);
        Register(L"<lines>", 'TEST', 3);
    }
    void Register(const wchar_t* name, unsigned int tagClass, unsigned int id)
    {
        m_tags.InsertTag(name, TAGDATA_TEXT, tagClass, id, CString(name), 0, nullptr, nullptr);
    }
    void SetRtf(const char* body)
    {
        CStringA source("{\\rtf1\\ansi\\b0 ");
        source += body;
        source += "}";
        EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&source), 0, &Feed};
        m_control.StreamIn(SF_RTF, stream);
    }
    CString Text() const
    {
        CString text;
        m_control.GetTextRange(0, -1, text);
        return text;
    }
    CString Expand()
    {
        CTagInfo tag;
        m_tags.StartRTFScan();
        while (m_tags.RTFScan(m_control, tag))
            EXPECT_EQ(m_tags.SetRTFTag(m_control, ValueOf(tag)), 1);
        EXPECT_EQ(tag.GetTagName(), L"");
        return Text();
    }
    /// In a table "[" and "]" stand for the markers of a conditional.
    CString Expand(CString text)
    {
        text.Replace(L"[", L"<tagifexist>");
        text.Replace(L"]", L"<tagendifexist>");
        m_control.SetWindowText(text);
        return Expand();
    }
    /// One letter a character: b(old), i(talic), x for both, "." for neither.
    CString Formats()
    {
        CString formats;
        for (int at = 0; at < Text().GetLength(); ++at) {
            CHARFORMAT2 format{};
            m_control.SetSel(at, at + 1);
            m_control.GetSelectionCharFormat(format);
            const DWORD effects = format.dwEffects & (CFE_BOLD | CFE_ITALIC);
            formats += L".bix"[effects];
        }
        return formats;
    }
    bool IsCentred(LONG position)
    {
        PARAFORMAT format{};
        format.cbSize = sizeof format;
        m_control.SetSel(position, position);
        m_control.SendMessage(EM_GETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&format));
        return format.wAlignment == PFA_CENTER;
    }

    CWnd m_parent;
    CRichEditCtrl m_control;
    CTags m_tags;
};

struct Row
{
    const wchar_t* text;
    const wchar_t* expanded;
};

} // namespace

TEST_P(RichText, FindsTagsByTheRulesOfPlainText)
{
    constexpr Row kRows[] = {
        {L"", L""},
        {L"a<b<name>c", L"a<bAnnac"},
        {L"a<<<<name><name>", L"a<<<AnnaAnna"},
        {L"<NAME>, < Na me ( Ext ( D ) ) >", L"Anna, Anna(ext(d))"},
        {L"<unknown> a > b <name", L"<unknown> a > b <name"},
        {L"<name", L"<name"},
        {L"<na\rme> <name>", L"<na\rme> Anna"},
        // Nothing is looked for inside a replacement, however long it has become.
        {L"<lines>|<name>", L"x\r<name>y|Anna"},
        {L"<lines><lines>[<name>]", L"x\r<name>yx\r<name>yAnna"},
        {L"one\r\r<name>\r\r\r", L"one\r\rAnna"},
        {L"\r\r\r", L""},
        {L"a\r<empty>\r", L"a"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(CString(row.text)));
        EXPECT_EQ(Expand(row.text), CString(row.expanded));
    }
}

TEST_P(RichText, KeepsOrDeletesConditionalBlocks)
{
    constexpr Row kRows[] = {
        {L"a[b<name>c]d", L"abAnnacd"},
        {L"a[b<empty>c]d<name>", L"adAnna"},
        {L"a [b<empty>c] d[<name>]", L"a  dAnna"},
        // Lines that a marker leaves empty go, those that were empty before stay.
        {L"1\r[\r2 <name>\r]\r3", L"1\r2 Anna\r3"},
        {L"1\r[\r2 <empty>\r]\r3", L"1\r3"},
        {L"1\r\r[\r<name>]\r\r2<name>", L"1\r\rAnna\r\r2Anna"},
        {L"[\r1<name>\r]", L"1Anna"},
        {L"1\r[<empty>]", L"1"},
        {L"1\r[<empty>]\r\r2", L"1\r\r2"},
        {L"1\r[]\r<name>", L"1\rAnna"},
        {L"[<empty>]", L""},
        {L"x[\r\r]y", L"x\r\ry"},
        // Without its partner a marker stays.
        {L"a]b<empty>c<name>", L"a<tagendifexist>bcAnna"},
        {L"[a<empty>b", L"<tagifexist>ab"},
        {L"[a]b]c", L"ab<tagendifexist>c"},
        // One flag for all: a marker clears what was met before it.
        {L"<empty>[a]", L"a"},
        {L"[a<empty>[b<name>c]d]e", L"abAnnacde"},
        {L"[a[b<empty>]c<name>]d", L"acAnnad"},
        {L"x[a[b<name>]c<empty>d]<name>", L"xAnna"},
        {L"1\r[\r[\r<lines>\r]\r<empty>]\r2<name>", L"1\r2Anna"},
        {L"1\r[\r[\r<empty>\r]\r<lines>\r]\r2<name>", L"1\rx\r<name>y\r2Anna"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(CString(row.text)));
        EXPECT_EQ(Expand(row.text), CString(row.expanded));
    }
}

TEST_P(RichText, GivesAValueTheFormatOfItsPlace)
{
    SetRtf("a<name>{\\b <name>b}{\\i <na}{\\b me>z}");
    EXPECT_EQ(Expand(), L"aAnnaAnnabAnnaz");
    EXPECT_EQ(Formats(), L".....bbbbbiiiib");

    SetRtf("{\\i <tag}if{\\b exist>}u{\\b <name>}{\\i v<tagendif}exist>w<ta{\\b gifexist>}<empty>{\\i "
           "<tagendifexist>x}");
    EXPECT_EQ(Expand(), L"uAnnavwx");
    EXPECT_EQ(Formats(), L".bbbbi.i");
}

TEST_P(RichText, LeavesTheAlignmentOfParagraphsAroundADeletedLine)
{
    SetRtf("\\ql one\\par\\ql <tagifexist>\\par\\qc two <name>\\par\\ql <tagendifexist>\\par three");
    EXPECT_EQ(Expand(), L"one\rtwo Anna\rthree");
    EXPECT_FALSE(IsCentred(1));
    EXPECT_TRUE(IsCentred(5));
    EXPECT_FALSE(IsCentred(14));
}

TEST_P(RichText, SelectsTheTagThatItFound)
{
    CTagInfo tag;
    CHARRANGE selected{};
    m_control.SetWindowText(L"1\r\n<x> <name><name>");
    m_tags.StartRTFScan();
    ASSERT_EQ(m_tags.RTFScan(m_control, tag), 1);
    m_control.GetSel(selected);
    EXPECT_EQ(selected.cpMin, 6);
    EXPECT_EQ(selected.cpMax, 12);
    ASSERT_EQ(m_tags.RTFScan(m_control, tag), 1) << "a tag may be left as it is";
    m_control.GetSel(selected);
    EXPECT_EQ(selected.cpMin, 12);
}

TEST_P(RichText, ReplacesBeyondTheLimitOfWhatTheUserMayType)
{
    m_control.LimitText(14);
    EXPECT_EQ(Expand(L"<lines><lines>"), L"x\r<name>yx\r<name>y");
    EXPECT_EQ(m_control.GetLimitText(), 14);
}

TEST_P(RichText, RefusesAControlThatItCannotChange)
{
    CTagInfo tag;
    m_control.SetWindowText(L"<name>\r\n");
    CTags unused(m_tags);
    EXPECT_EQ(unused.RTFScan(m_control, tag), 0);
    EXPECT_EQ(unused.SetRTFTag(m_control, L"x"), 0);
    m_tags.StartRTFScan();
    m_control.SetReadOnly();
    EXPECT_EQ(m_tags.RTFScan(m_control, tag), 0);
    m_control.SetReadOnly(FALSE);
    EXPECT_EQ(m_tags.RTFScan(m_control, tag), 1);
    m_control.SetReadOnly();
    EXPECT_EQ(m_tags.SetRTFTag(m_control, L"x"), 0);
    EXPECT_EQ(Text(), L"<name>\r");
    m_parent.DestroyWindow();
    EXPECT_EQ(m_tags.SetRTFTag(m_control, L"x"), 0);
    EXPECT_EQ(m_tags.RTFScan(m_control, tag), 0);
    CRichEditCtrl none;
    EXPECT_EQ(m_tags.RTFScan(none, tag), 0);
}

INSTANTIATE_TEST_SUITE_P(BothClasses, RichText, testing::Bool());
