#include "tags/detail/TagMenu.h"

#include "tests/support/Print.h"
#include "tests/support/TagTexts.h"

#include <gtest/gtest.h>

using namespace vak::detail;
using vak::test::InBoth;

namespace {

TagMenuEntry Entry(const CString& className, const wchar_t* name, const wchar_t* friendlyName,
                   unsigned int flags = TAGDATA_TEXT)
{
    CTagInfo tag;
    tag.m_tagName = name;
    tag.m_flags = flags;
    tag.m_dataType = vak::TagKind(flags);
    tag.SetFriendlyName(friendlyName);
    return {className, tag};
}

/// The menu on one line: "text=tag", "text{...}" for a menu of its own, "-" for a line.
CString Outline(const TagMenu& menu, const TagMenuItem& parent)
{
    CString outline;
    for (const TagMenuItem& item : parent.items) {
        outline += outline.IsEmpty() ? L"" : L"; ";
        if (item.IsSeparator())
            outline += L"-";
        else if (item.command != 0)
            outline += item.text + L"=" + menu.TagOf(item.command);
        else
            outline += item.text + L"{" + Outline(menu, item) + L"}";
    }
    return outline;
}

CString Outline(const TagMenuEntries& entries, unsigned int flags = 0)
{
    const TagMenu menu = MakeTagMenu(entries, flags);
    return Outline(menu, menu.root);
}

} // namespace

TEST(TagMenu, NestsClassesAndSortsWithoutRegardToCase)
{
    EXPECT_EQ(Outline({Entry(L"Mesh//Size", L"<z>", L"height"), Entry(L"", L"<top>", L"Lone"),
                       Entry(L"Mesh", L"<b>", L"beta"), Entry(L"Mesh", L"<a>", L"Alpha"),
                       Entry(L"Mesh//Size", L"<y>", L"Depth"), Entry(L"File//", L"<f>", L"")}),
              L"File{<f>=<f>}; Lone=<top>; Mesh{Alpha=<a>; beta=<b>; Size{Depth=<y>; height=<z>}}");
    EXPECT_EQ(Outline({Entry(L"a//b//c//d//e//f//g//h//i//j//k//l//m//n//o//p//q//r", L"<t>", L"t")}),
              L"a{b{c{d{e{f{g{h{i{j{k{l{m{n{o{p//q//r{t=<t>}}}}}}}}}}}}}}}}");
}

TEST(TagMenu, OffersTheParametersThatApply)
{
    const auto outline = [](unsigned int tagFlags, unsigned int menuFlags) {
        return InBoth([&] { return Outline({Entry(L"", L"<t>", L"T", tagFlags)}, menuFlags); });
    };
    const CString dates = outline(TAGDATA_DATE, 0);
    EXPECT_GE(dates.Find(L"T{Date (format : 01/09/2003)=<t(d)>; "), 0);
    EXPECT_EQ(outline(TAGDATA_DATE | 0x4000000, 0), dates);
    EXPECT_EQ(outline(TAGDATA_DATE | 0x4000000, vak::tagmenu::Restricted), L"T=<t>");
    EXPECT_EQ(outline(TAGDATA_DATE | 0x2000000, 0), L"T=<t>");
    EXPECT_EQ(outline(TAGDATA_TEXT, 0), L"T=<t>");
    EXPECT_GE(outline(TAGDATA_FILENAME, 0).Find(L"Kind of file (jpg file)=<t(kind)>; "), 0);
    EXPECT_LT(outline(TAGDATA_FILENAME, vak::tagmenu::Restricted).Find(L"(kind)"), 0) << "cannot be compared";
}

TEST(TagMenu, AddsTheEntriesThatStandForNoSingleTag)
{
    EXPECT_EQ(InBoth([] { return Outline({Entry(L"", L"<t>", L"t")}, 0x6); }),
              L"Aucun critère=; -; t=<t>; -; Ajouter toutes les balises=<alltags>; "
              L"Ajouter toutes les balises réimportables=<allwritabletags> | "
              L"No criteria=; -; t=<t>; -; Add all tags=<alltags>; "
              L"Add all tags that can be reimported=<allwritabletags>");
    EXPECT_EQ(TagMenuText(L"a & b\tc"), L"a && b c");
}
