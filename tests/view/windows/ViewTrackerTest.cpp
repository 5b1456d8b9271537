#include "view/ViewTracker.h"
#include "tests/support/Print.h"
#include "tests/view/windows/TrackerStage.h"
#include "view/VakCoord.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

using vak::test::KeysDown;
using vak::test::Post;
using vak::test::TrackerEvents;
using vak::test::TrackerStage;

namespace {

struct OpenTracker : CViewTracker
{
    using CViewTracker::CViewTracker;

    bool IsInOrder() const
    {
        const void* const members[] = {this,     &m_handleSize, &m_dragState,    &m_suspended, &m_hit,
                                       &m_flags, &m_coord,      &m_startDocRect, &m_docRect};
        return std::is_sorted(std::begin(members), std::end(members));
    }
};

class ViewTrackerTest : public testing::Test
{
protected:
    /// A tracker on a document in the middle of the window, or scrolled if it is larger.
    void Show(CSize document, float zoom, const CRect& docRect, CPoint scroll = CPoint(),
              unsigned int flags = vak::InsideDocument)
    {
        m_tracker.reset();
        m_coord = CVakCoord(&m_window, document);
        m_coord.SetZoom(zoom, FALSE);
        CSize way(scroll);
        m_coord.Scroll(way);
        m_tracker = std::make_unique<OpenTracker>(m_coord, flags, CRect(), vak::ResizeInside);
        m_tracker->SetMinSize(CSize());
        ASSERT_TRUE(m_tracker->SetDocRect(docRect));
        m_events = TrackerEvents();
        m_events.Listen(*m_tracker);
    }
    /// The middle of what `hit` is dragged by, of the four corners and the middle.
    CPoint Grip(int hit) const
    {
        const CRect rect = m_tracker->GetRect();
        const CPoint corners[] = {rect.TopLeft(),
                                  {rect.right - 1, rect.top},
                                  {rect.right - 1, rect.bottom - 1},
                                  {rect.left, rect.bottom - 1}};
        return hit == vak::HitMiddle ? rect.CenterPoint() : corners[hit];
    }
    int Drag(int hit, std::initializer_list<CSize> ways)
    {
        const CPoint start = Grip(hit);
        for (const CSize way : ways)
            Post(m_window, WM_MOUSEMOVE, start.x + way.cx, start.y + way.cy);
        const CPoint end = start + *(ways.end() - 1);
        Post(m_window, WM_LBUTTONUP, end.x, end.y);
        return m_tracker->Track(start);
    }
    CRect Invalid()
    {
        CRect area;
        GetUpdateRect(m_window.GetSafeHwnd(), area, FALSE);
        ValidateRect(m_window.GetSafeHwnd(), nullptr);
        return area;
    }

    TrackerStage m_window;
    CVakCoord m_coord;
    std::unique_ptr<OpenTracker> m_tracker;
    TrackerEvents m_events;
};

} // namespace

TEST_F(ViewTrackerTest, BindsTheRectangleToWholePixelsOfTheDocument)
{
    Show(CSize(1000, 800), 2.0f, CRect(60, 60, 90, 80), CPoint(100, 60));
    EXPECT_TRUE(m_tracker->IsInOrder());
    EXPECT_EQ(m_tracker->GetRect(), CRect(20, 60, 80, 100));
    CViewTracker bound(m_coord, vak::InsideDocument, CRect(83, 101, 21, -70), 0);
    EXPECT_EQ(bound.GetDocRect(), CRect(60, 0, 91, 80)) << "60.5 goes down, 91.5 and 80.5 too, -5 is outside";
    EXPECT_EQ(bound.GetRect(), CRect(20, -60, 82, 100));
    CViewTracker loose(m_coord, 0, CRect(21, 61, 83, 101), 0);
    EXPECT_EQ(loose.GetRect(), CRect(21, 61, 83, 101));
    EXPECT_TRUE(loose.SetDocRect(CRect(-20, 0, 1100, 30))) << "only bounded ones refuse";
    EXPECT_FALSE(bound.SetDocRect(CRect(0, 0, 1001, 30)));
    EXPECT_FALSE(bound.SetDocRect(CRect(-1, 0, 10, 30)));
    bound.SetRect(CRect(40, 40, 81, 80));
    EXPECT_EQ(bound.GetDocRect(), CRect(70, 50, 90, 70));
}

