#include "tags/TagValue.h"

#include "core/CustomData.h"
#include "files/FileText.h"
#include "framework/base/StringArray.h"
#include "framework/base/StringTable.h"
#include "framework/base/Time.h"
#include "resources/Ids.h"
#include "tags/detail/TagBuffer.h"
#include "tags/detail/TagNumber.h"

#include <climits>

using vak::detail::Held;
using vak::detail::Made;

namespace {

/// Stands between the elements of an array in a text.
constexpr wchar_t kSeparator[] = L" ; ";
constexpr int kSeparatorLength = 3;

template <class... Arguments>
CString Formatted(const wchar_t* format, Arguments... arguments)
{
    CString text;
    text.Format(format, arguments...);
    return text;
}

CString BoolText(bool value)
{
    CString text;
    vak::LoadText(text, value ? IDS_TRUE : IDS_FALSE);
    return text;
}

CString ColorText(unsigned int color)
{
    CString text;
    text.Format(IDS_COLOR_TEXT, color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF);
    return text;
}

CString DurationText(float seconds)
{
    if (!(seconds > 60))
        return Formatted(L"%.2f s", double{seconds});
    const ULONGLONG whole = vak::detail::Truncate64(seconds);
    if (seconds > 3600)
        return Formatted(L"%02I64u h %02I64u mn %02I64u s", whole / 3600, whole / 60 % 60, whole % 60);
    return Formatted(L"%I64u:%02I64u mn", whole / 60, whole % 60);
}

/// There is no form in millimetres: templates rely on a short length showing nothing.
CString LengthText(float millimetres)
{
    if (millimetres > 1000)
        return Formatted(L"%.2f m", double{millimetres / 1000});
    if (millimetres > 10)
        return Formatted(L"%.2f cm", double{millimetres / 10});
    return CString();
}

/// Whatever the host's locale, only ASCII is printable here.
CString BlockText(const void* block, unsigned int size)
{
    if (size > INT_MAX)
        vak::detail::ThrowMemory();
    CString text;
    wchar_t* to = text.GetBufferSetLength(static_cast<int>(size));
    const auto* bytes = static_cast<const unsigned char*>(block);
    for (unsigned int i = 0; i < size; ++i)
        to[i] = bytes[i] > ' ' && bytes[i] < 0x7F ? bytes[i] : L' ';
    return text;
}

/// Appends what `write` makes of each element.
template <class Array, class Write>
CString ArrayText(const Array& array, Write write)
{
    CString text;
    for (INT_PTR i = 0; i < array.GetSize(); ++i)
        write(text, array[i]);
    return text;
}

/// Calls `take` for each piece of the text that is more than blanks.
template <class Take>
void ForEachPiece(const CString& text, Take take)
{
    for (int start = 0; start <= text.GetLength();) {
        const int separator = text.Find(kSeparator, start);
        const int end = separator < 0 ? text.GetLength() : separator;
        CString piece = text.Mid(start, end - start);
        if (!piece.Trim(L' ').IsEmpty())
            take(piece);
        start = end + kSeparatorLength;
    }
}

template <class Number>
bool ReadSlot(const CString& text, ULONGLONG& slot)
{
    Number number;
    if (!vak::detail::ReadNumber(text, number))
        return false;
    slot = static_cast<ULONGLONG>(number);
    return true;
}

void ReadStrings(const CString& text, CStringArray& texts)
{
    texts.RemoveAll();
    ForEachPiece(text, [&](const CString& piece) { texts.Add(piece); });
}

void ReadUInts(const CString& text, CTagValue::UIntArray& numbers)
{
    numbers.RemoveAll();
    ForEachPiece(text, [&](const CString& piece) {
        std::int32_t number;
        if (vak::detail::ReadNumber(piece, number))
            numbers.Add(static_cast<unsigned int>(number));
    });
}

void ReadFloats(const CString& text, CTagValue::FloatArray& numbers)
{
    numbers.RemoveAll();
    ForEachPiece(text, [&](const CString& piece) {
        float number;
        if (vak::detail::ReadNumber(piece, number))
            numbers.Add(number);
    });
}

} // namespace

int CTagValue::HandleParametersAndConvertToType(_TAGDATA_INFO wanted, const CString& parameters)
{
    ApplyParameters(parameters);
    if (m_kind == TAGDATA_NONE)
        return 0;
    const _TAGDATA_INFO kind = vak::TagKind(wanted);
    if (kind == TAGDATA_NONE)
        return 1;
    if (vak::TagStorage(kind) != vak::TagStorage(m_kind) && !ConvertTo(kind))
        return 0;
    m_kind = kind;
    return 1;
}

