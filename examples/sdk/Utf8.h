#pragma once

#include "files/StdioFileEx.h"

#include <string>

/// Text as UTF-8 bytes and back, through the library's converters.

inline std::string ToUtf8(const CString& text)
{
    const int needed = CStdioFileEx::GetRequiredMultiByteLengthForUnicodeString(text, CP_UTF8);
    std::string bytes(static_cast<std::size_t>(needed > 0 ? needed : 1), '\0');
    const int length = CStdioFileEx::GetMultiByteStringFromUnicodeString(
        text, bytes.data(), static_cast<int>(bytes.size()), CP_UTF8);
    bytes.resize(static_cast<std::size_t>(length > 0 ? length : 0));
    return bytes;
}

inline CString FromUtf8(std::string_view bytes)
{
    const std::string terminated(bytes);
    CString text;
    wchar_t* const buffer = text.GetBuffer(static_cast<int>(bytes.size()) + 1); // never more units than bytes
    if (!CStdioFileEx::GetUnicodeStringFromMultiByteString(terminated.c_str(), buffer,
                                                           static_cast<int>(bytes.size()) + 1, CP_UTF8))
        buffer[0] = L'\0';
    text.ReleaseBuffer();
    return text;
}
