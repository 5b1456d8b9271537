#include "view/VakCoord.h"
#include "framework/ui/ScrollView.h"
#include "tests/support/Print.h"
#include "tests/view/windows/TrackerStage.h"
#include "view/ViewTracker.h"

#include <cstring>

using vak::test::TrackerEvents;
using vak::test::TrackerStage;

namespace {

bool IsInvalid(const CWnd& window)
{
    return GetUpdateRect(window.GetSafeHwnd(), nullptr, FALSE) != 0;
}

/// A window with a client area of 300 x 200 pixels, at (20, 30) on the screen.
class View : public CScrollView
{
public:
    explicit View(CSize document, DWORD style = WS_POPUP | WS_VISIBLE)
    {
        CreateEx(0, AfxRegisterWndClass(0), L"", style, CRect(20, 30, 320, 230), nullptr, 0);
        m_coord.Init(this, document);
        ValidateRect(m_hWnd, nullptr);
    }
    CPoint Position() const
    {
        EXPECT_EQ(GetScrollPosition(), m_coord.GetScrollPos());
        return GetScrollPosition();
    }

    CVakCoord m_coord;
    /// What WM_SETREDRAW was sent with.
    std::vector<WPARAM> m_redraws;

protected:
    BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override
    {
        if (message == WM_SETREDRAW)
            m_redraws.push_back(wParam);
        return CScrollView::OnWndMsg(message, wParam, lParam, result);
    }
    void OnSize(UINT type, int cx, int cy) override
    {
        CScrollView::OnSize(type, cx, cy);
        CSize client(cx, cy);
        m_coord.ClientSizeChange(client);
    }
    void OnDraw(CDC*) override {}
};

} // namespace

TEST(VakCoordTest, KeepsItsFieldsInOrderAndDoesWithoutWindow)
{
    CSize document(100, 50), delta(7, 1000);
    CVakCoord coord(nullptr, document);
    EXPECT_TRUE(coord.SetZoomAndCenter(2, CPoint(3, 3), FALSE, TRUE) && coord.Zoom(TRUE));
    EXPECT_TRUE(!coord.SetZoom(3.2f, TRUE) && coord.Scroll(delta));
    EXPECT_EQ(coord.GetScrollPos(), CPoint(16, 150));
    View view(CSize(1000, 500));
    CVakCoord copy = view.m_coord;
    const void* fields[3];
    std::memcpy(fields, static_cast<void*>(&copy), sizeof fields);
    EXPECT_TRUE(fields[1] == &view && fields[2] == copy.GetView() && fields[2]);
    view.DestroyWindow();
    EXPECT_TRUE(copy.SetZoom(2, FALSE) && copy.Scroll(delta));
    EXPECT_EQ(copy.GetScrollPos(), CPoint(7, 1000));
}

TEST(VakCoordTest, ErasesAroundThePageAndSetsTheClipping)
{
    constexpr COLORREF kRed = RGB(255, 0, 0), kGreen = RGB(0, 255, 0), kBlue = RGB(0, 0, 255),
                       kLight = RGB(255, 255, 255), kShade = RGB(128, 128, 128);
    TrackerStage window;
    CSize document(100, 50);
    CVakCoord coord(&window, document);
    CBrush blue(kBlue);
    for (const unsigned int flags : {0u, 3u}) {
        CClientDC dc(&window);
        dc.FillSolidRect(window.GetClientRect(), kRed);
        coord.EraseBackground(&dc, kGreen, flags);
        EXPECT_EQ(GetBkColor(dc.GetSafeHdc()), kRed) << "the caller's colour";
        // Background, the frame's two sides, page; and page and frame after the caller has drawn all over.
        std::vector<COLORREF> seen;
        for (const CPoint& point : {CPoint(0, 0), CPoint(99, 100), CPoint(200, 74), CPoint(100, 75)})
            seen.push_back(dc.GetPixel(point));
        dc.FillRect(window.GetClientRect(), &blue);
        dc.SelectClipRgn(nullptr);
        seen.insert(seen.end(), {dc.GetPixel(199, 124), dc.GetPixel(200, 125)});
        EXPECT_EQ(seen, flags ? std::vector({kGreen, kLight, kShade, kRed, kBlue, kShade})
                              : std::vector({kGreen, kGreen, kGreen, kRed, kBlue, kBlue}));
    }
}

TEST(VakCoordTest, ZoomsAroundTheCursorWithoutDrawingMeanwhile)
{
    View view(CSize(2000, 2000)), hidden(CSize(2000, 2000), WS_POPUP);
    SetCursorPos(20 + 250, 30 + 40);
    EXPECT_FALSE(view.m_coord.SetZoom(1, FALSE) || IsInvalid(view)) << "nothing to change";
    for (View* each : {&view, &hidden}) {
        EXPECT_TRUE(each->m_coord.SetZoomAndCenter(4, CPoint(700, 800), TRUE, TRUE));
        EXPECT_EQ(each->Position(), CPoint(700 * 4 - 250, 800 * 4 - 40));
    }
    EXPECT_TRUE(IsInvalid(view));
    EXPECT_EQ(view.m_redraws, (std::vector<WPARAM>{0, 1}));
    EXPECT_TRUE(hidden.m_redraws.empty() && !IsWindowVisible(hidden.GetSafeHwnd()));
}

