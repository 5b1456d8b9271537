#include "framework/ui/RichEditCtrl.h"
#include "tests/examples/Vakconvert.h"

#include <algorithm>
#include <string_view>

using vak::test::kTriangle;
using vak::test::Names;

namespace {

class VakconvertTags : public vak::test::Vakconvert
{
protected:
    void SetUp() override
    {
        m_folder.Write("in/a.obj", kTriangle);
        m_folder.Write("in/torn.stl", "solid x\nfacet");
    }
    /// The report that the template gives.
    std::string ReportOf(std::string_view text, const char* extension = ".txt")
    {
        const std::string name = std::string("t") + extension;
        m_folder.Write(name, text);
        const CString file(name.c_str());
        EXPECT_EQ(Run(L"--to ply -y --dest @out --report @" + file + L" --report-out @r/" + file + L" @in"),
                  1u)
            << m_output;
        return m_folder.Read("r/" + name);
    }
};

DWORD CALLBACK Feed(DWORD_PTR cookie, BYTE* buffer, LONG wanted, LONG* given)
{
    auto& rest = *reinterpret_cast<std::string_view*>(cookie);
    *given = static_cast<LONG>(std::min(rest.size(), static_cast<std::size_t>(wanted)));
    std::copy_n(rest.data(), *given, buffer);
    rest.remove_prefix(static_cast<std::size_t>(*given));
    return 0;
}

/// A rich-text document in a control of its own.
class Document
{
public:
    explicit Document(std::string_view rtf)
    {
        const RECT area{0, 0, 300, 200};
        m_parent.CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP, area, nullptr, 0);
        m_control.Create(WS_CHILD | ES_MULTILINE, area, &m_parent, 1);
        EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&rtf), 0, &Feed};
        m_control.StreamIn(SF_RTF, stream);
    }
    /// With line feeds.
    std::string Text() const
    {
        CString text;
        m_control.GetTextRange(0, -1, text);
        text.Replace(L'\r', L'\n');
        return CStringA(text).GetString();
    }
    bool IsBold(std::string_view word)
    {
        const auto at = static_cast<LONG>(Text().find(word));
        CHARFORMAT2 format{};
        m_control.SetSel(at, at + static_cast<LONG>(word.size()));
        return (m_control.GetSelectionCharFormat(format) & CFM_BOLD & format.dwEffects) != 0;
    }

private:
    CWnd m_parent;
    CRichEditCtrl m_control;
};

constexpr const char* kTemplate =
    "Files: <files>, good: <Converted>, bad: <FAILED>; <nope> a < b\n"
    "<tagifexist>\n"
    "\n"
    "Bad:\n"
    "<failedlist>\n"
    "<tagendifexist>\n"
    "<largest(name)> of <faces> face[<tagifexist>, <largest(size)><tagendifexist>]\n"
    "<tagifexist>\n"
    "gone: <nope> <destination(ext)><tagendifexist>\n"
    "1<tagifexist>2<tagifexist><destination(ext)>3<tagendifexist>4<tagendifexist>5\n"
    "<tagendifexist>x<tagifexist> <passedover> <Nope> <date(q)>.";
constexpr const char* kReport = "Files: 2, good: 1, bad: 1; <nope> a < b\n"
                                "\n"
                                "Bad:\n"
                                "torn.stl: Mauvais format de fichier\n"
                                "a.ply of 1 face[, 220 bytes]\n"
                                "1245\n"
                                "<tagendifexist>x<tagifexist> 0 <Nope> ";

} // namespace

TEST_F(VakconvertTags, TemplatesNameResults)
{
    const std::pair<const wchar_t*, const char*> rows[] = {
        {L"<file(shortname)>_<vertices>", "out/a_3.ply"},
        {L"<FILE ( Short Name )>-<faces><kind> <index>", "out/a-1ply 1.ply"},
        {L"<file(topdir)>/<file(ext)>*", "out/in-.obj-.ply"},
        {L"<nope>x<y<vertices(d)>", "out/-nope-x-y3.ply"},
        // Nothing is left, or what the system would change.
        {L"<width>", "out/a.ply"},
        {L" .<height>. ", "out/a (1).ply"},
        {L"CON.<vertices>", "out/CON_.3.ply"},
    };
    for (const auto& [name, made] : rows) {
        const CString call(name);
        EXPECT_EQ(Run(L"--to ply --name \"" + call + L"\" --dest @out @in/a.obj"), 0u) << m_output;
        EXPECT_TRUE(m_folder.Has(made)) << made << "\n" << m_output;
        EXPECT_EQ(Says("--name, line 1, column 1: <nope> is not known"), call.Find(L"<nope>") == 0)
            << m_output;
    }
}

