#include "files/FileInfo.h"
#include "files/FilePath.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

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
    constexpr auto kAuto = FILEINFO_AUTO;
    constexpr auto kFile = FILEINFO_FILE;
    constexpr auto kDir = FILEINFO_DIRECTORY;
    struct
    {
        const wchar_t* name;
        _FILEINFO_TYPE type;
        const wchar_t* parts; // root, path, path below the root, name, stem, extension, top directory, parent
    } const rows[] = {
        {L"C:\\tmp\\example.JPG", kFile, L"C:\\|C:\\tmp\\|tmp\\|example.JPG|example|.JPG|tmp|C:\\"},
        {L"C:\\a.b\\c", kFile, L"C:\\|C:\\a.b\\|a.b\\|c|c||a.b|C:\\"},
        {L"C:\\a\\b\\", kFile, L"C:\\|C:\\a\\b\\|a\\b\\||||b|C:\\a\\"},
        {L"C:\\a\\b.x", kDir, L"C:\\|C:\\a\\b.x\\|a\\b.x\\||||b.x|C:\\a\\"},
        {L"C:\\f.x", kFile, L"C:\\|C:\\||f.x|f|.x||C:\\"},
        {L"C:", kAuto, L"C:\\|C:\\||||||C:\\"},
        {L"C:f.x", kFile, L"C:\\|C:||f.x|f|.x||C:"},
        {L"\\\\srv\\share\\d\\f.x", kFile,
         L"\\\\srv\\share\\|\\\\srv\\share\\d\\|d\\|f.x|f|.x|d|\\\\srv\\share\\"},
        {L"\\\\srv\\share", kAuto, L"\\\\srv\\share\\|\\\\srv\\share\\||||||\\\\srv\\share\\"},
        {L"\\\\?\\C:\\d\\f.x", kFile, L"\\\\?\\C:\\|\\\\?\\C:\\d\\|d\\|f.x|f|.x|d|\\\\?\\C:\\"},
        {L"\\\\?\\unc\\srv\\share\\f", kFile,
         L"\\\\?\\unc\\srv\\share\\|\\\\?\\unc\\srv\\share\\||f|f|||\\\\?\\unc\\srv\\share\\"},
        {L"\\d\\f.x", kFile, L"\\|\\d\\|d\\|f.x|f|.x|d|\\"},
        {L"d\\e\\f.x", kFile, L"\\|d\\e\\|d\\e\\|f.x|f|.x|e|d\\"},
        {L"d\\f", kFile, L"\\|d\\|d\\|f|f||d|"},
        {L"f.tar.gz", kFile, L"\\|||f.tar.gz|f.tar|.gz||"},
        {L"", kDir, L"\\|||||||"},
        {L"\\", kAuto, L"\\|\\||||||\\"},
        {L"C:\\a\\\\b\\\\f", kFile, L"C:\\|C:\\a\\\\b\\\\|a\\\\b\\\\|f|f||b|C:\\a\\\\"},
        {L"C:/a/f.x", kFile, L"C:\\|C:||/a/f.x|/a/f|.x||C:"},
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
    EXPECT_TRUE(CFileInfo(name).IsDirectory());
    EXPECT_EQ(CFileInfo(name).GetCompleteName(), name + L"\\");
    EXPECT_FALSE(CFileInfo(name, FILEINFO_FILE).IsDirectory());
    EXPECT_FALSE(CFileInfo(name + L"\\none.zip").IsDirectory());
}

TEST(FileInfo, TakesTheKindFromTheClassAndElseFromTheExtension)
{
    const CFileInfo byName(L"C:\\A.ZIP", FILEINFO_FILE);
    EXPECT_EQ(byName.GetClass(), unsigned('ZIP '));
    EXPECT_EQ(byName.GetProperties(), 0x40003u);
    EXPECT_EQ(byName.GetKindOf(), 0x40000u);
    EXPECT_EQ(byName.GetLoader(), unsigned('VAKP'));

    const CFileInfo byClass(CFileNameSpec(L"C:\\a.zip", 'AIMG'), FILEINFO_FILE);
    EXPECT_EQ(byClass.GetClass(), unsigned('AIMG'));
    EXPECT_EQ(byClass.GetSaver(), unsigned('UNKN'));
    EXPECT_EQ(CFileInfo(CFileNameSpec(L"a.zip", 'NONE'), FILEINFO_FILE).GetClass(), 0u);
    EXPECT_EQ(CFileInfo(L"C:\\a.zip", FILEINFO_DIRECTORY).GetLoader(), unsigned('UNKN'));
}

