#include "files/FileIo.h"

#include "files/FileKinds.h"
#include "framework/base/Exception.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <stdexcept>

using vak::test::MessageRecorder;
using vak::test::TempFolder;

namespace {

constexpr unsigned int kModel = 'FTMO';
constexpr unsigned int kScene = 'FTSC';
constexpr unsigned int kReadOnly = 'FTRO';
constexpr unsigned int kLibrarys = 'FTLI';

int liveParsers = 0;
int liveExceptions = 0;

class CountedParser : public CFileParser
{
public:
    explicit CountedParser(CFileIo* fileIo) : CFileParser(fileIo) { ++liveParsers; }
    ~CountedParser() override { --liveParsers; }
};

class CountedException : public CException
{
public:
    CountedException() { ++liveExceptions; }
    ~CountedException() override { --liveExceptions; }
};

/// What the plug-in of the test kinds does when it is asked for a parser; its result is the entry point's.
std::function<int(IoParserRequest&)> makeParser;
int entryCalls = 0;

int EntryPoint(IoPluginMode mode, void* data)
{
    ++entryCalls;
    EXPECT_EQ(mode, IoPluginCreate);
    return makeParser(*static_cast<IoParserRequest*>(data));
}

int MakeCounted(IoParserRequest& request)
{
    EXPECT_EQ(request.parser, nullptr);
    request.parser = new CountedParser(request.fileIo);
    return 1;
}

class FileIo : public testing::Test
{
protected:
    FileIo()
    {
        constexpr unsigned int none = vak::kFileCodeNone;
        constexpr unsigned int plugin = vak::kFileCodePlugin;
        Register(L".ftmo|.ftmodel", kModel, 0x4000 | 0x3 | 0x20 | 0x80, plugin, plugin);
        Register(L".ftsc", kScene, 0x4000 | 0x3 | 0x40 | 0x100 | 0x20, plugin, plugin);
        Register(L".ftro", kReadOnly, 0x1001, plugin, none);
        Register(L".ftli", kLibrarys, 0x1003, vak::kFileCodeLibrary, vak::kFileCodeLibrary);
        makeParser = MakeCounted;
        entryCalls = 0;
        CFileIo::SetPreferencesFilePath(m_folder.Path("deep/er/prefs.dat"));
    }
    ~FileIo() override
    {
        for (const unsigned int fileClass : {kModel, kScene, kReadOnly, kLibrarys})
            fileUnregisterFile(CString(), fileClass);
        CFileIo::SetPreferencesFilePath(CString());
        EXPECT_EQ(liveParsers, 0);
        EXPECT_EQ(liveExceptions, 0);
    }

    static void Register(const wchar_t* extensions, unsigned int fileClass, unsigned int properties,
                         unsigned int loader, unsigned int saver)
    {
        CFileExt kind(L"Test", extensions, fileClass, properties, loader, saver);
        kind.m_initCallback = EntryPoint;
        fileRegisterFile(kind);
    }

    static CFileIo Loading(const wchar_t* name)
    {
        return CFileIo(CFileNameSpec(name), FILE_PARSER_LOADING, nullptr);
    }
    static CFileIo Saving(const wchar_t* name) { return CFileIo(CFileNameSpec(name), 0, nullptr); }

    static void ExpectNoParser(CFileIo io)
    {
        io.SetIoError(L"left over");
        EXPECT_EQ(io.InitParser(), nullptr);
        EXPECT_EQ(io.GetCurrentParser(), nullptr);
        EXPECT_EQ(io.GetIoError(), IO_FILE_UNKNOWN_TYPE);
        EXPECT_EQ(io.GetIoErrorTxt(), L"Type de fichier inconnu");
    }

    MessageRecorder m_recorder;
    TempFolder m_folder;
};

/// Slot of a virtual operation in the table, the destructor's two included.
template <class Member>
std::size_t SlotOf(Member member)
{
    std::size_t words[2];
    static_assert(sizeof(member) == sizeof(words));
    std::memcpy(words, &member, sizeof(words));
    return (words[0] - 1) / sizeof(void*);
}

struct Layout : CFileIo
{
    using CFileIo::CFileIo;
    void ExpectOrder() const
    {
        const void* const members[] = {
            this,     &m_alternativeClass, &m_customData,  &m_fileInfo, &m_alternativeInfo,
            &m_flags, &m_ioError,          &m_ioErrorText, &m_parser,   &m_parentWnd};
        for (std::size_t index = 1; index < std::size(members); ++index)
            EXPECT_LT(members[index - 1], members[index]) << index;
        EXPECT_EQ(static_cast<const void*>(&m_alternativeClass),
                  static_cast<const char*>(members[0]) + sizeof(void*));
    }
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
    ASSERT_NE(parser, nullptr);
    EXPECT_EQ(io.GetCurrentParser(), parser);
    EXPECT_EQ(io.GetIoError(), IO_FILE_SUCCESS);

