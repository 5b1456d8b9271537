#include "core/ElementArray.h"
#include "tests/support/ArrayModel.h"
#include "tests/support/Slots.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <memory>
#include <utility>

using vak::test::Hex;
using vak::test::IsRefused;
using vak::test::ReadCause;
using vak::test::SlotOf;
using vak::test::StoredBytes;

namespace {

int alive = 0;
/// The hook with this number from now on (1 is the next) throws; 0: none does.
int failing = 0;

void Step()
{
    if (failing > 0 && --failing == 0)
        AfxThrowUserException();
}

int*& Number(const void* element)
{
    return *static_cast<int**>(const_cast<void*>(element));
}

/// Elements that own an int each: one that is not destructed leaks, one that is destructed twice is freed
/// twice.
class Owners : public CElementArray
{
public:
    explicit Owners(int elementSize = sizeof(int*), int size = 0) : CElementArray(elementSize)
    {
        while (GetSize() < size)
            Add(GetSize());
    }
    ~Owners() override { Owners::RemoveAll(); }

    int GetAt(int index) const { return *Number(ElementAt(index)); }
    int Add(int value) { return CElementArray::Add(Element(value)); }
    void SetAtGrow(int index, int value) { CElementArray::SetAtGrow(index, Element(value)); }
    void InsertAt(int index, int value, int count) { CElementArray::InsertAt(index, Element(value), count); }
    using CElementArray::InsertAt;
    int Room() const { return m_capacity; }
    const void* const m_members[6] = {&m_id, &m_data, &m_elementSize, &m_size, &m_capacity, &m_growFactor};

    void ConstructElement(void* element) override
    {
        Step();
        if (GetSizeOfElement() < sizeof(int*))
            AfxThrowInvalidArgException();
        Number(element) = new int(0);
        ++alive;
        if (element < m_data || element >= m_data + std::size_t(m_capacity) * m_elementSize)
            m_scratch = Number(element);
    }
    void DestructElement(void* element) override
    {
        delete Number(element);
        --alive;
    }
    void CopyElement(void* destination, const void* source) override
    {
        Step();
        *Number(destination) = *Number(source);
    }
    void SerializeElement(CArchive& archive, void* element) override
    {
        Step();
        archive.IsStoring() ? archive << *Number(element) : archive >> *Number(element);
    }
    void Serialize(CArchive& archive) override
    {
        const std::shared_ptr<void> freeScratch(nullptr, [this](void*) {
            alive -= m_scratch != nullptr;
            delete std::exchange(m_scratch, nullptr);
        });
        CElementArray::Serialize(archive);
    }

private:
    const void* Element(int value) { return *m_argument = value, &m_argument; }

    int m_value = 0;
    int* m_argument = &m_value;
    int* m_scratch = nullptr;
};

} // namespace

TEST(ElementArrayTest, HasItsNumberItsMembersAndTheSlotsOfItsHooks)
{
    Owners first, second(8, 3);
    EXPECT_TRUE(std::is_sorted(std::begin(first.m_members), std::end(first.m_members)));
    EXPECT_EQ(second.GetID(), first.GetID() + 1);
    second.InitElement(sizeof(int*));
    EXPECT_EQ(second.GetID(), first.GetID() + 2);
    EXPECT_EQ(alive, 0);
    EXPECT_TRUE(SlotOf(&CElementArray::RemoveAll) == 4 && SlotOf(&CElementArray::ConstructElement) == 5 &&
                SlotOf(&CElementArray::DestructElement) == 6 && SlotOf(&CElementArray::CopyElement) == 7 &&
                SlotOf(&CElementArray::SerializeElement) == 8);
}

TEST(ElementArrayTest, RoomGrowsByTheFactorOrByItself)
{
    Owners array;
    EXPECT_TRUE(array.SetGrowFactor(3) == 0 && array.SetGrowFactor(-1) == 3);
    const int sizes[][3] = {{9, -1, 9}, {10, -1, 12}, {13, 20, 32}, {33, -7, 33}, {2, 0, 33}, {34, -1, 37}};
    for (const auto& [size, growBy, room] : sizes) {
        array.SetSize(size, growBy);
        EXPECT_EQ(array.Room(), room) << size;
    }
}

