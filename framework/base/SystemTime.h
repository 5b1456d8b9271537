#pragma once

#include "framework/base/Platform.h"

#include <cstdint>
#include <ctime>

/// What the operating system knows of time zones. Moments are seconds since 1 January 1970, 00:00 UTC.
namespace vak::system {

/// Local components of a moment; false when the system refuses it.
VAK_INTERNAL_API bool ToLocalTime(std::int64_t moment, std::tm& components);
/// The components in UTC.
VAK_INTERNAL_API bool ToUtcTime(std::int64_t moment, std::tm& components);
/// The moment of local components, which may lie outside their ranges as for mktime; -1 when there is none.
VAK_INTERNAL_API std::int64_t FromLocalTime(std::tm components);

} // namespace vak::system
