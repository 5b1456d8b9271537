#pragma once

#include "examples/vakconvert/Batch.h"
#include "examples/vakconvert/Settings.h"

#include <vector>

class Archives;

/// A file to convert.
struct Source
{
    CString path;
    CString root;   ///< the source folder that it was found in, slash-terminated; of a named file, its own
    CString folder; ///< below the source folder: "a\b\", or empty
    bool named = false; ///< the user named this very file
    CString archive;    ///< the archive that it was extracted from; empty: it lies where it is
    CString entry;      ///< its path in the archive
    CString failure;    ///< why it could not be extracted; empty: it could
};

/// The source as the user knows it: below the source folder, or through its archive.
CString ShownName(const Source& source);
/// Its whole path, through its archive if there is one.
CString FullName(const Source& source);

/// Lists what the sources of the command line stand for, each file once, folders in alphabetical order.
/// Folders that take the batch's results are not visited unless they are sources themselves. A source that
/// finds nothing is told in `problems`. A source may run through an archive as through a folder; those files
/// are there as long as `archives` is.
std::vector<Source> FindSources(const Settings& settings, const Batch& batch, Archives& archives,
                                std::vector<CString>& problems);

/// Lists the names of a folder's files and folders, both in alphabetical order. The folder is
/// slash-terminated.
void ListFolder(const CString& folder, std::vector<CString>& files, std::vector<CString>& folders);
