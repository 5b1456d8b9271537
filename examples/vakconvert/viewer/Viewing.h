#pragma once

#include "examples/vakconvert/Console.h"

/// Shows an image or a model in a window until the user closes it. Returns the program's exit code: 1, with
/// the reason on the error output, when there is nothing to show.
int ViewFile(const Console& console, const CString& path);
