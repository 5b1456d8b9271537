#include "files/IoPlugins.h"

#include "files/FileIo.h"
#include "files/FileKinds.h"
#include "files/FileSystem.h"
#include "files/detail/PluginTables.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/SystemMessage.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <vector>

namespace fs = std::filesystem;
using vak::test::MessageRecorder;
using vak::test::TempFolder;

namespace {

constexpr const wchar_t* kLoadMessage = L"Le pilote de la tablette manque.";

/// An application whose plug-ins folder holds what a test puts there.
class IoPlugins : public testing::Test
{
protected:
    IoPlugins() { vak::detail::RestartPluginsDirectory(m_folder.Path()); }
    ~IoPlugins() override
    {
        for (const unsigned int kind : {kIoPlugin3D, kIoPluginBitmaps})
            for (int count = 0; count < 3; ++count)
                FreeIOPlugins(kind);
        vak::detail::RestartPluginsDirectory(CString());
    }

    void Put(const char* library, const char* name, const char* folder = "plugins")
    {
        fs::create_directories(m_folder.Host(folder));
        fs::copy_file(fs::path("Z:" VAK_TEST_PLUGINS) / (std::string(library) + ".dll"),
                      m_folder.Host(std::string(folder) + "/" + name + ".dll"));
    }

    CString PluginPath(const CString& name) const { return GetPluginsDirectory(0) + name + L".dll"; }

    /// What is known of that plug-in's refusal; a path of "" when it is not refused.
    IoPluginRefusal RefusalOf(const CString& name) const
    {
        IoPluginRefusal refusal;
        for (unsigned int index = 0; GetPluginRefusal(index, refusal); ++index)
            if (refusal.path.CompareNoCase(PluginPath(name)) == 0 && refusal.entryPoint == L"Init3DParser")
                return refusal;
        return {};
    }

    static int Count(const CString& path)
    {
        IoPluginInfo info;
        for (unsigned int index = 0; GetLoadedPlugin(index, info); ++index)
            if (info.path.CompareNoCase(path) == 0)
                return info.count;
        return 0;
    }

    MessageRecorder m_recorder;
    TempFolder m_folder;
};

} // namespace

TEST_F(IoPlugins, AreCountedAndTakeTheirKindsAlongWhenTheyGo)
{
    Put("Behaving", "good");
    RegisterIOPlugins(kIoPlugin3D);
    RegisterIOPlugins(kIoPlugin3D);
    EXPECT_EQ(Count(PluginPath(L"good")), 2);
    EXPECT_EQ(fileGetClass(L"a.vt3"), unsigned{'VTM3'});
    EXPECT_EQ(fileGetClass(L"a.vt2"), 0u) << "a kind of another family was registered";

    FreeIOPlugins(kIoPlugin3D);
    EXPECT_EQ(fileGetClass(L"a.vt3"), unsigned{'VTM3'});
    RegisterIOPlugins(kIoPluginBitmaps);
    FreeIOPlugins(kIoPlugin3D);
    EXPECT_EQ(fileGetClass(L"a.vt3"), 0u);
    EXPECT_EQ(fileGetClass(L"a.vt4"), unsigned{'VTB2'}) << "the other family of the same library went too";
    FreeIOPlugins(kIoPluginBitmaps);
    EXPECT_EQ(GetModuleHandleW(PluginPath(L"good")), nullptr);

    RegisterIOPlugins(kIoPlugin3D);
    EXPECT_EQ(fileGetClass(L"a.vt3"), unsigned{'VTM3'});
    RegisterIOPlugins(0x8000);
    EXPECT_EQ(Count(PluginPath(L"good")), 1);
}

TEST_F(IoPlugins, MakeTheParserOfTheirFiles)
{
    Put("Behaving", "good");
    RegisterIOPlugins(kIoPlugin3D);
    CFileIo io(CFileNameSpec(L"b.vt3"), FILE_PARSER_LOADING | FILE_PARSER_NO_PREFERENCES, nullptr);
    CFileIo late = io;
    ASSERT_NE(io.InitParser(), nullptr);
    EXPECT_EQ(io.GetCurrentParser()->GetFileIo(), &io);

    io.CloseParser();
    FreeIOPlugins(kIoPlugin3D);
    EXPECT_EQ(late.InitParser(), nullptr) << "the entry point of an unloaded library was called";
    EXPECT_EQ(late.GetIoError(), IO_FILE_UNKNOWN_TYPE);
}

