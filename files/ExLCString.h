#pragma once

#include "framework/base/String.h"

/// A wide string that keeps itself in lower case: whatever it is made from or assigned is folded. Other
/// changes (SetAt, Append ...) are not.
class CExLCString : public CString
{
public:
    CExLCString() = default;
    CExLCString(const CExLCString& text) : CString(text) { MakeLower(); }
    CExLCString(const CString& text) : CString(text) { MakeLower(); }
    CExLCString(LPCWSTR text) : CString(text) { MakeLower(); }
    CExLCString(LPCSTR text) : CString(text) { MakeLower(); }

    CExLCString& operator=(const CExLCString& text) { return Assign<CString>(text); }
    CExLCString& operator=(const CString& text) { return Assign(text); }
    CExLCString& operator=(LPCWSTR text) { return Assign(text); }
    CExLCString& operator=(LPCSTR text) { return Assign(text); }
    CExLCString& operator=(wchar_t ch) { return Assign(ch); }

private:
    template <class Text>
    CExLCString& Assign(const Text& text)
    {
        CString::operator=(text);
        MakeLower();
        return *this;
    }
};
