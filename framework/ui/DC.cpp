#include "framework/ui/DC.h"

#include "framework/base/Exception.h"
#include "framework/ui/Wnd.h"

#include <utility>

IMPLEMENT_DYNAMIC(CDC, CObject)
IMPLEMENT_DYNAMIC(CClientDC, CDC)
IMPLEMENT_DYNAMIC(CPaintDC, CDC)

namespace {

/// Without this, drawing in a window that is gone would go to the screen.
HWND HandleOf(const CWnd* window)
{
    if (window && !window->GetSafeHwnd())
        AfxThrowResourceException();
    return window ? window->GetSafeHwnd() : nullptr;
}

} // namespace

CDC::~CDC()
{
    for (const auto& former : m_formers)
        former->Detach();
    DeleteDC();
}

BOOL CDC::Attach(HDC dc)
{
    if (!dc || m_hDC)
        return FALSE;
    m_hDC = dc;
    return TRUE;
}

HDC CDC::Detach()
{
    return std::exchange(m_hDC, nullptr);
}

BOOL CDC::CreateCompatibleDC(CDC* dc)
{
    return !m_hDC && Attach(::CreateCompatibleDC(dc ? dc->m_hDC : nullptr));
}

BOOL CDC::DeleteDC()
{
    return m_hDC && ::DeleteDC(Detach());
}

int CDC::SaveDC()
{
    return ::SaveDC(m_hDC);
}

BOOL CDC::RestoreDC(int saved)
{
    return ::RestoreDC(m_hDC, saved);
}

template <class Object>
Object* CDC::Former(HGDIOBJ handle)
{
    if (!handle || handle == HGDI_ERROR)
        return nullptr;
    // The system uses a handle again, for an object of any kind.
    for (const auto& former : m_formers)
        if (former->GetSafeHandle() == handle && former->IsKindOf(RUNTIME_CLASS(Object)))
            return static_cast<Object*>(former.get());
    auto former = std::make_unique<Object>();
    Object* const object = former.get();
    m_formers.push_back(std::move(former));
    object->Attach(handle);
    return object;
}

template <class Object>
Object* CDC::Select(Object* object)
{
    return object ? Former<Object>(::SelectObject(m_hDC, object->GetSafeHandle())) : nullptr;
}

CPen* CDC::SelectObject(CPen* pen)
{
    return Select(pen);
}

CBrush* CDC::SelectObject(CBrush* brush)
{
    return Select(brush);
}

CBitmap* CDC::SelectObject(CBitmap* bitmap)
{
    return Select(bitmap);
}

CGdiObject* CDC::SelectStockObject(int index)
{
    const HGDIOBJ stock = ::GetStockObject(index);
    const HGDIOBJ former = ::SelectObject(m_hDC, stock);
    switch (GetObjectType(stock)) {
    case OBJ_PEN:
        return Former<CPen>(former);
    case OBJ_BRUSH:
        return Former<CBrush>(former);
    default:
        return Former<CGdiObject>(former);
    }
}

COLORREF CDC::SetTextColor(COLORREF color)
{
    return ::SetTextColor(m_hDC, color);
}

COLORREF CDC::SetBkColor(COLORREF color)
{
    return ::SetBkColor(m_hDC, color);
}

int CDC::SetBkMode(int mode)
{
    return ::SetBkMode(m_hDC, mode);
}

int CDC::SetROP2(int mode)
{
    return ::SetROP2(m_hDC, mode);
}

int CDC::SetMapMode(int mode)
{
    return ::SetMapMode(m_hDC, mode);
}

CPoint CDC::SetBrushOrg(POINT origin)
{
    CPoint former;
    ::SetBrushOrgEx(m_hDC, origin.x, origin.y, &former);
    return former;
}

CPoint CDC::SetViewportOrg(POINT origin)
{
    CPoint former;
    ::SetViewportOrgEx(m_hDC, origin.x, origin.y, &former);
    return former;
}

CPoint CDC::GetViewportOrg() const
{
    CPoint origin;
    ::GetViewportOrgEx(m_hDC, &origin);
    return origin;
}

void CDC::LPtoDP(LPRECT rect) const
{
    ::LPtoDP(m_hDC, reinterpret_cast<POINT*>(rect), 2);
}

void CDC::DPtoLP(LPRECT rect) const
{
    ::DPtoLP(m_hDC, reinterpret_cast<POINT*>(rect), 2);
}

int CDC::GetClipBox(LPRECT rect) const
{
    return ::GetClipBox(m_hDC, rect);
}

int CDC::SelectClipRgn(CRgn* region)
{
    return ::SelectClipRgn(m_hDC, region ? static_cast<HRGN>(region->GetSafeHandle()) : nullptr);
}

int CDC::ExcludeClipRect(LPCRECT rect)
{
    return ::ExcludeClipRect(m_hDC, rect->left, rect->top, rect->right, rect->bottom);
}

