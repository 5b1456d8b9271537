#pragma once

#include "framework/base/StringTable.h"
#include "tags/TagValue.h"

#include <string_view>

namespace vak::test {

/// A value that one of its setters has filled.
template <class Argument, class Data>
CTagValue With(void (CTagValue::*set)(Argument), const Data& data)
{
    CTagValue value;
    (value.*set)(data);
    return value;
}

inline CTagValue TextValue(const wchar_t* text)
{
    return With<LPCWSTR>(&CTagValue::SetText, text);
}

inline CTagValue BlockValue(std::string_view bytes)
{
    CTagValue value;
    value.SetCustomInfo(bytes.data(), static_cast<unsigned int>(bytes.size()));
    return value;
}

/// The value as text, refined by parameters; "failed" when it has none.
inline CString AsText(CTagValue value, const CString& parameters = {})
{
    const bool done = value.HandleParametersAndConvertToType(TAGDATA_TEXT, parameters) != 0;
    return done && value.GetDataType() == TAGDATA_TEXT ? value.GetText() : CString(L"failed");
}

/// What `write` gives in French and in English; once where that is the same.
template <class Write>
CString InBoth(Write write)
{
    const LANGID before = vak::TextLanguage();
    vak::SetTextLanguage(1036);
    const CString french = write();
    vak::SetTextLanguage(1033);
    const CString english = write();
    vak::SetTextLanguage(before);
    return french == english ? french : french + L" | " + english;
}

} // namespace vak::test
