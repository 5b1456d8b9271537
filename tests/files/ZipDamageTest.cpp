#include "tests/support/FaultyFile.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

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

/// An entry whose sizes are said to be in the extra field.
std::string Folded(const std::string& extra)
{
    BuiltZip built = BuildZip({{.name = "first", .data = "some data", .extra = extra}});
    built.Put(built.central[0] + 20, ~std::uint64_t{0}, 8);
    return built.bytes;
}

struct Refusal
{
    int cause;
    bool opened;
};

/// What an archive is refused with: by opening it, else by reading its first entry; 0 for neither.
Refusal RefusalOf(const std::string& bytes)
{
    const TempFolder folder;
    CZip zip;
    const CString path = folder.Write("a.zip", bytes);
    const int onOpening = ZipCause([&] { zip.Open(path); });
    EXPECT_EQ(zip.IsClosed(), onOpening != -1);
    if (onOpening != -1)
        return {onOpening, false};
    const int onReading = ZipCause([&] { zip.ExtractFile(0, folder.Path("out")); });
    EXPECT_EQ(folder.Has("out/first"), onReading == -1);
    return {onReading == -1 ? 0 : onReading, true};
}

/// Lets both records of the first entry claim these sizes.
void Claim(BuiltZip& built, std::uint64_t compressed, std::uint64_t size)
{
    for (const std::size_t at : {built.local[0] + 18, built.central[0] + 20}) {
        built.Put(at, compressed, 4);
        built.Put(at + 4, size, 4);
    }
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

constexpr std::uint64_t kAll = ~std::uint64_t{0};

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
    {"zip64: record longer than anything", Sound64, End, -72, 8, kAll, E::zip64Damaged, false},
    {"zip64: billions of entries", Sound64, End, -44, 8, 0xFFFFFFFFFF, E::directoryCount, false},
    {"zip64: directory size of all bits", Sound64, End, -36, 8, kAll, E::directoryOffset, false},
    {"zip64: directory offset of all bits", Sound64, End, -28, 8, kAll, E::directoryOffset, false},
    {"zip64: both records speak and disagree", Sound64, End, 12, 4, 3, E::zip64Damaged, false},
    {"zip64: thousands of disks", Sound64, End, -4, 4, 0xFFFFFFFF, E::endDamaged, false},
    {"zip64: a second disk", Sound64, End, -4, 4, 2, E::volumeMissing, false},
    {"directory: no record", Sound, Central, 0, 1, 'X', E::directoryOffset, false},
    {"directory: record cut off by its comment", Sound, Central, 32, 2, 0xFFFF, E::directoryDamaged, false},
    {"directory: name swallows the next record", Sound, Central, 28, 2, 56, E::directoryDamaged, false},
    {"entry: data behind the directory", Sound, Central, 42, 4, 0x7FFFFFFF, E::dataOffset, true},
    {"entry: longer than the archive", Sound, Central, 20, 4, 0x7FFFFFFF, E::dataOffset, true},
    {"entry: runs into the next", Sound, Central, 20, 4, 20, E::overlap, true},
    {"entry: begins and ends inside data", Sound, Central, 42, 4, 40, E::overlap, true},
    {"entry: on a disk that is not there", Sound, Central, 34, 2, 1, E::dataOffset, true},
    {"entry: encrypted", Sound, Central, 8, 2, 1, E::encrypted, true},
    {"entry: unknown method", Sound, Central, 10, 2, 93, E::unknownMethod, true},
    {"entry: a patch", Sound, Central, 8, 2, 0x20, E::unknownMethod, true},
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
    for (const auto sound : {Sound, Sound64, Streamed})
        ASSERT_EQ(RefusalOf(sound().bytes).cause, 0);
    for (const Defect& defect : kDefects) {
        BuiltZip built = defect.sound();
        const std::size_t record[] = {built.local[0], built.central[0], built.end};
        built.Put(record[defect.record] + static_cast<std::size_t>(defect.at), defect.value, defect.width);
        const Refusal refusal = RefusalOf(built.bytes);
        EXPECT_EQ(refusal.cause, defect.cause) << defect.what;
        EXPECT_EQ(refusal.opened, defect.opens) << defect.what;
    }
}

