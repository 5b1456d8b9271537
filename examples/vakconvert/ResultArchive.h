#pragma once

#include "examples/vakconvert/Outcome.h"
#include "examples/vakconvert/Settings.h"
#include "examples/vakconvert/WorkFolder.h"

#include <optional>
#include <vector>

class CZipArchive;

/// The archive that collects the results of a run when one is wanted (--zip). Until then they lie in a
/// temporary folder, which goes with the object.
class ResultArchive
{
public:
    explicit ResultArchive(const Settings& settings);

    /// Why there can be no archive; empty when all is well, also when none is wanted.
    CString Problem() const;
    /// The settings with the place where the results are made.
    const Settings& Placed() const { return m_settings; }
    /// Makes the archive of all results and returns its path; without a result there is none. One that is
    /// there keeps its name unless --overwrite was said, and always when a source runs through it. It appears
    /// when it is complete: else every result becomes a failure.
    CString Make(std::vector<Outcome>& outcomes) const;

private:
    CString FreePath() const;
    void Add(CZipArchive& zip, const CString& below) const;
    CString Write(const CString& path) const;

    Settings m_settings;
    std::optional<WorkFolder> m_work; ///< none when no archive is wanted
};
