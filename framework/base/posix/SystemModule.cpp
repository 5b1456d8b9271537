#include "framework/base/SystemModule.h"

namespace vak::system {

HMODULE ModuleAt(const void*)
{
    return nullptr;
}

} // namespace vak::system
