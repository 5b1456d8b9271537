#include "core/CustomData.h"
#include "framework/base/FileException.h"
#include "framework/base/StringArray.h"
#include "framework/base/StringList.h"
#include "framework/base/SystemFileFault.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/FaultyFile.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <string>
#include <tuple>

using vak::test::TempFolder;

namespace {

// Written by tests/data/core/make_goldens.py.
std::string Golden(const std::string& name)
{
    return vak::test::Data(("core/" + name).c_str());
}

std::string Stored(CCustomData store)
{
    return vak::test::Stored([&](CArchive& archive) { store.Serialize(archive); });
}

/// How reading ends: "" when it does, else what was thrown.
std::string Load(CCustomData& store, const std::string& bytes)
{
    std::string end;
    try {
        vak::test::Load(bytes, [&](CArchive& archive) { store.Serialize(archive); });
    } catch (CFileException* e) {
        end = e->m_cause == CFileException::genericException && e->m_lOsError == -1 ? "damaged" : "file";
        e->Delete();
    } catch (CArchiveException* e) {
        end = e->m_cause == CArchiveException::endOfFile ? "end" : "archive";
        e->Delete();
    }
    return end;
}

CCustomData Loaded(const std::string& name)
{
    CCustomData store;
    EXPECT_EQ(Load(store, Golden(name)), "") << name;
    return store;
}

CCustomData AllKinds()
{
    CCustomData store, nested;
    CStringArray texts;
    for (const wchar_t* const text : {L"a", L"", L"bc"})
        texts.Add(text);
    nested.SetInt(21, 7);
    store.SetInt(1, -2);
    store.SetUInt(2, 0xFFFFFFFE);
    store.SetLong(3, -3);
    store.SetULong(4, 4000000000);
    store.SetLongLong(5, -(LONGLONG{1} << 40));
    store.SetULongLong(6, (ULONGLONG{1} << 63) + 1);
    store.SetBool(7, 2);
    store.SetFloat(8, 1.5f);
    store.SetDouble(9, -0.1);
    store.SetPtr(10, reinterpret_cast<void*>(std::uintptr_t{0x1122334455667788}));
    store.SetBinary(11, "\0\1\2", 3);
    store.SetString(12, L"é€");
    store.SetStringA(13, "caf\xe9");
    store.SetStringArray(14, texts);
    store.SetCustomData(15, nested);
    return store;
}

CCustomData New()
{
    CCustomData store;
    store.SetInt(1, 42);
    return store;
}

std::string Changed(std::string bytes, std::size_t at, char value)
{
    bytes.at(at) = value;
    return bytes;
}

/// Ends the process in front of the file operation with that number.
void DieAt(int number)
{
    static int left;
    left = number;
    vak::system::SetFileFaultHook([](vak::system::FileOperation) -> DWORD {
        if (--left == 0)
            std::_Exit(3);
        return 0;
    });
}

/// The number that `get` reads under an id; 0 when there is none.
template <class T>
T Number(const CCustomData& store, int (CCustomData::*get)(unsigned int, T&, T) const, unsigned int id)
{
    T value{};
    EXPECT_EQ((store.*get)(id, value, T{}), 1) << id;
    return value;
}

} // namespace

TEST(CustomDataStorageTest, WritesAndReadsTheDocumentedBytes)
{
    EXPECT_EQ(Stored(AllKinds()), Golden("all_kinds.cus4"));
    EXPECT_EQ(Stored(Loaded("all_kinds.cus4")), Golden("all_kinds.cus4"));
    EXPECT_EQ(Stored(CCustomData()), std::string("4SUC\0\0\0\0", 8));

    const CCustomData store = Loaded("all_kinds.cus4");
    EXPECT_EQ(Number(store, &CCustomData::GetUInt, 2), 0xFFFFFFFEu);
    EXPECT_EQ(Number(store, &CCustomData::GetLong, 3), -3);
    EXPECT_EQ(Number(store, &CCustomData::GetULong, 4), 4000000000u);
    EXPECT_EQ(Number(store, &CCustomData::GetLongLong, 5), -1099511627776);
    EXPECT_EQ(Number(store, &CCustomData::GetULongLong, 6), 9223372036854775809u);
    EXPECT_EQ(Number(store, &CCustomData::GetBool, 7), 2);
    EXPECT_EQ(Number(store, &CCustomData::GetDouble, 9), -0.1);
    void* pointer = nullptr;
    EXPECT_EQ(store.GetPtr(10, pointer), 1);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pointer), 0x1122334455667788u);
    CString text;
    EXPECT_TRUE(store.GetString(12, text, L"") && text == L"é€");
}

