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
    CTags tags;
    tags.InsertTag(name, flags, 'DEMO', 1, CString(friendlyName), 0, nullptr, nullptr);
    TagMenuEntry entry{className, {}};
    tags.GetTagInfo(name, entry.tag);
    return entry;
}

/// The menu on one line: "text=tag", "text{...}" for a menu of its own, "-" for a line.
CString Outline(const TagMenu& menu, const TagMenuItem& parent)
{
    CString outline;
    for (const TagMenuItem& item : parent.items) {
        outline += (outline.IsEmpty() ? L"" : L"; ") + item.text;
        if (item.command != 0)
            outline += L"=" + menu.TagOf(item.command);
        else
            outline += item.IsSeparator() ? L"-" : L"{" + Outline(menu, item) + L"}";
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
    const auto outline = [](unsigned int tagFlags, unsigned int menuFlags = 0) {
        return Outline({Entry(L"", L"<t>", L"T", tagFlags), Entry(L"T", L"<u>", L"u")}, menuFlags);
    };
    const CString dates = outline(TAGDATA_DATE);
    EXPECT_GE(dates.Find(L"T{Date (format : 01/09/2003)=<t(d)>; "), 0);
    EXPECT_GE(dates.Find(L"}; T{u=<u>}"), 0) << "a class is no tag of that name";
    EXPECT_EQ(outline(TAGDATA_DATE | 0x4000000), dates);
    EXPECT_EQ(outline(TAGDATA_DATE | 0x4000000, vak::tagmenu::Restricted), L"T=<t>; T{u=<u>}");
    EXPECT_EQ(outline(TAGDATA_DATE | 0x2000000), L"T=<t>; T{u=<u>}");
    EXPECT_GE(outline(TAGDATA_FILENAME).Find(L"Type du fichier (jpg file)=<t(kind)>}"), 0);
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
