#include "platform/KeyName.h"

#include "framework/base/StringTable.h"
#include "framework/ui/SystemKey.h"
#include "resources/Ids.h"

#include <algorithm>
#include <iterator>

#include <commctrl.h>

namespace {

/// The keys with a name of their own, in the order of their texts. The keyboard layer knows these names in
/// the language of the keyboard alone, which need not be that of the texts.
constexpr BYTE kNamedKeys[] = {
    VK_CONTROL, VK_SHIFT,   VK_MENU,   VK_CANCEL, VK_BACK,  VK_TAB,      VK_RETURN,
    VK_PAUSE,   VK_CAPITAL, VK_ESCAPE, VK_SPACE,  VK_PRIOR, VK_NEXT,     VK_END,
    VK_HOME,    VK_LEFT,    VK_UP,     VK_RIGHT,  VK_DOWN,  VK_SNAPSHOT, VK_INSERT,
    VK_DELETE,  VK_HELP,    VK_LWIN,   VK_RWIN,   VK_APPS,  VK_NUMLOCK,  VK_SCROLL,
};

CString Text(UINT id)
{
    CString text;
    vak::LoadText(text, id);
    return text;
}

/// What a key of the number pad is called there; empty for other keys.
CString PadKey(BYTE key, bool isExtended)
{
    if (key >= VK_NUMPAD0 && key <= VK_NUMPAD9)
        return CString(static_cast<wchar_t>(L'0' + key - VK_NUMPAD0));
    switch (key) {
    case VK_CLEAR: // what 5 does while the numbers are locked out
        return L"5";
    case VK_MULTIPLY:
        return L"*";
    case VK_ADD:
        return L"+";
    case VK_SUBTRACT:
        return L"-";
    case VK_DECIMAL:
        return Text(IDS_KEY_DECIMAL);
    case VK_DIVIDE:
        return L"/";
    case VK_RETURN:
        return isExtended ? Text(IDS_KEY_ENTER) : CString();
    default:
        return {};
    }
}

bool TypesItself(BYTE key)
{
    return (key >= L'0' && key <= L'9') || (key >= L'A' && key <= L'Z');
}

} // namespace

CString keyGetName(BYTE key, int isExtended)
{
    CString name = PadKey(key, isExtended != 0);
    if (!name.IsEmpty()) {
        AfxFormatString1(name, IDS_KEY_OF_NUMBER_PAD, CString(name));
        return name;
    }
    if (TypesItself(key))
        return CString(static_cast<wchar_t>(key));
    if (key >= VK_F1 && key <= VK_F24) {
        name.Format(L"F%d", key - VK_F1 + 1);
        return name;
    }
    const auto* const named = std::find(std::begin(kNamedKeys), std::end(kNamedKeys), key);
    if (named != std::end(kNamedKeys))
        return Text(static_cast<UINT>(IDS_KEY_NAME + (named - kNamedKeys)));
    name = vak::system::KeyName(key, isExtended != 0);
    if (name.IsEmpty())
        name.Format(L"0x%02X", key);
    return name;
}

CString keyGetHotKeyText(WORD hotKey)
{
    constexpr struct
    {
        BYTE flag;
        BYTE key;
    } kModifiers[] = {{HOTKEYF_CONTROL, VK_CONTROL}, {HOTKEYF_SHIFT, VK_SHIFT}, {HOTKEYF_ALT, VK_MENU}};
    const BYTE key = LOBYTE(hotKey);
    const BYTE flags = HIBYTE(hotKey);
    if (key == 0)
        return {};
    CString text;
    for (const auto& modifier : kModifiers) {
        if ((flags & modifier.flag) != 0)
            text += keyGetName(modifier.key) + L" + ";
    }
    return text + keyGetName(key, flags & HOTKEYF_EXT);
}
