#include "files/IoFile.h"

#include "framework/base/ArchiveException.h"
#include "framework/base/FileException.h"
#include "tests/support/FaultyFile.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Slots.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <tuple>

using vak::test::MessageRecorder;
using vak::test::TempFolder;

namespace {

/// What the protected members are to the host's own derived classes.
class OpenedUp : public IoFile
{
public:
    using IoFile::IoFile, IoFile::m_file, IoFile::m_fileName, IoFile::m_finder, IoFile::m_flags;
    using IoFile::m_memFile, IoFile::m_searchMore, IoFile::m_textFile, IoFile::m_wantedExtension;
};

struct WithoutMessage : CFileException
{
    using CFileException::CFileException;
    BOOL GetErrorMessage(LPTSTR, UINT, PUINT) const override { return FALSE; }
};

class BinaryFile : public testing::Test
{
protected:
    /// Runs `read` and returns whether it threw the end-of-file exception of strict reads.
    template <class Read>
    static bool EndsStrictly(Read read)
    {
        try {
            return read(), false;
        } catch (CFileException* failure) {
            const bool isEnd = failure->m_cause == 14 && failure->m_lOsError == -1;
            return failure->Delete(), isEnd;
        }
    }

    TempFolder folder;
};

} // namespace

TEST_F(BinaryFile, NewObjectsAreSilentClosedAndWriting)
{
    OpenedUp file;
    EXPECT_EQ(file.m_flags, 0x1u);
    EXPECT_TRUE(file.IsWriting());
    EXPECT_TRUE(file.IsBinaryMode());
    EXPECT_EQ(OpenedUp(1, 0xC).m_flags, 0xDu);
    EXPECT_EQ(OpenedUp(0, 0xCu).m_flags, 0xCu);
    EXPECT_FALSE(OpenedUp(0x8u).IsBinaryMode());
    CString line;
    EXPECT_EQ(file.FileRead(&line, 4) + file.ReadString(line), 0);
    EXPECT_EQ(file.FileGetLength(), 0u);
    EXPECT_EQ(file.FileSeek(1, CFile::begin), 1);
    EXPECT_EQ(file.GetFileStream(), nullptr);
    EXPECT_TRUE(
        vak::test::InOrder({&file, &file.m_flags, &file.m_textFile, &file.m_memFile, &file.m_file,
                            &file.m_fileName, &file.m_finder, &file.m_searchMore, &file.m_wantedExtension}));
}

TEST_F(BinaryFile, TypedValuesAreWrittenLittleEndianAndReversedOnDemand)
{
    IoFile file;
    ASSERT_TRUE(file.OpenFile(folder.Path("v.bin"), 0));
    file.WriteInt(-2);
    file.WriteUInt(0x01020304);
    file.WriteLong(-3);
    file.WriteULong(0xA0B0C0D0);
    file.WriteFloat(1.5f);
    file.WriteShort(-4);
    file.WriteUShort(0x1234);
    file.WriteChar('c');
    file.WriteUChar(0xFE);
    BYTE six[] = {1, 2, 3, 4, 5, 6};
    file.FileReverseWrite(six, 6);
    file.FileReverseWrite(six, 3, 2);
    EXPECT_EQ(six[0], 1);
    EXPECT_EQ(file.FileGetPosition(), 38u);
    file.FileSeek(static_cast<ULONGLONG>(-12), CFile::end);
    file.FileWrite(six, 1);
    EXPECT_EQ(file.FileGetLength(), 38u);
    file.CloseFile();
    const std::string expected(
        "\xFE\xFF\xFF\xFF\x04\x03\x02\x01\xFD\xFF\xFF\xFF\xD0\xC0\xB0\xA0\x00\x00\xC0\x3F"
        "\xFC\xFF\x34\x12"
        "c\xFE\x01\x05\x04\x03\x02\x01\x02\x01\x04\x03\x06\x05",
        38);
    EXPECT_EQ(folder.Read("v.bin"), expected);
    EXPECT_EQ(file.GetFileName(), folder.Path("v.bin"));
    EXPECT_EQ(file.GetFilePath(), folder.Path());
    EXPECT_EQ(file.GetName(), L"v.bin");
    ASSERT_TRUE(file.OpenFile(folder.Path("v.bin"), 0));
    file.CloseAndDeleteFile();
    EXPECT_FALSE(folder.Has("v.bin"));
}

