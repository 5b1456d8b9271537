#pragma once

#include "framework/base/Exception.h"

/// The exception's text, or `otherwise` when it has none; deletes it.
inline CString TakeText(CException* failure, LPCWSTR otherwise)
{
    CString text;
    failure->GetErrorMessage(text.GetBuffer(512), 512);
    text.ReleaseBuffer();
    failure->Delete();
    return text.IsEmpty() ? CString(otherwise) : text;
}
