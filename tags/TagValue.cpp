#include "tags/TagValue.h"

#include "core/CustomData.h"
#include "framework/base/StringArray.h"
#include "framework/base/Time.h"
#include "tags/detail/TagBuffer.h"

using vak::detail::Held;
using vak::detail::Made;

namespace {

/// The item of a value's store that holds a block of bytes.
constexpr unsigned int kBlockItem = 583;

template <class Buffer>
void CopyBuffer(std::unique_ptr<Buffer>& to, const std::unique_ptr<Buffer>& from)
{
    if (from)
        Made(to) = *from;
    else
        to.reset();
}

template <class Array>
void CopyArray(std::unique_ptr<Array>& to, const std::unique_ptr<Array>& from)
{
    if (from)
        Made(to).Copy(*from);
    else
        to.reset();
}

/// A store for which there is no memory does not say so.
void RequireStored(bool isStored)
{
    if (!isStored)
        vak::detail::ThrowMemory();
}

void CopyStore(CCustomData& to, const CCustomData& from)
{
    to = from;
    RequireStored(to.HasData() == from.HasData());
}

template <class Array>
void EmptyArray(const std::unique_ptr<Array>& array)
{
    if (array)
        array->RemoveAll();
}

} // namespace

CTagValue::CTagValue() = default;

CTagValue::CTagValue(const CTagValue& other)
{
    *this = other;
}

CTagValue& CTagValue::operator=(const CTagValue& other)
{
    if (this == &other)
        return *this;
    if (other.m_customData)
        CopyStore(Made(m_customData), *other.m_customData);
    else
        m_customData.reset();
    CopyArray(m_stringArray, other.m_stringArray);
    CopyArray(m_uintArray, other.m_uintArray);
    CopyArray(m_floatArray, other.m_floatArray);
    CopyBuffer(m_text, other.m_text);
    CopyBuffer(m_date, other.m_date);
    m_integer = other.m_integer;
    m_float = other.m_float;
    m_kind = other.m_kind;
    return *this;
}

CTagValue::~CTagValue() = default;

const CString& CTagValue::GetText() const
{
    return Held(m_text);
}

const CString& CTagValue::GetFilename() const
{
    return Held(m_text);
}

unsigned int CTagValue::GetUInt() const
{
    return static_cast<unsigned int>(m_integer);
}

int CTagValue::GetInt() const
{
    return static_cast<int>(m_integer);
}

int CTagValue::GetBool() const
{
    const int low = GetInt();
    return low == 0 && m_integer != 0 ? 1 : low;
}

unsigned int CTagValue::GetColor() const
{
    return static_cast<unsigned int>(m_integer);
}

CTime CTagValue::GetDate() const
{
    return Held(m_date);
}

const CStringArray& CTagValue::GetStringArray() const
{
    return Held(m_stringArray);
}

const CTagValue::UIntArray& CTagValue::GetUIntArray() const
{
    return Held(m_uintArray);
}

const CTagValue::FloatArray& CTagValue::GetFloatArray() const
{
    return Held(m_floatArray);
}

const CCustomData& CTagValue::GetCustomData() const
{
    return Made(m_customData);
}

void CTagValue::GetCustomInfo(const void*& block, unsigned int& size) const
{
    block = GetCustomPtr();
    size = GetCustomSize();
}

const void* CTagValue::GetCustomPtr() const
{
    return GetCustomData().GetCustomPtr(kBlockItem);
}

unsigned int CTagValue::GetCustomSize() const
{
    return GetCustomData().GetDataSize(kBlockItem);
}

void CTagValue::SetText(const CString& text)
{
    Made(m_text) = text;
    m_kind = TAGDATA_TEXT;
}

void CTagValue::SetText(LPCWSTR text)
{
    Made(m_text) = text;
    m_kind = TAGDATA_TEXT;
}

void CTagValue::AddText(const CString& text)
{
    if (vak::TagStorage(m_kind) != TAGDATA_TEXT)
        return SetText(text);
    Made(m_text) += text;
    m_kind = TAGDATA_TEXT;
}

void CTagValue::AddText(LPCWSTR text)
{
    if (vak::TagStorage(m_kind) != TAGDATA_TEXT)
        return SetText(text);
    Made(m_text) += text;
    m_kind = TAGDATA_TEXT;
}

void CTagValue::SetFilename(const CString& path)
{
    Made(m_text) = path;
    m_kind = TAGDATA_FILENAME;
}