TEST(FileInfo, SplitsTheNumberOffTheEndOfAName)
{
    struct
    {
        const wchar_t* name;
        int result;
        const wchar_t* stem;
        ULONGLONG number;
        int digits;
    } const rows[] = {
        {L"C:\\7\\shot_0042.png", 1, L"shot_", 42, 4},
        {L"2024.png", 1, L"", 2024, 4},
        {L"a1b.png", 0, L"a1b", 0, 0},
        {L"take2.v10.png", 1, L"take2.v", 10, 2},
        {L"x.007", 0, L"x", 0, 0},
        {L"n\x0661\x0662", 0, L"n\x0661\x0662", 0, 0},
        {L"19999999999999999999", 1, L"1", 9999999999999999999ull, 19},
        {L"", 0, L"", 0, 0},
    };
    for (const auto& row : rows) {
        CString stem = L"before";
        ULONGLONG number = 1;
        int digits = 1;
        EXPECT_EQ(CFileInfo(row.name, FILEINFO_FILE).GetDigitInfo(stem, number, digits), row.result);
        EXPECT_EQ(stem, CString(row.stem));
        EXPECT_EQ(number, row.number);
        EXPECT_EQ(digits, row.digits);
    }
}

TEST(FileInfo, ComparesFilesAndTheirDirectoriesWhateverTheCase)
{
    const CFileInfo info(L"C:\\A\\b.txt", FILEINFO_FILE);
    EXPECT_TRUE(info.IsSameFile(CFileInfo(L"c:\\a\\x\\..\\B.TXT", FILEINFO_FILE)));
    EXPECT_FALSE(info.IsSameFile(CFileInfo(L"C:\\A\\b.tx", FILEINFO_FILE)));
    EXPECT_TRUE(info.IsSameDir(CFileInfo(L"c:\\a", FILEINFO_DIRECTORY)));
    EXPECT_FALSE(info.IsSameDir(CFileInfo(L"c:\\b.txt", FILEINFO_FILE)));
    EXPECT_TRUE(CFileInfo(L"a", FILEINFO_FILE).IsSameDir(CFileInfo(L"b", FILEINFO_FILE)));
    EXPECT_TRUE(CFileNameSpec(L"C:\\a\\b", 'ZIP ').IsSameFile(CFileNameSpec(L"c:\\A\\B")));
    EXPECT_TRUE(CFileInfo(L"\\\\s\\t\\f", FILEINFO_FILE).IsUNCPath());
    EXPECT_FALSE(info.IsUNCPath());
}

TEST(FileInfo, LeavesWhatIsNoReadableShortcutAlone)
{
    CFileInfo info(L"C:\\none\\a.LNK", FILEINFO_FILE);
    EXPECT_TRUE(info.IsShortcut());
    EXPECT_FALSE(info.ResolveShortcut());
    EXPECT_EQ(info.GetName(), CString(L"a.LNK"));
    EXPECT_FALSE(CFileInfo(L"C:\\a.lnk\\", FILEINFO_FILE).IsShortcut());
}

TEST(FileNameSpec, KeepsItsClassWhenItIsRenamed)
{
    CFileNameSpec spec(static_cast<const wchar_t*>(nullptr), 'ZIP ');
    EXPECT_TRUE(spec.GetFileName().IsEmpty());
    spec = L"b.x";
    EXPECT_EQ(spec.GetClass(), unsigned('ZIP '));
    EXPECT_EQ(static_cast<const CString&>(spec), CString(L"b.x"));
}
