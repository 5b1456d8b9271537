#pragma once

#include "examples/vakconvert/Console.h"
#include "examples/vakconvert/Settings.h"
#include "examples/vakconvert/Tags.h"
#include "examples/vakconvert/TemplateFile.h"

/// The report of a run, expanded from the template that the command line names.
class Report
{
public:
    /// Reads the template before anything is converted: a run is not to end with one that cannot be read.
    explicit Report(const Settings& settings);

    /// Why there can be no report; empty when all is well, also when none is wanted.
    const CString& Problem() const { return m_problem; }
    /// Writes it, if one is wanted, and says where, and what in the template is not known. A file that is
    /// there keeps its name, unless the user named it and said --overwrite. Returns false when it cannot be
    /// written.
    bool Write(const RunFacts& facts, const Console& console) const;

private:
    CString FreePath() const;

    TemplateFile m_template;
    CString m_problem;
    CString m_path;
    bool m_mayReplace = false;
};

/// A template expanded for a run: the bytes of the report. `problems` gets what in it is not known. Returns
/// an empty text, or why there is none.
CString ExpandReport(const TemplateFile& file, const RunFacts& facts, std::string& report,
                     std::vector<TagProblem>& problems);