TEST_F(VakconvertTags, NamedResultsBesideTheirSourcesAreNotConvertedAgain)
{
    m_folder.Write("in/a_old.ply", "damaged");
    for (const unsigned int again : {0, 1, 2}) {
        EXPECT_EQ(Run(L"--to ply --name \"<file(shortname)>_<vertices>_<date(d)>\" @in/*.obj @in/*.ply"), 1u)
            << m_output;
        EXPECT_EQ(Says("1 passed over: results of an earlier run"), again == 1) << m_output;
        EXPECT_EQ(Made(".ply").size(), again + 2) << m_output;
    }
}

TEST_F(VakconvertTags, ReportsOfBothKindsTellTheSame)
{
    std::string rich = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 ";
    for (const char* unit = kTemplate; *unit != 0; ++unit)
        rich += *unit == '\n' ? std::string("\\par\n") : std::string(1, *unit);
    rich += " \\b <converted>!\\b0  end}";
    const std::string plain = ReportOf(kTemplate);
    EXPECT_EQ(plain.substr(0, std::string_view(kReport).size()), kReport);
    for (const char* told :
         {"t.txt, line 1, column 51: <nope> is not known", "line 11, column 50: <date(q)> has"})
        EXPECT_TRUE(Says(told)) << m_output;
    Document document(ReportOf(rich, ".rtf"));
    EXPECT_EQ(document.Text().substr(0, std::string_view(kReport).size()), kReport);
    EXPECT_TRUE(document.IsBold("1!"));
    EXPECT_FALSE(document.IsBold(" end"));
    EXPECT_TRUE(Says("t.rtf, line 11, column 50: <date(q)> has a parameter")) << m_output;
    EXPECT_EQ(m_output.find("<Nope>"), std::string::npos) << "it is told already";
}

TEST_F(VakconvertTags, ListsKeepTheirBulletsAndTextsTheirEncoding)
{
    using namespace std::string_literals;
    m_folder.Write("in/é.obj", kTriangle);
    EXPECT_EQ(ReportOf("\xEF\xBB\xBFx\r\n<tagifexist>\r\n  - <convertedlist>\r\n<tagendifexist>\r\n"),
              "\xEF\xBB\xBFx\r\n  - a.obj -> a.ply (3 vertices, 1 face; 220 bytes)\r\n"
              "  - é.obj -> é.ply (3 vertices, 1 face; 220 bytes)\r\n");
    EXPECT_EQ(ReportOf("\xFF\xFE\xE9\0<\0f\0i\0l\0e\0s\0>\0\n\0"s), "\xFF\xFE\xE9\0\x33\0\n\0"s);
    EXPECT_EQ(ReportOf("\xE9<files>\n"), "\xE9\x33\n") << "the system's code page";
    EXPECT_EQ(ReportOf(""), "");
}

TEST_F(VakconvertTags, ReportsReplaceNothingUnasked)
{
    m_folder.Write("t.txt", "<files>");
    m_folder.Write("no.rtf", "text");
    m_folder.Write("out/t.txt", "mine");
    EXPECT_EQ(Run(L"--to ply --dest @out --report @t.txt @in"), 1u);
    EXPECT_TRUE(Says("t (1).txt")) << m_output;
    EXPECT_EQ(Run(L"--to ply --dest @out -y --report @t.txt --report-out @t.txt @in"), 1u);
    EXPECT_EQ(Made(".txt"), (Names{"out/t (1).txt", "out/t.txt", "output.txt", "t (1).txt", "t.txt"}));
    EXPECT_EQ(m_folder.Read("out/t (1).txt") + m_folder.Read("t.txt"), "2<files>") << "the template is kept";
    for (const wchar_t* call :
         {L"--report @x.txt", L"--report @in/a.obj", L"--report @no.rtf", L"--report-out @y.txt",
          L"--report @t.txt --report-out @y.rtf", L"--edit-template @in/a.obj"})
        EXPECT_EQ(Run(CString(L"--to ply --dest @out @in ") + call), 2u) << m_output;
}
