#include "framework/base/SystemText.h"

#include "framework/base/detail/CaseTable.h"
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

void FillCaseTables(wchar_t* upper, wchar_t* lower)
{
    for (std::size_t unit = 0; unit < kUnits; ++unit)
        upper[unit] = lower[unit] = static_cast<wchar_t>(unit);
    CharUpperBuffW(upper, kUnits);
    CharLowerBuffW(lower, kUnits);
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

} // namespace vak::system