TEST_F(IoPlugins, AreRefusedForWhatIsTheMatterWithEachAndKeepNobodyElseOut)
{
    using enum IoPluginRefusalReason;
    const struct
    {
        const char* library;
        const char* name;
        IoPluginRefusalReason reason;
        DWORD systemError = 0;
        const wchar_t* message = L"";
    } rows[] = {
        {"NoVersion", "no-version", NoVersion},
        {"NoEntryPoint", "no-entry", NoEntryPoint},
        {"OtherVersion", "other-version", WrongVersion},
        {"FailingStart", "failing-start", LoadFailed, ERROR_DLL_INIT_FAILED, kLoadMessage},
        {"NeedsDependency", "needs-dependency", LoadFailed, ERROR_MOD_NOT_FOUND},
        {"Behaving", "empty", DeclaredNothing},
        {"Behaving", "fails", DeclaredNothing},
        {"Behaving", "throws-exception", EntryPointThrew, 0, L"no licence"},
        {"Behaving", "throws-number", EntryPointThrew},
        {"Behaving", "throws-standard", EntryPointThrew, 0, L"out of paper"},
    };
    for (const auto& row : rows)
        Put(row.library, row.name);
    Put("Behaving", "zz-good");
    m_folder.Write("plugins/junk.dll", "MZ, but not for long");
    m_folder.Write("plugins/readme.txt", "no library, no plug-in");
    fs::create_directories(m_folder.Host("plugins/folder.dll"));
    SetEnvironmentVariableW(L"VAK_TEST_PLUGIN_STARTED", nullptr);

    RegisterIOPlugins(kIoPlugin3D);

    EXPECT_EQ(fileGetClass(L"a.vt3"), unsigned{'VTM3'}) << "the last plug-in was not reached";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const IoPluginRefusal refusal = RefusalOf(CString(row.name));
        EXPECT_EQ(refusal.reason, row.reason);
        EXPECT_EQ(refusal.systemError, row.systemError);
        EXPECT_EQ(refusal.message, row.message);
        EXPECT_EQ(Count(refusal.path), 0);
        EXPECT_EQ(GetModuleHandleW(refusal.path), nullptr) << "it is still loaded";
        const CString text = GetPluginRefusalText(refusal);
        EXPECT_FALSE(text.IsEmpty());
        EXPECT_EQ(text.Find(L"%1"), -1) << "a gap of the system's sentence";
    }
    EXPECT_EQ(RefusalOf(L"junk").systemError, DWORD{ERROR_BAD_EXE_FORMAT});
    EXPECT_EQ(RefusalOf(L"other-version").version, 0x50001u);
    EXPECT_EQ(GetEnvironmentVariableW(L"VAK_TEST_PLUGIN_STARTED", nullptr, 0), 0u)
        << "the probe ran the initialisation";
    EXPECT_TRUE(RefusalOf(L"folder").path.IsEmpty());

    // Only these two are told, and once; then the plug-ins are not even looked at.
    ASSERT_EQ(m_recorder.Boxes().size(), 2u);
    EXPECT_EQ(m_recorder.Boxes()[0].text, kLoadMessage);
    EXPECT_EQ(m_recorder.Boxes()[1].text,
              L"Les plugins contenus dans " + PluginPath(L"other-version") +
                  L"\nutilisent la version 5.1 des librairies.\n\nIls ne sont pas prévus pour fonctionner "
                  L"avec cette version du logiciel \nqui utilise la version 5.0 des librairies.");
    RegisterIOPlugins(kIoPlugin3D);
    EXPECT_EQ(m_recorder.Boxes().size(), 2u);
}

TEST_F(IoPlugins, FindTheirDependenciesBesideThemAndNotInTheCurrentDirectory)
{
    Put("NeedsDependency", "first");
    Put("VakTestDependency", "VakTestDependency", "elsewhere");
    const CString before = vak::system::CurrentFolder();
    ASSERT_TRUE(vak::system::EnterFolder(m_folder.Path("elsewhere")));
    _DllInfo info;
    EXPECT_FALSE(LoadPlugin(PluginPath(L"first"), L"Init3DParser", info));
    EXPECT_EQ(info.module, nullptr);
    EXPECT_EQ(RefusalOf(L"first").systemError, DWORD{ERROR_MOD_NOT_FOUND});
    vak::system::EnterFolder(before);

    Put("NeedsDependency", "second");
    Put("VakTestDependency", "VakTestDependency");
    EXPECT_TRUE(LoadPlugin(PluginPath(L"second"), L"Init3DParser", info));
    EXPECT_FALSE(LoadPlugin(PluginPath(L"first").MakeUpper(), L"Init3DParser", info))
        << "a refused file was tried again under its name in capitals";
}

TEST_F(IoPlugins, CanBeFreedAndRefusedByTheHost)
{
    Put("Behaving", "good");
    _DllInfo info;
    ASSERT_TRUE(LoadPlugin(PluginPath(L"good"), L"Init3DParser", info));
    FreePlugin(info.module, L"InitBitmapParser", 1);
    FreePlugin(nullptr, L"Init3DParser", 1);
    EXPECT_EQ(Count(PluginPath(L"good")), 1);
    FreePlugin(info.module, L"Init3DParser", 1);
    EXPECT_EQ(GetModuleHandleW(PluginPath(L"good")), nullptr);
    EXPECT_EQ(RefusalOf(L"good").reason, IoPluginRefusalReason::FreedByHost);
    EXPECT_FALSE(LoadPlugin(PluginPath(L"good"), L"Init3DParser", info));
}

TEST_F(IoPlugins, LieInAFolderThatOnlyTheFirstQuestionMakes)
{
    const CString expected = (m_folder.Path() + L"Plugins\\").MakeLower();
    EXPECT_EQ(GetPluginsDirectory(0), expected);
    EXPECT_FALSE(fileDirectoryExists(expected));
    vak::detail::RestartPluginsDirectory(m_folder.Path());
    EXPECT_EQ(GetPluginsDirectory(1), expected);
    EXPECT_TRUE(fileDirectoryExists(expected));
}
