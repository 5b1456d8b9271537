#include "framework/base/Exception.h"
#include "tests/support/Print.h"
#include "tests/support/Slots.h"
#include "tests/view/windows/TrackerStage.h"

#include <algorithm>
#include <memory>

using vak::test::SlotOf;
using vak::test::TrackerStage;

namespace {

const CRect kRect(50, 40, 150, 140);

struct OpenTracker : CVakTracker
{
    using CVakTracker::CVakTracker;
    static void ExpectLayout()
    {
        OpenTracker it(nullptr, 0, 0);
        char* const start = reinterpret_cast<char*>(&it);
        // Nothing else has room between these.
        const void* const fields[] = {
            start + 8,        &it.m_options,    &it.m_callback,    &it.m_callbackData, &it.m_constraint,
            &it.m_tracking,   &it.m_ratio,      &it.m_allowInvert, &it.m_lastDragRect, &it.m_lastDragSize,
            &it.m_erase,      &it.m_finalErase, &it.m_style,       &it.m_rect,         &it.m_minSize,
            &it.m_handleSize, start + 108};
        EXPECT_TRUE(std::is_sorted(std::begin(fields), std::end(fields)));
        EXPECT_EQ(SlotOf<int (CVakTracker::*)(UINT, CRect const*)>(&OpenTracker::OnKey), 0u);
        const std::size_t slots[] = {
            SlotOf(&OpenTracker::DrawTrackerRect),   SlotOf(&OpenTracker::AdjustRect),
            SlotOf(&OpenTracker::OnRectChanged),     SlotOf(&OpenTracker::GetHandleMask),
            SlotOf(&OpenTracker::OnTrackerCallback), SlotOf(&OpenTracker::GetHandleSize)};
        for (std::size_t i = 0; i < std::size(slots); ++i)
            EXPECT_EQ(slots[i], i + 3) << "the destructor has two";
    }
};

class TrackerDragTest : public testing::Test
{
protected:
    void Make(unsigned int options = 0)
    {
        m_tracker = std::make_unique<CVakTracker>(kRect, vak::ResizeInside, options);
        m_events = vak::test::TrackerEvents();
        m_events.Listen(*m_tracker);
    }
    /// The left button goes down there; then follows what the script says.
    int Drag(CPoint from, const std::string& script, int allowInvert = TRUE, CWnd* clipTo = nullptr)
    {
        m_window.Play(script);
        return m_tracker->Track(&m_window, from, allowInvert, clipTo);
    }
    void ExpectIdle()
    {
        EXPECT_EQ(CWnd::GetCapture(), nullptr);
        EXPECT_FALSE(m_tracker && m_tracker->IsTracking());
        EXPECT_TRUE(m_window.Pixels() == m_before) << "traces of the outline";
        for (MSG message{}; PeekMessage(&message, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE);)
            continue;
    }

    TrackerStage m_window;
    std::vector<COLORREF> m_before = m_window.Pixels();
    std::unique_ptr<CVakTracker> m_tracker;
    vak::test::TrackerEvents m_events;
};

} // namespace

TEST_F(TrackerDragTest, TellsWhatHappensInOrderAndLeavesNoTraces)
{
    OpenTracker::ExpectLayout();
    TrackerStage clip;
    const std::tuple<const char*, int, const char*, int, CPoint> rows[] = {
        {"move 120 100 up 90 110", 0, "21451454513", TRUE, {40, 60}},
        {"move 120 100 up 100 90", 0, "2145145453", TRUE, {50, 40}},
        {"move 120 100 app up 120 100", 0, "2145454513", TRUE, {70, 50}},
        {"move 120 100 escape", 0, "21454513", FALSE, {50, 40}},
        {"move 120 100 right", 0, "21454513", FALSE, {50, 40}},
        {"move 120 100 up 120 100", vak::NoDragOutline, "2113", TRUE, {70, 50}},
        {"up 100 90", 0, "245453", FALSE, {50, 40}}};
    for (const auto& [script, options, seen, result, place] : rows) {
        TrackerStage* const drawn = result ? &clip : &m_window;
        m_window.m_on[WM_APP] = [&](LPARAM) { drawn->Repaint(); };
        Make(options);
        bool isVisible = false;
        m_events.m_once[vak::AfterOutline] = [&] { isVisible = drawn->Pixels() != m_before; };
        EXPECT_EQ(Drag(CPoint(100, 90), script, TRUE, result ? drawn : nullptr), result) << script;
        EXPECT_EQ(m_events.m_seen, seen);
        EXPECT_EQ(isVisible, m_events.m_seen.find('5') != std::string::npos);
        EXPECT_EQ(m_tracker->GetRect(), CRect(place, kRect.Size()));
        EXPECT_TRUE(clip.Pixels() == m_before);
        ExpectIdle();
    }
}

