#include "tests/support/Print.h"
#include "tests/support/TagEngine.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using vak::test::Expand;
using vak::test::Insert;

namespace {

CTags SomeTags()
{
    CTags tags;
    Insert(tags, L"<name>", TAGDATA_TEXT, 'NAME', L"Jo");
    Insert(tags, L"<\x00C9t\x00C9>", TAGDATA_TEXT, 'SUMM', L"\x2600");
    Insert(tags, L"<file>", TAGDATA_FILENAME, 'FILE', L"C:\\tmp\\Example.JPG");
    Insert(tags, L"<none>", TAGDATA_NONE, 'NONE');
    Insert(tags, L"<fourteen-units>", TAGDATA_TEXT, 'FOUR', L"14");
    Insert(tags, L"<fifteen---units>", TAGDATA_TEXT, 'FIFT', L"15");
    return tags;
}

CString Repeated(const CString& text, int count)
{
    CString all;
    while (count-- > 0)
        all += text;
    return all;
}

} // namespace

TEST(TagScan, PutsValuesInPlaceOfTagsAndKeepsEverythingElse)
{
    CTags tags = SomeTags();
    EXPECT_EQ(Expand(tags, L"Dear < nA  Me >, <\x00E9T\x00E9><name> <none>. <file(path(topdir))> <file> "
                           L"< File ( ShortName ) >-<file(Ext)> <Other><FILE (name) > <Other(Ext)> "
                           L"a > b < c <<name>> <name(<name>)> <>< ><(ext)> <\tname> "
                           L"<fourteen-units><fifteen---units><<name>, <Name>, <fourteen-unit>. <name"),
              L"Dear Jo, \x2600Jo . tmp C:\\tmp\\Example.JPG "
              L"Example-.JPG <Other>Example.JPG <Other(Ext)> "
              L"a > b < c <Jo> <name(Jo)> <>< ><(ext)> <\tname> "
              L"1415<Jo, Jo, <fourteen-unit>. <name");
    EXPECT_EQ(Expand(tags, CString(L"a\0<name>\0<\0>", 13)), CString(L"a\0Jo\0<\0>", 9));
}

TEST(TagScan, StopsAtEachTagAndEndsOnce)
{
    CTags tags = SomeTags();
    CString out(L":");
    CTagInfo info('KEPT', 'KEPT');
    EXPECT_EQ(tags.Scan(out, info), 0);
    EXPECT_EQ(info.GetTagID(), unsigned{'KEPT'}) << "without a scan";
    tags.StartScan(L"<file(ext)> of the scan before");
    tags.Scan(out, info);
    tags.StartScan(L"a<b<name>< Name ( D + H )>c");
    ASSERT_EQ(tags.Scan(out, info), 1);
    EXPECT_EQ(out + info.GetTagName() + info.GetParameters(), L":a<b<name>");
    ASSERT_EQ(tags.Scan(out, info), 1);
    EXPECT_EQ(out + info.GetTagName() + info.GetParameters(), L":a<b<name>(d+h)");
    EXPECT_EQ(CTags(tags).Scan(out, info), 0) << "a copy scans for itself";
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(tags.Scan(out, info), 0);
        EXPECT_EQ(out + info.GetTagName() + info.GetParameters(), L":a<bc");
        EXPECT_EQ(info.GetTagID(), 0u);
    }
}

TEST(TagScan, TakesLinearTimeWhateverTheBrackets)
{
    // Looked for anew from every "<", the one ">" would take hours to find.
    CTags tags = SomeTags();
    const CString text = CString(L'<', 3000000) + L">" + Repeated(L"<nnnnnnnnnnnnnnnnnnnnnnnn>", 100000) +
                         L"<" + CString(L' ', 3000000) + L">";
    EXPECT_EQ(Expand(tags, text), text);
}

TEST(TagScan, LetsEightThreadsScanWithOneEngine)
{
    CTags tags = SomeTags();
    // They meet without the run-time's waiting, so that what holds them, if anything, is the engine.
    std::atomic<int> missing = 8;
    std::vector<std::thread> threads;
    for (wchar_t letter = L'a'; letter < L'i'; ++letter) {
        threads.emplace_back([&, letter] {
            const CString text = Repeated(CString(letter) + L" <name> <file(ext)> <other>\n", 50);
            const CString expanded = Repeated(CString(letter) + L" Jo .JPG <other>\n", 50);
            for (--missing; missing > 0;)
                std::this_thread::yield();
            for (int round = 0; round < 20; ++round)
                EXPECT_EQ(Expand(tags, text), expanded);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}
