#include "framework/base/Time.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

using namespace vak::test;
using E = CZipException;

using ZipReadTest = ZipFixture;

namespace {

/// A directory and two files.
const std::vector<ZipSpec> kThree = {
    {"models/", ""}, {"models/Car.obj", "v 1 2 3"}, {"read.me", "hello", true}};

} // namespace

TEST_F(ZipReadTest, AnArchiveIsClosedBeforeOpeningAndAfterClosing)
{
    EXPECT_TRUE(zip.IsClosed());
    EXPECT_EQ(ZipCause([&] { zip.GetCount(); }), E::isClosed);
    Open(BuildZip(kThree));
    EXPECT_FALSE(zip.IsClosed());
    EXPECT_FALSE(zip.IsReadOnly());
    EXPECT_EQ(zip.GetArchivePath(), path);
    zip.Open(path, CZip::zipOpenReadOnly);
    EXPECT_TRUE(zip.IsReadOnly());
    zip.Close();
    EXPECT_TRUE(zip.IsClosed());
    EXPECT_EQ(ZipCause([&] { zip.Open(folder.Path("none.zip")); }), E::systemError);
    EXPECT_TRUE(zip.IsClosed());
}

TEST_F(ZipReadTest, EntriesAreListedInTheDirectorysOrder)
{
    Open(BuildZip(kThree, {.comment = "no comment"}));
    EXPECT_EQ(zip.GetCount(), 3);
    EXPECT_EQ(zip.GetCount(true), 2);
    EXPECT_EQ(zip.GetComment(), L"no comment");
    CZipHeader header;
    ASSERT_TRUE(zip.GetFileInfo(header, 1));
    EXPECT_FALSE(zip.GetFileInfo(header, 3));
    EXPECT_EQ(header.GetFileName(), L"models\\Car.obj");
    EXPECT_EQ(header.GetUncompressedSize(), 7u);
    EXPECT_EQ(CTime(header.GetTime()).Format(L"%Y-%m-%d %H:%M:%S"), L"2025-03-15 13:37:10");
}

TEST_F(ZipReadTest, EntriesAreFoundByNameByFileNameAndByPattern)
{
    Open(BuildZip(kThree));
    EXPECT_EQ(zip.FindFile(L"models/Car.obj"), 1);
    EXPECT_EQ(zip.FindFile(L"models\\car.obj"), -1);
    EXPECT_EQ(zip.FindFile(L"MODELS\\car.obj", CZip::zipCompareNoCase), 1);
    EXPECT_EQ(zip.FindFile(L"Car.obj"), -1);
    EXPECT_EQ(zip.FindFile(L"else\\Car.obj", 0, true), 1);
    EXPECT_EQ(zip.FindFile(L"CAR.OBJ", 2, true), 1);
    EXPECT_EQ(zip.FindFile(L"models\\"), 0);
    CArray<WORD> found;
    found.Add(7);
    EXPECT_EQ(zip.FindMatchingFiles(found, L"*.OBJ", false), 1);
    ASSERT_EQ(found.GetSize(), 1);
    EXPECT_EQ(found[0], 1);
    EXPECT_EQ(zip.FindMatchingFiles(found, L"models/*", true), 2);
    EXPECT_EQ(zip.FindMatchingFiles(found, L"*.stl", true), 0);
    EXPECT_TRUE(found.IsEmpty());
}