TEST_F(TrackerDragTest, DragsWhatTheHandleKeysRatioAndMinimumSay)
{
    constexpr int kNone = 0, kNoInvert = 1, kHalfAsHigh = 2, kShift = 3, kControl = 4;
    // From, to, rule and what comes of it.
    const int rows[][9] = {
        {145, 90, -35, 300, kNone, 50, 40, -30, 140},       {145, 90, -35, 300, kNoInvert, 50, 40, 68, 140},
        {55, 45, 149, 50, kHalfAsHigh, 132, 131, 150, 140}, {100, 45, 120, 65, kHalfAsHigh, 70, 60, 170, 160},
        {145, 135, 165, 145, kShift, 50, 40, 150, 150},     {145, 135, 165, 145, kControl, 50, 40, 170, 140}};
    for (const auto& row : rows) {
        Make();
        m_tracker->SetConstraint(row[4] == kHalfAsHigh, 0.5f);
        vak::test::HoldKey(row[4] == kShift ? VK_SHIFT : row[4] == kControl ? VK_CONTROL : 0);
        const std::string script = "up " + std::to_string(row[2]) + " " + std::to_string(row[3]);
        EXPECT_TRUE(Drag(CPoint(row[0], row[1]), script, row[4] != kNoInvert));
        EXPECT_EQ(m_tracker->GetRect(), CRect(row[5], row[6], row[7], row[8])) << script;
    }
    vak::test::HoldKey(0);
    Make();
    m_tracker->SetMinSize(CSize(120, 120));
    m_tracker->SetConstraint(1, 0.5f);
    EXPECT_FALSE(Drag(CPoint(55, 45), "up 55 45"));
    EXPECT_TRUE(Drag(CPoint(55, 45), "move 60 45 up 55 45"));
    EXPECT_EQ(m_tracker->GetRect(), kRect) << "what it was, though it is too small and too high";
    Make();
    m_window.Play("move 80 60 up 100 90");
    EXPECT_TRUE(m_tracker->TrackRubberBand(&m_window, CPoint(70, 50), TRUE));
    EXPECT_EQ(m_tracker->GetRect(), CRect(70, 50, 118, 108)) << "ahead of the mouse by the minimum";
    EXPECT_EQ(m_events.m_seen, "1121451454513");
}

