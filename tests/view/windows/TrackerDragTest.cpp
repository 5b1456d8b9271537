#include "framework/base/Exception.h"
#include "tests/support/Print.h"
#include "tests/support/Slots.h"
#include "tests/view/windows/TrackerStage.h"

#include <gtest/gtest.h>

#include <memory>

using vak::test::KeysDown;
using vak::test::Post;
using vak::test::ServeMessages;
using vak::test::TrackerEvents;
using vak::test::TrackerStage;

namespace {

const CRect kRect(50, 40, 150, 140);

struct OpenTracker : CVakTracker
{
    using CVakTracker::CVakTracker;
    static void ExpectLayout();
};

void OpenTracker::ExpectLayout()
{
    OpenTracker tracker(nullptr, 0, 0);
    const void* const fields[] = {&tracker.m_options,     &tracker.m_callback,     &tracker.m_callbackData,
                                  &tracker.m_constraint,  &tracker.m_tracking,     &tracker.m_ratio,
                                  &tracker.m_allowInvert, &tracker.m_lastDragRect, &tracker.m_lastDragSize,
                                  &tracker.m_erase,       &tracker.m_finalErase,   &tracker.m_style,
                                  &tracker.m_rect,        &tracker.m_minSize,      &tracker.m_handleSize};
    const std::ptrdiff_t offsets[] = {8, 16, 24, 32, 36, 40, 44, 48, 64, 72, 76, 80, 84, 100, 108};
    for (std::size_t i = 0; i < std::size(offsets); ++i)
        EXPECT_EQ(static_cast<const char*>(fields[i]) - reinterpret_cast<char*>(&tracker), offsets[i]) << i;
    EXPECT_EQ(
        vak::test::SlotOf(static_cast<int (CVakTracker::*)(unsigned int, CRect const*)>(&OpenTracker::OnKey)),
        0u);
    EXPECT_EQ(vak::test::SlotOf(&OpenTracker::DrawTrackerRect), 3u);
    EXPECT_EQ(vak::test::SlotOf(&OpenTracker::AdjustRect), 4u);
    EXPECT_EQ(vak::test::SlotOf(&OpenTracker::OnRectChanged), 5u);
    EXPECT_EQ(vak::test::SlotOf(&OpenTracker::GetHandleMask), 6u);
    EXPECT_EQ(vak::test::SlotOf(&OpenTracker::OnTrackerCallback), 7u);
    EXPECT_EQ(vak::test::SlotOf(&OpenTracker::GetHandleSize), 8u);
}

class TrackerDragTest : public testing::Test
{
protected:
    TrackerDragTest() { Make(); }
    ~TrackerDragTest() override { ServeMessages(); }

    void Make(const CRect& rect = kRect, unsigned int options = 0)
    {
        m_tracker = std::make_unique<CVakTracker>(rect, vak::ResizeInside, options);
        m_events = TrackerEvents();
        m_events.Listen(*m_tracker);
    }
    /// The button goes down there; what follows is read by Drag.
    void Press(int x, int y) { m_start = CPoint(x, y); }
    void MoveTo(int x, int y) { Post(m_window, WM_MOUSEMOVE, x, y); }
    void Hit(int key) { Post(m_window, WM_KEYDOWN, key); }
    int Release(int x, int y)
    {
        Post(m_window, WM_LBUTTONUP, x, y);
        return Drag();
    }
    int Drag() { return m_tracker->Track(&m_window, m_start, m_allowInvert, m_clipTo); }
    void ExpectIdle()
    {
        EXPECT_EQ(CWnd::GetCapture(), nullptr);
        EXPECT_FALSE(m_tracker && m_tracker->IsTracking());
        EXPECT_TRUE(m_window.Pixels() == m_before) << "traces of the outline";
    }

    TrackerStage m_window;
    std::vector<COLORREF> m_before = m_window.Pixels();
    std::unique_ptr<CVakTracker> m_tracker;
    TrackerEvents m_events;
    CPoint m_start;
    int m_allowInvert = TRUE;
    CWnd* m_clipTo = nullptr;
};

} // namespace

TEST_F(TrackerDragTest, KeepsMembersAndVirtualOperationsInTheirOrder)
{
    OpenTracker::ExpectLayout();
}

