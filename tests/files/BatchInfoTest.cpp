#include "files/BatchInfo.h"

#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

namespace {

constexpr LPCWSTR kIn = L"c:\\in\\";

/// A batch with these modes and this entry; `sources` are its source folder and, split at "|", its files.
struct Batch : BatchInfo
{
    Batch(unsigned int source, unsigned int destination, const CString& entry, const CString& sources = {})
    {
        m_srcMode = source;
        m_dstMode = destination;
        m_dstFolder = entry;
        m_srcFolder = sources;
        CStringArray files;
        int at = 0;
        for (CString file = sources.Tokenize(L"|", at); at >= 0; file = sources.Tokenize(L"|", at))
            files.Add(file);
        SetSelFiles(files);
    }
};

} // namespace

TEST(BatchInfo, AFolderSourceSendsEachFileToItsPlace)
{
    const CString tooLong(L'x', 255);
    const std::tuple<unsigned int, CString, CString, LPCWSTR, CString> rows[] = {
        // Destination mode, source folder, entry, file, result.
        {2, kIn, BatchInfo().m_dstFolder, L"c:\\in\\a\\b.obj", L"c:\\in\\Résultats\\a\\"},
        {2, L"C:\\IN", L"out", L"c:\\in\\É\\b.obj", L"C:\\IN\\out\\É\\"},
        {2, kIn, L"out", L"c:\\input\\a\\b.obj", L"c:\\in\\out\\"},
        {2, kIn, L"..\\out", L"", L"c:\\out\\"},
        {2, kIn, tooLong, L"c:\\in\\a\\b.obj", L"c:\\in\\.\\Résultats\\a\\"},
        {2, kIn, L"?:\\nowhere", L"c:\\in\\a\\b.obj", L"c:\\in\\Résultats\\a\\"},
        {2, L"", L"out", L"c:\\in\\b.obj", L""},
        {1, kIn, L"..\\out", L"c:\\in\\a\\b.obj", L"c:\\in\\out\\"},
        {1, kIn, L"c:\\out", L"c:\\in\\a\\b.obj", L"c:\\in\\a\\Résultats\\"},
        {0, kIn, L"out", L"c:\\else\\b.obj", L"c:\\else\\"},
        {0, kIn, L"out", L"b.obj", L""},
        {3, kIn, L"out", L"c:\\in\\b.obj", L""},
    };
    for (const auto& [mode, source, entry, file, result] : rows)
        EXPECT_EQ(result, Batch(1, mode, entry, source).GetDstFolder(file)) << mode;
}

TEST(BatchInfo, FilesOfOneFolderShareTheirDestination)
{
    EXPECT_EQ(CString(L"c:\\A\\o\\"), Batch(0, 2, L"o", L"c:\\A\\1|C:\\a\\2").GetDstFolder(L"c:\\b\\3"));
    Batch info(0, 2, L"o", L"c:\\a\\1|c:\\b\\2");
    EXPECT_EQ(CString(L"c:\\b\\o\\"), info.GetDstFolder(L"c:\\b\\2"));
    EXPECT_EQ(CString(), info.GetDstFolder(L""));
    info.m_flags = BATCH_FILES_COMMON;
    info.m_selFiles.RemoveAll();
    EXPECT_EQ(CString(L"c:\\c\\o\\"), info.GetDstFolder(L"c:\\c\\3"));
    info.SetSelFiles(info.m_selFiles);
    EXPECT_EQ(CString(L"c:\\c\\o\\"), info.GetDstFolder(L"c:\\c\\3"));
    EXPECT_EQ(0u, info.m_flags);

    Batch album(1, 2, L"o", L"c:\\a\\1");
    album.SetAlbumFiles(album.m_selFiles, L"c:\\album");
    EXPECT_EQ(CString(L"c:\\album\\o\\"), album.GetDstFolder(L"c:\\a\\1"));
    album.m_dstMode = 0;
    EXPECT_EQ(CString(L"c:\\a\\"), album.GetDstFolder(L""));
}

