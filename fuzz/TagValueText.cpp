#include "core/CustomData.h"
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

/// What a value was read as is stored and read back, and written as text again.
void RequireStored(const CTagValue& value)
{
    CCustomData data;
    Require(value.SetValueToData(data, 1) != 0);
    CTagValue read;
    CCustomData again;
    Require((read.GetValueFromData(data, 1, value.GetDataType()) != 0) == (data.HasData(1) != 0));
    Require(read.IsEmpty() != 0 || read.SetValueToData(again, 1) != 0);
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
    if (text.Find(wchar_t(0)) < 0) // where a stored text ends
        RequireStored(value);
    CTagValue copy = value;
    const bool hasText = copy.HandleParametersAndConvertToType(TAGDATA_TEXT, CString()) != 0;
    Require(hasText == (kind != TAGDATA_CUSTOMDATA));
}

const vak::fuzz::Target target("TagValueText", Run);

} // namespace
