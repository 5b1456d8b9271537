#include "files/IoPlugins.h"

#include "files/FileKinds.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/IoFile.h"
#include "files/detail/PluginCall.h"
#include "files/detail/PluginTables.h"
#include "framework/base/Application.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/SystemMessage.h"
#include "framework/base/SystemModule.h"
#include "resources/Ids.h"

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

namespace {

using vak::detail::CallPlugin;
using vak::detail::LoadedPlugin;
using vak::detail::LoadedPluginKey;
using vak::detail::PluginCallResult;
using vak::detail::PluginTables;

/// What GetLibraryVersion and GetLoadErrorMsg are.
using NumberFunction = unsigned int (*)();

PluginTables& Tables()
{
    static PluginTables tables;
    return tables;
}

struct PluginsFolder
{
    CString application; ///< empty: the folder of the program that runs
    CString kept;        ///< empty until it is first asked for
};

PluginsFolder& TheFolder()
{
    static PluginsFolder folder;
    return folder;
}

unsigned int Major(unsigned int version)
{
    return version >> 16;
}

unsigned int Minor(unsigned int version)
{
    return version & 0xFFFF;
}

/// The entry point of a family, empty for what is no family of plug-ins.
CString EntryNameOfKind(unsigned int kind)
{
    if (kind == kIoPluginBitmaps)
        return L"InitBitmapParser";
    if (kind == kIoPlugin3D)
        return L"Init3DParser";
    return CString();
}

/// The property bits of the kinds that an entry point declares; all for one of the host's own naming.
unsigned int KindsOfEntryName(const CString& entryName)
{
    for (const unsigned int kind : {kIoPluginBitmaps, kIoPlugin3D})
        if (entryName == EntryNameOfKind(kind))
            return kind;
    return 0xFFFFFFFF;
}

IoPluginRefusal RefusalOf(const CString& path, const CString& entryName,
                          IoPluginRefusalReason reason = IoPluginRefusalReason::NotALibrary)
{
    IoPluginRefusal refusal;
    refusal.path = path;
    refusal.entryPoint = entryName;
    refusal.reason = reason;
    return refusal;
}

/// A library mapped without initialisation; nothing of it may stay mapped when it is loaded properly.
class MappedPlugin
{
public:
    explicit MappedPlugin(const CString& path) : m_module(vak::system::MapModule(path, m_error)) {}
    ~MappedPlugin()
    {
        if (m_module)
            vak::system::UnloadModule(m_module);
    }
    MappedPlugin(const MappedPlugin&) = delete;
    MappedPlugin& operator=(const MappedPlugin&) = delete;

