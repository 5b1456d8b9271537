#include "tests/support/FaultyFile.h"
#include "tests/support/ZipChanges.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace vak::test;

using ZipRewriteTest = ZipFixture;

namespace {

/// What other tools may put into an archive, with nothing that this library would write so itself.
const ZipSpec kForeign = {.name = "b/foreign",
                          .data = "deflated by another",
                          .deflated = true,
                          .extra = Extra(0x9999, "central"),
                          .localExtra = Extra(0x8888, "local only"),
                          .comment = "say \x82",
                          .streamed = true,
                          .behind = "PK\x07\x08" + Little(Crc("deflated by another"), 4) + Little(24, 4) +
                                    Little(19, 4),
                          .madeBy = 0x31E,
                          .attributes = 0x81A40000};

} // namespace

TEST_F(ZipRewriteTest, WhatBelongsToKeptEntriesStaysByteForByte)
{
    const std::string stub = "MZ a program in front";
    const BuiltZip built = BuildZip({{"a", "first"}, kForeign, {"c", "last", true}},
                                    {.front = stub, .comment = "about\r\nit", .behind = "nobody's"});
    Open(built);
    zip.DeleteFiles(ZipNames({L"a"}));
    const std::string bytes = folder.Read("pack.zip");
    const std::string data = built.bytes.substr(built.local[1], built.central[0] - built.local[1]);
    EXPECT_EQ(bytes.substr(0, stub.size() + data.size()), stub + data);
    std::string record = built.bytes.substr(built.central[1], built.central[2] - built.central[1]);
    record.replace(42, 4, Little(stub.size(), 4));
    EXPECT_EQ(bytes.substr(stub.size() + data.size(), record.size()), record);
    EXPECT_EQ(bytes.substr(bytes.size() - 9), "about\r\nit");
    EXPECT_EQ(ContentsOf(zip), (Contents{{"b/foreign", "deflated by another"}, {"c", "last"}}));
    EXPECT_EQ(ContentsOf(path), ContentsOf(zip));
}

TEST_F(ZipRewriteTest, ARenamedEntryKeepsAllButItsName)
{
    Open(BuildZip({{"a", "first"}, kForeign, {"c", "last"}}));
    ZipNames from({L"b/foreign"}), to({L"b\\\x65E5"});
    EXPECT_NE(zip.RenameFiles(from, to), 0);
    EXPECT_EQ(ContentsOf(path),
              (Contents{{"a", "first"}, {"b/\xE6\x97\xA5", "deflated by another"}, {"c", "last"}}));
    EXPECT_EQ(zip.FindFile(L"b\\\x65E5"), 1);
    // The name made the comment UTF-8, too.
    EXPECT_EQ(HeaderOf(zip, L"b\\\x65E5").GetComment(), L"say \x00E9");
    const std::string bytes = folder.Read("pack.zip");
    EXPECT_NE(bytes.find(Extra(0x9999, "central")), std::string::npos);
    EXPECT_NE(bytes.find(Extra(0x8888, "local only")), std::string::npos);
}

TEST_F(ZipRewriteTest, PairsThatMayNotBeRenamedAreDropped)
{
    const struct
    {
        const char* what;
        std::vector<CString> from, to, fromKept, toKept;
        int result;
    } rows[] = {
        {"nothing", {}, {}, {}, {}, 0},
        {"lengths", {L"d/a", L"x"}, {L"d/z"}, {L"d/a", L"x"}, {L"d/z"}, 0},
        {"moves", {L"d/a", L"x"}, {L"a", L"d/x"}, {}, {}, 0},
        {"taken", {L"d/a", L"x"}, {L"d/b", L"y"}, {L"x"}, {L"y"}, 1},
        {"missing", {L"none", L"d\\a"}, {L"n", L"d/A"}, {L"d\\a"}, {L"d/A"}, 1},
        {"chain", {L"d/a", L"d/b"}, {L"d/c", L"d/a"}, {L"d/a", L"d/b"}, {L"d/c", L"d/a"}, 1},
        {"twice", {L"d/a", L"d/a"}, {L"d/c", L"d/e"}, {L"d/a"}, {L"d/c"}, 1},
        {"same", {L"x"}, {L"x"}, {}, {}, 0},
    };
    for (const auto& row : rows) {
        Open(BuildZip({{"d/a", "1"}, {"d/b", "2"}, {"x", "3"}}));
        ZipNames from(row.from), to(row.to);
        EXPECT_EQ(zip.RenameFiles(from, to), row.result) << row.what;
        EXPECT_EQ(std::vector<CString>(from.GetData(), from.GetData() + from.GetSize()), row.fromKept);
        EXPECT_EQ(std::vector<CString>(to.GetData(), to.GetData() + to.GetSize()), row.toKept) << row.what;
        EXPECT_EQ(ContentsOf(path).size(), 3u) << row.what;
    }
    EXPECT_EQ(ContentsOf(path), (Contents{{"d/a", "1"}, {"d/b", "2"}, {"x", "3"}}));
    ZipNames from({L"x"}), to({L"nul"});
    EXPECT_EQ(ZipCause([&] { zip.RenameFiles(from, to); }), CZipException::nameDevice);
    EXPECT_TRUE(zip.IsClosed());
}

