#pragma once

#include "framework/base/Platform.h"

/// Switches the run-time library's locale for the lifetime of the object.
///
/// The locale is the whole process's: nobody else may depend on it meanwhile, and objects of one category end
/// in the reverse order of their beginning.
class VAK_API CSwitchLocale
{
public:
    /// Sets the locale `name` for `category` (LC_ALL, LC_NUMERIC ...). A name that the run-time library does
    /// not know changes nothing.
    CSwitchLocale(int category, LPCWSTR name);
    /// Sets the locale back.
    ~CSwitchLocale();
    CSwitchLocale(const CSwitchLocale&) = delete;
    CSwitchLocale& operator=(const CSwitchLocale&) = delete;

protected:
    int m_category;
    char* m_previous; ///< owned; null when the run-time library did not tell
};