    makeParser = MakeCounted;
    entryCalls = 0;
    ExpectNoParser(Loading(L"a.ftli"));
    ExpectNoParser(Saving(L"a.ftro"));
    ExpectNoParser(Loading(L"a.unheard"));
    ExpectNoParser(Loading(L""));
    EXPECT_EQ(entryCalls, 0);
    CFileIo nameless(kReadOnly, FILE_PARSER_LOADING, nullptr);
    EXPECT_NE(nameless.InitParser(), nullptr);
}

TEST_F(FileIo, YieldsNoParserAndLeaksNoneWhenThePluginFails)
{
    const std::function<int(IoParserRequest&)> failures[] = {
        [](IoParserRequest&) { return 0; },
        [](IoParserRequest&) { return 1; },
        [](IoParserRequest& request) { return MakeCounted(request) - 1; },
        [](IoParserRequest& request) { return MakeCounted(request), throw new CountedException, 1; },
        [](IoParserRequest&) -> int { throw std::runtime_error("plug-in"); },
        [](IoParserRequest&) -> int { throw 7; },
        [](IoParserRequest&) -> int {
            static int number = 7;
            throw &number;
        },
        [](IoParserRequest& request) {
            request.fileIo->SetIoError(IO_FILE_BAD_FORMAT);
            return 0;
        },
    };
    for (const auto& failure : failures) {
        makeParser = failure;
        ExpectNoParser(Loading(L"a.ftmo"));
        EXPECT_EQ(liveParsers, 0);
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
        CFileIo& same = copy;
        copy = same;
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
    EXPECT_EQ(io.GetClass(), kReadOnly);
    EXPECT_EQ(io.GetKindOf(), 0x1000u);
    EXPECT_EQ(io.GetProperties(), 0x1001u);
    EXPECT_EQ(io.GetCompleteName(), L"C:\\m\\a.b.ftmodel");
    EXPECT_EQ(io.GetCurrentCompleteFileName(), L"C:\\m\\a.b.ftro");
    EXPECT_EQ(io.GetCurrentFilePath(), L"C:\\m\\");
    EXPECT_EQ(io.GetCurrentShortFileName(), L"a.b.ftro");
    makeParser = [](IoParserRequest& request) {
        EXPECT_EQ(request.fileClass, kReadOnly);
        return MakeCounted(request);
    };
    EXPECT_NE(io.InitParser(), nullptr);
    io.SetFlag(FILE_PARSER_LOADING, 0);
    EXPECT_EQ(io.GetParser(), unsigned{'UNKN'});
    EXPECT_EQ(io.InitParser(), nullptr);

    io.SetNewFileName(CFileNameSpec(L"D:\\n.ftsc"));
    EXPECT_EQ(io.GetCurrentShortFileName(), L"n.ftro");
    io.SetAlternativeClass(0);
    EXPECT_EQ(io.GetClass(), kScene);
    EXPECT_EQ(io.GetCurrentShortFileName(), L"n.ftsc");
    EXPECT_EQ(io.GetParser(), unsigned{'PLGP'});
    CFileIo ownerless(CFileNameSpec(L"a.unheard"), FILE_PARSER_LOADING, nullptr);
    ownerless.SetAlternativeClass(kModel);
    ExpectNoParser(ownerless);
}

TEST_F(FileIo, KeepsParametersByClassAndDirection)
{
    CFileIo io = Saving(L"a.ftmo");
    CCustomData data;
    data.SetInt('QUAL', 80);
    EXPECT_EQ(io.SaveIoParameters(0, data, kModel), 1);
    EXPECT_FALSE(data.HasData('IOCL')) << "the caller's store was changed";
    data.SetInt('QUAL', 20);
    EXPECT_EQ(io.SaveIoParameters(1, data, kModel), 1);
    data.SetInt('QUAL', 50);
    EXPECT_EQ(io.SaveIoParameters(1, data, kScene), 1);

    ASSERT_NE(io.InitParser(), nullptr);
    int quality = 0;
    unsigned int keptClass = 0;
    io.GetCustomData().GetInt('QUAL', quality, -1);
    io.GetCustomData().GetUInt('IOCL', keptClass, 0);
    EXPECT_EQ(quality, 80);
    EXPECT_EQ(keptClass, kModel);
    EXPECT_EQ(io.LoadIoParameters(1, data, kModel), 1);
    data.GetInt('QUAL', quality, -1);
    EXPECT_EQ(quality, 20);
    EXPECT_EQ(io.LoadIoParameters(0, data, kReadOnly), 0);

    CFileIo::SetPreferencesFilePath(m_folder.Path("none.dat"));
    io.SetFlag(FILE_PARSER_NO_PREFERENCES, 1);
    data.SetInt('QUAL', 5);
    EXPECT_EQ(io.SaveIoParameters(0, data, kModel), 1);
    EXPECT_FALSE(m_folder.Has("none.dat"));
    EXPECT_EQ(io.LoadIoParameters(0, data, kModel), 1);
    EXPECT_TRUE(data.HasData('QUAL'));
    CFileIo::SetPreferencesFilePath(CString());
    EXPECT_EQ(io.GetPreferencesFilePath().Right(27), L"\\Vak Tools\\IoParameters.dat");
}

TEST_F(FileIo, AnswersWhetherADialogIsOfferedOrMustBeShown)
{
    EXPECT_EQ(CFileIo::HasDialog(kModel, 1), IoShowDialogOptional);
    EXPECT_EQ(CFileIo::HasDialog(kModel, 0), IoShowDialogOptional);
    EXPECT_EQ(CFileIo::HasDialog(kScene, 1), IoShowDialogAlways);
    EXPECT_EQ(CFileIo::HasDialog(kScene, 0), IoShowDialogAlways);
    EXPECT_EQ(CFileIo::HasDialog(kReadOnly, 1), IoShowDialogNone);
    EXPECT_EQ(CFileIo::HasDialog('NONE', 1), IoShowDialogNone);

    CFileIo io = Loading(L"a.ftmo");
    const CFileParser parser(&io);
    EXPECT_EQ(parser.MustShowDialog(), IoShowDialogNone);
    io.SetAlternativeClass(kScene);
    EXPECT_EQ(parser.MustShowDialog(), IoShowDialogAlways);
    io.SetSilentMode(1);
    EXPECT_TRUE(parser.IsSilentMode());
    EXPECT_TRUE(parser.IsFlagSet(FILE_PARSER_LOADING));
    EXPECT_EQ(CFileParser().MustShowDialog(), IoShowDialogNone);
}

TEST_F(FileIo, ReplacesTheLow16FlagsTogether)
{
    CFileIo io(CFileNameSpec(L"a.ftmo"), 0xABCD0000 | FILE_PARSER_LOADING, nullptr);
    io.SetPreferencesFlags(0x12340000 | FILE_PARSER_SILENT | 0x100);
    EXPECT_EQ(io.GetPreferencesFlags(), 0x102u);
    EXPECT_FALSE(io.IsLoading());
    EXPECT_TRUE(io.IsFlagSet(0xABCD0102));
    EXPECT_FALSE(io.IsFlagSet(FILE_PARSER_SILENT | FILE_PARSER_LOADING)) << "one of two bits is set";
}

TEST_F(FileIo, SaysInFrenchHowItEnded)
{
    const struct
    {
        int loading;
        int code;
        const wchar_t* text;
    } rows[] = {
        {1, 1, L"Le fichier a été lu avec succès"},
        {0, 1, L"Le fichier a été enregistré avec succès"},
        {1, -1,
         L"Impossible d'ouvrir le fichier.\nLe fichier est peut-être déjà ouvert dans une autre application "
         L"?"},
        {1, -2, L"Type de fichier inconnu"},
        {1, -3, L"Mauvais format de fichier"},
        {1, -4, L"Pas assez de mémoire"},
        {1, -5, L"Disque plein"},
        {1, -6, L"Accès non autorisé"},
        {0, -7, L"Il n'y a rien à enregistrer.\nLa sauvegarde du fichier est annulée."},
        {0, -8, L"Enregistrement impossible dans ce format  avec ces options"},
        {1, -9, L"Le fichier ne contient aucune information. Se lecture est annulée."},
        {1, -10, L"Opération interrompue"},
        {1, 0, L"Une erreur inconnue s'est produite lors de l'accès au fichier"},
        {0, -11, L"Une erreur inconnue s'est produite lors de l'accès au fichier"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CFileIo::GetIoErrorTxtFromCode(row.loading, row.code), row.text);

    CFileIo io = Loading(L"a.ftmo");
    CIoOptions log(1);
    io.SetIoError(IO_FILE_DISK_FULL, &log);
    io.SetIoError(L"Sommet 12 manquant", &log, IoLogInfo::warning);
    EXPECT_EQ(io.GetIoError(), IO_FILE_DISK_FULL);
    EXPECT_EQ(io.GetIoErrorTxt(), L"Sommet 12 manquant");
    ASSERT_EQ(log.GetLogCount(), 2);
    EXPECT_EQ(log.GetLogInfo(0).text, L"Disque plein");
    EXPECT_EQ(log.GetLogInfo(1).level, IoLogInfo::warning);
    EXPECT_EQ(log.GetWorstLevel(), IoLogInfo::error);
    io.ReportIoError(CString());
    io.SetSilentMode(1);
    io.ReportIoError(L"unheard");
    ASSERT_EQ(m_recorder.Boxes().size(), 1u);
    EXPECT_EQ(m_recorder.Boxes()[0].text, L"Sommet 12 manquant");
    io.SetIoError(IO_FILE_EMPTY);
    EXPECT_EQ(io.GetIoErrorTxt(), rows[10].text);
}

TEST_F(FileIo, ListsTheFilesOfItsFolderThatItsDirectionKnows)
{
    for (const char* const name : {"B.ftmo", "a.FTSC", "c.ftro", "d.txt", "sub/x.ftmo", "sub/deeper/y.ftmo"})
        m_folder.Write(name, "");
    CStringArray files;
    const CFileIo io(CFileNameSpec(m_folder.Path("any.ftmo")), FILE_PARSER_LOADING, nullptr);
    EXPECT_EQ(io.GetFileList(files, nullptr, nullptr, 0), 3);
    EXPECT_EQ(files[0], m_folder.Path("a.FTSC"));
    EXPECT_EQ(files[1], m_folder.Path("B.ftmo"));
    EXPECT_EQ(files[2], m_folder.Path("c.ftro"));

    int asked = 0;
    const auto onlyModels = [](const CString& path, void* data) {
        ++*static_cast<int*>(data);
        return int{fileGetClass(path) == kModel};
    };
    const CFileIo saving(CFileNameSpec(m_folder.Path("any.ftmo")), 0, nullptr);
    EXPECT_EQ(saving.GetFileList(files, onlyModels, &asked, 1), 3);
    EXPECT_EQ(asked, 4) << "what cannot be saved is not offered to the filter";
    EXPECT_EQ(files[2], m_folder.Path("sub\\deeper\\y.ftmo"));
}

TEST_F(FileIo, FindsTheFileThatADocumentMeans)
{
    m_folder.Write("wood.ftro", "");
    m_folder.Write("maps/stone.ftli", "");
    m_folder.Write("elsewhere/brick.ftmo/inside", "");
    const CString folder = m_folder.Path();
    const struct
    {
        CString wanted;
        int kinds;
        const char* found;
    } rows[] = {
        {L"C:\\old machine\\wood.ftro", 0, "wood.ftro"},
        {L"maps/stone.ftli", 0, "maps\\stone.ftli"},
        {L"C:\\old\\wood.ftli", 0x1000, "wood.ftro"},
        {L"C:\\old\\wood.ftli", 0x4000, nullptr},
        {L"C:\\old\\wood.ftli", 0, nullptr},
        {L"elsewhere\\brick.ftmo", 0, nullptr},
        {L"maps\\", 0x1000, nullptr},
        {L"", 0x1000, nullptr},
    };
    for (const auto& row : rows) {
        CString file = row.wanted;
        EXPECT_EQ(CFileIo::FindMatchingFile(file, folder, row.kinds), row.found != nullptr) << CStringA(row.wanted).GetString();
        EXPECT_EQ(file, row.found ? m_folder.Path(row.found) : row.wanted);
    }
}

TEST_F(FileIo, HasItsMembersAndVirtualOperationsInTheOrderOfTheInterface)
{
    Layout(CFileNameSpec(L"a"), 0, nullptr).ExpectOrder();
    EXPECT_EQ(SlotOf(&CFileIo::CloseParser), 2u);
    EXPECT_EQ(SlotOf(&CFileIo::InitParser), 3u);
}
