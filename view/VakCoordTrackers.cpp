#include "view/VakCoord.h"

#include "framework/base/Exception.h"
#include "framework/ui/DC.h"
#include "framework/ui/Wnd.h"
#include "view/ViewTracker.h"
#include "view/detail/Saturated.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace {

/// Draws now what the next painting would. A window without a device context shows it then.
void DrawAtOnce(CViewTracker& tracker, CWnd* window)
{
    try {
        CClientDC dc(window);
        tracker.Draw(&dc);
    } catch (CException* exception) {
        exception->Delete();
    }
}

} // namespace

int CVakCoord::DoRubberBandTracker(CRect& docRect, CPoint start, int constraint, float ratio)
{
    docRect.SetRectEmpty();
    if (!HasWindow())
        return FALSE;
    CViewTracker tracker(*this, vak::InsideDocument, CRect(), vak::DottedOutline);
    tracker.SetConstraint(constraint, ratio);
    if (!tracker.TrackRubberBand(m_wnd, start, TRUE))
        return FALSE;
    docRect = tracker.GetDocRect();
    docRect.NormalizeRect();
    return docRect.Width() != 0 && docRect.Height() != 0;
}

CViewTracker* CVakCoord::InitTracker(CRect const& clientRect, int constraint, unsigned int style)
{
    auto tracker = std::make_unique<CViewTracker>(*this, vak::InsideDocument, clientRect, style);
    if (constraint) {
        // The tracker turns an inverted rectangle over: with its negative ratio it would jump at once.
        const auto width = static_cast<float>(std::abs(vak::detail::WidthOf(clientRect)));
        const auto height = static_cast<float>(std::abs(vak::detail::HeightOf(clientRect)));
        tracker->SetConstraint(constraint, width / std::max(height, 1.0f));
    }
    return tracker.release();
}

CViewTracker* CVakCoord::InitTracker(CPoint const& start, int constraint, float ratio, unsigned int style)
{
    CRect docRect;
    if (!DoRubberBandTracker(docRect, start, constraint, ratio))
        return nullptr;
    const CRect clientRect = m_geometry.ToPage(docRect, false);
    auto tracker = std::make_unique<CViewTracker>(*this, vak::InsideDocument, clientRect, style);
    tracker->SetConstraint(constraint, ratio);
    if (HasWindow())
        DrawAtOnce(*tracker, m_wnd);
    return tracker.release();
}

void CVakCoord::ReleaseTracker(CViewTracker* tracker)
{
    if (!tracker)
        return;
    tracker->Close();
    delete tracker;
}
