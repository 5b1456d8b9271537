#include "files/FileInfo.h"
#include "files/FilePath.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

/// The parts of a name in one line.
CString Parts(const CFileInfo& info)
{
    return info.GetRoot() + L"|" + info.GetPath() + L"|" + info.GetPathWithoutRoot() + L"|" + info.GetName() +
           L"|" + info.GetNameWithoutExt() + L"|" + info.GetExtension() + L"|" + info.GetTopDirectory() +
           L"|" + info.GetParentDirectory();
}

} // namespace

TEST(FileInfo, TakesANameApart)
{
    const struct
    {
        const wchar_t* name;
        const wchar_t* parts; // root, path, path below the root, name, stem, extension, top directory, parent
        _FILEINFO_TYPE type = FILEINFO_FILE;
    } rows[] = {
        {L"C:\\tmp\\a.b\\f.JPG", L"C:\\|C:\\tmp\\a.b\\|tmp\\a.b\\|f.JPG|f|.JPG|a.b|C:\\tmp\\"},
        {L"C:\\a\\b.x", L"C:\\|C:\\a\\b.x\\|a\\b.x\\||||b.x|C:\\a\\", FILEINFO_DIRECTORY},
        {L"C:", L"C:\\|C:\\||||||C:\\", FILEINFO_AUTO},
        {L"C:f.x", L"C:\\|C:||f.x|f|.x||C:"},
        {L"\\\\srv\\share\\d\\f.x", L"\\\\srv\\share\\|\\\\srv\\share\\d\\|d\\|f.x|f|.x|d|\\\\srv\\share\\"},
        {L"\\\\srv\\share", L"\\\\srv\\share\\|\\\\srv\\share\\||||||\\\\srv\\share\\", FILEINFO_AUTO},
        {L"\\\\?\\C:\\d\\f.x", L"\\\\?\\C:\\|\\\\?\\C:\\d\\|d\\|f.x|f|.x|d|\\\\?\\C:\\"},
        {L"\\\\?\\unc\\s\\t\\f", L"\\\\?\\unc\\s\\t\\|\\\\?\\unc\\s\\t\\||f|f|||\\\\?\\unc\\s\\t\\"},
        {L"\\d\\f.x", L"\\|\\d\\|d\\|f.x|f|.x|d|\\"},
        {L"d\\e\\f.x", L"\\|d\\e\\|d\\e\\|f.x|f|.x|e|d\\"},
        {L"\\", L"\\|\\||||||\\", FILEINFO_AUTO},
        {L"C:\\a\\\\b\\\\f", L"C:\\|C:\\a\\\\b\\\\|a\\\\b\\\\|f|f||b|C:\\a\\\\"},
        {L"C:/a/f.x", L"C:\\|C:||/a/f.x|/a/f|.x||C:"},
    };
    for (const auto& row : rows) {
        const CFileInfo info(row.name, row.type);
        EXPECT_EQ(Parts(info), CString(row.parts)) << CStringA(row.name).GetString();
        EXPECT_EQ(info.GetCompleteName(), info.GetPath() + info.GetName());
        EXPECT_EQ(info.IsDirectory(), info.GetName().IsEmpty() && *row.name != 0);
    }
}

TEST(FileInfo, AsksTheDiskWhatANameIsOnlyWhenToldTo)
{
    const vak::test::TempFolder folder;
    CString name = folder.Path();
    fileRemoveSlashTermination(name);
    EXPECT_EQ(CFileInfo(name).GetPath(), name + L"\\");
    EXPECT_FALSE(CFileInfo(name, FILEINFO_FILE).IsDirectory());
    EXPECT_FALSE(CFileInfo(name + L"\\none.zip").IsDirectory());
}

TEST(FileInfo, TakesTheKindFromTheClassAndElseFromTheExtension)
{
    const CFileInfo byName(L"C:\\A.ZIP", FILEINFO_FILE);
    EXPECT_EQ(byName.GetClass(), unsigned('ZIP '));
    EXPECT_EQ(byName.GetProperties() - byName.GetKindOf(), 3u);
    const CFileInfo byClass(CFileNameSpec(L"C:\\a.zip", 'AIMG'), FILEINFO_FILE);
    EXPECT_EQ(byClass.GetClass(), unsigned('AIMG'));
    EXPECT_TRUE(byClass.GetLoader() == 'VAKP' && byClass.GetSaver() == 'UNKN');
    EXPECT_EQ(CFileInfo(CFileNameSpec(L"a.zip", 'NONE'), FILEINFO_FILE).GetClass(), 0u);
    EXPECT_EQ(CFileInfo(L"C:\\a.zip", FILEINFO_DIRECTORY).GetLoader(), unsigned('UNKN'));
}

TEST(FileInfo, SplitsTheNumberOffTheEndOfAName)
{
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"C:\\7\\shot_0042.png", L"1 shot_ 42 4"},
        {L"2024.png", L"1  2024 4"},
        {L"take2.v10.png", L"1 take2.v 10 2"},
        {L"n\x0661\x0662", L"0 n\x0661\x0662 0 0"},
        {L"19999999999999999999", L"1 1 9999999999999999999 19"},
        {L"", L"0  0 0"},
    };
    for (const auto& [name, parts] : rows) {
        CString stem = L"before", found;
        ULONGLONG number = 1;
        int digits = 1;
        const int result = CFileInfo(name, FILEINFO_FILE).GetDigitInfo(stem, number, digits);
        found.Format(L"%d %s %I64u %d", result, stem.GetString(), number, digits);
        EXPECT_EQ(found, parts);
    }
}

TEST(FileInfo, ComparesFilesAndKnowsSharesAndShortcutsWhateverTheCase)
{
    const CFileInfo info(L"C:\\A\\b.txt", FILEINFO_FILE);
    EXPECT_TRUE(info.IsSameFile(CFileInfo(L"c:\\a\\x\\..\\B.TXT", FILEINFO_FILE)));
    EXPECT_TRUE(info.IsSameDir(CFileInfo(L"c:\\a", FILEINFO_DIRECTORY)));
    EXPECT_FALSE(info.IsSameDir(CFileInfo(L"c:\\b.txt", FILEINFO_FILE)));
    EXPECT_TRUE(CFileNameSpec(L"C:\\a\\b", 'ZIP ').IsSameFile(CFileNameSpec(L"c:\\A\\B")));
    EXPECT_TRUE(CFileInfo(L"\\\\s\\t\\f", FILEINFO_FILE).IsUNCPath());

    CFileInfo shortcut(L"C:\\none\\a.LNK", FILEINFO_FILE);
    EXPECT_TRUE(shortcut.IsShortcut() && !shortcut.ResolveShortcut());
    EXPECT_EQ(shortcut.GetName(), CString(L"a.LNK"));
    EXPECT_FALSE(CFileInfo(L"C:\\a.lnk\\", FILEINFO_FILE).IsShortcut());
}
