#include "framework/base/Archive.h"

#include "tests/support/ArchiveBytes.h"
#include "tests/support/FaultyFile.h"

#include <random>

using namespace vak::test;

namespace {

/// Gives at most three bytes a call.
class SlowFile : public CMemFile
{
public:
    using CMemFile::CMemFile;
    UINT Read(void* data, UINT size) override { return CMemFile::Read(data, std::min(size, 3u)); }
};

constexpr DWORD_PTR kCounts[] = {0, 0xFFFE, 0xFFFF, 0xFFFFFFFE, 0xFFFFFFFF, 0x123456789A};

template <class T>
void ExpectNext(CArchive& archive, T expected)
{
    T value{};
    archive >> value;
    EXPECT_EQ(value, expected);
}

template <class T>
concept Storable = requires(CArchive& archive, T value)
{
    archive << value;
};
// Only types of one width on every build can be stored, and nothing that would turn into a bool.
static_assert(Storable<long> == (sizeof(long) == 4) && Storable<unsigned long> == (sizeof(long) == 4));
static_assert(Storable<LONG> && Storable<DWORD> && !Storable<const wchar_t*> && !Storable<void*>);

template <class Take>
void ForEachValue(Take take)
{
    take(BYTE(0xFE)), take('A'), take(L'\x20AC'), take(true), take(WORD(0xBEEF)), take(SHORT(-2)), take(-3);
    take(0xDEADBEEFu), take(LONG(-123456789)), take(DWORD(4000000000u)), take(LONGLONG(-5000000000));
    take(ULONGLONG(0xFEDCBA9876543210)), take(1.5f), take(-0.1);
}

} // namespace

TEST(Archive, ValuesHaveThePublishedBytes)
{
    const std::string golden = Data("archive/values.bin");
    const auto write = [](CArchive& archive) {
        ForEachValue([&](auto value) { archive << value; });
        for (const DWORD_PTR count : kCounts)
            archive.WriteCount(count);
        archive << CStringW() << CStringW(L"déjà €") << CStringA("d\xe9j\xe0\x80");
        archive.WriteString(L"ligne\r\n");
    };
    EXPECT_EQ(Stored(write, 0), golden);
    EXPECT_EQ(Stored(write), golden);
    Load(golden, [](CArchive& archive) {
        ForEachValue([&](auto value) { ExpectNext(archive, value); });
        for (const DWORD_PTR count : kCounts)
            EXPECT_EQ(archive.ReadCount(), count);
        // Each string is read into the other width than it was stored in.
        CStringA narrow(L"x");
        CStringW wide;
        archive >> narrow;
        EXPECT_TRUE(narrow.IsEmpty());
        archive >> narrow >> wide;
        EXPECT_TRUE(narrow == "d\xe9j\xe0 \x80" && wide == L"déjà€");
        EXPECT_TRUE(archive.ReadString(wide) && wide == L"ligne");
    });
}

TEST(Archive, StringLengthsChangeFormAtTheirLimits)
{
    const std::pair<int, const char*> rows[] = {
        {254, "FE"}, {255, "FF FF00"}, {65533, "FF FDFF"}, {65534, "FF FFFF FEFF0000"}};
    for (const auto& [length, head] : rows) {
        SCOPED_TRACE(length);
        const CStringA narrow('n', length);
        const CStringW wide(L'w', length);
        const std::string narrowBytes = Stored([&](CArchive& archive) { archive << narrow; });
        const std::string wideBytes = Stored([&](CArchive& archive) { archive << wide; });
        EXPECT_TRUE(narrowBytes.starts_with(Hex(head) + "nn"));
        EXPECT_TRUE(wideBytes.starts_with(Hex("FF FEFF") + Hex(head) + Hex("7700")));
        Load(narrowBytes + wideBytes, [&](CArchive& archive) {
            ExpectNext(archive, narrow);
            ExpectNext(archive, wide);
        });
    }
}