    explicit operator bool() const { return m_module != nullptr; }
    HMODULE Module() const { return m_module; }
    DWORD Error() const { return m_error; }
    bool Exports(const CStringA& name) const { return vak::system::FindSymbol(m_module, name) != nullptr; }
    NumberFunction Number(const char* name) const
    {
        return reinterpret_cast<NumberFunction>(vak::system::FindSymbol(m_module, name));
    }

private:
    DWORD m_error = 0;
    HMODULE m_module;
};

/// Looks at the file without running its initialisation; false with the reason filled in when it is not a
/// plug-in for this interface.
bool Probe(IoPluginRefusal& refusal)
{
    const MappedPlugin mapped(refusal.path);
    if (!mapped) {
        refusal.reason = IoPluginRefusalReason::NotALibrary;
        refusal.systemError = mapped.Error();
        return false;
    }
    const NumberFunction getVersion = mapped.Number("GetLibraryVersion");
    if (!getVersion) {
        refusal.reason = IoPluginRefusalReason::NoVersion;
        return false;
    }
    CallPlugin([&] { refusal.version = getVersion(); });
    if (refusal.version != vak::kInterfaceVersion) {
        refusal.reason = IoPluginRefusalReason::WrongVersion;
        return false;
    }
    refusal.reason = IoPluginRefusalReason::NoEntryPoint;
    return mapped.Exports(CStringA(refusal.entryPoint));
}

/// The words of a plug-in that cannot be loaded, empty when it has none.
CString OwnLoadErrorMessage(const CString& path)
{
    CString message;
    const MappedPlugin mapped(path);
    if (!mapped)
        return message;
    if (const NumberFunction getMessage = mapped.Number("GetLoadErrorMsg")) {
        unsigned int textId = 0;
        CallPlugin([&] { textId = getMessage(); });
        vak::system::LoadModuleText(message, mapped.Module(), textId);
    }
    return message;
}

bool LoadProbed(IoPluginRefusal& refusal, _DllInfo& info)
{
    const HMODULE module = vak::system::LoadModule(refusal.path, refusal.systemError);
    if (!module) {
        refusal.reason = IoPluginRefusalReason::LoadFailed;
        refusal.message = OwnLoadErrorMessage(refusal.path);
        return false;
    }
    const auto entryPoint =
        reinterpret_cast<IoInitCallback>(vak::system::FindSymbol(module, CStringA(refusal.entryPoint)));
    if (!entryPoint) {
        vak::system::UnloadModule(module);
        refusal.reason = IoPluginRefusalReason::NoEntryPoint;
        return false;
    }
    info.module = module;
    info.entryPoint = entryPoint;
    return true;
}

void TellUser(const IoPluginRefusal& refusal)
{
    CString text = refusal.message;
    if (refusal.reason == IoPluginRefusalReason::WrongVersion)
        text.Format(UINT{IDS_PLUGIN_VERSION}, refusal.path.GetString(), Major(refusal.version),
                    Minor(refusal.version), Major(vak::kInterfaceVersion), Minor(vak::kInterfaceVersion));
    if (!text.IsEmpty())
        AfxMessageBox(text, MB_OK | MB_ICONEXCLAMATION);
}

/// Has the plug-in declare its kinds and registers those of the family; false with the reason filled in when
/// it declares none at all.
bool RegisterKinds(IoInitCallback entryPoint, unsigned int kind, IoPluginRefusal& refusal)
{
    CFileExtArray kinds;
    int declared = 0;
    const PluginCallResult call = CallPlugin([&] { declared = entryPoint(IoPluginDeclare, &kinds); });
    if (call.threw) {
        refusal.reason = IoPluginRefusalReason::EntryPointThrew;
        refusal.message = call.message;
        return false;
    }
    refusal.reason = IoPluginRefusalReason::DeclaredNothing;
    if (!declared || kinds.IsEmpty())
        return false;
    for (INT_PTR index = 0; index < kinds.GetSize(); ++index) {
        CFileExt ext = kinds[index];
        if (!(ext.GetProperties() & kind))
            continue;
        ext.m_initCallback = entryPoint;
        fileRegisterFile(ext);
    }
    return true;
}

void RegisterPlugin(const CString& path, const CString& entryName, unsigned int kind)
{
    _DllInfo info;
    if (!LoadPlugin(path, entryName, info))
        return;
    IoPluginRefusal refusal = RefusalOf(path, entryName);
    if (RegisterKinds(info.entryPoint, kind, refusal))
        return;
    Tables().Refuse(refusal);
    FreePlugin(info.module, entryName, 1);
}

/// The classes of the registered kinds that came from that entry point. One function may stand behind two
/// entry names, hence the family.
std::vector<unsigned int> ClassesOf(const LoadedPlugin& plugin, const CString& entryName)
{
    unsigned int count = 0;
    const std::unique_ptr<CFileExt, void (*)(CFileExt*)> kinds(fileGetRegisteredFiles(count),
                                                               &fileFreeRegisteredFiles);
    std::vector<unsigned int> classes;
    for (const CFileExt& kind : std::span(kinds.get(), count))
        if (kind.GetInitIoCallback() == plugin.entryPoint &&
            kind.GetProperties() & KindsOfEntryName(entryName))
            classes.push_back(kind.GetClass());
    return classes;
}

std::vector<CString> PluginFiles()
{
    std::vector<CString> paths;
    IoFile search;
    CString found;
    int matched = 0;
    search.FindFileOpen(GetPluginsDirectory(0) + L"*", L"*.dll");
    while (search.FindFileNext(found, matched, 0))
        if (matched && found.Right(1) != L"\\")
            paths.push_back(found);
    search.FindFileClose();
    std::sort(paths.begin(), paths.end(),
              [](const CString& a, const CString& b) { return a.CompareNoCase(b) < 0; });
    return paths;
}

} // namespace

void RegisterIOPlugins(unsigned int kind)
{
    const CString entryName = EntryNameOfKind(kind);
    if (entryName.IsEmpty())
        return;
    for (const CString& path : PluginFiles())
        RegisterPlugin(path, entryName, kind);
}

void FreeIOPlugins(unsigned int kind)
{
    const CString entryName = EntryNameOfKind(kind);
    if (!entryName.IsEmpty())
        FreePlugins(entryName);
}

