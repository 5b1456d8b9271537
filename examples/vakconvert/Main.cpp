#include "examples/vakconvert/Archives.h"
#include "examples/vakconvert/Batch.h"
#include "examples/vakconvert/Console.h"
#include "examples/vakconvert/Conversion.h"
#include "examples/vakconvert/Listing.h"
#include "examples/vakconvert/ModelTree.h"
#include "examples/vakconvert/Report.h"
#include "examples/vakconvert/ResultArchive.h"
#include "examples/vakconvert/ResultNames.h"
#include "examples/vakconvert/Settings.h"
#include "examples/vakconvert/TemplateWindow.h"
#include "examples/vakconvert/options/Names.h"
#include "examples/vakconvert/options/TargetSheet.h"
#include "examples/vakconvert/viewer/Viewing.h"
#include "files/FileIo.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/FileText.h"
#include "files/IoPlugins.h"
#include "framework/base/Application.h"
#include "framework/base/Exception.h"
#include "framework/base/StringTable.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <optional>

/// A console program shows the library's message boxes as lines of its error output.
class ConsoleApplication : public CWinApp
{
public:
    explicit ConsoleApplication(const Console& console) : m_console(console) {}

    int DoMessageBox(LPCTSTR text, UINT, UINT) override
    {
        m_console.PrintError(CString(text) + L"\n");
        return IDOK;
    }

private:
    const Console& m_console;
};

namespace {

constexpr LANGID kEnglish = 1033;
constexpr int kFailed = 1;
constexpr int kWrongCall = 2;

/// How many files were found and not converted.
struct PassedOver
{
    std::size_t others = 0; ///< of kinds that no target takes
    std::size_t results = 0;
};

std::vector<CString> RowOf(const Outcome& outcome)
{
    CString time;
    time.Format(L"%.0f ms", 1000 * outcome.seconds);
    const bool failed = !outcome.failure.IsEmpty();
    CString failure = outcome.failure;
    failure.Replace(L"\n", L" ");
    return {fileCompactPath(outcome.source, 48), outcome.contents,
            failed ? CString() : fileGetSizeText(outcome.bytes), time,
            failed ? L"failed: " + failure : L"-> " + fileStripPath(outcome.result)};
}

CString PassedOverText(const PassedOver& passedOver)
{
    CString text;
    if (passedOver.others > 0)
        text.AppendFormat(L", %d passed over: no target for their kind", static_cast<int>(passedOver.others));
    if (passedOver.results > 0)
        text.AppendFormat(L", %d passed over: results of an earlier run",
                          static_cast<int>(passedOver.results));
    return text;
}

int Summarise(const Console& console, const std::vector<Outcome>& outcomes, const PassedOver& passedOver)
{
    if (outcomes.empty()) {
        console.Print(L"nothing to convert" + PassedOverText(passedOver) + L"\n");
        return 0;
    }
    std::vector<std::vector<CString>> rows{{L"File", L"Holds", L"Written", L"Time", L"Result"}};
    for (const Outcome& outcome : outcomes)
        rows.push_back(RowOf(outcome));
    console.PrintTable(rows, {2, 3});
    const auto failed = std::count_if(outcomes.begin(), outcomes.end(),
                                      [](const Outcome& outcome) { return !outcome.failure.IsEmpty(); });
    CString line;
    line.Format(L"\n%d converted, %d failed", static_cast<int>(outcomes.size()) - static_cast<int>(failed),
                static_cast<int>(failed));
    console.Print(line + PassedOverText(passedOver) + L"\n");
    return failed == 0 ? 0 : kFailed;
}

Outcome ConvertOne(const Source& source, Target* target, Batch& batch, NameTemplate& stems,
                   ResultNames& names)
{
    Outcome outcome;
    outcome.source = ShownName(source);
    const CString destination = batch.FolderFor(source);
    if (!source.failure.IsEmpty())
        outcome.failure = source.failure;
    else if (target == nullptr)
        outcome.failure = L"no target for its kind";
    else if (target->isGivenUp)
        outcome.failure = L"given up: its options were cancelled";
    else if (destination.IsEmpty())
        outcome.failure = L"the path of its result would be too long";
    else
        outcome = Convert(source, *target, destination, stems, names);
    return outcome;
}

/// Converts the sources, in their order, and returns how many it found and passed over.
PassedOver ConvertSources(const Console& console, const Settings& settings, std::vector<Target>& targets,
                          Batch& batch, std::vector<Source>& sources, RunFacts& facts)
{
    NameTemplate stems(settings.name, facts.date);
    for (const TagProblem& problem : stems.Problems())
        console.PrintError(L"vakconvert: --name, " + TextOf(problem) + L"\n");
    PassedOver passedOver;
    passedOver.results = PassOverResults(sources, targets, batch, stems, settings.overwrite);
    ResultNames names(sources, settings.overwrite);
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const Source& source = sources[i];
        console.ShowProgress(i, sources.size(), FullName(source));
        Target* const target = TargetOf(source, targets);
        if (target == nullptr && !source.named && source.failure.IsEmpty())
            ++passedOver.others;
        else
            facts.outcomes.push_back(ConvertOne(source, target, batch, stems, names));
    }
    console.EndProgress();
    facts.passedOver = passedOver.others + passedOver.results;
    return passedOver;
}

