#include "files/FileSystem.h"
#include "framework/base/Time.h"
#include "tags/detail/TagParameterTable.h"
#include "tests/support/Print.h"
#include "tests/support/TagTexts.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using vak::detail::TagParameter;
using namespace vak::test;

namespace {

CTagValue File(const CString& path)
{
    return With<const CString&>(&CTagValue::SetFilename, path);
}

/// Notes the parameters that reach it, and fails at "size".
class NotingValue : public CTagValue
{
public:
    CString m_names;

protected:
    _TAGDATA_INFO HandleParameters(const CString& parameter) override
    {
        m_names += parameter + L',';
        return parameter == L"size" ? TAGDATA_NONE : TAGDATA_TEXT;
    }
};

CString LoadedText(UINT id)
{
    CString text;
    vak::LoadText(text, id);
    return text;
}

CString Nested(const wchar_t* level, int depth, int closed)
{
    CString text;
    for (int i = 0; i < depth; ++i)
        text += level;
    return text + CString(L')', closed);
}

} // namespace

TEST(TagParameters, TakePathsApartWithoutAskingTheDisk)
{
    TempFolder folder;
    folder.Write("example.jpg\\in it", "x"); // a folder with the name of a file
    const CString existing = folder.Path("example.jpg");
    EXPECT_EQ(AsText(File(existing), L"(path)"), folder.Path());
    EXPECT_EQ(AsText(File(existing), L"(name)"), CString(L"example.jpg"));
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"C:\\tmp\\example.jpg", L".jpg|example.jpg|example|C:\\tmp\\|tmp|C:\\"},
        {L"C:\\a.x\\b\\c.tar.gz", L".gz|c.tar.gz|c.tar|C:\\a.x\\b\\|b|C:\\"},
        {L"C:\\a.b\\c", L"|c|c|C:\\a.b\\|a.b|C:\\"},
        {L"C:\\a.b\\", L"|||C:\\a.b\\|a.b|C:\\"},
        {L"C:x.y", L".y|x.y|x|C:||C:\\"},
        {L"\\\\server\\share.x\\d\\x", L"|x|x|\\\\server\\share.x\\d\\|d|\\\\server\\share.x\\"},
        {L"\\\\server\\share.x", L"|||\\\\server\\share.x\\||\\\\server\\share.x\\"},
        {L"x.y", L".y|x.y|x|||\\"},
        {L"", L"|||||\\"}};
    for (const auto& [path, pieces] : rows) {
        CString all = AsText(File(path), L"(ext)");
        for (const wchar_t* parameter : {L"(name)", L"(shortname)", L"(path)", L"(path(topdir))", L"(root)"})
            all += L'|' + AsText(File(path), parameter);
        EXPECT_EQ(all, CString(pieces)) << CStringA(path);
        EXPECT_EQ(AsText(File(path), L"(fullpath(d+h))"), CString(path));
    }
}

TEST(TagParameters, AskTheDiskForSizesAndDates)
{
    TempFolder folder;
    const CString path = folder.Write("a.vakraw", std::string(1536, 'x'));
    ASSERT_EQ(fileSetLastWriteDate(path, CTime(2003, 9, 1, 10, 0, 0)), 1);
    CTime created;
    ASSERT_EQ(fileGetCreationDate(path, created), 1);
    const std::pair<const wchar_t*, CString> rows[] = {
        {L"(size)", L"1,50 Ko | 1.50 KB"},
        {L"(lastwritedate(h))", L"10:00"},
        {L"(lastwritedate(ext))", L""},
        {L"(lastwritedate(d+h+t))", L"Lundi 1er Septembre 2003 10:00 | Monday 1 September 2003 10:00"},
        {L"(lastwritedate(d(ext)))", L"01/09/2003"},
        {L"(createdate(d+h))", AsText(With(&CTagValue::SetDate, created))}};
    for (const auto& [parameters, text] : rows)
        EXPECT_EQ(InBoth([&] { return AsText(File(path), parameters); }), text) << CStringA(parameters);
    for (const wchar_t* parameters : {L"(size)", L"(createdate)", L"(lastwritedate(d))", L"(name(size))"}) {
        CTagValue missing = File(folder.Path("missing.png"));
        EXPECT_EQ(missing.HandleParametersAndConvertToType(TAGDATA_NONE, parameters), 0);
        EXPECT_EQ(missing.IsEmpty(), 1);
    }
    // The shell has its own way of writing what it has no name for.
    EXPECT_GE(AsText(File(L"C:\\tmp\\x.vakraw"), L"(kind(ext))").MakeLower().Find(L"vakraw file"), 0);
    EXPECT_FALSE(AsText(File(L"C:\\tmp\\x." + CString(L'y', 5000)), L"(kind)").IsEmpty());
}

