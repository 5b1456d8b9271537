#include "core/HashTable.h"
#include "core/IntMap.h"
#include "core/NextPrime.h"
#include "core/UniqueName.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using Entries = std::vector<std::pair<int, int>>;

Entries Walk(const CHashMap<int, int, int>& map)
{
    Entries entries;
    for (unsigned int pos = map.GetFirst(); pos != 0xFFFFFFFF;) {
        int key = 0;
        int value = 0;
        map.GetNext(pos, key, value);
        entries.emplace_back(key, value);
    }
    return entries;
}

/// FNV-1a.
std::string Digest(std::string_view bytes)
{
    std::uint32_t hash = 0x811C9DC5;
    for (const char byte : bytes)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x01000193;
    return std::to_string(hash);
}

std::string DigestOf(const CIntMap& map)
{
    const Entries entries = Walk(map);
    return Digest({reinterpret_cast<const char*>(entries.data()), entries.size() * sizeof(entries[0])});
}

std::string DigestOf(const CHashTable<CString>& names)
{
    std::string bytes;
    for (unsigned int pos = names.GetFirst(); pos != 0xFFFFFFFF;) {
        const CString& name = names.GetNext(pos);
        bytes.append(reinterpret_cast<const char*>(name.GetString()),
                     static_cast<std::size_t>(name.GetLength() + 1) * 2);
    }
    return Digest(bytes);
}

CString NameOf(unsigned int number)
{
    CString name;
    for (unsigned int i = 0; i < number % 4; ++i)
        name += L"Élément ";
    name.AppendFormat(L"%u", number);
    return name;
}

} // namespace

TEST(NextPrimeTest, KeepsItsOddSmallValuesAndReachesTheTopOfTheRange)
{
    constexpr unsigned int small[] = {1, 2, 2, 3, 5, 5, 7, 7, 9, 11, 11};
    for (unsigned int n = 0; n < std::size(small); ++n)
        EXPECT_EQ(NextPrime(n), small[n]) << n;
    constexpr unsigned int large[][2] = {
        {202, 211}, {4294836225, 4294836241}, {4294967291, 4294967291}, {4294967292, 0}};
    for (const auto& [n, prime] : large)
        EXPECT_EQ(NextPrime(n), prime) << n;
}

// The walks were computed by tests/data/core/make_goldens.py, which plays every slot.
TEST(HashTablesTest, AnswerAsAStandardMapAndWalkTheirSlotsInTheOrderThatHashProbingAndGrowthGive)
{
    std::ifstream golden(VAK_SOURCE_DIR "/tests/data/core/table_walks.txt");
    CIntMap numbers;
    CHashTable<CString> names;
    std::map<int, int> model;
    std::uint32_t x = 1;
    std::string line;
    for (unsigned int step = 1; step <= 60000; ++step) {
        x = x * 1103515245 + 12345;
        const unsigned int key = (x >> 8) % (step <= 40000 ? 6000 : 60);
        const auto number = static_cast<int>(key * 2654435761);
        if ((x >> 28) < (step <= 20000 ? 11u : step <= 40000 ? 5u : 8u)) {
            ASSERT_EQ(numbers.Insert2(number, static_cast<int>(step)), model.count(number) == 0);
            ASSERT_EQ(names.Insert(NameOf(key)), model.count(number) == 0);
            model[number] = static_cast<int>(step);
        } else {
            ASSERT_EQ(numbers.Remove(number), static_cast<int>(model.count(number)));
            ASSERT_EQ(names.Remove(NameOf(key)), static_cast<int>(model.erase(number)));
        }
        const auto other = static_cast<int>((key ^ 1) * 2654435761);
        int value = -1;
        ASSERT_EQ(numbers.Find(other, value), static_cast<int>(model.count(other)));
        ASSERT_EQ(value, model.count(other) != 0 ? model[other] : -1);
        if (step % 5000 != 0)
            continue;
        if (step % 10000 == 0) {
            numbers.Minimize();
            names.Minimize();
        }
        std::ostringstream state;
        state << step << ' ' << numbers.GetHashTableSize() << ' ' << numbers.GetCount() << ' '
              << DigestOf(numbers) << ' ' << names.GetHashTableSize() << ' ' << names.GetCount() << ' '
              << DigestOf(names);
        ASSERT_TRUE(std::getline(golden, line));
        ASSERT_EQ(state.str(), line);
    }
}

