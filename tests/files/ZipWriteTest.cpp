#include "files/FileSystem.h"
#include "files/ZipArchive.h"
#include "framework/base/SystemFile.h"
#include "framework/base/Time.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ZipBuilder.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace vak::test;

namespace {

class ZipWriteTest : public testing::Test
{
protected:
    void Create() { zip.Open(path, CZip::zipCreate); }
    void Add(const char* name, const std::string& data, int level = -1)
    {
        const CString file = folder.Write("in/file", data);
        zip.AddNewFile(file, CString(name).GetString(), level);
    }
    /// An archive of two files.
    void Prepare()
    {
        Create();
        Add("a.txt", "old a");
        Add("b.txt", "old b");
        zip.Close();
    }

    TempFolder folder;
    const CString path = folder.Path("pack.zip");
    CZip zip;
};

} // namespace

TEST_F(ZipWriteTest, DataComeBackWhateverTheirSizeAndLevel)
{
    const std::string noise = Noise(3000000);
    const struct
    {
        const char* name;
        std::string data;
        int level;
        int method;
    } rows[] = {
        {"empty", "", 6, 0},
        {"tiny", "0123456789", 9, 0},
        {"small", Words(5000), -1, 8},
        {"small-stored", Words(5000), 0, 0},
        {"small-noise", noise.substr(0, 5000), 9, 0},
        {"buffer", Words(131072), 1, 8},
        {"large", Words(2500000), 9, 8},
        {"large-stored", Words(2500000), 0, 0},
        {"large-noise", noise, 6, 0},
        {"middle-noise", noise.substr(0, 700000), 6, 0},
        {"large-half-noise", noise + Words(2000000), 6, 8},
    };
    Create();
    for (const auto& row : rows)
        Add(row.name, row.data, row.level);
    zip.Close();
    zip.Open(path, CZip::zipOpenReadOnly);
    Contents wanted;
    for (const auto& row : rows) {
        wanted[row.name] = row.data;
        EXPECT_EQ(HeaderOf(zip, CString(row.name)).GetMethod(), row.method) << row.name;
    }
    EXPECT_TRUE(ContentsOf(zip) == wanted);
}

TEST_F(ZipWriteTest, ANewArchiveIsThereWhenItIsClosedAndNotBefore)
{
    Create();
    Add("a.txt", "hello");
    EXPECT_FALSE(folder.Has("pack.zip"));
    EXPECT_EQ(zip.FindFile(L"a.txt"), 0);
    EXPECT_EQ(ContentsOf(zip), (Contents{{"a.txt", "hello"}}));
    zip.Close(CZip::zipCloseAfterError);
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"in", "in/file"}));
    Prepare();
    Create();
    Add("c.txt", "new");
    zip.DeleteFiles(CStringArray());
    EXPECT_EQ(ContentsOf(path).size(), 2u);
    zip.Close();
    EXPECT_EQ(ContentsOf(path), (Contents{{"c.txt", "new"}}));
    EXPECT_EQ(folder.Names().size(), 3u);
    Create();
    zip.Close();
    EXPECT_EQ(ContentsOf(path), Contents());
}

TEST_F(ZipWriteTest, WhatIsAddedToAnArchiveGetsThereWhenItIsClosed)
{
    Prepare();
    zip.Open(path);
    Add("a.txt", "new a");
    Add("c.txt", Words(300000));
    Add("c.txt", "new c");
    const Contents wanted = {{"a.txt", "new a"}, {"b.txt", "old b"}, {"c.txt", "new c"}};
    EXPECT_EQ(ContentsOf(zip), wanted);
    EXPECT_EQ(ContentsOf(path), (Contents{{"a.txt", "old a"}, {"b.txt", "old b"}}));
    zip.Close(CZip::zipCloseAfterError);
    EXPECT_EQ(ContentsOf(path), (Contents{{"a.txt", "old a"}, {"b.txt", "old b"}}));
    zip.Open(path);
    Add("a.txt", "new a");
    Add("c.txt", Words(300000));
    Add("c.txt", "new c");
    zip.Close();
    EXPECT_EQ(ContentsOf(path), wanted);
    // What was replaced is not left behind as dead data.
    EXPECT_LT(folder.Read("pack.zip").size(), 500u);
    EXPECT_EQ(folder.Names().size(), 3u);
}

