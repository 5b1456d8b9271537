#include "files/Zip.h"
#include "tests/support/FaultyFile.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ZipBuilder.h"
#include "tests/support/ZipChanges.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace vak::test;

namespace {

struct Names : CStringArray
{
    explicit Names(const std::vector<const wchar_t*>& names)
    {
        for (const wchar_t* const name : names)
            Add(name);
    }
};

class ZipRewriteTest : public testing::Test
{
protected:
    void Prepare(const BuiltZip& built)
    {
        zip.Close();
        folder.Write("pack.zip", built.bytes);
        zip.Open(path);
    }
    void Add(const std::string& name, const std::string& data)
    {
        zip.AddNewFile(folder.Write("in/file", data), CString(name.c_str()).GetString());
    }

    TempFolder folder;
    const CString path = folder.Path("pack.zip");
    CZip zip;
};

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
    Prepare(built);
    zip.DeleteFiles(Names({L"a"}));
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
    Prepare(BuildZip({{"a", "first"}, kForeign, {"c", "last"}}));
    Names from({L"b/foreign"});
    Names to({L"b\\\x65E5"});
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
        std::vector<const wchar_t*> from, to, fromKept, toKept;
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
        Prepare(BuildZip({{"d/a", "1"}, {"d/b", "2"}, {"x", "3"}}));
        Names from(row.from);
        Names to(row.to);
        EXPECT_EQ(zip.RenameFiles(from, to), row.result) << row.what;
        ASSERT_EQ(from.GetSize(), static_cast<INT_PTR>(row.fromKept.size())) << row.what;
        ASSERT_EQ(to.GetSize(), static_cast<INT_PTR>(row.toKept.size())) << row.what;
        for (std::size_t i = 0; i < row.fromKept.size(); ++i)
            EXPECT_EQ(from[static_cast<INT_PTR>(i)], row.fromKept[i]) << row.what;
        EXPECT_EQ(ContentsOf(path).size(), 3u) << row.what;
    }
    EXPECT_EQ(ContentsOf(path), (Contents{{"d/a", "1"}, {"d/b", "2"}, {"x", "3"}}));
    Names from({L"x"});
    Names to({L"nul"});
    EXPECT_EQ(ZipCause([&] { zip.RenameFiles(from, to); }), CZipException::nameDevice);
    EXPECT_TRUE(zip.IsClosed());
}

TEST_F(ZipRewriteTest, DeletingTakesEveryEntryOfTheNameAndDamagedOnes)
{
    BuiltZip built = BuildZip({{"a", "1"}, {"b", "2"}, {"a", "3"}, {"c", "4"}});
    built.Put(built.central[3] + 42, 0x7FFFFFFF, 4);
    Prepare(built);
    EXPECT_EQ(ZipCause([&] { zip.DeleteFiles(Names({L"a"})); }), CZipException::dataOffset);
    EXPECT_EQ(folder.Read("pack.zip"), built.bytes);
    zip.DeleteFiles(Names({L"a", L"c"}));
    EXPECT_EQ(ContentsOf(path), (Contents{{"b", "2"}}));
    zip.DeleteFiles(Names({L"b"}));
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
    zip.Open(path, CZip::zipCreate);
    for (int step = 0; step < 400; ++step) {
        const std::string name = "d/" + std::to_string(below(30));
        const std::string other = "d/" + std::to_string(below(30));
        switch (below(10)) {
        case 0: {
            CStringArray names;
            names.Add(CString(name.c_str()));
            names.Add(CString(other.c_str()));
            zip.DeleteFiles(names);
            model.erase(name);
            model.erase(other);
            break;
        }
        case 1: {
            CStringArray from;
            CStringArray to;
            from.Add(CString(name.c_str()));
            to.Add(CString(other.c_str()));
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
        if (step % 20 == 0) {
            ASSERT_EQ(ContentsOf(zip), model) << step;
        }
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
        zip.Open(path, CZip::zipCreate);
        wanted = {{"a", "1"}, {"b", "2"}, {"z", "3"}};
        Add("a", "1");
        Add("b", "2");
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
    EXPECT_EQ(wanted.size(), 4u);
}