TEST_F(BinaryFile, ReversedReadsAndShortReadsAreAlikeOnDiskAndInMemory)
{
    const CString path = folder.Write("six.bin", "\x01\x02\x03\x04\x05\x06");
    for (const unsigned int mode : {0u, 2u}) {
        SCOPED_TRACE(mode);
        OpenedUp file(1, mode);
        ASSERT_TRUE(file.OpenFile(path, 1));
        EXPECT_FALSE(file.IsWriting());
        char six[7] = {};
        EXPECT_EQ(file.FileReverseRead(six, 3, 2), 1);
        EXPECT_STREQ(six, "\x02\x01\x04\x03\x06\x05");
        file.FileSeek(0, CFile::begin);
        EXPECT_EQ(file.FileReverseRead(six, 6), 1);
        EXPECT_STREQ(six, "\x06\x05\x04\x03\x02\x01");
        file.FileSeek(4, CFile::begin);
        EXPECT_EQ(file.FileReverseRead(six, 2, 2), 0);
        EXPECT_STREQ(six, "\x05\x06\x04\x03\x02\x01");
        file.FileSeek(1, CFile::begin);
        EXPECT_EQ(file.FileReverseRead(six, 0x80000001u, 2), 0);
        EXPECT_EQ(file.FileGetPosition(), 1u);
        file.m_flags |= 4;
        EXPECT_EQ(file.FileRead(six, 5), 1);
        EXPECT_EQ(file.FileRead(six, 0), 1);
        EXPECT_TRUE(EndsStrictly([&] { file.FileRead(six, 1); }));
        EXPECT_TRUE(EndsStrictly([&] { file.FileReverseRead(six, 1, 2); }));
        CString line;
        file.GetTextFile()->SeekToEnd();
        EXPECT_TRUE(EndsStrictly([&] { file.ReadString(line); }));
    }
    char odd[] = "abcde";
    ReverseBuffer(odd, 0);
    ReverseBuffer(odd, 5);
    EXPECT_STREQ(odd, "edcba");
}

// One random stream of reads, seeks and assignments, through two files, two copies and behind their backs.
TEST_F(BinaryFile, CopiesAndWhatTheyReferToShareOnePosition)
{
    for (const unsigned int mode : {0u, 2u}) {
        SCOPED_TRACE(mode);
        std::string contents[2];
        for (int i = 0; i < 300; ++i)
            contents[i % 3 / 2] += static_cast<char>(i * 7 + i / 256);
        IoFile files[4] = {IoFile(1, mode), IoFile(1, mode), IoFile(), IoFile()};
        ASSERT_TRUE(files[0].OpenFile(folder.Write("a.bin", contents[0]), 1));
        ASSERT_TRUE(files[1].OpenFile(folder.Write("b.bin", contents[1]), 1));
        ASSERT_TRUE(files[0].FindFileOpen(folder.Path(), L"*.bin"));
        EXPECT_EQ(files[0].GetCFile()->IsKindOf(RUNTIME_CLASS(CCustomMemFile)), mode == 2 ? TRUE : FALSE);
        files[2] = files[0];
        EXPECT_EQ(files[2].GetFileFinder(), files[0].GetFileFinder());
        size_t uses[4] = {0, 1, 0, 1}, positions[2] = {};
        files[3] = files[1];
        std::mt19937 random(7);
        for (int step = 0; step < 3000; ++step) {
            const size_t one = random() % 4, target = 2 + random() % 2;
            IoFile& file = files[one];
            const std::string& content = contents[uses[one]];
            size_t& position = positions[uses[one]];
            const unsigned int size = random() % 12;
            const std::string given = content.substr(std::min(position, content.size()), size);
            char buffer[16];
            switch (random() % 16) {
            case 0:
                position = random() % 220;
                file.GetCFile()->Seek(static_cast<LONGLONG>(position), CFile::begin);
                continue;
            case 1:
                files[target] = file;
                uses[target] = uses[one];
                continue;
            case 2:
                ASSERT_EQ(file.GetCFile()->Read(buffer, size), given.size());
                break;
            default:
                ASSERT_EQ(file.FileRead(buffer, size), given.size() == size ? 1 : 0);
            }
            ASSERT_EQ(std::string(buffer, given.size()), given);
            position += given.size();
            ASSERT_EQ(file.GetCFile()->GetPosition(), position);
        }
        for (IoFile* copy : {files + 2, files + 3}) {
            copy->Init(0x4);
            EXPECT_EQ(copy->GetCFile(), nullptr);
            EXPECT_TRUE(copy->IsWriting());
        }
    }
}

