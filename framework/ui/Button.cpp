#include "framework/ui/Button.h"

IMPLEMENT_DYNAMIC(CButton, CWnd)

BOOL CButton::Create(LPCTSTR caption, DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CreateEx(0, L"BUTTON", caption, style, rect, parent, id);
}
