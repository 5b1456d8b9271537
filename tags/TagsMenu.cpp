#include "framework/ui/Menu.h"
#include "tags/Tags.h"
#include "tags/detail/TagMenu.h"

namespace detail = vak::detail;
namespace tagmenu = vak::tagmenu;

namespace {

/// Puts the items into `menu`; false when the system has no room for them.
bool Fill(CMenu& menu, const detail::TagMenuItem::Items& items)
{
    for (const detail::TagMenuItem& item : items) {
        const CString text = detail::TagMenuText(item.text);
        CMenu inside;
        BOOL isAdded = FALSE;
        if (item.IsSeparator())
            isAdded = menu.AppendMenu(MF_SEPARATOR);
        else if (item.items.empty())
            isAdded = menu.AppendMenu(MF_STRING, item.command, text);
        else if (inside.CreatePopupMenu() && Fill(inside, item.items))
            isAdded = menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(inside.GetSafeHmenu()), text);
        if (!isAdded)
            return false;
        inside.Detach();
    }
    return true;
}

unsigned int Track(const detail::TagMenuItem::Items& items, CPoint point)
{
    CMenu menu;
    if (items.empty() || !menu.CreatePopupMenu() || !Fill(menu, items))
        return 0;
    return static_cast<unsigned int>(
        menu.TrackPopupMenu(TPM_RETURNCMD | TPM_RIGHTBUTTON | TPM_NONOTIFY, point.x, point.y, nullptr));
}

} // namespace

CString CTags::DoPopupMenu(CPoint screenPoint, unsigned int menuFlags, const TagClasses* listed,
                           const TagClasses* leftOut, int* result) const
{
    const detail::TagMenu menu =
        detail::MakeTagMenu(detail::SelectMenuTags(*this, menuFlags, listed, leftOut), menuFlags);
    const unsigned int command = Track(menu.root.items, screenPoint);
    if (result && command == 0)
        *result = tagmenu::Cancelled;
    else if (result)
        *result = command == menu.noCriteria ? tagmenu::ChoseNoCriteria : tagmenu::ChoseTag;
    return menu.TagOf(command);
}
