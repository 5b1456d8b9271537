#include "files/FileIo.h"

#include "files/FileKinds.h"
#include "framework/base/Exception.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <tuple>

using vak::test::MessageRecorder;
using vak::test::TempFolder;

namespace {

constexpr unsigned int kModel = 'FTMO', kScene = 'FTSC', kReadOnly = 'FTRO', kLibrarys = 'FTLI';

int liveParsers = 0;

struct CountedParser : CFileParser
{
    explicit CountedParser(CFileIo* fileIo) : CFileParser(fileIo) { ++liveParsers; }
    ~CountedParser() override { --liveParsers; }
};

/// What the plug-in does when it is asked for a parser; its result is the entry point's.
std::function<int(IoParserRequest&)> makeParser;

int EntryPoint(IoPluginMode mode, void* data)
{
    return mode == IoPluginCreate ? makeParser(*static_cast<IoParserRequest*>(data)) : 0;
}

int MakeCounted(IoParserRequest& request)
{
    request.parser = new CountedParser(request.fileIo);
    return 1;
}

class FileIo : public testing::Test
{
protected:
    FileIo()
    {
        constexpr unsigned int plugin = vak::kFileCodePlugin, library = vak::kFileCodeLibrary;
        CFileExt kinds[] = {{L"Test", L".ftmo|.ftmodel", kModel, 0x40A3, plugin, plugin},
                            {L"Test", L".ftsc", kScene, 0x4163, plugin, plugin},
                            {L"Test", L".ftro", kReadOnly, 0x1001, plugin, vak::kFileCodeNone},
                            {L"Test", L".ftli", kLibrarys, 0x1003, library, library}};
        for (CFileExt& kind : kinds) {
            kind.m_initCallback = EntryPoint;
            fileRegisterFile(kind);
        }
        makeParser = MakeCounted;
        CFileIo::SetPreferencesFilePath(m_folder.Path("deep/er/prefs.dat"));
    }
    ~FileIo() override
    {
        for (const unsigned int fileClass : {kModel, kScene, kReadOnly, kLibrarys})
            fileUnregisterFile(CString(), fileClass);
        CFileIo::SetPreferencesFilePath(CString());
        EXPECT_EQ(liveParsers, 0);
    }

    static CFileIo Loading(const CString& name) { return CFileIo(name, FILE_PARSER_LOADING, nullptr); }
    static CFileIo Saving(const CString& name) { return CFileIo(name, 0, nullptr); }
    static int NumberIn(const CCustomData& data, unsigned int id)
    {
        int number = 0;
        data.GetInt(id, number, -1);
        return number;
    }

    static void ExpectNoParser(CFileIo io)
    {
        io.SetIoError(L"left over");
        EXPECT_EQ(io.InitParser(), nullptr);
        EXPECT_EQ(io.GetIoError(), IO_FILE_UNKNOWN_TYPE);
        EXPECT_EQ(io.GetIoErrorTxt(), L"Type de fichier inconnu");
        EXPECT_EQ(liveParsers, 0);
    }

    MessageRecorder m_recorder;
    TempFolder m_folder;
};

} // namespace

TEST_F(FileIo, GoesToThePluginOfTheKindForItsDirectionOnly)
{
    CFileIo io = Loading(L"C:\\m\\a.FTMO");
    makeParser = [&](IoParserRequest& request) {
        EXPECT_EQ(request.fileIo, &io);
        EXPECT_EQ(request.fileClass, kModel);
        return MakeCounted(request);
    };
    CFileParser* const parser = io.InitParser();
    EXPECT_TRUE(parser && parser == io.GetCurrentParser());
    EXPECT_EQ(io.GetIoError(), IO_FILE_SUCCESS);
    io.CloseParser();

    makeParser = [](IoParserRequest&) -> int { throw "asked"; };
    for (const CFileIo& other : {Loading(L"a.ftli"), Saving(L"a.ftro"), Loading(L"a.unheard"), Loading(L"")})
        ExpectNoParser(other);
    makeParser = MakeCounted;
    EXPECT_NE(CFileIo(kReadOnly, FILE_PARSER_LOADING, nullptr).InitParser(), nullptr);
}

TEST_F(FileIo, YieldsNoParserAndLeaksNoneWhenThePluginFails)
{
    const std::function<int(IoParserRequest&)> failures[] = {
        [](IoParserRequest&) { return 1; },
        [](IoParserRequest& request) { return MakeCounted(request) - 1; },
        [](IoParserRequest& request) { return MakeCounted(request), throw new CException, 1; },
        [](IoParserRequest&) -> int { throw std::runtime_error("plug-in"); },
        [](IoParserRequest& request) { return request.fileIo->SetIoError(IO_FILE_BAD_FORMAT), 0; },
    };
    for (const auto& failure : failures) {
        makeParser = failure;
        ExpectNoParser(Loading(L"a.ftmo"));
    }
    EXPECT_TRUE(m_recorder.Boxes().empty());

    makeParser = MakeCounted;
    const CFileIo stale = Loading(L"a.ftmo");
    fileUnregisterFile(CString(), kModel);
    ExpectNoParser(stale);
}

