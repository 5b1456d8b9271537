#pragma once

#include "framework/base/Platform.h"

/// What the library asks of the operating system about threads.
namespace vak::system {

/// The number of the calling thread: no other thread of the process has it while this one lives. A later
/// thread may get it again.
VAK_INTERNAL_API unsigned int CurrentThreadId();

} // namespace vak::system
