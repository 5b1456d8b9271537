#include "framework/base/StringTable.h"
#include "resources/Ids.h"
#include "tests/support/Print.h"
#include "tests/support/TagEngine.h"

#include <gtest/gtest.h>

using vak::test::DataOf;
using vak::test::Expand;

namespace {

struct OpenTags : CTags
{
    using CTags::m_byId;
    using CTags::m_byName;
    using CTags::m_scans;
};

void Insert(CTags& tags, const CString& name, unsigned int tagClass, unsigned int tagId,
            const wchar_t* text = L"")
{
    tags.InsertTag(name, TAGDATA_TEXT, tagClass, tagId, 0, 0, vak::test::GiveText, DataOf(text));
}

/// The names in the order of the walk.
CString Names(const CTags& tags)
{
    CString names;
    CString name;
    CTagInfo info;
    for (POSITION position = tags.GetFirstTag(); position != nullptr;) {
        tags.GetNextTag(position, name, info);
        EXPECT_EQ(name, info.GetTagName());
        names += name;
    }
    return names;
}

} // namespace

TEST(Tags, AreWalkedInTheOrderOfTheirHashes)
{
    // "<file>" and "<when>" belong into slot 68 of 101; the second goes one further.
    CTags tags;
    EXPECT_EQ(tags.IsInit(), 0);
    EXPECT_EQ(tags.GetFirstTag(), nullptr);
    unsigned int id = 0;
    for (const wchar_t* name : {L"<file>", L"<Name>", L"<WHEN>", L"<size>", L"<Colour>", L"<title>"})
        Insert(tags, name, 'DEMO', ++id);
    EXPECT_NE(tags.IsInit(), 0);
    EXPECT_EQ(Names(tags), L"<colour><name><title><file><when><size>");
    tags.RemoveTag(L"<TITLE>");
    CTags copy;
    copy = tags;
    EXPECT_EQ(Names(copy), L"<colour><name><file><when><size>");
    using Key = vak::detail::TagKey;
    EXPECT_EQ(vak::HashKey<Key>::Hash(Key{0xFFFFFFF0, 0x13}), 0x30u)
        << "sums and products lose what 32 bits lack";
}

TEST(Tags, KeepTheirTablesWhereOthersExpectThem)
{
    const OpenTags tags;
    const auto offset = [&](const void* member) {
        return static_cast<const char*>(member) - reinterpret_cast<const char*>(&tags);
    };
    constexpr std::ptrdiff_t kTable = sizeof(CHashMap<int, int, int>);
    const std::ptrdiff_t first = sizeof(void*);
    EXPECT_EQ(offset(&tags.m_byName), first);
    EXPECT_EQ(offset(&tags.m_byId), first + kTable);
    EXPECT_EQ(offset(&tags.m_scans), first + 2 * kTable);
    EXPECT_EQ(tags.m_byName.GetHashTableSize(), 101u);
    EXPECT_EQ(tags.m_byId.GetHashTableSize(), 101u);
}

TEST(Tags, AreReplacedByNameAndAnsweredForByTheLastOfAnId)
{
    CTags tags;
    Insert(tags, L"<a>", 'DEMO', 1, L"first");
    Insert(tags, L"<b>", 'DEMO', 1);
    EXPECT_EQ(tags.GetTagName('DEMO', 1), L"<b>");
    EXPECT_EQ(tags.RemoveTag(L"<b>"), 1);
    EXPECT_EQ(tags.RemoveTag(L"<b>"), 0);
    EXPECT_EQ(tags.GetTagName('DEMO', 1), L"<a>");
    EXPECT_EQ(tags.InsertTag(L"<A>", 5, 'DEMO', 2, L"An A", 0, vak::test::GiveText, DataOf(L"second")), 0);
    EXPECT_EQ(tags.GetTagName('DEMO', 1), L"");
    EXPECT_EQ(tags.GetTagFlags('DEMO', 1), 0u);
    EXPECT_EQ(tags.GetTagName('DEMO', 2), L"<a>");
    EXPECT_EQ(tags.GetTagFlags('DEMO', 2), 5u);
    EXPECT_EQ(tags.GetTagFriendlyName('DEMO', 2), L"An A");
    EXPECT_EQ(Expand(tags, L"<a>"), L"second");
}

TEST(Tags, GoByClassAndLeaveCopiesAlone)
{
    CTags tags;
    CTags bare = tags;
    for (unsigned int id = 0; id < 200; ++id) {
        CString name;
        name.Format(L"<tag%u>", id);
        Insert(tags, name, id % 2 == 0 ? 'EVEN' : 'ODD ', id, L"x");
    }
    CTags copy(tags);
    EXPECT_EQ(tags.RemoveTagByClass('EVEN'), 100);
    EXPECT_EQ(tags.RemoveTagByClass('EVEN'), 0);
    EXPECT_EQ(tags.GetTagName('EVEN', 2) + tags.GetTagName('ODD ', 3), L"<tag3>");
    EXPECT_EQ(Expand(tags, L"<tag2><tag3>"), L"<tag2>x");
    EXPECT_EQ(Expand(copy, L"<tag2><tag3>"), L"xx");
    EXPECT_EQ(copy.GetTagName('EVEN', 2), L"<tag2>");
    copy = bare;
    EXPECT_EQ(copy.IsInit(), 0);
}

