#pragma once

#include "examples/vakconvert/Batch.h"
#include "examples/vakconvert/Settings.h"

#include <vector>

/// A file to convert.
struct Source
{
    CString path;
    CString root;   ///< the source folder that it was found in, slash-terminated; of a named file, its own
    CString folder; ///< below the source folder: "a\b\", or empty
    bool named;     ///< the user named this very file
};

/// Lists what the sources of the command line stand for, each file once, folders in alphabetical order.
/// Folders that take the batch's results are not visited unless they are sources themselves. A source that
/// finds nothing is told in `problems`.
std::vector<Source> FindSources(const Settings& settings, const Batch& batch, std::vector<CString>& problems);
