#include "files/Zip.h"

#include "tests/support/FaultyFile.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ZipBuilder.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace vak::test;
using E = CZipException;

namespace {

/// Two entries, of which the first is the damaged one.
BuiltZip Sound()
{
    return BuildZip({{"first", "some data", true}, {"second", "more"}}, {.comment = "note"});
}

BuiltZip Sound64()
{
    return BuildZip({{"first", "some data"}}, {.zip64 = true});
}

BuiltZip Streamed()
{
    return BuildZip({{.name = "first",
                      .data = "some data",
                      .streamed = true,
                      .behind = Little(Crc("some data"), 4) + Little(9, 4) + Little(9, 4)},
                     {"second", "more"}});
}

BuiltZip Folded(const std::string& extra)
{
    BuiltZip built = BuildZip({{.name = "first", .data = "some data", .extra = extra}});
    built.Put(built.central[0] + 20, ~std::uint64_t{0}, 8);
    return built;
}

/// What an archive is refused with: by opening it, else by reading its first entry; 0 for neither.
int Refusal(const std::string& bytes, bool& opened)
{
    const TempFolder folder;
    CZip zip;
    const CString path = folder.Write("a.zip", bytes);
    const int onOpening = ZipCause([&] { zip.Open(path); });
    opened = onOpening == -1;
    EXPECT_EQ(zip.IsClosed(), !opened);
    if (!opened)
        return onOpening;
    const int onReading = ZipCause([&] { zip.ExtractFile(0, folder.Path("out")); });
    EXPECT_EQ(folder.Has("out/first"), onReading == -1);
    return onReading == -1 ? 0 : onReading;
}

enum Record
{
    Local,   ///< of the first entry
    Central, ///< of the first entry
    End
};

struct Defect
{
    const char* what;
    BuiltZip (*sound)();
    Record record;
    int at; ///< from the record's beginning
    int width;
    std::uint64_t value;
    int cause;
    bool opens;
};

const Defect kDefects[] = {
    {"end: comment longer than the file", Sound, End, 20, 2, 5, E::endDamaged, false},
    {"end: another disk", Sound, End, 4, 2, 1, E::volumeMissing, false},
    {"end: directory on another disk", Sound, End, 6, 2, 3, E::directoryOffset, false},
    {"end: one entry too few", Sound, End, 10, 2, 1, E::directoryCount, false},
    {"end: one entry too many", Sound, End, 10, 2, 3, E::directoryCount, false},
    {"end: directory longer than the file", Sound, End, 12, 4, 0x7FFFFFFF, E::directoryOffset, false},
    {"end: directory shorter than it is", Sound, End, 12, 4, 100, E::directoryDamaged, false},
    {"end: directory behind the end", Sound, End, 16, 4, 0x7FFFFFFF, E::directoryOffset, false},
    {"end: zip64 promised and missing", Sound, End, 16, 4, 0xFFFFFFFF, E::directoryOffset, false},
    {"zip64: no record at the offset", Sound64, End, -76, 4, 0, E::zip64Damaged, false},
    {"zip64: record longer than there is room", Sound64, End, -72, 8, 45, E::zip64Damaged, false},
    {"zip64: record longer than anything", Sound64, End, -72, 8, ~std::uint64_t{0}, E::zip64Damaged, false},
    {"zip64: billions of entries", Sound64, End, -44, 8, 0xFFFFFFFFFF, E::directoryCount, false},
    {"zip64: directory size of all bits", Sound64, End, -36, 8, ~std::uint64_t{0}, E::directoryOffset, false},
    {"zip64: directory offset of all bits", Sound64, End, -28, 8, ~std::uint64_t{0}, E::directoryOffset,
     false},
    {"zip64: both records speak and disagree", Sound64, End, 12, 4, 3, E::zip64Damaged, false},
    {"zip64: thousands of disks", Sound64, End, -4, 4, 0xFFFFFFFF, E::endDamaged, false},
    {"zip64: a second disk", Sound64, End, -4, 4, 2, E::volumeMissing, false},
    {"directory: no record", Sound, Central, 0, 1, 'X', E::directoryOffset, false},
    {"directory: record cut off by its comment", Sound, Central, 32, 2, 0xFFFF, E::directoryDamaged, false},
    {"directory: name swallows the next record", Sound, Central, 28, 2, 56, E::directoryDamaged, false},
    {"entry: data behind the directory", Sound, Central, 42, 4, 0x7FFFFFFF, E::dataOffset, true},
    {"entry: longer than the archive", Sound, Central, 20, 4, 0x7FFFFFFF, E::dataOffset, true},
    {"entry: runs into the next", Sound, Central, 20, 4, 20, E::overlap, true},
    {"entry: begins inside its own data and ends inside another", Sound, Central, 42, 4, 40, E::overlap,
     true},
    {"entry: on a disk that is not there", Sound, Central, 34, 2, 1, E::dataOffset, true},
    {"entry: encrypted", Sound, Central, 8, 2, 1, E::encrypted, true},
    {"entry: unknown method", Sound, Central, 10, 2, 93, E::unknownMethod, true},
    {"entry: a patch", Sound, Central, 8, 2, 0x20, E::unknownMethod, true},
    {"entry: wrong CRC", Sound, Central, 16, 4, 1, E::localCrc, true},
    {"entry: other size", Sound, Central, 24, 4, 8, E::localSize, true},
    {"local: no header", Sound, Local, 2, 1, 9, E::localDamaged, true},
    {"local: other name", Sound, Local, 30, 1, 'F', E::localName, true},
    {"local: shorter name", Sound, Local, 26, 2, 4, E::localName, true},
    {"local: encrypted", Sound, Local, 6, 2, 1, E::localMethod, true},
    {"local: other method", Sound, Local, 8, 2, 0, E::localMethod, true},
    {"local: other CRC", Sound, Local, 14, 4, 1, E::localCrc, true},
    {"local: other compressed size", Sound, Local, 18, 4, 1, E::localSize, true},
    {"local: other size", Sound, Local, 22, 4, 0xFFFFFFFF, E::localSize, true},
    {"local: extra field swallows the data", Sound, Local, 28, 2, 1, E::overlap, true},
    {"local: extra field swallows the archive", Sound, Local, 28, 2, 0xFFFF, E::overlap, true},
    {"data: no deflate stream", Sound, Local, 35, 1, 7, E::dataDamaged, true},
    {"data: a block that says other lengths", Sound, Local, 36, 1, 8, E::dataDamaged, true},
    {"data: a stream that does not end", Sound, Local, 35, 1, 0, E::dataDamaged, true},
    {"data: changed", Sound, Local, 42, 1, 'X', E::crcMismatch, true},
    {"data: stored and changed", Sound64, Local, 36, 1, 'X', E::crcMismatch, true},
    {"descriptor: other CRC", Streamed, Local, 44, 1, 'X', E::descriptor, true},
    {"descriptor: other size", Streamed, Local, 48, 1, 8, E::descriptor, true},
};

} // namespace

