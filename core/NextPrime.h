#pragma once

#include "framework/base/Platform.h"

/// Returns the size of a hash table that is to have at least `n` slots: the first prime from `n` on.
///
/// The stored iteration order of every table depends on these sizes, so the small values keep their old
/// oddities: below 9 the result is `n` made odd without a look at its divisors (0 gives 1, 8 gives 9), only 1
/// gives 2 and 2 gives 2. Returns 0 when no prime from `n` on fits into 32 bits (`n` above 4294967291).
VAK_API unsigned int NextPrime(unsigned int n);
