#include "framework/ui/SystemKey.h"

namespace vak::system {

CString KeyName(BYTE key, bool isExtended)
{
    constexpr UINT kDeadKey = 0x80000000;
    const UINT typed = MapVirtualKeyW(key, MAPVK_VK_TO_CHAR) & ~kDeadKey;
    if (typed > L' ' && typed <= 0xFFFF)
        return CString(static_cast<wchar_t>(typed)).MakeUpper();
    const UINT scanCode = MapVirtualKeyW(key, MAPVK_VK_TO_VSC) & 0xFF;
    if (scanCode == 0)
        return {};
    // As a key message has them: the code from bit 16 on, then whether it is one of the keys added later.
    wchar_t name[64] = {};
    GetKeyNameTextW(static_cast<LONG>(scanCode << 16 | (isExtended ? 1u << 24 : 0)), name, 64);
    return name;
}

} // namespace vak::system
