#include "core/CustomData.h"
#include "framework/base/StringArray.h"
#include "framework/base/StringList.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

struct Entry
{
    unsigned int id;
    unsigned int kind;
    std::string value;

    bool operator==(const Entry&) const = default;
};

void PrintTo(const Entry& entry, std::ostream* out)
{
    *out << entry.id << ": kind " << entry.kind << ", " << entry.value.size() << " bytes";
}

using Entries = std::vector<Entry>;

/// Multiples of it differ in the low bits only once they are multiplied by 0x9E3779B1.
constexpr unsigned int kSamePlace = 0xe8b2f51;

/// An image as GetData documents it: each link leads to the next entry, which lies right behind.
std::string Image(const Entries& entries)
{
    std::string image;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::uint64_t link = i + 1 < entries.size() ? 0xDEAD : 0;
        const unsigned int words[] = {entries[i].id, static_cast<unsigned int>(entries[i].value.size()),
                                      entries[i].kind};
        image.append(reinterpret_cast<const char*>(&link), 8)
            .append(reinterpret_cast<const char*>(words), 12);
        image += entries[i].value;
    }
    return image;
}

Entries EntriesOf(const CCustomData& store)
{
    Entries entries;
    unsigned int size = 0;
    const auto* at = static_cast<const char*>(store.GetData(size));
    const char* const end = at + size;
    while (at != nullptr) {
        const char* next = nullptr;
        unsigned int words[3];
        std::memcpy(&next, at, 8);
        std::memcpy(words, at + 8, 12);
        entries.push_back({words[0], words[2], std::string(at + 20, words[1])});
        EXPECT_EQ(at + 20 + words[1], next != nullptr ? next : end);
        at = next;
    }
    return entries;
}

/// The rules of a store, entry by entry.
struct Model
{
    Entries entries;

    Entries::iterator Find(unsigned int id)
    {
        return std::find_if(entries.begin(), entries.end(),
                            [id](const Entry& entry) { return entry.id == id; });
    }
    void Remove(unsigned int id)
    {
        if (Find(id) != entries.end())
            entries.erase(Find(id));
    }
    void Set(const Entry& entry)
    {
        const auto found = Find(entry.id);
        if (!entry.value.empty() && found != entries.end() && found->value.size() == entry.value.size()) {
            *found = entry;
            return;
        }
        Remove(entry.id);
        if (!entry.value.empty())
            entries.push_back(entry);
    }
};

/// Opens what is there for derived classes.
struct OpenStore : CCustomData
{
    using CCustomData::m_entries;
    using CCustomData::m_stringMode;
    using CCustomData::SetCustom;
    using CCustomData::UpdateDataPointers;
};

struct Settings final : CCustomDataClass
{
    int depth = 0;

    void InitDefaults() override { depth = 10; }
    void SaveToCustomData(CCustomData& out) const override { out.SetInt(1, depth); }
    int LoadFromCustomData(const CCustomData& in) override { return in.GetInt(1, depth, -1) + 4; }
};

} // namespace

TEST(CustomDataTest, HoldsWhatAPlainListOfEntriesHoldsUnderARandomStream)
{
    std::mt19937 random(11);
    OpenStore store;
    Model model;
    for (int step = 0; step < 18000; ++step) {
        // Every third id falls on one place of the store's index, until it gives up.
        const auto number = static_cast<int>(random());
        const unsigned int pick = 1 + static_cast<unsigned int>(random()) % (step % 9000 < 6000 ? 300 : 5);
        const unsigned int id = pick % 3 == 0 ? pick * kSamePlace : pick;
        const Entry entry{id, 'KIN0' + pick % 4, std::string(random() % 24, static_cast<char>(step))};
        const auto operation = random() % 12;
        if (operation < 4) {
            store.SetCustom(id, entry.value.data(), static_cast<unsigned int>(entry.value.size()),
                            entry.kind);
            model.Set(entry);
        } else if (operation < 6) {
            store.SetInt(id, number);
            model.Set({id, ' INT', std::string(reinterpret_cast<const char*>(&number), 4)});
        } else if (operation == 6) {
            store.RemoveCustom(id);
            model.Remove(id);
        } else if (operation == 7) {
            const unsigned int other = random() % 8 == 0 ? id : id + 3;
            model.Remove(other);
            const auto renamed = model.Find(id);
            ASSERT_EQ(store.ChangeID(id, other), renamed != model.entries.end());
            if (renamed != model.entries.end())
                renamed->id = other;
        } else if (operation == 8) {
            CCustomData source;
            source.SetBinary(id, entry.value.data(), static_cast<unsigned int>(entry.value.size()));
            source.SetInt(id + 1, number);
            const int flags = static_cast<int>(random() % 4);
            store.Copy(&source, flags);
            for (const Entry& from : EntriesOf(source))
                if (flags == 2 || (flags != 0 && model.Find(from.id) == model.entries.end()))
                    model.Set(from);
        } else if (operation == 9) {
            const std::string image = Image(EntriesOf(store));
            store.SetData(image.data(), static_cast<unsigned int>(image.size()));
        } else {
            const auto found = model.Find(id);
            const bool isThere = found != model.entries.end();
            int value = 0;
            ASSERT_EQ(store.HasData(id), isThere);
            ASSERT_EQ(store.GetDataSize(id), isThere ? found->value.size() : 0);
            ASSERT_EQ(store.GetDataKindOf(id), isThere ? found->kind : 0);
            ASSERT_EQ(store.GetInt(id, value, 77), isThere && found->value.size() == 4);
        }
        if (step % 8 == 0 || model.entries.size() < 20) {
            ASSERT_EQ(EntriesOf(store), model.entries) << "step " << step;
        }
    }
}

