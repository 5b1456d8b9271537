#include "dialogs/detail/FieldControl.h"

#include "dialogs/detail/FieldText.h"
#include "framework/ui/detail/TrackControls.h"

#include <cmath>

namespace vak::detail {

namespace {

LONG_PTR StyleOf(HWND window)
{
    return GetWindowLongPtr(window, GWL_STYLE);
}

bool IsOfClass(HWND window, LPCTSTR name)
{
    wchar_t found[32] = {};
    GetClassNameW(window, found, 32);
    return CString(found).CompareNoCase(name) == 0;
}

bool IsCombo(HWND window)
{
    return IsOfClass(window, L"ComboBox");
}

CString WindowText(HWND window)
{
    const int length = GetWindowTextLengthW(window);
    CString text;
    const int copied = GetWindowTextW(window, text.GetBuffer(length), length + 1);
    text.ReleaseBuffer(copied);
    return text;
}

CString NumberText(LRESULT number)
{
    CString text;
    text.Format(L"%d", static_cast<int>(number));
    return text;
}

/// The number that NumberText or FieldText wrote.
int NumberOf(const CString& text)
{
    int number = 0;
    const bool isNegative = text[0] == L'-';
    for (int i = isNegative; i < text.GetLength(); ++i)
        number = number * 10 - (text[i] - L'0');
    return isNegative ? number : -number;
}

bool IsGroupBox(HWND window)
{
    return IsOfClass(window, L"Button") && (StyleOf(window) & BS_TYPEMASK) == BS_GROUPBOX;
}

bool IsRadioButton(HWND window)
{
    const LONG_PTR type = StyleOf(window) & BS_TYPEMASK;
    return IsOfClass(window, L"Button") && (type == BS_RADIOBUTTON || type == BS_AUTORADIOBUTTON);
}

/// The next radio button of the group of `button`, or null.
HWND NextInGroup(HWND button)
{
    HWND next = GetWindow(button, GW_HWNDNEXT);
    while (next && !(StyleOf(next) & WS_GROUP)) {
        if (IsRadioButton(next))
            return next;
        next = GetWindow(next, GW_HWNDNEXT);
    }
    return nullptr;
}

int CheckedInGroup(HWND first)
{
    int index = 0;
    for (HWND button = first; button; button = NextInGroup(button), ++index)
        if (SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED)
            return index;
    return -1;
}

/// The system lets the tab key stop at checked buttons only. Not at a page's first control: a button may
/// check itself when it gets the focus, which then nobody has asked for.
void LetTabStopAt(HWND button)
{
    const LONG_PTR style = StyleOf(button);
    SetWindowLongPtr(button, GWL_STYLE, style | WS_TABSTOP);
    if (GetNextDlgTabItem(GetParent(button), nullptr, FALSE) == button)
        SetWindowLongPtr(button, GWL_STYLE, style);
}

void CheckInGroup(HWND first, int wanted)
{
    int index = 0;
    for (HWND button = first; button; button = NextInGroup(button), ++index)
        SendMessageW(button, BM_SETCHECK, index == wanted ? BST_CHECKED : BST_UNCHECKED, 0);
    if (wanted < 0 || wanted >= index)
        LetTabStopAt(first);
}

bool IsInGroup(HWND first, HWND wanted)
{
    HWND button = first;
    while (button && button != wanted)
        button = NextInGroup(button);
    return button != nullptr;
}

void CheckBox(HWND box, int state)
{
    const LONG_PTR type = StyleOf(box) & BS_TYPEMASK;
    if (state == BST_INDETERMINATE && type != BS_3STATE && type != BS_AUTO3STATE)
        state = BST_CHECKED;
    SendMessageW(box, BM_SETCHECK, static_cast<WPARAM>(state), 0);
}

/// A combo box without an edit control shows only what its list has.
void WriteText(HWND control, const CString& text)
{
    if (!IsCombo(control) || (StyleOf(control) & CBS_DROPDOWNLIST) != CBS_DROPDOWNLIST) {
        SetWindowTextW(control, text);
        return;
    }
    const LRESULT item = SendMessageW(control, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                      reinterpret_cast<LPARAM>(text.GetString()));
    SendMessageW(control, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
}

CString ReadSpin(HWND spin)
{
    int position = 0;
    // What is no position is for the user to mend: as it was typed.
    return SpinPosition(spin, position) ? NumberText(position) : WindowText(SpinBuddy(spin));
}

/// Where the user types: the control, or what stands in front of an up-down control.
HWND EntryOf(const FieldBinding& field, HWND control)
{
    const HWND buddy = field.kind == FieldKind::Spin ? SpinBuddy(control) : nullptr;
    return buddy ? buddy : control;
}

bool HasRange(const FieldBinding& field)
{
    return std::isfinite(field.minimum) && std::isfinite(field.maximum);
}

} // namespace

void PrepareControl(const FieldBinding& field, HWND control)
{
    if (!HasRange(field))
        return;
    const auto [lowest, highest] = IntRangeOf(field);
    if (field.kind == FieldKind::Slider)
        SetSliderRange(control, lowest, highest);
    else if (field.kind == FieldKind::Spin)
        SetSpinRange(control, lowest, highest);
}

void WriteControl(const FieldBinding& field, HWND control, const CString& text)
{
    switch (field.kind) {
    case FieldKind::Bool:
        return CheckBox(control, NumberOf(text));
    case FieldKind::ComboIndex:
        SendMessageW(control, CB_SETCURSEL, static_cast<WPARAM>(NumberOf(text)), 0);
        return;
    case FieldKind::ListIndex:
        // Unlike a combo box it keeps its selection when there is no such item.
        SendMessageW(control, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
        SendMessageW(control, LB_SETCURSEL, static_cast<WPARAM>(NumberOf(text)), 0);
        return;
    case FieldKind::RadioIndex:
        return CheckInGroup(control, NumberOf(text));
    case FieldKind::Slider:
        return SetSliderPosition(control, NumberOf(text));
    case FieldKind::Spin:
        return SetSpinPosition(control, NumberOf(text));
    default:
        return WriteText(control, text);
    }
}

CString ReadControl(const FieldBinding& field, HWND control)
{
    switch (field.kind) {
    case FieldKind::Bool:
        return NumberText(SendMessageW(control, BM_GETCHECK, 0, 0));
    case FieldKind::ComboIndex:
        return NumberText(SendMessageW(control, CB_GETCURSEL, 0, 0));
    case FieldKind::ListIndex:
        return NumberText(SendMessageW(control, LB_GETCURSEL, 0, 0));
    case FieldKind::RadioIndex:
        return NumberText(CheckedInGroup(control));
    case FieldKind::Slider:
        return NumberText(SliderPosition(control));
    case FieldKind::Spin:
        return ReadSpin(control);
    default:
        return WindowText(control);
    }
}

FieldBinding BindingOf(const FieldBinding& field, HWND control)
{
    FieldBinding bound(field);
    if (field.kind != FieldKind::Spin || HasRange(field))
        return bound;
    const auto [lowest, highest] = SpinRange(control);
    bound.minimum = lowest;
    bound.maximum = highest;
    return bound;
}

bool BelongsToField(const FieldBinding& field, HWND control, HWND window)
{
    if (!window || !control)
        return false;
    if (field.kind == FieldKind::RadioIndex)
        return IsInGroup(control, window);
    return window == control || (field.kind == FieldKind::Spin && SpinBuddy(control) == window);
}

bool IsChangeCode(FieldKind kind, UINT code)
{
    switch (kind) {
    case FieldKind::Bool:
    case FieldKind::RadioIndex:
        return code == BN_CLICKED;
    case FieldKind::ComboIndex:
        // Typing takes the selection away.
        return code == CBN_SELCHANGE || code == CBN_EDITCHANGE;
    case FieldKind::ListIndex:
        return code == LBN_SELCHANGE;
    case FieldKind::Slider:
        return false;
    case FieldKind::Spin:
        return code == EN_CHANGE;
    default:
        return code == EN_CHANGE || code == CBN_EDITCHANGE || code == CBN_SELCHANGE;
    }
}

void SelectControl(const FieldBinding& field, HWND control)
{
    const HWND target = EntryOf(field, control);
    SendMessageW(GetParent(target), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(target), TRUE);
    // A window that is no dialog has not listened.
    if (GetFocus() != target && !IsChild(target, GetFocus()))
        SetFocus(target);
    if (IsCombo(target))
        SendMessageW(target, CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
    else if (SendMessageW(target, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL)
        SendMessageW(target, EM_SETSEL, 0, -1);
}

CString LabelOf(const FieldBinding& field, HWND control)
{
    const HWND before = GetWindow(EntryOf(field, control), GW_HWNDPREV);
    if (!before || (!IsOfClass(before, L"Static") && !IsGroupBox(before)))
        return {};
    CString label = WindowText(before);
    label.Remove(L'&');
    return label.Trim().TrimRight(L':').TrimRight();
}

bool IsColorButton(const FieldBinding& field, HWND control)
{
    return field.kind == FieldKind::Color && IsOfClass(control, L"Button");
}

void DrawColorButton(const DRAWITEMSTRUCT& item)
{
    DWORD color = GetSysColor(COLOR_BTNFACE);
    ParseColor(WindowText(item.hwndItem), color);
    RECT area = item.rcItem;
    DrawEdge(item.hDC, &area, item.itemState & ODS_SELECTED ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT | BF_ADJUST);
    const COLORREF before = SetDCBrushColor(item.hDC, color);
    FillRect(item.hDC, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    SetDCBrushColor(item.hDC, before);
    if (!(item.itemState & ODS_FOCUS))
        return;
    InflateRect(&area, -2, -2);
    DrawFocusRect(item.hDC, &area);
}

} // namespace vak::detail