TEST_F(ZipRewriteTest, DeletingTakesEveryEntryOfTheNameAndDamagedOnes)
{
    BuiltZip built = BuildZip({{"a", "1"}, {"b", "2"}, {"a", "3"}, {"c", "4"}});
    built.Put(built.central[3] + 42, 0x7FFFFFFF, 4);
    Open(built);
    EXPECT_EQ(ZipCause([&] { zip.DeleteFiles(ZipNames({L"a"})); }), CZipException::dataOffset);
    EXPECT_EQ(folder.Read("pack.zip"), built.bytes);
    zip.Close();
    zip.Open(path); // deleting is the first that reads the directory
    zip.DeleteFiles(ZipNames({L"a", L"c"}));
    EXPECT_EQ(ContentsOf(path), (Contents{{"b", "2"}}));
    zip.DeleteFiles(ZipNames({L"b"}));
    EXPECT_EQ(zip.GetCount(), 0);
    Add("e", "5");
    zip.Close();
    EXPECT_EQ(ContentsOf(path), (Contents{{"e", "5"}}));
}

/// A random walk against a map: whatever is done in whatever order, entries and data are those of the map.
TEST_F(ZipRewriteTest, AddingDeletingAndRenamingAgreeWithAMap)
{
    std::mt19937 random(20);
    const auto below = [&random](std::size_t count) { return random() % count; };
    Contents model;
    Create();
    for (int step = 0; step < 400; ++step) {
        const std::string name = "d/" + std::to_string(below(30));
        const std::string other = "d/" + std::to_string(below(30));
        switch (below(10)) {
        case 0:
            zip.DeleteFiles(ZipNames({CString(name.c_str()), CString(other.c_str())}));
            model.erase(name);
            model.erase(other);
            break;
        case 1: {
            ZipNames from({CString(name.c_str())}), to({CString(other.c_str())});
            const bool may = model.count(name) != 0 && model.count(other) == 0;
            EXPECT_EQ(zip.RenameFiles(from, to) != 0, may);
            if (may)
                model[other] = std::move(model.extract(name).mapped());
            break;
        }
        case 2:
            zip.Close();
            zip.Open(path);
            break;
        default:
            model[name] = below(2) != 0 ? Words(below(3000)) : Noise(below(500), static_cast<unsigned>(step));
            Add(name, model[name]);
        }
        ASSERT_EQ(zip.GetEntryCount(), model.size()) << step;
        ASSERT_EQ(zip.FindFile(CString(name.c_str())) >= 0, model.count(name) != 0) << step;
        ASSERT_TRUE(step % 20 != 0 || ContentsOf(zip) == model) << step;
    }
    zip.Close();
    EXPECT_EQ(ContentsOf(path), model);
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"in", "in/file", "pack.zip"}));
}

/// Every operation on files fails once, as on a full disk.
TEST(ZipFailureTest, AFailureAnywhereLeavesAnArchiveThatWasCompleted)
{
    ZipChanges changes;
    bool happened = true;
    for (int number = 1; happened; ++number) {
        changes.Reset();
        int cause = -1;
        {
            CZip zip;
            const FailingSystem failing(number);
            cause = ZipCause([&] { changes.Act(zip); });
            happened = failing.Happened();
        }
        const auto stage = changes.Stage();
        EXPECT_TRUE(stage == 3 || (stage >= 0 && cause > 0)) << number << ": " << stage << ", " << cause;
        ASSERT_LT(number, 300);
    }
}

/// The disk is full for one entry among others: it is refused, and the others are whole.
TEST_F(ZipRewriteTest, AnEntryThatFailsLeavesThoseAddedBefore)
{
    Contents wanted;
    bool happened = true;
    for (int number = 1; happened; ++number) {
        Create();
        wanted = {{"a", "1"}, {"z", "3"}};
        Add("a", "1");
        const CString file = folder.Write("in/large", Noise(700000));
        {
            const FailingSystem failing(number);
            const int cause = ZipCause([&] { zip.AddNewFile(file, L"large"); });
            happened = failing.Happened();
            if (cause == -1)
                wanted["large"] = Noise(700000);
        }
        Add("z", "3");
        zip.Close();
        EXPECT_TRUE(ContentsOf(path) == wanted) << number;
        ASSERT_LT(number, 100);
    }
    EXPECT_EQ(wanted.size(), 3u);
}