TEST(TagParameters, ApplyFromTheOutermostInUpToTheFirstUnknown)
{
    const auto names = [](const wchar_t* chain) {
        NotingValue value;
        value.SetText(L"x");
        return value.HandleParametersAndConvertToType(TAGDATA_NONE, chain) != 0 ? value.m_names : L"failed";
    };
    EXPECT_EQ(names(L"(lastwritedate(d+h))"), CString(L"lastwritedate,d+h,"));
    EXPECT_EQ(names(L"(ext(size(name)))"), CString(L"ext,size,name,"));
    EXPECT_EQ(names(L"(ext(size))"), CString(L"failed"));
    // One ")" for two "("; a second pair that holds "name)"; an unknown name.
    for (const wchar_t* chain : {L"ab(ext)cd", L"(ext(name)", L"(ext(name)))", L"(ext(bogus(name)))"})
        EXPECT_EQ(names(chain), CString(L"ext,")) << CStringA(chain);
    // An empty name; "ext)", which is none; parentheses that have crossed.
    for (const wchar_t* chain : {L"", L"ext", L"(Ext)", L"( ext)", L"((ext))", L"(ext)(name)", L"ext)(name"})
        EXPECT_EQ(names(chain), CString()) << CStringA(chain);
}

TEST(TagParameters, TakeLinearTimeHoweverDeepTheyNest)
{
    constexpr int kDepth = 1000000; // quadratic work would take hours
    EXPECT_EQ(AsText(File(L"a.b"), Nested(L"(name", kDepth, kDepth)), CString(L"a.b"));
    EXPECT_EQ(AsText(File(L"a.b"), Nested(L"(ext", kDepth, 1)), CString(L".b"));
    for (const wchar_t* level : {L"(", L")", L")(", L"()"})
        EXPECT_EQ(AsText(File(L"a.b"), Nested(level, kDepth, kDepth)), CString(L"a.b"));
}

TEST(TagParameters, StandInTheOrderOfTheirMenuWithKindFlagsAndNames)
{
    CString rows;
    for (const TagParameter& row : vak::detail::TagParameters()) {
        rows.AppendFormat(L"%s:%x>%x%s ", row.name, row.appliesTo, row.yieldWord,
                          row.exampleId != 0 ? L"*" : L"");
        EXPECT_EQ(vak::detail::FindTagParameter(row.name), &row);
        EXPECT_EQ(row.exampleId == 0, LoadedText(row.exampleId).IsEmpty());
        EXPECT_FALSE(LoadedText(row.friendlyNameId).IsEmpty());
    }
    EXPECT_EQ(rows, CString(L"fullpath:1001>2001001* ext:1001>2001001* kind:1001>3000001* path:1001>2001001* "
                            L"size:1001>2008002 shortname:1001>2001001* name:1001>2001001* "
                            L"topdir:1001>2001001* root:1001>2001001* createdate:1001>4000008 "
                            L"lastwritedate:1001>4000008 d:8>2000001 h:8>2000001 d+h:8>2000001 "
                            L"d+t:8>2000001 d+h+t:8>2000001 "));
    EXPECT_EQ(vak::detail::FindTagParameter(L""), nullptr);
    EXPECT_EQ(InBoth([] { return LoadedText(vak::detail::TagParameters().back().friendlyNameId); }),
              CString(L"Date et heure (format : Lundi 1er Septembre 2003 10:00) | "
                      L"Date and time (format: Monday 2 September 2003 10:00)"));
    EXPECT_EQ(LoadedText(vak::detail::FindTagParameter(L"root")->exampleId), CString(L"(C:\\)"));
}
