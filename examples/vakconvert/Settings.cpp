#include "examples/vakconvert/Settings.h"

#include "files/DirectoryStack.h"
#include "files/FilePath.h"

namespace {

struct Switch
{
    const wchar_t* name;
    const wchar_t* shortName;
    bool Settings::*flag;
};

constexpr Switch kSwitches[] = {
    {L"--recurse", L"-r", &Settings::recurse},
    {L"--overwrite", L"-y", &Settings::overwrite},
    {L"--no-overwrite", L"", &Settings::noOverwrite},
    {L"--ask", L"", &Settings::ask},
    {L"--recreate-tree", L"", &Settings::recreateTree},
    {L"--flat", L"", &Settings::flat},
    {L"--beside", L"", &Settings::beside},
    {L"--save-options", L"", &Settings::saveOptions},
    {L"--list-kinds", L"", &Settings::listKinds},
    {L"--list-plugins", L"", &Settings::listPlugins},
    {L"--tree", L"", &Settings::tree},
    {L"--help", L"-h", &Settings::help},
};

bool TakeSwitch(const CString& argument, Settings& settings)
{
    for (const Switch& known : kSwitches) {
        if (argument == known.name || (*known.shortName != 0 && argument == known.shortName)) {
            settings.*known.flag = true;
            return true;
        }
    }
    return false;
}

struct PathOption
{
    const wchar_t* name;
    CString Settings::*path;
};

constexpr PathOption kPaths[] = {
    {L"--preferences", &Settings::preferences},
    {L"--zip", &Settings::zip},
    {L"--report", &Settings::report},
    {L"--report-out", &Settings::reportOut},
    {L"--edit-template", &Settings::editTemplate},
    {L"--view", &Settings::view},
};

bool TakePath(const CString& name, const CString& value, Settings& settings)
{
    for (const PathOption& known : kPaths) {
        if (name == known.name) {
            settings.*known.path = FullPath(value);
            return true;
        }
    }
    return false;
}

/// Whether the option takes any text, none included.
bool TakesAnyText(const CString& name)
{
    return name == L"--name" || name == L"-n";
}

/// An extension with its dot, in lower case.
CString Extension(CString text, CString& problem)
{
    if (text.IsEmpty() || text.FindOneOf(L"\\/:*?") >= 0)
        problem.Format(L"\"%s\" is no extension", text.GetString());
    text.MakeLower();
    return text.Left(1) == L"." ? text : L"." + text;
}

/// Takes an argument that has a value; false when `name` is none of these. `problem` tells of a bad value.
bool TakeValue(const CString& name, const CString& value, Settings& settings, CString& problem)
{
    if (name == L"--to" || name == L"-t") {
        settings.targets.push_back(Extension(value, problem));
        return true;
    }
    if (name == L"--options") {
        settings.optionsOf = Extension(value, problem);
        return true;
    }
    if (name == L"--dest" || name == L"-d") {
        settings.destination = FullPath(value);
        fileSlashTerminate(settings.destination);
        return true;
    }
    if (name == L"--subfolder" || name == L"-s") {
        settings.subfolder = SubfolderName(value);
        if (settings.subfolder.IsEmpty())
            problem.Format(L"\"%s\" is no name of a folder below each source's own", value.GetString());
        return true;
    }
    if (TakePath(name, value, settings))
        return true;
    if (name == L"--name" || name == L"-n") {
        settings.name = value;
        settings.nameGiven = true;
        return true;
    }
    if (name != L"--option" && name != L"-o")
        return false;
    const int equals = value.Find(L'=');
    if (equals <= 0)
        problem.Format(L"an option is NAME=VALUE, not \"%s\"", value.GetString());
    else
        settings.options.push_back({value.Left(equals), value.Mid(equals + 1)});
    return true;
}

/// Whether the rules for the results go together.
CString CheckDestination(const Settings& settings)
{
    const bool hasFolder = !settings.destination.IsEmpty() || !settings.zip.IsEmpty();
    const int places = settings.beside + !settings.destination.IsEmpty() + !settings.zip.IsEmpty() +
                       !settings.subfolder.IsEmpty();
    if (places > 1)
        return L"results go to one place: --dest, --zip, --subfolder or --beside";
    if (settings.overwrite && settings.noOverwrite)
        return L"--overwrite and --no-overwrite exclude each other";
    if (settings.recreateTree && settings.flat)
        return L"--recreate-tree and --flat exclude each other";
    if ((settings.recreateTree || settings.flat) && !hasFolder)
        return L"--recreate-tree and --flat are about a destination folder or archive (--dest, --zip)";
    return {};
}

/// Whether anything was said about results.
bool WantsResults(const Settings& settings)
{
    const bool hasPlace = settings.beside || settings.recreateTree || settings.flat ||
                          !settings.destination.IsEmpty() || !settings.zip.IsEmpty() ||
                          !settings.subfolder.IsEmpty();
    const bool hasReport = !settings.report.IsEmpty() || !settings.reportOut.IsEmpty();
    return hasPlace || hasReport || settings.ask || !settings.targets.empty() || !settings.name.IsEmpty() ||
           !settings.options.empty();
}

CString Complete(Settings& settings)
{
    settings.recurse = settings.recurse || settings.recreateTree;
    const bool hasWindow =
        !settings.editTemplate.IsEmpty() || !settings.view.IsEmpty() || !settings.optionsOf.IsEmpty();
    if (settings.help || settings.listKinds || settings.listPlugins || hasWindow)
        return {};
    if (settings.sources.empty())
        return L"no source was given";
    if (settings.tree)
        return WantsResults(settings) ? L"--tree converts nothing: no option about results goes with it"
                                      : L"";
    if (settings.targets.empty())
        return L"no target kind was given (--to .stl)";
    if (!settings.reportOut.IsEmpty() && settings.report.IsEmpty())
        return L"--report-out needs a template (--report)";
    return CheckDestination(settings);
}

} // namespace

