#pragma once

#include "core/CustomData.h"

#include <vector>

/// One option of a format: a plug-in declares its options, the host shows them and writes the user's choice
/// into the parameters that the parser reads (`CFileIo::GetCustomData`) under `id`: booleans with `SetBool`,
/// integers with `SetInt`, floats with `SetFloat`.
struct FormatOption
{
    enum class Kind
    {
        Boolean,
        Integer,
        Float
    };

    const wchar_t* name;
    unsigned int id;
    Kind kind;
    double defaultValue;
    double minimum; ///< inclusive
    double maximum; ///< inclusive
    const wchar_t* description;
    /// What a dialog calls it, with "&" in front of its key; null: its name.
    const wchar_t* label = nullptr;
    /// What a dialog explains of it, in the language of the label; null: its description.
    const wchar_t* tip = nullptr;
};

using FormatOptions = std::vector<FormatOption>;

/// The option's value in `parameters`, its default where nothing suitable is stored; stored values are
/// brought into the option's range, since preferences come from disk.
inline double GetFormatOption(const CCustomData& parameters, const FormatOption& option)
{
    double value = option.defaultValue;
    int integer = 0;
    float number = 0.0f;
    if (option.kind == FormatOption::Kind::Boolean && parameters.GetBool(option.id, integer, 0))
        value = integer != 0;
    else if (option.kind == FormatOption::Kind::Integer && parameters.GetInt(option.id, integer, 0))
        value = integer;
    else if (option.kind == FormatOption::Kind::Float && parameters.GetFloat(option.id, number, 0.0f))
        value = static_cast<double>(number);
    if (!(value >= option.minimum))
        return option.minimum;
    return value > option.maximum ? option.maximum : value;
}

/// Stores a value of the option, which lies in its range.
inline void SetFormatOption(CCustomData& parameters, const FormatOption& option, double value)
{
    if (option.kind == FormatOption::Kind::Boolean)
        parameters.SetBool(option.id, value != 0);
    else if (option.kind == FormatOption::Kind::Integer)
        parameters.SetInt(option.id, static_cast<int>(value));
    else
        parameters.SetFloat(option.id, static_cast<float>(value));
}
