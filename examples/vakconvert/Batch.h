#pragma once

#include "examples/vakconvert/Settings.h"
#include "files/BatchInfo.h"

struct Source;

/// Where the results of a run go: the command line's rules as a batch.
class Batch
{
public:
    explicit Batch(const Settings& settings);

    /// Why the results cannot go there; empty when they can.
    CString Problem() const;
    /// The folder for a source's result, slash-terminated; that of an archive's file is beside the archive,
    /// unless it is below a destination folder. Empty when its path is longer than paths can be.
    CString FolderFor(const Source& source);
    /// Whether a folder (slash-terminated) that a search meets is there to take results, of this run or of
    /// earlier ones: no source is looked for in it.
    bool TakesResults(const CString& folder) const;

private:
    BatchInfo m_info;
};
