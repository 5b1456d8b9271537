#include "dialogs/detail/FieldText.h"

#include "framework/base/StringTable.h"
#include "resources/Ids.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

namespace vak::detail {

namespace {

/// From here on a fixed number of decimals would show digits that no double has.
constexpr double kLongestFixed = 1e15;
constexpr int kMostDecimals = 15;
constexpr DWORD kChannels = 0xFFFFFF;

template <class T>
struct Bounds
{
    T lowest;
    T highest;
};

CString Text(UINT id)
{
    CString text;
    LoadText(text, id);
    return text;
}

/// Calls `visit` with a zero of the type in which the field holds its number; texts and colours hold none.
template <class VISIT>
auto WithNumber(FieldKind kind, VISIT visit)
{
    switch (kind) {
    case FieldKind::UInt:
        return visit(0u);
    case FieldKind::LongLong:
        return visit(LONGLONG(0));
    case FieldKind::ULongLong:
        return visit(ULONGLONG(0));
    case FieldKind::Float:
        return visit(0.0f);
    case FieldKind::Double:
        return visit(0.0);
    default:
        return visit(0);
    }
}

bool IsIndex(FieldKind kind)
{
    return kind == FieldKind::ComboIndex || kind == FieldKind::ListIndex || kind == FieldKind::RadioIndex;
}

/// The value of the type that is nearest; 0 for what is no number.
template <class T>
T Nearest(double value)
{
    using Limits = std::numeric_limits<T>;
    if (std::isnan(value))
        return 0;
    if (value <= static_cast<double>(Limits::lowest()))
        return Limits::lowest();
    // The largest 64-bit numbers round up to what the type has not.
    if (value >= static_cast<double>(Limits::max()))
        return Limits::max();
    return static_cast<T>(value);
}

template <class T>
Bounds<T> BoundsOf(const FieldBinding& field)
{
    if constexpr (std::is_integral_v<T>)
        return {Nearest<T>(std::ceil(field.minimum)), Nearest<T>(std::floor(field.maximum))};
    else
        return {Nearest<T>(field.minimum), Nearest<T>(field.maximum)};
}

/// The text without blanks at its ends and without a plus sign, a comma as a point; empty when it has a
/// character that no number has.
std::string NumberCharacters(CString text)
{
    text.Trim();
    if (text[0] == L'+' && text[1] != L'-')
        text.Delete(0);
    std::string characters;
    for (int i = 0; i < text.GetLength(); ++i) {
        const wchar_t unit = text[i] == L',' ? L'.' : text[i];
        if (unit >= 0x80 || CString(L"0123456789+-.eE").Find(unit) < 0)
            return {};
        characters.push_back(static_cast<char>(unit));
    }
    return characters;
}

bool IsNegative(const std::string& digits)
{
    return digits[0] == '-';
}

bool AreDigits(const std::string& text, std::size_t first)
{
    return first < text.size() && text.find_first_not_of("0123456789", first) == std::string::npos;
}

template <class T>
FieldFault Parse(const CString& text, T& out)
{
    constexpr bool kIsWhole = std::is_integral_v<T>;
    const std::string characters = NumberCharacters(text);
    if (std::is_unsigned_v<T> && IsNegative(characters) && AreDigits(characters, 1))
        return FieldFault::TooSmall;
    const char* const end = characters.data() + characters.size();
    const auto [read, error] = std::from_chars(characters.data(), end, out);
    if (error == std::errc::invalid_argument || read != end)
        return kIsWhole ? FieldFault::NotAnInteger : FieldFault::NotANumber;
    if (error == std::errc::result_out_of_range)
        return IsNegative(characters) ? FieldFault::TooSmall : FieldFault::TooLarge;
    return FieldFault::None;
}

template <class T>
FieldFault ParseInRange(const FieldBinding& field, const CString& text, T& out)
{
    if (const FieldFault fault = Parse(text, out); fault != FieldFault::None)
        return fault;
    const Bounds<T> bounds = BoundsOf<T>(field);
    if (out < bounds.lowest)
        return IsIndex(field.kind) ? FieldFault::NoChoice : FieldFault::TooSmall;
    return out > bounds.highest ? FieldFault::TooLarge : FieldFault::None;
}

FieldFault CheckLength(const FieldBinding& field, int length)
{
    const auto bounds = BoundsOf<int>(field);
    if (length < bounds.lowest)
        return length == 0 ? FieldFault::Empty : FieldFault::TooShort;
    return length > bounds.highest ? FieldFault::TooLong : FieldFault::None;
}

/// `decimals` as in FieldBinding.
template <class T>
CString FormatNumber(T value, int decimals)
{
    char buffer[64];
    char* const last = buffer + sizeof buffer;
    std::to_chars_result written{};
    if constexpr (std::is_integral_v<T>)
        written = std::to_chars(buffer, last, value);
    else if (decimals < 0 || !(std::abs(value) < static_cast<T>(kLongestFixed)))
        written = std::to_chars(buffer, last, value);
    else
        written =
            std::to_chars(buffer, last, value, std::chars_format::fixed, std::min(decimals, kMostDecimals));
    CString text(CStringA(buffer, static_cast<int>(written.ptr - buffer)));
    text.Replace(L".", Text(IDS_SIZE_DECIMAL_MARK));
    return text;
}

template <class T>
std::optional<T> ReadAs(const CCustomData& store, unsigned int id)
{
    T value{};
    if (store.GetDataSize(id) != sizeof value || !store.GetBinary(id, &value, sizeof value))
        return std::nullopt;
    return value;
}

template <class TO, class FROM>
std::optional<TO> Converted(std::optional<FROM> value)
{
    if (!value)
        return std::nullopt;
    if constexpr (std::is_integral_v<TO> && std::is_integral_v<FROM>) {
        if (!std::in_range<TO>(*value))
            return std::nullopt;
    } else if constexpr (std::is_integral_v<TO>) {
        return std::nullopt;
    } else if (std::abs(static_cast<double>(*value)) > std::numeric_limits<TO>::max()) {
        // Infinities too: they are shown as what they are.
        return static_cast<double>(*value) < 0 ? -std::numeric_limits<TO>::infinity()
                                               : std::numeric_limits<TO>::infinity();
    }
    return static_cast<TO>(*value);
}

/// The number under the id, whatever its kind, as far as the type can hold it.
template <class T>
std::optional<T> ReadNumber(const CCustomData& store, unsigned int id)
{
    switch (store.GetDataKindOf(id)) {
    case kind::Int:
    case kind::Long:
    case kind::Bool:
        return Converted<T>(ReadAs<int>(store, id));
    case kind::UInt:
    case kind::ULong:
        return Converted<T>(ReadAs<unsigned int>(store, id));
    case kind::LongLong:
        return Converted<T>(ReadAs<LONGLONG>(store, id));
    case kind::ULongLong:
        return Converted<T>(ReadAs<ULONGLONG>(store, id));
    case kind::Float:
        return Converted<T>(ReadAs<float>(store, id));
    case kind::Double:
        return Converted<T>(ReadAs<double>(store, id));
    case kind::Untyped:
        return ReadAs<T>(store, id);
    default:
        return std::nullopt;
    }
}

/// Packed colours, and the channels of a CRGBColor with its alpha.
std::optional<DWORD> ReadColor(const CCustomData& store, unsigned int id)
{
    switch (store.GetDataKindOf(id)) {
    case kind::Int:
    case kind::Long:
    case kind::UInt:
    case kind::ULong:
    case kind::Binary:
    case kind::Untyped:
        return ReadAs<DWORD>(store, id);
    default:
        return std::nullopt;
    }
}

template <class T>
T DefaultNumber(const FieldBinding& field)
{
    const Bounds<T> bounds = BoundsOf<T>(field);
    return std::min(std::max(Nearest<T>(field.number), bounds.lowest), bounds.highest);
}

CString NumberText(const FieldBinding& field, const CCustomData* store)
{
    return WithNumber(field.kind, [&](auto zero) {
        using T = decltype(zero);
        const auto stored = store ? ReadNumber<T>(*store, PropertyOf(field)) : std::nullopt;
        const T value = stored.value_or(DefaultNumber<T>(field));
        if (field.kind == FieldKind::Bool)
            return FormatNumber(value == 0 || value == 2 ? value : T(1), -1);
        return FormatNumber(value, field.decimals);
    });
}

void StoreNumber(FieldKind kind, unsigned int id, int value, CCustomData& store)
{
    if (kind == FieldKind::Bool)
        store.SetBool(id, value);
    else
        store.SetInt(id, value);
}

void StoreNumber(FieldKind, unsigned int id, unsigned int value, CCustomData& store)
{
    store.SetUInt(id, value);
}

void StoreNumber(FieldKind, unsigned int id, LONGLONG value, CCustomData& store)
{
    store.SetLongLong(id, value);
}

void StoreNumber(FieldKind, unsigned int id, ULONGLONG value, CCustomData& store)
{
    store.SetULongLong(id, value);
}

void StoreNumber(FieldKind, unsigned int id, float value, CCustomData& store)
{
    store.SetFloat(id, value);
}

void StoreNumber(FieldKind, unsigned int id, double value, CCustomData& store)
{
    store.SetDouble(id, value);
}

/// The text that tells a range, by which of its ends the field names.
UINT RangeTextId(const FieldBinding& field, FieldFault fault)
{
    const bool hasLowest = std::isfinite(field.minimum);
    const bool hasHighest = std::isfinite(field.maximum);
    if (hasLowest == hasHighest)
        return IDS_FIELD_OUT_OF_RANGE;
    if (fault == FieldFault::TooSmall)
        return hasLowest ? IDS_FIELD_TOO_SMALL : IDS_FIELD_OUT_OF_RANGE;
    return hasHighest ? IDS_FIELD_TOO_LARGE : IDS_FIELD_OUT_OF_RANGE;
}

UINT FaultTextId(const FieldBinding& field, FieldFault fault)
{
    switch (fault) {
    case FieldFault::NotAnInteger:
        return IDS_FIELD_NOT_AN_INTEGER;
    case FieldFault::NotANumber:
        return IDS_FIELD_NOT_A_NUMBER;
    case FieldFault::Empty:
        return IDS_FIELD_EMPTY;
    case FieldFault::TooShort:
        return IDS_FIELD_TOO_SHORT;
    case FieldFault::TooLong:
        return IDS_FIELD_TOO_LONG;
    case FieldFault::NoChoice:
        return IDS_FIELD_NO_CHOICE;
    case FieldFault::NotAColor:
        return IDS_FIELD_NOT_A_COLOR;
    default:
        return RangeTextId(field, fault);
    }
}

} // namespace

unsigned int PropertyOf(const FieldBinding& field)
{
    return field.property != 0 ? field.property : static_cast<unsigned int>(field.control);
}

IntRange IntRangeOf(const FieldBinding& field)
{
    const auto bounds = BoundsOf<int>(field);
    return {bounds.lowest, bounds.highest};
}

CString DefaultText(const FieldBinding& field)
{
    if (field.kind == FieldKind::Text)
        return field.text;
    if (field.kind == FieldKind::Color)
        return FormatColor(Nearest<DWORD>(field.number));
    return NumberText(field, nullptr);
}

CString TextFromStore(const FieldBinding& field, const CCustomData& store)
{
    const unsigned int id = PropertyOf(field);
    if (field.kind == FieldKind::Text) {
        CString text;
        store.GetString(id, text, field.text);
        return text;
    }
    if (field.kind == FieldKind::Color) {
        const auto color = ReadColor(store, id);
        return color ? FormatColor(*color) : DefaultText(field);
    }
    return NumberText(field, &store);
}

FieldFault CheckText(const FieldBinding& field, const CString& text)
{
    DWORD color = 0;
    if (field.kind == FieldKind::Text)
        return CheckLength(field, text.GetLength());
    if (field.kind == FieldKind::Color)
        return ParseColor(text, color) ? FieldFault::None : FieldFault::NotAColor;
    return WithNumber(field.kind, [&](auto value) { return ParseInRange(field, text, value); });
}

CString FaultText(const FieldBinding& field, FieldFault fault)
{
    CString text;
    if (fault == FieldFault::None)
        return text;
    const auto [lowest, highest] = WithNumber(field.kind, [&](auto zero) {
        const auto bounds = BoundsOf<decltype(zero)>(field);
        return std::pair(FormatNumber(bounds.lowest, -1), FormatNumber(bounds.highest, -1));
    });
    AfxFormatString2(text, FaultTextId(field, fault), lowest, highest);
    return text;
}

void StoreText(const FieldBinding& field, const CString& text, CCustomData& store)
{
    if (CheckText(field, text) != FieldFault::None)
        return;
    const unsigned int id = PropertyOf(field);
    if (field.kind == FieldKind::Text)
        return store.SetString(id, text);
    if (field.kind != FieldKind::Color) {
        return WithNumber(field.kind, [&](auto value) {
            ParseInRange(field, text, value);
            StoreNumber(field.kind, id, value, store);
        });
    }
    DWORD color = 0;
    ParseColor(text, color);
    store.SetUInt(id, (ReadColor(store, id).value_or(0) & ~kChannels) | color);
}

void StoreDefault(const FieldBinding& field, CCustomData& store)
{
    if (field.kind == FieldKind::Text || field.kind == FieldKind::Color)
        return StoreText(field, DefaultText(field), store);
    WithNumber(field.kind, [&](auto zero) {
        StoreNumber(field.kind, PropertyOf(field), DefaultNumber<decltype(zero)>(field), store);
    });
}

bool ParseColor(const CString& text, DWORD& color)
{
    CString digits(text);
    digits.Trim();
    if (digits[0] == L'#')
        digits.Delete(0);
    constexpr int kDigits = 6;
    if (digits.GetLength() != kDigits || digits.SpanIncluding(L"0123456789abcdefABCDEF") != digits)
        return false;
    const CStringA narrow(digits);
    DWORD rgb = 0;
    std::from_chars(narrow.GetString(), narrow.GetString() + kDigits, rgb, 16);
    color = (rgb & 0xFF) << 16 | (rgb & 0xFF00) | rgb >> 16;
    return true;
}

CString FormatColor(DWORD color)
{
    CString text;
    text.Format(L"#%02X%02X%02X", static_cast<unsigned int>(color & 0xFF),
                static_cast<unsigned int>(color >> 8 & 0xFF), static_cast<unsigned int>(color >> 16 & 0xFF));
    return text;
}

} // namespace vak::detail
