#pragma once

#include "examples/vakconvert/Settings.h"

#include <vector>

/// A file to convert.
struct Source
{
    CString path;
    CString folder; ///< below the source folder that it was found in: "a\b\", or empty
    bool named;     ///< the user named this very file
};

/// Lists what the sources of the command line stand for, each file once, folders in alphabetical order. A
/// source that finds nothing is told in `problems`.
std::vector<Source> FindSources(const Settings& settings, std::vector<CString>& problems);
