#include "framework/base/StringTable.h"
#include "resources/Ids.h"
#include "tests/support/Print.h"
#include "tests/support/TagEngine.h"

#include <gtest/gtest.h>

using vak::test::Expand;
using vak::test::Insert;

namespace {

struct OpenTags : CTags
{
    using CTags::m_byId;
    using CTags::m_byName;
    using CTags::m_scans;
};

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

TEST(Tags, StandWhereTheirHashesPutThem)
{
    const OpenTags empty;
    const auto offset = [&](const void* member) {
        return static_cast<const char*>(member) - reinterpret_cast<const char*>(&empty);
    };
    constexpr std::ptrdiff_t kTable = sizeof(CHashMap<int, int, int>);
    EXPECT_EQ(offset(&empty.m_byName), std::ptrdiff_t{sizeof(void*)});
    EXPECT_EQ(offset(&empty.m_byId), offset(&empty.m_byName) + kTable);
    EXPECT_EQ(offset(&empty.m_scans), offset(&empty.m_byId) + kTable);
    EXPECT_EQ(empty.m_byName.GetHashTableSize() + empty.m_byId.GetHashTableSize(), 101u + 101u);
    using Key = vak::detail::TagKey;
    EXPECT_EQ(vak::HashKey<Key>::Hash(Key{0xFFFFFFF0, 0x13}), 0x30u) << "in 32 bits";

    // "<file>" and "<when>" belong into slot 68 of 101; the second goes one further.
    CTags tags;
    EXPECT_EQ(tags.GetFirstTag(), nullptr);
    for (const wchar_t* name : {L"<file>", L"<Name>", L"<WHEN>", L"<size>", L"<Colour>", L"<title>"})
        Insert(tags, name, TAGDATA_TEXT, 'SAME');
    EXPECT_EQ(Names(tags), L"<colour><name><title><file><when><size>");
    tags.RemoveTag(L"<TITLE>");
    CTags copy;
    copy = tags;
    EXPECT_EQ(Names(copy), L"<colour><name><file><when><size>");
}

TEST(Tags, AreReplacedByNameAndAnsweredForByTheLastOfAnId)
{
    CTags tags;
    Insert(tags, L"<a>", TAGDATA_TEXT, 1, L"first");
    Insert(tags, L"<b>", TAGDATA_TEXT, 1);
    EXPECT_EQ(tags.GetTagName('DEMO', 1), L"<b>");
    EXPECT_EQ(tags.RemoveTag(L"<b>"), 1);
    EXPECT_EQ(tags.RemoveTag(L"<b>"), 0);
    EXPECT_EQ(tags.GetTagName('DEMO', 1), L"<a>");
    EXPECT_EQ(tags.InsertTag(L"<A>", 0x1000001, 'DEMO', 2, L"An A", 0, nullptr, nullptr), 0);
    EXPECT_EQ(tags.GetTagName('DEMO', 1) + tags.GetTagName('DEMO', 2), L"<a>");
    EXPECT_EQ(tags.GetTagFlags('DEMO', 1), 0u);
    EXPECT_EQ(tags.GetTagFlags('DEMO', 2), 0x1000001u);
    EXPECT_EQ(tags.GetTagFriendlyName('DEMO', 2), L"An A");
    EXPECT_EQ(Expand(tags, L"(<a>)"), L"()");
}

TEST(Tags, GoByClassAndLeaveCopiesAlone)
{
    CTags tags;
    CString name;
    for (unsigned int id = 0; id < 200; ++id) {
        name.Format(L"<tag%u>", id);
        tags.InsertTag(name, TAGDATA_BOOL, id % 2 == 0 ? 'EVEN' : 'ODD ', id, 0, 0, vak::test::GiveValue,
                       nullptr);
    }
    CTags copy(tags);
    EXPECT_EQ(tags.RemoveTagByClass('EVEN'), 100);
    EXPECT_EQ(tags.RemoveTagByClass('EVEN'), 0);
    EXPECT_EQ(tags.GetTagName('EVEN', 2) + tags.GetTagName('ODD ', 3), L"<tag3>");
    Insert(tags, L"<tag4>", TAGDATA_TEXT, 4, L"new");
    const CString text = L"<tag2><tag3><tag4>, all of them far from the end";
    EXPECT_EQ(Expand(tags, text), L"<tag2>Vrainew, all of them far from the end");
    tags = CTags();
    EXPECT_EQ(tags.IsInit(), 0);
    EXPECT_EQ(Expand(tags, text), text);
    EXPECT_EQ(Expand(copy, text), L"VraiVraiVrai, all of them far from the end");
    EXPECT_EQ(copy.GetTagName('EVEN', 2), L"<tag2>");
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
    EXPECT_EQ(first.GetTagFlags('TAGC', 'EINE'), 0x1000000u);
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
    Insert(tags, L"<file>", TAGDATA_FILENAME, 'FILE', L"C:\\none.txt");
    CTagInfo info;
    CTagValue value;
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_TEXT), 0) << "without a callback";
    tags.GetTagInfo(L"<file>", info);
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_FLOAT), 1);
    EXPECT_EQ(value.GetDataType(), TAGDATA_FILENAME);
    tags.GetTagInfo(L"<file(Size)>", info);
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_TEXT), 1);
    EXPECT_EQ(value.GetDataType(), TAGDATA_NONE);
}