TEST(Archive, LengthsThatTheFileCannotHoldAreRefusedBeforeAllocating)
{
    constexpr int kEnd = CArchiveException::endOfFile;
    constexpr int kBad = CArchiveException::badIndex;
    const std::pair<const char*, int> rows[] = {
        {"05 61626364", kEnd},         {"FF FEFF 02 610062", kEnd},
        {"FF FFFF FEFFFF7F 61", kEnd}, {"FF FFFF FFFFFFFF FFFFFFFFFFFFFFFF 61", kBad},
        {"FF FFFF FFFFFF7F 61", kBad}, {"FF FEFF FF FEFF 01 6100", kBad},
        {"FF FFFF 01", kEnd},          {"", kEnd},
    };
    for (const auto& [hex, cause] : rows) {
        std::string bytes = Hex(hex);
        CString text(L"kept");
        EXPECT_EQ(LoadCause(bytes, [&](CArchive& archive) { archive >> text; }), cause) << hex;
        LengthlessFile file(reinterpret_cast<BYTE*>(bytes.data()), UINT(bytes.size()));
        CArchive archive(&file, CArchive::load);
        EXPECT_EQ(ArchiveCause([&] { archive >> text; }), cause) << hex;
        EXPECT_TRUE(text == L"kept");
    }
}

TEST(Archive, BytesLeftAreCountedWhateverWasReadAhead)
{
    std::string bytes(10000, 'x');
    LengthlessFile pipe(reinterpret_cast<BYTE*>(bytes.data()), UINT(bytes.size()));
    CMemFile file(reinterpret_cast<BYTE*>(bytes.data()), UINT(bytes.size()));
    CArchive fromPipe(&pipe, CArchive::load);
    CArchive archive(&file, CArchive::load);
    ExpectNext(archive, BYTE('x'));
    archive.Read(bytes.data(), 5000);
    EXPECT_EQ(vak::detail::ArchiveBytesLeft(archive), 4999u);
    archive.Flush();
    EXPECT_EQ(file.GetPosition(), 5001u);
    EXPECT_EQ(vak::detail::ArchiveBytesLeft(archive), 4999u);
    EXPECT_EQ(ArchiveCause([&] { vak::detail::ReadArchiveBytes(archive, 5000); }),
              CArchiveException::endOfFile);
    EXPECT_EQ(vak::detail::ReadArchiveBytes(archive, 4999).size(), 4999u);
    EXPECT_EQ(vak::detail::ArchiveBytesLeft(archive), 0u);
    EXPECT_EQ(vak::detail::ReadArchiveBytes(fromPipe, 9000).size(), 9000u);
    EXPECT_EQ(vak::detail::ArchiveBytesLeft(fromPipe), vak::detail::kBytesLeftUnknown);
    EXPECT_EQ(ArchiveCause([&] { vak::detail::ReadArchiveBytes(fromPipe, ~ULONGLONG(0)); }),
              CArchiveException::endOfFile);
}

TEST(Archive, PiecesOfAnySizeArriveInOrderThroughAnyBuffer)
{
    std::mt19937 random(7);
    std::vector<std::string> pieces(300);
    std::string all;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        pieces[i].resize(i % 7 == 0 ? random() % 9000 : random() % 200);
        for (char& byte : pieces[i])
            byte = char(random());
        all += pieces[i];
    }
    for (const int bufferSize : {128, 131, 4096}) {
        const auto write = [&](CArchive& archive) {
            for (const std::string& piece : pieces)
                archive.Write(piece.data(), UINT(piece.size()));
        };
        std::string stored = Stored(write, bufferSize);
        ASSERT_EQ(stored, all);
        SlowFile file(reinterpret_cast<BYTE*>(stored.data()), UINT(stored.size()));
        CArchive archive(&file, CArchive::load, bufferSize);
        for (const std::string& piece : pieces) {
            std::string read(piece.size(), '\0');
            EXPECT_EQ(archive.Read(read.data(), UINT(read.size())), read.size());
            EXPECT_EQ(read, piece);
            if (&piece == &pieces[150])
                archive.Flush();
        }
        EXPECT_EQ(archive.Read(&random, 1), 0u);
    }
}

