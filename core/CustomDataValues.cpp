#include "core/CustomData.h"

#include "framework/base/StringArray.h"
#include "framework/base/StringList.h"

#include <bit>
#include <cstring>
#include <type_traits>

using vak::detail::LoadLittleEndian;
using vak::detail::StoredEntry;
using vak::detail::StoreLittleEndian;

namespace {

static_assert(std::endian::native == std::endian::little, "text is copied as the machine holds it");

/// The number of units in front of the first zero one, or all that fit into `size` bytes.
template <class UNIT>
unsigned int TextLength(const unsigned char* text, unsigned int size)
{
    constexpr unsigned int kUnits = 8 / sizeof(UNIT);
    constexpr std::uint64_t kOnes = sizeof(UNIT) == 1 ? 0x0101010101010101 : 0x0001000100010001;
    constexpr std::uint64_t kHighBits = kOnes << (sizeof(UNIT) * 8 - 1);
    const unsigned int units = size / sizeof(UNIT);
    unsigned int i = 0;
    for (; units - i >= kUnits; i += kUnits) {
        const auto word = LoadLittleEndian<std::uint64_t>(text + i * sizeof(UNIT));
        if (const std::uint64_t zero = (word - kOnes) & ~word & kHighBits; zero != 0)
            return i + static_cast<unsigned int>(std::countr_zero(zero)) / (sizeof(UNIT) * 8);
    }
    while (i < units && LoadLittleEndian<UNIT>(text + i * sizeof(UNIT)) != 0)
        ++i;
    return i;
}

/// Text up to its terminator, from units that lie at any alignment.
template <class TEXT>
void ReadText(const unsigned char* bytes, unsigned int size, TEXT& text)
{
    using Unit = typename TEXT::XCHAR;
    const unsigned int length = TextLength<std::make_unsigned_t<Unit>>(bytes, size);
    if (length == 0)
        text.Empty();
    else if (reinterpret_cast<std::uintptr_t>(bytes) % alignof(Unit) == 0)
        text.SetString(static_cast<const Unit*>(static_cast<const void*>(bytes)), static_cast<int>(length));
    else
        std::memcpy(text.GetBufferSetLength(static_cast<int>(length)), bytes, length * sizeof(Unit));
}

unsigned int TextSize(const CString& text)
{
    return (static_cast<unsigned int>(text.GetLength()) + 1) * 2;
}

/// Calls `visit` for each string of one of the two containers.
template <class VISIT>
void ForEachText(const CObject& texts, VISIT visit)
{
    if (texts.IsKindOf(RUNTIME_CLASS(CStringList))) {
        const auto& list = static_cast<const CStringList&>(texts);
        for (POSITION position = list.GetHeadPosition(); position != nullptr;)
            visit(list.GetNext(position));
    } else if (texts.IsKindOf(RUNTIME_CLASS(CStringArray))) {
        const auto& array = static_cast<const CStringArray&>(texts);
        for (INT_PTR i = 0; i < array.GetSize(); ++i)
            visit(array.GetAt(i));
    }
}

/// Reads a value whose text is of the type STORED, converted by the ANSI code page if need be.
template <class STORED, class TEXT>
void ReadInto(StoredEntry entry, TEXT& out)
{
    if constexpr (std::is_same_v<STORED, TEXT>) {
        ReadText(entry.Value(), entry.Size(), out);
    } else {
        STORED text;
        ReadText(entry.Value(), entry.Size(), text);
        out = text;
    }
}

/// Splits a value at its terminators; what follows the last one is dropped. Returns the number of pieces.
template <class TEXT, class ADD>
int SplitTexts(const unsigned char* value, unsigned int size, ADD add)
{
    constexpr unsigned int kUnit = sizeof(typename TEXT::XCHAR);
    int count = 0;
    for (unsigned int length;
         (length = TextLength<std::make_unsigned_t<typename TEXT::XCHAR>>(value, size)) < size / kUnit;
         ++count) {
        TEXT text;
        ReadText(value, size, text);
        add(CString(text));
        value += (length + 1) * kUnit;
        size -= (length + 1) * kUnit;
    }
    return count;
}

} // namespace

template <class T>
void CCustomData::SetValue(unsigned int id, T value, unsigned int kind)
{
    if (const StoredEntry entry = Reserve(id, sizeof value, kind))
        StoreLittleEndian(entry.Value(), value);
}

void CCustomData::SetInt(unsigned int id, int value)
{
    SetValue(id, value, vak::kind::Int);
}

void CCustomData::SetUInt(unsigned int id, unsigned int value)
{
    SetValue(id, value, vak::kind::UInt);
}