TEST_F(ZipWriteTest, NamesThatAreThereTwiceAreReplacedByOneAndDeletedTogether)
{
    folder.Write("pack.zip", BuildZip({{"a", "1"}, {"b", "2"}, {"a", "3"}, {"b", "4"}}).bytes);
    zip.Open(path);
    Add("a", "5");
    Add("b", "6");
    zip.Close();
    EXPECT_EQ(ContentsOf(path), (Contents{{"a", "5"}, {"b", "6"}}));
    folder.Write("pack.zip", BuildZip({{"a", "1"}, {"b", "2"}, {"a", "3"}}).bytes);
    zip.Open(path);
    CStringArray names;
    names.Add(L"a");
    zip.DeleteFiles(names);
    EXPECT_EQ(zip.GetCount(), 1);
}

TEST_F(ZipWriteTest, NamesAreJudgedAndStoredAsNamesAreRead)
{
    const struct
    {
        const wchar_t* name;
        int cause;
        const char* stored;
    } rows[] = {
        {L"a\\b/c.txt", -1, "a/b/c.txt"},
        {L".\\x\\..\\d.txt", -1, "d.txt"},
        {L"\x00E9t\x00E9\\\x65E5.txt", -1, "\xC3\xA9t\xC3\xA9/\xE6\x97\xA5.txt"},
        {L"", CZipException::nameEmpty, nullptr},
        {L"C:\\a", CZipException::nameRooted, nullptr},
        {L"\\a", CZipException::nameRooted, nullptr},
        {L"a\\..\\..\\b", CZipException::nameParent, nullptr},
        {L"nul.txt", CZipException::nameDevice, nullptr},
        {L"ab:c", CZipException::nameStream, nullptr},
        {L"folder\\", CZipException::badArgument, nullptr},
    };
    const CString file = folder.Write("in/file", "x");
    Create();
    Contents wanted;
    for (const auto& row : rows) {
        EXPECT_EQ(ZipCause([&] { zip.AddNewFile(file, row.name); }), row.cause) << Utf8(row.name);
        if (row.stored != nullptr)
            wanted[row.stored] = "x";
    }
    const CString longName(L'x', 65536);
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(file, longName); }), CZipException::nameTooLong);
    zip.Close();
    EXPECT_EQ(ContentsOf(path), wanted);
    const std::string bytes = folder.Read("pack.zip");
    EXPECT_NE(bytes.find("a/b/c.txt"), std::string::npos);
    // Flag 11 is set where it has to be.
    EXPECT_EQ(bytes[7], 0);
    EXPECT_EQ(bytes[bytes.find("\xC3\xA9t") - 30 + 7], 8);
}

TEST_F(ZipWriteTest, TheFacadeChoosesTheName)
{
    const CString file = folder.Write("in/deep/f.txt", "x");
    Create();
    zip.AddNewFile(file, TRUE);
    zip.AddNewFile(file, FALSE);
    zip.AddNewFile(folder.Path("in/deep"), FALSE);
    zip.AddNewFile(folder.Path("in/deep/"), L"else");
    zip.Close();
    Contents names = ContentsOf(path);
    EXPECT_EQ(names.count(Utf8(file.Mid(3))), 1u);
    EXPECT_EQ(names.count("f.txt"), 1u);
    EXPECT_EQ(names.count("deep/"), 1u);
    EXPECT_EQ(names.count("else/"), 1u);
}

