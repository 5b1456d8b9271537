#include "view/VakTracker.h"

#include "framework/base/Exception.h"
#include "framework/ui/DC.h"
#include "framework/ui/Wnd.h"

#include "view/detail/DeviceCoordinates.h"
#include "view/detail/Saturated.h"
#include "view/detail/TrackerDrag.h"
#include "view/detail/TrackerShape.h"
#include "view/detail/TrackerTools.h"

#include <algorithm>

using vak::detail::DeviceCoordinates;
using vak::detail::Inflated;
using vak::detail::Normalized;
using vak::detail::TrackerTools;
using vak::detail::TrackerWatch;

namespace {

constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kRed = RGB(255, 0, 0);
/// Destination AND pattern: the pattern's white leaves what is there.
constexpr DWORD kPatternOnTop = 0x00A000C9;

void FillPattern(CDC& dc, const CRect& area, DWORD operation)
{
    if (!area.IsRectEmpty())
        dc.PatBlt(area.left, area.top, area.Width(), area.Height(), operation);
}

} // namespace

namespace vak::detail {

TrackerTools::TrackerTools()
    : dottedBlack(PS_DOT, 0, kBlack), dottedRed(PS_DOT, 0, kRed),
      solidRed(PS_SOLID, 0, kRed), cursors{LoadCursor(nullptr, IDC_SIZENWSE),
                                           LoadCursor(nullptr, IDC_SIZENESW), LoadCursor(nullptr, IDC_SIZENS),
                                           LoadCursor(nullptr, IDC_SIZEWE), LoadCursor(nullptr, IDC_SIZEALL)}
{
    const WORD rows[8] = {0x11, 0x22, 0x44, 0x88, 0x11, 0x22, 0x44, 0x88};
    CBitmap pattern;
    if (!pattern.CreateBitmap(8, 8, 1, 1, rows) || !hatch.CreatePatternBrush(&pattern))
        AfxThrowResourceException();
}

TrackerTools& TrackerTools::Shared()
{
    static TrackerTools tools;
    return tools;
}

HCURSOR TrackerTools::CursorAt(int hit) const
{
    constexpr int kCursorOf[] = {0, 1, 0, 1, 2, 3, 2, 3, 4};
    return cursors[kCursorOf[hit]];
}

} // namespace vak::detail

void CVakTracker::Draw(CDC* dc)
{
    if (!dc)
        return;
    ReachIn(WindowFromDC(dc->GetSafeHdc()));
    Follow();
    const DeviceCoordinates coordinates(*dc);
    DrawHatching(*dc);
    DrawOutline(*dc);
    if (m_style & (vak::ResizeInside | vak::ResizeOutside | vak::HatchedInside))
        DrawHandles(*dc);
}

void CVakTracker::DrawHatching(CDC& dc) const
{
    const CRect rect = Normalized(m_rect);
    dc.SetBrushOrg(CPoint());
    dc.SelectObject(&TrackerTools::Shared().hatch);
    // The set bits of the pattern are its lines.
    dc.SetTextColor(kWhite);
    dc.SetBkColor(kBlack);
    if (m_style & vak::HatchedInside)
        FillPattern(dc, rect, kPatternOnTop);
    if ((m_style & vak::HatchedBorder) == 0)
        return;
    const CRect around = Inflated(rect, m_handleSize - 1);
    FillPattern(dc, CRect(around.left, around.top, around.right, rect.top), PATCOPY);
    FillPattern(dc, CRect(around.left, rect.bottom, around.right, around.bottom), PATCOPY);
    FillPattern(dc, CRect(around.left, rect.top, rect.left, rect.bottom), PATCOPY);
    FillPattern(dc, CRect(rect.right, rect.top, around.right, rect.bottom), PATCOPY);
}

void CVakTracker::DrawOutline(CDC& dc) const
{
    if ((m_style & (vak::SolidOutline | vak::DottedOutline)) == 0)
        return;
    TrackerTools& tools = TrackerTools::Shared();
    // Red dots tell that the ratio is held.
    CPen& dotted = m_constraint != 0 ? tools.dottedRed : tools.dottedBlack;
    dc.SelectObject(m_style & vak::SolidOutline ? &tools.solidRed : &dotted);
    dc.SelectStockObject(NULL_BRUSH);
    dc.SetROP2(R2_COPYPEN);
    dc.SetBkMode(OPAQUE);
    dc.SetBkColor(kWhite);
    dc.Rectangle(Inflated(Normalized(m_rect), 1));
}

void CVakTracker::DrawHandles(CDC& dc) const
{
    const vak::detail::TrackerShape shape = Shape();
    for (int hit = 0; hit < vak::detail::kHandleCount; ++hit)
        if (shape.mask >> hit & 1)
            dc.FillSolidRect(vak::detail::HandleBox(shape, hit), kBlack);
}

void CVakTracker::DrawTrackerRect(tagRECT const* rect, CWnd* clipTo, CDC* dc, CWnd* wnd)
{
    const CRect shown(rect);
    CRect outline = Normalized(shown);
    if (clipTo)
        wnd->MapWindowPoints(clipTo, outline);
    CSize size;
    if (!m_finalErase) {
        const int thickness = m_style & vak::HatchedBorder ? std::max(1, m_handleSize - 1) : 1;
        size = CSize(thickness, thickness);
        if (m_style & vak::HatchedBorder)
            outline = Inflated(outline, thickness);
    }
    TrackerWatch watch(*this);
    TellAboutOutline(vak::BeforeOutline, shown);
    if (!watch.IsAlive())
        return;
    {
        const DeviceCoordinates coordinates(*dc);
        dc->DrawDragRect(outline, size, m_erase ? &m_lastDragRect : nullptr, m_lastDragSize);
    }
    m_erase = !m_finalErase;
    m_lastDragRect = outline;
    m_lastDragSize = size;
    if (m_drag)
        m_drag->NoteOutline(m_erase, outline, size);
    TellAboutOutline(vak::AfterOutline, shown);
}

void CVakTracker::TellAboutOutline(int event, CRect const& rect)
{
    if (!m_drag || !m_drag->IsSilent())
        OnTrackerCallback(event, rect);
}
