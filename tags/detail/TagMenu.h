#pragma once

/// The insert-tag menu as plain data: which items it has, in which order, and which tag string each stands
/// for. Showing it is left to the platform.

#include "framework/base/detail/Allocator.h"
#include "tags/Tags.h"

#include <vector>

namespace vak::detail {

/// More items than any menu shows; the allocator cannot take the size of an item that is being defined.
constexpr std::size_t kMostTagMenuItems = 1'000'000;

/// An item of a menu: a command, a menu of its own, or, having neither, a separating line.
struct TagMenuItem
{
    using Items = std::vector<TagMenuItem, Allocator<TagMenuItem, kMostTagMenuItems>>;

    CString text;
    unsigned int command = 0;
    Items items;
    bool isClass = false; ///< a menu of tags, not of the parameters of one

    bool IsSeparator() const { return command == 0 && items.empty(); }
};

/// The whole menu. Commands count from 1, each belongs to one item.
struct TagMenu
{
    /// The command of "No criteria", which stands for no tag; 0 when it is not offered.
    unsigned int noCriteria = 0;
    TagMenuItem root;
    /// The tag strings of the commands, in their order.
    std::vector<CString, Allocator<CString>> tags;

    /// Empty for no command.
    VAK_INTERNAL_API CString TagOf(unsigned int command) const;
};

/// Class names nest menus at each "//", this many at most; what is deeper stays in the innermost name.
constexpr int kDeepestTagMenu = 16;

/// A tag and the name of its class.
struct TagMenuEntry
{
    CString className;
    CTagInfo tag;
};

using TagMenuEntries = std::vector<TagMenuEntry, Allocator<TagMenuEntry>>;

/// The tags that the menu has; arguments as for CTags::DoPopupMenu. Class names are in the current language.
VAK_INTERNAL_API TagMenuEntries SelectMenuTags(const CTags& tags, unsigned int menuFlags,
                                               const CTags::TagClasses* listed,
                                               const CTags::TagClasses* leftOut);

/// Makes the menu of these tags. Menus and tags stand sorted within one another, without regard to case.
VAK_INTERNAL_API TagMenu MakeTagMenu(TagMenuEntries entries, unsigned int menuFlags);

/// The text as a menu takes it: an ampersand underlines no letter, a tab begins no column of keys.
VAK_INTERNAL_API CString TagMenuText(const CString& text);

} // namespace vak::detail
