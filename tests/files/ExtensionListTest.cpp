#include "files/ExtensionList.h"

#include <gtest/gtest.h>

namespace {

struct Row
{
    const wchar_t* list;
    int extensionMode;
    const wchar_t* cleaned;
};

} // namespace

TEST(ExtensionList, IsCleanedIntoItsCanonicalForm)
{
    const Row rows[] = {
        {L"OBJ, .3ds;*.max obj", 1, L"*.obj *.3ds *.max"},
        {L"*.tar.gz a.b .", 1, L"*.tar.gz a.b *."},
        {L"* *.OBJ", 1, L"*.* *.obj"},
        {L"\"obj\" \"a b\"", 1, L"*.\"obj\" *.\"a *.b\""},
        {L"\x00C9T\x00C9", 1, L"*.\x00E9t\x00E9"},
        {L"", 1, L""},
        {L" ,;, ; ", 1, L""},
        {L"a\tb", 1, L"*.a\tb"},
        {L"abc \"my file\" a?c", 0, L"*abc* my file a?c"},
        {L"*abc abc* *abc* ABC", 0, L"*abc*"},
        {L"a*c * ** ?", 0, L"*a*c* * ** ?"},
        {L"\"one\" one", 0, L"one *one*"},
        {L"\"\" \" \" x", 0, L"  *x*"},
        {L"\"no end, here", 0, L"no end  here"},
        {L"x \"", 0, L"*x*"},
        {L"\"a b\"c d", 0, L"a b *c* *d*"},
        {L"\"ab\"c ab\" a\"b", 0, L"abc ab *a\"b*"},
        {L"\"a?b c\" \"*\"", 0, L"a?b c *"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(fileCleanExtensionList(row.list, row.extensionMode), CString(row.cleaned));
}

TEST(ExtensionList, IsCutBeforeItIsTakenApartAndAfterItIsTrimmed)
{
    const CString first(L'a', 255);
    EXPECT_EQ(fileCleanExtensionList(L"  " + first + L" bcdef", 1), L"*." + first + L" *.bcd");
    EXPECT_EQ(fileCleanExtensionList(L"\"" + first + L" bcdef\"", 0), first + L" bc");
    EXPECT_EQ(fileCleanExtensionList(CString(L".a\0.b", 5), 1), CString(L"*.a"));
}

TEST(ExtensionList, ReplacesTheTableAndOnlyAddsToOneThatIsHandedOver)
{
    CHashTable<CString> table(1000);
    table.Insert(L"*.old");
    CString list = L"A;b a";
    EXPECT_EQ(fileGetHashFromExtensionList(list, table, 1), 2u);
    EXPECT_EQ(list, CString(L"*.a *.b"));
    EXPECT_EQ(table.GetHashTableSize(), 101u);
    EXPECT_FALSE(table.IsFound(L"*.old"));

    EXPECT_EQ(fileCleanExtensionList(L"b c", 1, &table), CString(L"*.c"));
    EXPECT_EQ(table.GetCount(), 3u);
    EXPECT_TRUE(table.IsFound(L"*.b") && table.IsFound(L"*.c"));
}
