#pragma once

#include "framework/base/String.h"

namespace vak::detail {

/// Takes a chain of parameters, one inside the parentheses of the other, apart from the outermost in:
/// "(lastwritedate(d))" is "lastwritedate", then "d".
///
/// The n-th parameter lies between the n-th "(" from the left and the n-th ")" from the right and ends at the
/// next "(", if that comes first; the chain ends where either parenthesis is missing. So whatever does not
/// nest is part of a name, and parentheses that have crossed hold an empty one. One pass over the text,
/// whatever it holds.
class VAK_INTERNAL_API ParameterChain
{
public:
    /// The text must stay as it is as long as the chain is in use.
    explicit ParameterChain(const CString& text);

    /// Puts the next parameter into `name`; false, and `name` as it was, behind the last.
    bool Next(CString& name);

private:
    const wchar_t* m_begin;
    const wchar_t* m_end;
    const wchar_t* m_open;  ///< the next "(", or the end
    const wchar_t* m_close; ///< where the search for the next ")", towards the beginning, begins
};

} // namespace vak::detail