TEST_F(FileIo, OwnsItsParserAloneAndClosesItInTime)
{
    CFileIo io = Loading(L"a.ftmo");
    io.InitParser();
    io.InitParser();
    EXPECT_EQ(liveParsers, 1) << "the first parser was not closed";
    {
        CFileIo copy(io);
        EXPECT_EQ(copy.GetCurrentParser(), nullptr);
        copy.InitParser();
        copy = *&copy;
        EXPECT_NE(copy.GetCurrentParser(), nullptr);
        copy = io;
        EXPECT_EQ(copy.GetCurrentParser(), nullptr);
        EXPECT_EQ(liveParsers, 1);
        copy.InitParser();
    }
    EXPECT_EQ(liveParsers, 1);
    makeParser = [](IoParserRequest&) { return 0; };
    io.InitParser();
    EXPECT_EQ(liveParsers, 0) << "a parser outlived the failure of its successor";
}

TEST_F(FileIo, FollowsItsAlternativeClassInEverythingButTheEntryPoint)
{
    CFileIo io = Loading(L"C:\\m\\a.b.ftmodel");
    io.SetAlternativeClass(kReadOnly);
    EXPECT_TRUE(io.GetClass() == kReadOnly && io.GetProperties() == 0x1001);
    EXPECT_EQ(io.GetCompleteName(), L"C:\\m\\a.b.ftmodel");
    EXPECT_EQ(io.GetCurrentFilePath() + io.GetCurrentShortFileName(), L"C:\\m\\a.b.ftro");
    makeParser = [](IoParserRequest& request) {
        EXPECT_EQ(request.fileClass, kReadOnly);
        return MakeCounted(request);
    };
    EXPECT_NE(io.InitParser(), nullptr);
    io.SetFlag(FILE_PARSER_LOADING, 0);
    EXPECT_EQ(io.InitParser(), nullptr);

    io.SetNewFileName(CFileNameSpec(L"D:\\n.ftsc"));
    EXPECT_EQ(io.GetCurrentCompleteFileName(), L"D:\\n.ftro");
    io.SetAlternativeClass(0);
    EXPECT_EQ(io.GetClass(), kScene);
    EXPECT_EQ(io.GetCurrentShortFileName(), L"n.ftsc");
    CFileIo ownerless = Loading(L"a.unheard");
    ownerless.SetAlternativeClass(kModel);
    ExpectNoParser(ownerless);
}

TEST_F(FileIo, KeepsParametersByClassAndDirection)
{
    CFileIo io = Saving(L"a.ftmo");
    CCustomData data;
    const auto save = [&](int loading, unsigned int fileClass, int quality) {
        data.SetInt('QUAL', quality);
        EXPECT_EQ(io.SaveIoParameters(loading, data, fileClass), 1);
    };
    save(0, kModel, 80);
    save(1, kModel, 20);
    save(1, kScene, 50);
    EXPECT_FALSE(data.HasData('IOCL')) << "the caller's store was changed";
    ASSERT_NE(io.InitParser(), nullptr);
    EXPECT_EQ(NumberIn(io.GetCustomData(), 'QUAL'), 80);
    unsigned int keptClass = 0;
    EXPECT_TRUE(io.GetCustomData().GetUInt('IOCL', keptClass, 0) && keptClass == kModel);
    EXPECT_EQ(io.LoadIoParameters(1, data, kModel), 1);
    EXPECT_EQ(NumberIn(data, 'QUAL'), 20);

    CFileIo::SetPreferencesFilePath(m_folder.Path("none.dat"));
    io.SetFlag(FILE_PARSER_NO_PREFERENCES, 1);
    data.SetInt('QUAL', 5);
    EXPECT_EQ(io.SaveIoParameters(0, data, kModel), 1);
    EXPECT_FALSE(m_folder.Has("none.dat"));
    EXPECT_EQ(io.LoadIoParameters(0, data, kModel), 1);
    EXPECT_EQ(NumberIn(data, 'QUAL'), 5);
}

TEST_F(FileIo, AnswersWhetherADialogIsOfferedOrMustBeShown)
{
    const int rows[][3] = {{0x1020, 1, 0}, {0x1040, 2, 0}, {0x1060, 2, 0},
                           {0x1080, 0, 1}, {0x1100, 0, 2}, {0x1180, 0, 2}};
    for (const auto& [properties, loading, saving] : rows) {
        CFileExt kind(L"Test", L".ftro", kReadOnly, static_cast<unsigned int>(properties), 'PLGP', 'PLGP');
        fileRegisterFile(kind);
        EXPECT_EQ(CFileIo::HasDialog(kReadOnly, 1), loading) << properties;
        EXPECT_EQ(CFileIo::HasDialog(kReadOnly, 0), saving) << properties;
    }
    CFileIo io = Loading(L"a.ftmo");
    const CFileParser parser(&io);
    EXPECT_EQ(parser.MustShowDialog(), IoShowDialogNone);
    io.SetAlternativeClass(kScene);
    EXPECT_EQ(parser.MustShowDialog(), IoShowDialogAlways);
    EXPECT_EQ(CFileParser().MustShowDialog(), IoShowDialogNone);
}

