#include "tags/TagValue.h"

#include "core/CustomData.h"
#include "framework/base/ByteOrder.h"
#include "framework/base/Exception.h"
#include "framework/base/StringArray.h"
#include "framework/base/Time.h"
#include "tags/detail/TagBuffer.h"

#include <bit>
#include <cstring>

using vak::detail::Held;
using vak::detail::LoadLittleEndian;
using vak::detail::Made;
using vak::detail::StoreLittleEndian;

namespace {

static_assert(std::endian::native == std::endian::little, "arrays are copied as the machine holds them");

/// A stored date: eight fields of 16 bits in the order of the platform's calendar record.
constexpr unsigned int kDateSize = 16;
constexpr WORD SYSTEMTIME::*kDateFields[] = {
    &SYSTEMTIME::wYear, &SYSTEMTIME::wMonth,  &SYSTEMTIME::wDayOfWeek, &SYSTEMTIME::wDay,
    &SYSTEMTIME::wHour, &SYSTEMTIME::wMinute, &SYSTEMTIME::wSecond,    &SYSTEMTIME::wMilliseconds};

/// The value bytes of an item that may be read; null when there is none.
const void* FindBlock(const CCustomData& data, unsigned int id)
{
    return data.GetDataKindOf(id) == vak::kind::Invalid ? nullptr : data.GetCustomPtr(id);
}

/// Bytes behind the last whole number are left out.
template <class Number>
bool ReadNumbers(const CCustomData& data, unsigned int id, CArray<Number>& numbers)
{
    const void* const block = FindBlock(data, id);
    if (block == nullptr)
        return false;
    const unsigned int count = data.GetDataSize(id) / sizeof(Number);
    numbers.SetSize(static_cast<INT_PTR>(count));
    if (count > 0)
        std::memcpy(numbers.GetData(), block, count * sizeof(Number));
    return true;
}

/// The moment of a calendar record; throws CInvalidArgException for one that does not exist.
CTime MomentOf(const SYSTEMTIME& record)
{
    const CTime moment(record);
    // The system would take the last days of short months for the first of the next ones.
    if (moment.GetDay() != record.wDay)
        AfxThrowInvalidArgException();
    return moment;
}

/// A record that is no date leaves the current time in `date`.
bool ReadDate(const CCustomData& data, unsigned int id, CTime& date)
{
    unsigned char bytes[kDateSize];
    if (data.GetBinary(id, bytes, kDateSize) == 0)
        return false;
    SYSTEMTIME record{};
    const unsigned char* at = bytes;
    for (const auto field : kDateFields) {
        record.*field = LoadLittleEndian<WORD>(at);
        at += sizeof(WORD);
    }
    try {
        date = MomentOf(record);
        return true;
    } catch (CInvalidArgException* e) {
        e->Delete();
        date = CTime::GetCurrentTime();
        return false;
    }
}

/// A store that runs out of memory does not say so, but has no such item then.
int IsWritten(const CCustomData& data, unsigned int id, bool isEmpty)
{
    return isEmpty || data.HasData(id) ? 1 : 0;
}

template <class Number>
int WriteNumbers(CCustomData& data, unsigned int id, const CArray<Number>& numbers)
{
    constexpr auto kMostNumbers = static_cast<INT_PTR>(UINT32_MAX / sizeof(Number));
    if (numbers.GetSize() > kMostNumbers)
        return 0;
    data.SetBinary(id, numbers.GetData(), static_cast<unsigned int>(numbers.GetSize()) * sizeof(Number));
    return IsWritten(data, id, numbers.IsEmpty());
}

int WriteDate(CCustomData& data, unsigned int id, const CTime& date)
{
    SYSTEMTIME record{};
    if (!date.GetAsSystemTime(record))
        return 0;
    record.wMilliseconds = 0;
    unsigned char bytes[kDateSize];
    unsigned char* at = bytes;
    for (const auto field : kDateFields) {
        StoreLittleEndian(at, record.*field);
        at += sizeof(WORD);
    }
    data.SetBinary(id, bytes, kDateSize);
    return IsWritten(data, id, false);
}

} // namespace

int CTagValue::GetValueFromData(const CCustomData& data, unsigned int id, _TAGDATA_INFO kind)
{
    Init();
    if (!ReadItem(data, id, kind))
        return 0;
    m_kind = vak::TagKind(kind);
    return 1;
}

bool CTagValue::ReadItem(const CCustomData& data, unsigned int id, _TAGDATA_INFO kind)
{
    switch (vak::TagStorage(kind)) {
    case TAGDATA_TEXT:
        return data.GetString(id, Made(m_text), CString()) != 0;
    case TAGDATA_UINT: {
        unsigned int number;
        if (data.GetUInt(id, number, 0) == 0)
            return false;
        m_integer = number;
        return true;
    }
    case TAGDATA_FLOAT:
        return data.GetFloat(id, m_float, m_float) != 0;
    case TAGDATA_DATE:
        return ReadDate(data, id, Made(m_date));
    case TAGDATA_CUSTOMDATA:
        return vak::TagKind(kind) == TAGDATA_CUSTOMINFO ? ReadBlock(data, id) : ReadStore(data, id);
    case TAGDATA_STRINGARRAY:
        return data.GetStringArray(id, Made(m_stringArray)) != 0;
    case TAGDATA_UINTARRAY:
        return ReadNumbers(data, id, Made(m_uintArray));
    case TAGDATA_FLOATARRAY:
        return ReadNumbers(data, id, Made(m_floatArray));
    default:
        return false;
    }
}

bool CTagValue::ReadBlock(const CCustomData& data, unsigned int id)
{
    const void* const block = FindBlock(data, id);
    if (block == nullptr)
        return false;
    SetCustomInfo(block, data.GetDataSize(id));
    return true;
}

bool CTagValue::ReadStore(const CCustomData& data, unsigned int id)
{
    // `data` may be this value's own store.
    std::unique_ptr<CCustomData> nested;
    if (data.GetCustomData(id, Made(nested)) == 0)
        return false;
    m_customData.swap(nested);
    return true;
}

int CTagValue::SetValueToData(CCustomData& data, unsigned int id) const
{
    switch (vak::TagStorage(m_kind)) {
    case TAGDATA_TEXT:
        data.SetString(id, Held(m_text));
        return IsWritten(data, id, false);
    case TAGDATA_UINT:
        data.SetUInt(id, GetUInt());
        return IsWritten(data, id, false);
    case TAGDATA_FLOAT:
        data.SetFloat(id, m_float);
        return IsWritten(data, id, false);
    case TAGDATA_DATE:
        return WriteDate(data, id, GetDate());
    case TAGDATA_CUSTOMDATA:
        return m_kind == TAGDATA_CUSTOMINFO ? WriteBlock(data, id) : WriteStore(data, id);
    case TAGDATA_STRINGARRAY:
        data.SetStringArray(id, GetStringArray());
        return IsWritten(data, id, GetStringArray().IsEmpty());
    case TAGDATA_UINTARRAY:
        return WriteNumbers(data, id, GetUIntArray());
    case TAGDATA_FLOATARRAY:
        return WriteNumbers(data, id, GetFloatArray());
    default:
        return 0;
    }
}

int CTagValue::WriteBlock(CCustomData& data, unsigned int id) const
{
    data.SetBinary(id, GetCustomPtr(), GetCustomSize());
    return IsWritten(data, id, GetCustomSize() == 0);
}

int CTagValue::WriteStore(CCustomData& data, unsigned int id) const
{
    data.SetCustomData(id, GetCustomData());
    return IsWritten(data, id, GetCustomData().HasData() == 0);
}
