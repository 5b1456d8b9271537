#include "tags/detail/TagMenu.h"

#include "framework/base/StringTable.h"
#include "resources/Ids.h"
#include "tags/detail/TagParameterTable.h"

#include <algorithm>
#include <utility>

namespace vak::detail {

namespace {

constexpr wchar_t kNesting[] = L"//";
constexpr int kNestingLength = 2;

CString TextOf(UINT id)
{
    CString text;
    LoadText(text, id);
    return text;
}

bool ComesBefore(const TagMenuItem& a, const TagMenuItem& b)
{
    const int order = a.text.CompareNoCase(b.text);
    return order != 0 ? order < 0 : a.text.Compare(b.text) < 0;
}

/// Makes the items of one menu.
class Builder
{
public:
    Builder(unsigned int flags, const CTags::TagClasses* listed, const CTags::TagClasses* leftOut)
        : m_isRestricted((flags & tagmenu::Restricted) != 0), m_listed(listed), m_leftOut(leftOut)
    {
    }

    void AddTags(const CTags& tags);
    TagMenu Finish(unsigned int flags);

private:
    /// A tag on its way into the menu of its class.
    struct Placed
    {
        CString path;
        CTagInfo tag;
    };

    bool IsWanted(const CTagInfo& tag) const;
    bool HasParameters(const CTagInfo& tag) const;
    TagMenuItem CommandItem(const CString& text, const CString& tag);
    TagMenuItem ItemOf(const CTagInfo& tag);
    static TagMenuItem& MenuAt(TagMenuItem& root, CString path);

    bool m_isRestricted;
    const CTags::TagClasses* m_listed;
    const CTags::TagClasses* m_leftOut;
    TagMenu m_menu;
};

bool Builder::IsWanted(const CTagInfo& tag) const
{
    const unsigned int tagClass = tag.GetTagClass();
    if (m_leftOut && m_leftOut->IsFound(tagClass))
        return false;
    if (m_listed && !m_listed->IsFound(tagClass))
        return false;
    return !m_isRestricted || (tag.GetTagFlags() & kTagNotComparable) == 0;
}

bool Builder::HasParameters(const CTagInfo& tag) const
{
    const unsigned int barred = kTagNoParameters | (m_isRestricted ? kTagNoParametersRestricted : 0);
    return (tag.GetTagFlags() & barred) == 0;
}

TagMenuItem Builder::CommandItem(const CString& text, const CString& tag)
{
    m_menu.tags.push_back(tag);
    return {text, static_cast<unsigned int>(m_menu.tags.size()), {}};
}

TagMenuItem Builder::ItemOf(const CTagInfo& tag)
{
    const CString name = tag.GetTagName();
    TagMenuItem item{tag.GetTagFriendlyName(), 0, {}};
    if (item.text.IsEmpty())
        item.text = name;
    if (!HasParameters(tag))
        return CommandItem(item.text, name);
    const CString opened = name.Left(name.GetLength() - 1) + L"(";
    for (const TagParameter& parameter : TagParameters()) {
        if (parameter.appliesTo != tag.GetTagDataType() || (m_isRestricted && !parameter.IsComparable()))
            continue;
        CString text = TextOf(parameter.friendlyNameId);
        if (parameter.exampleId != 0)
            text += L" " + TextOf(parameter.exampleId);
        item.items.push_back(CommandItem(text, opened + parameter.name + L")>"));
    }
    if (item.items.empty())
        return CommandItem(item.text, name);
    std::stable_sort(item.items.begin(), item.items.end(), &ComesBefore);
    return item;
}

/// The menu that a class name names inside `root`, made where it is missing.
TagMenuItem& Builder::MenuAt(TagMenuItem& root, CString path)
{
    TagMenuItem* menu = &root;
    for (int depth = 1; !path.IsEmpty(); ++depth) {
        const int end = depth < kDeepestTagMenu ? path.Find(kNesting) : -1;
        const CString text = end < 0 ? path : path.Left(end);
        path = end < 0 ? CString() : path.Mid(end + kNestingLength);
        if (text.IsEmpty())
            continue;
        const auto known = std::find_if(menu->items.begin(), menu->items.end(), [&](const auto& item) {
            return item.command == 0 && item.text == text;
        });
        menu = known != menu->items.end() ? &*known : &menu->items.emplace_back(TagMenuItem{text, 0, {}});
    }
    return *menu;
}

void Builder::AddTags(const CTags& tags)
{
    std::vector<Placed> placed;
    CString name;
    CTagInfo tag;
    for (POSITION position = tags.GetFirstTag(); position;) {
        tags.GetNextTag(position, name, tag);
        if (IsWanted(tag))
            placed.push_back({tag.GetClassName(), tag});
    }
    // By class, so that each menu is looked up once and commands do not depend on the table's order.
    std::sort(placed.begin(), placed.end(), [](const Placed& a, const Placed& b) {
        const int order = a.path.Compare(b.path);
        return order != 0 ? order < 0 : a.tag.m_tagName.Compare(b.tag.m_tagName) < 0;
    });
    for (auto first = placed.begin(); first != placed.end();) {
        const auto end =
            std::find_if(first, placed.end(), [&](const Placed& p) { return p.path != first->path; });
        std::vector<TagMenuItem> items;
        for (; first != end; ++first)
            items.push_back(ItemOf(first->tag));
        auto& into = MenuAt(m_menu.root, std::prev(end)->path).items;
        std::move(items.begin(), items.end(), std::back_inserter(into));
    }
}

/// Sorts the menus of classes, and what they hold, but not those of parameters, which are sorted.
void SortMenus(TagMenuItem& menu)
{
    std::stable_sort(menu.items.begin(), menu.items.end(), &ComesBefore);
    for (TagMenuItem& item : menu.items)
        SortMenus(item);
}

TagMenu Builder::Finish(unsigned int flags)
{
    auto& items = m_menu.root.items;
    SortMenus(m_menu.root);
    const TagMenuItem line;
    if (flags & tagmenu::NoCriteria) {
        if (!items.empty())
            items.insert(items.begin(), line);
        items.insert(items.begin(), CommandItem(TextOf(IDS_TAG_NO_CRITERIA), {}));
        m_menu.noCriteria = items.front().command;
    }
    if (flags & tagmenu::AllTags) {
        if (!items.empty())
            items.push_back(line);
        items.push_back(CommandItem(TextOf(IDS_TAG_ALL), L"<alltags>"));
        items.push_back(CommandItem(TextOf(IDS_TAG_ALL_WRITABLE), L"<allwritabletags>"));
    }
    return std::move(m_menu);
}

} // namespace

CString TagMenu::TagOf(unsigned int command) const
{
    return command == 0 || command > tags.size() ? CString() : tags[command - 1];
}

TagMenu MakeTagMenu(const CTags& tags, unsigned int menuFlags, const CTags::TagClasses* listed,
                    const CTags::TagClasses* leftOut)
{
    Builder builder(menuFlags, listed, leftOut);
    builder.AddTags(tags);
    return builder.Finish(menuFlags);
}

CString TagMenuText(const CString& text)
{
    CString shown(text);
    shown.Replace(L"&", L"&&");
    shown.Replace(L'\t', L' ');
    return shown;
}

} // namespace vak::detail
