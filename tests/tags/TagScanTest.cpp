#include "framework/base/StringTable.h"
#include "tests/support/Print.h"
#include "tests/support/TagEngine.h"

#include <gtest/gtest.h>

#include <barrier>
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
    Insert(tags, L"<when>", TAGDATA_DATE, 'WHEN');
    Insert(tags, L"<bytes>", TAGDATA_FILESIZE, 'SIZE');
    Insert(tags, L"<true>", TAGDATA_BOOL, 'TRUE');
    Insert(tags, L"<color>", TAGDATA_COLOR, 'COLO');
    Insert(tags, L"<none>", TAGDATA_NONE, 'NONE');
    Insert(tags, L"<fourteen-units>", TAGDATA_TEXT, 'FOUR', L"14");
    Insert(tags, L"<fifteen---units>", TAGDATA_TEXT, 'FIFT', L"15");
    return tags;
}

CString Repeated(const CString& text, int count)
{
    CString all;
    all.Preallocate(text.GetLength() * count);
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

} // namespace

TEST(TagScan, PutsValuesInPlaceOfTagsAndKeepsEverythingElse)
{
    struct Row
    {
        CString text;
        CString expanded;
    };
    const Row rows[] = {
        {L"", L""},
        {L"<Name>", L"Jo"},
        {L"Dear < nA  Me >,", L"Dear Jo,"},
        {L"<\x00E9T\x00E9>", L"\x2600"},
        {L"<name><name> <none>.", L"JoJo ."},
        {L"< File ( ShortName ) >-<file(Ext)>", L"Example-.JPG"},
        {L"<file(path(topdir))>", L"tmp"},
        {L"<file>", L"C:\\tmp\\Example.JPG"},
        {L"<Other><FILE (name) > <Other(Ext)>", L"<Other>Example.JPG <Other(Ext)>"},
        {L"a<b", L"a<b"},
        {L"a > b < c", L"a > b < c"},
        {L"<<name>>", L"<Jo>"},
        {L"<name(<name>)>", L"<name(Jo)>"},
        {L"<name", L"<name"},
        {L"<>< ><(ext)>", L"<>< ><(ext)>"},
        {L"<\tname>", L"<\tname>"},
        {L"<fourteen-units><fifteen---units><<name>, <Name>, <fourteen-unit>.",
         L"1415<Jo, Jo, <fourteen-unit>."},
        {CString(L"a\0<name>\0<\0>", 13), CString(L"a\0Jo\0<\0>", 9)},
    };
    CTags tags = SomeTags();
    for (const Row& row : rows)
        EXPECT_EQ(Expand(tags, row.text), row.expanded);
}

TEST(TagScan, StopsAtEachTagAndEndsOnce)
{
    CTags tags = SomeTags();
    CString out(L":");
    CTagInfo info('KEPT', 'KEPT');
    EXPECT_EQ(tags.Scan(out, info), 0);
    EXPECT_EQ(info.GetTagID(), unsigned{'KEPT'}) << "without a scan";
    tags.StartScan(L"a<b<Name ( D + H )>c");
    ASSERT_EQ(tags.Scan(out, info), 1);
    EXPECT_EQ(out, L":a<b");
    EXPECT_EQ(info.GetTagID(), unsigned{'NAME'});
    EXPECT_EQ(info.GetTagName(), L"<name>");
    EXPECT_EQ(info.GetParameters(), L"(d+h)");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(tags.Scan(out, info), 0);
        EXPECT_EQ(out, L":a<bc");
        EXPECT_EQ(info.GetTagID(), 0u);
        EXPECT_EQ(info.GetTagName() + info.GetParameters(), L"");
    }
    tags.StartScan(L"<file(ext)><name>");
    tags.Scan(out, info);
    tags.StartScan(L"<name>");
    ASSERT_EQ(tags.Scan(out, info), 1);
    EXPECT_EQ(info.GetParameters(), L"") << "of the tag before";
    CTags copy(tags);
    EXPECT_EQ(copy.Scan(out, info), 0) << "a copy scans for itself";
}

TEST(TagScan, ExpandsReportsInBothLanguages)
{
    const CString report = L"<file(name)> (<Bytes>), <When(D+T)>, <when>\r\n<TRUE> / <Color> / <when(d+h+t)>";
    CTags tags = SomeTags();
    vak::SetTextLanguage(1033);
    EXPECT_EQ(Expand(tags, report), L"Example.JPG (1.50 KB), Monday 1 September 2003, 01/09/2003 10:00\r\n"
                                    L"True / R :  1  G : 2  B : 3 / Monday 1 September 2003 10:00");
    vak::SetTextLanguage(1036);
    EXPECT_EQ(Expand(tags, report), L"Example.JPG (1,50 Ko), Lundi 1er Septembre 2003, 01/09/2003 10:00\r\n"
                                    L"Vrai / R :  1  V : 2  B : 3 / Lundi 1er Septembre 2003 10:00");
}

TEST(TagScan, TakesLinearTimeWhateverTheBrackets)
{
    // Looked for anew from every "<", the one ">" would take hours to find.
    CTags tags = SomeTags();
    const CString openings = CString(L'<', 3000000) + L">";
    EXPECT_EQ(Expand(tags, openings), openings);
    const CString candidates =
        Repeated(L"<" + CString(L'n', 30) + L">", 100000) + L"<" + CString(L' ', 3000000);
    EXPECT_EQ(Expand(tags, candidates + L">"), candidates + L">");
    const CString line = L"A line of a report, forty-eight units long: <name>\n";
    const CString expanded = L"A line of a report, forty-eight units long: Jo\n";
    EXPECT_EQ(Expand(tags, Repeated(line, 100000)), Repeated(expanded, 100000));
}

TEST(TagScan, LetsEightThreadsScanWithOneEngine)
{
    constexpr int kThreads = 8;
    CTags tags = SomeTags();
    std::barrier start(kThreads);
    std::vector<CString> results(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            CString text;
            text.Format(L"%d <name> <file(ext)> <other>\n", i);
            text = Repeated(text, 50);
            start.arrive_and_wait();
            for (int round = 0; round < 20; ++round)
                results[std::size_t(i)] = Expand(tags, text);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (int i = 0; i < kThreads; ++i) {
        CString line;
        line.Format(L"%d Jo .JPG <other>\n", i);
        EXPECT_EQ(results[std::size_t(i)], Repeated(line, 50));
    }
}
