#include "framework/ui/RichEditCtrl.h"
#include "tests/support/Print.h"
#include "tests/support/TagEngine.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

/// Ends a window when it is told of a change in it.
struct Parent : CWnd
{
    BOOL OnCommand(UINT, UINT) override { return m_doomed && m_doomed->DestroyWindow(); }

    CWnd* m_doomed = nullptr;
};

/// A control of the older class or of the newer one, and an engine with a few tags.
class RichText : public testing::TestWithParam<bool>
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(AfxInitRichEdit2() && AfxInitRichEdit5());
        const CRect area(0, 0, 300, 200);
        m_parent.CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP, area, nullptr, 0);
        ASSERT_TRUE(m_control.CreateEx(0, GetParam() ? MSFTEDIT_CLASS : RICHEDIT_CLASS, L"",
                                       WS_CHILD | ES_MULTILINE, area, &m_parent, 1));
        vak::test::Insert(m_tags, L"<name>", TAGDATA_TEXT, 1, L"Anna");
        vak::test::Insert(m_tags, L"<lines>", TAGDATA_TEXT, 2, L"x\r\n<name>y");
        vak::test::Insert(m_tags, L"<empty>", TAGDATA_TEXT, 3);
    }
    CString Text() const
    {
        CString text;
        m_control.GetTextRange(0, -1, text);
        return text;
    }
    /// Of a text or of a document; "[" and "]" stand for the markers of a conditional.
    CString Expand(CStringA text)
    {
        text.Replace("[", "<tagifexist>");
        text.Replace("]", "<tagendifexist>");
        SETTEXTEX how{ST_DEFAULT, CP_ACP};
        m_control.SendMessage(EM_SETTEXTEX, reinterpret_cast<WPARAM>(&how),
                              reinterpret_cast<LPARAM>(text.GetString()));
        CTagInfo tag;
        CTagValue value;
        m_tags.StartRTFScan();
        while (m_tags.RTFScan(m_control, tag) && m_tags.GetDataFromTag(tag, value, TAGDATA_TEXT))
            m_tags.SetRTFTag(m_control, value.GetText());
        return Text();
    }
    /// One letter a character: b(old), i(talic), x for both, "." for neither.
    CString Formats()
    {
        CString formats;
        for (int at = 0; at < Text().GetLength(); ++at) {
            CHARFORMAT2 format{};
            m_control.SetSel(at, at + 1);
            m_control.GetSelectionCharFormat(format);
            formats += L".bix"[format.dwEffects & (CFE_BOLD | CFE_ITALIC)];
        }
        return formats;
    }

    Parent m_parent;
    CRichEditCtrl m_control;
    CTags m_tags = vak::test::ConditionalTags();
};

} // namespace

TEST_P(RichText, FindsTagsAsInPlainTextAndCarriesConditionalsOut)
{
    constexpr std::pair<const char*, const wchar_t*> kRows[] = {
        {"<unknown> a<b<name>c <<<<name><NAME> < Na me ( Ext ) > > <na\rme> <name",
         L"<unknown> a<bAnnac <<<AnnaAnna Anna > <na\rme> <name"},
        // Nothing is looked for inside a replacement, however long it has become.
        {"<lines><lines>[<name>]|<name>", L"x\r<name>yx\r<name>yAnna|Anna"},
        // Empty lines go at the end of the text, and those that a marker leaves.
        {"\r1\r\r<name>\r<empty>\r\r", L"\r1\r\rAnna"},
        {"<empty>\r", L""},
        {"a [b<empty>c] d[<name>e]f", L"a  dAnnaef"},
        {"1\r[\r2 <name>\r]\r3\r[\r4 <empty>\r]\r5<name>", L"1\r2 Anna\r3\r5Anna"},
        {"[\r1\r\r[\r<name>]\r\r2\r[]\r]3<name>", L"1\r\rAnna\r\r2\r3Anna"},
        {"1\r\r[<empty>]\r\r2\r[<empty>]", L"1\r\r\r2"},
        {"[<empty>]\r<name>", L"Anna"},
        {"x[\r\r]y", L"x\r\ry"},
        // Without its partner a marker stays.
        {"a]b<empty>c<name>", L"a<tagendifexist>bcAnna"},
        {"[a[<empty>b]<empty>", L"<tagifexist>a"},
        // One flag for all: a marker clears what was met before it.
        {"<empty>[a<empty>[b<name>c]d]e", L"abAnnacde"},
        {"[a[b<empty>]c<name>]d", L"acAnnad"},
        {"1\r[\r[\r<lines>\r]\r<empty>]\r2<name>", L"1\r2Anna"},
        {"1\r[\r[\r<empty>\r]\r<lines>\r]\r2<name>", L"1\rx\r<name>y\r2Anna"},
    };
    for (const auto& [text, expanded] : kRows) {
        SCOPED_TRACE(text);
        EXPECT_EQ(Expand(text), CString(expanded));
    }
}

