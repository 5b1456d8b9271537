#include "framework/base/StringTable.h"

#include "framework/base/Application.h"
#include "framework/base/SystemMessage.h"

#include <atomic>

namespace vak {

namespace {

constinit std::atomic<LANGID> currentLanguage = kDefaultTextLanguage;

/// The default variant of a language: its primary part with the first sublanguage.
LANGID DefaultVariant(LANGID language)
{
    return LANGID((language & 0x3FF) | 0x400);
}

} // namespace

bool LoadText(CString& out, UINT id)
{
    return LoadText(out, id, currentLanguage);
}

bool LoadText(CString& out, UINT id, LANGID wanted)
{
    for (const LANGID language : {wanted, DefaultVariant(wanted), kDefaultTextLanguage}) {
        if (system::LoadModuleText(out, nullptr, id, language))
            return true;
    }
    const HINSTANCE host = AfxGetResourceHandle();
    return host != nullptr &&
           (system::LoadModuleText(out, host, id, wanted) || system::LoadModuleText(out, host, id));
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