TEST_F(ViewTrackerTest, SetDocRectKeepsTheSizeAndTellsAndRepaints)
{
    Show(CSize(300, 200), 1.0f, CRect(100, 80, 150, 120));
    Invalid();
    EXPECT_TRUE(m_tracker->SetDocRect(CRect(120, 90, 160, 140)));
    EXPECT_EQ(Invalid(), CRect(100, 80, 160, 140));
    EXPECT_EQ(m_events.m_seen, "1");
    EXPECT_EQ(m_tracker->GetRect(), CRect(120, 90, 160, 140));
    m_tracker->SetMinSize(CSize(18, 18));
    EXPECT_TRUE(m_tracker->SetDocRect(CRect(50, 50, 60, 60)));
    EXPECT_EQ(m_tracker->GetRect(), CRect(42, 42, 60, 60));
    EXPECT_EQ(m_tracker->GetDocRect(), CRect(42, 42, 52, 52));
    Invalid();
    m_tracker->Close();
    EXPECT_EQ(Invalid(), CRect(42, 42, 60, 60));
    m_tracker.reset();
    EXPECT_EQ(Invalid(), CRect(42, 42, 60, 60));
}

TEST_F(ViewTrackerTest, UntouchedRectangleSurvivesAnyZoomsAndScrolls)
{
    std::mt19937 random(7);
    const auto number = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    const CRect docRect(333, 217, 1234, 1101);
    Show(CSize(3001, 2003), 1.0f, docRect);
    m_tracker->SetMinSize(CSize(18, 18));
    CClientDC dc(&m_window);
    for (int round = 0; round < 500; ++round) {
        CSize way(number(-500, 500), number(-500, 500));
        const CPoint around(number(0, 3000), number(0, 2000));
        number(0, 1) ? m_coord.Zoom(number(0, 1)) : m_coord.Scroll(way);
        if (number(0, 9) == 0)
            m_coord.SetZoomAndCenter(static_cast<float>(number(1, 99)) / 30.0f, around, FALSE, FALSE);
        CRect shown = docRect;
        m_coord.DocToPage(shown, FALSE);
        if (number(0, 1)) {
            EXPECT_NE(m_tracker->HitTest(shown.CenterPoint()), vak::HitNothing) << "asked before it is drawn";
        }
        number(0, 1) ? m_tracker->Draw(&dc) : void(m_tracker->SetDocRect(m_tracker->GetDocRect()));
        ASSERT_EQ(m_tracker->GetRect(), shown);
        ASSERT_EQ(m_tracker->GetDocRect(), docRect);
    }
    EXPECT_EQ(m_events.m_seen, "") << "nothing has changed";
}

TEST_F(ViewTrackerTest, WhatADragDoesNotMoveOrBringsBackStaysExact)
{
    for (const float zoom : {0.03125f, 0.07f, 0.25f, 0.7f, 1.0f, 1.5f, 7.3f})
        for (const int hit : {0, 1, 2, 3, 8}) {
            SCOPED_TRACE(testing::Message() << "handle " << hit << " at " << zoom);
            const auto zoomed = [&](float pixels) { return static_cast<int>(pixels * zoom); };
            const auto pixels = [&](float zoomedPixels) { return static_cast<int>(zoomedPixels / zoom) | 1; };
            const CRect rect(CPoint(333, 217), CSize(pixels(150), pixels(90)));
            Show(CSize(20001, 13001), zoom, rect, CPoint(zoomed(325), zoomed(210)));
            CRect onTheWay;
            m_events.m_once[vak::AfterOutline] = [&] { onTheWay = m_tracker->GetDocRect(); };
            EXPECT_TRUE(Drag(hit, {CSize(13, 9), CSize(-5, 20), CSize(0, 0)}));
            EXPECT_EQ(m_tracker->GetDocRect(), rect);
            EXPECT_EQ(hit == 0 || hit == 3 || hit == 8, onTheWay.left != rect.left);
            EXPECT_EQ(hit == 2 || hit == 3 || hit == 8, onTheWay.bottom != rect.bottom);
            EXPECT_TRUE(hit != vak::HitMiddle || onTheWay.Size() == rect.Size());
            Post(m_window, WM_MOUSEMOVE, 1, 1);
            Post(m_window, WM_KEYDOWN, VK_ESCAPE);
            EXPECT_FALSE(m_tracker->Track(Grip(hit)));
            EXPECT_EQ(m_tracker->GetDocRect(), rect);
        }
}