TEST(HashTablesTest, GrowFromTheSmallestSizesAndKeepThemWhenCleared)
{
    for (const unsigned int n : {0u, 1u, 2u, 3u, 8u, 10u}) {
        CIntMap small(n);
        for (unsigned int key = 0; key < 200; ++key) // the top bits do not spread keys
            EXPECT_EQ(small.Insert(static_cast<int>(key * 0x08000001), 7), 1);
        const unsigned int size = small.GetHashTableSize();
        EXPECT_EQ(small.GetCount(), 200u) << n;
        small.Clear();
        EXPECT_TRUE(small.IsEmpty() && small.GetHashTableSize() == size && Walk(small).empty());
    }
}

// Users look at the members: after the virtual table initial size, size, used, count, slots; slots { key,
// value, state }, the state 0 for active, 1 for empty, 2 for deleted.
TEST(HashTablesTest, MembersAndSlotsLieWhereUsersExpectThem)
{
    struct Layout
    {
        void* virtualTable;
        unsigned int initialSize, size, used, count;
        const int (*slots)[3];
    } seen;
    static_assert(sizeof(CIntMap) >= sizeof seen);
    CIntMap map;
    map.Insert(1, 10);
    map.Insert(2, 20);
    map.Remove(1);
    map.Remove(2);
    map.Insert(1, 30); // reuses its own tombstone, which counts again
    std::memcpy(&seen, static_cast<const void*>(&map), sizeof seen);
    const std::vector<unsigned int> members{seen.initialSize, seen.size, seen.used, seen.count};
    EXPECT_EQ(members, (std::vector<unsigned int>{101, 101, 3, 1}));
    EXPECT_EQ(std::vector(seen.slots[16], seen.slots[16] + 3), (std::vector{1, 30, 0}));
    EXPECT_EQ(std::vector(seen.slots[32], seen.slots[32] + 3), (std::vector{2, 20, 2}));
    EXPECT_EQ(seen.slots[0][2], 1);
    EXPECT_EQ(seen.slots[100][2], 1);
}

TEST(HashTablesTest, StayEmptyWhenTheirArrayCannotBe)
{
    CHashMap<int, int, int> map(0x90000000u);
    map.Minimize();
    EXPECT_EQ(map.Insert(1, 1), 0);
    map.Free();
    EXPECT_EQ(map.Insert(1, 1), 1);
}

TEST(HashTablesTest, CopiesCarryEveryFieldAndAreIndependent)
{
    CHashTable<CString> names(200); // initial size 211
    for (unsigned int i = 0; i < 300; ++i)
        names.Insert(NameOf(i));
    names.Remove(NameOf(3));
    CHashTable<CString> copy(names);
    names = *&names;
    EXPECT_EQ(copy.GetHashTableSize(), names.GetHashTableSize());
    EXPECT_EQ(DigestOf(copy), DigestOf(names));
    copy.InitHashTable(100); // the copied initial size
    EXPECT_EQ(copy.GetCount(), 299u);
    copy = CHashTable<CString>();
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_TRUE(names.IsFound(NameOf(299)));
    EXPECT_FALSE(names.IsFound(L"élément 1")) << "keys are case-sensitive";
}

TEST(UniqueNameTest, NumbersNamesAndCutsTheStemToTheLimit)
{
    CHashTable<CString> taken;
    const auto next = [&taken](LPCWSTR base, int limit) { return GetUniqueName(taken, base, limit); };
    EXPECT_EQ(next(L"Part", 0), L"Part");
    EXPECT_EQ(next(L"Part", 0), L"Part#0");
    EXPECT_EQ(next(L"Object", 6), L"Object");
    EXPECT_EQ(next(L"Object", 6), L"Obje#0");
    EXPECT_EQ(next(L"Part", -1), L"Part#1");
    next(L"Object", 1);
    EXPECT_EQ(next(L"Object", 1), L"#0") << "a suffix longer than the limit stands alone";
}
