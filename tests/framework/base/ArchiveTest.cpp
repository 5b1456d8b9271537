#include "framework/base/Archive.h"

#include "tests/support/ArchiveBytes.h"
#include "tests/support/FaultyFile.h"

#include <random>

using namespace vak::test;

namespace {

/// A file that does not know its length, as a pipe.
class LengthlessFile : public CMemFile
{
public:
    using CMemFile::CMemFile;
    ULONGLONG GetLength() const override { AfxThrowNotSupportedException(); }
};

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

} // namespace

TEST(Archive, ValuesHaveThePublishedBytes)
{
    const std::string golden = Data("archive/values.bin");
    for (const int bufferSize : {0, 4096}) {
        EXPECT_EQ(Stored(
                      [](CArchive& archive) {
                          archive << BYTE(0xFE) << 'A' << L'\x20AC' << true << WORD(0xBEEF) << SHORT(-2) << -3
                                  << 0xDEADBEEFu << LONG(-123456789) << DWORD(4000000000u)
                                  << LONGLONG(-5000000000) << ULONGLONG(0xFEDCBA9876543210) << 1.5f << -0.1;
                          for (const DWORD_PTR count : kCounts)
                              archive.WriteCount(count);
                          archive << CStringW() << CStringW(L"déjà €") << CStringA("d\xe9j\xe0\x80");
                          archive.WriteString(L"ligne\r\n");
                      },
                      bufferSize),
                  golden);
    }
    Load(golden, [](CArchive& archive) {
        ExpectNext(archive, BYTE(0xFE));
        ExpectNext(archive, 'A');
        ExpectNext(archive, L'\x20AC');
        ExpectNext(archive, true);
        ExpectNext(archive, WORD(0xBEEF));
        ExpectNext(archive, SHORT(-2));
        ExpectNext(archive, -3);
        ExpectNext(archive, 0xDEADBEEFu);
        ExpectNext(archive, LONG(-123456789));
        ExpectNext(archive, DWORD(4000000000u));
        ExpectNext(archive, LONGLONG(-5000000000));
        ExpectNext(archive, ULONGLONG(0xFEDCBA9876543210));
        ExpectNext(archive, 1.5f);
        ExpectNext(archive, -0.1);
        for (const DWORD_PTR count : kCounts)
            EXPECT_EQ(archive.ReadCount(), count);
        // Each string is read into the other width than it was stored in.
        CStringA narrow(L"x");
        CStringW wide;
        archive >> narrow;
        EXPECT_TRUE(narrow.IsEmpty());
        archive >> narrow >> wide;
        EXPECT_TRUE(narrow == "d\xe9j\xe0 \x80");
        EXPECT_TRUE(wide == L"déjà€");
        EXPECT_TRUE(archive.ReadString(wide) && wide == L"ligne");
        EXPECT_FALSE(archive.ReadString(wide));
    });
}

TEST(Archive, OnlyTypesOfOneWidthOnEveryBuildCanBeStored)
{
    EXPECT_EQ(Storable<long>, sizeof(long) == 4);
    EXPECT_EQ(Storable<unsigned long>, sizeof(long) == 4);
    EXPECT_TRUE(Storable<LONG> && Storable<DWORD> && Storable<LONGLONG> && Storable<ULONGLONG>);
    EXPECT_FALSE(Storable<const wchar_t*>);
    EXPECT_FALSE(Storable<void*>);
}

TEST(Archive, StringLengthsChangeFormAtTheirLimits)
{
    const struct
    {
        int length;
        const char* head;
    } rows[] = {{254, "FE"}, {255, "FF FF00"}, {65533, "FF FDFF"}, {65534, "FF FFFF FEFF0000"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.length);
        const CStringA narrow('n', row.length);
        const CStringW wide(L'w', row.length);
        const std::string narrowBytes = Stored([&](CArchive& archive) { archive << narrow; });
        const std::string wideBytes = Stored([&](CArchive& archive) { archive << wide; });
        EXPECT_TRUE(narrowBytes.starts_with(Hex(row.head) + "nn"));
        EXPECT_TRUE(wideBytes.starts_with(Hex("FF FEFF") + Hex(row.head) + Hex("7700")));
        Load(narrowBytes + wideBytes, [&](CArchive& archive) {
            ExpectNext(archive, narrow);
            ExpectNext(archive, wide);
        });
    }
}

