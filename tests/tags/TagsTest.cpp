#include "tests/support/Print.h"
#include "tests/support/TagEngine.h"
#include "tests/support/TagTexts.h"

#include <gtest/gtest.h>

using vak::test::Expand;
using vak::test::InBoth;
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
    for (POSITION position = tags.GetFirstTag(); position != nullptr; names += info.GetTagName())
        tags.GetNextTag(position, name, info);
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

    // "<file>" and "<when>" belong into slot 68 of 101; the second goes one further.
    CTags tags;
    for (const wchar_t* name : {L"<file>", L"<Name>", L"<WHEN>", L"<size>", L"<Colour>", L"<title>"})
        Insert(tags, name, TAGDATA_TEXT, 'SAME');
    EXPECT_EQ(Names(tags), L"<colour><name><title><file><when><size>");
    tags.RemoveTag(L"<TITLE>");
    CTags copy;
    EXPECT_EQ(Names(copy), L"");
    copy = tags;
    EXPECT_EQ(Names(copy), L"<colour><name><file><when><size>");
}

TEST(Tags, AreReplacedByNameAndAnsweredForByTheLastOfAnId)
{
    CTags tags;
    Insert(tags, L"<a>", TAGDATA_TEXT, 1, L"first");
    Insert(tags, L"<b>", TAGDATA_TEXT, 1);
    EXPECT_EQ(tags.GetTagName('DEMO', 1), L"<b>");
    EXPECT_EQ(tags.RemoveTag(L"<b>") + tags.RemoveTag(L"<b>"), 1);
    EXPECT_EQ(tags.GetTagName('DEMO', 1), L"<a>");
    CTagInfo info;
    CTagValue value;
    tags.GetTagInfo(L"<a>", info);
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_FLOAT), 1) << "also when it does not convert";
    EXPECT_EQ(value.GetDataType(), TAGDATA_TEXT);
    EXPECT_EQ(tags.InsertTag(L"<A>", 0x1000001, 'DEMO', 2, L"An A", 0, nullptr, nullptr), 0);
    EXPECT_EQ(tags.GetTagName('DEMO', 1) + tags.GetTagName('DEMO', 2), L"<a>");
    EXPECT_EQ(tags.GetTagFlags('DEMO', 1) + tags.GetTagFlags('DEMO', 2), 0x1000001u);
    EXPECT_EQ(tags.GetTagFriendlyName('DEMO', 2), L"An A");
    tags.GetTagInfo(L"<a>", info);
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_TEXT), 0) << "without a callback";
}

TEST(Tags, GoByClassAndLeaveCopiesAlone)
{
    CTags tags;
    CString name;
    for (unsigned int id = 0; id < 200; ++id) {
        name.Format(L"<tag%u>", id);
        tags.InsertTag(name, TAGDATA_BOOL, id % 2, id, 0, 0, vak::test::GiveValue, nullptr);
    }
    CTags copy(tags);
    EXPECT_EQ(tags.RemoveTagByClass(0), 100);
    EXPECT_EQ(tags.GetTagName(0, 2) + tags.GetTagName(1, 3), L"<tag3>");
    Insert(tags, L"<tag4>", TAGDATA_TEXT, 4, L"new");
    const CString text = L"<tag2><tag3><tag4>, all of them far from the end";
    EXPECT_EQ(Expand(tags, text), L"<tag2>Vrainew, all of them far from the end");
    tags = CTags();
    EXPECT_EQ(tags.IsInit(), 0);
    EXPECT_EQ(Expand(tags, text), text);
    EXPECT_EQ(Expand(copy, text), L"VraiVraiVrai, all of them far from the end");
    EXPECT_EQ(copy.GetTagName(0, 2), L"<tag2>");
}

TEST(Tags, AnswerAboutATagStringByItsLastParameter)
{
    struct Row
    {
        const wchar_t* tag;
        unsigned int id;
        unsigned int kind;
        int comparable;
        const wchar_t* friendlyName;
    };
    const Row rows[] = {
        {L"<file>", 'FILE', 0x1001, 1, L"The file"},
        {L"< File ( Ext ) >", 'FILE', 0x1001, 1, L"Extension"},
        {L"<file(kind)>", 'FILE', 1, 0, L"Type du fichier | Kind of file"},
        {L"<file(lastwritedate(h))>", 'FILE', 1, 1, L"Heure (format : 10:00) | Time (format: 10:00)"},
        {L"<file(size(kind)>", 'FILE', 0x8002, 1, L"Taille du fichier | File size"},
        {L"<file(ext(other))>", 'FILE', 0x1001, 1, L"The file"},
        {L"<file(size", 'FILE', 0x1001, 1, L"The file"},
        {L"<TagIfExist>", 'IFNE', 0, 0,
         L"Début de test d'existence de la balise | Begin of empty tag evaluation test"},
        {L"<tagendifexist>", 'EINE', 0, 0,
         L"Fin de test d'existence de la balise | End of empty tag evaluation test"},
        {L"<other(ext)>", 0, 0, 0, L""},
        {L"", 0, 0, 0, L""},
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
        EXPECT_EQ(InBoth([&] { return tags.GetTagFriendlyName(row.tag); }), CString(row.friendlyName));
    }
    CTags second;
    CTags::InitTags(second);
    EXPECT_EQ(second.IsInit(), 0) << "once per process";
    CTagInfo info;
    tags.GetTagInfo(L"<tagendifexist>", info);
    EXPECT_EQ(info.GetTagFlags() + info.GetTagClass(), 0x1000000u + 'TAGC');
    EXPECT_EQ(InBoth([&] { return info.GetClassName(); }), L"Balises conditionnelles | Conditionals tags");
}