TEST_F(TrackerDragTest, TellsWhatHappensInOrderAndLeavesNoTraces)
{
    const struct
    {
        const char* name;
        unsigned int options;
        std::function<void()> rest;
        const char* events;
        int result;
        CRect rect;
    } rows[] = {
        {"to another place", 0, [&] { Post(m_window, WM_LBUTTONUP, 90, 110); }, "21451454513", TRUE,
         CRect(40, 60, 140, 160)},
        {"and back", 0, [&] { Post(m_window, WM_LBUTTONUP, 100, 90); }, "2145145453", TRUE, kRect},
        {"taken back by Escape", 0, [&] { Hit(VK_ESCAPE); }, "21454513", FALSE, kRect},
        {"taken back by the right button", 0, [&] { Post(m_window, WM_RBUTTONDOWN, 0, 0); }, "21454513",
         FALSE, kRect},
        {"without an outline", vak::NoDragOutline, [&] { Post(m_window, WM_LBUTTONUP, 120, 100); }, "2113",
         TRUE, CRect(70, 50, 170, 150)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Make(kRect, row.options);
        bool isVisible = false;
        m_events.m_once[vak::AfterOutline] = [&] { isVisible = m_window.Pixels() != m_before; };
        Press(100, 90);
        MoveTo(120, 100);
        row.rest();
        EXPECT_EQ(Drag(), row.result);
        EXPECT_EQ(m_events.m_seen, row.events);
        EXPECT_EQ(isVisible, row.options == 0);
        EXPECT_EQ(m_tracker->GetRect(), row.rect);
        EXPECT_EQ(m_events.m_rect, row.rect);
        ExpectIdle();
    }
    Make();
    Press(30, 90);
    EXPECT_EQ(Release(40, 90), FALSE) << "pressed outside";
    EXPECT_EQ(m_events.m_seen, "");
    ServeMessages();
    Press(100, 90);
    EXPECT_EQ(Release(100, 90), FALSE);
    EXPECT_EQ(m_events.m_seen, "23");
}

TEST_F(TrackerDragTest, DragsWhatTheHandleKeysRatioAndMinimumSay)
{
    enum Rules
    {
        None,
        NoInvert,
        HalfAsHigh,
        Shift,
        Control
    };
    const struct
    {
        CPoint from;
        CPoint to;
        Rules rules;
        CRect rect;
    } rows[] = {
        {{55, 45}, {35, 50}, None, CRect(30, 45, 150, 140)},
        {{145, 90}, {-35, 300}, None, CRect(50, 40, -30, 140)},
        {{145, 90}, {-35, 300}, NoInvert, CRect(50, 40, 68, 140)},
        {{145, 135}, {52, 30}, None, CRect(50, 40, 68, 22)},
        {{145, 135}, {245, 0}, HalfAsHigh, CRect(50, 40, 250, 140)},
        {{55, 45}, {149, 50}, HalfAsHigh, CRect(132, 131, 150, 140)},
        {{100, 45}, {120, 65}, HalfAsHigh, CRect(70, 60, 170, 160)},
        {{145, 135}, {165, 145}, Shift, CRect(50, 40, 150, 150)},
        {{145, 135}, {165, 145}, Control, CRect(50, 40, 170, 140)},
        {{100, 90}, {120, 100}, Shift, CRect(50, 50, 150, 150)},
        {{145, 135}, {165, 130}, HalfAsHigh, CRect(50, 40, 170, 100)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.from) + " to " + testing::PrintToString(row.to));
        Make();
        m_allowInvert = row.rules != NoInvert;
        m_tracker->SetConstraint(row.rules == HalfAsHigh, 0.5f);
        const KeysDown keys{row.rules == Shift ? VK_SHIFT : 0, row.rules == Control ? VK_CONTROL : 0};
        Press(row.from.x, row.from.y);
        EXPECT_TRUE(Release(row.to.x, row.to.y));
        EXPECT_EQ(m_tracker->GetRect(), row.rect);
    }
}