TEST(Tags, AnswerAboutATagStringByItsLastParameter)
{
    struct Row
    {
        const wchar_t* tag;
        unsigned int id;
        unsigned int kind;
        int comparable;
        const wchar_t* english;
        const wchar_t* french;
    };
    const Row rows[] = {
        {L"<file>", 'FILE', 0x1001, 1, L"The file", L"The file"},
        {L"< File ( Ext ) >", 'FILE', 0x1001, 1, L"Extension", L"Extension"},
        {L"<file(size)>", 'FILE', 0x8002, 1, L"File size", L"Taille du fichier"},
        {L"<file(kind)>", 'FILE', 1, 0, L"Kind of file", L"Type du fichier"},
        {L"<file(lastwritedate(d))>", 'FILE', 1, 1, L"Date (format: 01/09/2003)",
         L"Date (format : 01/09/2003)"},
        {L"<file(lastwritedate)>", 'FILE', 8, 1, L"Last modified date",
         L"Date de derni\x00E8re modification du fichier"},
        {L"<file(other)>", 'FILE', 0x1001, 1, L"The file", L"The file"},
        {L"<file(ext(other))>", 'FILE', 0x1001, 1, L"The file", L"The file"},
        {L"<file(size(kind)>", 'FILE', 0x8002, 1, L"File size", L"Taille du fichier"},
        {L"<file(size", 'FILE', 0x1001, 1, L"The file", L"The file"},
        {L"<TagIfExist>", 'IFNE', 0, 0, L"Begin of empty tag evaluation test",
         L"D\x00E9"
         "but de test d'existence de la balise"},
        {L"<tagendifexist>", 'EINE', 0, 0, L"End of empty tag evaluation test",
         L"Fin de test d'existence de la balise"},
        {L"<other>", 0, 0, 0, L"", L""},
        {L"<other(ext)>", 0, 0, 0, L"", L""},
        {L"file", 0, 0, 0, L"", L""},
        {L"", 0, 0, 0, L"", L""},
    };
    CTags tags(vak::test::ConditionalTags());
    tags.InsertTag(L"<file>", TAGDATA_FILENAME, 'DEMO', 'FILE', L"The file", 0, nullptr, nullptr);
    for (const Row& row : rows) {
        SCOPED_TRACE(CStringA(row.tag).GetString());
        unsigned int tagClass = 1;
        EXPECT_EQ(tags.GetTagID(row.tag, tagClass), row.id);
        EXPECT_EQ(tagClass != 0, row.id != 0);
        EXPECT_EQ(tags.IsTagValid(row.tag) != 0, row.id != 0);
        EXPECT_EQ(tags.GetTagDataType(row.tag), row.kind);
        EXPECT_EQ(tags.CanCompareTag(row.tag), row.comparable);
        vak::SetTextLanguage(1033);
        EXPECT_EQ(tags.GetTagFriendlyName(row.tag), CString(row.english));
        vak::SetTextLanguage(1036);
        EXPECT_EQ(tags.GetTagFriendlyName(row.tag), CString(row.french));
    }
}

TEST(Tags, OfConditionsAreRegisteredOnce)
{
    const CTags& first = vak::test::ConditionalTags();
    CTags second;
    CTags::InitTags(second);
    EXPECT_EQ(second.IsInit(), 0);
    EXPECT_EQ(Names(first).GetLength(), 12 + 15);
    EXPECT_EQ(first.GetTagFlags('TAGC', 'IFNE'), 0x1000000u);
    CTagInfo info;
    ASSERT_NE(first.GetTagInfo(L"<tagendifexist>", info), 0);
    vak::SetTextLanguage(1033);
    EXPECT_EQ(info.GetClassName(), L"Conditionals tags");
    vak::SetTextLanguage(1036);
    EXPECT_EQ(info.GetClassName(), L"Balises conditionnelles");
}

TEST(Tags, GiveDataAlsoWhenItDoesNotConvert)
{
    CTags tags;
    tags.InsertTag(L"<file>", TAGDATA_FILENAME, 'DEMO', 'FILE', 0, 0, vak::test::GivePath,
                   DataOf(L"C:\\none.txt"));
    tags.InsertTag(L"<mute>", TAGDATA_TEXT, 'DEMO', 'MUTE', 0, 0, nullptr, nullptr);
    CTagInfo info;
    CTagValue value;
    tags.GetTagInfo(L"<file>", info);
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_FLOAT), 1);
    EXPECT_EQ(value.GetDataType(), TAGDATA_FILENAME);
    tags.GetTagInfo(L"<file(Size)>", info);
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_TEXT), 1);
    EXPECT_EQ(value.GetDataType(), TAGDATA_NONE);
    tags.GetTagInfo(L"<mute>", info);
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_TEXT), 0);
}