TEST_F(ZipWriteTest, TimesAndAttributesAreKept)
{
    const CString file = folder.Write("in/file", "x");
    const FILETIME time = vak::detail::FileTimeFromTime(CTime(2021, 6, 5, 4, 3, 1));
    ASSERT_TRUE(vak::system::SetFileTimes(file, nullptr, nullptr, &time));
    ASSERT_TRUE(vak::system::SetAttributes(file, vak::system::kAttributeReadOnly));
    Create();
    zip.AddNewFile(file, L"f");
    EXPECT_EQ(CTime(HeaderOf(zip, L"f").GetTime()).Format(L"%Y-%m-%d %H:%M:%S"), L"2021-06-05 04:03:02");
    zip.Close(CZip::zipCloseNormal, true);
    CTime written;
    EXPECT_TRUE(fileGetLastWriteDate(path, written));
    EXPECT_EQ(written.Format(L"%Y-%m-%d %H:%M:%S"), L"2021-06-05 04:03:02");
    const std::string bytes = folder.Read("pack.zip");
    EXPECT_EQ(bytes[bytes.find("PK\1\2") + 38] & 1, 1);
    EXPECT_EQ(bytes.substr(31, 5), std::string("UT\5\0\1", 5));
    vak::system::SetAttributes(file, vak::system::kAttributeNormal);
}

TEST_F(ZipWriteTest, WhatCannotBeAddedLeavesTheArchiveAsItWas)
{
    Prepare();
    const std::string before = folder.Read("pack.zip");
    zip.Open(path);
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(path, L"self"); }), CZipException::badArgument);
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(folder.Path("in\\..\\PACK.zip"), L"self"); }),
              folder.Has("PACK.zip") ? CZipException::badArgument : CZipException::targetError);
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(folder.Path("none"), L"n"); }), CZipException::targetError);
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(folder.Path("in\\file"), L"n", 10); }),
              CZipException::badArgument);
    zip.Close();
    EXPECT_EQ(folder.Read("pack.zip"), before);
    zip.Open(path);
    const FILETIME time = vak::detail::FileTimeFromTime(CTime(2021, 6, 5, 4, 3, 1));
    ASSERT_TRUE(vak::system::SetFileTimes(path, nullptr, nullptr, &time));
    EXPECT_EQ(ZipCause([&] { Add("c", "c"); }), CZipException::archiveChanged);
    zip.Open(path);
    Add("c", "c");
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(path + L".1.tmp", L"t"); }), CZipException::badArgument);
    ASSERT_TRUE(fileSetLastWriteDate(path, CTime(2022, 6, 5, 4, 3, 1)));
    EXPECT_EQ(ZipCause([&] { zip.Close(); }), CZipException::archiveChanged);
    EXPECT_EQ(folder.Read("pack.zip"), before);
}

TEST_F(ZipWriteTest, ArchivesThatMayNotBeChangedSaySo)
{
    Prepare();
    const auto refuse = [this] {
        CStringArray names;
        names.Add(L"a.txt");
        EXPECT_EQ(ZipCause([&] { Add("c", "c"); }), CZipException::isReadOnly);
        EXPECT_EQ(ZipCause([&] { zip.DeleteFiles(names); }), CZipException::isReadOnly);
        EXPECT_EQ(ZipCause([&] { zip.SetComment(L"c"); }), CZipException::isReadOnly);
        zip.Close();
    };
    zip.Open(path, CZip::zipOpenReadOnly);
    refuse();
    vak::system::SetAttributes(path, vak::system::kAttributeReadOnly);
    zip.Open(path);
    refuse();
    EXPECT_EQ(ZipCause([&] { Create(); }), CZipException::isReadOnly);
    vak::system::SetAttributes(path, vak::system::kAttributeNormal);
    EXPECT_EQ(ZipCause([&] { Add("c", "c"); }), CZipException::isClosed);
}