TEST_F(BinaryFile, MemoryModeEndsAtItsLimit)
{
    for (const unsigned int extra : {0u, 1u}) {
        const CString path = folder.Write("big.bin", "");
        std::filesystem::resize_file(folder.Host("big.bin"), 102400000 + extra);
        OpenedUp file(1, 2);
        ASSERT_TRUE(file.OpenFile(path, 1));
        EXPECT_EQ(file.m_memFile == nullptr, extra == 1);
        EXPECT_EQ(file.m_flags, extra == 1 ? 0x11u : 0x13u);
        EXPECT_EQ(file.FileGetLength(), 102400000u + extra);
        char last = 'x';
        file.FileSeek(102399999, CFile::begin);
        EXPECT_EQ(file.FileRead(&last, 1), 1);
        EXPECT_EQ(last, 0);
    }
}

TEST_F(BinaryFile, TextIsReadByLinesInEitherMode)
{
    const CString path = folder.Path("t.txt");
    IoFile file(1, 0x8);
    ASSERT_TRUE(file.OpenFile(path, 0));
    file.WriteString(L"é\nb\n");
    file.CloseFile();
    EXPECT_EQ(folder.Read("t.txt"), "\xE9\r\nb\r\n");
    for (const unsigned int mode : {0x0u, 0x2u, 0x8u, 0xAu}) {
        SCOPED_TRACE(mode);
        IoFile reader(1, mode);
        CString line;
        char bytes[5] = "????";
        ASSERT_TRUE(reader.OpenFile(path, 1));
        // Translated text has fewer bytes than the file: none are made up.
        EXPECT_EQ(reader.FileGetLength(), mode == 0xA ? 4u : 6u);
        EXPECT_EQ(reader.GetTextFile()->GetPosition(), 0u);
        EXPECT_EQ(reader.FileRead(bytes, 4), 1);
        EXPECT_STREQ(bytes, (mode & 8) != 0 ? "\xE9\nb\n" : "\xE9\r\nb");
        reader.GetTextFile()->SeekToBegin();
        EXPECT_EQ(reader.ReadString(line), 1);
        EXPECT_EQ(line, L"é");
        EXPECT_EQ(reader.ReadString(line), 1);
        EXPECT_EQ(reader.ReadString(line), 0);
        EXPECT_EQ(reader.CheckCarriageReturn(), 0);
    }
}

TEST_F(BinaryFile, OpenFilesShowTheWaitCursorUnlessSilent)
{
    MessageRecorder application;
    const CString path = folder.Write("a.bin", "abc");
    IoFile file(0u), silent;
    ASSERT_TRUE(file.OpenFile(path, 1));
    EXPECT_EQ(application.WaitCursorsBegun(), 0) << "without a main window";
    int window = 0;
    application.m_pMainWnd = reinterpret_cast<CWnd*>(&window);
    for (const bool forgotten : {false, true}) {
        file.CloseFile();
        EXPECT_EQ(application.WaitCursorsOpen(), 0);
        ASSERT_TRUE(file.OpenFile(path, 1) && silent.OpenFile(path, 1));
        silent.CloseFile();
        if (forgotten)
            file.DeleteFiles();
        EXPECT_EQ(application.WaitCursorsOpen(), 1);
        file.CloseFile();
    }
    EXPECT_EQ(application.WaitCursorsOpen(), 0);
    application.m_pMainWnd = nullptr;
}

