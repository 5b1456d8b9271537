#include "framework/base/Array.h"
#include "framework/base/Exception.h"
#include "framework/base/StringArray.h"
#include "framework/base/StringList.h"

#include "framework/base/Archive.h"
#include "framework/base/MemFile.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

template <class List>
CString Joined(const List& list)
{
    CString text;
    for (INT_PTR i = 0; i < list.GetSize(); ++i)
        text += list[i] + L' ';
    return text;
}

template <>
CString Joined(const CStringList& list)
{
    CString text;
    for (POSITION at = list.GetHeadPosition(); at != nullptr;)
        text += list.GetNext(at) + L' ';
    return text;
}

/// What `from` stores.
std::string Stored(CObject& from)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    from.Serialize(archive);
    archive.Close();
    file.SeekToBegin();
    std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

void Load(CObject& to, std::string_view bytes)
{
    CMemFile file;
    file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    to.Serialize(archive);
}

bool EndsInArchiveError(CObject& to, std::string_view bytes)
{
    try {
        Load(to, bytes);
    } catch (CArchiveException* e) {
        e->Delete();
        return true;
    }
    return false;
}

} // namespace

TEST(Array, GrowsCutsAndInsertsAsAsked)
{
    CStringArray array;
    EXPECT_EQ(array.GetUpperBound(), -1);
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(array.Add(L"a"), 0);
    EXPECT_EQ(array.Add(L"b"), 1);
    array.SetAtGrow(3, L"d");
    EXPECT_EQ(Joined(array), L"a b  d ");
    array.InsertAt(1, L"x", 2);
    EXPECT_EQ(Joined(array), L"a x x b  d ");
    array.InsertAt(7, L"z");
    EXPECT_EQ(array.GetCount(), 8) << "behind the end the gap is filled";
    array.RemoveAt(4, 4);
    array.RemoveAt(4, 0);
    array.RemoveAt(1);
    array[0] = L"A";
    EXPECT_EQ(Joined(array), L"A x b ");
    CStringArray other;
    other.Copy(array);
    EXPECT_EQ(other.Append(array), 3);
    other.InsertAt(1, &array);
    EXPECT_EQ(Joined(other), L"A A x b x b A x b ");
    other.SetSize(2);
    EXPECT_EQ(Joined(other), L"A A ");
    other.RemoveAll();
    EXPECT_TRUE(other.IsEmpty());
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

TEST(Array, RefusesWhatLiesOutside)
{
    CArray<int, int> array;
    array.Add(1);
    EXPECT_THROW(array.GetAt(1), CInvalidArgException*);
    EXPECT_THROW(array[-1], CInvalidArgException*);
    EXPECT_THROW(array.SetAt(1, 0), CInvalidArgException*);
    EXPECT_THROW(array.SetSize(-1), CInvalidArgException*);
    EXPECT_THROW(array.SetAtGrow(-1, 0), CInvalidArgException*);
    EXPECT_THROW(array.InsertAt(-1, 0), CInvalidArgException*);
    EXPECT_THROW(array.InsertAt(0, 0, 0), CInvalidArgException*);
    EXPECT_THROW(array.RemoveAt(0, 2), CInvalidArgException*);
    EXPECT_THROW(array.RemoveAt(2, 0), CInvalidArgException*);
    EXPECT_THROW(array.RemoveAt(0, INTPTR_MAX), CInvalidArgException*);
    EXPECT_THROW(array.SetSize(INTPTR_MAX), CMemoryException*);
    EXPECT_EQ(array.GetSize(), 1);
    EXPECT_EQ(array[0], 1);
}

TEST(Array, GrowByMakesRoomAheadAndNewNumbersAreZero)
{
    CArray<int, int> array;
    array.SetSize(2, 1000);
    array.Add(1);
    const int* const before = array.GetData();
    for (int i = 0; i < 997; ++i)
        array.Add(i);
    EXPECT_EQ(array.GetData(), before);
    EXPECT_EQ(array[1], 0);
    EXPECT_EQ(array[3], 0);
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
        switch (random() % 7) {
        case 0:
            list.AddHead(text);
            model.push_front(name);
            break;
        case 1:
            list.AddTail(text);
            model.push_back(name);
            break;
        case 2:
            position == nullptr ? list.AddHead(text) : list.InsertBefore(position, text);
            model.insert(place, name);
            break;
        case 3:
            list.InsertAfter(position, text);
            model.insert(model.empty() ? place : std::next(place), name);
            break;
        case 4:
        case 5:
            if (position != nullptr) {
                list.RemoveAt(position);
                model.erase(place);
            }
            break;
        default:
            ASSERT_EQ(list.Find(text) != nullptr, std::find(model.begin(), model.end(), name) != model.end());
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
    EXPECT_EQ(list.Find(L"a"), first);
    EXPECT_EQ(list.Find(L"a", first), list.GetTailPosition());
    EXPECT_EQ(list.Find(L"A"), nullptr);
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
    EXPECT_EQ(list.GetHead() + list.GetTail(), L"21");
}

TEST(StringList, RefusesPlacesThatAreNone)
{
    CStringList list;
    POSITION none = nullptr;
    EXPECT_THROW(list.GetHead(), CInvalidArgException*);
    EXPECT_THROW(list.RemoveTail(), CInvalidArgException*);
    EXPECT_THROW(list.GetAt(none), CInvalidArgException*);
    EXPECT_THROW(list.GetNext(none), CInvalidArgException*);
    EXPECT_THROW(list.GetPrev(none), CInvalidArgException*);
    EXPECT_THROW(list.RemoveAt(none), CInvalidArgException*);
    EXPECT_EQ(list.FindIndex(0), nullptr);
    EXPECT_EQ(list.FindIndex(-1), nullptr);
    list.InsertAfter(nullptr, L"b");
    list.InsertBefore(nullptr, L"a");
    EXPECT_EQ(Joined(list), L"a b ");
}

TEST(Containers, StoreTheCountAndTheStrings)
{
    CStringArray array;
    array.Add(L"a\x00E9");
    array.Add(L"");
    // Count in 16 bits; wide strings: FF FE FF, length, units.
    const std::string bytes("\x02\0\xFF\xFE\xFF\x02"
                            "a\0\xE9\0\xFF\xFE\xFF\0",
                            14);
    EXPECT_EQ(Stored(array), bytes);
    CStringList list;
    list.AddTail(L"kept");
    Load(list, bytes);
    EXPECT_EQ(Joined(list), L"kept a\x00E9  ");
    Load(array, bytes);
    EXPECT_EQ(Joined(array), L"a\x00E9  ") << "an array is replaced, a list appended to";
    CStringList copy;
    Load(copy, bytes);
    EXPECT_EQ(Stored(copy), bytes);
}

TEST(Containers, ACountThatTheFileCannotHoldEndsAtItsEnd)
{
    const std::string bytes("\xFF\xFF\xFF\xFF\xFF\x7F\x02hi", 9);
    CStringArray array;
    CStringList list;
    EXPECT_TRUE(EndsInArchiveError(array, bytes));
    EXPECT_TRUE(EndsInArchiveError(list, bytes));
    EXPECT_EQ(Joined(array) + Joined(list), L"hi hi ");
}

TEST(Containers, AreKnownByTheirRunTimeClass)
{
    const std::unique_ptr<CObject> made(RUNTIME_CLASS(CStringList)->CreateObject());
    EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(CStringList)) && !made->IsKindOf(RUNTIME_CLASS(CStringArray)));
    EXPECT_EQ(CRuntimeClass::FromName("CStringArray"), RUNTIME_CLASS(CStringArray));
    EXPECT_TRUE(CStringArray().IsSerializable());
}