TEST(BatchInfo, OnlyAFolderSourceHasATree)
{
    // Source mode, flags, recurse, recreate, destination mode, then CanRecurseFolder(0), (1) and
    // CanRecreateFolderTree(0), (1).
    const int rows[][9] = {
        {1, 0, 1, 1, 2, 1, 1, 1, 1}, {2, 1, 1, 0, 2, 1, 1, 0, 1}, {1, 0, 0, 1, 2, 0, 1, 0, 0},
        {1, 0, 1, 1, 1, 1, 1, 0, 0}, {1, 1, 1, 1, 2, 0, 0, 0, 0}, {0, 0, 1, 1, 2, 0, 0, 0, 0},
    };
    for (const auto& row : rows) {
        Batch info(static_cast<unsigned int>(row[0]), static_cast<unsigned int>(row[4]), L"o", kIn);
        info.m_flags = static_cast<unsigned int>(row[1]);
        info.m_recurseFolder = row[2];
        info.m_recreateFolderTree = row[3];
        const int answers[] = {info.CanRecurseFolder(0), info.CanRecurseFolder(1),
                               info.CanRecreateFolderTree(0), info.CanRecreateFolderTree(1)};
        EXPECT_TRUE(std::equal(answers, answers + 4, row + 5)) << (&row - rows);
    }
    Batch flat(1, 2, L"o", kIn);
    flat.m_recreateFolderTree = 0;
    EXPECT_EQ(CString(L"c:\\in\\o\\"), flat.GetDstFolder(L"c:\\in\\a\\b"));
}

TEST(BatchInfo, AnUnusableEntryIsExplained)
{
    const vak::test::TempFolder folder;
    const CString wantsRelative =
        L"Entrez ici un chemin relatif valide (.\\Résultats\\).\n\nLes fichiers seront "
        L"ainsi créés dans un sous répertoire\ndu répertoire des fichiers sources.";
    const CString wantsFolder =
        L"Entrez ici un chemin absolu (C:\\tmp\\) ou relatif (.\\Résultats\\).\n\nSi le "
        L"chemin est relatif, les fichiers seront crés\ndans un répertoire dépendant du "
        L"répertoire source.";
    const std::tuple<unsigned int, CString, CString, int, CString> rows[] = {
        {1, L"a\\b", L"", 1, L""},        {1, folder.Path(), L"", 0, wantsRelative},
        {1, L"", L"", 0, wantsRelative},  {2, folder.Path("new"), L"", 1, L""},
        {2, L"a?", L"", 1, L""},          {2, L"c:\\a?", L"", 0, wantsFolder},
        {0, L"", folder.Path(), 1, L""},  {0, L"", folder.Path("missing\\"), 0, L""},
        {3, L"a", folder.Path(), 0, L""},
    };
    for (const auto& [mode, entry, source, result, text] : rows) {
        const vak::test::MessageRecorder recorder;
        EXPECT_EQ(result, Batch(1, mode, entry, source).CheckDstFolder(0));
        EXPECT_TRUE(recorder.Boxes().empty());
        EXPECT_EQ(result, Batch(1, mode, entry, source).CheckDstFolder(1));
        EXPECT_EQ(text, recorder.Boxes().empty() ? CString() : recorder.Boxes()[0].text);
    }
    EXPECT_EQ(1, Batch(1, 2, L"o", folder.Path()).CreateDstFolder(folder.Path("a\\b.obj")));
    EXPECT_TRUE(folder.Has("o/a"));
}

TEST(BatchInfo, TheSentenceIsTrueForModesAndOptions)
{
    const CString apart = L"c:\\a\\1|c:\\b\\2";
    const std::tuple<unsigned int, unsigned int, LPCWSTR, int, CString, CString> rows[] = {
        // Source mode, destination mode, entry, recurse, sources, what the files are created in.
        {1, 0, L"", 1, kIn, L"le répertoire <b>c:\\in\\</b> et dans ses sous répertoires."},
        {0, 0, L"", 1, apart, L"les mêmes répertoires que les fichiers sources."},
        {2, 1, L"o", 1, L"", L"des répertoires <b>o</b> situé dans le répertoire des fichiers sources."},
        {1, 1, L"o", 0, kIn, L"le répertoire <b>o</b> situé dans <b>c:\\in\\</b>."},
        {1, 1, L"..\\o", 0, kIn, L"le répertoire <b>c:\\o\\</b>."},
        {1, 1, L"o", 1, kIn,
         L"des répertoires <b>o</b> situés dans <b>c:\\in\\</b> et dans ses sous répertoires."},
        {1, 2, L"o", 0, kIn, L"le répertoire <b>c:\\in\\o\\</b>."},
        {1, 2, L"o", 1, kIn, L"le répertoire <b>c:\\in\\o\\</b> et dans ses sous répertoires."},
        {0, 2, L"o", 1, apart, L"des répertoires <b>o</b> situé dans le répertoire des fichiers sources."},
    };
    for (const auto& [source, destination, entry, recurse, sources, place] : rows) {
        Batch info(source, destination, entry, sources);
        info.m_recurseFolder = recurse;
        EXPECT_EQ(L"Les fichiers sont créés dans " + place, info.GetInformation());
    }
    EXPECT_EQ(CString(), Batch(1, 3, L"o", kIn).GetInformation());
}
