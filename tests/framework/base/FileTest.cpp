#include "framework/base/File.h"
#include "framework/base/Exception.h"
#include "framework/base/FileException.h"
#include "framework/base/MemFile.h"
#include "framework/base/StdioFile.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/FaultyFile.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <tuple>

using vak::test::TempFolder;

namespace {

template <class Action>
int CauseOf(Action action)
{
    return vak::test::Cause<CFileException>(action);
}

TEST(File, CreatingEmptiesUnlessToldNotTo)
{
    TempFolder folder;
    const CString path = folder.Write("déjà vu.bin", "old contents");
    {
        CFile file(path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite);
        file.Write("NEW", 3);
        char byte;
        EXPECT_EQ(CauseOf([&] { file.Read(&byte, 1); }), CFileException::accessDenied);
    }
    EXPECT_EQ(folder.Read("déjà vu.bin"), "NEW contents");
    CFile file(path, CFile::modeCreate | CFile::modeRead);
    EXPECT_EQ(file.GetLength(), 0u) << "also when it will only be read";
    EXPECT_EQ(CauseOf([&] { file.Write("x", 1); }), CFileException::accessDenied);
}

TEST(File, SharingIsRefusedByWhoeverCameFirst)
{
    const UINT read = CFile::modeRead;
    const UINT both = CFile::modeReadWrite;
    const std::tuple<UINT, UINT, bool> rows[] = {
        {read | CFile::shareExclusive, read | CFile::shareDenyNone, false},
        {read, read | CFile::shareDenyNone, false}, // compatibility is exclusive
        {read | CFile::shareDenyWrite, read | CFile::shareDenyWrite, true},
        {read | CFile::shareDenyWrite, both | CFile::shareDenyNone, false},
        {both | CFile::shareDenyNone, read | CFile::shareDenyWrite, false}, // the second may deny as well
        {both | CFile::shareDenyNone, both | CFile::shareDenyNone, true},
        {both | CFile::shareDenyRead, read | CFile::shareDenyNone, false},
        {CFile::modeWrite | CFile::shareDenyRead, CFile::modeWrite | CFile::shareDenyNone, true},
    };
    TempFolder folder;
    const CString path = folder.Write("shared", "text");
    for (const auto& [firstFlags, secondFlags, opens] : rows) {
        CFile first(path, firstFlags);
        CFile second;
        CFileException error;
        EXPECT_EQ(second.Open(path, secondFlags, &error) != 0, opens) << firstFlags << ", " << secondFlags;
        EXPECT_EQ(error.m_cause, opens ? CFileException::none : CFileException::sharingViolation);
        EXPECT_EQ(CauseOf([&] { CFile::Remove(path); }), CFileException::sharingViolation);
    }
    CFile afterwards(path, both | CFile::shareExclusive);
    EXPECT_EQ(afterwards.GetLength(), 4u) << "an open that is refused must not empty the file";
}

TEST(File, NamesPartsRenameRemoveAndStatus)
{
    TempFolder folder;
    const CString path = folder.Write("a folder\\model.v2.obj", "12345");
    CFile file(path, CFile::modeRead | CFile::shareDenyNone);
    EXPECT_EQ(file.GetFileName(), CString(L"model.v2.obj"));
    EXPECT_EQ(file.GetFileTitle(), CString(L"model.v2"));
    CFileStatus status;
    EXPECT_TRUE(file.GetStatus(status) && status.m_size == 5 && path == status.m_szFullName);
    file.Close();

    status.m_mtime = CTime(std::int64_t{1000000001});
    status.m_attribute |= CFile::readOnly;
    CFile::SetStatus(path, status);
    ASSERT_TRUE(CFile::GetStatus(path, status));
    EXPECT_EQ(status.m_mtime.GetTime(), 1000000001);
    EXPECT_EQ(CauseOf([&] { CFile::Remove(path); }), CFileException::accessDenied);
    status.m_attribute = CFile::normal;
    CFile::SetStatus(path, status);

    const CString taken = folder.Write("taken", "");
    EXPECT_EQ(CauseOf([&] { CFile::Rename(path, taken); }), CFileException::accessDenied);
    CFile::Rename(path, folder.Path("renamed"));
    EXPECT_EQ(folder.Read("renamed"), "12345");
    CFile::Remove(taken);
    EXPECT_FALSE(CFile::GetStatus(taken, status));
    EXPECT_EQ(CauseOf([&] { CFile::Remove(taken); }), CFileException::fileNotFound);
    EXPECT_TRUE(CFile::GetStatus(folder.Path("a folder"), status) && status.m_attribute & CFile::directory);
}

/// One random operation stream over every class, beside a plain byte string.
TEST(File, EveryClassAgreesWithAByteString)
{
    TempFolder folder;
    const UINT flags = CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary;
    const std::unique_ptr<CFile> files[] = {std::make_unique<CFile>(folder.Path("plain"), flags),
                                            std::make_unique<CStdioFile>(folder.Path("stdio"), flags),
                                            std::make_unique<CMemFile>(16)};
    std::mt19937 random(7);
    std::string model;
    size_t at = 0;
    for (int step = 0; step < 4000; ++step) {
        const auto number = [&](size_t limit) { return static_cast<size_t>(random() % limit); };
        const size_t operation = number(5); // write, read, seek from the begin and the end, cut or extend
        const size_t amount = number(300);
        const std::string bytes(amount, static_cast<char>('a' + number(26)));
        std::string expected;
        if (operation == 0) {
            if (at > model.size() && amount != 0)
                model.resize(at);
            if (amount != 0)
                model.replace(at, std::min(amount, model.size() - at), bytes);
            at += amount;
        } else if (operation == 1) {
            expected = at < model.size() ? model.substr(at, amount) : "";
            at += expected.size();
        } else if (operation == 2) {
            at = amount * 20;
        } else if (operation == 3) {
            at = model.size() - std::min(model.size(), amount);
        } else if (number(20) == 0) {
            model.resize(amount * 10);
            at = model.size();
        }
        for (const auto& file : files) {
            std::string got(amount, '\0');
            if (operation == 0)
                file->Write(bytes.data(), static_cast<UINT>(amount));
            else if (operation == 1)
                got.resize(file->Read(got.data(), static_cast<UINT>(amount)));
            else if (operation == 2)
                file->Seek(static_cast<LONGLONG>(at), CFile::begin);
            else if (operation == 3)
                file->Seek(static_cast<LONGLONG>(at) - static_cast<LONGLONG>(model.size()), CFile::end);
            else if (file->GetLength() != model.size())
                file->SetLength(model.size());
            if (operation == 4)
                file->Seek(static_cast<LONGLONG>(at), CFile::begin);
            ASSERT_EQ(operation == 1 ? got : expected, expected) << step;
            ASSERT_TRUE(file->GetPosition() == at && file->GetLength() == model.size()) << step;
        }
    }
    for (const auto& file : files) {
        EXPECT_EQ(CauseOf([&] { file->Seek(-1, CFile::begin); }), CFileException::badSeek);
        EXPECT_EQ(file->GetPosition(), at) << "a refused seek moves nothing";
        file->Close();
    }
    EXPECT_EQ(folder.Read("plain"), model);
    EXPECT_EQ(folder.Read("stdio"), model);
}

TEST(MemFile, AttachedBufferIsContentsOrSpaceByTheGrowStep)
{
    BYTE fixed[4] = {1, 2, 3, 4};
    CMemFile contents(fixed, sizeof(fixed));
    EXPECT_EQ(contents.GetLength(), 4u);
    BYTE got[8];
    EXPECT_EQ(contents.Read(got, 8), 4u);
    EXPECT_THROW(contents.Write("x", 1), CMemoryException*) << "step 0 cannot grow";
    EXPECT_EQ(contents.GetLength(), 4u);

    auto* const space = static_cast<BYTE*>(std::malloc(4));
    CMemFile file;
    file.Attach(space, 4, 8);
    EXPECT_EQ(file.GetLength(), 0u);
    file.Write("abcdef", 6);
    BYTE* const grown = file.Detach();
    EXPECT_EQ(std::string(reinterpret_cast<char*>(grown), 6), "abcdef");
    std::free(grown);
}

TEST(MemFile, AnImpossibleSizeIsRefusedWithoutOverflow)
{
    CMemFile file(1024);
    file.Seek(0x7FFFFFFFFFFFFFFF, CFile::begin);
    BYTE byte = 0;
    EXPECT_EQ(file.Read(&byte, 1), 0u);
    EXPECT_THROW(file.Write(&byte, 1), CMemoryException*);
    EXPECT_EQ(CauseOf([&] { file.Seek(1, CFile::current); }), CFileException::badSeek);
    EXPECT_THROW(file.SetLength(0xFFFFFFFFFFFFFFFF), CMemoryException*);
    EXPECT_EQ(file.GetLength(), 0u);
}

} // namespace