TEST(CustomDataStorageTest, GivesDerivedClassesTheRawAndTheOldestForm)
{
    struct Derived : CCustomData
    {
        using CCustomData::ConvertPreviousData;
        using CCustomData::CustomDataFromRaw;
        using CCustomData::RawFromCustomData;
    } store;
    unsigned int size = 1;
    EXPECT_EQ(store.RawFromCustomData(store, size), nullptr);
    EXPECT_EQ(size, 0u);
    unsigned char* const raw = store.RawFromCustomData(AllKinds(), size);
    EXPECT_EQ("4SUC" + std::string("\x3E\1\0\0", 4) + std::string(raw, raw + size), Golden("all_kinds.cus4"));
    CCustomData out = New();
    store.CustomDataFromRaw(out, raw);
    std::free(raw);
    EXPECT_EQ(Stored(out), Golden("all_kinds.cus4"));

    const std::string chain = Golden("narrow_old.cust").substr(8);
    CCustomData old;
    store.ConvertPreviousData(
        old, static_cast<const CustomPrivateDataOld*>(static_cast<const void*>(chain.data())));
    EXPECT_TRUE(old.IsEqual(Loaded("narrow_old.cus4")));
}

TEST(CustomDataStorageTest, ReadsOlderFormsByTheirStringMode)
{
    const CCustomData wide = Loaded("wide_old.cusu");
    EXPECT_EQ(Stored(wide), Golden("wide_old.cus4"));
    const CCustomData narrow = Loaded("narrow_old.cust");
    EXPECT_EQ(Stored(narrow), Golden("narrow_old.cus4"));
    CString text;
    EXPECT_TRUE(wide.GetString(1, text, L"") && text == L"abc");
    EXPECT_TRUE(narrow.GetString(1, text, L"") && text == L"café");
    CStringList list;
    EXPECT_EQ(narrow.GetStringList(2, list), 2);
    CCustomData nested;
    EXPECT_EQ(wide.GetCustomData(3, nested), 1);
    EXPECT_TRUE(nested.GetString(7, text, L"") && text == L"nid")
        << "it takes the mode of the store around it";
    EXPECT_EQ(narrow.GetCustomData(1, nested), 0) << "five bytes are no chain";

    // id 1 with 2 bytes, then with 4: the store is empty for a moment in between.
    CCustomData replaced;
    Load(replaced, vak::test::Hex("55535543 21000000 01000000 02000000 01000000 6100000000"
                                  "01000000 04000000 00000000 62000000"));
    EXPECT_TRUE(replaced.GetString(1, text, L"") && text == L"b") << "it keeps the mode of its form";
}

TEST(CustomDataStorageTest, RefusesDamagedBytesAndIsEmptyThen)
{
    const std::string good = Golden("all_kinds.cus4");
    const std::string chain = Golden("wide_old.cusu");
    const std::string header("4SUC\x14\0\0\0\1\0\0\0", 12);
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"no magic", "4SU", "end"},
        {"another magic", Changed(good, 0, '5'), "damaged"},
        {"a length beyond the file", good.substr(0, good.size() - 1), "damaged"},
        {"one entry too few", Changed(good, 12, 14), "damaged"},
        {"a billion entries", Changed(good, 15, 0x40), "damaged"},
        {"a total that is not the sum", Changed(good, 16, good[16] + 1), "damaged"},
        {"a value that takes from the next", Changed(good, 32, 5), "damaged"},
        {"a value beyond the block", Changed(good, 35, 0x7F), "damaged"},
        {"no values and entries all the same", header + std::string("\7\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 16),
         ""},
        {"a record beyond its block", Changed(chain, 12, 100), "damaged"},
        {"a chain without its last record", Changed(chain, 4, 50), "damaged"},
        {"an empty chain", std::string("TSUC\0\0\0\0", 8), ""},
    };
    for (const auto& [what, bytes, end] : cases) {
        CCustomData store = New();
        EXPECT_EQ(Load(store, bytes), end) << what;
        EXPECT_FALSE(store.HasData()) << what;
    }

    CCustomData store = New();
    store.SetBinary(2, good.data() + 8, static_cast<unsigned int>(good.size()) - 9);
    CCustomData out = New();
    EXPECT_EQ(store.GetCustomData(2, out), 0) << "a nested store without its last byte";
    EXPECT_FALSE(out.HasData());
}

