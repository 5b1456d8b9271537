#include "examples/vakconvert/Report.h"

#include "examples/vakconvert/Expansion.h"
#include "files/DirectoryStack.h"
#include "files/FileNames.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"

namespace {

CString ExpandRich(const TemplateFile& file, CTags& tags, std::string& report,
                   std::vector<TagProblem>& problems)
{
    HiddenRichText hidden;
    CRichEditCtrl* const control = hidden.Control();
    if (control == nullptr)
        return L"this system has no control for rich text";
    if (!SetDocument(*control, file.document))
        return file.path + L" is no rich text";
    problems = FindTagProblems(tags, PlainTextOf(*control));
    ExpandRichText(tags, *control);
    report = DocumentOf(*control);
    return report.empty() ? CString(L"the report could not be made") : CString();
}

} // namespace

CString ExpandReport(const TemplateFile& file, const RunFacts& facts, std::string& report,
                     std::vector<TagProblem>& problems)
{
    CTags tags(ConditionalTags());
    RegisterReportTags(tags, facts);
    if (file.isRich)
        return ExpandRich(file, tags, report, problems);
    problems = FindTagProblems(tags, file.text);
    report = EncodeText(ExpandText(tags, file.text), file.encoding);
    return {};
}

Report::Report(const Settings& settings)
{
    if (settings.report.IsEmpty())
        return;
    m_problem = ReadTemplate(settings.report, m_template);
    const CString folder = settings.destination.IsEmpty() ? fileGetCurrentDirectory() : settings.destination;
    m_path = settings.reportOut.IsEmpty() ? fileMakeAbsolutePath(folder, fileStripPath(settings.report))
                                          : settings.reportOut;
    m_mayReplace =
        settings.overwrite && !settings.reportOut.IsEmpty() && m_path.CompareNoCase(settings.report) != 0;
    if (m_problem.IsEmpty() && fileGetExtension(m_path).CompareNoCase(fileGetExtension(settings.report)) != 0)
        m_problem = L"the report is of its template's kind, " + fileGetExtension(settings.report);
}

CString Report::FreePath() const
{
    return m_mayReplace ? m_path : fileCreateUniqueName(m_path, 1);
}

bool Report::Write(const RunFacts& facts, const Console& console) const
{
    if (m_path.IsEmpty())
        return true;
    std::string report;
    std::vector<TagProblem> problems;
    const CString path = FreePath();
    CString failure = ExpandReport(m_template, facts, report, problems);
    for (const TagProblem& problem : problems)
        console.PrintError(L"vakconvert: " + fileStripPath(m_template.path) + L", " + TextOf(problem) +
                           L"\n");
    if (failure.IsEmpty()) {
        fileCreateDirectory(fileStripName(path), 1);
        failure = WriteWholeFile(path, report);
    }
    if (!failure.IsEmpty())
        console.PrintError(L"vakconvert: " + failure + L"\n");
    else
        console.Print(L"report: " + path + L"\n");
    return failure.IsEmpty();
}
