#include "tags/detail/TagMenu.h"

#include "framework/base/StringTable.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <set>

using vak::detail::MakeTagMenu;
using vak::detail::SelectMenuTags;
using vak::detail::TagMenu;
using vak::detail::TagMenuEntry;
using vak::detail::TagMenuItem;
namespace tagmenu = vak::tagmenu;

namespace {

TagMenuEntry Entry(const wchar_t* className, const wchar_t* name, const wchar_t* friendlyName,
                   unsigned int flags = TAGDATA_TEXT)
{
    CTagInfo tag;
    tag.m_tagName = name;
    tag.m_flags = flags;
    tag.m_dataType = vak::TagKind(flags);
    tag.SetFriendlyName(friendlyName);
    return {className, tag};
}

/// The menu on one line: "text=tag", "text{...}" for a menu of its own, "-" for a line; commands are noted.
CString Outline(const TagMenu& menu, const std::vector<TagMenuItem>& items, std::set<unsigned int>& commands)
{
    CString outline;
    for (const TagMenuItem& item : items) {
        if (!outline.IsEmpty())
            outline += L"; ";
        if (item.IsSeparator())
            outline += L"-";
        else if (item.command == 0)
            outline += item.text + L"{" + Outline(menu, item.items, commands) + L"}";
        else
            outline += item.text + L"=" + menu.TagOf(item.command);
        const bool isNew = item.command == 0 || commands.insert(item.command).second;
        EXPECT_TRUE(isNew) << "a command of two items";
    }
    return outline;
}

CString Outline(const TagMenu& menu)
{
    std::set<unsigned int> commands;
    return Outline(menu, menu.root.items, commands);
}

class TagMenuModel : public testing::Test
{
protected:
    void SetUp() override { vak::SetTextLanguage(1033); }
    void TearDown() override { vak::SetTextLanguage(vak::kDefaultTextLanguage); }
};

} // namespace

TEST_F(TagMenuModel, NestsClassesAndSortsWithoutRegardToCase)
{
    const TagMenu menu = MakeTagMenu({Entry(L"Mesh//Size", L"<z>", L"height"), Entry(L"", L"<top>", L"Lone"),
                                      Entry(L"Mesh", L"<b>", L"beta"), Entry(L"Mesh", L"<a>", L"Alpha"),
                                      Entry(L"Mesh//Size", L"<y>", L"Depth"), Entry(L"File//", L"<f>", L""),
                                      Entry(L"Mesh//Size//Units", L"<u>", L"mm")},
                                     0);
    EXPECT_EQ(Outline(menu), L"File{<f>=<f>}; Lone=<top>; "
                             L"Mesh{Alpha=<a>; beta=<b>; Size{Depth=<y>; height=<z>; Units{mm=<u>}}}");
    EXPECT_EQ(menu.TagOf(0), L"");
    EXPECT_EQ(menu.TagOf(100), L"");
}

TEST_F(TagMenuModel, NestsOnlySoDeep)
{
    CString className;
    for (int i = 0; i < 100'000; ++i)
        className += L"a//";
    const TagMenu menu = MakeTagMenu({Entry(className, L"<t>", L"tag")}, 0);
    int depth = 0;
    for (const TagMenuItem* item = &menu.root; !item->items.empty(); item = &item->items.front())
        ++depth;
    EXPECT_EQ(depth, vak::detail::kDeepestTagMenu + 1);
}

TEST_F(TagMenuModel, OffersTheParametersThatApply)
{
    const auto outline = [](unsigned int tagFlags, unsigned int menuFlags) {
        return Outline(MakeTagMenu({Entry(L"", L"<t>", L"T", tagFlags)}, menuFlags));
    };
    const CString dates =
        L"T{Date (format: 01/09/2003)=<t(d)>; Date (format: Monday 2 September 2003)=<t(d+t)>; "
        L"Date and time (format: 01/09/2003 10:00)=<t(d+h)>; "
        L"Date and time (format: Monday 2 September 2003 10:00)=<t(d+h+t)>; "
        L"Time (format: 10:00)=<t(h)>}";
    EXPECT_EQ(outline(TAGDATA_DATE, 0), dates);
    EXPECT_EQ(outline(TAGDATA_DATE | 0x2000000, 0), L"T=<t>");
    EXPECT_EQ(outline(TAGDATA_DATE | 0x4000000, 0), dates);
    EXPECT_EQ(outline(TAGDATA_DATE | 0x4000000, tagmenu::Restricted), L"T=<t>");
    EXPECT_EQ(outline(TAGDATA_TEXT, 0), L"T=<t>");
    const CString file = outline(TAGDATA_FILENAME, 0);
    EXPECT_GE(file.Find(L"Extension (.jpg)=<t(ext)>; File directory name (tmp)=<t(topdir)>"), 0);
    EXPECT_GE(file.Find(L"Kind of file (jpg file)=<t(kind)>"), 0);
    EXPECT_LT(outline(TAGDATA_FILENAME, tagmenu::Restricted).Find(L"<t(kind)>"), 0) << "cannot be compared";
}

TEST_F(TagMenuModel, ChoosesTagsByClassAndMode)
{
    CTags tags;
    tags.InsertTag(L"<one>", TAGDATA_TEXT, 1, 1, CString(L"one"), 0, nullptr, nullptr);
    tags.InsertTag(L"<two>", TAGDATA_TEXT, 2, 1, CString(L"two"), 0, nullptr, nullptr);
    tags.InsertTag(L"<not>", TAGDATA_TEXT | 0x1000000, 2, 2, CString(L"not"), 0, nullptr, nullptr);
    CTags::TagClasses first;
    first.Insert(1);
    CTags::TagClasses none;
    const auto outline = [&](unsigned int flags, const CTags::TagClasses* listed,
                             const CTags::TagClasses* leftOut) {
        return Outline(MakeTagMenu(SelectMenuTags(tags, flags, listed, leftOut), flags));
    };
    EXPECT_EQ(outline(0, nullptr, nullptr), L"not=<not>; one=<one>; two=<two>");
    EXPECT_EQ(outline(tagmenu::Restricted, nullptr, &none), L"one=<one>; two=<two>");
    EXPECT_EQ(outline(0, nullptr, &first), L"not=<not>; two=<two>");
    EXPECT_EQ(outline(0, &first, nullptr), L"one=<one>");
    EXPECT_EQ(outline(0, &first, &first), L"");
    EXPECT_EQ(outline(0, &none, nullptr), L"");
}

TEST_F(TagMenuModel, AddsTheEntriesThatStandForNoSingleTag)
{
    constexpr unsigned int kBoth = tagmenu::NoCriteria | tagmenu::AllTags;
    const TagMenu menu = MakeTagMenu({Entry(L"", L"<t>", L"a & b\tc")}, kBoth);
    EXPECT_EQ(Outline(menu), L"No criteria=; -; a & b\tc=<t>; -; Add all tags=<alltags>; "
                             L"Add all tags that can be reimported=<allwritabletags>");
    EXPECT_EQ(menu.root.items.front().command, menu.noCriteria);
    EXPECT_EQ(MakeTagMenu({}, 0).noCriteria, 0u);
    vak::SetTextLanguage(1036);
    EXPECT_EQ(Outline(MakeTagMenu({}, kBoth)), L"Aucun critère=; -; Ajouter toutes les balises=<alltags>; "
                                               L"Ajouter toutes les balises réimportables=<allwritabletags>");
    EXPECT_EQ(vak::detail::TagMenuText(L"a & b\tc"), L"a && b c");
}
