#pragma once

#include "examples/sdk/Mesh.h"
#include "examples/vakconvert/NameTemplate.h"
#include "examples/vakconvert/Outcome.h"
#include "examples/vakconvert/ResultNames.h"
#include "examples/vakconvert/Sources.h"
#include "examples/vakconvert/Target.h"

/// Converts one file into the folder `destination` (slash-terminated). The result is made in a folder of its
/// own beside it and moved into place whole, with the files that belong to it, under the name that `stems`
/// gives it or one like it that `names` has free.
///
/// A target that asks does so while the first file is written, and has the user's options from then on. One
/// that the user has cancelled is given up.
Outcome Convert(const Source& source, Target& target, const CString& destination, NameTemplate& stems,
                ResultNames& names);

/// Reads a 3-D file. Returns an empty text, or why that failed; `mesh` is then empty.
CString LoadModel(const CString& path, Mesh& mesh);
