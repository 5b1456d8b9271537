#pragma once

#include "core/HashMap.h"
#include "core/HashTable.h"
#include "examples/vakconvert/Batch.h"
#include "examples/vakconvert/NameTemplate.h"
#include "examples/vakconvert/Sources.h"
#include "examples/vakconvert/Target.h"

#include <vector>

/// The names of a run's results. Every result gets one that is free, with a number if need be.
class ResultNames
{
public:
    /// Without `overwrite` every file on the disk keeps its name. With it a result may replace a file, but
    /// neither another result of this run nor one of `sources` other than its own.
    ResultNames(const std::vector<Source>& sources, bool overwrite);

    bool MayReplace() const { return m_overwrite; }
    /// Whether the path is taken for a result of `source`.
    bool IsTaken(const CString& path, const CString& source) const;
    /// Returns `path` or, when that is taken, one like it that is not ("a (1).stl"). Goes on
    /// behind the number that it gave before: many equal names would be tried over and over.
    CString FreePath(const CString& path, const CString& source);
    /// Keeps the path from the results that follow.
    void Take(const CString& path);

private:
    bool m_overwrite;
    CHashTable<CString> m_sources; ///< lower-case, as the results are
    CHashTable<CString> m_results;
    CHashMap<CString, ULONGLONG, const CString&> m_numbers; ///< the last one that FreePath gave
};

/// The first of `targets` that can take what the source holds; null when there is none.
const Target* TargetOf(const Source& source, const std::vector<Target>& targets);
Target* TargetOf(const Source& source, std::vector<Target>& targets);

/// Removes the sources that look like what an earlier run made of another source in the list: of the target's
/// extension, in the place and with the name that the other's result has, numbered or not. Files that the
/// user named stay, and so do, with `overwrite`, numbered neighbours of a file of the target's own kind: they
/// are not made then. Where the template of the names leaves open what only the loaded source tells, every
/// name that it could become counts. Returns how many were removed.
std::size_t PassOverResults(std::vector<Source>& sources, const std::vector<Target>& targets, Batch& batch,
                            NameTemplate& stems, bool overwrite);
