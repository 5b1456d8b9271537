#pragma once

/// The values of fields as the text that the user reads and types. No windows here: controls that are not
/// text (check boxes, lists, sliders) come and go as the decimal number of their state.
///
/// Numbers are shown with the decimal mark of the current language of the texts and read with a point or a
/// comma, without marks between thousands.

#include "core/CustomData.h"
#include "dialogs/FieldBinding.h"

namespace vak::detail {

enum class FieldFault
{
    None,
    NotAnInteger,
    NotANumber,
    TooSmall,
    TooLarge,
    Empty,
    TooShort,
    TooLong,
    NoChoice,
    NotAColor,
};

/// The whole numbers that a field whose control counts in `int` takes.
struct IntRange
{
    int lowest;
    int highest;
};

unsigned int PropertyOf(const FieldBinding& field);
IntRange IntRangeOf(const FieldBinding& field);
CString DefaultText(const FieldBinding& field);
/// The value in the store, or the default where there is none or one that the field cannot show.
CString TextFromStore(const FieldBinding& field, const CCustomData& store);
FieldFault CheckText(const FieldBinding& field, const CString& text);
/// What is wrong, for the user, without the name of the field; empty for FieldFault::None.
CString FaultText(const FieldBinding& field, FieldFault fault);
/// Puts the value into the store; a text that CheckText refuses changes nothing. A colour keeps the fourth
/// byte of the one that the store has.
void StoreText(const FieldBinding& field, const CString& text, CCustomData& store);
/// Puts the default into the store, in full; a text that is outside its range is none.
void StoreDefault(const FieldBinding& field, CCustomData& store);

/// "#RRGGBB", with or without the mark, in either case. Returns false and leaves `color` alone for anything
/// else.
bool ParseColor(const CString& text, DWORD& color);
/// The text of a packed colour, red in the low byte; the top byte is not shown.
CString FormatColor(DWORD color);

} // namespace vak::detail