void CCustomData::SetLong(unsigned int id, LONG value)
{
    SetValue(id, value, vak::kind::Long);
}

void CCustomData::SetULong(unsigned int id, ULONG value)
{
    SetValue(id, value, vak::kind::ULong);
}

void CCustomData::SetLongLong(unsigned int id, LONGLONG value)
{
    SetValue(id, value, vak::kind::LongLong);
}

void CCustomData::SetULongLong(unsigned int id, ULONGLONG value)
{
    SetValue(id, value, vak::kind::ULongLong);
}

void CCustomData::SetBool(unsigned int id, int value)
{
    SetValue(id, value, vak::kind::Bool);
}

void CCustomData::SetFloat(unsigned int id, float value)
{
    SetValue(id, value, vak::kind::Float);
}

void CCustomData::SetDouble(unsigned int id, double value)
{
    SetValue(id, value, vak::kind::Double);
}

void CCustomData::SetPtr(unsigned int id, void* value)
{
    SetValue<std::uint64_t>(id, reinterpret_cast<std::uintptr_t>(value), vak::kind::Pointer);
}

void CCustomData::SetBinary(unsigned int id, const void* data, unsigned int size)
{
    SetCustom(id, data, data != nullptr ? size : 0, vak::kind::Binary);
}

void CCustomData::SetString(unsigned int id, const CString& text)
{
    SetStringW(id, text);
}

void CCustomData::SetStringW(unsigned int id, const CStringW& text)
{
    SetCustom(id, text.GetString(), TextSize(text), vak::kind::WideText);
}

void CCustomData::SetStringA(unsigned int id, const CStringA& text)
{
    SetCustom(id, text.GetString(), static_cast<unsigned int>(text.GetLength()) + 1, vak::kind::NarrowText);
}

void CCustomData::SetStringList(unsigned int id, const CStringList& texts)
{
    SetStrings(id, texts);
}

void CCustomData::SetStringArray(unsigned int id, const CStringArray& texts)
{
    SetStrings(id, texts);
}

void CCustomData::SetStrings(unsigned int id, const CObject& texts)
{
    std::uint64_t size = 0;
    ForEachText(texts, [&size](const CString& text) { size += TextSize(text); });
    if (size == 0 || size > UINT32_MAX) {
        RemoveCustom(id);
        return;
    }
    const StoredEntry entry = Reserve(id, static_cast<unsigned int>(size), vak::kind::WideTexts);
    if (!entry)
        return;
    unsigned char* value = entry.Value();
    ForEachText(texts, [&value](const CString& text) {
        std::memcpy(value, text.GetString(), TextSize(text));
        value += TextSize(text);
    });
}

void CCustomData::SetCustomData(unsigned int id, const CCustomData& nested)
{
    if (&nested == this) {
        const CCustomData same(*this);
        SetCustomData(id, same);
        return;
    }
    if (!nested.HasData())
        RemoveCustom(id);
    else if (const StoredEntry entry = Reserve(id, nested.GetRawSize(), vak::kind::Store))
        nested.WriteRaw(entry.Value());
}

void CCustomData::SetCustomClass(unsigned int id, const CCustomDataClass& object)
{
    CCustomData nested;
    object.SaveToCustomData(nested);
    SetCustomData(id, nested);
}

void CCustomData::AddToCustomData(unsigned int id, const CCustomData& src, int keepExisting)
{
    CCustomData nested;
    GetCustomData(id, nested);
    nested.Copy(&src, keepExisting ? 3 : 2);
    SetCustomData(id, nested);
}

template <class T>
int CCustomData::GetValue(unsigned int id, T& out, T def) const
{
    const StoredEntry entry = m_entries.FindSized(id, sizeof out);
    if (!entry || entry.Kind() == vak::kind::Invalid) {
        out = def;
        return 0;
    }
    out = LoadLittleEndian<T>(entry.Value());
    return 1;
}

int CCustomData::GetInt(unsigned int id, int& out, int def) const
{
    return GetValue(id, out, def);
}

int CCustomData::GetUInt(unsigned int id, unsigned int& out, unsigned int def) const
{
    return GetValue(id, out, def);
}

int CCustomData::GetLong(unsigned int id, LONG& out, LONG def) const
{
    return GetValue(id, out, def);
}

int CCustomData::GetULong(unsigned int id, ULONG& out, ULONG def) const
{
    return GetValue(id, out, def);
}

int CCustomData::GetLongLong(unsigned int id, LONGLONG& out, LONGLONG def) const
{
    return GetValue(id, out, def);
}

