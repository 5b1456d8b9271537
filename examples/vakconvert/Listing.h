#pragma once

#include "examples/vakconvert/Console.h"

/// Shows the kinds that plug-ins read and write, with the options of their writers.
void ListKinds(const Console& console);

/// Shows the loaded plug-ins and, for each refused one, why.
void ListPlugins(const Console& console);