TEST(CustomDataTest, ReadsAnyNumberOfTheSameWidthByItsBits)
{
    CCustomData store;
    store.SetInt(2, 0x40200000);
    float bits = 0;
    double wide = 0;
    EXPECT_TRUE(store.GetFloat(2, bits, 0) == 1 && bits == 2.5f);
    EXPECT_TRUE(store.GetDouble(2, wide, -1) == 0 && wide == -1);
    store.SetStringList(2, CStringList());
    store.SetCustomData(3, CCustomData());
    EXPECT_FALSE(store.HasData());
}

TEST(CustomDataTest, TakesTheFirstOfEntriesThatShareAnId)
{
    const std::string image =
        Image({{5, ' BIN', "12345678"}, {5, ' INT', std::string("\1\0\0\0", 4)}, {6, ' BIN', ""}});
    CCustomData store;
    store.SetData(image.data(), static_cast<unsigned int>(image.size()));
    int value = 0;
    CString text;
    EXPECT_EQ(store.GetDataSize(5), 8u);
    EXPECT_TRUE(store.GetInt(5, value, 0) == 1 && value == 1) << "the first of the wanted width";
    EXPECT_TRUE(store.GetString(6, text, L"none") == 0 && text == L"none");
    store.SetInt(5, 2);
    store.SetBinary(5, "abc", 3);
    EXPECT_EQ(EntriesOf(store),
              (Entries{{5, ' INT', std::string("\2\0\0\0", 4)}, {6, ' BIN', ""}, {5, ' BIN', "abc"}}));
}

TEST(CustomDataTest, GivesUpAnImageThatRunsPastItsSize)
{
    const std::string image = Image({{1, ' BIN', "ab"}, {2, ' BIN', "cd"}});
    for (unsigned int size = 0; size <= image.size(); ++size) {
        OpenStore store;
        store.SetInt(9, 9);
        store.m_stringMode = 2;
        const std::vector<char> exact(image.begin(), image.begin() + size);
        store.SetData(exact.data(), size);
        EXPECT_EQ(store.HasData(), size == image.size());
        EXPECT_EQ(store.m_stringMode, 0u);
    }
}

TEST(CustomDataTest, ReadsTextsByKindAndDropsWhatIsNotTerminated)
{
    OpenStore store;
    store.SetStringA(1, "caf\xe9");
    store.SetInt(2, 65);
    store.SetCustom(3, L"a\0\0b", 8, 'USTR');
    store.SetCustom(4, "un\0deux", 8, 'ASTR');
    store.SetCustom(5, "open", 4, 'ANSI');
    CString text;
    CStringA narrow;
    EXPECT_TRUE(store.GetString(1, text, L"") == 1 && text == L"café");
    EXPECT_TRUE(store.GetString(2, text, L"default") == 1 && text == L"default");
    EXPECT_TRUE(store.GetStringA(5, narrow, "") == 1 && narrow == "open");
    store.SetStringW(5, L"é");
    EXPECT_TRUE(store.GetStringA(5, narrow, "") == 1 && narrow == "\xe9");

    CStringArray array;
    array.Add(L"old");
    EXPECT_EQ(store.GetStringArray(3, array), 2);
    EXPECT_TRUE(array.GetSize() == 2 && array[0] == L"a" && array[1] == L"");
    CStringList list;
    EXPECT_EQ(store.GetStringList(4, list), 2);
    EXPECT_EQ(list.GetTail(), L"deux");
    store.SetStringList(6, list);
    EXPECT_EQ(std::string(static_cast<const char*>(store.GetCustomPtr(6)), store.GetDataSize(6)),
              std::string("u\0n\0\0\0d\0e\0u\0x\0\0\0", 16));
    EXPECT_EQ(store.GetStringList(1, list), 0);
    EXPECT_TRUE(list.IsEmpty());
}

