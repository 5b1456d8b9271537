#include "core/HashTable.h"
#include "examples/vakconvert/Console.h"
#include "examples/vakconvert/Conversion.h"
#include "examples/vakconvert/Listing.h"
#include "examples/vakconvert/Settings.h"
#include "files/FileIo.h"
#include "files/FileKinds.h"
#include "files/FilePath.h"
#include "files/FileText.h"
#include "files/IoPlugins.h"
#include "framework/base/Application.h"
#include "framework/base/Exception.h"
#include "framework/base/StringTable.h"

#include <algorithm>
#include <exception>

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

const Target* TargetOf(const Source& source, const std::vector<Target>& targets)
{
    const unsigned int family = fileGetKindOf(source.path);
    for (const Target& target : targets) {
        if ((target.family & family) != 0)
            return &target;
    }
    return nullptr;
}

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

int Summarise(const Console& console, const std::vector<Outcome>& outcomes, std::size_t passedOver)
{
    std::vector<std::vector<CString>> rows{{L"File", L"Holds", L"Written", L"Time", L"Result"}};
    for (const Outcome& outcome : outcomes)
        rows.push_back(RowOf(outcome));
    console.PrintTable(rows, {2, 3});
    const auto failed = std::count_if(outcomes.begin(), outcomes.end(),
                                      [](const Outcome& outcome) { return !outcome.failure.IsEmpty(); });
    CString line;
    line.Format(L"\n%d converted, %d failed", static_cast<int>(outcomes.size()) - static_cast<int>(failed),
                static_cast<int>(failed));
    if (passedOver > 0)
        line.AppendFormat(L", %d passed over: no target for their kind", static_cast<int>(passedOver));
    console.Print(line + L"\n");
    return failed == 0 ? 0 : kFailed;
}

/// `made` holds the results of this run, lower-case: a later source never replaces an earlier one's result.
Outcome ConvertOne(const Source& source, const Target* target, const Settings& settings,
                   CHashTable<CString>& made)
{
    Outcome outcome;
    outcome.source = source.folder + fileStripPath(source.path);
    if (target == nullptr) {
        outcome.failure = L"no target for its kind";
        return outcome;
    }
    const CString destination =
        settings.destination.IsEmpty() ? fileStripName(source.path) : settings.destination + source.folder;
    CString result = destination + ResultName(source.path, *target);
    result.MakeLower();
    if (made.IsFound(result)) {
        outcome.failure = ResultName(source.path, *target) + L" is already the result of another source";
        return outcome;
    }
    outcome = Convert(source, *target, destination, settings.overwrite);
    if (outcome.failure.IsEmpty())
        made.Insert(result);
    return outcome;
}

int ConvertAll(const Console& console, const Settings& settings)
{
    std::vector<Target> targets;
    const CString problem = PrepareTargets(settings, targets);
    if (!problem.IsEmpty()) {
        console.PrintError(L"vakconvert: " + problem + L"\n");
        return kWrongCall;
    }
    std::vector<CString> problems;
    const std::vector<Source> sources = FindSources(settings, problems);
    for (const CString& text : problems)
        console.PrintError(L"vakconvert: " + text + L"\n");

    std::vector<Outcome> outcomes;
    std::size_t passedOver = 0;
    CHashTable<CString> made;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const Source& source = sources[i];
        console.ShowProgress(i, sources.size(), source.path);
        const Target* target = TargetOf(source, targets);
        if (target == nullptr && !source.named)
            ++passedOver;
        else
            outcomes.push_back(ConvertOne(source, target, settings, made));
    }
    console.EndProgress();
    const int result = outcomes.empty() ? 0 : Summarise(console, outcomes, passedOver);
    if (outcomes.empty())
        console.Print(L"nothing to convert\n");
    return problems.empty() ? result : kFailed;
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
    if (!settings.preferences.IsEmpty())
        CFileIo::SetPreferencesFilePath(settings.preferences);
    RegisterIOPlugins(kIoPlugin3D);
    RegisterIOPlugins(kIoPluginBitmaps);
    int result = 0;
    if (settings.listPlugins)
        ListPlugins(console);
    if (settings.listKinds)
        ListKinds(console);
    if (!settings.listPlugins && !settings.listKinds)
        result = ConvertAll(console, settings);
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
