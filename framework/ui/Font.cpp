#include "framework/ui/Font.h"

IMPLEMENT_DYNAMIC(CFont, CGdiObject)

BOOL CFont::CreatePointFont(int pointSize, LPCTSTR faceName)
{
    if (GetSafeHandle())
        return FALSE;
    const HDC screen = GetDC(nullptr);
    const int pixelsPerInch = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    constexpr int kTenthsPerInch = 720;
    return Attach(CreateFont(-MulDiv(pointSize, pixelsPerInch, kTenthsPerInch), 0, 0, 0, FW_NORMAL, FALSE,
                             FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                             DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE, faceName));
}
