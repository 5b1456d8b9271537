#include "framework/base/StringTable.h"

#include "framework/base/Application.h"
#include "framework/base/SystemMessage.h"
#include "framework/base/SystemModule.h"

#include <atomic>
#include <initializer_list>

namespace vak {

namespace {

constinit std::atomic<LANGID> currentLanguage = kDefaultTextLanguage;

/// The default variant of a language: its primary part with the first sublanguage.
LANGID DefaultVariant(LANGID language)
{
    return LANGID((language & 0x3FF) | 0x400);
}

bool LoadOwnText(CString& out, UINT id, LANGID wanted)
{
    for (const LANGID language : {wanted, DefaultVariant(wanted), kDefaultTextLanguage}) {
        if (system::LoadModuleText(out, nullptr, id, language))
            return true;
    }
    return false;
}

/// No module has no texts.
bool LoadTextOf(CString& out, HMODULE module, UINT id, LANGID wanted)
{
    return module != nullptr &&
           (system::LoadModuleText(out, module, id, wanted) || system::LoadModuleText(out, module, id));
}

} // namespace

bool LoadText(CString& out, UINT id)
{
    return LoadText(out, id, currentLanguage);
}

bool LoadText(CString& out, UINT id, LANGID wanted)
{
    return LoadOwnText(out, id, wanted) || LoadTextOf(out, AfxGetResourceHandle(), id, wanted);
}

bool LoadTextNear(CString& out, UINT id, const void* address)
{
    const LANGID wanted = currentLanguage;
    const HMODULE caller = address == nullptr ? nullptr : system::ModuleAt(address);
    return LoadOwnText(out, id, wanted) || LoadTextOf(out, caller, id, wanted) ||
           LoadTextOf(out, AfxGetResourceHandle(), id, wanted);
}

void SetTextLanguage(LANGID language)
{
    currentLanguage = language;
}

LANGID TextLanguage()
{
    return currentLanguage;
}

} // namespace vak

namespace {

/// Replaces in one pass, so that a file name with a percent sign in it stays what it is.
CString Insert(const CString& text, std::initializer_list<LPCTSTR> arguments)
{
    CString result;
    for (int at = 0; at < text.GetLength(); ++at) {
        const wchar_t next = text[at + 1];
        if (text[at] != L'%' || next < L'1' || next > L'9') {
            result.AppendChar(text[at]);
            continue;
        }
        const auto index = std::size_t(next - L'1');
        result += index < arguments.size() ? arguments.begin()[index] : L"?";
        ++at;
    }
    return result;
}

void FormatText(CString& out, UINT id, std::initializer_list<LPCTSTR> arguments)
{
    CString text;
    vak::LoadText(text, id);
    out = Insert(text, arguments);
}

} // namespace

void AfxFormatString1(CString& out, UINT id, LPCTSTR text1)
{
    FormatText(out, id, {text1});
}

void AfxFormatString2(CString& out, UINT id, LPCTSTR text1, LPCTSTR text2)
{
    FormatText(out, id, {text1, text2});
}
