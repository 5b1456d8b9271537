#include "dialogs/detail/FieldText.h"

#include "core/RGBColor.h"
#include "framework/base/StringTable.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

using namespace vak::detail;
using vak::FieldBinding;
using vak::FieldKind;

namespace {

constexpr unsigned int kId = 'VALU';
constexpr double kInf = std::numeric_limits<double>::infinity();

FieldBinding FieldOf(FieldKind kind, double minimum = -kInf, double maximum = kInf, int decimals = -1)
{
    return {.property = kId, .kind = kind, .minimum = minimum, .maximum = maximum, .decimals = decimals};
}

} // namespace

TEST(FieldText, TellsWhatIsWrongWithAnEntry)
{
    struct Row
    {
        FieldBinding field;
        const wchar_t* text;
        FieldFault fault;
    };
    const FieldBinding percent = FieldOf(FieldKind::Int, 0, 100);
    const FieldBinding any = FieldOf(FieldKind::Double);
    const Row rows[] = {
        {percent, L" 100\t", FieldFault::None},
        {percent, L"101", FieldFault::TooLarge},
        {percent, L"1,5", FieldFault::NotAnInteger},
        {percent, L"\x0661", FieldFault::NotAnInteger},
        {FieldOf(FieldKind::Int, 0.5, 1.5), L"0", FieldFault::TooSmall},
        {FieldOf(FieldKind::Int), L"2147483648", FieldFault::TooLarge},
        {FieldOf(FieldKind::UInt), L"-1", FieldFault::TooSmall},
        {FieldOf(FieldKind::LongLong), L"9223372036854775807", FieldFault::None},
        {any, L"-1,5e-3", FieldFault::None},
        {any, L"1,000.5", FieldFault::NotANumber},
        {any, L"inf", FieldFault::NotANumber},
        {any, L"1e999", FieldFault::TooLarge},
        {FieldOf(FieldKind::Float, 0.7, 1), L"0,7", FieldFault::None},
        {FieldOf(FieldKind::Text, 1), L"", FieldFault::Empty},
        {FieldOf(FieldKind::Text, 2, 3), L"a", FieldFault::TooShort},
        {FieldOf(FieldKind::Text, 2, 3), L"abcd", FieldFault::TooLong},
        {FieldOf(FieldKind::ListIndex, 0), L"-1", FieldFault::NoChoice},
        {FieldOf(FieldKind::Color), L"12aBcF ", FieldFault::None},
        {FieldOf(FieldKind::Color), L"#12ABCG", FieldFault::NotAColor},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(CString(row.text)));
        EXPECT_EQ(CheckText(row.field, row.text), row.fault);
        EXPECT_EQ(FaultText(row.field, row.fault).IsEmpty(), row.fault == FieldFault::None);
        CCustomData store;
        StoreText(row.field, row.text, store);
        EXPECT_EQ(store.HasData(kId) != 0, row.fault == FieldFault::None);
    }
}

TEST(FieldText, NamesTheEndsOfTheRangeThatTheFieldHas)
{
    vak::SetTextLanguage(1036);
    using enum FieldKind;
    EXPECT_EQ(FaultText(FieldOf(Float, 0.25), FieldFault::TooSmall),
              L"la valeur doit être supérieure ou égale à 0,25.");
    EXPECT_EQ(FaultText(FieldOf(Int, 1), FieldFault::TooLarge),
              L"la valeur doit être comprise entre 1 et 2147483647.");
    EXPECT_EQ(FaultText(FieldOf(Text, 0, 8), FieldFault::TooLong),
              L"le texte ne doit pas dépasser 8 caractères.");
}

TEST(FieldText, ShowsWhatAStoreHasOrTheDefault)
{
    struct Row
    {
        FieldBinding field;
        void (*put)(CCustomData& store);
        const wchar_t* text;
    };
    FieldBinding halves = FieldOf(FieldKind::Float, 1, 9, 1);
    halves.number = 0.5;
    FieldBinding named = FieldOf(FieldKind::Text);
    named.text = L"sans nom";
    const FieldBinding whole = FieldOf(FieldKind::Int, 3);
    const FieldBinding cents = FieldOf(FieldKind::Double, -kInf, kInf, 2);
    const FieldBinding color = FieldOf(FieldKind::Color);
    const Row rows[] = {
        {whole, [](CCustomData& s) { s.SetInt(kId, -5); }, L"-5"},
        {whole, [](CCustomData& s) { s.SetULongLong(kId, 1ull << 40); }, L"3"},
        {whole, [](CCustomData& s) { s.SetFloat(kId, 5); }, L"3"},
        {FieldOf(FieldKind::Bool), [](CCustomData& s) { s.SetBool(kId, -7); }, L"1"},
        {halves, [](CCustomData&) {}, L"1,0"},
        {halves, [](CCustomData& s) { s.SetDouble(kId, 1e300); }, L"inf"},
        {FieldOf(FieldKind::Float), [](CCustomData& s) { s.SetDouble(kId, 0.1); }, L"0,1"},
        {cents, [](CCustomData& s) { s.SetDouble(kId, 1.875); }, L"1,88"},
        {cents, [](CCustomData& s) { s.SetInt(kId, 12); }, L"12,00"},
        {cents, [](CCustomData& s) { s.SetDouble(kId, -2.5e22); }, L"-2,5e+22"},
        {named, [](CCustomData& s) { s.SetStringA(kId, "plain"); }, L"plain"},
        {named, [](CCustomData& s) { s.SetString(kId, L""); }, L""},
        {named, [](CCustomData& s) { s.SetDouble(kId, 1); }, L"sans nom"},
        {color, [](CCustomData& s) { s.SetBinary(kId, CRGBColor(1, 2, 3).ValPtr(), 4); }, L"#010203"},
        {color, [](CCustomData& s) { s.SetFloat(kId, 1); }, L"#000000"},
        {color, [](CCustomData& s) { s.SetString(kId, L"a"); }, L"#000000"},
    };
    vak::SetTextLanguage(1036);
    for (const Row& row : rows) {
        CCustomData store;
        row.put(store);
        EXPECT_EQ(TextFromStore(row.field, store), CString(row.text));
    }
    CCustomData cent;
    cent.SetDouble(kId, 0.01);
    vak::SetTextLanguage(1033);
    EXPECT_EQ(TextFromStore(cents, cent), L"0.01");
    vak::SetTextLanguage(1036);
}
