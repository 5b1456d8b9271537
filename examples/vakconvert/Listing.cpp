#include "examples/vakconvert/Listing.h"

#include "examples/vakconvert/Target.h"
#include "files/FileKinds.h"
#include "files/FilePath.h"
#include "files/IoPlugins.h"

#include <algorithm>
#include <memory>

namespace {

struct FreeKinds
{
    void operator()(CFileExt* kinds) const { fileFreeRegisteredFiles(kinds); }
};

CString DescribeOptions(unsigned int fileClass)
{
    CString text;
    for (const FormatOption& option : OptionsOf(fileClass, false)) {
        CString one;
        one.Format(L"%s=%g (%g to %g, %s)", option.name, option.defaultValue, option.minimum, option.maximum,
                   option.description);
        text += (text.IsEmpty() ? L"" : L"; ") + one;
    }
    return text;
}

} // namespace

void ListKinds(const Console& console)
{
    unsigned int count = 0;
    const std::unique_ptr<CFileExt, FreeKinds> kinds(fileGetRegisteredFiles(count));
    std::vector<std::vector<CString>> rows{{L"Kind", L"Extensions", L"Reads", L"Writes", L"Options"}};
    for (unsigned int i = 0; i < count; ++i) {
        const CFileExt& kind = kinds.get()[i];
        const bool reads = kind.GetLoader() == vak::kFileCodePlugin;
        const bool writes = kind.GetSaver() == vak::kFileCodePlugin;
        if (!reads && !writes)
            continue;
        CString extensions = kind.GetExtension();
        extensions.Replace(L"|", L" ");
        rows.push_back({kind.GetDescription(), extensions, reads ? L"yes" : L"", writes ? L"yes" : L"",
                        writes ? DescribeOptions(kind.GetClass()) : CString()});
    }
    console.PrintTable(rows);
}

void ListPlugins(const Console& console)
{
    console.Print(L"Plug-ins in " + GetPluginsDirectory(0) + L"\n");
    std::vector<std::vector<CString>> rows{{L"Plug-in", L"Entry point", L"State"}};
    std::vector<CString> loaded;
    IoPluginInfo info;
    for (unsigned int i = 0; GetLoadedPlugin(i, info); ++i) {
        CString state;
        state.Format(L"loaded, %d kinds", info.kinds);
        rows.push_back({fileStripPath(info.path), info.entryPoint, state});
        loaded.push_back(info.path);
    }
    IoPluginRefusal refusal;
    for (unsigned int i = 0; GetPluginRefusal(i, refusal); ++i) {
        // Every plug-in is asked for both families; that it has just one of them is no news.
        const bool otherFamily = refusal.reason == IoPluginRefusalReason::NoEntryPoint &&
                                 std::find(loaded.begin(), loaded.end(), refusal.path) != loaded.end();
        if (!otherFamily)
            rows.push_back({fileStripPath(refusal.path), refusal.entryPoint,
                            L"refused: " + GetPluginRefusalText(refusal)});
    }
    console.PrintTable(rows);
}