TEST(ZipDamageTest, EveryDefectIsRefusedWithItsReason)
{
    for (const Defect& defect : kDefects) {
        SCOPED_TRACE(defect.what);
        BuiltZip built = defect.sound();
        bool opened = false;
        ASSERT_EQ(Refusal(built.bytes, opened), 0);
        const std::size_t record[] = {built.local[0], built.central[0], built.end};
        built.Put(record[defect.record] + static_cast<std::size_t>(defect.at), defect.value, defect.width);
        EXPECT_EQ(Refusal(built.bytes, opened), defect.cause);
        EXPECT_EQ(opened, defect.opens);
    }
}

/// Where local header and directory tell the same lie.
TEST(ZipDamageTest, DataAreHeldAgainstTheSizeThatBothRecordsClaim)
{
    const struct
    {
        const char* what;
        bool deflated;
        int compressed;
        int size;
        int cause;
    } rows[] = {
        {"expands to more", true, 14, 8, E::sizeMismatch},
        {"expands to less", true, 14, 10, E::sizeMismatch},
        {"expands to nothing declared", true, 14, 0, E::sizeMismatch},
        {"compressed data cut off", true, 13, 9, E::dataDamaged},
        {"no compressed data", true, 0, 9, E::dataDamaged},
        {"a rest behind the stream", true, 15, 9, E::sizeMismatch},
        {"stored in fewer bytes", false, 8, 9, E::sizeMismatch},
        {"stored and cut off", false, 8, 8, E::crcMismatch},
        {"a bomb by its own word", true, 14, 0x7FFFFFFF, E::limitRatio},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        BuiltZip built =
            BuildZip({{.name = "first", .data = "some data", .deflated = row.deflated, .behind = "?"}});
        for (const std::size_t at : {built.local[0] + 18, built.central[0] + 20}) {
            built.Put(at, static_cast<std::uint64_t>(row.compressed), 4);
            built.Put(at + 4, static_cast<std::uint64_t>(row.size), 4);
        }
        bool opened = false;
        EXPECT_EQ(Refusal(built.bytes, opened), row.cause);
    }
}

