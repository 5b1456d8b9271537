#include "core/CustomData.h"
#include "framework/base/StringArray.h"
#include "framework/base/Time.h"
#include "fuzz/support/Target.h"
#include "tags/TagValue.h"

#include <iterator>

using vak::fuzz::Require;

namespace {

constexpr _TAGDATA_INFO kKinds[] = {TAGDATA_UINT,        TAGDATA_INT,        TAGDATA_FLOAT,
                                    TAGDATA_DATE,        TAGDATA_CUSTOMDATA, TAGDATA_CUSTOMINFO,
                                    TAGDATA_UINTARRAY,   TAGDATA_FLOATARRAY, TAGDATA_FILENAME,
                                    TAGDATA_STRINGARRAY, TAGDATA_FILESIZE,   TAGDATA_LENGTH};

void RequireTidy(const CStringArray& texts)
{
    for (INT_PTR i = 0; i < texts.GetSize(); ++i) {
        CString trimmed = texts[i];
        Require(!trimmed.IsEmpty() && trimmed.Trim(L' ') == texts[i] && texts[i].Find(L" ; ") < 0);
    }
}

/// What a value was read as is stored and read back, and written as text again.
void RequireStored(const CTagValue& value)
{
    CCustomData data;
    Require(value.SetValueToData(data, 1) != 0);
    CTagValue read;
    const bool isThere = data.HasData(1) != 0;
    Require((read.GetValueFromData(data, 1, value.GetDataType()) != 0) == isThere);
    CCustomData again;
    Require(!isThere || read.SetValueToData(again, 1) != 0);
    Require(data.IsEqual(again) != 0);
}

/// The first byte chooses the kind, the rest are little-endian UTF-16 units of a text.
void Run(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return;
    const _TAGDATA_INFO kind = kKinds[data[0] % std::size(kKinds)];
    CString text;
    for (std::size_t i = 1; i + 1 < size; i += 2)
        text.AppendChar(static_cast<wchar_t>(data[i] | data[i + 1] << 8));

    CTagValue value;
    value.SetText(text);
    if (value.HandleParametersAndConvertToType(kind, CString()) == 0) {
        Require(value.GetDataType() == TAGDATA_TEXT && value.GetUInt() == 0 && value.GetFloat() == 0);
        return;
    }
    Require(value.GetDataType() == kind && value.GetText() == text);
    RequireTidy(value.GetStringArray());
    if (text.Find(wchar_t(0)) < 0) // where a stored text ends
        RequireStored(value);
    CTagValue copy = value;
    const bool hasText = copy.HandleParametersAndConvertToType(TAGDATA_TEXT, CString()) != 0;
    Require(hasText == (kind != TAGDATA_CUSTOMDATA));
    // A date that was read is the one that its text reads as, to the minute.
    if (kind == TAGDATA_DATE) {
        Require(copy.HandleParametersAndConvertToType(TAGDATA_DATE, CString()) != 0);
        const auto seconds = value.GetDate().GetTime() - copy.GetDate().GetTime();
        Require(seconds >= 0 && seconds < 60);
    }
}

const vak::fuzz::Target target("TagValueText", Run);

} // namespace
