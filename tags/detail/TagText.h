#pragma once

/// The text of a tag, as it stands in a template ("< File ( Ext ) >"), and what the tables know it by: the
/// name "<file>" and the parameters "(ext)".
///
/// Name and parameters come out in lower case, unit by unit, and without blanks; a blank is U+0020 and
/// nothing else. Every other unit, zeros included, is part of the tag.

#include "framework/base/String.h"

#include <cstddef>

namespace vak::detail {

constexpr wchar_t kTagBlank = L' ';

/// The first "<" in the units from `first` up to `end`, or `end`.
const wchar_t* FindTagStart(const wchar_t* first, const wchar_t* end);
/// The first "<" or ">" in the units from `first` up to `end`, or `end`.
const wchar_t* FindTagBracket(const wchar_t* first, const wchar_t* end);

/// A name that is longer than any that is wanted.
constexpr std::size_t kTagTooLong = static_cast<std::size_t>(-1);

/// Reads the name out of the `length` units at `tag`: all of them, or, before a first "(", those and a ">".
/// Returns the index of that "(", `length` when there is none. Returns kTagTooLong, with `name` unspecified,
/// once the name is longer than `longest` units: the rest of the tag is then not looked at.
std::size_t ReadTagName(const wchar_t* tag, std::size_t length, std::size_t longest, CString& name);

/// Reads the parameters out of the units behind a tag's name: all up to the first ">", or to the end.
void ReadTagParameters(const wchar_t* text, std::size_t length, CString& parameters);

/// The name and the parameters of a whole tag; the parameters are empty when it has none.
VAK_INTERNAL_API void SplitTag(const CString& tag, CString& name, CString& parameters);

} // namespace vak::detail