int CDC::IntersectClipRect(LPCRECT rect)
{
    return ::IntersectClipRect(m_hDC, rect->left, rect->top, rect->right, rect->bottom);
}

BOOL CDC::Rectangle(LPCRECT rect)
{
    return ::Rectangle(m_hDC, rect->left, rect->top, rect->right, rect->bottom);
}

void CDC::FillRect(LPCRECT rect, CBrush* brush)
{
    ::FillRect(m_hDC, rect, static_cast<HBRUSH>(brush->GetSafeHandle()));
}

void CDC::FillSolidRect(LPCRECT rect, COLORREF color)
{
    SetBkColor(color);
    ::ExtTextOut(m_hDC, 0, 0, ETO_OPAQUE, rect, nullptr, 0, nullptr);
}

void CDC::Draw3dRect(LPCRECT rect, COLORREF topLeft, COLORREF bottomRight)
{
    const CRect frame(rect);
    const CRect top(frame.left, frame.top, frame.right - 1, frame.top + 1);
    const CRect left(frame.left, frame.top, frame.left + 1, frame.bottom - 1);
    const CRect right(frame.right - 1, frame.top, frame.right, frame.bottom);
    const CRect bottom(frame.left, frame.bottom - 1, frame.right, frame.bottom);
    FillSolidRect(top, topLeft);
    FillSolidRect(left, topLeft);
    FillSolidRect(right, bottomRight);
    FillSolidRect(bottom, bottomRight);
}

BOOL CDC::PatBlt(int x, int y, int width, int height, DWORD operation)
{
    return ::PatBlt(m_hDC, x, y, width, height, operation);
}

BOOL CDC::BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY, DWORD operation)
{
    return ::BitBlt(m_hDC, x, y, width, height, source ? source->m_hDC : nullptr, sourceX, sourceY,
                    operation);
}

COLORREF CDC::GetPixel(int x, int y) const
{
    return ::GetPixel(m_hDC, x, y);
}

CBrush* CDC::GetHalftoneBrush()
{
    // Never destroyed: who draws until the very end may hold it selected.
    static CBrush* const halftone = [] {
        const WORD rows[8] = {0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA};
        CBitmap pattern;
        auto* const made = new CBrush;
        if (pattern.CreateBitmap(8, 8, 1, 1, rows))
            made->CreatePatternBrush(&pattern);
        return made;
    }();
    return halftone->GetSafeHandle() ? halftone : nullptr;
}

bool CDC::FrameRegion(LPCRECT rect, SIZE size, CRgn& frame) const
{
    CRect outside(rect);
    CRect inside(rect);
    inside.DeflateRect(size);
    inside &= outside;
    LPtoDP(outside);
    LPtoDP(inside);
    CRgn hole;
    return frame.CreateRectRgnIndirect(outside) && hole.CreateRectRgnIndirect(inside) &&
           frame.CombineRgn(&frame, &hole, RGN_DIFF) != ERROR;
}

void CDC::InvertRegion(CRgn& region, CBrush* brush)
{
    const int saved = SaveDC();
    // What is clipped away stays so; the colours decide which pixels a pattern inverts.
    ::ExtSelectClipRgn(m_hDC, static_cast<HRGN>(region.GetSafeHandle()), RGN_AND);
    SetTextColor(RGB(0, 0, 0));
    SetBkColor(RGB(255, 255, 255));
    SelectObject(brush);
    CRect box;
    GetClipBox(box);
    PatBlt(box.left, box.top, box.Width(), box.Height(), PATINVERT);
    RestoreDC(saved);
}

void CDC::DrawDragRect(LPCRECT rect, SIZE size, LPCRECT last, SIZE lastSize, CBrush* brush, CBrush* lastBrush)
{
    CBrush* const shown = brush ? brush : GetHalftoneBrush();
    CBrush* const former = lastBrush ? lastBrush : GetHalftoneBrush();
    CRgn frame;
    CRgn lastFrame;
    if (!FrameRegion(rect, size, frame) || (last && !FrameRegion(last, lastSize, lastFrame)))
        return;
    if (last && shown != former)
        InvertRegion(lastFrame, former);
    // What both frames cover would be inverted twice.
    if (last && shown == former)
        frame.CombineRgn(&frame, &lastFrame, RGN_XOR);
    InvertRegion(frame, shown);
}

CClientDC::CClientDC(CWnd* window) : m_hWnd(HandleOf(window))
{
    if (!Attach(::GetDC(m_hWnd)))
        AfxThrowResourceException();
}

CClientDC::~CClientDC()
{
    ::ReleaseDC(m_hWnd, Detach());
}

CPaintDC::CPaintDC(CWnd* window) : m_hWnd(HandleOf(window))
{
    if (!Attach(::BeginPaint(m_hWnd, &m_ps)))
        AfxThrowResourceException();
}

CPaintDC::~CPaintDC()
{
    ::EndPaint(m_hWnd, &m_ps);
    Detach();
}
