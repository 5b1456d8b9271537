#include "files/FileNames.h"

#include "files/FileSystem.h"
#include "framework/base/SystemFolder.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <tuple>

using vak::test::MessageRecorder;
using vak::test::TempFolder;

TEST(FileNames, AreRefusedWithTheReason)
{
    constexpr LPCWSTR kEmpty = L"Vous devez saisir un nom de fichier ou de r\u00e9pertoire";
    constexpr LPCWSTR kBadPath = L"Le nom ne doit pas contenir les caract\u00e9res * ? \" < > |";
    constexpr LPCWSTR kBadName = L"Le nom ne doit pas contenir les caract\u00e9res * ? \" < > | : / \\";
    constexpr LPCWSTR kNoRoot = L"Le r\u00e9pertoire sp\u00e9cifi\u00e9 n'existe pas.";
    const std::tuple<LPCWSTR, unsigned int, LPCWSTR> rows[] = {
        {L"", 1, kEmpty},           {L"", 1 | 8, nullptr},        {L"a:b", 1, kBadName},
        {L"a/b", 1, kBadName},      {L"CON", 1, nullptr},         {L"Z:\\a>", 2, kBadPath},
        {L"rel*", 2 | 4, kBadPath}, {L"..\\rel", 2 | 4, nullptr}, {L"Z:\\new\\a", 2, nullptr},
        {L"Q:\\a", 2, kNoRoot},     {L"Q:\\a", 2 | 4, kNoRoot},   {L"a:b", 2, kNoRoot},
        {L"rel", 2, nullptr},       {L"*", 0, nullptr},           {L"a:b", 1 | 2, kBadName},
    };
    for (const auto& [name, flags, refusal] : rows) {
        SCOPED_TRACE(testing::PrintToString(CString(name)) + std::to_string(flags));
        const bool accepted = refusal == nullptr;
        MessageRecorder recorder;
        EXPECT_EQ(accepted, fileIsValidFileName(name, flags) != 0);
        EXPECT_EQ(accepted, fileIsValidFileName(name, flags | 16) != 0) << "silently";
        ASSERT_EQ(accepted ? 0u : 1u, recorder.Boxes().size());
        EXPECT_TRUE(accepted || recorder.Boxes()[0].text == refusal);
    }
}

TEST(FileNames, UniqueOnesTakeTheFirstFreeNumber)
{
    const TempFolder folder;
    EXPECT_EQ(folder.Path("b.txt"), fileCreateUniqueName(folder.Path("b.txt"), 1));
    folder.Write("b.txt", "");
    folder.Write("b (1).txt", "");
    EXPECT_EQ(folder.Path("b (2).txt"), fileCreateUniqueName(folder.Path("b.txt"), 1));
    EXPECT_EQ(folder.Path("b1.txt"), fileCreateUniqueName(folder.Path("b.txt"), 0));
    // What stands behind a zero makes no other name, so no number would ever do.
    EXPECT_EQ(folder.Path("b1.txt"), fileCreateUniqueName(folder.Path("b.txt") + CString(L'\0') + L"x", 0));
    // A directory in the way counts too, and is not taken for the place of the new name.
    folder.Write("d.x\\f", "");
    EXPECT_EQ(folder.Path("d1.x"), fileCreateUniqueName(folder.Path("d.x"), 0));
}

TEST(FileNames, TemporaryOnesLieInTheTemporaryFolder)
{
    const CString base = vak::system::TemporaryFolder();
    const CString stem = TempFolder().Path().Mid(base.GetLength()).TrimRight(L'\\');
    EXPECT_EQ(base + stem + L".x", fileCreateTmpName(L"C:\\elsewhere\\" + stem + L".x"));

    const CString first = fileCreateTmpFolder(stem + L"\\\u00e0\\b\\", 1);
    EXPECT_EQ(base + stem + L"\\\u00e0\\b\\", first);
    EXPECT_EQ(1, fileDirectoryExists(first));
    EXPECT_EQ(base + stem + L"1\\", fileCreateTmpFolder(stem + CString(L'\0') + L"x", 0));
    EXPECT_EQ(0, fileDirectoryExists(base + stem + L"1"));
    EXPECT_EQ(1, fileRemoveDirectory(base + stem, 1));
}

TEST(FileNames, ReplacingIsAskedOnlyForWhatExists)
{
    const TempFolder folder;
    const CString file = folder.Write("\u00e9t\u00e9.obj", "");
    MessageRecorder recorder{IDYES};
    EXPECT_EQ(1, fileAskForReplace(folder.Path("absent")));
    EXPECT_TRUE(recorder.Boxes().empty());
    EXPECT_EQ(1, fileAskForReplace(file));
    EXPECT_EQ(0, fileAskForReplace(file)) << "Enter alone must not destroy a file";
    EXPECT_EQ(L"Le fichier " + file + L" existe d\u00e9j\u00e0.\nVoulez-vous le remplacer ?",
              recorder.Boxes()[0].text);
}
