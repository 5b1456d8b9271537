#include "framework/base/Time.h"

#include "framework/base/Exception.h"
#include "framework/base/SystemTime.h"

#include <chrono>

namespace {

constexpr LONGLONG kUnitsPerSecond = 10000000;
constexpr LONGLONG kSecondsFrom1601 = 11644473600;
/// The end of the year 3000 (UTC), the platform's last moment with components.
constexpr std::int64_t kLastMoment = 0x793406fff;
constexpr int kFirstYear = 1970;
constexpr int kLastYear = 3000;

constexpr LPCTSTR kDays[] = {L"Sunday",   L"Monday", L"Tuesday", L"Wednesday",
                             L"Thursday", L"Friday", L"Saturday"};
constexpr LPCTSTR kMonths[] = {L"January", L"February", L"March",     L"April",   L"May",      L"June",
                               L"July",    L"August",   L"September", L"October", L"November", L"December"};

bool HasComponents(std::int64_t moment)
{
    return moment >= 0 && moment <= kLastMoment;
}

bool IsWithin(int value, int first, int last)
{
    return value >= first && value <= last;
}

/// The moment of a platform time in whole seconds, whatever it is.
std::int64_t MomentOf(const FILETIME& time)
{
    const ULONGLONG units = ULONGLONG{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    return static_cast<std::int64_t>(units / kUnitsPerSecond) - kSecondsFrom1601;
}

std::int64_t MomentOf(int year, int month, int day, int hour, int minute, int second, int summer)
{
    const bool possible = IsWithin(year, kFirstYear, kLastYear) && IsWithin(month, 1, 12) &&
                          IsWithin(day, 1, 31) && IsWithin(hour, 0, 23) && IsWithin(minute, 0, 59) &&
                          IsWithin(second, 0, 59);
    if (!possible)
        AfxThrowInvalidArgException();
    tm components{};
    components.tm_year = year - 1900;
    components.tm_mon = month - 1;
    components.tm_mday = day;
    components.tm_hour = hour;
    components.tm_min = minute;
    components.tm_sec = second;
    components.tm_isdst = summer;
    const std::int64_t moment = vak::system::FromLocalTime(components);
    if (!HasComponents(moment))
        AfxThrowInvalidArgException();
    return moment;
}

/// Appends what one format code stands for; false for an unknown one.
bool AppendComponent(CString& out, wchar_t code, const tm& time)
{
    const int hour12 = time.tm_hour % 12 == 0 ? 12 : time.tm_hour % 12;
    switch (code) {
    case L'Y':
        out.AppendFormat(L"%04d", time.tm_year + 1900);
        return true;
    case L'y':
        out.AppendFormat(L"%02d", time.tm_year % 100);
        return true;
    case L'm':
        out.AppendFormat(L"%02d", time.tm_mon + 1);
        return true;
    case L'd':
        out.AppendFormat(L"%02d", time.tm_mday);
        return true;
    case L'H':
        out.AppendFormat(L"%02d", time.tm_hour);
        return true;
    case L'I':
        out.AppendFormat(L"%02d", hour12);
        return true;
    case L'M':
        out.AppendFormat(L"%02d", time.tm_min);
        return true;
    case L'S':
        out.AppendFormat(L"%02d", time.tm_sec);
        return true;
    case L'j':
        out.AppendFormat(L"%03d", time.tm_yday + 1);
        return true;
    case L'w':
        out.AppendFormat(L"%d", time.tm_wday);
        return true;
    case L'p':
        out += time.tm_hour < 12 ? L"AM" : L"PM";
        return true;
    case L'A':
        out += kDays[time.tm_wday];
        return true;
    case L'a':
        out += CString(kDays[time.tm_wday], 3);
        return true;
    case L'B':
        out += kMonths[time.tm_mon];
        return true;
    case L'b':
        out += CString(kMonths[time.tm_mon], 3);
        return true;
    case L'%':
        out += L'%';
        return true;
    default:
        return false;
    }
}

CString FormatComponents(LPCTSTR format, const tm* time)
{
    CString out;
    if (time == nullptr || format == nullptr)
        return out;
    for (; *format != 0; ++format) {
        if (*format != L'%')
            out += *format;
        else if (!AppendComponent(out, *++format, *time))
            return CString();
    }
    return out;
}

} // namespace

CTimeSpan::CTimeSpan(LONG lDays, int nHours, int nMins, int nSecs)
    : m_timeSpan(((std::int64_t{lDays} * 24 + nHours) * 60 + nMins) * 60 + nSecs)
{
}

CTimeSpan& CTimeSpan::operator+=(CTimeSpan span)
{
    m_timeSpan += span.m_timeSpan;
    return *this;
}

CTimeSpan& CTimeSpan::operator-=(CTimeSpan span)
{
    m_timeSpan -= span.m_timeSpan;
    return *this;
}

CTime CTime::GetCurrentTime()
{
    using std::chrono::system_clock;
    return CTime(static_cast<std::int64_t>(system_clock::to_time_t(system_clock::now())));
}

BOOL CTime::IsValidFILETIME(const FILETIME& fileTime)
{
    return HasComponents(MomentOf(fileTime));
}

CTime::CTime(int nYear, int nMonth, int nDay, int nHour, int nMin, int nSec, int nDST)
    : m_time(MomentOf(nYear, nMonth, nDay, nHour, nMin, nSec, nDST))
{
}

CTime::CTime(const SYSTEMTIME& st, int nDST)
    : m_time(MomentOf(st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond, nDST))
{
}

CTime::CTime(const FILETIME& ft, int) : m_time(IsValidFILETIME(ft) ? MomentOf(ft) : 0) {}

tm* CTime::GetLocalTm(tm* ptm) const
{
    return ptm != nullptr && HasComponents(m_time) && vak::system::ToLocalTime(m_time, *ptm) ? ptm : nullptr;
}

tm* CTime::GetGmtTm(tm* ptm) const
{
    return ptm != nullptr && HasComponents(m_time) && vak::system::ToUtcTime(m_time, *ptm) ? ptm : nullptr;
}

bool CTime::GetAsSystemTime(SYSTEMTIME& st) const
{
    tm time;
    if (GetLocalTm(&time) == nullptr)
        return false;
    st.wYear = static_cast<WORD>(time.tm_year + 1900);
    st.wMonth = static_cast<WORD>(time.tm_mon + 1);
    st.wDayOfWeek = static_cast<WORD>(time.tm_wday);
    st.wDay = static_cast<WORD>(time.tm_mday);
    st.wHour = static_cast<WORD>(time.tm_hour);
    st.wMinute = static_cast<WORD>(time.tm_min);
    st.wSecond = static_cast<WORD>(time.tm_sec);
    st.wMilliseconds = 0;
    return true;
}

int CTime::GetYear() const
{
    tm time;
    return GetLocalTm(&time) != nullptr ? time.tm_year + 1900 : 0;
}

int CTime::GetMonth() const
{
    tm time;
    return GetLocalTm(&time) != nullptr ? time.tm_mon + 1 : 0;
}

int CTime::GetDay() const
{
    tm time;
    return GetLocalTm(&time) != nullptr ? time.tm_mday : 0;
}

int CTime::GetHour() const
{
    tm time;
    return GetLocalTm(&time) != nullptr ? time.tm_hour : 0;
}

int CTime::GetMinute() const
{
    tm time;
    return GetLocalTm(&time) != nullptr ? time.tm_min : 0;
}

int CTime::GetSecond() const
{
    tm time;
    return GetLocalTm(&time) != nullptr ? time.tm_sec : 0;
}

int CTime::GetDayOfWeek() const
{
    tm time;
    return GetLocalTm(&time) != nullptr ? time.tm_wday + 1 : 0;
}

CTime& CTime::operator+=(CTimeSpan span)
{
    m_time += span.GetTimeSpan();
    return *this;
}

CTime& CTime::operator-=(CTimeSpan span)
{
    m_time -= span.GetTimeSpan();
    return *this;
}

CString CTime::Format(LPCTSTR pszFormat) const
{
    tm time;
    return FormatComponents(pszFormat, GetLocalTm(&time));
}

CString CTime::FormatGmt(LPCTSTR pszFormat) const
{
    tm time;
    return FormatComponents(pszFormat, GetGmtTm(&time));
}

FILETIME vak::detail::FileTimeFromTime(CTime time)
{
    const auto units = static_cast<ULONGLONG>(time.GetTime() + kSecondsFrom1601) * kUnitsPerSecond;
    return {static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
}
