#include "files/zip/ZipNames.h"

#include "framework/base/SystemMessage.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace vak::test;
using vak::detail::zip::MakeSafe;
using E = CZipException;

TEST(ZipNamesTest, NamesAreJudgedComponentByComponent)
{
    const std::pair<const wchar_t*, const wchar_t*> sound[] = {
        {L"a\\b.txt", L"a\\b.txt"}, {L"a//b/./c\\", L"a\\b\\c\\"}, {L"./a", L"a"},
        {L"a/../b", L"b"},          {L"a/b/../../c", L"c"},        {L"..foo", L"..foo"},
        {L".hidden", L".hidden"},   {L" lead", L" lead"},          {L"com10", L"com10"},
        {L"console", L"console"},   {L"null.txt", L"null.txt"},    {L"\u00E9\u4E16", L"\u00E9\u4E16"}};
    CString safe;
    for (const auto& [name, wanted] : sound) {
        EXPECT_EQ(MakeSafe(name, safe), 0) << testing::PrintToString(CString(name));
        EXPECT_EQ(safe, wanted);
    }
    const std::pair<int, std::vector<CString>> refused[] = {
        {E::nameEmpty, {L"", L"./", L"a/.."}},
        {E::nameRooted, {L"/etc/passwd", L"\\\\server\\share\\x", L"\\\\?\\C:\\x", L"C:\\x", L"c:x"}},
        {E::nameParent, {L"..", L"a/../../b", L"..\\..\\b"}},
        {E::nameDevice,
         {L"NUL", L"a/con.txt", L"aux .tar.gz", L"Com1", L"lpt\u00B2.x", L"conin$", L"prn/../a"}},
        {E::nameStream, {L"a.txt:stream", L"a/::$DATA"}},
        {E::nameTrailing, {L"a.", L"dir /x", L".../x", L".. /x", L"..foo/foo../.."}},
        {E::nameCharacter, {L"a?b", L"a\x1F", CString(L"a\0b", 3)}},
    };
    for (const auto& [cause, names] : refused) {
        for (const CString& name : names) {
            EXPECT_EQ(MakeSafe(name, safe), cause) << testing::PrintToString(name);
            EXPECT_TRUE(safe.IsEmpty());
        }
    }
    CString deep = L"b";
    for (int i = 0; i < 2000; ++i)
        deep = L"a/" + deep.Left(2 * i) + L"../" + deep.Mid(2 * i);
    EXPECT_EQ(MakeSafe(deep, safe), 0);
    EXPECT_EQ(safe, L"b");
}

TEST(ZipNamesTest, StoredBytesAreReadInTheirOwnCodePage)
{
    const std::string utf8 = "\xC3\xA9/\xE4\xB8\x96";
    const auto unicode = [&](std::uint32_t crc) { return Extra(0x7075, '\x01' + Little(crc, 4) + utf8); };
    const struct
    {
        ZipSpec spec;
        const wchar_t* listed;
        UINT codePage = 437;
    } rows[] = {
        {{"\x82\xE1/\xB0", ""}, L"\u00E9\u00DF\\\u2591"},
        {{"\xE9/\x80", ""}, L"\u00E9\\\u20AC", 1252},
        {{.name = utf8, .data = "", .flags = 0x800}, L"\u00E9\\\u4E16"},
        {{.name = "e_w", .data = "", .extra = unicode(Crc("e_w"))}, L"\u00E9\\\u4E16"},
        // The field was made for a name that somebody changed since.
        {{.name = "new", .data = "", .extra = unicode(Crc("old"))}, L"new"},
        {{.name = "\xFF", .data = "", .flags = 0x800}, L"\uFFFD"},
        {{"a\\b", ""}, L"a\\b"},
        // Directories that only their attributes tell, and what is none in spite of them.
        {{.name = "d", .data = "", .madeBy = 20, .attributes = 0x10}, L"d\\"},
        {{.name = "d", .data = "", .madeBy = 0x314, .attributes = 0x41ED0000}, L"d\\"},
        {{.name = "f", .data = "", .madeBy = 0x314, .attributes = 0x81A40010}, L"f"},
        {{.name = "f", .data = "1", .madeBy = 20, .attributes = 0x10}, L"f"},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        CZip zip;
        zip.SetCodePage(row.codePage);
        zip.Open(folder.Write("a.zip", BuildZip({row.spec}).bytes));
        CZipHeader header;
        zip.GetFileInfo(header, 0);
        EXPECT_EQ(header.GetFileName(), row.listed) << &row - rows;
    }
}

TEST(ZipNamesTest, NothingIsWrittenOutsideTheDestinationNorOverWhatIsNoFile)
{
    const TempFolder folder;
    CZip zip;
    for (const char* name :
         {"../evil", "a/../../evil", "..\\evil", "/evil", "Z:\\evil", "evil.", "x:evil", "nul"}) {
        zip.Open(folder.Write("in/a.zip", BuildZip({{name, "evil"}}).bytes));
        EXPECT_NE(ZipCause([&] { zip.ExtractFile(0, folder.Path("in\\out")); }), -1) << name;
        EXPECT_LE(folder.Names().size(), 3u) << name; // in, in/a.zip, perhaps in/out
    }
    zip.Open(folder.Write("a.zip", BuildZip({{"taken", "x"}, {"file/x", "x"}}).bytes));
    folder.Write("out/taken/inside", "");
    folder.Write("out/file", "kept");
    for (const std::size_t i : {0, 1})
        EXPECT_EQ(ZipCause([&] { zip.Extract(i, folder.Path("out")); }), E::nameTaken) << i;
    EXPECT_EQ(folder.Read("out/file"), "kept");
}

TEST(ZipNamesTest, TheExceptionNamesTheCheckTheArchiveAndTheEntry)
{
    const TempFolder folder;
    CZip zip;
    wchar_t message[512];
    const CString path = folder.Write("a.zip", BuildZip({{"../evil", "x"}}).bytes);
    zip.Open(path);
    try {
        zip.ExtractFile(0, folder.Path("out"));
        ADD_FAILURE();
    } catch (E* e) {
        EXPECT_TRUE(e->GetErrorMessage(message, 512));
        EXPECT_EQ(CString(message),
                  L"Le nom ..\\evil sort du dossier de destination (archive " + path + L").");
        EXPECT_EQ(e->m_archive, path);
        EXPECT_EQ(e->m_entry, L"..\\evil");
        e->Delete();
    }
    // Every cause has its sentence.
    for (int cause = E::noError; cause <= E::lastCause; ++cause) {
        EXPECT_TRUE(E(cause, L"A", L"E").GetErrorMessage(message, 512)) << cause;
        EXPECT_GT(CString(message).GetLength(), 20) << cause;
    }
    // What the system said follows.
    EXPECT_TRUE(E(E::systemError, L"A", nullptr, 2).GetErrorMessage(message, 512));
    EXPECT_EQ(CString(message), L"Le système a refusé l'accès à l'archive A. " + vak::system::ErrorText(2));
    EXPECT_FALSE(E(E::lastCause + 1).GetErrorMessage(message, 8));
}