/// Where local header and directory tell the same lie.
TEST(ZipDamageTest, DataAreHeldAgainstTheSizeThatBothRecordsClaim)
{
    const struct
    {
        const char* what;
        bool deflated;
        std::uint64_t compressed;
        std::uint64_t size;
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
        BuiltZip built =
            BuildZip({{.name = "first", .data = "some data", .deflated = row.deflated, .behind = "?"}});
        Claim(built, row.compressed, row.size);
        EXPECT_EQ(RefusalOf(built.bytes).cause, row.cause) << row.what;
    }
}

TEST(ZipDamageTest, WhatIsNoArchiveOrHoldsTwoOrHalfOfOneSaysSo)
{
    const std::string whole = Sound().bytes;
    for (std::size_t size = 4; size < whole.size(); ++size) {
        const int cause = RefusalOf(whole.substr(0, size)).cause;
        ASSERT_TRUE(cause == E::endMissing || cause == E::endDamaged) << size;
    }
    // End signatures without end: the search gives up instead of trying them all.
    std::string many;
    for (int i = 0; i < 100000; ++i)
        many += "PK\x05\x06";
    // The offsets lead to the first directory, the sizes to the second.
    const std::string first = BuildZip({{"harmless", "x"}}).bytes;
    const std::string both = BuildZip({{"harmful!", "x"}}, {.front = first}).bytes;
    const std::string good = Little(9, 8) + Little(9, 8);
    const std::pair<std::string, Refusal> rows[] = {
        {"", {E::notArchive, false}},
        {"PK", {E::notArchive, false}},
        {std::string(3000000, 'x'), {E::notArchive, false}},
        {many, {E::endMissing, false}},
        {both, {E::directoryOffset, false}},
        {both + "behind", {E::directoryOffset, false}},
        // Zip64 fields that lack a value stand against their entry alone.
        {Folded(Extra(1, good)), {0, true}},
        {Folded(Extra(1, good.substr(0, 15))), {E::zip64Entry, true}},
        {Folded(""), {E::dataOffset, true}},
        {Folded(Extra(1, std::string(16, '\xFF'))), {E::dataOffset, true}},
    };
    for (const auto& [bytes, wanted] : rows) {
        const Refusal refusal = RefusalOf(bytes);
        EXPECT_EQ(refusal.cause, wanted.cause) << bytes.size();
        EXPECT_EQ(refusal.opened, wanted.opened) << bytes.size();
    }
}

TEST(ZipDamageTest, EntriesThatNestInOneAnotherAreAllRefused)
{
    // The first claims everything up to the directory as its data.
    BuiltZip built = BuildZip({{"first", "1"}, {"second", "2"}, {"third", "3"}});
    const std::size_t all = built.central[0] - built.local[0] - 35;
    Claim(built, all, all);
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
    bool happened = true;
    for (int number = 1; happened; ++number) {
        CZip zip;
        std::filesystem::remove_all(folder.Host("out"));
        const FailingSystem failing(number);
        try {
            zip.Open(path);
            zip.ExtractFile(0, folder.Path("out"));
        } catch (E* e) {
            EXPECT_TRUE(e->m_cause == E::systemError || e->m_cause == E::targetError) << e->m_cause;
            EXPECT_EQ(e->m_lOsError, 112) << number;
            e->Delete();
            EXPECT_TRUE(zip.IsClosed());
            EXPECT_FALSE(folder.Has("out/d/first"));
        }
        happened = failing.Happened();
        ASSERT_LT(number, 50);
        for (const std::string& name : folder.Names())
            EXPECT_EQ(name.find("~zip"), name.npos) << number << name;
    }
    EXPECT_EQ(folder.Read("out/d/first"), "some data");
}
