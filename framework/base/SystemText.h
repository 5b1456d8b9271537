#pragma once

/// What the operating system knows about text: code pages and case.
///
/// Code pages are numbered as the platform numbers them; CP_ACP is the system's ANSI code page. Lengths count
/// units of the text at hand (bytes or UTF-16 units), terminators are neither needed nor added, zeros are
/// converted like any character. Every function may be called from any thread.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

#include <cstddef>

namespace vak::system {

/// The system's ANSI code page.
VAK_INTERNAL_API UINT AnsiCodePage();
/// The default ANSI code page of the user's locale, 0 when it cannot be read.
VAK_INTERNAL_API UINT UserAnsiCodePage();

/// Sets `out` to the text that `bytes` mean in a code page. Bytes that mean nothing there become the
/// replacement character that the platform gives for it (U+FFFD for UTF-8). False, and `out` empty, when the
/// code page is unknown. `out` keeps its capacity: a reader of many lines passes the same string.
VAK_INTERNAL_API bool ToWide(UINT codePage, const char* bytes, std::size_t length, CStringW& out);

/// How ToNarrow treats what the code page lacks.
enum class Unmapped
{
    /// By the platform's default: a similar character, else the code page's own default character.
    PlatformDefault,
    /// Letters followed by combining marks are composed first, where the composed one exists; marks that stay
    /// alone and characters without an equivalent become '#'. Not for UTF-8.
    NumberSign
};

/// Sets `out` to the bytes of `text` in a code page. Unpaired surrogates have no equivalent (in UTF-8: the
/// bytes of U+FFFD). False, and `out` empty, when the code page is unknown.
VAK_INTERNAL_API bool ToNarrow(UINT codePage, const wchar_t* text, std::size_t length, CStringA& out,
                               Unmapped unmapped = Unmapped::PlatformDefault);

/// How many bytes at the end of `bytes` begin a character that is not complete: 0 when the piece can be
/// converted alone. `bytes` begins at the beginning of a character.
VAK_INTERNAL_API std::size_t IncompleteTail(UINT codePage, const char* bytes, std::size_t length);

/// Folds UTF-16 units one by one, each by itself: nothing changes length, surrogates stay.
VAK_INTERNAL_API wchar_t ToUpper(wchar_t unit);
VAK_INTERNAL_API wchar_t ToLower(wchar_t unit);
VAK_INTERNAL_API void MakeUpper(wchar_t* text, std::size_t length);
VAK_INTERNAL_API void MakeLower(wchar_t* text, std::size_t length);

/// Below 0, 0 or above 0: compares the units folded to upper case by value; a beginning comes before the
/// whole.
VAK_INTERNAL_API int CompareOrdinalIgnoreCase(const wchar_t* a, std::size_t aLength, const wchar_t* b,
                                              std::size_t bLength);

} // namespace vak::system