TEST(CustomDataTest, MergesUntypedEntriesByWhatTheyReplace)
{
    OpenStore source;
    for (unsigned int id = 1; id <= 3; ++id)
        source.SetCustom(id, "abcd", 4, '    ');
    source.m_stringMode = 2;
    OpenStore target;
    target.SetInt(1, 0);
    target.SetCustom(2, "xy", 2, 0);
    target.Copy(&source, 2);
    EXPECT_EQ(EntriesOf(target), (Entries{{1, ' INT', "abcd"}, {2, 0, "xy"}})) << "another string mode";
    target.m_stringMode = 2;
    target.Copy(&source, 2);
    EXPECT_EQ(EntriesOf(target), (Entries{{1, ' INT', "abcd"}, {2, 0, "abcd"}, {3, 0, "abcd"}}));
    char bytes[4] = {};
    EXPECT_EQ(target.GetBinary(2, bytes, 4), 0);
    EXPECT_EQ(std::string(bytes, 4), "abcd") << "the bytes travel without being reported";

    CCustomData picked;
    picked.CopyID(&target, 3, 9u, 1u, 0u, 2u);
    picked.CopyID(nullptr, 3, 0u);
    EXPECT_EQ(EntriesOf(picked), (Entries{{3, 0, "abcd"}, {1, ' INT', "abcd"}}));
}

TEST(CustomDataTest, CopiesFromItself)
{
    CCustomData store;
    for (unsigned int id = 1; id <= 20; ++id)
        store.SetBinary(id, "0123456789abcdefghij", id);
    store.SetBinary(30, store.GetCustomPtr(20), 20);
    store.SetBinary(1, store.GetCustomPtr(20), 20); // moves the value while it is read
    EXPECT_EQ(EntriesOf(store).back().value, "0123456789abcdefghij");
    const CCustomData before(store);
    store.Copy(&store, 2);
    store.CopyID(&store, 3, 1u, 0u);
    unsigned int size = 0;
    const void* const image = store.GetData(size);
    store.SetData(image, size);
    EXPECT_EQ(EntriesOf(store), EntriesOf(before));
    store.SetCustomData(40, store);
    EXPECT_EQ(store.GetCustomData(40, store), 1);
    EXPECT_EQ(EntriesOf(store), EntriesOf(before));
}

TEST(CustomDataTest, NestsStoresAndObjects)
{
    CCustomData store;
    Settings settings;
    EXPECT_TRUE(store.GetCustomClass(1, settings) == 0 && settings.depth == 10);
    settings.depth = 3;
    store.SetCustomClass(1, settings);
    settings.depth = 0;
    EXPECT_TRUE(store.GetCustomClass(1, settings) == 5 && settings.depth == 3);

    CCustomData more;
    more.SetInt(1, 99);
    more.SetInt(2, 98);
    store.AddToCustomData(1, more, 1);
    CCustomData nested;
    int kept = 0;
    EXPECT_EQ(store.GetCustomData(1, nested), 1);
    EXPECT_TRUE(nested.GetInt(1, kept, 0) && kept == 3 && nested.HasData(2));
    store.AddToCustomData(1, more, 0);
    EXPECT_EQ(store.GetCustomData(1, nested), 1);
    EXPECT_TRUE(nested.IsEqual(more));
}

TEST(CustomDataTest, EqualityLooksAtSharedIdsAndCountsOnly)
{
    CCustomData a, b, c;
    a.SetInt(1, 1);
    a.SetInt(2, 2);
    b.SetUInt(1, 1);
    b.SetInt(3, 3);
    EXPECT_TRUE(a.IsEqual(b));
    c.SetInt(1, 1);
    EXPECT_FALSE(c.IsEqual(a));
    b.SetInt(1, 5);
    EXPECT_FALSE(a.IsEqual(b));
}

TEST(CustomDataTest, MembersLieInTheirOrder)
{
    OpenStore store;
    const auto* const base = reinterpret_cast<const char*>(&store);
    EXPECT_EQ(reinterpret_cast<const char*>(&store.m_stringMode) - base, 8);
    EXPECT_EQ(reinterpret_cast<const char*>(&store.m_entries) - base, 16);
    EXPECT_EQ(store.UpdateDataPointers(), nullptr);
    store.SetInt(1, 1);
    store.SetInt(2, 1);
    unsigned int size = 0;
    const auto* const image = static_cast<const char*>(store.GetData(size));
    EXPECT_EQ(static_cast<const void*>(store.UpdateDataPointers()), image + 24);
    EXPECT_EQ(size, 48u);
}
