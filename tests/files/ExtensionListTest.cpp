#include "files/ExtensionList.h"

#include <gtest/gtest.h>

TEST(ExtensionList, IsCleanedIntoItsCanonicalForm)
{
    const std::pair<const wchar_t*, const wchar_t*> extensions[] = {
        {L"OBJ, .3ds;*.max obj", L"*.obj *.3ds *.max"},
        {L"*.tar.gz a.b .", L"*.tar.gz a.b *."},
        {L"* *.OBJ", L"*.* *.obj"},
        {L"\"obj\" \"a b\"", L"*.\"obj\" *.\"a *.b\""},
        {L"\x00C9T\x00C9", L"*.\x00E9t\x00E9"},
        {L" ,;, ; ", L""},
        {L"a\tb", L"*.a\tb"},
    };
    const std::pair<const wchar_t*, const wchar_t*> patterns[] = {
        {L"abc \"my file\" a?c", L"*abc* my file a?c"},
        {L"*abc abc* *abc* ABC", L"*abc*"},
        {L"\"one\" one", L"one *one*"},
        {L"\"\" \" \" x", L"  *x*"},
        {L"\"no end, here", L"no end  here"},
        {L"\"a b\"c d", L"a b *c* *d*"},
        {L"\"ab\"c ab\" a\"b", L"abc ab *a\"b*"},
        {L"\"a?b c\" \"*\"", L"a?b c *"},
    };
    for (const auto& [list, cleaned] : extensions)
        EXPECT_EQ(fileCleanExtensionList(list, 1), CString(cleaned));
    for (const auto& [list, cleaned] : patterns)
        EXPECT_EQ(fileCleanExtensionList(list, 0), CString(cleaned));
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
