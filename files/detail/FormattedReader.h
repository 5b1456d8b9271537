#pragma once

#include "files/detail/ScanSource.h"
#include "framework/base/Platform.h"

#include <cstdarg>

namespace vak::detail {

/// Reads fields from `source` as CStdioFileEx::FScanfS documents; the arguments are consumed, not ended.
int ReadFormatted(ScanSource& source, LPCWSTR format, std::va_list arguments);

} // namespace vak::detail
