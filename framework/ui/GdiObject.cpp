#include "framework/ui/GdiObject.h"

#include "framework/base/Exception.h"
#include "framework/ui/DC.h"

#include <utility>

IMPLEMENT_DYNAMIC(CGdiObject, CObject)
IMPLEMENT_DYNAMIC(CPen, CGdiObject)
IMPLEMENT_DYNAMIC(CBrush, CGdiObject)
IMPLEMENT_DYNAMIC(CBitmap, CGdiObject)
IMPLEMENT_DYNAMIC(CRgn, CGdiObject)

namespace {

HRGN RegionOf(const CRgn* region)
{
    return region ? static_cast<HRGN>(region->GetSafeHandle()) : nullptr;
}

} // namespace

CGdiObject::~CGdiObject()
{
    DeleteObject();
}

BOOL CGdiObject::Attach(HGDIOBJ object)
{
    if (!object || m_hObject)
        return FALSE;
    m_hObject = object;
    return TRUE;
}

HGDIOBJ CGdiObject::Detach()
{
    return std::exchange(m_hObject, nullptr);
}

BOOL CGdiObject::DeleteObject()
{
    return m_hObject && ::DeleteObject(Detach());
}

CPen::CPen(int style, int width, COLORREF color)
{
    if (!CreatePen(style, width, color))
        AfxThrowResourceException();
}

BOOL CPen::CreatePen(int style, int width, COLORREF color)
{
    return !m_hObject && Attach(::CreatePen(style, width, color));
}

CBrush::CBrush(COLORREF color)
{
    if (!CreateSolidBrush(color))
        AfxThrowResourceException();
}

CBrush::CBrush(CBitmap* pattern)
{
    if (!CreatePatternBrush(pattern))
        AfxThrowResourceException();
}

BOOL CBrush::CreateSolidBrush(COLORREF color)
{
    return !m_hObject && Attach(::CreateSolidBrush(color));
}

BOOL CBrush::CreatePatternBrush(CBitmap* pattern)
{
    return !m_hObject && Attach(::CreatePatternBrush(static_cast<HBITMAP>(pattern->GetSafeHandle())));
}

BOOL CBitmap::CreateBitmap(int width, int height, UINT planes, UINT bitCount, const void* bits)
{
    return !m_hObject && Attach(::CreateBitmap(width, height, planes, bitCount, bits));
}

BOOL CBitmap::CreateCompatibleBitmap(CDC* dc, int width, int height)
{
    return !m_hObject && Attach(::CreateCompatibleBitmap(dc->GetSafeHdc(), width, height));
}

BOOL CRgn::CreateRectRgnIndirect(LPCRECT rect)
{
    return !m_hObject && Attach(::CreateRectRgnIndirect(rect));
}

int CRgn::CombineRgn(const CRgn* first, const CRgn* second, int mode)
{
    return ::CombineRgn(RegionOf(this), RegionOf(first), RegionOf(second), mode);
}
