#include "files/FileText.h"

#include "framework/base/Exception.h"
#include "framework/base/StringTable.h"
#include "resources/Ids.h"

namespace {

constexpr LANGID kLanguages[] = {1036, 1033};

CString Text(UINT id)
{
    CString text;
    vak::LoadText(text, id);
    return text;
}

CString LongDate(const CTime& date)
{
    CString day;
    day.Format(L"%d", date.GetDay());
    if (date.GetDay() == 1)
        day = Text(IDS_DATE_FIRST_DAY);
    CString text;
    text.Format(L"%s %s %s %04d", Text(IDS_DATE_SUNDAY + date.GetDayOfWeek() - 1).GetString(),
                day.GetString(), Text(IDS_DATE_JANUARY + date.GetMonth() - 1).GetString(), date.GetYear());
    return text;
}

CString ShortDate(const CTime& date)
{
    CString text;
    text.Format(L"%02d/%02d/%04d", date.GetDay(), date.GetMonth(), date.GetYear());
    return text;
}

CString Hour(const CTime& date)
{
    CString text;
    text.Format(L"%02d:%02d", date.GetHour(), date.GetMinute());
    return text;
}

/// Returns `bytes` in hundredths of the unit of 2 to the power of `shift` bytes, rounded half up. Digit by
/// digit, so that the largest size does not overflow.
ULONGLONG Hundredths(ULONGLONG bytes, int shift)
{
    const ULONGLONG mask = (1ull << shift) - 1;
    ULONGLONG result = bytes >> shift;
    ULONGLONG rest = bytes & mask;
    for (int digit = 0; digit < 2; ++digit) {
        rest *= 10;
        result = result * 10 + (rest >> shift);
        rest &= mask;
    }
    return result + (rest >> (shift - 1));
}

struct Moment
{
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

/// Reads a whole piece as a number of at most `digits` digits, from `least` to `most`.
bool ReadNumber(const CString& piece, int digits, int least, int most, int& number)
{
    if (piece.IsEmpty() || piece.GetLength() > digits)
        return false;
    int value = 0;
    for (int i = 0; i < piece.GetLength(); ++i) {
        if (piece[i] < L'0' || piece[i] > L'9')
            return false;
        value = value * 10 + (piece[i] - L'0');
    }
    number = value;
    return value >= least && value <= most;
}

/// Splits `text` at `separator` into at most `most` pieces; returns their number, 0 when there are more.
int Split(const CString& text, wchar_t separator, CString* pieces, int most)
{
    int start = 0;
    for (int count = 0; count < most; ++count) {
        const int end = text.Find(separator, start);
        pieces[count] = end < 0 ? text.Mid(start) : text.Mid(start, end - start);
        if (end < 0)
            return count + 1;
        start = end + 1;
    }
    return 0;
}

bool ReadHour(const CString& text, Moment& moment)
{
    CString pieces[3];
    const int count = Split(text, L':', pieces, 3);
    return count >= 2 && ReadNumber(pieces[0], 2, 0, 23, moment.hour) &&
           ReadNumber(pieces[1], 2, 0, 59, moment.minute) &&
           (count == 2 || ReadNumber(pieces[2], 2, 0, 59, moment.second));
}

bool ReadShortDate(const CString& text, Moment& moment)
{
    CString pieces[3];
    return Split(text, L'/', pieces, 3) == 3 && ReadNumber(pieces[0], 2, 1, 31, moment.day) &&
           ReadNumber(pieces[1], 2, 1, 12, moment.month) && ReadNumber(pieces[2], 4, 0, 9999, moment.year);
}

/// Returns which of the `count` texts from `first` on it is in the given language, counted from 1; 0 for
/// none.
int FindText(const CString& wanted, UINT first, int count, LANGID language)
{
    CString text;
    for (int i = 0; i < count; ++i) {
        if (vak::LoadText(text, first + i, language) && text.CompareNoCase(wanted) == 0)
            return i + 1;
    }
    return 0;
}

/// Reads weekday, day, month, year.
bool ReadLongDate(const CString* pieces, LANGID language, Moment& moment)
{
    if (FindText(pieces[0], IDS_DATE_SUNDAY, 7, language) == 0)
        return false;
    if (FindText(pieces[1], IDS_DATE_FIRST_DAY, 1, language) != 0)
        moment.day = 1;
    else if (!ReadNumber(pieces[1], 2, 1, 31, moment.day))
        return false;
    moment.month = FindText(pieces[2], IDS_DATE_JANUARY, 12, language);
    return moment.month != 0 && ReadNumber(pieces[3], 4, 0, 9999, moment.year);
}

bool ReadDate(const CString* pieces, int count, Moment& moment)
{
    if (count == 1)
        return ReadShortDate(pieces[0], moment);
    if (count != 4)
        return false;
    for (LANGID language : kLanguages) {
        if (ReadLongDate(pieces, language, moment))
            return true;
    }
    return false;
}

bool ReadMoment(const CString& text, Moment& moment)
{
    constexpr int kMostPieces = 5;
    CString pieces[kMostPieces];
    int count = Split(text, L' ', pieces, kMostPieces);
    if (count == 0)
        return false;
    if (ReadHour(pieces[count - 1], moment))
        --count;
    if (count > 0)
        return ReadDate(pieces, count, moment);
    const CTime today = CTime::GetCurrentTime();
    moment.year = today.GetYear();
    moment.month = today.GetMonth();
    moment.day = today.GetDay();
    return true;
}

} // namespace

CString fileGetDateText(const CTime& date, int withDate, int withHour, int longText)
{
    tm parts;
    if (date.GetLocalTm(&parts) == nullptr)
        return CString();
    CString text;
    if (withDate)
        text = longText ? LongDate(date) : ShortDate(date);
    if (withDate && withHour)
        text += L' ';
    if (withHour)
        text += Hour(date);
    return text;
}

CString fileGetSizeText(ULONGLONG bytes)
{
    CString number;
    CString text;
    if (bytes < 1024) {
        number.Format(L"%I64u", bytes);
        const UINT unit = bytes == 0 ? IDS_SIZE_NO_BYTES : bytes == 1 ? IDS_SIZE_BYTE : IDS_SIZE_BYTES;
        text.Format(unit, number.GetString());
        return text;
    }
    UINT unit = IDS_SIZE_KILO;
    int shift = 10;
    ULONGLONG hundredths = Hundredths(bytes, shift);
    while (unit < IDS_SIZE_EXA && hundredths >= 1024 * 100) {
        ++unit;
        shift += 10;
        hundredths = Hundredths(bytes, shift);
    }
    number.Format(L"%I64u%s%02I64u", hundredths / 100, Text(IDS_SIZE_DECIMAL_MARK).GetString(),
                  hundredths % 100);
    text.Format(unit, number.GetString());
    return text;
}

int fileTextToTime(const CString& text, CTime& time)
{
    CString trimmed = text;
    trimmed.Trim(L' ');
    Moment moment;
    if (!ReadMoment(trimmed, moment))
        return 0;
    try {
        const CTime read(moment.year, moment.month, moment.day, moment.hour, moment.minute, moment.second);
        if (read.GetDay() != moment.day)
            return 0;
        time = read;
    } catch (CInvalidArgException* e) {
        e->Delete();
        return 0;
    }
    return 1;
}
