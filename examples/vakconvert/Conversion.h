#pragma once

#include "examples/sdk/Mesh.h"
#include "examples/vakconvert/ResultNames.h"
#include "examples/vakconvert/Sources.h"
#include "examples/vakconvert/Target.h"

/// How one file fared.
struct Outcome
{
    CString source;   ///< as the user knows it: the path below the source folder
    CString result;   ///< the file made; empty after a failure
    CString contents; ///< what the source holds, in words; empty when it could not be read
    ULONGLONG bytes = 0;
    double seconds = 0;
    CString failure; ///< why it failed; empty for success
};

/// Converts one file into the folder `destination` (slash-terminated). The result is made in a folder of its
/// own beside it and moved into place whole, with the files that belong to it, under a name that `names` has
/// free.
Outcome Convert(const Source& source, const Target& target, const CString& destination, ResultNames& names);

/// Reads a 3-D file. Returns an empty text, or why that failed; `mesh` is then empty.
CString LoadModel(const CString& path, Mesh& mesh);