TEST(ElementArrayTest, BehavesLikeAVectorUnderARandomStream)
{
    vak::test::ArrayModel<Owners>().Run(2000);
    EXPECT_EQ(alive, 0);
}

TEST(ElementArrayTest, TakesItsOwnElementsAndRefusesTheUnfit)
{
    Owners array(8, 5), otherSize(16, 1);
    array.CElementArray::Add(array[3]);
    array.CElementArray::InsertAt(1, array[4], 2);
    array.SetAt(0, array.GetNext(array.GetFirst()));
    array.SetAt(8, array[0]);
    EXPECT_EQ(StoredBytes(array).substr(10),
              Hex("04000000 04000000 04000000 01000000 02000000 03000000 04000000 03000000"));
    EXPECT_TRUE(IsRefused([&] { array.Append(otherSize); }) && IsRefused([&] { array[8]; }) &&
                IsRefused([&] { array.RemoveAt(7, 2); }) && IsRefused([&] { Owners(-1); }));
}

TEST(ElementArrayTest, AThrowingHookLosesAndRepeatsNothing)
{
    const std::string bytes = Hex("03 00 08000000 00000000 01000000 02000000 03000000");
    const std::function<void(Owners&, Owners&)> acts[] = {
        [](Owners& array, Owners&) { array.SetSize(20); },
        [](Owners& array, Owners&) { array.InsertAt(2, 9, 4); },
        [](Owners& array, Owners&) { array.InsertAt(2, &array); },
        [](Owners& array, Owners&) { array.SetAtGrow(8, 1); },
        [](Owners& array, Owners& other) { other.Copy(array); },
        [&](Owners& array, Owners&) { ReadCause(array, bytes); },
        [](Owners& array, Owners&) { StoredBytes(array); }};
    for (const auto& act : acts) {
        bool failed = true;
        for (int number = 1; failed; ++number) {
            Owners array(8, 5), other(8, 3);
            failing = number;
            failed = IsRefused<CUserException>([&] { act(array, other); });
            failing = 0;
            EXPECT_EQ(alive, array.GetSize() + other.GetSize()) << number;
            for (int i = 0; i < array.GetSize(); ++i)
                EXPECT_LT(array.GetAt(i), 10);
        }
    }
    EXPECT_EQ(alive, 0);
}

TEST(ElementArrayTest, StoredBytesAreCountSizeFactorAndElements)
{
    Owners array(8, 2), large(8, 20000);
    array.SetGrowFactor(3);
    EXPECT_EQ(StoredBytes(array), Hex("02 00 08000000 03000000 00000000 01000000"));
    EXPECT_EQ(ReadCause(large, StoredBytes(array)), -1);
    EXPECT_EQ(large.SetGrowFactor(-1), 3);
}

TEST(ElementArrayTest, ABadArchiveLeavesTheArrayEmptyAndItsElementsSound)
{
    constexpr int kEnd = CArchiveException::endOfFile, kLength = CArchiveException::badIndex;
    const std::string elements = Hex("00000000 01000000 02000000");
    const struct
    {
        int room;
        const char* head;
        int cause, elementSize, size;
    } rows[] = {{0, "03 00 08000000", kEnd, 8, 0},    {0, "02 00 10000000", kLength, 8, 0},
                {4, "02 00 10000000", -1, 16, 2},     {0, "00 00 10000000", -1, 16, 0},
                {0, "00 00 00000080", kLength, 8, 0}, {0, "02 00 00000000", kLength, 8, 0}};
    for (const auto& row : rows) {
        Owners array(8, row.room);
        EXPECT_EQ(ReadCause(array, Hex(row.head) + elements), row.cause) << row.head;
        EXPECT_EQ(array.GetSizeOfElement(), unsigned(row.elementSize));
        EXPECT_EQ(array.Add(9), row.size);
        EXPECT_EQ(array.GetAt(row.size), 9);
    }
    Owners strict;
    EXPECT_TRUE(IsRefused([&] { ReadCause(strict, Hex("02 00 04000000") + elements); }));
    EXPECT_EQ(strict.GetSizeOfElement(), 8u);
    EXPECT_EQ(alive, 0);
}
