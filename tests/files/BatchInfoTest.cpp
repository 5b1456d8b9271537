#include "files/BatchInfo.h"

#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

constexpr LPCWSTR kIn = L"c:\\in\\";
constexpr LPCWSTR kApart = L"c:\\a\\1|c:\\b\\2";

struct Batch : BatchInfo
{
    /// `modes` are source and destination mode as two digits; `sources` are the source folder and, split at
    /// "|", the files of the selection or of an album.
    Batch(unsigned int modes, const CString& entry, const CString& sources, bool isAlbum = false)
    {
        m_srcMode = modes / 10;
        m_dstMode = modes % 10;
        m_dstFolder = entry;
        m_srcFolder = sources;
        CStringArray files;
        int at = 0;
        for (CString file = sources.Tokenize(L"|", at); at >= 0; file = sources.Tokenize(L"|", at))
            files.Add(file);
        isAlbum ? SetAlbumFiles(files, L"c:\\album") : SetSelFiles(files);
    }
};

} // namespace

TEST(BatchInfo, SendsEachFileToItsPlace)
{
    const std::tuple<unsigned int, CString, CString, bool, LPCWSTR, CString> rows[] = {
        // Modes, entry, sources, whether they are an album, file, result.
        {12, BatchInfo().m_dstFolder, kIn, false, L"c:\\in\\a\\b.obj", L"c:\\in\\Résultats\\a\\"},
        {12, L"out", L"C:\\IN", false, L"c:\\in\\É\\b.obj", L"C:\\IN\\out\\É\\"},
        {12, L"out", kIn, false, L"c:\\input\\a\\b.obj", L"c:\\in\\out\\"},
        {12, L"..\\out", kIn, false, L"", L"c:\\out\\"},
        {12, CString(L'x', 255), kIn, false, L"c:\\in\\a\\b.obj", L"c:\\in\\.\\Résultats\\a\\"},
        {12, L"?:\\nowhere", kIn, false, L"c:\\in\\a\\b.obj", L"c:\\in\\Résultats\\a\\"},
        {12, L"out", L"", false, L"c:\\in\\b.obj", L""},
        {11, L"..\\out", kIn, false, L"c:\\in\\a\\b.obj", L"c:\\in\\out\\"},
        {11, L"c:\\out", kIn, false, L"c:\\in\\a\\b.obj", L"c:\\in\\a\\Résultats\\"},
        {10, L"out", kIn, false, L"c:\\else\\b.obj", L"c:\\else\\"},
        {10, L"out", kIn, false, L"b.obj", L""},
        {13, L"out", kIn, false, L"c:\\in\\b.obj", L""},
        {2, L"o", L"c:\\A\\1|C:\\a\\2", false, L"c:\\b\\3", L"c:\\A\\o\\"},
        {2, L"o", kApart, false, L"c:\\b\\2", L"c:\\b\\o\\"},
        {2, L"o", kApart, false, L"", L""},
        {12, L"o", L"c:\\a\\1", true, L"c:\\a\\1", L"c:\\album\\o\\"},
        {10, L"o", L"c:\\a\\1", true, L"", L"c:\\a\\"}};
    for (const auto& [modes, entry, sources, isAlbum, file, result] : rows)
        EXPECT_EQ(result, Batch(modes, entry, sources, isAlbum).GetDstFolder(file)) << modes;
    Batch info(2, L"o", L"");
    EXPECT_EQ(CString(L"c:\\c\\o\\"), info.GetDstFolder(L"c:\\c\\3"));
    EXPECT_EQ(0u, info.m_flags) << "no file, no common folder, and it is known";
    info.m_flags = BATCH_FILES_COMMON; // a host may empty the list behind the flag
    EXPECT_EQ(CString(L"c:\\c\\o\\"), info.GetDstFolder(L"c:\\c\\3"));
}