/// Forms that tools write and that all say the same.
TEST_F(ZipReadTest, EveryFormOfASoundArchiveIsRead)
{
    const ZipSpec plain{"a", "data"};
    const auto streamed = [](const std::string& descriptor) {
        return ZipSpec{.name = "a", .data = "data", .streamed = true, .behind = descriptor};
    };
    const std::string narrow = Little(Crc("data"), 4) + Little(4, 4) + Little(4, 4);
    const std::string wide = Little(Crc("data"), 4) + Little(4, 8) + Little(4, 8);
    const Contents wanted = {{"a", "data"}, {"last", "end"}};
    const struct
    {
        ZipSpec spec;
        ZipShape shape;
    } forms[] = {
        {plain, {}},
        {{"a", "data", true}, {}},
        {streamed(narrow), {}},
        {streamed(wide), {}},
        {streamed("PK\x07\x08" + narrow), {}},
        {streamed("PK\x07\x08" + wide), {}},
        {{.name = "a", .data = "data", .flags = 8}, {}}, // no descriptor, and none needed
        {{.name = "a", .data = "data", .extra = std::string(3, '\0')}, {}},
        {plain, {.zip64 = true}},
        {plain, {.front = "MZ program"}},
        {plain, {.front = "MZ program", .zip64 = true}},
        {plain, {.gap = "padding"}},
        {plain, {.gap = "PK\x05\x05" + Little(3, 2) + "sig"}},
        {plain, {.comment = std::string(65535, 'c')}},
        {plain, {.comment = "see PK\x05\x06 here" + std::string(30, ' ')}},
        {plain, {.comment = "PK\x05\x06" + std::string(18, '\0') + "no end"}},
        {plain, {.comment = "PK\x05\x06" + std::string(8, '\7') + std::string(10, '\0') + "no part"}},
        {plain, {.behind = std::string(70000, 'x')}},
    };
    for (const auto& form : forms) {
        Open(BuildZip({form.spec, {"last", "end"}}, form.shape));
        EXPECT_EQ(ContentsOf(zip), wanted) << &form - forms;
    }
}

