#pragma once

/// Back ends of vak::system::ToWide and ToNarrow, for the code pages that TextCodec.h does not know. `out` is
/// empty when they are called, and left so with the result false when the system does not know the page
/// either.

#include "framework/base/SystemText.h"

namespace vak::detail {

bool DecodePage(UINT codePage, const char* bytes, std::size_t length, CStringW& out);
bool EncodePage(UINT codePage, const wchar_t* text, std::size_t length, CStringA& out,
                system::Unmapped unmapped);

} // namespace vak::detail
