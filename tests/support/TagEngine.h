#pragma once

#include "tags/Tags.h"

namespace vak::test {

/// The engine that the process's one call of InitTags fills: whoever needs the conditional tags copies it.
inline const CTags& ConditionalTags()
{
    static CTags tags;
    static const bool done = (CTags::InitTags(tags), true);
    static_cast<void>(done);
    return tags;
}

/// A callback that has a value for texts, paths and truth; texts and paths are the tag's data.
inline int GiveValue(CTagInfo& tag, CTagValue& value, _TAGDATA_INFO)
{
    const auto* text = static_cast<const wchar_t*>(tag.GetCallbackData());
    switch (tag.GetTagDataType()) {
    case TAGDATA_TEXT:
        value.SetText(text);
        break;
    case TAGDATA_FILENAME:
        value.SetFilename(text);
        break;
    case TAGDATA_BOOL:
        value.SetBool(1);
        break;
    default:
        return 0;
    }
    return 1;
}

inline void Insert(CTags& tags, const wchar_t* name, unsigned int kind, unsigned int id,
                   const wchar_t* text = L"")
{
    tags.InsertTag(name, kind, 'DEMO', id, 0, 0, GiveValue, const_cast<wchar_t*>(text));
}

/// A plain template with the values of its tags; what is no text has none.
inline CString Expand(CTags& tags, const CString& text)
{
    CString out;
    CTagInfo info;
    CTagValue value;
    tags.StartScan(text);
    while (tags.Scan(out, info) != 0) {
        if (tags.GetDataFromTag(info, value, TAGDATA_TEXT) != 0 && value.GetDataType() == TAGDATA_TEXT)
            out += value.GetText();
    }
    return out;
}

} // namespace vak::test
