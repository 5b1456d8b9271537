#pragma once

/// Names matched against patterns: "*" stands for any run of characters, also an empty one, "?" for exactly
/// one, every other character for itself. There are no classes and no escapes.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

template <class T>
class CHashTable;

/// Returns 1 if the name matches the pattern. When `caseSensitive` is 0 both are folded to upper case: behind
/// the first "*" as the platform folds text, before it only among the first 256 characters.
VAK_API int fileMatchWilcards(const CString& name, const CString& pattern, int caseSensitive);
/// Returns 1 if the name matches any of the patterns, the case aside; an empty table matches nothing.
VAK_API int fileMatchWilcards(const CString& name, const CHashTable<CString>& patterns);
