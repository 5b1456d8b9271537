#pragma once

#include "framework/base/Platform.h"

namespace vak::win32 {

/// Keeps the system from showing boxes of its own on this thread, about a drive without a disk or a library
/// that it cannot load. The thread's last error stays.
class QuietErrors
{
public:
    QuietErrors() { SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &m_before); }
    ~QuietErrors() { SetThreadErrorMode(m_before, nullptr); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

private:
    DWORD m_before = 0;
};

} // namespace vak::win32
