#include "files/detail/ZipNames.h"
#include "files/Zip.h"

#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ZipBuilder.h"
#include "tests/support/ZipContents.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace vak::test;
using vak::detail::zip::MakeSafe;

namespace {

CString Repeated(const wchar_t* piece, int times)
{
    CString text;
    for (; times > 0; --times)
        text += piece;
    return text;
}

/// The first entry's name in an archive that holds it as `bytes`.
CString Listed(const ZipSpec& spec, UINT codePage = 437)
{
    const TempFolder folder;
    CZip zip;
    zip.SetCodePage(codePage);
    zip.Open(folder.Write("a.zip", BuildZip({spec}).bytes));
    CZipHeader header;
    zip.GetFileInfo(header, 0);
    return header.GetFileName();
}

} // namespace

TEST(ZipNamesTest, NamesAreJudgedComponentByComponent)
{
    using E = CZipException;
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
    const std::pair<int, std::vector<const wchar_t*>> refused[] = {
        {E::nameEmpty, {L"", L"./", L"a/.."}},
        {E::nameRooted, {L"/etc/passwd", L"\\\\server\\share\\x", L"\\\\?\\C:\\x", L"C:\\x", L"c:x"}},
        {E::nameParent, {L"..", L"a/../../b", L"..\\..\\b"}},
        {E::nameDevice,
         {L"NUL", L"a/con.txt", L"aux .tar.gz", L"Com1", L"lpt\u00B2.x", L"conin$", L"prn/../a"}},
        {E::nameStream, {L"a.txt:stream", L"a/::$DATA"}},
        {E::nameTrailing, {L"a.", L"dir /x", L".../x", L".. /x", L"..foo/foo../.."}},
        {E::nameCharacter, {L"a?b", L"a\x1F"}},
    };
    for (const auto& [cause, names] : refused) {
        for (const wchar_t* const name : names) {
            EXPECT_EQ(MakeSafe(name, safe), cause) << testing::PrintToString(CString(name));
            EXPECT_TRUE(safe.IsEmpty());
        }
    }
    EXPECT_EQ(MakeSafe(CString(L"a\0b", 3), safe), E::nameCharacter);
    EXPECT_EQ(MakeSafe(Repeated(L"a/", 20000) + Repeated(L"../", 20000) + L"b", safe), 0);
    EXPECT_EQ(safe, L"b");
}

TEST(ZipNamesTest, StoredBytesAreReadInTheirOwnCodePage)
{
    const std::string utf8 = "\xC3\xA9/\xE4\xB8\x96";
    const auto unicode = [&](std::uint32_t crc) { return Extra(0x7075, '\x01' + Little(crc, 4) + utf8); };
    EXPECT_EQ(Listed({"\x82\xE1/\xB0", ""}), L"\u00E9\u00DF\\\u2591");
    EXPECT_EQ(Listed({"\xE9/\x80", ""}, 1252), L"\u00E9\\\u20AC");
    EXPECT_EQ(Listed({.name = utf8, .data = "", .flags = 0x800}), L"\u00E9\\\u4E16");
    EXPECT_EQ(Listed({.name = "e_w", .data = "", .extra = unicode(Crc("e_w"))}), L"\u00E9\\\u4E16");
    // The field was made for a name that somebody changed since.
    EXPECT_EQ(Listed({.name = "new", .data = "", .extra = unicode(Crc("old"))}), L"new");
    EXPECT_EQ(Listed({.name = "\xFF", .data = "", .flags = 0x800}), L"\uFFFD");
    EXPECT_EQ(Listed({"a\\b", ""}), L"a\\b");
}

TEST(ZipNamesTest, DirectoriesThatOnlyTheirAttributesTellAreListedAsSuch)
{
    EXPECT_EQ(Listed({.name = "d", .data = "", .madeBy = 20, .attributes = 0x10}), L"d\\");
    EXPECT_EQ(Listed({.name = "d", .data = "", .madeBy = 0x314, .attributes = 0x41ED0000}), L"d\\");
    EXPECT_EQ(Listed({.name = "f", .data = "", .madeBy = 0x314, .attributes = 0x81A40010}), L"f");
    EXPECT_EQ(Listed({.name = "f", .data = "1", .madeBy = 20, .attributes = 0x10}), L"f");
}

TEST(ZipNamesTest, NothingIsWrittenOutsideTheDestination)
{
    const char* const names[] = {"../evil",  "a/../../evil", "..\\evil", "/evil",
                                 "Z:\\evil", "evil.",        "x:evil",   "nul"};
    for (const char* name : names) {
        const TempFolder folder;
        CZip zip;
        zip.Open(folder.Write("in/a.zip", BuildZip({{name, "evil"}}).bytes));
        EXPECT_NE(ZipCause([&] { zip.ExtractFile(0, folder.Path("in\\out")); }), -1) << name;
        EXPECT_LE(folder.Names().size(), 3u) << name; // in, in/a.zip, perhaps in/out
    }
}

TEST(ZipNamesTest, AnEntryDoesNotTakeThePlaceOfAFolderNorGoThroughAFile)
{
    const TempFolder folder;
    CZip zip;
    zip.Open(folder.Write("a.zip", BuildZip({{"taken", "x"}, {"file/x", "x"}}).bytes));
    folder.Write("out/taken/inside", "");
    folder.Write("out/file", "kept");
    EXPECT_EQ(ZipCause([&] { zip.Extract(0, folder.Path("out")); }), CZipException::nameTaken);
    EXPECT_EQ(ZipCause([&] { zip.Extract(1, folder.Path("out")); }), CZipException::nameTaken);
    EXPECT_EQ(folder.Read("out/file"), "kept");
}

TEST(ZipNamesTest, TheExceptionNamesTheCheckTheArchiveAndTheEntry)
{
    const TempFolder folder;
    CZip zip;
    const CString path = folder.Write("a.zip", BuildZip({{"../evil", "x"}}).bytes);
    zip.Open(path);
    try {
        zip.ExtractFile(0, folder.Path("out"));
        ADD_FAILURE();
    } catch (CZipException* e) {
        wchar_t message[512];
        UINT help = 0;
        EXPECT_TRUE(e->GetErrorMessage(message, 512, &help));
        EXPECT_EQ(CString(message),
                  L"Le nom ..\\evil sort du dossier de destination (archive " + path + L").");
        EXPECT_EQ(e->m_archive, path);
        EXPECT_EQ(e->m_entry, L"..\\evil");
        e->Delete();
    }
    // Every cause has its sentence.
    for (int cause = CZipException::noError; cause <= CZipException::lastCause; ++cause) {
        wchar_t message[512];
        EXPECT_TRUE(CZipException(cause, L"A", L"E").GetErrorMessage(message, 512)) << cause;
        EXPECT_GT(CString(message).GetLength(), 20) << cause;
    }
    wchar_t message[8];
    EXPECT_FALSE(CZipException(CZipException::lastCause + 1).GetErrorMessage(message, 8));
}
