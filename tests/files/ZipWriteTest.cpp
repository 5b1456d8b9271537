#include "files/FileSystem.h"
#include "files/ZipArchive.h"
#include "framework/base/SystemFile.h"
#include "framework/base/Time.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace vak::test;
using E = CZipException;

namespace {

class ZipWriteTest : public ZipFixture
{
protected:
    /// An archive of two files.
    void Prepare()
    {
        Create();
        Add("a.txt", "old a");
        Add("b.txt", "old b");
        zip.Close();
    }
};

} // namespace

TEST_F(ZipWriteTest, DataComeBackWhateverTheirSizeAndLevel)
{
    const std::string noise = Noise(3000000);
    const struct
    {
        const char* name;
        std::string data;
        int level, method;
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
    Contents wanted;
    for (const auto& row : rows) {
        Add(row.name, wanted[row.name] = row.data, row.level);
        EXPECT_EQ(HeaderOf(zip, CString(row.name)).GetMethod(), row.method) << row.name;
    }
    zip.Close();
    EXPECT_TRUE(ContentsOf(path) == wanted);
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
    const Contents old = ContentsOf(path);
    const Contents wanted = {{"a.txt", "new a"}, {"b.txt", "old b"}, {"c.txt", "new c"}};
    for (const auto action : {CZip::zipCloseAfterError, CZip::zipCloseNormal}) {
        zip.Open(path);
        Add("a.txt", "new a");
        Add("c.txt", Words(300000));
        Add("c.txt", "new c");
        EXPECT_EQ(ContentsOf(zip), wanted);
        EXPECT_EQ(ContentsOf(path), old);
        zip.Close(action);
        EXPECT_EQ(ContentsOf(path), action == CZip::zipCloseNormal ? wanted : old);
    }
    // What was replaced is not left behind as dead data.
    EXPECT_LT(folder.Read("pack.zip").size(), 500u);
    EXPECT_EQ(folder.Names().size(), 3u);
}

TEST_F(ZipWriteTest, NamesThatAreThereTwiceAreReplacedByOne)
{
    Open(BuildZip({{"a", "1"}, {"b", "2"}, {"a", "3"}, {"b", "4"}}));
    Add("a", "5");
    Add("b", "6");
    zip.Close();
    EXPECT_EQ(ContentsOf(path), (Contents{{"a", "5"}, {"b", "6"}}));
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
        {L"C:\\a", E::nameRooted, nullptr},
        {L"a\\..\\..\\b", E::nameParent, nullptr},
        {L"folder\\", E::badArgument, nullptr},
    };
    const CString file = folder.Write("in/file", "x");
    Create();
    Contents wanted;
    for (const auto& row : rows) {
        EXPECT_EQ(ZipCause([&] { zip.AddNewFile(file, row.name); }), row.cause) << Utf8(row.name);
        if (row.stored != nullptr)
            wanted[row.stored] = "x";
    }
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(file, CString(L'x', 65536).GetString()); }), E::nameTooLong);
    zip.Close();
    EXPECT_EQ(ContentsOf(path), wanted);
    const std::string bytes = folder.Read("pack.zip");
    EXPECT_EQ(bytes.substr(30, 9), "a/b/c.txt");
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
    EXPECT_EQ(ContentsOf(zip),
              (Contents{{Utf8(file.Mid(3)), "x"}, {"f.txt", "x"}, {"deep/", ""}, {"else/", ""}}));
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
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(path, L"self"); }), E::badArgument);
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(folder.Path("in\\..\\PACK.zip"), L"self"); }),
              folder.Has("PACK.zip") ? E::badArgument : E::targetError);
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(folder.Path("none"), L"n"); }), E::targetError);
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(folder.Path("in\\file"), L"n", 10); }), E::badArgument);
    zip.Close();
    EXPECT_EQ(folder.Read("pack.zip"), before);
    zip.Open(path);
    const FILETIME time = vak::detail::FileTimeFromTime(CTime(2021, 6, 5, 4, 3, 1));
    ASSERT_TRUE(vak::system::SetFileTimes(path, nullptr, nullptr, &time));
    EXPECT_EQ(ZipCause([&] { Add("c", "c"); }), E::archiveChanged);
    zip.Open(path);
    Add("c", "c");
    EXPECT_EQ(ZipCause([&] { zip.AddNewFile(path + L".1.tmp", L"t"); }), E::badArgument);
    ASSERT_TRUE(fileSetLastWriteDate(path, CTime(2022, 6, 5, 4, 3, 1)));
    EXPECT_EQ(ZipCause([&] { zip.Close(); }), E::archiveChanged);
    EXPECT_EQ(folder.Read("pack.zip"), before);
}

