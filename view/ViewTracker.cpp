#include "view/ViewTracker.h"

#include "framework/ui/Wnd.h"

#include "view/VakCoord.h"
#include "view/detail/Saturated.h"
#include "view/detail/TrackerAdjust.h"
#include "view/detail/TrackerDrag.h"
#include "view/detail/TrackerShape.h"
#include "view/detail/TrackerWatch.h"

using vak::detail::Normalized;
using vak::detail::TrackerWatch;

namespace {

/// Sets a word to a value as long as it lives; the tracker that the word belongs to may end before.
class Meanwhile
{
public:
    Meanwhile(const TrackerWatch& watch, unsigned int& word, unsigned int value)
        : m_watch(watch), m_word(word), m_former(word)
    {
        word = value;
    }
    Meanwhile(const Meanwhile&) = delete;
    Meanwhile& operator=(const Meanwhile&) = delete;
    ~Meanwhile()
    {
        if (m_watch.IsAlive())
            m_word = m_former;
    }

private:
    const TrackerWatch& m_watch;
    unsigned int& m_word;
    unsigned int m_former;
};

} // namespace

CViewTracker::CViewTracker(CVakCoord& coord, unsigned int flags, CRect const& clientRect, unsigned int style)
    : CVakTracker(clientRect, style, 0), m_flags(flags), m_coord(&coord),
      m_docRect(ToDocument(Normalized(clientRect), true))
{
    // One that must stay inside the document is shown on whole document pixels, so it follows at once.
    if (!IsBounded())
        m_place = CurrentPlace();
}

CViewTracker::~CViewTracker()
{
    Close();
}

CViewTracker::Place CViewTracker::CurrentPlace() const
{
    CRect page;
    m_coord->GetVisClient(page, FALSE);
    return {m_coord->GetZoom(), page.TopLeft(), m_coord->GetScrollPos()};
}

void CViewTracker::Follow() const
{
    if (m_isOrphan)
        return;
    CWnd* const wnd = m_coord->GetWnd();
    const bool hasWindow = wnd && wnd->GetSafeHwnd();
    m_reach = hasWindow ? wnd->GetClientRect() : CRect();
    const Place place = CurrentPlace();
    if (place == m_place)
        return;
    m_place = place;
    m_rect = ToClient(m_docRect);
    if (m_drag)
        m_drag->Rebase(ToClient(m_startDocRect), m_rect);
    // A window that scrolls by copying its pixels has copied the handles at its border too.
    if (hasWindow && !vak::detail::LiesInside(m_rect, m_reach))
        wnd->InvalidateRect(vak::detail::OuterRect(Shape()), FALSE);
}

CRect CViewTracker::ToClient(CRect docRect) const
{
    m_coord->DocToPage(docRect, FALSE);
    return docRect;
}

CRect CViewTracker::ToDocument(CRect const& rect, bool clamp) const
{
    CRect docRect = rect;
    m_coord->ClientToDoc(docRect, TRUE, FALSE, clamp);
    return m_drag ? vak::detail::WithExactSides(docRect, rect, m_drag->Start(), m_startDocRect) : docRect;
}

CRect CViewTracker::Document() const
{
    return {CPoint(), m_coord->GetDocSize()};
}

CRect CViewTracker::Kept(CRect const& docRect) const
{
    return IsBounded() ? vak::detail::ShiftedInside(docRect, Document()) : docRect;
}

void CViewTracker::Show(CRect const& docRect, CRect const& clientRect)
{
    if (docRect == m_docRect && clientRect == m_rect)
        return;
    const CRect shown = clientRect;
    TrackerWatch watch(*this);
    m_docRect = docRect;
    m_rect = shown;
    {
        const Meanwhile suspended(watch, m_suspended, TRUE);
        OnRectChanged(shown);
    }
    if (watch.IsAlive())
        OnTrackerCallback(vak::RectChanged, shown);
}

