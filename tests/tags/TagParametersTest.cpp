#include "files/FileSystem.h"
#include "framework/base/Time.h"
#include "tags/TagInfo.h"
#include "tags/detail/TagParameterTable.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"
#include "tests/tags/TagTexts.h"

#include <gtest/gtest.h>

using vak::detail::TagParameter;
using vak::test::AsText;
using vak::test::InBoth;
using vak::test::With;

namespace {

CTagValue File(const CString& path)
{
    return With<const CString&>(&CTagValue::SetFilename, path);
}

/// Notes the parameters that reach it.
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

/// The innermost parameter at `depth`, and that many parentheses behind it.
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
    vak::test::TempFolder folder;
    folder.Write("example.jpg\\in it", "x"); // a folder with the name of a file
    struct Row
    {
        CString path;
        const wchar_t* parameters;
        CString text;
    };
    const CString existing = folder.Path("example.jpg");
    const Row rows[] = {
        {L"C:\\tmp\\example.jpg", L"(ext)", L".jpg"},
        {L"C:\\tmp\\example.jpg", L"(shortname)", L"example"},
        {L"C:\\tmp\\example.jpg", L"(name)", L"example.jpg"},
        {L"C:\\tmp\\example.jpg", L"(path)", L"C:\\tmp\\"},
        {L"C:\\tmp\\example.jpg", L"(topdir)", L"tmp"},
        {L"C:\\tmp\\example.jpg", L"(root)", L"C:\\"},
        {L"C:\\tmp\\example.jpg", L"(fullpath)", L"C:\\tmp\\example.jpg"},
        {L"C:\\tmp\\example.jpg", L"(path(topdir))", L"tmp"},
        {L"C:\\tmp\\example.jpg", L"(name(shortname(ext)))", L""},
        {L"C:\\tmp\\example.jpg", L"(d+h)", L"C:\\tmp\\example.jpg"},
        {L"C:\\a\\b\\c.tar.gz", L"(topdir)", L"b"},
        {L"C:\\a\\b\\c.tar.gz", L"(shortname)", L"c.tar"},
        {L"C:\\a.b\\c", L"(ext)", L""},
        {L"C:\\a.b\\", L"(name)", L""},
        {L"C:\\a.b\\", L"(topdir)", L"a.b"},
        {L"C:x.y", L"(name)", L"x.y"},
        {L"C:\\", L"(topdir)", L""},
        {L"\\\\server\\share\\d\\x.y", L"(root)", L"\\\\server\\share\\"},
        {L"\\\\server\\share", L"(path)", L"\\\\server\\share\\"},
        {L"\\\\server\\share.x", L"(ext)", L""},
        {L"x.y", L"(path)", L""},
        {L"x.y", L"(root)", L"\\"},
        {L"", L"(name)", L""},
        {existing, L"(name)", L"example.jpg"},
        {existing, L"(ext)", L".jpg"},
        {existing, L"(path)", folder.Path()},
    };
    for (const Row& row : rows)
        EXPECT_EQ(AsText(File(row.path), row.parameters), row.text) << CStringA(row.path + row.parameters);
}

