#pragma once

/// Names of keys, for texts such as "Ctrl + Alt + K". In the language of the library's texts, by the words
/// that the platform's French and English keyboards have for them; what a key types is asked of the keyboard
/// that the calling thread has.

#include "framework/base/String.h"

/// Returns the name of a virtual key. Of the two keys that enter has, `isExtended` tells the one of the
/// number pad. A key that nobody has a name for is shown by its number: "0x07".
VAK_API CString keyGetName(BYTE key, int isExtended = 0);

/// Returns the text of a hot key in the shell's encoding (low byte the virtual key, high byte HOTKEYF_
/// flags of <commctrl.h>), its parts joined by " + ": control, shift, alt, the key. Empty when there is no
/// key.
VAK_API CString keyGetHotKeyText(WORD hotKey);
