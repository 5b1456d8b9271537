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

bool IsIn(const CTags::TagClasses* classes, const CTagInfo& tag)
{
    return classes && classes->IsFound(tag.GetTagClass());
}

/// Makes the items of one menu.
class Builder
{
public:
    explicit Builder(unsigned int flags) : m_flags(flags) {}

    void Add(TagMenuEntries entries);
    TagMenu Finish();

private:
    bool IsRestricted() const { return (m_flags & tagmenu::Restricted) != 0; }
    bool HasParameters(const CTagInfo& tag) const;
    TagMenuItem CommandItem(const CString& text, const CString& tag);
    TagMenuItem ItemOf(const CTagInfo& tag);
    static TagMenuItem& MenuAt(TagMenuItem& root, CString path);

    unsigned int m_flags;
    TagMenu m_menu;
};

bool Builder::HasParameters(const CTagInfo& tag) const
{
    const unsigned int barred = kTagNoParameters | (IsRestricted() ? kTagNoParametersRestricted : 0);
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
        if (parameter.appliesTo != tag.GetTagDataType() || (IsRestricted() && !parameter.IsComparable()))
            continue;
        CString text = TextOf(parameter.friendlyNameId);
        if (parameter.exampleId != 0)
            text += L" " + TextOf(parameter.exampleId);
        item.items.push_back(CommandItem(text, opened + parameter.name + L")>"));
    }
    if (item.items.empty())
        return CommandItem(item.text, name);
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
        const auto known = std::find_if(menu->items.begin(), menu->items.end(),
                                        [&](const auto& item) { return item.isClass && item.text == text; });
        menu =
            known != menu->items.end() ? &*known : &menu->items.emplace_back(TagMenuItem{text, 0, {}, true});
    }
    return *menu;
}

void Builder::Add(TagMenuEntries entries)
{
    // By class, so that each menu is looked up once; by name, so that commands do not depend on a table's
    // order.
    std::sort(entries.begin(), entries.end(), [](const TagMenuEntry& a, const TagMenuEntry& b) {
        const int order = a.className.Compare(b.className);
        return order != 0 ? order < 0 : a.tag.m_tagName.Compare(b.tag.m_tagName) < 0;
    });
    TagMenuItem* menu = nullptr;
    const CString* className = nullptr;
    for (const TagMenuEntry& entry : entries) {
        if (!className || *className != entry.className)
            menu = &MenuAt(m_menu.root, entry.className);
        className = &entry.className;
        menu->items.push_back(ItemOf(entry.tag));
    }
}

void SortMenus(TagMenuItem& menu)
{
    std::stable_sort(menu.items.begin(), menu.items.end(), &ComesBefore);
    for (TagMenuItem& item : menu.items)
        SortMenus(item);
}

TagMenu Builder::Finish()
{
    auto& items = m_menu.root.items;
    SortMenus(m_menu.root);
    const TagMenuItem line;
    if (m_flags & tagmenu::NoCriteria) {
        if (!items.empty())
            items.insert(items.begin(), line);
        items.insert(items.begin(), CommandItem(TextOf(IDS_TAG_NO_CRITERIA), {}));
        m_menu.noCriteria = items.front().command;
    }
    if (m_flags & tagmenu::AllTags) {
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

TagMenuEntries SelectMenuTags(const CTags& tags, unsigned int menuFlags, const CTags::TagClasses* listed,
                              const CTags::TagClasses* leftOut)
{
    const unsigned int barred = menuFlags & tagmenu::Restricted ? kTagNotComparable : 0;
    TagMenuEntries selected;
    CString name;
    CTagInfo tag;
    for (POSITION position = tags.GetFirstTag(); position;) {
        tags.GetNextTag(position, name, tag);
        const bool isWanted = (!listed || IsIn(listed, tag)) && !IsIn(leftOut, tag);
        if (isWanted && (tag.GetTagFlags() & barred) == 0)
            selected.push_back({tag.GetClassName(), tag});
    }
    return selected;
}

TagMenu MakeTagMenu(TagMenuEntries entries, unsigned int menuFlags)
{
    Builder builder(menuFlags);
    builder.Add(std::move(entries));
    return builder.Finish();
}

CString TagMenuText(const CString& text)
{
    CString shown(text);
    shown.Replace(L"&", L"&&");
    shown.Replace(L'\t', L' ');
    return shown;
}

} // namespace vak::detail