TEST(ZipDamageTest, WhatIsNoArchiveOrCutOffSaysSo)
{
    const std::string whole = Sound().bytes;
    bool opened = false;
    EXPECT_EQ(Refusal("", opened), E::notArchive);
    EXPECT_EQ(Refusal("PK", opened), E::notArchive);
    EXPECT_EQ(Refusal(std::string(3000000, 'x'), opened), E::notArchive);
    for (std::size_t size = 4; size < whole.size(); ++size) {
        const int cause = Refusal(whole.substr(0, size), opened);
        ASSERT_TRUE(cause == E::endMissing || cause == E::endDamaged) << size;
    }
    // End signatures without end: the search gives up instead of trying them all.
    std::string many;
    for (int i = 0; i < 100000; ++i)
        many += "PK\x05\x06";
    EXPECT_EQ(Refusal(many, opened), E::endMissing);
}

TEST(ZipDamageTest, TwoDirectoriesInOneFileAreNoArchive)
{
    // The offsets lead to the first one, the sizes to the second.
    const std::string first = BuildZip({{"harmless", "x"}}).bytes;
    BuiltZip both = BuildZip({{"harmful!", "x"}}, {.front = first});
    bool opened = false;
    EXPECT_EQ(Refusal(both.bytes, opened), E::directoryOffset);
    EXPECT_EQ(Refusal(both.bytes + "behind", opened), E::directoryOffset);
    EXPECT_FALSE(opened);
}

TEST(ZipDamageTest, Zip64FieldsThatLackAValueStandAgainstTheirEntryAlone)
{
    const std::string good = Little(9, 8) + Little(9, 8);
    bool opened = false;
    EXPECT_EQ(Refusal(Folded(Extra(1, good)).bytes, opened), 0);
    EXPECT_EQ(Refusal(Folded(Extra(1, good.substr(0, 15))).bytes, opened), E::zip64Entry);
    EXPECT_TRUE(opened);
    EXPECT_EQ(Refusal(Folded("").bytes, opened), E::dataOffset);
    EXPECT_EQ(Refusal(Folded(Extra(1, std::string(16, '\xFF'))).bytes, opened), E::dataOffset);
}

TEST(ZipDamageTest, EntriesThatNestInOneAnotherAreAllRefused)
{
    // The first claims everything up to the directory as its data.
    BuiltZip built = BuildZip({{"first", "1"}, {"second", "2"}, {"third", "3"}});
    const std::size_t all = built.central[0] - built.local[0] - 35;
    for (const std::size_t at : {built.local[0] + 18, built.central[0] + 20}) {
        built.Put(at, all, 4);
        built.Put(at + 4, all, 4);
    }
    const TempFolder folder;
    CZip zip;
    zip.Open(folder.Write("a.zip", built.bytes));
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(ZipCause([&] { zip.Test(i); }), E::overlap) << i;
}

/// Whatever operation of the system fails: the reason arrives, and nothing is left of the attempt.
TEST(ZipDamageTest, ARefusalOfTheSystemIsReportedAndLeavesNothing)
{
    const TempFolder folder;
    const CString path = folder.Write("a.zip", BuildZip({{"d/first", "some data", true}}).bytes);
    const CString out = folder.Path("out");
    for (int number = 1;; ++number) {
        CZip zip;
        std::filesystem::remove_all(folder.Host("out"));
        FailingSystem failing(number);
        try {
            zip.Open(path);
            zip.ExtractFile(0, out);
        } catch (CZipException* e) {
            EXPECT_TRUE(e->m_cause == E::systemError || e->m_cause == E::targetError) << e->m_cause;
            EXPECT_EQ(e->m_lOsError, 112) << number;
            e->Delete();
            EXPECT_TRUE(zip.IsClosed());
            EXPECT_FALSE(folder.Has("out/d/first"));
        }
        if (!failing.Happened())
            break;
        ASSERT_LT(number, 50);
        const auto left = folder.Names();
        EXPECT_TRUE(std::none_of(left.begin(), left.end(), [](const std::string& name) {
            return name.find("~zip") != name.npos;
        })) << number;
    }
    EXPECT_EQ(folder.Read("out/d/first"), "some data");
}
