#include "framework/base/posix/HostPath.h"

#include "framework/base/FileException.h"
#include "framework/base/StdioFile.h"
#include "framework/base/SystemFile.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <fstream>
#include <tuple>

using namespace vak::system;
using vak::posix::HostFromPath;
using vak::posix::PathFromHost;
using vak::test::TempFolder;

namespace {

TEST(HostPath, DriveZIsTheHost)
{
    const std::tuple<LPCWSTR, const char*, DWORD> rows[] = {
        {L"Z:\\tmp\\x", "/tmp/x", 0},
        {L"z:/tmp//x\\", "/tmp/x/", 0},
        {L"Z:\\..\\..\\a\\.\\b\\..", "/a", 0},
        {L"a\\b\\..\\..\\..\\c", "../c", 0},
        {L"Z:a", "a", 0},
        {L"\\\\?\\Z:\\é\xD83D\xDE00", "/\xC3\xA9\xF0\x9F\x98\x80", 0},
        {L"", "", kErrorPathNotFound},
        {L"ab:stream", "", kErrorInvalidName},
        {L"\\\\server\\share\\x", "", kErrorBadNetPath},
        {L"\\\\?\\UNC\\server\\x", "", kErrorBadNetPath},
    };
    for (const auto& [path, host, code] : rows) {
        DWORD error = 0;
        EXPECT_EQ(HostFromPath(path, &error), host) << host;
        EXPECT_EQ(error, code) << testing::PrintToString(CString(path));
    }
}

TEST(HostPath, EveryNameOfTheHostCanBeOpenedAgain)
{
    for (const char* host :
         {"/a b/\xC3\xA9", "/\xFF\xC3", "/\xED\xA0\x80", "/\xF0\x9F\x98\x80\xF4\x90\x80\x80", "r/\xC0\x80"})
        EXPECT_EQ(HostFromPath(PathFromHost(host)), host);
    EXPECT_EQ(PathFromHost("/\xFF"), CString(L"Z:\\\xDCFF"));

    TempFolder folder;
    std::ofstream(folder.Host().string() + "/latin1 \xE9") << "12345";
    std::vector<FileEntry> entries;
    ASSERT_TRUE(ListFolder(folder.Path(), entries));
    FileEntry entry;
    EXPECT_TRUE(QueryFile(folder.Path() + entries.back().name, entry));
    EXPECT_EQ(entry.size, 5u);
    RemoveFile(folder.Path() + entries.back().name);
}

/// What the host lets its administrator do, and Wine with it, the platform refuses.
TEST(PosixSystemFile, ReadOnlyFilesAreNotWritten)
{
    TempFolder folder;
    const CString path = folder.Write("file", "x");
    const CString other = folder.Write("other", "y");
    ASSERT_TRUE(SetAttributes(path, kAttributeReadOnly));
    OpenOptions options;
    options.write = options.shareDelete = true;
    EXPECT_EQ(OpenFile(path, options), kNoFile);
    EXPECT_EQ(LastFileError(), kErrorAccessDenied);
    EXPECT_FALSE(DuplicateFile(other, path, false));
    EXPECT_FALSE(ReplaceFileBy(kNoFile, other, path));
    EXPECT_EQ(LastFileError(), kErrorAccessDenied);
    EXPECT_EQ(folder.Read("file"), "x");
    EXPECT_TRUE(DuplicateFile(path, folder.Path("copy"), true));
    EXPECT_TRUE(FileAttributes(folder.Path("copy")) & kAttributeReadOnly);
}

TEST(PosixSystemFile, AFullDeviceIsToldByHandleAndStreamAlike)
{
    OpenOptions options;
    options.write = true;
    const HANDLE full = OpenFile(L"Z:\\dev\\full", options);
    UINT done = 0;
    EXPECT_FALSE(WriteFile(full, "x", 1, done));
    EXPECT_EQ(LastFileError(), kErrorDiskFull);
    CloseFile(full);
    CStdioFile stream(L"Z:\\dev\\full", CFile::modeWrite);
    stream.Write("x", 1);
    EXPECT_EQ(vak::test::Cause<CFileException>([&] { stream.Close(); }), CFileException::diskFull);
    EXPECT_EQ(stream.m_hFile, CFile::hFileNull);
}

} // namespace