int CCustomData::GetULongLong(unsigned int id, ULONGLONG& out, ULONGLONG def) const
{
    return GetValue(id, out, def);
}

int CCustomData::GetBool(unsigned int id, int& out, int def) const
{
    return GetValue(id, out, def);
}

int CCustomData::GetFloat(unsigned int id, float& out, float def) const
{
    return GetValue(id, out, def);
}

int CCustomData::GetDouble(unsigned int id, double& out, double def) const
{
    return GetValue(id, out, def);
}

int CCustomData::GetPtr(unsigned int id, void*& out) const
{
    std::uint64_t value = 0;
    const int found = GetValue<std::uint64_t>(id, value, 0);
    out = reinterpret_cast<void*>(static_cast<std::uintptr_t>(value));
    return found;
}

int CCustomData::GetBinary(unsigned int id, void* out, unsigned int size) const
{
    const StoredEntry entry = m_entries.FindSized(id, size);
    if (!entry)
        return 0;
    if (size != 0)
        std::memcpy(out, entry.Value(), size);
    return entry.Kind() != vak::kind::Invalid;
}

int CCustomData::GetString(unsigned int id, CString& out, const CString& def) const
{
    return GetText(id, out, def);
}

int CCustomData::GetStringW(unsigned int id, CStringW& out, const CStringW& def) const
{
    return GetText(id, out, def);
}

int CCustomData::GetStringA(unsigned int id, CStringA& out, const CStringA& def) const
{
    return GetText(id, out, def);
}

template <class TEXT>
int CCustomData::GetText(unsigned int id, TEXT& out, const TEXT& def) const
{
    const StoredEntry entry = m_entries.Find(id);
    if (!entry || entry.Size() == 0) {
        out = def;
        return 0;
    }
    const unsigned int kind = entry.Kind();
    const bool untyped = kind == vak::kind::Untyped;
    if (kind == vak::kind::WideText || (untyped && m_stringMode == 1))
        ReadInto<CStringW>(entry, out);
    else if (kind == vak::kind::NarrowText || (untyped && m_stringMode == 2))
        ReadInto<CStringA>(entry, out);
    else
        out = def;
    return 1;
}

int CCustomData::GetStringList(unsigned int id, CStringList& out) const
{
    return GetStrings(id, out);
}

int CCustomData::GetStringArray(unsigned int id, CStringArray& out) const
{
    return GetStrings(id, out);
}

int CCustomData::GetStrings(unsigned int id, CObject& out) const
{
    const bool isList = out.IsKindOf(RUNTIME_CLASS(CStringList)) != 0;
    if (!isList && !out.IsKindOf(RUNTIME_CLASS(CStringArray)))
        return 0;
    if (isList)
        static_cast<CStringList&>(out).RemoveAll();
    else
        static_cast<CStringArray&>(out).RemoveAll();

    const StoredEntry entry = m_entries.Find(id);
    const unsigned int kind = entry ? entry.Kind() : vak::kind::Invalid;
    const bool untyped = kind == vak::kind::Untyped;
    const auto add = [&out, isList](const CString& text) {
        if (isList)
            static_cast<CStringList&>(out).AddTail(text);
        else
            static_cast<CStringArray&>(out).Add(text);
    };
    if (kind == vak::kind::WideTexts || (untyped && m_stringMode == 1))
        return SplitTexts<CStringW>(entry.Value(), entry.Size(), add);
    if (kind == vak::kind::NarrowTexts || (untyped && m_stringMode == 2))
        return SplitTexts<CStringA>(entry.Value(), entry.Size(), add);
    return 0;
}

int CCustomData::GetCustomData(unsigned int id, CCustomData& out) const
{
    if (&out == this) {
        CCustomData nested;
        const int found = GetCustomData(id, nested);
        out = nested;
        return found;
    }
    out.RemoveAll();
    const StoredEntry entry = m_entries.Find(id);
    if (!entry || entry.Size() == 0 || entry.Kind() == vak::kind::Invalid)
        return 0;
    if (entry.Kind() != vak::kind::Untyped)
        return out.ReadRaw(entry.Value(), entry.Size());
    if (!out.ReadChain(entry.Value(), entry.Size()))
        return 0;
    if (out.HasData())
        out.m_stringMode = m_stringMode;
    return 1;
}

int CCustomData::GetCustomClass(unsigned int id, CCustomDataClass& object) const
{
    CCustomData nested;
    if (!GetCustomData(id, nested)) {
        object.InitDefaults();
        return 0;
    }
    return object.LoadFromCustomData(nested);
}