TEST(CustomDataPrefsTest, KeepsTheOtherStoresInOrderAndPutsTheNewestLast)
{
    const TempFolder folder;
    const CString path = folder.Write("app.prefs", Golden("before.prefs"));
    EXPECT_EQ(New().SaveToPrefs(path, 1, 2), 4);
    EXPECT_EQ(folder.Read("app.prefs"), Golden("after.prefs"));
    EXPECT_EQ(New().SaveToPrefs(path, 1, 2), 4);
    EXPECT_EQ(folder.Read("app.prefs"), Golden("after.prefs"));

    CCustomData store;
    EXPECT_EQ(store.LoadFromPrefs(path, 2, 2), 1);
    EXPECT_EQ(Stored(store), Golden("narrow_old.cus4")) << "with its string mode";
    EXPECT_EQ(New().SaveToPrefs(folder.Path("fresh.prefs"), 8, 9), 1);
    EXPECT_EQ(store.LoadFromPrefs(folder.Path("fresh.prefs"), 8, 9), 1);
    EXPECT_TRUE(store.IsEqual(New()));
    EXPECT_EQ(New().SaveToPrefs(folder.Path("none\\fresh.prefs"), 8, 9), 0);
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"app.prefs", "fresh.prefs"}));
}

TEST(CustomDataPrefsTest, LoadsWhatStandsBeforeTheDamageAndMovesADamagedFileAside)
{
    const TempFolder folder;
    const std::string good = Golden("before.prefs");
    const std::string damaged = good.substr(0, good.size() - 1);
    const CString path = folder.Write("app.prefs", damaged);
    CCustomData store;
    EXPECT_EQ(store.LoadFromPrefs(path, 1, 2), 1);
    EXPECT_EQ(Stored(store), Golden("all_kinds.cus4"));
    EXPECT_EQ(store.LoadFromPrefs(path, 2, 2), 0);
    EXPECT_FALSE(store.HasData());

    folder.Write("app.prefs.bad", "older");
    EXPECT_EQ(New().SaveToPrefs(path, 1, 2), 0);
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"app.prefs.bad"});
    EXPECT_EQ(folder.Read("app.prefs.bad"), damaged);
    EXPECT_EQ(New().SaveToPrefs(path, 1, 2), 1) << "the next one begins anew";

    folder.Write("b.prefs", damaged);
    folder.Write("b.prefs.bad/in the way", "");
    EXPECT_EQ(New().SaveToPrefs(folder.Path("b.prefs"), 1, 2), 0);
    EXPECT_EQ(folder.Read("b.prefs.bad.1"), damaged);
    EXPECT_EQ(New().SaveToPrefs(folder.Path("b.prefs"), 1, 2), 1);
}

TEST(CustomDataPrefsTest, FailureOfAnyOperationKeepsWhatTheUserHad)
{
    const TempFolder folder;
    const CString path = folder.Path("app.prefs");
    int number = 0;
    int failures = 0;
    for (bool isReached = true; isReached;) {
        folder.Write("app.prefs", Golden("before.prefs"));
        int saved = 0;
        {
            const vak::test::FailingSystem failing(++number);
            saved = New().SaveToPrefs(path, 1, 2);
            isReached = failing.Happened();
        }
        EXPECT_FALSE(folder.Has("app.prefs.tmp")) << number;
        const char* const found = saved != 0 || folder.Has("app.prefs") ? "app.prefs" : "app.prefs.bad";
        EXPECT_EQ(folder.Read(found), Golden(saved != 0 ? "after.prefs" : "before.prefs")) << number;
        failures += saved == 0;
    }
    EXPECT_GT(failures, 6) << "opening twice, reading, writing twice, flushing, replacing";
}

// The process ends in front of every operation in turn. On some systems the child starts this test anew, so
// the folder has a fixed name.
TEST(CustomDataPrefsDeathTest, DeathAtAnyMomentLeavesTheOldOrTheNewFile)
{
    const TempFolder folder("vaktest-killed-save");
    const CString path = folder.Path("app.prefs");
    bool survived = false;
    int replaced = 0;
    for (int number = 1; !survived; ++number) {
        folder.Write("app.prefs", Golden("before.prefs"));
        const auto save = [&] {
            DieAt(number);
            std::_Exit(New().SaveToPrefs(path, 1, 2) == 4 ? 4 : 5);
        };
        const auto isOldOrDone = [&survived](int status) {
            survived = testing::ExitedWithCode(4)(status);
            return survived || testing::ExitedWithCode(3)(status);
        };
        EXPECT_EXIT(save(), isOldOrDone, "");
        const std::string found = folder.Read("app.prefs");
        replaced += found == Golden("after.prefs");
        EXPECT_TRUE(found == Golden(replaced != 0 ? "after.prefs" : "before.prefs")) << number;
        ASSERT_LT(number, 100);
    }
    EXPECT_GT(replaced, 0);
}