TEST_F(ViewTrackerTest, DragsStopAtTheDocument)
{
    const struct
    {
        int hit;
        CSize way;
        float ratio;
        CRect docRect;
    } rows[] = {
        {2, CSize(200, 100), 0, CRect(20, 30, 100, 80)},   {0, CSize(-99, -1), 0, CRect(0, 29, 40, 50)},
        {8, CSize(900, -900), 0, CRect(80, 0, 100, 20)},   {8, CSize(-900, 33), 0, CRect(0, 46, 20, 66)},
        {2, CSize(400, 20), 0.5f, CRect(20, 30, 100, 70)}, {2, CSize(80, 400), 2.0f, CRect(20, 30, 45, 80)},
        {1, CSize(200, -60), 1.0f, CRect(20, 0, 70, 50)},  {0, CSize(100, 60), 0, CRect(40, 50, 70, 60)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.way) + " by " + std::to_string(row.hit));
        Show(CSize(100, 80), 2.0f, CRect(20, 30, 40, 50));
        m_tracker->SetConstraint(row.ratio != 0, row.ratio);
        EXPECT_TRUE(Drag(row.hit, {row.way}));
        EXPECT_EQ(m_tracker->GetDocRect(), row.docRect);
        CRect shown = row.docRect;
        m_coord.DocToPage(shown, FALSE);
        EXPECT_EQ(m_tracker->GetRect(), shown);
    }
    Show(CSize(100, 80), 2.0f, CRect(20, 30, 40, 50), CPoint(), 0);
    EXPECT_TRUE(Drag(2, {CSize(201, 1)}));
    EXPECT_EQ(m_tracker->GetRect().Size(), CSize(241, 41)) << "one that is not bounded goes anywhere";
    EXPECT_EQ(m_tracker->GetDocRect(), CRect(20, 30, 100, 50));
}

TEST_F(ViewTrackerTest, OnePressIsOnePixelOfTheDocumentAtAnyZoom)
{
    for (const float zoom : {0.25f, 1.0f, 4.0f}) {
        SCOPED_TRACE(zoom);
        Show(CSize(100, 80), zoom, CRect(1, 30, 99, 50));
        Invalid();
        EXPECT_TRUE(m_tracker->OnKey(VK_RIGHT, nullptr));
        EXPECT_EQ(m_tracker->GetDocRect(), CRect(2, 30, 100, 50));
        EXPECT_FALSE(Invalid().IsRectEmpty());
        EXPECT_TRUE(m_tracker->OnKey(VK_RIGHT, nullptr));
        EXPECT_EQ(m_tracker->GetDocRect(), CRect(2, 30, 100, 50)) << "the document ends there";
        EXPECT_EQ(m_events.m_seen, "1") << "told also where it shows no difference";
        const KeysDown keys{VK_CONTROL};
        EXPECT_TRUE(m_tracker->OnKey(VK_DOWN, nullptr));
        const CRect bounds(0, 0, 100, 51);
        EXPECT_TRUE(m_tracker->OnKey(VK_DOWN, &bounds));
        EXPECT_EQ(m_tracker->GetDocRect(), CRect(2, 30, 100, 51));
        EXPECT_FALSE(m_tracker->OnKey(VK_RETURN, nullptr));
    }
}