int CViewTracker::SetDocRect(CRect const& docRect)
{
    if (m_isOrphan || (IsBounded() && !vak::detail::LiesInside(docRect, Document())))
        return FALSE;
    CRect former;
    GetTrueRect(former);
    const CRect wanted = docRect;
    const CRect exact = ToClient(wanted);
    CRect client = exact;
    TrackerWatch watch(*this);
    // Where it is already it stays, whatever the zoom makes of the minimum size.
    if (!(wanted == m_docRect))
        AdjustRect(vak::HitTopLeft, client);
    if (!watch.IsAlive())
        return TRUE;
    const CRect computed = vak::detail::WithExactSides(ToDocument(client, true), client, exact, wanted);
    Show(Kept(CRect(computed.TopLeft(), wanted.Size())), client);
    if (watch.IsAlive())
        InvalidateWith(former);
    return TRUE;
}

int CViewTracker::OnKey(unsigned int key, CRect const* bounds)
{
    if (m_isOrphan)
        return FALSE;
    const CRect document = Document();
    CRect docRect = m_docRect;
    if (!CVakTracker::OnKey(key, docRect, bounds || !IsBounded() ? bounds : &document))
        return FALSE;
    CRect former;
    GetTrueRect(former);
    TrackerWatch watch(*this);
    if (!(docRect == m_docRect))
        Show(docRect, ToClient(docRect));
    if (watch.IsAlive())
        InvalidateWith(former);
    return TRUE;
}

int CViewTracker::Track(CPoint const& point)
{
    if (m_tracking || m_isOrphan)
        return FALSE;
    TrackerWatch watch(*this);
    m_startDocRect = m_docRect;
    m_hit = HitTestHandles(point);
    int hasMoved = FALSE;
    {
        const Meanwhile dragging(watch, m_dragState, TRUE);
        hasMoved = CVakTracker::Track(m_coord->GetWnd(), point, TRUE, nullptr);
    }
    if (watch.IsAlive()) {
        Follow();
        Show(Normalized(m_docRect), Normalized(m_rect));
    }
    return hasMoved && watch.IsAlive();
}

void CViewTracker::Draw(CDC* dc)
{
    CVakTracker::Draw(dc);
}

void CViewTracker::Close()
{
    CRect covered;
    GetTrueRect(covered);
    InvalidateWith(covered);
}

void CViewTracker::InvalidateWith(CRect const& former) const
{
    CWnd* const wnd = m_isOrphan ? nullptr : m_coord->GetWnd();
    if (!wnd || !wnd->GetSafeHwnd())
        return;
    CRect covered;
    GetTrueRect(covered);
    wnd->InvalidateRect(covered | former, TRUE);
}

void CViewTracker::AdjustRect(int hit, CRect& rect)
{
    CVakTracker::AdjustRect(hit, rect);
    if (!IsBounded())
        return;
    CRect docRect = ToDocument(rect, false);
    if (hit != vak::HitMiddle) {
        const float* const ratio = m_constraint != 0 ? &m_ratio : nullptr;
        docRect = vak::detail::ResizedInside(hit, docRect, Document(), ratio);
    } else {
        // Its sides are rounded one by one: a move would gain and lose a pixel on the way.
        const CSize size = m_dragState ? m_startDocRect.Size() : docRect.Size();
        docRect = vak::detail::ShiftedInside(CRect(docRect.TopLeft(), size), Document());
    }
    rect = ToClient(docRect);
}

void CViewTracker::OnRectChanged(CRect const& rect)
{
    if (!m_suspended && !m_isOrphan)
        m_docRect = ToDocument(rect, true);
}

void CViewTracker::OnTrackerCallback(int event, CRect const& rect)
{
    if (event == vak::TrackingBegins)
        m_startDocRect = m_docRect;
    if (m_dragState && m_hit == vak::HitMiddle)
        m_docRect = Kept(CRect(m_docRect.TopLeft(), m_startDocRect.Size()));
    CVakTracker::OnTrackerCallback(event, rect);
}
