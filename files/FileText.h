#pragma once

#include "framework/base/Platform.h"
#include "framework/base/String.h"
#include "framework/base/Time.h"

/// Texts of file dates and sizes, in the language of the library's texts.

/// Returns a date as text, in local time.
///
/// `withDate` gives "01/09/2003", together with `longText` "Lundi 1er Septembre 2003" or
/// "Monday 1 September 2003"; `withHour` adds "10:00", after a blank when there is a date. Empty when neither
/// is asked for, or when the time has no local form.
VAK_API CString fileGetDateText(const CTime& date, int withDate, int withHour, int longText);

/// Returns a size as text: whole bytes below 1024 ("1 octet", "812 octets"; "812 bytes"), else the largest
/// unit of 1024 steps with two decimals, rounded half up ("1,50 Ko"; "1.50 KB").
VAK_API CString fileGetSizeText(ULONGLONG bytes);

/// Reads a date in any of the forms that `fileGetDateText` writes, in either language, whatever the case.
///
/// Numbers may lack leading zeros, seconds may follow the minutes, and blanks may surround the whole; a lone
/// hour is taken as today's. The weekday of a long date must be one, but need not be right. Returns 0, and
/// leaves `time` alone, for anything else, dates that do not exist and years that `CTime` does not hold.
VAK_API int fileTextToTime(const CString& text, CTime& time);