/// The library knows backslashes only; users write slashes too, and the system takes both.
CString FullPath(CString path)
{
    path.Replace(L'/', L'\\');
    return fileMakeAbsolutePath(fileGetCurrentDirectory(), path);
}

/// A name below any folder; empty when the text is none. The system drops dots and blanks from the ends of
/// names: such a folder would not be known again.
CString SubfolderName(CString text)
{
    text.Replace(L'/', L'\\');
    CString name = fileMakeAbsolutePath(CString(), text);
    fileRemoveSlashTermination(name);
    int at = 0;
    for (CString part = name.Tokenize(L"\\", at); at >= 0; part = name.Tokenize(L"\\", at)) {
        if (CString(L". ").Find(part[part.GetLength() - 1]) >= 0)
            return {};
    }
    const bool isBelow = name.Left(1) != L"\\" && name.Find(L"\\\\") < 0 && name.Find(L':') < 0;
    return isBelow ? name : CString();
}

CString ParseCommandLine(const std::vector<CString>& arguments, Settings& settings)
{
    bool onlySources = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const CString& argument = arguments[i];
        // Where a script's variable is empty, the current directory is not what was meant.
        if (argument.IsEmpty())
            return L"a source has an empty name";
        if (onlySources || argument.Left(1) != L"-") {
            settings.sources.push_back(FullPath(argument));
            continue;
        }
        if (argument == L"--") {
            onlySources = true;
            continue;
        }
        if (TakeSwitch(argument, settings))
            continue;
        CString problem;
        const CString value = i + 1 < arguments.size() ? arguments[i + 1] : CString();
        if (!TakeValue(argument, value, settings, problem)) {
            problem.Format(L"\"%s\" is no option of this program", argument.GetString());
            return problem;
        }
        ++i;
        if (i == arguments.size() || (value.IsEmpty() && !TakesAnyText(argument)))
            problem.Format(L"%s needs a value", argument.GetString());
        if (!problem.IsEmpty())
            return problem;
    }
    return Complete(settings);
}

CString UsageText()
{
    return L"vakconvert: converts 3-D models and images through the format plug-ins in the Plugins folder\n"
           L"\n"
           L"  vakconvert --to KIND [--to KIND] [options] SOURCE...\n"
           L"  vakconvert --tree [-r] SOURCE...\n"
           L"  vakconvert --view FILE\n"
           L"\n"
           L"  SOURCE               a file, a folder, or a pattern such as models\\*.obj; archives are "
           L"folders:\n"
           L"                       pack.zip, pack.zip\\models, pack.zip\\models\\*.obj; in plain pieces\n"
           L"                       pack.zip.001; a shortcut (.lnk) stands for what it leads to\n"
           L"  -t, --to KIND        extension to convert to; one for models and one for images may be given\n"
           L"  -r, --recurse        visits the folders below as well\n"
           L"  -d, --dest FOLDER    where results go, below it in the folders of their sources\n"
           L"      --zip ARCHIVE    collects the results in a new archive, as --dest does in a folder\n"
           L"      --recreate-tree  with --dest: visits the folders below and rebuilds them there\n"
           L"      --flat           with --dest: all results in that folder itself\n"
           L"  -s, --subfolder NAME results go to this folder below each source's own\n"
           L"      --beside         results go beside their sources, as they do without these options\n"
           L"  -y, --overwrite      replaces files that exist; else a name that is taken gets a number\n"
           L"      --no-overwrite   does not, whatever --options has kept\n"
           L"  -n, --name TEMPLATE  names results by tags: \"<file(shortname)>_<vertices>\"; see below\n"
           L"      --report FILE    writes a report from a template, .txt or .rtf, in the destination "
           L"folder\n"
           L"                       (without --dest in the current one)\n"
           L"      --report-out F   writes it as this file\n"
           L"      --edit-template F  opens a report template in a window\n"
           L"  -o, --option N=V     sets an option of the target format, such as binary=0 or quality=80\n"
           L"      --options KIND   shows the options of a format, and names and folders of results, in a "
           L"sheet;\n"
           L"                       what it keeps holds for later runs that do not say otherwise\n"
           L"      --ask            has the format show its options before the first file is written\n"
           L"      --save-options   keeps these options for later runs\n"
           L"      --preferences F  keeps them in this file\n"
           L"      --tree           shows what the models are made of instead of converting them\n"
           L"      --view FILE      shows an image, or a model as a wireframe, in a window; the right button "
           L"has\n"
           L"                       a menu, Ctrl+S saves the selected part of an image\n"
           L"      --list-kinds     shows what can be read and written, and the options\n"
           L"      --list-plugins   shows the plug-ins, and why one was refused\n"
           L"\n"
           L"Tags of names: <file>, as in <file(shortname)> or <file(topdir)>; <kind>, <index>, <date> or\n"
           L"<date(d)>; <vertices>, <faces>, <groups>, <materials> of models; <width>, <height> of images.\n"
           L"Tags of reports are in the menu of --edit-template.\n"
           L"\n"
           L"The exit code is 0 when nothing failed, 1 when a source is missing or something failed, 2 when "
           L"the "
           L"call is wrong.\n";
}
