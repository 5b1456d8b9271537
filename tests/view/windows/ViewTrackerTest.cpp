#include "view/ViewTracker.h"
#include "tests/support/Print.h"
#include "tests/view/windows/TrackerStage.h"
#include "view/VakCoord.h"

#include <algorithm>
#include <memory>
#include <random>

using vak::test::TrackerStage;

namespace {

struct OpenTracker : CViewTracker
{
    using CViewTracker::CViewTracker;
    bool IsInOrder() const
    {
        const void* const members[] = {&m_handleSize, &m_dragState, &m_suspended,    &m_hit,
                                       &m_flags,      &m_coord,     &m_startDocRect, &m_docRect};
        return std::is_sorted(std::begin(members), std::end(members));
    }
};

class ViewTrackerTest : public testing::Test
{
protected:
    void Show(CSize document, float zoom, const CRect& docRect, CSize scroll = CSize())
    {
        m_tracker.reset();
        m_coord = CVakCoord(&m_window, document);
        m_coord.SetZoom(zoom, FALSE);
        m_coord.Scroll(scroll);
        m_tracker = std::make_unique<OpenTracker>(m_coord, vak::InsideDocument, CRect(), vak::ResizeInside);
        m_tracker->SetMinSize(CSize());
        EXPECT_TRUE(m_tracker->SetDocRect(docRect));
        m_events = vak::test::TrackerEvents();
        m_events.Listen(*m_tracker);
    }
    /// Drags a corner or the middle by as many pixels, and back again first if wanted.
    int Drag(int hit, int x, int y, bool andBack = false)
    {
        const CRect rect = m_tracker->GetRect();
        const CPoint last = rect.BottomRight() - CSize(1, 1);
        const CPoint corners[] = {rect.TopLeft(), {last.x, rect.top}, last, {rect.left, last.y}};
        const CPoint from = hit == vak::HitMiddle ? rect.CenterPoint() : corners[hit];
        std::ostringstream script;
        script << "move " << from.x + x << ' ' << from.y + y;
        if (andBack)
            script << " move " << from.x - y << ' ' << from.y + x << " up " << from.x << ' ' << from.y;
        m_window.Play(script.str() + (andBack ? "" : " up" + script.str().substr(4)));
        return m_tracker->Track(from);
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
    vak::test::TrackerEvents m_events;
};

} // namespace

TEST_F(ViewTrackerTest, BindsTheRectangleToWholePixelsOfTheDocument)
{
    Show(CSize(1000, 800), 2.0f, CRect(60, 60, 90, 80), CSize(100, 60));
    EXPECT_TRUE(m_tracker->IsInOrder());
    EXPECT_EQ(m_tracker->GetRect(), CRect(20, 60, 80, 100));
    CViewTracker bound(m_coord, vak::InsideDocument, CRect(83, 101, 21, -70), 0);
    EXPECT_EQ(bound.GetDocRect(), CRect(60, 0, 91, 80)) << "60.5 goes down, 91.5 and 80.5 too, -5 is outside";
    EXPECT_EQ(bound.GetRect(), CRect(20, -60, 82, 100));
    EXPECT_FALSE(bound.SetDocRect(CRect(0, 0, 1001, 30)) || bound.SetDocRect(CRect(-1, 0, 10, 30)));
    CViewTracker loose(m_coord, 0, CRect(21, 61, 83, 101), 0);
    EXPECT_EQ(loose.GetRect(), CRect(21, 61, 83, 101));
    EXPECT_TRUE(loose.SetDocRect(CRect(-20, 0, 1100, 30)));
    loose.SetRect(CRect(40, 40, 81, 80));
    EXPECT_EQ(loose.GetDocRect(), CRect(70, 50, 90, 70));

    Show(CSize(300, 200), 1.0f, CRect(100, 80, 150, 120));
    Invalid();
    EXPECT_TRUE(m_tracker->SetDocRect(CRect(120, 90, 160, 140)));
    EXPECT_EQ(Invalid(), CRect(100, 80, 160, 140));
    EXPECT_EQ(m_events.m_seen, "1");
    m_tracker->SetMinSize(CSize(18, 18));
    EXPECT_TRUE(m_tracker->SetDocRect(CRect(50, 50, 60, 60)));
    EXPECT_EQ(m_tracker->GetRect(), CRect(42, 42, 60, 60));
    EXPECT_EQ(m_tracker->GetDocRect(), CRect(42, 42, 52, 52));
    Invalid();
    m_tracker.reset();
    EXPECT_EQ(Invalid(), CRect(42, 42, 60, 60));
}

TEST_F(ViewTrackerTest, UntouchedRectangleSurvivesAnyZoomsAndScrolls)
{
    std::mt19937 random(7);
    const auto number = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
    const CRect docRect(333, 217, 734, 601);
    Show(CSize(3001, 2003), 1.0f, docRect);
    m_tracker->SetMinSize(CSize(18, 18));
    CClientDC dc(&m_window);
    for (int round = 0; round < 500; ++round) {
        CSize way(number(-500, 500), number(-500, 500));
        m_coord.Scroll(way);
        if (number(0, 3) == 0)
            m_coord.SetZoom(static_cast<float>(number(1, 99)) / 30.0f, FALSE);
        CRect shown = docRect;
        m_coord.DocToPage(shown, FALSE);
        number(0, 1) ? m_tracker->Draw(&dc) : void(m_tracker->SetDocRect(m_tracker->GetDocRect()));
        ASSERT_EQ(m_tracker->GetRect(), shown);
        ASSERT_EQ(m_tracker->GetDocRect(), docRect);
    }
}

TEST_F(ViewTrackerTest, WhatADragDoesNotMoveOrBringsBackStaysExact)
{
    for (const float zoom : {0.03125f, 0.07f, 0.25f, 0.7f, 1.0f, 1.5f, 7.3f})
        for (const int hit : {0, 1, 2, 3, 8}) {
            SCOPED_TRACE(testing::Message() << "handle " << hit << " at " << zoom);
            const auto odd = [&](float zoomed) { return static_cast<int>(zoomed / zoom) | 1; };
            const CRect rect(CPoint(333, 217), CSize(odd(150), odd(90)));
            Show(CSize(20001, 13001), zoom, rect,
                 CSize(static_cast<int>(325 * zoom), static_cast<int>(210 * zoom)));
            CRect way;
            m_events.m_once[vak::AfterOutline] = [&] { way = m_tracker->GetDocRect(); };
            EXPECT_TRUE(Drag(hit, 13, 9, true));
            EXPECT_EQ(m_tracker->GetDocRect(), rect);
            EXPECT_EQ(hit == 0 || hit == 3 || hit == 8, way.left != rect.left);
            EXPECT_EQ(hit == 2 || hit == 3 || hit == 8, way.bottom != rect.bottom);
            EXPECT_TRUE(hit != 8 || way.Size() == rect.Size());
        }
}

TEST_F(ViewTrackerTest, DragsStopAtTheDocumentAndKeysGoByItsPixels)
{
    // Handle, way, hundredths of the ratio or 0, and the document rectangle in the end.
    const int rows[][8] = {{2, 200, 100, 0, 20, 30, 100, 80},
                           {0, -99, -1, 0, 0, 29, 40, 50},
                           {8, 900, -900, 0, 80, 0, 100, 20},
                           {8, -900, 33, 0, 0, 46, 20, 66},
                           {1, 200, -60, 100, 20, 0, 70, 50}};
    for (const auto& row : rows) {
        Show(CSize(100, 80), 2.0f, CRect(20, 30, 40, 50));
        m_tracker->SetConstraint(row[3], static_cast<float>(row[3]) / 100);
        EXPECT_TRUE(Drag(row[0], row[1], row[2]));
        CRect docRect(row[4], row[5], row[6], row[7]);
        EXPECT_EQ(m_tracker->GetDocRect(), docRect) << row[1];
        m_coord.DocToPage(docRect, FALSE);
        EXPECT_EQ(m_tracker->GetRect(), docRect);
    }
    for (const float zoom : {0.25f, 1.0f, 4.0f}) {
        Show(CSize(100, 80), zoom, CRect(1, 30, 99, 50));
        Invalid();
        EXPECT_TRUE(m_tracker->OnKey(VK_RIGHT, nullptr) && m_tracker->OnKey(VK_RIGHT, nullptr));
        EXPECT_EQ(m_tracker->GetDocRect(), CRect(2, 30, 100, 50)) << "the document ends there";
        EXPECT_EQ(m_events.m_seen, "1") << "told also where it shows no difference";
        EXPECT_FALSE(Invalid().IsRectEmpty());
        EXPECT_FALSE(m_tracker->OnKey(VK_RETURN, nullptr));
    }
}

TEST_F(ViewTrackerTest, ViewMayZoomAndScrollInTheMiddleOfADrag)
{
    Show(CSize(1000, 800), 1.0f, CRect(101, 51, 201, 151));
    m_window.m_draw = [&](CDC* dc) { m_tracker->Draw(dc); };
    m_window.m_on[WM_APP] = [&](LPARAM) {
        CSize way(20, 10);
        m_coord.SetZoom(0.5f, FALSE);
        m_coord.Scroll(way);
    };
    m_window.Play("move 220 160 app up 149 99");
    EXPECT_TRUE(m_tracker->Track(CPoint(200, 150)));
    EXPECT_EQ(m_tracker->GetDocRect(), CRect(101, 51, 340, 220)) << "(150 + 20) x 2, (100 + 10) x 2";
    EXPECT_EQ(m_tracker->GetRect(), CRect(30, 15, 150, 100));
    m_window.UpdateWindow();
    const auto drawn = m_window.Pixels();
    m_window.Repaint();
    EXPECT_TRUE(m_window.Pixels() == drawn) << "traces of the outline";
    m_window.m_draw = [](CDC*) {};
}

TEST_F(ViewTrackerTest, TurnsOverAndKeepsItsHandlesInTheWindow)
{
    Show(CSize(300, 200), 1.0f, CRect(100, 80, 150, 120));
    EXPECT_TRUE(Drag(2, -100, -60));
    EXPECT_EQ(m_tracker->GetDocRect(), CRect(50, 60, 100, 80));
    EXPECT_EQ(m_tracker->GetRect(), CRect(50, 60, 100, 80));
    m_coord.SetZoom(8.0f, FALSE);
    CSize way(600, 500);
    m_coord.Scroll(way);
    Invalid();
    EXPECT_EQ(m_tracker->HitTest(CPoint(2, 2)), vak::HitTopLeft) << "it lies at (-200, -20)";
    EXPECT_EQ(Invalid(), CRect(0, 0, 200, 140)) << "the window may have scrolled copies of them";
}

TEST_F(ViewTrackerTest, TouchesNothingThatGoesWithTheWindow)
{
    CSize document(100, 80);
    CVakCoord another(&m_window, document);
    // Memory that cannot be touched any more once it is given back.
    void* const page = VirtualAlloc(nullptr, sizeof(CVakCoord), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    auto* const coord = new (page) CVakCoord(&m_window, document);
    CViewTracker tracker(*coord, vak::InsideDocument, CRect(110, 70, 150, 100), 0);
    m_window.m_on[WM_DESTROY] = [&](LPARAM) { VirtualFree(page, 0, MEM_RELEASE); };
    m_window.Play("move 160 120 close");
    EXPECT_FALSE(tracker.Track(CPoint(130, 80)));
    tracker.SetRect(CRect(10, 10, 90, 90));
    EXPECT_FALSE(tracker.Track(CPoint(30, 30)) || tracker.OnKey(VK_LEFT, nullptr) ||
                 tracker.SetDocRect(CRect(1, 1, 30, 30)));
    EXPECT_EQ(tracker.GetDocRect(), CRect(40, 50, 80, 80));
    EXPECT_EQ(another.InitTracker(CPoint(110, 70), 0, 1.0f, 0), nullptr) << "there is no window any more";
}
