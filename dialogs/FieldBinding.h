#pragma once

/// What ties one control of a dialog to one value of a property store.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

#include <limits>

namespace vak {

/// What a field is: the control that shows it and the kind of value that the store holds. Numbers, texts and
/// colours may be in any control whose text is the value: an edit control, a combo box with one, a static.
/// A colour is packed, red in the low byte; what the byte above blue holds, as the alpha of a CRGBColor,
/// stays.
enum class FieldKind
{
    Int,        ///< a decimal number, SetInt
    UInt,       ///< the same, SetUInt
    LongLong,   ///< the same, SetLongLong
    ULongLong,  ///< the same, SetULongLong
    Bool,       ///< a check box, SetBool with 0, 1 or (undetermined) 2
    Float,      ///< a number with decimals, SetFloat
    Double,     ///< the same, SetDouble
    Text,       ///< a text, SetString; a combo box without an edit control selects the item of that text
    ComboIndex, ///< the selected item of a combo box, SetInt; -1 for none
    ListIndex,  ///< the selected item of a list box with one selection, SetInt; -1 for none
    RadioIndex, ///< the checked button of the group that begins with the control, SetInt; -1 for none
    Slider,     ///< the position of a slider, SetInt
    Spin,       ///< the position of an up-down control with its buddy, SetInt
    Color,      ///< "#RRGGBB" in an edit control, or a button that opens the chooser; SetUInt
};

/// One row of a dialog's table. Rows read best with designated initialisers:
///
///     {.control = IDC_QUALITY, .property = 'QUAL', .kind = vak::FieldKind::Int, .minimum = 0, .maximum =
///     100}
struct FieldBinding
{
    // Every member has an initialiser: rows that leave some out shall compile without warnings.
    int control = 0;
    /// 0: the number of the control.
    unsigned int property = 0;
    FieldKind kind = FieldKind::Int;
    /// The range that what the user enters must lie in, both ends included; the infinities leave that end to
    /// the type. Of a text: its length in UTF-16 units. Of an index: 0 for `minimum` demands a choice. Of a
    /// slider or up-down control: the range of the control, which stays the template's unless both ends are
    /// given. Check boxes and colours have none.
    double minimum = -std::numeric_limits<double>::infinity();
    double maximum = std::numeric_limits<double>::infinity();
    /// Digits behind the decimal mark of Float and Double, 0 to 15; -1: as many as tell the value.
    int decimals = -1;
    /// What messages call the field; empty: the text of the static control or group box in front of it.
    CString label{};
    /// What is shown, and saved, while the store has no value: `number` (moved into the range, a colour
    /// packed with red in the low byte) of all kinds but Text.
    double number = 0;
    CString text{};
};

} // namespace vak
