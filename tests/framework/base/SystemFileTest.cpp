#include "framework/base/SystemFile.h"
#include "framework/base/FileException.h"
#include "framework/base/FileFind.h"
#include "framework/base/ReplacementFile.h"
#include "framework/base/SystemFolder.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/FaultyFile.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <string>
#include <utility>
#include <vector>

using namespace vak::system;
using vak::detail::ReplacementFile;
using vak::test::TempFolder;

namespace {

std::string Found(const CString& pattern)
{
    std::string names;
    CFileFind finder;
    for (BOOL more = finder.FindFile(pattern); more;) {
        more = finder.FindNextFile();
        names += std::string(CStringA(finder.GetFileName())) + (finder.IsDirectory() ? "/ " : " ");
    }
    return names;
}

TEST(SystemFile, FailuresHaveThePlatformsCodes)
{
    TempFolder folder;
    const CString file = folder.Write("file", "x");
    folder.Write("full\\file", "x");
    const auto code = [](bool done) { return done ? 0 : LastFileError(); };
    OpenOptions create;
    create.write = true;
    create.disposition = OpenOptions::Disposition::CreateNew;
    EXPECT_EQ(code(RemoveFile(folder.Path("no\\missing"))), kErrorPathNotFound);
    EXPECT_EQ(code(RemoveFile(folder.Path("full"))), kErrorAccessDenied);
    EXPECT_EQ(code(OpenFile(file, create) != kNoFile), kErrorFileExists);
    EXPECT_EQ(code(OpenFile(folder.Path("what?"), create) != kNoFile), kErrorInvalidName);
    EXPECT_EQ(code(RenameFile(folder.Path("full"), file)), kErrorAlreadyExists);
    EXPECT_EQ(code(DuplicateFile(file, folder.Path("full\\file"), true)), kErrorFileExists);
    EXPECT_EQ(code(FileAttributes(folder.Path("missing")) != kInvalidAttributes), kErrorFileNotFound);
}

TEST(SystemFile, PathsAreThePlatforms)
{
    TempFolder folder;
    folder.Write("sub\\é ü.txt", "found");
    const CString base = folder.Path();
    for (const CString& path : {base + L"sub\\é ü.txt", base + L"sub/é ü.txt", base + L".\\sub\\.\\é ü.txt",
                                base + L"not there\\..\\sub\\é ü.txt", L"\\\\?\\" + base + L"sub\\é ü.txt"}) {
        FileEntry entry;
        EXPECT_TRUE(QueryFile(path, entry)) << testing::PrintToString(path);
        EXPECT_EQ(entry.size, 5u);
    }
    const CString before = CurrentFolder();
    ASSERT_TRUE(EnterFolder(base));
    EXPECT_NE(FileAttributes(L"sub\\é ü.txt"), kInvalidAttributes);
    EXPECT_EQ(Found(L"sub\\*.TXT").size(), 8u);
    EnterFolder(before);
}

TEST(SystemFile, CopyKeepsContentsAndTime)
{
    TempFolder folder;
    const CString from = folder.Write("from", std::string(3000000, 'x') + "end");
    const FILETIME time = vak::detail::FileTimeFromTime(CTime(std::int64_t{1000000000}));
    ASSERT_TRUE(SetFileTimes(from, nullptr, nullptr, &time));
    const CString to = folder.Write("to", "old");
    EXPECT_FALSE(DuplicateFile(from, to, true));
    ASSERT_TRUE(DuplicateFile(from, to, false));
    EXPECT_EQ(folder.Read("to"), folder.Read("from"));
    FileEntry entry;
    ASSERT_TRUE(QueryFile(to, entry));
    EXPECT_EQ(CTime(entry.written).GetTime(), 1000000000);
}

TEST(FileFind, PatternsFollowThePlatform)
{
    TempFolder folder;
    for (const char* name : {"README", "b.TXT", "a.txt", "c.txt.bak", "Sub\\x"})
        folder.Write(name, "1");
    const std::pair<LPCTSTR, const char*> rows[] = {
        {L"*.*", "./ ../ a.txt b.TXT c.txt.bak README Sub/ "},
        {L"*.txt", "a.txt b.TXT "},
        {L"?.T?T", "a.txt b.TXT "},
        {L"r*.*", "README "},
        {L"*.", "./ ../ README Sub/ "},
        {L"*t*k", "c.txt.bak "},
        {L"none\\*", ""},
    };
    for (const auto& [pattern, names] : rows)
        EXPECT_EQ(Found(folder.Path() + pattern), names) << testing::PrintToString(CString(pattern));
}

TEST(FileFind, EntryIsTheOneThatTheLastCallMoved)
{
    TempFolder folder;
    folder.Write("model.v1.obj", "12345");
    CFileFind finder;
    ASSERT_TRUE(finder.FindFile(folder.Path() + L"model*"));
    EXPECT_EQ(finder.GetFileName(), CString(L"")) << "before the first FindNextFile";
    EXPECT_FALSE(finder.FindNextFile()) << "the only one is the last";
    EXPECT_EQ(finder.GetFilePath(), folder.Path("model.v1.obj"));
    EXPECT_EQ(finder.GetLength(), 5u);
    CTime written;
    ASSERT_TRUE(finder.GetLastWriteTime(written));
    EXPECT_LE((CTime::GetCurrentTime() - written).GetTotalSeconds(), 60);
}

TEST(ReplacementFile, TargetChangesOnlyByCommit)
{
    TempFolder folder;
    const CString target = folder.Write("prefs é.dat", "old");
    {
        ReplacementFile given(target, folder.Path("prefs.tmp"));
        given.File().Write("new", 3);
        EXPECT_EQ(folder.Read("prefs é.dat"), "old");
        ReplacementFile unique(target);
        ReplacementFile other(target);
        EXPECT_NE(unique.TemporaryPath(), other.TemporaryPath());
        // Who looks at the new file, letting it be renamed, does not hold it up.
        OpenOptions scanner;
        scanner.read = scanner.shareRead = scanner.shareWrite = scanner.shareDelete = true;
        const HANDLE scan = OpenFile(given.TemporaryPath(), scanner);
        ASSERT_NE(scan, kNoFile);
        given.Commit();
        CloseFile(scan);
    }
    EXPECT_EQ(folder.Read("prefs é.dat"), "new");
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"prefs é.dat"});
    ReplacementFile(folder.Path("first.dat")).Commit();
    EXPECT_EQ(folder.Names().size(), 2u);
}

TEST(ReplacementFile, AnyFailureLeavesTheOldFileAlone)
{
    TempFolder folder;
    const CString target = folder.Write("target", "old");
    const auto replace = [&](int number) {
        vak::test::FailingSystem failing(number);
        return vak::test::Cause<CFileException>([&] {
            ReplacementFile file(target);
            file.File().Write("new", 3);
            file.File().SeekToBegin();
            file.Commit();
        });
    };
    int failed = 0;
    while (failed < 20 && replace(failed + 1) == CFileException::diskFull) {
        ++failed;
        EXPECT_EQ(folder.Read("target"), "old") << failed;
        EXPECT_EQ(folder.Names(), std::vector<std::string>{"target"}) << failed;
    }
    EXPECT_EQ(failed, 5) << "open, write, seek, flush and replace can fail";
    EXPECT_EQ(folder.Read("target"), "new");

    CFile reader(target, CFile::modeRead | CFile::shareDenyWrite);
    ReplacementFile file(target);
    EXPECT_NE(vak::test::Cause<CFileException>([&] { file.Commit(); }), -1) << "the reader does not allow it";
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"target"});
}

} // namespace