TEST_F(ZipWriteTest, ArchivesThatMayNotBeChangedSaySo)
{
    Prepare();
    const auto refuse = [this] {
        EXPECT_EQ(ZipCause([&] { Add("c", "c"); }), E::isReadOnly);
        EXPECT_EQ(ZipCause([&] { zip.DeleteFiles(ZipNames({L"a.txt"})); }), E::isReadOnly);
        EXPECT_EQ(ZipCause([&] { zip.SetComment(L"c"); }), E::isReadOnly);
        zip.Close();
    };
    zip.Open(path, CZip::zipOpenReadOnly);
    refuse();
    vak::system::SetAttributes(path, vak::system::kAttributeReadOnly);
    zip.Open(path);
    refuse();
    EXPECT_EQ(ZipCause([&] { Create(); }), E::isReadOnly);
    vak::system::SetAttributes(path, vak::system::kAttributeNormal);
    EXPECT_EQ(ZipCause([&] { Add("c", "c"); }), E::isClosed);
}

TEST_F(ZipWriteTest, ASplitArchiveIsWrittenInPartsOfItsSize)
{
    const auto split = [this](int size = 65536) { zip.Open(path, CZip::zipCreateSplit, size); };
    // One that fits into a part is none.
    split();
    Add("a", "1");
    zip.Close();
    EXPECT_EQ(folder.Read("pack.zip").substr(0, 4), "PK00");
    EXPECT_EQ(ContentsOf(path), (Contents{{"a", "1"}}));
    zip.Open(path);
    EXPECT_FALSE(zip.IsReadOnly());
    // What is given up leaves no parts, and what was there before.
    split();
    Add("noise", Noise(300000));
    EXPECT_TRUE(folder.Has("pack.z02"));
    zip.Close(CZip::zipCloseAfterError);
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"in", "in/file", "pack.zip"}));
    EXPECT_EQ(ContentsOf(path), (Contents{{"a", "1"}}));
    split();
    Contents wanted;
    Add("noise", wanted["noise"] = Noise(300000));
    for (int i = 0; i < 900; ++i) {
        const std::string number = std::to_string(i);
        Add("dir/file-with-a-long-name-" + number, wanted["dir/file-with-a-long-name-" + number] = number);
    }
    zip.Close();
    EXPECT_EQ(folder.Read("pack.z01").size(), 65536u);
    EXPECT_EQ(folder.Read("pack.z01").substr(0, 4), "PK\x07\x08");
    zip.Open(path);
    EXPECT_TRUE(zip.IsReadOnly());
    EXPECT_EQ(ZipCause([&] { Add("c", "c"); }), E::isReadOnly);
    // Parts that are there are somebody's.
    EXPECT_EQ(ZipCause([&] { split(); }), E::nameTaken);
    EXPECT_TRUE(ContentsOf(path) == wanted);
    EXPECT_EQ(ZipCause([&] { split(65535); }), E::volumeTooSmall);
    EXPECT_EQ(ZipCause([&] { zip.Open(folder.Path("x.cbz"), CZip::zipCreateSplit, 65536); }), E::badArgument);
}

TEST_F(ZipWriteTest, CommentsAreWrittenInTheArchivesCodePage)
{
    Prepare();
    zip.Open(path);
    zip.SetComment(L"\x00C9t\x00E9 / 1");
    EXPECT_EQ(folder.Read("pack.zip").substr(folder.Read("pack.zip").size() - 7), "\x90t\x82 / 1");
    zip.Open(path);
    EXPECT_EQ(zip.GetComment(), L"\x00C9t\x00E9 / 1");
    EXPECT_EQ(ZipCause([&] { zip.SetComment(L"\x65E5"); }), E::nameCharacter);
    EXPECT_EQ(ZipCause([&] { zip.SetComment(CString(L'x', 65536)); }), E::nameTooLong);
    EXPECT_EQ(ContentsOf(zip).size(), 2u);
}
