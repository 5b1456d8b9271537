#pragma once

#include "core/HashTable.h"
#include "framework/base/Platform.h"
#include "framework/base/String.h"

/// User-typed lists of extensions or name patterns, brought into a canonical form.
///
/// Blanks, commas and semicolons separate the pieces; only the first 259 UTF-16 units of the trimmed list
/// count. With `extensionMode` non-zero "obj" and ".obj" both become "*.obj"; a piece with a dot elsewhere
/// stays. With 0 the pieces are name patterns: one in double quotes may hold blanks and is taken literally,
/// without them; any other gets a star on each side, unless it holds a "?". Everything is lower-cased and
/// kept once.

/// Returns the canonical list, separated by single blanks. The pieces are added to `table` when it is given,
/// and those that it holds already are left out of the result.
VAK_API CString fileCleanExtensionList(const CString& list, int extensionMode,
                                       CHashTable<CString>* table = nullptr);

/// Replaces `list` by its canonical form and the contents of `table` by its pieces, in 101 slots or what they
/// need. Returns their number.
VAK_API unsigned int fileGetHashFromExtensionList(CString& list, CHashTable<CString>& table,
                                                  int extensionMode);