TEST(TagParameters, AskTheDiskForSizesAndDates)
{
    vak::test::TempFolder folder;
    const CString path = folder.Write("a.vakraw", std::string(1536, 'x'));
    ASSERT_EQ(fileSetLastWriteDate(path, CTime(2003, 9, 1, 10, 0, 0)), 1);
    EXPECT_EQ(AsText(File(path), L"(size)"), CString(L"1,50 Ko"));
    EXPECT_EQ(InBoth([&] { return AsText(File(path), L"(lastwritedate(d+h+t))"); }),
              CString(L"Lundi 1er Septembre 2003 10:00 | Monday 1 September 2003 10:00"));
    EXPECT_EQ(AsText(File(path), L"(lastwritedate(h))"), CString(L"10:00"));
    EXPECT_EQ(AsText(File(path), L"(lastwritedate(d(ext)))"), CString(L"01/09/2003"));
    EXPECT_EQ(AsText(File(path), L"(lastwritedate(ext))"), CString()) << "neither date nor hour is asked for";
    CTagValue created = File(path);
    CTime expected;
    ASSERT_EQ(fileGetCreationDate(path, expected), 1);
    EXPECT_EQ(created.HandleParametersAndConvertToType(TAGDATA_NONE, L"(createdate)"), 1);
    EXPECT_EQ(created.GetDataType(), TAGDATA_DATE);
    EXPECT_EQ(created.GetDate().GetTime(), expected.GetTime());
    CTagValue size = File(path);
    EXPECT_EQ(size.HandleParametersAndConvertToType(TAGDATA_UINT, L"(size)"), 1);
    EXPECT_EQ(size.GetUInt(), 1536u);

    for (const wchar_t* parameters : {L"(size)", L"(createdate)", L"(lastwritedate(d))", L"(name(size))"}) {
        CTagValue missing = File(folder.Path("missing.png"));
        EXPECT_EQ(missing.HandleParametersAndConvertToType(TAGDATA_NONE, parameters), 0);
        EXPECT_EQ(missing.IsEmpty(), 1);
    }
    // The shell has its own way of writing what it has no name for.
    EXPECT_GE(AsText(File(L"C:\\tmp\\example.vakraw"), L"(kind(ext))").MakeLower().Find(L"vakraw file"), 0);
    EXPECT_EQ(AsText(File(L"C:\\tmp\\x" + CString(L'.', 1) + CString(L'y', 5000)), L"(kind)").IsEmpty(),
              false);
}

TEST(TagParameters, ApplyFromTheOutermostInUpToTheFirstUnknown)
{
    struct Row
    {
        const wchar_t* chain;
        const wchar_t* names;
        int result;
    };
    const Row rows[] = {
        {L"", L"", 1},
        {L"ext", L"", 1},
        {L"(ext)", L"ext,", 1},
        {L"ab(ext)cd", L"ext,", 1},
        {L"(lastwritedate(d+h))", L"lastwritedate,d+h,", 1},
        {L"(ext(name)", L"ext,", 1},   // one ")" for two "("
        {L"(ext(name)))", L"ext,", 1}, // the second pair holds "name)"
        {L"((ext))", L"", 1},          // an empty name
        {L"(ext)(name)", L"", 1},      // "ext)" is no name
        {L"ext)(name", L"", 1},        // crossed
        {L"(ext(bogus(name)))", L"ext,", 1},
        {L"(Ext)", L"", 1},
        {L"( ext)", L"", 1},
        {L"(ext(size(name)))", L"ext,size,name,", 1},
        {L"(ext(size))", L"ext,size,", 0},
    };
    for (const Row& row : rows) {
        NotingValue value;
        value.SetText(L"x");
        EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_NONE, row.chain), row.result)
            << CStringA(row.chain);
        EXPECT_EQ(value.m_names, CString(row.names)) << CStringA(row.chain);
    }
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
        CString text;
        text.Format(L"%s:%x>%x%s", row.name, row.appliesTo, row.yieldWord, row.exampleId != 0 ? L"*" : L"");
        rows += text + L' ';
        EXPECT_EQ(vak::detail::FindTagParameter(row.name), &row);
        EXPECT_FALSE(InBoth([&] { return LoadedText(row.friendlyNameId); }).IsEmpty());
        EXPECT_EQ(row.exampleId == 0, LoadedText(row.exampleId).IsEmpty());
    }
    EXPECT_EQ(rows, CString(L"fullpath:1001>2001001* ext:1001>2001001* kind:1001>3000001* path:1001>2001001* "
                            L"size:1001>2008002 shortname:1001>2001001* name:1001>2001001* "
                            L"topdir:1001>2001001* root:1001>2001001* createdate:1001>4000008 "
                            L"lastwritedate:1001>4000008 d:8>2000001 h:8>2000001 d+h:8>2000001 "
                            L"d+t:8>2000001 d+h+t:8>2000001 "));
    EXPECT_EQ(vak::detail::FindTagParameter(L""), nullptr);
    const TagParameter& last = vak::detail::TagParameters().back();
    EXPECT_EQ(InBoth([&] { return LoadedText(last.friendlyNameId); }),
              CString(L"Date et heure (format : Lundi 1er Septembre 2003 10:00) | "
                      L"Date and time (format: Monday 2 September 2003 10:00)"));
    EXPECT_EQ(LoadedText(vak::detail::FindTagParameter(L"root")->exampleId), CString(L"(C:\\)"));
}