TEST(Archive, LinesEndAtLineFeedsWithOrWithoutCarriageReturn)
{
    const std::string bytes = Stored([](CArchive& archive) { archive.WriteString(L"a\n\r\nb\rc\r\nrest"); });
    Load(bytes + "x", [](CArchive& archive) {
        CString line;
        for (const wchar_t* expected : {L"a", L"", L"b\rc", L"rest"})
            EXPECT_TRUE(archive.ReadString(line) && line == expected);
        EXPECT_FALSE(archive.ReadString(line));
    });
    Load(bytes, [](CArchive& archive) {
        wchar_t text[4];
        for (const wchar_t* expected : {L"a", L"", L"b\rc", L"", L"res", L"t"}) {
            ASSERT_EQ(archive.ReadString(text, 3), text);
            EXPECT_TRUE(CString(text) == expected);
        }
        EXPECT_EQ(archive.ReadString(text, 3), nullptr);
    });
}

TEST(Archive, TheWrongDirectionAndAClosedArchiveAreRefused)
{
    CMemFile file;
    CArchive out(&file, CArchive::store);
    CArchive in(&file, CArchive::load);
    BYTE byte = 0;
    EXPECT_EQ(ArchiveCause([&] { in << byte; }), CArchiveException::readOnly);
    EXPECT_EQ(ArchiveCause([&] { out >> byte; }), CArchiveException::writeOnly);
    out << byte;
    out.Abort();
    in.Close();
    EXPECT_EQ(file.GetLength(), 0u);
    EXPECT_EQ(ArchiveCause([&] { out << byte; }), CArchiveException::genericException);
}

TEST(Archive, OnlyTheDestructorOfAnOrdinaryArchiveFlushes)
{
    CMemFile file;
    BYTE buffer[200];
    CArchive(&file, CArchive::store | CArchive::bNoFlushOnDelete, sizeof buffer, buffer) << 1;
    EXPECT_EQ(file.GetLength(), 0u);
    CArchive(&file, CArchive::store, sizeof buffer, buffer) << 2;
    EXPECT_EQ(file.GetLength(), 4u);
    EXPECT_EQ(buffer[0], 2);
}

TEST(Archive, WhatTheFileRefusesReachesTheCallerAndIsNotOfferedAgain)
{
    const std::string bytes(1000, 'x');
    const auto store = [&](CFile& file) {
        CArchive archive(&file, CArchive::store, 128);
        archive.Write(bytes.data(), 100);
        archive.Write(bytes.data(), 100);
        archive << ULONGLONG(1);
        archive.Write(bytes.data(), 500);
        archive.Close();
    };
    // Two full buffers, the long piece and the flush; a write that fails leaves half of its bytes.
    const ULONGLONG lengths[] = {50, 154, 458, 708};
    for (int failing = 1; failing <= 4; ++failing) {
        FaultyFile<CMemFile> file;
        file.FailAt(failing);
        EXPECT_EQ(Cause<CFileException>([&] { store(file); }), CFileException::diskFull) << failing;
        EXPECT_EQ(file.GetLength(), lengths[failing - 1]) << failing;
    }
    FaultyFile<CMemFile> whole;
    store(whole);
    EXPECT_EQ(whole.GetLength(), 708u);
    whole.SeekToBegin();
    whole.FailAt(2);
    CArchive archive(&whole, CArchive::load, 128);
    std::string read(300, '\0');
    archive.Read(read.data(), 100);
    EXPECT_EQ(Cause<CFileException>([&] { archive.Read(read.data(), 300); }), CFileException::diskFull);
}