TEST_F(TrackerDragTest, RubberBandBeginsAtTheMinimumAheadOfTheMouse)
{
    Post(m_window, WM_MOUSEMOVE, 80, 60);
    Post(m_window, WM_LBUTTONUP, 100, 90);
    EXPECT_TRUE(m_tracker->TrackRubberBand(&m_window, CPoint(70, 50), TRUE));
    EXPECT_EQ(m_tracker->GetRect(), CRect(70, 50, 118, 108));
    EXPECT_EQ(m_events.m_seen, "1121451454513");
    Post(m_window, WM_LBUTTONUP, 20, 20);
    EXPECT_FALSE(m_tracker->TrackRubberBand(&m_window, CPoint(20, 20), TRUE)) << "nothing was drawn out";
    ExpectIdle();
}

TEST_F(TrackerDragTest, OutlineOnAnotherWindowLeavesNoTraces)
{
    TrackerStage clip;
    m_clipTo = &clip;
    bool isVisible = false;
    m_events.m_once[vak::AfterOutline] = [&] { isVisible = clip.Pixels() != m_before; };
    Press(100, 90);
    MoveTo(120, 110);
    EXPECT_TRUE(Release(90, 90));
    EXPECT_TRUE(isVisible);
    EXPECT_TRUE(clip.Pixels() == m_before);
    ExpectIdle();
}

TEST_F(TrackerDragTest, SurvivesHooksThatPaintChangeTheRectangleOrAskForMore)
{
    m_window.m_draw = [&](CDC* dc) { dc->FillSolidRect(CRect(60, 50, 70, 200), RGB(9, 9, 9)); };
    m_window.Repaint();
    m_before = m_window.Pixels();
    m_events.m_onChange = [&] {
        m_window.Repaint();
        CRect rect = m_tracker->GetRect();
        m_tracker->SetRect(CRect(rect.left / 10 * 10, rect.top, rect.right, rect.bottom));
    };
    CVakTracker other(kRect, vak::ResizeInside, 0);
    for (const int event : {vak::TrackingBegins, vak::RectChanged, vak::AfterOutline})
        m_events.m_once[event] = [&] {
            EXPECT_FALSE(other.Track(&m_window, CPoint(100, 100), TRUE, nullptr));
            EXPECT_FALSE(m_tracker->Track(&m_window, CPoint(100, 100), TRUE, nullptr));
            EXPECT_FALSE(other.TrackRubberBand(&m_window, CPoint(1, 1), TRUE));
            EXPECT_EQ(other.GetRect(), kRect);
        };
    m_window.m_on[WM_APP] = [&](LPARAM) { m_window.Repaint(); };
    Press(55, 90);
    MoveTo(38, 90);
    Post(m_window, WM_APP, 0);
    MoveTo(27, 90);
    EXPECT_TRUE(Release(13, 95));
    EXPECT_EQ(m_tracker->GetRect(), CRect(0, 40, 150, 140)) << "8, put on tens";
    ExpectIdle();

    Make();
    m_window.SetCapture();
    Press(100, 90);
    EXPECT_TRUE(Release(101, 90)) << "its own window has the mouse already";
    TrackerStage rival;
    rival.SetCapture();
    EXPECT_FALSE(Release(105, 90));
    EXPECT_EQ(CWnd::GetCapture(), rival.GetSafeHwnd());
    ::ReleaseCapture();
}

TEST_F(TrackerDragTest, EndsInGoodOrderWhenTheCaptureIsLost)
{
    Press(100, 90);
    m_events.m_once[vak::RectChanged] = [] { ::ReleaseCapture(); };
    MoveTo(110, 95);
    MoveTo(190, 195);
    EXPECT_TRUE(Drag());
    EXPECT_EQ(m_tracker->GetRect(), CRect(60, 45, 160, 145));
    EXPECT_EQ(m_events.m_seen, "2113");
    ServeMessages();

    Make();
    m_events.m_once[vak::RectChanged] = [&] {
        SetTimer(nullptr, 0, 50, [](HWND, UINT, UINT_PTR id, DWORD) {
            if (const HWND box = FindWindow(nullptr, L"Tracker"); box && KillTimer(nullptr, id))
                PostMessage(box, WM_CLOSE, 0, 0);
        });
        ::MessageBox(m_window.GetSafeHwnd(), L"", L"Tracker", MB_OK);
    };
    MoveTo(110, 95);
    EXPECT_TRUE(Drag());
    EXPECT_EQ(m_tracker->GetRect(), CRect(60, 45, 160, 145));
    m_window.Repaint();
    ExpectIdle();

    Make();
    m_events.m_once[vak::AfterOutline] = [] { PostQuitMessage(7); };
    MoveTo(110, 95);
    EXPECT_FALSE(Drag());
    EXPECT_EQ(m_tracker->GetRect(), kRect);
    MSG message{};
    EXPECT_TRUE(PeekMessage(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) && message.wParam == 7);
    ExpectIdle();
}