TEST_F(TrackerDragTest, SurvivesHooksThatPaintChangeTheRectangleOrAskForMore)
{
    Make();
    CVakTracker other(kRect, vak::ResizeInside, 0);
    for (const int event : {vak::TrackingBegins, vak::RectChanged, vak::AfterOutline})
        m_events.m_once[event] = [&, event] {
            EXPECT_FALSE(other.Track(&m_window, CPoint(100, 100), TRUE, nullptr));
            EXPECT_FALSE(m_tracker->Track(&m_window, CPoint(100, 100), TRUE, nullptr));
            EXPECT_FALSE(other.TrackRubberBand(&m_window, CPoint(1, 1), TRUE));
            if (event == vak::AfterOutline)
                m_events.m_once[vak::RectChanged] = [&] {
                    m_window.Repaint();
                    m_tracker->SetRect(CRect(0, 0, 40, 40));
                };
        };
    m_window.m_on[WM_APP] = [&](LPARAM) { m_window.Repaint(); };
    EXPECT_TRUE(Drag(CPoint(55, 90), "move 38 90 app move 27 90 up 13 95"));
    EXPECT_EQ(m_tracker->GetRect(), CRect(8, 40, 150, 140)) << "the drag goes on from where it was";
    EXPECT_EQ(other.GetRect(), kRect);
    ExpectIdle();
    for (const int event : {vak::TrackingBegins, vak::RectChanged}) {
        Make();
        vak::test::HoldKey(VK_LBUTTON);
        m_events.m_once[event] = [] { vak::test::HoldKey(0); };
        EXPECT_EQ(Drag(CPoint(100, 90), "move 110 95 up 120 99"), event == vak::RectChanged);
        EXPECT_EQ(m_tracker->GetRect().left, m_events.m_seen == "23" ? 50 : 60) << "it went up meanwhile";
        ExpectIdle();
    }
    TrackerStage rival;
    rival.SetCapture();
    EXPECT_FALSE(Drag(CPoint(100, 90), ""));
    EXPECT_EQ(CWnd::GetCapture(), rival.GetSafeHwnd());
}

TEST_F(TrackerDragTest, EndsInGoodOrderWhateverAHookEnds)
{
    std::unique_ptr<TrackerStage> window;
    MSG message{};
    const std::function<void()> ends[] = {[&] { window.reset(); },
                                          [&] { m_tracker.reset(); },
                                          [] { AfxThrowNotSupportedException(); },
                                          [] { ::ReleaseCapture(); },
                                          [] { PostQuitMessage(7); },
                                          [&] { EnableWindow(window->GetSafeHwnd(), FALSE); }};
    for (const int event : {vak::TrackingBegins, vak::RectChanged, vak::BeforeOutline, vak::AfterOutline})
        for (const auto& end : ends) {
            const auto which = &end - ends;
            SCOPED_TRACE(testing::Message() << which << " at " << event);
            Make();
            window = std::make_unique<TrackerStage>();
            window->Play((which == 3 || which == 5) && event == vak::TrackingBegins ? "up 110 95"
                                                                                    : "move 110 95");
            m_events.m_once[event] = end;
            try {
                const int moved = m_tracker->Track(window.get(), CPoint(100, 90), TRUE, nullptr);
                EXPECT_NE(which, 2) << "the exception is lost";
                EXPECT_EQ(moved, which == 3 || which == 5) << "keeps what it reached";
            } catch (CNotSupportedException* exception) {
                exception->Delete();
            }
            EXPECT_EQ(which == 4, PeekMessage(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != 0);
            EXPECT_EQ(which == 1 || which == 2, m_events.m_seen.back() != '3');
            EXPECT_TRUE(!window || window->Pixels() == m_before) << "traces of the outline";
            ExpectIdle();
        }
    Make();
    m_window.m_on[WM_DESTROY] = [&](LPARAM) { m_tracker.reset(); };
    EXPECT_FALSE(Drag(CPoint(100, 90), "move 110 95 close"));
}

TEST_F(TrackerDragTest, FollowsTheMouseItself)
{
    Make();
    const auto press = [](DWORD button) {
        INPUT input{};
        input.mi.dwFlags = button;
        SendInput(1, &input, sizeof input);
    };
    int step = 0;
    m_window.m_on[WM_TIMER] = [&](LPARAM) {
        const int x[] = {300, 300, 310, 330};
        if (step < 4)
            SetCursorPos(x[step], 200 + x[step] / 3);
        if (++step == 2 || step == 5)
            press(step == 2 ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_LEFTUP);
        if (step > 5)
            m_window.Play("close");
    };
    m_window.m_on[WM_LBUTTONDOWN] = [&](LPARAM) { EXPECT_TRUE(Drag(CPoint(100, 100), "")); };
    m_window.SetTimer(1, 20);
    m_window.RunModalLoop();
    EXPECT_EQ(m_tracker->GetRect(), CRect(80, 50, 180, 150));
}