TEST(BatchInfo, OnlyAFolderSourceHasATree)
{
    // Modes, whether it is an album, recurse, recreate, then CanRecurseFolder and CanRecreateFolderTree, each
    // without force and with.
    const int rows[][5] = {{12, 0, 1, 1, 1111}, {22, 1, 1, 0, 1101}, {12, 0, 0, 1, 100},
                           {11, 0, 1, 1, 1100}, {12, 1, 1, 1, 0},    {2, 0, 1, 1, 0}};
    for (const auto& [modes, isAlbum, recurse, recreate, answers] : rows) {
        Batch info(static_cast<unsigned int>(modes), L"o", kIn, isAlbum != 0);
        info.m_recurseFolder = recurse;
        info.m_recreateFolderTree = recreate;
        EXPECT_EQ(answers, info.CanRecurseFolder(0) * 1000 + info.CanRecurseFolder(1) * 100 +
                               info.CanRecreateFolderTree(0) * 10 + info.CanRecreateFolderTree(1));
        EXPECT_EQ(answers == 1111, info.GetDstFolder(L"c:\\in\\a\\b") == L"c:\\in\\o\\a\\");
    }
}

TEST(BatchInfo, AnUnusableEntryIsExplained)
{
    const vak::test::TempFolder folder;
    const CString relative =
        L"Entrez ici un chemin relatif valide (.\\Résultats\\).\n\nLes fichiers seront ainsi "
        L"créés dans un sous répertoire\ndu répertoire des fichiers sources.";
    const CString any =
        L"Entrez ici un chemin absolu (C:\\tmp\\) ou relatif (.\\Résultats\\).\n\nSi le chemin est "
        L"relatif, les fichiers seront crés\ndans un répertoire dépendant du répertoire source.";
    const std::tuple<unsigned int, CString, CString, int, CString> rows[] = {
        {11, L"a\\b", L"", 1, L""},       {11, folder.Path(), L"", 0, relative},
        {11, L"", L"", 0, relative},      {12, folder.Path("new"), L"", 1, L""},
        {12, L"a?", L"", 1, L""},         {12, L"c:\\a?", L"", 0, any},
        {10, L"", folder.Path(), 1, L""}, {10, L"", folder.Path("missing\\"), 0, L""},
        {13, L"a", folder.Path(), 0, L""}};
    for (const auto& [modes, entry, source, result, text] : rows) {
        const vak::test::MessageRecorder recorder;
        EXPECT_EQ(result, Batch(modes, entry, source).CheckDstFolder(0));
        EXPECT_TRUE(recorder.Boxes().empty());
        EXPECT_EQ(result, Batch(modes, entry, source).CheckDstFolder(1));
        EXPECT_EQ(text, recorder.Boxes().empty() ? CString() : recorder.Boxes()[0].text);
    }
    EXPECT_EQ(1, Batch(12, L"o", folder.Path()).CreateDstFolder(folder.Path("a\\b.obj")));
    EXPECT_TRUE(folder.Has("o/a"));
}

TEST(BatchInfo, TheSentenceIsTrueForModesAndOptions)
{
    const std::tuple<unsigned int, LPCWSTR, int, CString, CString> rows[] = {
        // Modes, entry, recurse, sources, what the files are created in.
        {10, L"", 1, kIn, L"le répertoire <b>c:\\in\\</b> et dans ses sous répertoires."},
        {0, L"", 1, kApart, L"les mêmes répertoires que les fichiers sources."},
        {21, L"o", 1, L"", L"des répertoires <b>o</b> situé dans le répertoire des fichiers sources."},
        {11, L"o", 0, kIn, L"le répertoire <b>o</b> situé dans <b>c:\\in\\</b>."},
        {11, L"..\\o", 0, kIn, L"le répertoire <b>c:\\o\\</b>."},
        {11, L"o", 1, kIn,
         L"des répertoires <b>o</b> situés dans <b>c:\\in\\</b> et dans ses sous répertoires."},
        {12, L"o", 0, kIn, L"le répertoire <b>c:\\in\\o\\</b>."},
        {12, L"o", 1, kIn, L"le répertoire <b>c:\\in\\o\\</b> et dans ses sous répertoires."},
        {2, L"o", 1, kApart, L"des répertoires <b>o</b> situé dans le répertoire des fichiers sources."}};
    for (const auto& [modes, entry, recurse, sources, place] : rows) {
        Batch info(modes, entry, sources);
        info.m_recurseFolder = recurse;
        EXPECT_EQ(L"Les fichiers sont créés dans " + place, info.GetInformation());
    }
    EXPECT_EQ(CString(), Batch(13, L"o", kIn).GetInformation());
}
