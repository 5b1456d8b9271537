#pragma once

/// The texts that the library shows, by identifier and language. French (1036) has them all; other languages
/// have some, and what they lack is shown in French.

#include "framework/base/String.h"

namespace vak {

/// The language of the texts until a host chooses another.
constexpr LANGID kDefaultTextLanguage = 1036;

/// Puts the text `id` into `out` and returns true: the library's own text in the current language, else in
/// the primary language's default variant, else in French, else the text of that number among the strings of
/// the module named by AfxSetResourceHandle. Returns false and leaves `out` alone when there is none.
VAK_API bool LoadText(CString& out, UINT id);
/// The same for `wanted` in place of the current language.
VAK_API bool LoadText(CString& out, UINT id, LANGID wanted);
/// As the first, for a text that a caller of the library named by number: between the library's own texts and
/// those of the named module it asks the module that `address`, of a function of the caller, lies in. A null
/// address, or one in no module, is left out.
VAK_API bool LoadTextNear(CString& out, UINT id, const void* address);

/// The language of the texts, process-wide; any thread may set it.
VAK_API void SetTextLanguage(LANGID language);
VAK_API LANGID TextLanguage();

} // namespace vak

/// Puts text `id` into `out` with every %1 replaced by `text1` (and %2 by `text2`); a placeholder without an
/// argument shows as '?'. `out` becomes empty when there is no such text.
VAK_API void AfxFormatString1(CString& out, UINT id, LPCTSTR text1);
VAK_API void AfxFormatString2(CString& out, UINT id, LPCTSTR text1, LPCTSTR text2);