TEST_F(BinaryFile, ReportsNameTheFileInTheTextOfTheCause)
{
    using File = WithoutMessage;
    using Archive = CArchiveException;
    MessageRecorder application;
    File notFound(File::fileNotFound), badPath(File::badPath), denied(File::accessDenied),
        full(File::diskFull);
    File other(File::hardIO), named(File::diskFull, -1, L"autre.bin");
    Archive end(Archive::endOfFile), index(Archive::badIndex), type(Archive::badClass);
    Archive schema(Archive::badSchema), readOnly(Archive::readOnly);
    CMemoryException memory;
    const std::tuple<CException*, int, UINT> rows[] = {
        {&notFound, 1, 0xF121}, {&badPath, 0, 0xF121}, {&denied, 1, 0xF123}, {&denied, 0, 0xF124},
        {&full, 0, 0xF122},     {&named, 1, 0xF122},   {&other, 1, 0xF101},  {&other, 0, 0xF100},
        {&end, 1, 0xF120},      {&index, 1, 0xF120},   {&type, 0, 0xF120},   {&schema, 1, 0xF120},
        {&readOnly, 1, 0xF101}, {&memory, 0, 0xF100}};
    const CString path = folder.Write("é.bin", "abc");
    IoFile file(0u);
    size_t shown = 0;
    for (const auto& [exception, reading, prompt] : rows) {
        SCOPED_TRACE(shown);
        ASSERT_TRUE(file.OpenFile(path, reading));
        file.ReportError(exception);
        file.CloseFile();
        ASSERT_EQ(application.Boxes().size(), ++shown);
        EXPECT_GE(application.Boxes().back().text.Find(L" fichier " + path), 0);
        EXPECT_EQ(application.Boxes().back().type, UINT(MB_ICONEXCLAMATION));
        EXPECT_EQ(application.Boxes().back().helpId, prompt);
    }
    EXPECT_EQ(application.Boxes().back().text, L"Impossible d'enregistrer le fichier " + path + L".");
    EXPECT_EQ(notFound.m_strFileName, path);
    EXPECT_EQ(named.m_strFileName, L"autre.bin");
    CUserException user;
    file.ReportError(&user);
    IoFile().ReportError(&full);
    EXPECT_EQ(application.Boxes().size(), shown);
}

// A missing file, and every operation of opening one that can fail: the reads of memory mode, too.
TEST_F(BinaryFile, FilesThatCannotBeOpenedLeaveNothingOpenAndSayWhyInTheirOwnWords)
{
    MessageRecorder application;
    int window = 0;
    application.m_pMainWnd = reinterpret_cast<CWnd*>(&window);
    const CString path = folder.Write("there.bin", "abc");
    for (int number = 0; number < 4; ++number) {
        SCOPED_TRACE(number);
        IoFile file(0x2u);
        const bool opens = number == 3;
        {
            const vak::test::FailingSystem failing(number);
            EXPECT_EQ(file.OpenFile(number == 0 ? folder.Path("missing.bin") : path, 1), opens ? 1 : 0);
        }
        EXPECT_EQ(application.WaitCursorsOpen(), opens ? 1 : 0);
        if (opens)
            break;
        EXPECT_EQ(file.GetCFile(), nullptr);
        EXPECT_EQ(file.GetTextFile(), nullptr);
        ASSERT_EQ(application.Boxes().size(), static_cast<size_t>(number) + 1);
        EXPECT_GE(application.Boxes().back().text.Find(number == 0 ? L"missing.bin" : L"there.bin"), 0);
        EXPECT_EQ(application.Boxes().back().helpId, 0xF101u);
        CFile alone;
        EXPECT_TRUE(alone.Open(path, CFile::modeReadWrite | CFile::shareExclusive));
    }
    application.m_pMainWnd = nullptr;
    IoFile silent;
    EXPECT_EQ(silent.OpenFile(folder.Path("missing.bin"), 1), 0);
    EXPECT_EQ(application.Boxes().size(), 3u);
    // Exclusive: while one writes, nobody else opens.
    ASSERT_TRUE(silent.OpenFile(folder.Path("w.bin"), 0));
    EXPECT_EQ(IoFile().OpenFile(folder.Path("w.bin"), 1), 0);
    silent.CloseFile();
    IoFile reader;
    ASSERT_TRUE(reader.OpenFile(folder.Path("w.bin"), 1));
    EXPECT_EQ(silent.OpenFile(folder.Path("w.bin"), 0), 0);
    EXPECT_EQ(IoFile().OpenFile(folder.Path("w.bin"), 1), 1);
}