TEST_F(TrackerDragTest, EndsInGoodOrderWhenAHookDestroysOrThrows)
{
    for (const int event : {vak::TrackingBegins, vak::RectChanged, vak::BeforeOutline, vak::AfterOutline}) {
        SCOPED_TRACE(event);
        Make();
        Press(100, 90);
        MoveTo(110, 95);
        m_events.m_once[event] = [] { AfxThrowNotSupportedException(); };
        bool isCaught = false;
        try {
            Drag();
        } catch (CNotSupportedException* exception) {
            isCaught = true;
            exception->Delete();
        }
        EXPECT_TRUE(isCaught);
        ExpectIdle();
        ServeMessages();

        MoveTo(110, 95);
        m_events.m_once[event] = [&] { m_tracker.reset(); };
        EXPECT_FALSE(Drag());
        ExpectIdle();
        ServeMessages();

        Make();
        auto window = std::make_unique<TrackerStage>();
        Post(*window, WM_MOUSEMOVE, 110, 95);
        m_events.m_once[event] = [&] { window.reset(); };
        EXPECT_FALSE(m_tracker->Track(window.get(), CPoint(100, 90), TRUE, nullptr));
        EXPECT_EQ(m_events.m_seen.back(), '3');
        ExpectIdle();
    }
    Make();
    m_events.m_once[vak::TrackingEnds] = [&] { m_tracker.reset(); };
    MoveTo(110, 95);
    EXPECT_FALSE(Release(110, 95));
    Make();
    m_window.m_on[WM_DESTROY] = [&](LPARAM) { m_tracker.reset(); };
    MoveTo(110, 95);
    Post(m_window, WM_CLOSE, 0);
    EXPECT_FALSE(Drag());
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
}

TEST_F(TrackerDragTest, FollowsTheMouseAndTheKeyboardThemselves)
{
    const auto mouse = [](DWORD flags) {
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = flags;
        SendInput(1, &input, sizeof input);
    };
    const auto key = [](WORD code, DWORD flags) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = code;
        input.ki.dwFlags = flags;
        SendInput(1, &input, sizeof input);
    };
    std::vector<std::function<void()>> steps = {
        [] { SetCursorPos(300, 290); },
        [&] { mouse(MOUSEEVENTF_LEFTDOWN); },
        [] { SetCursorPos(310, 295); },
        [] { SetCursorPos(330, 300); },
        [&] { mouse(MOUSEEVENTF_LEFTUP); },
        [&] { mouse(MOUSEEVENTF_LEFTDOWN); },
        [] { SetCursorPos(390, 350); },
        [&] { key(VK_ESCAPE, 0); },
        [&] { mouse(MOUSEEVENTF_LEFTUP); },
        [&] { key(VK_ESCAPE, KEYEVENTF_KEYUP); },
        [&] { PostMessage(m_window.GetSafeHwnd(), WM_CLOSE, 0, 0); },
    };
    std::size_t next = 0;
    std::vector<int> results;
    m_window.m_on[WM_TIMER] = [&](LPARAM) { next < steps.size() ? steps[next++]() : void(); };
    m_window.m_on[WM_LBUTTONDOWN] = [&](LPARAM point) {
        results.push_back(m_tracker->Track(&m_window, CPoint(LOWORD(point), HIWORD(point)), TRUE, nullptr));
    };
    SetForegroundWindow(m_window.GetSafeHwnd());
    m_window.SetFocus();
    m_window.SetTimer(1, 20);
    m_window.RunModalLoop();
    EXPECT_EQ(results, (std::vector<int>{TRUE, FALSE}));
    EXPECT_EQ(m_tracker->GetRect(), CRect(80, 50, 180, 150)) << "the first drag alone";
}