TEST_F(FileIo, SaysInFrenchHowItEnded)
{
    // A word of each text, from the unknown error on.
    const wchar_t* const words[] = {L"inconnue", L"ouvrir", L"Type",    L"format", L"mémoire",    L"Disque",
                                    L"autorisé", L"rien",   L"options", L"aucune", L"interrompue"};
    for (int code = 0; code >= -11; --code)
        EXPECT_GE(CFileIo::GetIoErrorTxtFromCode(1, code).Find(words[-code % 11]), 0) << code;
    EXPECT_EQ(CFileIo::GetIoErrorTxtFromCode(1, 1), L"Le fichier a été lu avec succès");
    EXPECT_EQ(CFileIo::GetIoErrorTxtFromCode(0, 1), L"Le fichier a été enregistré avec succès");

    CFileIo io = Loading(L"a.ftmo");
    CIoOptions log(1);
    io.SetIoError(IO_FILE_DISK_FULL, &log);
    io.SetIoError(L"Sommet 12 manquant", &log, IoLogInfo::warning);
    EXPECT_EQ(io.GetIoError(), IO_FILE_DISK_FULL);
    ASSERT_EQ(log.GetLogCount(), 2);
    EXPECT_EQ(log.GetLogInfo(1).level, IoLogInfo::warning);
    EXPECT_EQ(log.GetWorstLevel(), IoLogInfo::error);
    io.ReportIoError(CString());
    io.SetSilentMode(1);
    io.ReportIoError(L"unheard");
    ASSERT_EQ(m_recorder.Boxes().size(), 1u);
    EXPECT_EQ(m_recorder.Boxes()[0].text, L"Sommet 12 manquant");
}

TEST_F(FileIo, ListsTheFilesOfItsFolderThatItsDirectionKnows)
{
    for (const char* const name : {"B.ftmo", "a.FTSC", "c.ftro", "d.txt", "sub/x.ftmo", "sub/deeper/y.ftmo"})
        m_folder.Write(name, "");
    CStringArray files;
    EXPECT_EQ(Loading(m_folder.Path("any.ftmo")).GetFileList(files, nullptr, nullptr, 0), 3);
    EXPECT_TRUE(files[0] == m_folder.Path("a.FTSC") && files[1] == m_folder.Path("B.ftmo"));

    int asked = 0;
    const auto onlyModels = [](const CString& path, void* data) {
        ++*static_cast<int*>(data);
        return int{fileGetClass(path) == kModel};
    };
    EXPECT_EQ(Saving(m_folder.Path("any.ftmo")).GetFileList(files, onlyModels, &asked, 1), 3);
    EXPECT_EQ(asked, 4) << "what cannot be saved is not offered to the filter";
    EXPECT_EQ(files[2], m_folder.Path("sub\\deeper\\y.ftmo"));
}

TEST_F(FileIo, FindsTheFileThatADocumentMeans)
{
    for (const char* const name : {"wood.ftro", ".ftro", "maps/stone.ftli", "elsewhere/brick.ftmo/inside"})
        m_folder.Write(name, "");
    const std::tuple<CString, int, const char*> rows[] = {
        {L"C:\\old machine\\wood.ftro", 0, "wood.ftro"},
        {L"maps/stone.ftli", 0, "maps\\stone.ftli"},
        {L"C:\\old\\wood.ftli", 0x1000, "wood.ftro"},
        {L"C:\\old\\wood.ftli", 0x4000, nullptr},
        {L"elsewhere\\brick.ftmo", 0, nullptr},
        {L"maps\\", 0x1000, nullptr},
        {L"", 0x1000, nullptr},
    };
    for (const auto& [wanted, kinds, found] : rows) {
        CString file = wanted;
        EXPECT_EQ(CFileIo::FindMatchingFile(file, m_folder.Path(), kinds), found != nullptr);
        EXPECT_EQ(file, found ? m_folder.Path(found) : wanted);
    }
}

TEST_F(FileIo, KeepsTheFlagsOfPreferencesApart)
{
    CFileIo io(CFileNameSpec(L"a.ftmo"), 0xABCD0000 | FILE_PARSER_LOADING, nullptr);
    io.SetPreferencesFlags(0x12340000 | FILE_PARSER_SILENT | 0x100);
    EXPECT_EQ(io.GetPreferencesFlags(), 0x102u);
    EXPECT_FALSE(io.IsLoading());
    EXPECT_TRUE(io.IsFlagSet(0xABCD0102));
    EXPECT_FALSE(io.IsFlagSet(FILE_PARSER_SILENT | FILE_PARSER_LOADING)) << "one of two bits is set";
}
