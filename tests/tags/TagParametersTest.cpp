#include "files/FileSystem.h"
#include "framework/base/Time.h"
#include "tags/detail/TagParameterTable.h"
#include "tests/support/Print.h"
#include "tests/support/TagTexts.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace vak::test;

namespace {

CString Shown(const CString& path, const CString& parameters)
{
    return AsText(Read(TAGDATA_FILENAME, path), parameters);
}

CString LoadedText(UINT id)
{
    CString text;
    vak::LoadText(text, id);
    return text;
}

} // namespace

TEST(TagParameters, TakePathsApartWithoutAskingTheDisk)
{
    TempFolder folder;
    folder.Write("example.jpg\\in it", "x"); // a folder with the name of a file
    const CString existing = folder.Path("example.jpg");
    EXPECT_EQ(Shown(existing, L"(path)") + Shown(existing, L"(name)"), existing);
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"C:\\tmp\\example.jpg", L".jpg|example.jpg|example|C:\\tmp\\|tmp|C:\\"},
        {L"C:\\a.b\\c", L"|c|c|C:\\a.b\\|a.b|C:\\"},
        {L"C:\\a.b\\", L"|||C:\\a.b\\|a.b|C:\\"},
        {L"C:x.y", L".y|x.y|x|C:||C:\\"},
        {L"\\\\server\\share.x\\d\\x", L"|x|x|\\\\server\\share.x\\d\\|d|\\\\server\\share.x\\"},
        {L"\\\\server\\share.x", L"|||\\\\server\\share.x\\||\\\\server\\share.x\\"},
        {L"x.y.z", L".z|x.y.z|x.y|||\\"},
        {L"", L"|||||\\"}};
    for (const auto& [path, pieces] : rows) {
        CString all = Shown(path, L"(ext)");
        for (const wchar_t* parameter : {L"(name)", L"(shortname)", L"(path)", L"(path(topdir))", L"(root)"})
            all += L'|' + Shown(path, parameter);
        EXPECT_EQ(all, CString(pieces)) << CStringA(path);
        EXPECT_EQ(Shown(path, L"(fullpath(d+h))"), CString(path));
    }
}

TEST(TagParameters, AskTheDiskForSizesAndDates)
{
    TempFolder folder;
    const CString path = folder.Write("a.vakraw", std::string(1536, 'x'));
    ASSERT_EQ(fileSetLastWriteDate(path, CTime(2003, 9, 1, 10, 0, 0)), 1);
    CTime created;
    CTagValue creation;
    ASSERT_EQ(fileGetCreationDate(path, created), 1);
    creation.SetDate(created);
    const std::pair<const wchar_t*, CString> rows[] = {
        {L"(size)", L"1,50 Ko | 1.50 KB"},
        {L"(lastwritedate(h))", L"10:00"},
        {L"(lastwritedate(ext))", L""},
        {L"(lastwritedate(d+h+t))", L"Lundi 1er Septembre 2003 10:00 | Monday 1 September 2003 10:00"},
        {L"(lastwritedate(d(ext)))", L"01/09/2003"},
        {L"(createdate(d+h))", AsText(creation)}};
    for (const auto& [parameters, text] : rows)
        EXPECT_EQ(InBoth([&] { return Shown(path, parameters); }), text) << CStringA(parameters);
    for (const wchar_t* parameters : {L"(size)", L"(createdate)", L"(lastwritedate(d))"})
        EXPECT_EQ(Shown(folder.Path("missing.png"), parameters), CString(L"failed"));
    // The shell has its own way of writing what it has no name for.
    EXPECT_GE(Shown(L"C:\\tmp\\x.vakraw", L"(kind(ext))").MakeLower().Find(L"vakraw file"), 0);
}

TEST(TagParameters, ApplyFromTheOutermostInUpToTheFirstUnknown)
{
    // One ")" for two "("; a second pair that holds "ext)"; an empty name; parentheses that have crossed.
    for (const wchar_t* chain : {L"ab(name)cd", L"(name(d(bogus(ext))))", L"(name(ext)", L"(name(ext)))"})
        EXPECT_EQ(Shown(L"C:\\a.b\\c.d", chain), CString(L"c.d")) << CStringA(chain);
    for (const wchar_t* chain : {L"((ext))", L"(ext)(name)", L"ext)(ext", L"(Ext)", L"ext", L"()"})
        EXPECT_EQ(Shown(L"c.d", chain), CString(L"c.d")) << CStringA(chain);
    EXPECT_EQ(Shown(L"missing", L"(name(size(name)))"), CString(L"failed"));
}

TEST(TagParameters, TakeLinearTimeHoweverDeepTheyNest)
{
    constexpr int kDepth = 1000000; // quadratic work would take hours
    for (const wchar_t* level : {L"(name", L"(", L")", L")(", L"()"}) {
        CString chain;
        for (int i = 0; i < kDepth; ++i)
            chain += level;
        EXPECT_EQ(Shown(L"a.b", chain + CString(L')', kDepth)), CString(L"a.b"));
    }
}

TEST(TagParameters, AreFoundByTheirNamesAndHaveTextsInBothLanguages)
{
    for (const vak::detail::TagParameter& row : vak::detail::TagParameters()) {
        EXPECT_EQ(vak::detail::FindTagParameter(row.name), &row);
        EXPECT_FALSE(LoadedText(row.friendlyNameId).IsEmpty());
    }
    EXPECT_EQ(InBoth([] { return LoadedText(vak::detail::TagParameters().back().friendlyNameId); }),
              CString(L"Date et heure (format : Lundi 1er Septembre 2003 10:00) | "
                      L"Date and time (format: Monday 2 September 2003 10:00)"));
}
