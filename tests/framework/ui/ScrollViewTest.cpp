#include "framework/ui/ScrollView.h"

#include "framework/ui/detail/ScrollLayout.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <random>

namespace {

/// Shows of which pixel of the whole each pixel is: its column and row modulo 64, and their carry.
COLORREF ColorAt(int x, int y)
{
    return RGB(x % 64 * 4, y % 64 * 4, (x / 64 + y / 64) % 64 * 4);
}

class MapView : public CScrollView
{
public:
    MapView(int width, int height)
    {
        CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP | WS_VISIBLE, CRect(0, 0, width, height), nullptr,
                 0);
    }
    bool Has(DWORD style) const { return (GetStyle() & style) != 0; }
    CSize Client() const { return GetClientRect().Size(); }

    /// A size to set when the client area changes, as a view does that fits its zoom to it.
    CSize m_wanted;

protected:
    void OnSize(UINT type, int cx, int cy) override
    {
        CScrollView::OnSize(type, cx, cy);
        if (!(m_wanted == CSize()))
            SetScrollSizes(MM_TEXT, m_wanted);
    }
    void OnDraw(CDC* dc) override
    {
        CRect area;
        dc->GetClipBox(area);
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x)
                ::SetPixel(dc->GetSafeHdc(), x, y, ColorAt(x, y));
    }
};

} // namespace

TEST(ScrollLayout, ABarAppearsWhenItsRoomOrThatOfTheOtherBarIsMissing)
{
    struct Row
    {
        CSize total;
        bool isWide;
        bool isHigh;
        CPoint last;
    };
    const Row rows[] = {
        {{100, 80}, false, false, {0, 0}},
        {{101, 63}, true, false, {1, 0}},
        {{101, 64}, true, true, {17, 1}},
        {{84, 81}, false, true, {0, 1}},
        {{85, 81}, true, true, {1, 18}},
        {{0, 0}, false, false, {0, 0}},
        {{MAXLONG, 3}, true, false, {MAXLONG - 100, 0}},
    };
    for (const Row& row : rows) {
        const auto layout = vak::detail::LayOutBars(CSize(100, 80), CSize(16, 17), row.total);
        EXPECT_EQ(layout.isWide, row.isWide) << row.total.cx << ' ' << row.total.cy;
        EXPECT_EQ(layout.isHigh, row.isHigh) << row.total.cx << ' ' << row.total.cy;
        EXPECT_EQ(layout.last, row.last) << row.total.cx << ' ' << row.total.cy;
    }
}

TEST(ScrollView, ScrolledAndResizedShowsTheRightPixelsBetweenTheBarsItNeeds)
{
    MapView view(120, 90);
    std::mt19937 random(7);
    const auto upTo = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); };
    for (int round = 0; round < 60; ++round) {
        if (round % 5 == 0)
            view.SetScrollSizes(MM_TEXT, CSize(upTo(300), upTo(300)));
        if (round % 3 == 0)
            view.MoveWindow(CRect(CPoint(), CSize(60 + upTo(100), 60 + upTo(100))));
        view.ScrollToPosition(CPoint(upTo(400) - 50, upTo(400) - 50));
        view.UpdateWindow();
        const CSize client = view.Client();
        const CSize total = view.GetTotalSize();
        const CPoint position = view.GetScrollPosition();
        EXPECT_EQ(view.Has(WS_HSCROLL), total.cx > client.cx);
        EXPECT_EQ(view.Has(WS_VSCROLL), total.cy > client.cy);
        EXPECT_TRUE(position.x >= 0 && position.x <= std::max(total.cx - client.cx, 0L));
        EXPECT_TRUE(position.y >= 0 && position.y <= std::max(total.cy - client.cy, 0L));
        const CClientDC dc(&view);
        for (int probe = 0; probe < 8; ++probe) {
            const CPoint at(upTo(client.cx - 1), upTo(client.cy - 1));
            EXPECT_EQ(dc.GetPixel(at), ColorAt(at.x + position.x, at.y + position.y)) << "round " << round;
        }
    }
}

TEST(ScrollView, BarsAndWheelScrollByTheirStepsAndTheThumbBeyondSixteenBits)
{
    MapView view(200, 200);
    view.SetScrollSizes(MM_TEXT, CSize(300000, 250), CSize(90, 0), CSize(7, 0));
    const LONG last = 300000 - view.Client().cx;
    const std::pair<UINT, LONG> rows[] = {{SB_LINERIGHT, 7},    {SB_PAGERIGHT, 97},  {SB_LINELEFT, 90},
                                          {SB_PAGELEFT, 0},     {SB_LINELEFT, 0},    {SB_RIGHT, last},
                                          {SB_ENDSCROLL, last}, {SB_LINERIGHT, last}};
    for (const auto& [code, position] : rows) {
        view.SendMessage(WM_HSCROLL, code);
        EXPECT_EQ(view.GetScrollPosition(), CPoint(position, 0)) << code;
    }
    view.SendMessage(WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(GetDesktopWindow()));
    EXPECT_EQ(view.GetScrollPosition().y, 0) << "a bar that is a control of its own";
    view.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, -WHEEL_DELTA));
    EXPECT_EQ(view.GetScrollPosition().y, 0);
    view.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA));
    EXPECT_EQ(view.GetScrollPosition().y, 3 * (view.Client().cy / 10));

    // The thumb of the bar is dragged to its end, by the messages that a mouse would cause.
    view.ScrollToPosition(CPoint());
    SCROLLBARINFO bar{};
    bar.cbSize = sizeof bar;
    GetScrollBarInfo(view.GetSafeHwnd(), static_cast<LONG>(OBJID_HSCROLL), &bar);
    CPoint thumb(bar.rcScrollBar.left + bar.xyThumbTop + 2, bar.rcScrollBar.top + 4);
    PostMessage(view.GetSafeHwnd(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(thumb.x + 100, thumb.y));
    PostMessage(view.GetSafeHwnd(), WM_LBUTTONUP, 0, MAKELPARAM(thumb.x + 100, thumb.y));
    view.SendMessage(WM_NCLBUTTONDOWN, HTHSCROLL, MAKELPARAM(thumb.x, thumb.y));
    EXPECT_GT(view.GetScrollPosition().x, 100000);
}

TEST(ScrollView, SizesThatAreSetWhileBarsComeAndGoHoldInTheEnd)
{
    MapView view(200, 200);
    view.m_wanted.SetSize(190, 150);
    view.SetScrollSizes(MM_TEXT, CSize(150, 500));
    EXPECT_EQ(view.GetTotalSize(), CSize(190, 150));
    EXPECT_FALSE(view.Has(WS_HSCROLL) || view.Has(WS_VSCROLL));
    EXPECT_EQ(view.Client(), CSize(200, 200));
}
