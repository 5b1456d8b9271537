#pragma once

#include "framework/base/StringTable.h"
#include "tags/TagValue.h"

namespace vak::test {

/// What a text is as a value of that kind; empty when it is none.
inline CTagValue Read(_TAGDATA_INFO kind, const CString& text)
{
    CTagValue value;
    value.SetText(text);
    return value.HandleParametersAndConvertToType(kind, L"") != 0 ? value : CTagValue();
}

/// The value as text, refined by parameters; "failed" when it has none.
inline CString AsText(CTagValue value, const CString& parameters = {})
{
    return value.HandleParametersAndConvertToType(TAGDATA_TEXT, parameters) != 0 ? value.GetText()
                                                                                 : L"failed";
}

/// What `write` gives in French and in English; once where that is the same.
template <class Write>
CString InBoth(Write write)
{
    vak::SetTextLanguage(1033);
    const CString english = write();
    vak::SetTextLanguage(vak::kDefaultTextLanguage);
    const CString french = write();
    return french == english ? french : french + L" | " + english;
}

} // namespace vak::test