TEST_F(ZipReadTest, WhatDoesNotFitTheInterfaceIsRefusedOnlyWhereItIsAskedFor)
{
    BuiltZip built = BuildZip({{.name = "a", .data = "data", .extra = Extra(1, Little(5'000'000'000, 8))}});
    built.Put(built.central[0] + 24, 0xFFFFFFFF, 4);
    Open(built);
    CZipHeader header;
    ASSERT_TRUE(zip.GetFileInfo(header, 0));
    EXPECT_EQ(header.GetLength(), 5'000'000'000u);
    EXPECT_EQ(ZipCause([&] { header.GetUncompressedSize(); }), E::tooLarge);

    std::vector<ZipSpec> specs;
    for (int i = 0; i < 65536; ++i)
        specs.push_back({"f" + std::to_string(i % 40000), ""});
    Open(BuildZip(specs)); // a tool without zip64: the record says 0
    EXPECT_EQ(zip.GetCount(), 65536);
    for (int i = 0; i < 40000; ++i) // of equal names the first
        ASSERT_EQ(zip.FindFile(CString(specs[static_cast<std::size_t>(i)].name.c_str())), i);
    specs.push_back({"y", ""});
    Open(BuildZip(specs, {.zip64 = true}));
    EXPECT_EQ(zip.GetEntryCount(), 65537u);
    EXPECT_EQ(zip.Find(L"y"), 65536u);
    EXPECT_EQ(ZipCause([&] { zip.GetCount(); }), E::tooManyEntries);
    EXPECT_EQ(ZipCause([&] { zip.FindFile(L"y"); }), E::tooManyEntries);
    Add("z", "last");
    zip.Close();
    zip.Open(path);
    EXPECT_EQ(zip.GetEntryCount(), 65538u);
    EXPECT_EQ(DataOf(zip, zip.Find(L"z")), "last");
}

TEST_F(ZipReadTest, ExtractingMakesFoldersNamesAndTimes)
{
    Open(BuildZip(kThree));
    const CString to = folder.Path("out\\deep");
    const struct
    {
        WORD index;
        bool fullPath;
        LPCWSTR newName;
        const char *made, *data; ///< null: a folder
    } rows[] = {
        {1, true, nullptr, "models/Car.obj", "v 1 2 3"},
        {1, false, nullptr, "Car.obj", "v 1 2 3"},
        {2, true, L"sub/new.txt", "sub/new.txt", "hello"},
        {2, false, L"sub\\flat.txt", "flat.txt", "hello"},
        {0, true, nullptr, "models", nullptr},
        {0, true, L"renamed", "renamed", nullptr},
    };
    for (const auto& row : rows) {
        EXPECT_TRUE(zip.ExtractFile(row.index, to, row.fullPath, row.newName));
        const std::string made = std::string("out/deep/") + row.made;
        EXPECT_TRUE(row.data == nullptr ? folder.Has(made) : folder.Read(made) == row.data) << made;
    }
    CFileStatus status;
    ASSERT_TRUE(CFile::GetStatus(folder.Path("out\\deep\\Car.obj"), status));
    EXPECT_EQ(status.m_mtime.Format(L"%Y-%m-%d %H:%M:%S"), L"2025-03-15 13:37:10");
}

TEST_F(ZipReadTest, AFileInTheWayIsReplacedOnlyByRightData)
{
    BuiltZip built = BuildZip({{"a", "new"}, {"bad", "damaged"}});
    built.bytes[built.local[1] + 34] ^= 1;
    Open(built);
    folder.Write("out/a", "the old file");
    folder.Write("out/bad", "the old file");
    EXPECT_TRUE(zip.ExtractFile(0, folder.Path("out")));
    EXPECT_EQ(folder.Read("out/a"), "new");
    EXPECT_EQ(ZipCause([&] { zip.ExtractFile(1, folder.Path("out")); }), E::crcMismatch);
    EXPECT_EQ(folder.Read("out/bad"), "the old file");
    EXPECT_EQ(folder.Names().size(), 4u); // nothing temporary stays
    // The failure has closed the archive, and reopening goes on.
    EXPECT_TRUE(zip.IsClosed());
    zip.Open(zip.GetArchivePath());
    EXPECT_EQ(DataOf(zip, 0), "new");
    // What was kept of the archive is not used when its file is another.
    zip.Close(CZip::zipCloseAfterError);
    Open(BuildZip({{"other", "archive"}}));
    EXPECT_EQ(ContentsOf(zip), (Contents{{"other", "archive"}}));
}

TEST_F(ZipReadTest, LimitsAreAskedBeforeAnythingIsWritten)
{
    Open(BuildZip({{"a", std::string(1000, 'a')}, {"b", std::string(1000, 'b')}}));
    const auto refusal = [this](const CZipLimits& limits) {
        zip.SetLimits(limits);
        return ZipCause([this] { zip.Test(1); });
    };
    EXPECT_TRUE(zip.ExtractFile(0, folder.Path("out")));
    EXPECT_EQ(refusal({.maxTotal = 1999}), E::limitTotal);
    EXPECT_EQ(refusal({.maxEntry = 999}), E::limitSize);
    EXPECT_EQ(refusal({.maxRatio = 1, .ratioFloor = 999}), E::limitRatio);
    // Many small entries are as bad as a large one.
    EXPECT_EQ(refusal({.maxRatio = 1, .ratioFloor = 1999}), E::limitRatio);
    EXPECT_EQ(refusal({.maxTotal = 2000, .maxRatio = 1, .ratioFloor = 2000}), -1);
}

TEST(ZipPathTest, APathThroughAnArchiveIsSplitBehindIt)
{
    // What is split, with or without a final backslash, and the archive and what is inside it; null: none.
    const std::tuple<CString, bool, const wchar_t*, const wchar_t*> rows[] = {
        {L"C:\\dir\\pack.zip\\models\\car", false, L"C:\\dir\\pack.zip", L"models\\car"},
        {L"C:\\dir\\PACK.ZIP\\models\\", true, L"C:\\dir\\PACK.ZIP\\", L"models\\"},
        {L"pack.zip", false, L"pack.zip", L""},
        {L"a.zip\\b.zip\\c", false, L"a.zip", L"b.zip\\c"},
        {L"C:\\dir\\pack.zipx", false, nullptr, nullptr},
        {L"C:\\my.zips\\pack.zip\\a", false, nullptr, nullptr},
        {L"C:\\dir\\pack.rar\\a", false, nullptr, nullptr},
    };
    for (const auto& [whole, slash, archive, inside] : rows) {
        CString path = whole;
        CString inner = L"before";
        EXPECT_EQ(CZip::ExtractDirInfo(path, inner, slash), archive != nullptr);
        EXPECT_EQ(path, archive != nullptr ? CString(archive) : whole);
        EXPECT_EQ(inner, archive != nullptr ? inside : L"before");
    }
}