void CTagValue::SetFilename(LPCWSTR path)
{
    Made(m_text) = path;
    m_kind = TAGDATA_FILENAME;
}

void CTagValue::SetUInt(unsigned int value)
{
    m_integer = value;
    m_kind = TAGDATA_UINT;
}

void CTagValue::SetInt(int value)
{
    m_integer = static_cast<ULONGLONG>(LONGLONG{value});
    m_kind = TAGDATA_INT;
}

void CTagValue::SetBool(int value)
{
    m_integer = static_cast<ULONGLONG>(LONGLONG{value});
    m_kind = TAGDATA_BOOL;
}

void CTagValue::SetColor(unsigned int color)
{
    m_integer = color;
    m_kind = TAGDATA_COLOR;
}

void CTagValue::SetFileSize(unsigned int bytes)
{
    m_integer = bytes;
    m_kind = TAGDATA_FILESIZE;
}

void CTagValue::SetFloat(float value)
{
    m_float = value;
    m_kind = TAGDATA_FLOAT;
}

void CTagValue::SetDuration(float seconds)
{
    m_float = seconds;
    m_kind = TAGDATA_DURATION;
}

void CTagValue::SetLength(float millimetres)
{
    m_float = millimetres;
    m_kind = TAGDATA_LENGTH;
}

void CTagValue::SetResolution(float dotsPerInch)
{
    m_float = dotsPerInch;
    m_kind = TAGDATA_RESOLUTION;
}

void CTagValue::SetDate(const CTime& date)
{
    Made(m_date) = date;
    m_kind = TAGDATA_DATE;
}

void CTagValue::SetStringArray(const CStringArray& texts)
{
    Made(m_stringArray).Copy(texts);
    m_kind = TAGDATA_STRINGARRAY;
}

void CTagValue::SetUIntArray(const UIntArray& numbers)
{
    Made(m_uintArray).Copy(numbers);
    m_kind = TAGDATA_UINTARRAY;
}

void CTagValue::AddUInt(unsigned int number)
{
    if (vak::TagStorage(m_kind) != TAGDATA_UINTARRAY)
        InitType(TAGDATA_UINTARRAY);
    Made(m_uintArray).Add(number);
    m_kind = TAGDATA_UINTARRAY;
}

void CTagValue::AddInt(int number)
{
    AddUInt(static_cast<unsigned int>(number));
}

void CTagValue::SetFloatArray(const FloatArray& numbers)
{
    Made(m_floatArray).Copy(numbers);
    m_kind = TAGDATA_FLOATARRAY;
}

void CTagValue::AddFloat(float number)
{
    if (vak::TagStorage(m_kind) != TAGDATA_FLOATARRAY)
        InitType(TAGDATA_FLOATARRAY);
    Made(m_floatArray).Add(number);
    m_kind = TAGDATA_FLOATARRAY;
}

void CTagValue::SetCustomData(const CCustomData& data)
{
    CopyStore(Made(m_customData), data);
    m_kind = TAGDATA_CUSTOMDATA;
}

void CTagValue::SetCustomInfo(const void* block, unsigned int size)
{
    // The block may lie in the store that it replaces.
    std::unique_ptr<CCustomData> store;
    Made(store).SetBinary(kBlockItem, block, size);
    RequireStored(block == nullptr || store->GetDataSize(kBlockItem) == size);
    m_customData.swap(store);
    m_kind = TAGDATA_CUSTOMINFO;
}

void CTagValue::Init()
{
    m_kind = TAGDATA_NONE;
    EmptyArray(m_stringArray);
    EmptyArray(m_uintArray);
    EmptyArray(m_floatArray);
}

void CTagValue::InitType(_TAGDATA_INFO kind)
{
    m_kind = vak::TagKind(kind);
    if ((kind & TAGDATA_TEXT) != 0)
        Made(m_text).Empty();
    else if ((kind & TAGDATA_DATE) != 0)
        Made(m_date);
    else if ((kind & TAGDATA_STRINGARRAY) != 0)
        Made(m_stringArray).RemoveAll();
    else if ((kind & TAGDATA_CUSTOMDATA) != 0)
        Made(m_customData).RemoveAll();
    else if ((kind & TAGDATA_UINTARRAY) != 0)
        Made(m_uintArray).RemoveAll();
    else if ((kind & TAGDATA_FLOATARRAY) != 0)
        Made(m_floatArray).RemoveAll();
    else
        m_kind = TAGDATA_NONE;
}
