#pragma once

/// What the system's keyboard layer calls keys. Windows only.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

namespace vak::system {

/// Returns the character that a virtual key types by itself on the thread's keyboard, in upper case, or else
/// the layer's name of the key, in the language of the keyboard; empty when it has neither.
VAK_INTERNAL_API CString KeyName(BYTE key, bool isExtended);

} // namespace vak::system
