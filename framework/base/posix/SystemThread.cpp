#include "framework/base/SystemThread.h"

#include <unistd.h>

namespace vak::system {

unsigned int CurrentThreadId()
{
    // Asking the kernel takes longer than all that the callers do with the answer.
    static thread_local const auto id = static_cast<unsigned int>(gettid());
    return id;
}

} // namespace vak::system