TEST_F(BinaryFile, SearchesGiveEveryEntryAndMarkTheWantedOnes)
{
    for (const char* name :
         {"d/model.obj", "d/MODEL2.OBJ", "d/model3.mtl", "d/other.obj", "d/modelé", "d/model4.obj/in.obj"})
        folder.Write(name, "x");
    const auto search = [](const CString& pattern, const CString& extension, int namesOnly) {
        OpenedUp file;
        std::map<std::string, int> entries;
        file.FindFileOpen(pattern, extension);
        CString found;
        int matched = -1;
        while (file.FindFileNext(found, matched, namesOnly))
            entries[CStringA(found).GetString()] = matched;
        EXPECT_EQ(file.FindFileNext(found, matched, namesOnly), 0);
        return entries;
    };
    using Entries = std::map<std::string, int>;
    const CString stem = folder.Path("d\\model");
    EXPECT_EQ(search(stem, L"*.obj", 1), (Entries{{"model.obj", 1}, {"MODEL2.OBJ", 1}, {"model4.obj", 0}}));
    EXPECT_EQ(
        search(stem, L"", 1),
        (Entries{
            {"model.obj", 1}, {"MODEL2.OBJ", 1}, {"model3.mtl", 1}, {"model\xE9", 1}, {"model4.obj", 1}}));
    EXPECT_EQ(search(folder.Path("d\\m*2.obj"), L"*.mtl", 1), (Entries{{"MODEL2.OBJ", 1}}));
    const std::string path = CStringA(folder.Path("d\\")).GetString();
    EXPECT_EQ(search(folder.Path("d\\*4"), L"", 0), (Entries{{path + "model4.obj\\", 1}}));
    EXPECT_EQ(search(folder.Path("d\\mod*.MTL"), L"*.obj", 0), (Entries{{path + "model3.mtl", 1}}));
    EXPECT_EQ(search(folder.Path("none\\x"), L"*.obj", 0), Entries{});
    OpenedUp file;
    file.FindFileOpen(stem, L"*.obj");
    EXPECT_EQ(file.m_wantedExtension, L".obj");
    // A pattern with its own extension leaves the wanted one as it was.
    EXPECT_TRUE(file.FindFileOpen(folder.Path("d\\model3.mtl"), L"*.zip"));
    EXPECT_EQ(file.m_wantedExtension, L".obj");
    CString found;
    int matched = 1;
    EXPECT_EQ(file.FindFileNext(found, matched, 1), 1);
    EXPECT_EQ(found, L"model3.mtl");
    EXPECT_EQ(matched, 0);
    file.FindFileClose();
    EXPECT_EQ(file.GetFileFinder(), nullptr);
}

TEST(GrowingMemoryFile, AdoptsContentsAndGrowsByItsStepThroughItsHooks)
{
    struct Counting : CCustomMemFile
    {
        BYTE* Alloc(size_t size) override { return calls += std::to_string(size) + " ", new BYTE[size]; }
        void Free(BYTE* buffer) override
        {
            calls += "free ";
            delete[] buffer;
        }
        std::string calls;
    };
    Counting file;
    file.Write("abc", 3);
    file.Seek(2000, CFile::begin);
    file.Write("d", 1);
    EXPECT_EQ(file.GetLength(), 2001u);
    BYTE* const own = file.Detach();
    EXPECT_EQ(own[0], 'a');
    EXPECT_EQ(own[1999], 0);
    file.Adopt(own, 3);
    EXPECT_EQ(file.GetLength(), 3u);
    file.SeekToEnd();
    file.Write("z", 1);
    EXPECT_EQ(file.calls, "1024 2048 free 1024 free ");
    BYTE* const grown = file.Detach();
    EXPECT_EQ(std::string(grown, grown + 4), "abcz");
    file.Free(grown);
}
