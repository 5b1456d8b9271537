#include "examples/vakconvert/Target.h"

#include "examples/sdk/ImageParser.h"
#include "examples/sdk/MeshParser.h"
#include "examples/vakconvert/Number.h"
#include "files/FileIo.h"
#include "files/FileKinds.h"
#include "files/IoPlugins.h"

#include <cmath>

namespace {

FormatOptions OptionsOfParser(CFileIo& io)
{
    CFileParser* parser = io.InitParser();
    if (parser == nullptr)
        return {};
    if (io.GetKindOf() & kIoPlugin3D)
        return static_cast<CMeshParser*>(parser)->GetOptions();
    return static_cast<CImageParser*>(parser)->GetOptions();
}

/// Writes the value into the parameters; false when the text is no value of the option.
bool SetOption(const FormatOption& option, const CString& text, CCustomData& parameters)
{
    double value = 0;
    if (!ParseNumber(text, value) || value < option.minimum || value > option.maximum)
        return false;
    if (option.kind != FormatOption::Kind::Float && value != std::floor(value))
        return false;
    SetFormatOption(parameters, option, value);
    return true;
}

/// Sets one option in every target that knows it.
CString ApplyOption(const Settings::Option& wanted, std::vector<Target>& targets)
{
    CString problem;
    bool known = false;
    for (Target& target : targets) {
        for (const FormatOption& option : target.options) {
            if (wanted.name.CompareNoCase(option.name) != 0)
                continue;
            known = true;
            if (!SetOption(option, wanted.value, target.parameters))
                problem.Format(L"%s takes %g to %g, not \"%s\"", option.name, option.minimum, option.maximum,
                               wanted.value.GetString());
        }
    }
    if (!known)
        problem.Format(L"no target kind has an option \"%s\" (see --list-kinds)", wanted.name.GetString());
    return problem;
}

CString KeepOptions(const std::vector<Target>& targets)
{
    for (const Target& target : targets) {
        const CFileIo io(target.fileClass, FILE_PARSER_SILENT, nullptr);
        if (!io.SaveIoParameters(0, target.parameters, target.fileClass))
            return L"the options cannot be written to " + io.GetPreferencesFilePath();
    }
    return {};
}

} // namespace

CString PrepareTarget(const CString& extension, Target& target)
{
    CString problem;
    target.extension = extension;
    target.fileClass = fileGetClass(L"x" + extension);
    CFileIo io(target.fileClass, FILE_PARSER_SILENT, nullptr);
    if (target.fileClass == 0 || io.InitParser() == nullptr) {
        problem.Format(L"no plug-in writes \"%s\" (see --list-kinds)", extension.GetString());
        return problem;
    }
    target.family = io.GetKindOf();
    target.parameters = io.GetCustomData();
    target.options = OptionsOfParser(io);
    return problem;
}

FormatOptions OptionsOf(unsigned int fileClass, bool loading)
{
    CFileIo io(fileClass, FILE_PARSER_SILENT | (loading ? FILE_PARSER_LOADING : 0u), nullptr);
    return OptionsOfParser(io);
}

CString PrepareTargets(const Settings& settings, std::vector<Target>& targets)
{
    for (const CString& extension : settings.targets) {
        const CString problem = PrepareTarget(extension, targets.emplace_back());
        if (!problem.IsEmpty())
            return problem;
        targets.back().asks = settings.ask;
        for (std::size_t i = 0; i + 1 < targets.size(); ++i) {
            if (targets[i].family == targets.back().family)
                return targets[i].extension + L" and " + extension + L" are of the same family";
        }
    }
    for (const Settings::Option& option : settings.options) {
        const CString problem = ApplyOption(option, targets);
        if (!problem.IsEmpty())
            return problem;
    }
    return settings.saveOptions ? KeepOptions(targets) : CString();
}