TEST(Archive, LengthsThatTheFileCannotHoldAreRefusedBeforeAllocating)
{
    const struct
    {
        const char* bytes;
        int cause;
    } rows[] = {
        {"05 61626364", CArchiveException::endOfFile},
        {"FF FEFF 02 610062", CArchiveException::endOfFile},
        {"FF FFFF FEFFFF7F 61", CArchiveException::endOfFile},
        {"FF FFFF FFFFFF7F 61", CArchiveException::badIndex},
        {"FF FFFF FFFFFFFF FFFFFFFFFFFFFFFF 61", CArchiveException::badIndex},
        {"FF FEFF FF FEFF 01 6100", CArchiveException::badIndex},
        {"FF FFFF 01", CArchiveException::endOfFile},
        {"", CArchiveException::endOfFile},
    };
    for (const auto& row : rows) {
        std::string bytes = Hex(row.bytes);
        CString text(L"kept");
        EXPECT_EQ(LoadCause(bytes, [&](CArchive& archive) { archive >> text; }), row.cause) << row.bytes;
        LengthlessFile file(reinterpret_cast<BYTE*>(bytes.data()), UINT(bytes.size()));
        CArchive archive(&file, CArchive::load);
        EXPECT_EQ(ArchiveCause([&] { archive >> text; }), row.cause) << row.bytes;
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
    EXPECT_EQ(vak::detail::ArchiveBytesLeft(archive), 9999u);
    archive.Read(bytes.data(), 5000);
    EXPECT_EQ(vak::detail::ArchiveBytesLeft(archive), 4999u);
    archive.Flush();
    EXPECT_EQ(file.GetPosition(), 5001u);
    EXPECT_EQ(vak::detail::ArchiveBytesLeft(archive), 4999u);
    EXPECT_EQ(ArchiveCause([&] { vak::detail::ReadArchiveBytes(archive, 5000); }),
              CArchiveException::endOfFile);
    EXPECT_EQ(vak::detail::ReadArchiveBytes(archive, 4999).size(), 4999u);
    EXPECT_EQ(vak::detail::ArchiveBytesLeft(archive), 0u);

    EXPECT_EQ(vak::detail::ArchiveBytesLeft(fromPipe), vak::detail::kBytesLeftUnknown);
    EXPECT_EQ(vak::detail::ReadArchiveBytes(fromPipe, 9000).size(), 9000u);
    EXPECT_EQ(vak::detail::ArchiveBytesLeft(fromPipe), vak::detail::kBytesLeftUnknown);
    EXPECT_EQ(ArchiveCause([&] { vak::detail::ReadArchiveBytes(fromPipe, ~ULONGLONG(0)); }),
              CArchiveException::endOfFile);
}

TEST(Archive, PiecesOfAnySizeArriveInOrderThroughAnyBuffer)
{
    std::mt19937 random(7);
    for (const int bufferSize : {128, 131, 4096}) {
        std::string expected;
        std::vector<UINT> sizes;
        const std::string stored = Stored(
            [&](CArchive& archive) {
                for (int i = 0; i < 300; ++i) {
                    sizes.push_back(i % 7 == 0 ? random() % 9000 : random() % 200);
                    std::string piece(sizes.back(), '\0');
                    for (char& byte : piece)
                        byte = char(random());
                    expected += piece;
                    if (sizes.back() == 1)
                        archive << piece[0];
                    else
                        archive.Write(piece.data(), UINT(piece.size()));
                    if (i % 50 == 0)
                        archive.Flush();
                }
            },
            bufferSize);
        ASSERT_EQ(stored, expected);
        std::string copy = stored;
        SlowFile file(reinterpret_cast<BYTE*>(copy.data()), UINT(copy.size()));
        CArchive archive(&file, CArchive::load, bufferSize);
        std::string read;
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            std::string piece(sizes[i], '\0');
            ASSERT_EQ(archive.Read(piece.data(), sizes[i]), sizes[i]);
            read += piece;
            if (i % 50 == 0)
                archive.Flush();
        }
        EXPECT_EQ(read, expected);
        char more;
        EXPECT_EQ(archive.Read(&more, 1), 0u);
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
            ASSERT_EQ(archive.ReadString(text, 4), text);
            EXPECT_TRUE(CString(text) == expected);
        }
        EXPECT_EQ(archive.ReadString(text, 4), nullptr);
    });
}

TEST(Archive, TheWrongDirectionAndAClosedArchiveAreRefused)
{
    CMemFile file;
    CArchive out(&file, CArchive::store);
    CArchive in(&file, CArchive::load);
    BYTE byte = 0;
    CString text;
    EXPECT_EQ(ArchiveCause([&] { in << byte; }), CArchiveException::readOnly);
    EXPECT_EQ(ArchiveCause([&] { in.Write(&byte, 1); }), CArchiveException::readOnly);
    EXPECT_EQ(ArchiveCause([&] { in.WriteObject(nullptr); }), CArchiveException::readOnly);
    EXPECT_EQ(ArchiveCause([&] { in.WriteString(L""); }), CArchiveException::readOnly);
    EXPECT_EQ(ArchiveCause([&] { out >> byte; }), CArchiveException::writeOnly);
    EXPECT_EQ(ArchiveCause([&] { out.Read(&byte, 1); }), CArchiveException::writeOnly);
    EXPECT_EQ(ArchiveCause([&] { out.ReadObject(nullptr); }), CArchiveException::writeOnly);
    EXPECT_EQ(ArchiveCause([&] { out.ReadString(text); }), CArchiveException::writeOnly);
    EXPECT_EQ(ArchiveCause([&] { vak::detail::ArchiveBytesLeft(out); }), CArchiveException::writeOnly);
    out << byte;
    out.Abort();
    in.Close();
    EXPECT_EQ(out.GetFile(), nullptr);
    EXPECT_EQ(file.GetLength(), 0u);
    EXPECT_EQ(ArchiveCause([&] { out << byte; }), CArchiveException::genericException);
    EXPECT_EQ(ArchiveCause([&] { in >> byte; }), CArchiveException::genericException);
}

TEST(Archive, OnlyTheDestructorOfAnOrdinaryArchiveFlushes)
{
    CMemFile file;
    BYTE buffer[200];
    {
        CArchive(&file, CArchive::store | CArchive::bNoFlushOnDelete, sizeof buffer, buffer) << 1;
    }
    EXPECT_EQ(file.GetLength(), 0u);
    {
        CArchive(&file, CArchive::store, sizeof buffer, buffer) << 2;
    }
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
