#pragma once

/// The platform's names, brought in at one place.
///
/// On Windows this is <windows.h>, wide and lean, as the platform's own framework includes it, so that its
/// renaming macros (GetClassName, DeleteFile, LoadString ...) hit the library and its users alike. Elsewhere
/// the few types and constants that the interface needs are defined here, with the platform's widths: `LONG`
/// and `DWORD` are 32 bits on both builds, while the language's `long` is not.

#if defined(_WIN32)

#if defined(_WINDOWS_) && !defined(UNICODE)
#error "define UNICODE and _UNICODE before the first include of <windows.h>: the library's interface is wide"
#endif
#ifndef UNICODE
#define UNICODE
#endif
#ifndef _UNICODE
#define _UNICODE
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#if defined(VAK_BUILDING_LIBRARY)
#define VAK_API __declspec(dllexport)
#else
#define VAK_API __declspec(dllimport)
#endif

#else

#include <cstddef>
#include <cstdint>

static_assert(sizeof(wchar_t) == 2, "build with -fshort-wchar: wide text is UTF-16 on every build");

#define VAK_API

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using SHORT = std::int16_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
// Not std::int64_t, which is `long` here: an archive takes these and refuses the 8-byte `long`.
using LONGLONG = long long;
using ULONGLONG = unsigned long long;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using INT = int;
using UINT = unsigned int;
using PUINT = unsigned int*;
using BOOL = int;
using CHAR = char;
using WCHAR = wchar_t;
using TCHAR = wchar_t;
using LPVOID = void*;
using LPCVOID = const void*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using LPTSTR = wchar_t*;
using LPCTSTR = const wchar_t*;
using LPBYTE = BYTE*;
using LANGID = WORD;
using LCID = DWORD;
using HANDLE = void*;
using HINSTANCE = struct HINSTANCE__*;
using HMODULE = HINSTANCE;
using HWND = struct HWND__*;

struct tagPOINT
{
    LONG x;
    LONG y;
};
using POINT = tagPOINT;

struct tagSIZE
{
    LONG cx;
    LONG cy;
};
using SIZE = tagSIZE;

struct tagRECT
{
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using RECT = tagRECT;
using LPRECT = RECT*;
using LPCRECT = const RECT*;

struct FILETIME
{
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

struct SYSTEMTIME
{
    WORD wYear;
    WORD wMonth;
    WORD wDayOfWeek;
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
};

#define TRUE 1
#define FALSE 0
#define MAX_PATH 260
#define CALLBACK
#define TEXT(text) L##text

constexpr UINT CP_ACP = 0;
constexpr UINT CP_UTF8 = 65001;

constexpr UINT MB_OK = 0x00;
constexpr UINT MB_OKCANCEL = 0x01;
constexpr UINT MB_YESNOCANCEL = 0x03;
constexpr UINT MB_YESNO = 0x04;
constexpr UINT MB_ICONHAND = 0x10;
constexpr UINT MB_ICONSTOP = MB_ICONHAND;
constexpr UINT MB_ICONQUESTION = 0x20;
constexpr UINT MB_ICONEXCLAMATION = 0x30;
constexpr UINT MB_ICONINFORMATION = 0x40;
constexpr UINT MB_DEFBUTTON2 = 0x100;
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

#endif

#ifndef _T
#define _T(text) TEXT(text)
#endif

/// Marks what is exported only so that the library's own tests reach it; not part of the interface.
#define VAK_INTERNAL_API VAK_API

namespace vak {
/// The interface version that plug-ins are checked against: major in the high 16 bits, minor in the low 16.
constexpr unsigned int kInterfaceVersion = 0x50000;
} // namespace vak
