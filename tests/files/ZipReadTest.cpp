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

TEST_F(ZipReadTest, OfEqualNamesTheFirstIsFoundAmongThousands)
{
    std::vector<ZipSpec> specs;
    for (int i = 0; i < 5000; ++i)
        specs.push_back({"f" + std::to_string(i % 2500), std::to_string(i)});
    Open(BuildZip(specs));
    for (int i = 0; i < 2500; ++i)
        ASSERT_EQ(zip.FindFile(CString(("f" + std::to_string(i)).c_str())), i);
    EXPECT_EQ(zip.FindFile(L"f2500"), -1);
    EXPECT_EQ(DataOf(zip, 4321), "4321");
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

TEST_F(ZipReadTest, Zip64FieldsStandForSizesAndOffset)
{
    const std::string sizes = Extra(1, Little(4, 8) + Little(4, 8));
    BuiltZip built = BuildZip({{.name = "a", .data = "data", .extra = sizes, .localExtra = sizes},
                               {.name = "b", .data = "1", .extra = Extra(1, Little(55, 8))}});
    for (const std::size_t at : {built.local[0] + 18, built.central[0] + 20})
        built.Put(at, ~std::uint64_t{0}, 8);
    ASSERT_EQ(built.local[1], 55u);
    built.Put(built.central[1] + 42, 0xFFFFFFFF, 4);
    Open(built);
    EXPECT_EQ(ContentsOf(zip), (Contents{{"a", "data"}, {"b", "1"}}));
}

TEST_F(ZipReadTest, WhatDoesNotFitTheInterfaceIsRefusedWhereItIsAskedFor)
{
    BuiltZip built = BuildZip({{.name = "a", .data = "data", .extra = Extra(1, Little(5'000'000'000, 8))}});
    built.Put(built.central[0] + 24, 0xFFFFFFFF, 4);
    Open(built);
    CZipHeader header;
    ASSERT_TRUE(zip.GetFileInfo(header, 0));
    EXPECT_EQ(header.GetLength(), 5'000'000'000u);
    EXPECT_EQ(ZipCause([&] { header.GetUncompressedSize(); }), E::tooLarge);

    std::vector<ZipSpec> specs(65536, {"x", ""});
    Open(BuildZip(specs)); // a tool without zip64: the record says 0
    EXPECT_EQ(zip.GetCount(), 65536);
    specs.push_back({"y", ""});
    Open(BuildZip(specs, {.zip64 = true}));
    EXPECT_EQ(zip.GetEntryCount(), 65537u);
    EXPECT_EQ(zip.Find(L"y"), 65536u);
    EXPECT_EQ(ZipCause([&] { zip.GetCount(); }), E::tooManyEntries);
    EXPECT_EQ(ZipCause([&] { zip.FindFile(L"y"); }), E::tooManyEntries);
}

TEST_F(ZipReadTest, ExtractingMakesFoldersNamesAndTimes)
{
    Open(BuildZip(kThree));
    const CString to = folder.Path("out\\deep");
    EXPECT_TRUE(zip.ExtractFile(1, to, true));
    EXPECT_TRUE(zip.ExtractFile(1, to, false));
    EXPECT_TRUE(zip.ExtractFile(2, to, true, L"sub/new.txt"));
    EXPECT_TRUE(zip.ExtractFile(2, to, false, L"sub\\flat.txt"));
    EXPECT_TRUE(zip.ExtractFile(0, to + L"\\more"));
    EXPECT_TRUE(zip.ExtractFile(0, to, true, L"renamed"));
    EXPECT_EQ(folder.Read("out/deep/models/Car.obj"), "v 1 2 3");
    EXPECT_EQ(folder.Read("out/deep/Car.obj"), "v 1 2 3");
    EXPECT_EQ(folder.Read("out/deep/sub/new.txt"), "hello");
    EXPECT_EQ(folder.Read("out/deep/flat.txt"), "hello");
    EXPECT_TRUE(folder.Has("out/deep/more/models"));
    EXPECT_TRUE(folder.Has("out/deep/renamed"));
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

TEST_F(ZipReadTest, LongEntriesPassThroughEveryBufferSize)
{
    const std::string text = Noise(65535);
    Open(BuildZip({{"stored", text + text}, {"deflated", text, true}}));
    for (const DWORD size : {0u, 5000u, 65536u, 0xFFFFFFFFu}) {
        for (const WORD index : {0, 1})
            EXPECT_TRUE(zip.ExtractFile(index, folder.Path("out"), true, nullptr, size));
        EXPECT_TRUE(folder.Read("out/stored") == text + text);
        EXPECT_TRUE(folder.Read("out/deflated") == text);
    }
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