TEST_P(RichText, GivesAValueTheFormatOfItsPlaceAndLeavesTheOthers)
{
    EXPECT_EQ(Expand("{\\rtf1\\b0 a<name>{\\b <name>b}{\\i <na}{\\b me>z}}"), L"aAnnaAnnabAnnaz");
    EXPECT_EQ(Formats(), L".....bbbbbiiiib");
    EXPECT_EQ(Expand("{\\rtf1\\b0 {\\i <tag}if{\\b exist>}u{\\b <name>}{\\i v<tagendif}exist>w"
                     "<ta{\\b gifexist>}<empty>{\\i <tagendifexist>x}}"),
              L"uAnnavwx");
    EXPECT_EQ(Formats(), L".bbbbi.i");
    EXPECT_EQ(Expand("{\\rtf1\\qc<name>\\par\\pard\\par\\par}"), L"Anna");
    PARAFORMAT2 line{};
    line.cbSize = sizeof line;
    m_control.SendMessage(EM_GETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&line));
    EXPECT_EQ(line.wAlignment, PFA_CENTER) << "whatever the empty lines at the end had";
}

TEST_P(RichText, SelectsWhatItFindsAndReplacesItUntilTheControlGoes)
{
    CTagInfo tag;
    CString plain;
    CHARRANGE selected{};
    const CString text = L"1\r<x> <name>" + CString(L'y', 100);
    m_control.SetWindowText(L"1\r\n<x> <name><Lines( A )>");
    m_control.LimitText(26);
    m_control.SetReadOnly();
    EXPECT_EQ(CTags(m_tags).RTFScan(m_control, tag), 0) << "no scan";
    m_tags.StartScan(L"<name>");
    EXPECT_EQ(m_tags.RTFScan(m_control, tag), 1);
    EXPECT_EQ(m_tags.RTFScan(m_control, tag), 1) << "a tag may be left as it is";
    EXPECT_EQ(tag.GetTagName() + tag.GetParameters(), L"<lines>(a)");
    m_control.GetSel(selected);
    EXPECT_EQ(CPoint(selected.cpMin, selected.cpMax), CPoint(12, 24));
    EXPECT_EQ(m_tags.SetRTFTag(m_control, text.Mid(12)), 1);
    EXPECT_EQ(Text(), text) << "what holds for the user holds for no program";
    EXPECT_EQ(m_control.GetLimitText(), 26);
    EXPECT_EQ(m_tags.Scan(plain, tag), 0) << "a thread has one position";

    m_control.SetWindowText(L"<tagifexist><tagendifexist><name>");
    m_control.SetEventMask(ENM_CHANGE);
    m_parent.m_doomed = &m_control;
    m_tags.StartRTFScan();
    EXPECT_EQ(m_tags.RTFScan(m_control, tag), 0);
    EXPECT_EQ(m_tags.RTFScan(m_control, tag) + m_tags.SetRTFTag(m_control, L"x"), 0);
}

INSTANTIATE_TEST_SUITE_P(BothClasses, RichText, testing::Bool());
