#pragma once

#include "framework/base/Platform.h"
#include "framework/base/String.h"

#include <compare>
#include <cstdint>
#include <ctime>

// One platform header makes an old function's name a macro, which would rename CTime::GetCurrentTime.
#undef GetCurrentTime

/// A signed length of time in whole seconds.
class VAK_API CTimeSpan
{
public:
    CTimeSpan() : m_timeSpan(0) {}
    CTimeSpan(std::int64_t time) : m_timeSpan(time) {}
    CTimeSpan(LONG lDays, int nHours, int nMins, int nSecs);

    LONGLONG GetDays() const { return m_timeSpan / 86400; }
    LONGLONG GetTotalHours() const { return m_timeSpan / 3600; }
    int GetHours() const { return static_cast<int>(GetTotalHours() - GetDays() * 24); }
    LONGLONG GetTotalMinutes() const { return m_timeSpan / 60; }
    int GetMinutes() const { return static_cast<int>(GetTotalMinutes() - GetTotalHours() * 60); }
    LONGLONG GetTotalSeconds() const { return m_timeSpan; }
    int GetSeconds() const { return static_cast<int>(GetTotalSeconds() - GetTotalMinutes() * 60); }
    std::int64_t GetTimeSpan() const { return m_timeSpan; }

    CTimeSpan operator+(CTimeSpan span) const { return m_timeSpan + span.m_timeSpan; }
    CTimeSpan operator-(CTimeSpan span) const { return m_timeSpan - span.m_timeSpan; }
    CTimeSpan& operator+=(CTimeSpan span);
    CTimeSpan& operator-=(CTimeSpan span);
    auto operator<=>(const CTimeSpan&) const = default;

private:
    std::int64_t m_timeSpan;
};

/// A moment in whole seconds since 1 January 1970, 00:00 UTC; its components are those of the local time
/// zone.
///
/// Moments before 1970 or after 3000 have no components: the getters then return 0.
class VAK_API CTime
{
public:
    static CTime GetCurrentTime();
    /// Whether CTime(fileTime) is that moment rather than CTime().
    static BOOL IsValidFILETIME(const FILETIME& fileTime);

    CTime() : m_time(0) {}
    CTime(std::int64_t time) : m_time(time) {}
    /// From local time; `nDST` is as tm_isdst: -1 lets the zone decide. Throws CInvalidArgException* when the
    /// components are out of range (year 1970 to 3000) or not a moment.
    CTime(int nYear, int nMonth, int nDay, int nHour, int nMin, int nSec, int nDST = -1);
    /// From local time; milliseconds are dropped. Throws as above.
    CTime(const SYSTEMTIME& st, int nDST = -1);
    /// From UTC; a moment that is out of range gives CTime().
    CTime(const FILETIME& ft, int nDST = -1);

    std::int64_t GetTime() const { return m_time; }
    /// Fills `ptm` with the local (the UTC) components and returns it; null when the moment has
    /// none or `ptm` is null.
    tm* GetLocalTm(tm* ptm) const;
    tm* GetGmtTm(tm* ptm) const;
    /// Fills `st` with the local components; false when the moment has none.
    bool GetAsSystemTime(SYSTEMTIME& st) const;
    int GetYear() const;
    int GetMonth() const; ///< 1 to 12
    int GetDay() const;   ///< 1 to 31
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;
    int GetDayOfWeek() const; ///< 1 (Sunday) to 7

    CTime operator+(CTimeSpan span) const { return m_time + span.GetTimeSpan(); }
    CTime operator-(CTimeSpan span) const { return m_time - span.GetTimeSpan(); }
    CTimeSpan operator-(CTime time) const { return m_time - time.m_time; }
    CTime& operator+=(CTimeSpan span);
    CTime& operator-=(CTimeSpan span);
    auto operator<=>(const CTime&) const = default;

    /// The local (the UTC) components by strftime's codes %Y %y %m %d %H %I %M %S %j %w %p %A %a %B %b %%,
    /// with English names, whatever the C locale. Any other code, or a moment without components, gives an
    /// empty text.
    CString Format(LPCTSTR pszFormat) const;
    CString FormatGmt(LPCTSTR pszFormat) const;

private:
    std::int64_t m_time;
};

namespace vak::detail {

/// The moment in the platform's units of 100 ns since 1601, UTC.
VAK_API FILETIME FileTimeFromTime(CTime time);

} // namespace vak::detail
