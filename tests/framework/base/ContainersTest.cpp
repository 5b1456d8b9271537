#include "framework/base/Array.h"
#include "framework/base/Exception.h"
#include "framework/base/StringArray.h"
#include "framework/base/StringList.h"

#include "tests/support/ArrayModel.h"
#include "tests/support/Print.h"

#include <list>
#include <random>
#include <string>

namespace {

CString Joined(const CStringArray& list)
{
    CString text;
    for (INT_PTR i = 0; i < list.GetSize(); ++i)
        text += list[i] + L' ';
    return text;
}

CString Joined(const CStringList& list)
{
    CString text;
    for (POSITION at = list.GetHeadPosition(); at != nullptr;)
        text += list.GetNext(at) + L' ';
    return text;
}

std::string Bytes(CObject& from)
{
    return vak::test::Stored([&](CArchive& archive) { from.Serialize(archive); });
}

} // namespace

TEST(Array, BehavesLikeAVectorUnderARandomStream)
{
    vak::test::ArrayModel<CArray<int, int>>().Run(2000);
}

TEST(Array, ArgumentsMayBeItsOwnElements)
{
    CStringArray array;
    array.Add(L"an element that is too long to be held inside of the object");
    for (int i = 0; i < 20; ++i)
        array.Add(array[0]);
    array.SetAtGrow(100, array[0]);
    array.InsertAt(0, array[100], 50);
    array.Append(array);
    array.InsertAt(1, &array);
    array.Copy(array);
    ASSERT_EQ(array.GetSize(), 604);
    EXPECT_EQ(array[0], array[100 + 50 + 302]);
}

TEST(Containers, RefuseWhatLiesOutside)
{
    CArray<int, int> array;
    array.Add(1);
    EXPECT_THROW(array.GetAt(1), CInvalidArgException*);
    EXPECT_THROW(array[-1], CInvalidArgException*);
    EXPECT_THROW(array.SetSize(-1), CInvalidArgException*);
    EXPECT_THROW(array.SetAtGrow(-1, 0), CInvalidArgException*);
    EXPECT_THROW(array.InsertAt(-1, 0), CInvalidArgException*);
    EXPECT_THROW(array.RemoveAt(0, 2), CInvalidArgException*);
    EXPECT_THROW(array.RemoveAt(0, INTPTR_MAX), CInvalidArgException*);
    EXPECT_THROW(array.SetSize(INTPTR_MAX), CMemoryException*);
    array.SetSize(9);
    EXPECT_EQ(array[8], 0) << "new numbers are zero";
    CStringList list;
    POSITION none = nullptr;
    EXPECT_THROW(list.RemoveTail(), CInvalidArgException*);
    EXPECT_THROW(list.GetNext(none), CInvalidArgException*);
}

TEST(StringList, AgreesWithAModelUnderRandomEdits)
{
    std::mt19937 random(11);
    CStringList list;
    std::list<std::string> model;
    for (int step = 0; step < 4000; ++step) {
        const std::string name = std::to_string(random() % 50);
        const CString text(name.c_str());
        const auto at = model.empty() ? 0 : static_cast<int>(random() % model.size());
        const POSITION position = list.FindIndex(at);
        const auto place = std::next(model.begin(), at);
        const auto kind = random() % 6;
        if (kind == 0) {
            list.InsertBefore(nullptr, text); // at the head
            model.push_front(name);
        } else if (kind == 1) {
            list.InsertAfter(nullptr, text); // at the tail
            model.push_back(name);
        } else if (position == nullptr) {
            continue;
        } else if (kind == 2) {
            list.InsertBefore(position, text);
            model.insert(place, name);
        } else if (kind == 3) {
            list.InsertAfter(position, text);
            model.insert(std::next(place), name);
        } else {
            list.RemoveAt(position);
            model.erase(place);
        }
        ASSERT_EQ(list.GetCount(), static_cast<INT_PTR>(model.size()));
        POSITION forward = list.GetHeadPosition();
        for (const auto& expected : model)
            ASSERT_EQ(list.GetNext(forward), expected.c_str());
        ASSERT_EQ(forward, nullptr);
        POSITION backward = list.GetTailPosition();
        for (auto expected = model.rbegin(); expected != model.rend(); ++expected)
            ASSERT_EQ(list.GetPrev(backward), expected->c_str());
        ASSERT_EQ(backward, nullptr);
    }
}

TEST(StringList, FindsBehindAPositionAndJoinsLists)
{
    CStringList list;
    list.AddTail(L"b");
    const POSITION first = list.AddHead(L"a");
    list.AddTail(L"a");
    EXPECT_EQ(list.Find(L"a", first), list.GetTailPosition());
    EXPECT_EQ(list.Find(L"a", list.GetTailPosition()), nullptr);
    list.SetAt(first, L"x");
    CStringList more;
    more.AddTail(L"1");
    more.AddTail(L"2");
    list.AddHead(&more);
    list.AddTail(&more);
    list.AddTail(&list);
    EXPECT_EQ(Joined(list), L"1 2 x b a 1 2 1 2 x b a 1 2 ");
    EXPECT_EQ(list.RemoveHead() + list.RemoveTail(), L"12");
}

TEST(Containers, StoreTheCountAndTheStrings)
{
    CStringArray array;
    array.Add(L"a\x00E9");
    array.Add(L"");
    // Count in 16 bits; wide strings: FF FE FF, length, units.
    const std::string bytes = vak::test::Hex("0200 FFFEFF02 6100E900 FFFEFF00");
    EXPECT_EQ(Bytes(array), bytes);
    CStringList list;
    list.AddTail(L"kept");
    vak::test::Load(bytes, [&](CArchive& archive) { list.Serialize(archive); });
    EXPECT_EQ(Joined(list), L"kept a\x00E9  ");
    vak::test::Load(bytes, [&](CArchive& archive) { array.Serialize(archive); });
    EXPECT_EQ(Joined(array), L"a\x00E9  ") << "an array is replaced, a list appended to";
    list.RemoveHead();
    EXPECT_EQ(Bytes(list), bytes);
    EXPECT_EQ(CRuntimeClass::FromName("CStringList"), list.GetRuntimeClass());
}

TEST(Containers, ACountThatTheFileCannotHoldEndsAtItsEnd)
{
    const std::string bytes = vak::test::Hex("FFFF FFFFFF7F 02 6869");
    CStringArray array;
    CStringList list;
    for (CObject* to : {static_cast<CObject*>(&array), static_cast<CObject*>(&list)})
        EXPECT_EQ(vak::test::LoadCause(bytes, [&](CArchive& archive) { to->Serialize(archive); }),
                  CArchiveException::endOfFile);
    EXPECT_EQ(Joined(array) + Joined(list), L"hi hi ");
}
