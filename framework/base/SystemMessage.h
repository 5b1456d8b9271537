#pragma once

/// What the library asks of the system about messages.

#include "framework/base/String.h"

namespace vak::system {

/// Shows a modal box over the thread's active window and returns the button pressed. Natively there is no
/// window: the text goes to the error stream and the box's default button is the answer.
VAK_INTERNAL_API int ShowMessage(LPCTSTR text, LPCTSTR caption, UINT type);

/// Shows the wait cursor, or the ordinary one again.
void ShowWaitCursor(bool show);

/// The system's sentence for an error code of the platform, without line end; a sentence with the number when
/// the system has none.
VAK_INTERNAL_API CString ErrorText(DWORD errorCode);

/// Reads string `id` of `module` (null: the library) in exactly that language; false when it has none. A
/// module that was mapped as data or without initialisation will do. Natively only the library has strings.
VAK_INTERNAL_API bool LoadModuleText(CString& out, HMODULE module, UINT id, LANGID language);

/// The same in whatever language the system finds suitable for the user.
VAK_INTERNAL_API bool LoadModuleText(CString& out, HMODULE module, UINT id);

} // namespace vak::system