/// Puts the data in the place of another storage class; false, and nothing is changed, where there is no such
/// conversion.
bool CTagValue::ConvertTo(_TAGDATA_INFO wanted)
{
    if (vak::TagStorage(m_kind) == TAGDATA_TEXT)
        return ConvertText(wanted);
    if (wanted == TAGDATA_TEXT)
        return ConvertToText();
    if (m_kind == TAGDATA_UINT)
        return ConvertUInt(wanted);
    return m_kind == TAGDATA_FLOAT && ConvertFloat(wanted);
}

bool CTagValue::ConvertToText()
{
    switch (m_kind) {
    case TAGDATA_UINT:
        SetText(Formatted(L"%u", GetUInt()));
        return true;
    case TAGDATA_INT:
        SetText(Formatted(L"%d", GetInt()));
        return true;
    case TAGDATA_BOOL:
        SetText(BoolText(m_integer != 0));
        return true;
    case TAGDATA_FILESIZE:
        SetText(fileGetSizeText(m_integer));
        return true;
    case TAGDATA_COLOR:
        SetText(ColorText(GetColor()));
        return true;
    case TAGDATA_FLOAT:
        SetText(Formatted(L"%.3f", double{m_float}));
        return true;
    case TAGDATA_DURATION:
        SetText(DurationText(m_float));
        return true;
    case TAGDATA_LENGTH:
        SetText(LengthText(m_float));
        return true;
    case TAGDATA_RESOLUTION:
        SetText(Formatted(L"%f dpi", double{m_float}));
        return true;
    case TAGDATA_DATE:
        SetText(fileGetDateText(GetDate(), 1, 1, 0));
        return true;
    case TAGDATA_CUSTOMINFO:
        SetText(BlockText(GetCustomPtr(), GetCustomSize()));
        return true;
    case TAGDATA_STRINGARRAY:
        SetText(ArrayText(GetStringArray(), [](CString& text, const CString& element) {
            text += element;
            text += kSeparator;
        }));
        return true;
    case TAGDATA_UINTARRAY:
        SetText(ArrayText(GetUIntArray(), [](CString& text, unsigned int element) {
            text.AppendFormat(L"%d; ", static_cast<int>(element));
        }));
        return true;
    case TAGDATA_FLOATARRAY:
        SetText(ArrayText(GetFloatArray(),
                          [](CString& text, float element) { text.AppendFormat(L"%f; ", double{element}); }));
        return true;
    default:
        return false;
    }
}

bool CTagValue::ConvertText(_TAGDATA_INFO wanted)
{
    const CString& text = Held(m_text);
    switch (vak::TagStorage(wanted)) {
    case TAGDATA_CUSTOMDATA:
        // As many bytes as there are characters, which is half of them.
        SetCustomInfo(text.GetString(), static_cast<unsigned int>(text.GetLength()));
        return true;
    case TAGDATA_UINT:
        return wanted == TAGDATA_INT ? ReadSlot<std::int64_t>(text, m_integer)
                                     : ReadSlot<std::uint64_t>(text, m_integer);
    case TAGDATA_FLOAT:
        return vak::detail::ReadNumber(text, m_float);
    case TAGDATA_DATE: {
        CTime date;
        if (fileTextToTime(text, date) == 0)
            return false;
        SetDate(date);
        return true;
    }
    case TAGDATA_STRINGARRAY:
        ReadStrings(text, Made(m_stringArray));
        return true;
    case TAGDATA_UINTARRAY:
        ReadUInts(text, Made(m_uintArray));
        return true;
    case TAGDATA_FLOATARRAY:
        ReadFloats(text, Made(m_floatArray));
        return true;
    default:
        return false;
    }
}

bool CTagValue::ConvertUInt(_TAGDATA_INFO wanted)
{
    if (wanted == TAGDATA_UINTARRAY)
        AddUInt(GetUInt());
    else if (wanted == TAGDATA_FLOATARRAY)
        AddFloat(static_cast<float>(m_integer));
    else
        return false;
    return true;
}

bool CTagValue::ConvertFloat(_TAGDATA_INFO wanted)
{
    if (wanted == TAGDATA_UINTARRAY)
        AddUInt(vak::detail::Truncate32(m_float));
    else if (wanted == TAGDATA_FLOATARRAY)
        AddFloat(m_float);
    else if (wanted == TAGDATA_UINT || wanted == TAGDATA_BOOL)
        m_integer = vak::detail::Truncate64(m_float);
    else
        return false;
    return true;
}