int ConvertAll(const Console& console, Settings settings)
{
    const CString kept = ApplyNames(settings);
    if (!kept.IsEmpty())
        console.PrintError(L"vakconvert: what --options has kept is not used: " + kept + L"\n");
    std::optional<CWinApp> boxes;
    if (settings.ask)
        boxes.emplace(L"vakconvert"); // what a sheet has to say is for whoever sits in front of it
    std::vector<Target> targets;
    const ResultArchive archive(settings);
    Batch batch(archive.Placed());
    const Report report(settings);
    CString problem = archive.Problem();
    if (problem.IsEmpty())
        problem = batch.Problem();
    if (problem.IsEmpty())
        problem = report.Problem();
    if (problem.IsEmpty())
        problem = PrepareTargets(settings, targets);
    if (!problem.IsEmpty()) {
        console.PrintError(L"vakconvert: " + problem + L"\n");
        return kWrongCall;
    }
    Archives archives;
    std::vector<CString> problems;
    std::vector<Source> sources = FindSources(settings, batch, archives, problems);
    for (const CString& text : problems)
        console.PrintError(L"vakconvert: " + text + L"\n");

    const auto start = std::chrono::steady_clock::now();
    RunFacts facts;
    facts.date = CTime::GetCurrentTime();
    facts.destination = settings.destination;
    const PassedOver passedOver = ConvertSources(console, settings, targets, batch, sources, facts);
    const CString collected = archive.Make(facts.outcomes);
    facts.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const int result = Summarise(console, facts.outcomes, passedOver);
    if (!collected.IsEmpty())
        console.Print(L"archive: " + collected + L"\n");
    const bool isReported = report.Write(facts, console);
    return problems.empty() && isReported ? result : kFailed;
}

int EditTemplate(const Console& console, const CString& path)
{
    TemplateFile file;
    const CString problem = fileExists(path) ? ReadTemplate(path, file) : NewTemplate(path, file);
    if (!problem.IsEmpty()) {
        console.PrintError(L"vakconvert: " + problem + L"\n");
        return kWrongCall;
    }
    // Its questions are boxes, not lines.
    CWinApp application(L"vakconvert");
    TemplateWindow window(file);
    if (window.Open()) {
        application.m_pMainWnd = &window;
        window.RunModalLoop();
        return 0;
    }
    console.PrintError(L"vakconvert: the window cannot be shown\n");
    return kFailed;
}

int EditOptions(const Console& console, const CString& extension)
{
    Target target;
    const CString problem = PrepareTarget(extension, target);
    if (!problem.IsEmpty()) {
        console.PrintError(L"vakconvert: " + problem + L"\n");
        return kWrongCall;
    }
    const CWinApp boxes(L"vakconvert");
    TargetSheet sheet(target);
    if (sheet.DoModal() >= 0)
        return 0;
    console.PrintError(L"vakconvert: the options cannot be shown\n");
    return kFailed;
}

int RunWithPlugins(const Console& console, const Settings& settings)
{
    if (settings.listPlugins)
        ListPlugins(console);
    if (settings.listKinds)
        ListKinds(console);
    if (settings.listPlugins || settings.listKinds)
        return 0;
    if (!settings.optionsOf.IsEmpty())
        return EditOptions(console, settings.optionsOf);
    if (!settings.view.IsEmpty())
        return ViewFile(console, settings.view);
    return settings.tree ? ShowModels(console, settings) : ConvertAll(console, settings);
}

int Run(const Console& console, const std::vector<CString>& arguments)
{
    Settings settings;
    const CString problem = ParseCommandLine(arguments, settings);
    if (!problem.IsEmpty()) {
        console.PrintError(L"vakconvert: " + problem + L" (see --help)\n");
        return kWrongCall;
    }
    if (settings.help) {
        console.Print(UsageText());
        return 0;
    }
    if (!settings.editTemplate.IsEmpty())
        return EditTemplate(console, settings.editTemplate);
    if (!settings.preferences.IsEmpty())
        CFileIo::SetPreferencesFilePath(settings.preferences);
    RegisterIOPlugins(kIoPlugin3D);
    RegisterIOPlugins(kIoPluginBitmaps);
    const int result = RunWithPlugins(console, settings);
    FreeIOPlugins(kIoPluginBitmaps);
    FreeIOPlugins(kIoPlugin3D);
    return result;
}

} // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    const Console console;
    const ConsoleApplication application(console);
    vak::SetTextLanguage(kEnglish); // what the library has in English; the rest it tells in French
    const std::vector<CString> arguments(argv + 1, argv + argc);
    try {
        return Run(console, arguments);
    } catch (CException* failure) {
        failure->Delete();
    } catch (const std::exception&) {
    }
    console.PrintError(L"vakconvert: given up, for want of memory or because a plug-in failed\n");
    return kFailed;
}