TEST_F(ViewTrackerTest, ViewMayZoomAndScrollInTheMiddleOfADrag)
{
    Show(CSize(1000, 800), 1.0f, CRect(101, 51, 201, 151));
    m_window.m_draw = [&](CDC* dc) { m_tracker ? m_tracker->Draw(dc) : void(); };
    m_window.m_on[WM_APP] = [&](LPARAM) {
        m_coord.SetZoom(0.5f, FALSE);
        CSize way(20, 10);
        m_coord.Scroll(way);
    };
    const CPoint start = Grip(2);
    Post(m_window, WM_MOUSEMOVE, start.x + 20, start.y + 10);
    Post(m_window, WM_APP, 1);
    Post(m_window, WM_LBUTTONUP, 149, 99);
    EXPECT_TRUE(m_tracker->Track(start));
    EXPECT_EQ(m_tracker->GetDocRect(), CRect(101, 51, 340, 220)) << "(150 + 20) x 2, (100 + 10) x 2";
    EXPECT_EQ(m_tracker->GetRect(), CRect(30, 15, 150, 100));
    m_window.UpdateWindow();
    const auto drawn = m_window.Pixels();
    m_window.Repaint();
    EXPECT_TRUE(m_window.Pixels() == drawn) << "traces of the outline";
}

TEST_F(ViewTrackerTest, TurnsOverAndEndsTheRightWayRound)
{
    Show(CSize(300, 200), 1.0f, CRect(100, 80, 150, 120));
    m_tracker->SetMinSize(CSize(18, 18));
    EXPECT_TRUE(Drag(2, {CSize(-100, -60)}));
    EXPECT_EQ(m_tracker->GetDocRect(), CRect(50, 60, 100, 80));
    EXPECT_EQ(m_tracker->GetRect(), CRect(50, 60, 100, 80));
    EXPECT_EQ(m_events.m_rect, CRect(50, 60, 100, 80));
    EXPECT_EQ(m_tracker->HitTest(CPoint(51, 61)), vak::HitTopLeft);
    m_coord.SetZoom(8.0f, FALSE);
    CSize way(600, 500);
    m_coord.Scroll(way);
    EXPECT_EQ(m_tracker->GetRect(), CRect(-200, -20, 200, 140));
    EXPECT_EQ(m_tracker->HitTest(CPoint(2, 2)), vak::HitTopLeft) << "moved to the border";
    EXPECT_EQ(m_tracker->HitTest(CPoint(2, 137)), vak::HitBottomLeft);
}

TEST_F(ViewTrackerTest, TouchesNothingThatGoesWithTheWindow)
{
    auto window = std::make_unique<TrackerStage>();
    // Memory that cannot be touched any more once it is given back.
    void* const page = VirtualAlloc(nullptr, sizeof(CVakCoord), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    CSize document(100, 80);
    auto* const coord = new (page) CVakCoord(window.get(), document);
    auto* const tracker = new CViewTracker(*coord, vak::InsideDocument, CRect(110, 70, 150, 100), 0);
    window->m_on[WM_DESTROY] = [&](LPARAM) {
        coord->~CVakCoord();
        VirtualFree(page, 0, MEM_RELEASE);
    };
    Post(*window, WM_MOUSEMOVE, 160, 120);
    Post(*window, WM_CLOSE, 0);
    EXPECT_FALSE(tracker->Track(CPoint(130, 80)));
    EXPECT_EQ(tracker->GetDocRect(), CRect(40, 50, 80, 80));
    delete tracker;

    CVakCoord another(&m_window, document);
    m_window.m_on[WM_APP] = [&](LPARAM) { m_window.DestroyWindow(); };
    Post(m_window, WM_MOUSEMOVE, 160, 120);
    Post(m_window, WM_APP, 1);
    EXPECT_EQ(another.InitTracker(CPoint(110, 70), 0, 1.0f, 0), nullptr);
}
