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

/// A callback whose data is the text of the tag.
inline int GiveText(CTagInfo& tag, CTagValue& value, _TAGDATA_INFO)
{
    value.SetText(static_cast<const wchar_t*>(tag.GetCallbackData()));
    return 1;
}

/// A callback whose data is the path of the tag.
inline int GivePath(CTagInfo& tag, CTagValue& value, _TAGDATA_INFO)
{
    value.SetFilename(static_cast<const wchar_t*>(tag.GetCallbackData()));
    return 1;
}

inline void* DataOf(const wchar_t* text)
{
    return const_cast<wchar_t*>(text);
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
