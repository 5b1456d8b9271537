#pragma once

#include "core/HashTable.h"

/// Returns a name that is not in `taken`, and adds it there: `base` itself, else `base` with #0, #1, ...
/// behind it.
///
/// With `maxLength` of at least 1 (UTF-16 units) the name is cut to that length in front of the suffix; a
/// suffix that is longer by itself stands alone. An empty base gives #0 or the first free one.
VAK_API CString GetUniqueName(CHashTable<CString>& taken, const CString& base, int maxLength);
