#pragma once

#include "framework/base/Object.h"

#include <string_view>

namespace vak::detail {

/// CRuntimeClass::FromName for a name of a length, zeros included.
CRuntimeClass* FindRegisteredClass(std::string_view name);

} // namespace vak::detail
