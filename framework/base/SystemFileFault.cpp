#include "framework/base/SystemFileFault.h"

#include <atomic>

namespace vak::system {

namespace {

std::atomic<FileFaultHook> installed{nullptr};

} // namespace

void SetFileFaultHook(FileFaultHook hook)
{
    installed = hook;
}

DWORD FileFault(FileOperation operation)
{
    const FileFaultHook hook = installed.load(std::memory_order_relaxed);
    return hook == nullptr ? 0 : hook(operation);
}

} // namespace vak::system
