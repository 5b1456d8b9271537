#include "framework/base/Exception.h"
#include "tests/support/Print.h"
#include "tests/view/windows/TrackerStage.h"
#include "view/detail/TrackerTools.h"

namespace {

constexpr COLORREF kBlack = RGB(0, 0, 0), kWhite = RGB(255, 255, 255), kRed = RGB(255, 0, 0);
constexpr COLORREF kGround = RGB(0, 200, 100);
const CRect kRect(20, 30, 120, 80);

struct OpenTracker : CVakTracker
{
    using CVakTracker::CVakTracker;
    using CVakTracker::DrawTrackerRect;
};

/// Pictures of trackers on green ground, through a device context that has an origin of its own.
class TrackerDrawTest : public testing::Test
{
protected:
    void Draw(unsigned int style, const CRect& rect = kRect, int constraint = 0)
    {
        m_dc.FillSolidRect(CRect(0, 0, 300, 200), kGround);
        OpenTracker tracker(rect, style, 0);
        tracker.SetConstraint(constraint, 0.5f);
        m_dc.SetViewportOrg(CPoint(-50, -60));
        if (style)
            tracker.Draw(&m_dc);
        else
            tracker.DrawTrackerRect(rect, nullptr, &m_dc, &m_window);
        EXPECT_EQ(m_dc.SetViewportOrg(CPoint()), CPoint(-50, -60));
    }
    /// How many pixels of a line from there on have the colour.
    int Count(COLORREF color, CPoint from, CSize step = CSize(1, 0), int length = 200) const
    {
        int count = 0;
        for (; length > 0; --length, from += step)
            count += m_dc.GetPixel(from) == color;
        return count;
    }

    vak::test::TrackerStage m_window;
    CClientDC m_dc{&m_window};
};

} // namespace

TEST_F(TrackerDrawTest, EveryStyleDrawsItsPartsAndNothingElse)
{
    Draw(vak::SolidOutline);
    EXPECT_EQ(Count(kRed, CPoint(0, 29)), 102);
    EXPECT_EQ(Count(kRed, CPoint(120, 0), CSize(0, 1)), 52);
    EXPECT_EQ(Count(kGround, CPoint(0, 55)), 198);
    Draw(vak::DottedOutline);
    const int dots = Count(kBlack, CPoint(0, 80));
    EXPECT_TRUE(dots > 20 && dots < 80 && Count(kWhite, CPoint(0, 80)) == 102 - dots);
    Draw(vak::DottedOutline, CRect(120, 80, 20, 30), 1);
    EXPECT_EQ(Count(kRed, CPoint(0, 80)), dots) << "with a ratio, and inverted";
    Draw(vak::ResizeInside);
    EXPECT_EQ(Count(kBlack, CPoint(0, 30)), 27) << "three handles of 9";
    EXPECT_EQ(Count(kBlack, CPoint(20, 0), CSize(0, 1)), 27);
    Draw(vak::ResizeOutside, kRect, 1);
    EXPECT_EQ(Count(kBlack, CPoint(0, 22)), 18) << "no handles of sides";
    Draw(vak::HatchedBorder);
    EXPECT_EQ(Count(kBlack, CPoint(20, 24), CSize(1, 0), 8), 2) << "every fourth";
    EXPECT_EQ(Count(kWhite, CPoint(120, 40), CSize(1, 0), 8), 6);
    EXPECT_EQ(Count(kGround, CPoint(0, 55)), 200 - 16);
    Draw(0);
    EXPECT_EQ(Count(kGround, CPoint(0, 30)), 150) << "the outline of a drag inverts every second pixel";
    Draw(vak::HatchedInside, CRect(0, 0, 64, 64));
    EXPECT_EQ(Count(kGround, CPoint(12, 20), CSize(1, 0), 8), 6) << "the ground shines through";
    EXPECT_EQ(Count(kBlack, CPoint(19, 20), CSize(-1, 1), 7) % 7, 0) << "the lines are diagonal";
}

TEST_F(TrackerDrawTest, CursorAndHitsFollowTheHandlesAndTheirStyle)
{
    CVakTracker tracker(kRect, vak::HatchedBorder, 0);
    const LPCTSTR cursors[] = {IDC_ARROW, IDC_SIZENWSE, IDC_SIZENESW, IDC_SIZENS, IDC_SIZEWE, IDC_SIZEALL};
    const int rows[][3] = {{22, 32, 1}, {117, 32, 2}, {117, 77, 1}, {22, 77, 2}, {70, 32, 3}, {117, 55, 4},
                           {70, 77, 3}, {22, 55, 4},  {60, 50, 5},  {15, 25, 5}, {5, 5, 0}};
    for (const CRect& rect : {kRect, CRect(120, 30, 20, 80)})
        for (const auto& row : rows) {
            tracker.SetRect(rect);
            SetCursorPos(200 + row[0], 200 + row[1]);
            ::SetCursor(LoadCursor(nullptr, IDC_ARROW));
            EXPECT_EQ(tracker.SetCursor(&m_window, HTCLIENT), row[2] != 0);
            EXPECT_EQ(GetCursor(), LoadCursor(nullptr, cursors[row[2]])) << row[0] << ' ' << row[1];
            EXPECT_FALSE(tracker.SetCursor(&m_window, HTCAPTION));
        }
    tracker.SetRect(kRect);
    EXPECT_EQ(tracker.HitTest(CPoint(22, 32)), vak::HitMiddle) << "no style shows handles";
    tracker.SetStyle(vak::ResizeOutside);
    EXPECT_EQ(tracker.HitTest(CPoint(15, 25)), vak::HitTopLeft);
    EXPECT_EQ(tracker.SetHandleSize(3), 9);
    EXPECT_EQ(tracker.HitTest(CPoint(15, 25)), vak::HitNothing);
    tracker.SetRect(CRect(-9, -9, 320, 90));
    tracker.Draw(&m_dc);
    EXPECT_EQ(tracker.HitTest(CPoint(298, 1)), vak::HitTopRight) << "at the border of the window";
    float ratio = 0;
    tracker.SetConstraint(1, 0);
    EXPECT_TRUE(tracker.GetConstraint(ratio) == 1 && ratio == 0.01f);
}

TEST_F(TrackerDrawTest, WithoutAnyDrawingObjectsLeftTheToolsSayHow)
{
    std::vector<HBRUSH> hoard;
    while (const HBRUSH brush = CreateSolidBrush(static_cast<COLORREF>(hoard.size())))
        hoard.push_back(brush);
    bool isThrown = false;
    try {
        vak::detail::TrackerTools tools;
    } catch (CResourceException*) {
        isThrown = true;
    }
    for (const HBRUSH brush : hoard)
        DeleteObject(brush);
    EXPECT_TRUE(isThrown);
}
