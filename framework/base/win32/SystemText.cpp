#include "framework/base/SystemText.h"

#include "framework/base/detail/CodePage.h"

#include <windows.h>

namespace vak::detail {

bool DecodePage(UINT codePage, const char* bytes, std::size_t length, CStringW& out)
{
    if (length == 0)
        return IsValidCodePage(codePage);
    const int count = static_cast<int>(length);
    const int needed = MultiByteToWideChar(codePage, 0, bytes, count, nullptr, 0);
    if (needed <= 0)
        return false;
    MultiByteToWideChar(codePage, 0, bytes, count, out.GetBufferSetLength(needed), needed);
    return true;
}

bool EncodePage(UINT codePage, const wchar_t* text, std::size_t length, CStringA& out,
                system::Unmapped unmapped)
{
    if (length == 0)
        return IsValidCodePage(codePage);
    const int count = static_cast<int>(length);
    const auto convert = [&](DWORD flags, LPCSTR substitute) {
        const int needed = WideCharToMultiByte(codePage, flags, text, count, nullptr, 0, substitute, nullptr);
        if (needed > 0)
            WideCharToMultiByte(codePage, flags, text, count, out.GetBufferSetLength(needed), needed,
                                substitute, nullptr);
        return needed > 0;
    };
    // Some pages (UTF-7, the shifting ones) take neither flags nor a substitute.
    if (unmapped == system::Unmapped::NumberSign && convert(WC_COMPOSITECHECK | WC_SEPCHARS, "#"))
        return true;
    return convert(0, nullptr);
}

} // namespace vak::detail

namespace vak::system {

UINT AnsiCodePage()
{
    return GetACP();
}

UINT UserAnsiCodePage()
{
    DWORD codePage = 0;
    const int size = sizeof codePage / sizeof(wchar_t);
    if (GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                       reinterpret_cast<wchar_t*>(&codePage), size) != size)
        return 0;
    return codePage;
}

wchar_t ToUpper(wchar_t unit)
{
    CharUpperBuffW(&unit, 1);
    return unit;
}

wchar_t ToLower(wchar_t unit)
{
    CharLowerBuffW(&unit, 1);
    return unit;
}

void MakeUpper(wchar_t* text, std::size_t length)
{
    CharUpperBuffW(text, static_cast<DWORD>(length));
}

void MakeLower(wchar_t* text, std::size_t length)
{
    CharLowerBuffW(text, static_cast<DWORD>(length));
}

int CompareOrdinalIgnoreCase(const wchar_t* a, std::size_t aLength, const wchar_t* b, std::size_t bLength)
{
    if (aLength == 0 || bLength == 0)
        return (aLength != 0) - (bLength != 0);
    return CompareStringOrdinal(a, static_cast<int>(aLength), b, static_cast<int>(bLength), TRUE) -
           CSTR_EQUAL;
}

} // namespace vak::system
