#pragma once

/// The controls of fields as text (see FieldText.h): what to put into them and what stands in them. Windows
/// only; every window is passed as it is and may be null or gone.

#include "dialogs/FieldBinding.h"

namespace vak::detail {

/// Gives a slider or an up-down control the range of its field.
void PrepareControl(const FieldBinding& field, HWND control);
void WriteControl(const FieldBinding& field, HWND control, const CString& text);
CString ReadControl(const FieldBinding& field, HWND control);
/// The field with the range that its control was given by others.
FieldBinding BindingOf(const FieldBinding& field, HWND control);
/// Whether `window` shows the field whose control is `control`: it, its buddy, or a button of its group.
bool BelongsToField(const FieldBinding& field, HWND control, HWND window);
/// Whether that notification code of a control of the kind says that its state has changed. True for more
/// than that in some controls: compare.
bool IsChangeCode(FieldKind kind, UINT code);
/// Gives the control the focus, through its dialog, and selects what stands in it.
void SelectControl(const FieldBinding& field, HWND control);
/// The text of the static control or group box in front of it, without its mnemonic and the colon; empty if
/// there is none.
CString LabelOf(const FieldBinding& field, HWND control);
/// Whether the field's control opens the chooser.
bool IsColorButton(const FieldBinding& field, HWND control);
/// Draws an owner-drawn button in the colour that is its text.
void DrawColorButton(const DRAWITEMSTRUCT& item);

} // namespace vak::detail
