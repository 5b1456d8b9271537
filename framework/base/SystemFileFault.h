#pragma once

#include "framework/base/Platform.h"

/// Lets a test make the system refuse: with a hook set, every operation on files asks it first.
namespace vak::system {

enum class FileOperation
{
    Open,
    Read,
    Write,
    Seek,
    SetLength,
    Flush,
    Close,
    Remove,
    Rename,
    Replace,
    Copy
};

/// Returns 0 to let the operation happen, or the platform's error code that it shall fail with. A file whose
/// Close "fails" is closed.
using FileFaultHook = DWORD (*)(FileOperation operation);

/// Sets the hook of the whole process; null, the default, ends it.
VAK_INTERNAL_API void SetFileFaultHook(FileFaultHook hook);

/// For the back ends: what the hook says, 0 without one.
DWORD FileFault(FileOperation operation);

} // namespace vak::system
