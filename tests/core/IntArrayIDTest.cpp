#include "core/IntArrayID.h"
#include "tests/support/ArrayModel.h"

#include <algorithm>
#include <climits>
#include <iterator>

using vak::test::Hex;
using vak::test::IsRefused;
using vak::test::ReadCause;
using vak::test::StoredBytes;

namespace {

struct OpenArray : CIntArrayID
{
    using CIntArrayID::CIntArrayID;
    int Room() const { return m_capacity; }
    const void* const m_members[3] = {&m_data, &m_size, &m_capacity};
};

} // namespace

TEST(IntArrayIDTest, RoomGrowsInTheGivenSteps)
{
    OpenArray array;
    EXPECT_TRUE(std::is_sorted(std::begin(array.m_members), std::end(array.m_members)));
    const int rooms[] = {1, 5, 5, 5, 5, 9};
    for (const int room : rooms) {
        array.Add(7);
        EXPECT_EQ(array.Room(), room);
    }
    const int sizes[][2] = {{100, 100}, {101, 112}, {9000, 9000}, {9001, 10024}, {3, 10024}};
    for (const auto& [size, room] : sizes) {
        array.SetSize(size);
        EXPECT_EQ(array.Room(), room) << size;
    }
    array.FreeExtra();
    EXPECT_EQ(array.Room(), 3);
    array.RemoveAll();
    EXPECT_EQ(array.Room(), 0);

    OpenArray reserved(10, 0), zeros(10, 1);
    EXPECT_EQ(zeros.GetAt(zeros.GetUpperBound()), 0);
    reserved.Set(7);
    int size = 0;
    EXPECT_EQ(*reserved.GetData(size), 7);
    reserved.Init(4);
    EXPECT_TRUE(size == 1 && reserved.GetUpperBound() == -1 && reserved.Room() == 10);
}

TEST(IntArrayIDTest, BehavesLikeAVectorUnderARandomStream)
{
    vak::test::ArrayModel<CIntArrayID>().Run(4000);
}

TEST(IntArrayIDTest, RefusesIndexesOutsideAndLeavesTheArrayAlone)
{
    CIntArrayID array(2, 1);
    EXPECT_TRUE(IsRefused([&] { array.GetAt(2); }) && IsRefused([&] { array[-1] = 1; }) &&
                IsRefused([&] { array.SetSize(-1); }) && IsRefused([&] { array.InsertAt(0, 1, 0); }) &&
                IsRefused([&] { array.RemoveAt(1, INT_MAX); }));
    EXPECT_TRUE(IsRefused<CMemoryException>([&] { array.InsertAt(2, 1, INT_MAX); }));
    EXPECT_EQ(StoredBytes(array), Hex("02 00 00000000 00000000"));
}

TEST(IntArrayIDTest, StoredBytesAreTheCountAndTheNumbers)
{
    CIntArrayID array, large(200000, 1);
    EXPECT_EQ(StoredBytes(array), Hex("00 00"));
    array.Add(-2);
    array.Add(0x12345678);
    EXPECT_EQ(StoredBytes(array), Hex("02 00 FEFFFFFF 78563412"));
    large[1] = 1;
    EXPECT_EQ(StoredBytes(large).substr(0, 14), Hex("FFFF 400D0300 00000000 01000000"));
    EXPECT_EQ(ReadCause<vak::test::LengthlessFile>(array, StoredBytes(large)), -1) << "into the room it has";
    EXPECT_EQ(StoredBytes(array), StoredBytes(large));
}