TEST_F(ZipWriteTest, ASplitArchiveIsWrittenInPartsOfItsSize)
{
    const std::string noise = Noise(300000);
    zip.Open(path, CZip::zipCreateSplit, 65536);
    Add("noise", noise);
    for (int i = 0; i < 900; ++i)
        Add(("dir/file-with-a-long-name-" + std::to_string(i)).c_str(), std::to_string(i));
    EXPECT_FALSE(folder.Has("pack.zip"));
    zip.Close();
    EXPECT_EQ(folder.Read("pack.z01").size(), 65536u);
    EXPECT_EQ(folder.Read("pack.z01").substr(0, 4), "PK\x07\x08");
    zip.Open(path);
    EXPECT_TRUE(zip.IsReadOnly());
    Contents contents = ContentsOf(zip);
    EXPECT_EQ(contents.size(), 901u);
    EXPECT_TRUE(contents["noise"] == noise);
    EXPECT_EQ(contents["dir/file-with-a-long-name-899"], "899");
    EXPECT_EQ(ZipCause([&] { Add("c", "c"); }), CZipException::isReadOnly);
    // Parts that are there are somebody's.
    EXPECT_EQ(ZipCause([&] { zip.Open(path, CZip::zipCreateSplit, 65536); }), CZipException::nameTaken);
    EXPECT_EQ(ContentsOf(path).size(), 901u);
}

TEST_F(ZipWriteTest, ASplitArchiveThatFitsOrFailsLeavesNoParts)
{
    zip.Open(path, CZip::zipCreateSplit, 65536);
    Add("a", "1");
    zip.Close();
    EXPECT_EQ(folder.Read("pack.zip").substr(0, 4), "PK00");
    EXPECT_EQ(ContentsOf(path), (Contents{{"a", "1"}}));
    zip.Open(path);
    EXPECT_FALSE(zip.IsReadOnly());
    zip.Open(path, CZip::zipCreateSplit, 65536);
    Add("noise", Noise(200000));
    EXPECT_TRUE(folder.Has("pack.z02"));
    zip.Close(CZip::zipCloseAfterError);
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"in", "in/file", "pack.zip"}));
    EXPECT_EQ(ZipCause([&] { zip.Open(path, CZip::zipCreateSplit, 65535); }), CZipException::volumeTooSmall);
    EXPECT_EQ(ZipCause([&] { zip.Open(folder.Path("x.cbz"), CZip::zipCreateSplit, 65536); }),
              CZipException::badArgument);
}

TEST_F(ZipWriteTest, MoreEntriesThanSixteenBitsCount)
{
    constexpr int kCount = 65540;
    CZipArchive many;
    many.Open(path, CZip::zipCreate);
    const CString source = folder.Path();
    for (int i = 0; i < kCount; ++i) {
        CString name;
        name.Format(L"%d", i);
        many.Add(source, name);
    }
    many.Close();
    many.Open(path);
    EXPECT_EQ(many.GetEntryCount(), static_cast<std::size_t>(kCount));
    EXPECT_EQ(many.Find(L"65539\\"), 65539u);
}

TEST_F(ZipWriteTest, CommentsAreWrittenInTheArchivesCodePage)
{
    Prepare();
    zip.Open(path);
    zip.SetComment(L"\x00C9t\x00E9 / 1");
    zip.Close();
    EXPECT_EQ(folder.Read("pack.zip").substr(folder.Read("pack.zip").size() - 7), "\x90t\x82 / 1");
    zip.Open(path);
    EXPECT_EQ(zip.GetComment(), L"\x00C9t\x00E9 / 1");
    EXPECT_EQ(ZipCause([&] { zip.SetComment(L"\x65E5"); }), CZipException::nameCharacter);
    EXPECT_EQ(ZipCause([&] { zip.SetComment(CString(L'x', 65536)); }), CZipException::nameTooLong);
    EXPECT_EQ(ContentsOf(zip).size(), 2u);
}