TEST(VakCoordTest, KeepsItsScrollViewInStep)
{
    View view(CSize(1000, 150));
    CVakCoord& coord = view.m_coord;
    CSize document(1000, 150), delta(900, 900), small(10, -10);
    EXPECT_TRUE(coord.Scroll(delta) && !coord.Scroll(delta));
    coord.Init(&view, document);
    EXPECT_EQ(view.Position(), CPoint(700, 0));
    view.ScrollToPosition(CPoint(650, 0));
    view.MoveWindow(CRect(20, 30, 320, 240));
    EXPECT_EQ(view.Position(), CPoint(650, 0)) << "the view knows better";
    EXPECT_TRUE(coord.SetZoom(3, TRUE));
    EXPECT_EQ(view.Position(), CPoint(650, 0)) << "the position stays where it can";
    EXPECT_EQ(view.GetTotalSize(), CSize(3000, 450));
    EXPECT_LT(view.GetClientRect().Width(), 300) << "the bars take room, which fitting gives back";
    coord.AutoFit(TRUE, TRUE);
    EXPECT_EQ(coord.GetZoom(), 0.3f * 0.98f);
    EXPECT_TRUE(view.Position() == CPoint() && coord.ClientCenter() == CPoint(147, 22));
    EXPECT_TRUE(coord.SetZoom(1, FALSE));
    coord.AutoFit(FALSE, TRUE);
    EXPECT_EQ(coord.GetZoom(), 0.3f) << "only the bar that there is";
    coord.Init(&view, small);
    coord.AutoFit(TRUE, FALSE);
    EXPECT_TRUE(coord.GetZoom() == 1 && coord.GetDocSize() == CSize(10, 0));
}

TEST(VakCoordTest, ShowsTheScrollBarsThatAZoomBrings)
{
    View view(CSize(200, 150));
    const auto column = [&] {
        std::vector<COLORREF> pixels;
        view.UpdateWindow();
        const HDC dc = GetWindowDC(view.GetSafeHwnd());
        for (int y = 0; y < 200; y += 3)
            pixels.push_back(GetPixel(dc, 290, y));
        ReleaseDC(view.GetSafeHwnd(), dc);
        return pixels;
    };
    view.m_coord.SetZoomAndCenter(4, CPoint(150, 140), TRUE, FALSE);
    const std::vector<COLORREF> shown = column();
    RedrawWindow(view.GetSafeHwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME);
    EXPECT_EQ(shown, column());
}

TEST(VakCoordTest, ComesBackToTheSamePixelsAroundTheSamePoint)
{
    // The document fits at the smallest zooms, so that bars come and go; in the corner that matters.
    View view(CSize(1000, 800));
    SetCursorPos(20 + 270, 30 + 170);
    for (const CPoint& point : {CPoint(990, 795), CPoint(333, 217)}) {
        std::map<float, CPoint> known;
        for (int i = 0; i < 60; ++i) {
            const int in = i % 20 >= 8;
            view.m_coord.SetZoomAndCenter(view.m_coord.GetDefaultRatio(in), point, TRUE, TRUE);
            const auto first = known.try_emplace(view.m_coord.GetZoom(), view.Position()).first;
            EXPECT_EQ(first->second, view.Position()) << first->first;
        }
        EXPECT_GT(known.size(), 8u);
    }
}

TEST(VakCoordTest, MakesTrackersOfRectanglesAndOfDrags)
{
    TrackerStage window;
    CSize document(100, 50);
    CVakCoord coord(&window, document);
    float ratio = 0;
    CViewTracker* tracker = coord.InitTracker(CRect(150, 80, 120, 80), 2, vak::ResizeInside);
    EXPECT_EQ(tracker->GetConstraint(ratio), 2);
    EXPECT_EQ(ratio, 30) << "inverted, and a height of 0 counts as 1";
    EXPECT_EQ(tracker->GetDocRect(), CRect(20, 5, 50, 5));
    coord.ReleaseTracker(tracker);

    // The corner is ahead of the mouse by the minimum size of 18, and stops at the document's edge.
    window.Play("move 150 119 up 150 119");
    tracker = coord.InitTracker(CPoint(110, 80), 0, 1, vak::ResizeInside);
    ASSERT_NE(tracker, nullptr);
    EXPECT_EQ(tracker->GetDocRect(), CRect(10, 5, 68, 50));
    window.Play("right");
    CRect docRect(1, 2, 3, 4);
    EXPECT_FALSE(coord.DoRubberBandTracker(docRect, CPoint(110, 80), 0, 1));
    EXPECT_EQ(docRect, CRect());

    // Released in its own drag: one that lived on would tell of the drag's end.
    TrackerEvents events;
    events.Listen(*tracker);
    events.m_once[vak::TrackingBegins] = [&] { coord.ReleaseTracker(tracker); };
    window.Play("up 130 100");
    EXPECT_FALSE(tracker->Track(CPoint(130, 100)));
    EXPECT_EQ(events.m_seen, "2");
}