CString GetPluginsDirectory(int create)
{
    PluginsFolder& folder = TheFolder();
    if (!folder.kept.IsEmpty())
        return folder.kept;
    const CString& application = folder.application;
    folder.kept = (application.IsEmpty() ? vak::system::ApplicationFolder() : application) + L"Plugins\\";
    folder.kept.MakeLower();
    if (create && !fileDirectoryExists(folder.kept))
        fileCreateDirectory(folder.kept, 1);
    return folder.kept;
}

void vak::detail::RestartPluginsDirectory(const CString& applicationFolder)
{
    TheFolder() = PluginsFolder{applicationFolder, CString()};
}

int LoadPlugin(const CString& path, const CString& entryName, _DllInfo& info)
{
    info = _DllInfo();
    if (Tables().IsRefused(path, entryName))
        return 0;
    IoPluginRefusal refusal = RefusalOf(path, entryName);
    if (!Probe(refusal) || !LoadProbed(refusal, info)) {
        Tables().Refuse(refusal);
        TellUser(refusal);
        return 0;
    }
    Tables().Raise({info.module, entryName}, path, info.entryPoint);
    return 1;
}

void FreePlugin(HMODULE module, const CString& entryName, int refuse)
{
    LoadedPlugin plugin;
    if (!Tables().Lower({module, entryName}, plugin))
        return;
    // A record that stayed would point into a library that is gone.
    if (plugin.count == 0)
        for (const unsigned int fileClass : ClassesOf(plugin, entryName))
            fileUnregisterFile(CString(), fileClass);
    if (refuse)
        Tables().Refuse(RefusalOf(plugin.path, entryName, IoPluginRefusalReason::FreedByHost));
    vak::system::UnloadModule(module);
}

void FreePlugins(const CString& entryName)
{
    for (const LoadedPluginKey& key : Tables().Loaded())
        if (key.entryName == entryName)
            FreePlugin(key.module, entryName, 0);
}

int GetPluginRefusal(unsigned int index, IoPluginRefusal& refusal)
{
    const auto& refusals = Tables().Refusals();
    if (index >= refusals.size())
        return 0;
    refusal = refusals[index];
    return 1;
}

CString GetPluginRefusalText(const IoPluginRefusal& refusal)
{
    CString text;
    CString systemText = refusal.systemError ? vak::system::ErrorText(refusal.systemError) : CString();
    // Some of the system's sentences leave the file to whoever shows them.
    systemText.Replace(L"%1", refusal.path.Mid(refusal.path.ReverseFind(L'\\') + 1));
    switch (refusal.reason) {
    case IoPluginRefusalReason::NotALibrary:
        text.Format(UINT{IDS_PLUGIN_NOT_A_LIBRARY}, systemText.GetString());
        break;
    case IoPluginRefusalReason::NoVersion:
        text.LoadString(IDS_PLUGIN_NO_VERSION);
        break;
    case IoPluginRefusalReason::WrongVersion:
        text.Format(UINT{IDS_PLUGIN_WRONG_VERSION}, Major(refusal.version), Minor(refusal.version),
                    Major(vak::kInterfaceVersion), Minor(vak::kInterfaceVersion));
        break;
    case IoPluginRefusalReason::NoEntryPoint:
        text.Format(UINT{IDS_PLUGIN_NO_ENTRY_POINT}, refusal.entryPoint.GetString());
        break;
    case IoPluginRefusalReason::LoadFailed:
        text.Format(UINT{IDS_PLUGIN_LOAD_FAILED}, systemText.GetString());
        break;
    case IoPluginRefusalReason::DeclaredNothing:
        text.LoadString(IDS_PLUGIN_DECLARED_NOTHING);
        break;
    case IoPluginRefusalReason::EntryPointThrew:
        text.LoadString(IDS_PLUGIN_THREW);
        break;
    case IoPluginRefusalReason::FreedByHost:
        text.LoadString(IDS_PLUGIN_FREED);
        break;
    }
    return refusal.message.IsEmpty() ? text : text + L" (" + refusal.message + L")";
}

int GetLoadedPlugin(unsigned int index, IoPluginInfo& info)
{
    const std::vector<LoadedPluginKey> loaded = Tables().Loaded();
    if (index >= loaded.size())
        return 0;
    LoadedPlugin plugin;
    Tables().Find(loaded[index], plugin);
    const CString& entryName = loaded[index].entryName;
    info = IoPluginInfo{plugin.path, entryName, loaded[index].module, plugin.count,
                        static_cast<int>(ClassesOf(plugin, entryName).size())};
    return 1;
}
