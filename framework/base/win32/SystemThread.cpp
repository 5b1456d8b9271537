#include "framework/base/SystemThread.h"

namespace vak::system {

unsigned int CurrentThreadId()
{
    return GetCurrentThreadId();
}

} // namespace vak::system
