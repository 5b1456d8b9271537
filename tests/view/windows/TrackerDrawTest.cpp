#include "framework/base/Exception.h"
#include "tests/support/Print.h"
#include "tests/view/windows/TrackerStage.h"
#include "view/detail/TrackerTools.h"

#include <gtest/gtest.h>

using vak::test::TrackerStage;

namespace {

constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kGround = RGB(0, 200, 100);

/// A picture of a tracker on a rectangle of 100 x 50 pixels at (20, 30), on green ground.
class Picture
{
public:
    Picture()
    {
        CClientDC window(&m_window);
        m_dc.CreateCompatibleDC(&window);
        m_bitmap.CreateCompatibleBitmap(&window, 200, 120);
        m_former = m_dc.SelectObject(&m_bitmap);
    }
    ~Picture() { m_dc.SelectObject(m_former); }

    void Draw(unsigned int style, const CRect& rect = CRect(20, 30, 120, 80), int constraint = 0)
    {
        m_dc.FillSolidRect(CRect(0, 0, 200, 120), kGround);
        CVakTracker tracker(rect, style, 0);
        tracker.SetConstraint(constraint, 0.5f);
        tracker.Draw(&m_dc);
    }
    COLORREF At(int x, int y) const { return m_dc.GetPixel(x, y); }
    /// How many pixels of a line from there on, to the right or down, have the colour.
    int Count(COLORREF color, CPoint from, CSize step, int length) const
    {
        int count = 0;
        for (; length > 0; --length, from += step)
            count += m_dc.GetPixel(from) == color;
        return count;
    }

    TrackerStage m_window;
    CDC m_dc;

private:
    CBitmap m_bitmap;
    CBitmap* m_former = nullptr;
};

} // namespace

TEST(TrackerDrawTest, EveryStyleDrawsItsPartsAndNothingElse)
{
    Picture picture;
    const CSize right(1, 0);
    const CSize down(0, 1);
    picture.Draw(0);
    EXPECT_EQ(picture.Count(kGround, CPoint(0, 55), right, 200), 200);

    picture.Draw(vak::SolidOutline);
    EXPECT_EQ(picture.Count(kRed, CPoint(0, 29), right, 200), 102);
    EXPECT_EQ(picture.Count(kRed, CPoint(120, 0), down, 120), 52);
    EXPECT_EQ(picture.Count(kGround, CPoint(0, 55), right, 200), 198);

    picture.Draw(vak::DottedOutline);
    const int dots = picture.Count(kBlack, CPoint(0, 80), right, 200);
    EXPECT_TRUE(dots > 20 && dots < 80);
    EXPECT_EQ(picture.Count(kWhite, CPoint(0, 80), right, 200), 102 - dots);
    picture.Draw(vak::DottedOutline, CRect(120, 80, 20, 30), 1);
    EXPECT_EQ(picture.Count(kRed, CPoint(0, 80), right, 200), dots) << "with a ratio, and inverted";

    picture.Draw(vak::ResizeInside);
    EXPECT_EQ(picture.Count(kBlack, CPoint(0, 30), right, 200), 27) << "three handles of 9";
    EXPECT_EQ(picture.Count(kBlack, CPoint(20, 0), down, 120), 27);
    EXPECT_EQ(picture.Count(kBlack, CPoint(28, 38), right, 3), 1) << "a corner of a handle";
    picture.Draw(vak::ResizeOutside, CRect(20, 30, 120, 80), 1);
    EXPECT_EQ(picture.Count(kBlack, CPoint(0, 22), right, 200), 18) << "no handles of sides";
    EXPECT_EQ(picture.At(21, 31), kGround);
    EXPECT_EQ(picture.At(20, 30), kBlack);

    picture.Draw(vak::HatchedBorder);
    EXPECT_EQ(picture.Count(kBlack, CPoint(20, 24), right, 8), 2) << "every fourth";
    EXPECT_EQ(picture.Count(kWhite, CPoint(120, 40), right, 8), 6);
    EXPECT_EQ(picture.Count(kGround, CPoint(0, 55), right, 200), 200 - 16);
    picture.Draw(vak::HatchedInside, CRect(0, 0, 64, 64));
    EXPECT_EQ(picture.Count(kBlack, CPoint(10, 20), right, 8), 2);
    EXPECT_EQ(picture.Count(kGround, CPoint(10, 20), right, 8), 6) << "the ground shines through";
    EXPECT_NE(picture.At(11, 20) == kBlack, picture.At(10, 20) == kBlack && picture.At(10, 21) == kBlack)
        << "the lines are diagonal";
}

TEST(TrackerDrawTest, LiesInDevicePixelsAndLeavesTheDeviceContextAsItWas)
{
    Picture picture;
    picture.Draw(0);
    CVakTracker tracker(CRect(20, 30, 120, 80), vak::ResizeInside | vak::SolidOutline, 0);
    picture.m_dc.SetViewportOrg(CPoint(-50, -60));
    picture.m_dc.SetTextColor(RGB(1, 2, 3));
    picture.m_dc.SetBkMode(TRANSPARENT);
    tracker.Draw(&picture.m_dc);
    EXPECT_EQ(picture.m_dc.SetBkMode(OPAQUE), TRANSPARENT);
    EXPECT_EQ(picture.m_dc.SetTextColor(0), RGB(1, 2, 3));
    EXPECT_EQ(picture.m_dc.SetViewportOrg(CPoint()), CPoint(-50, -60));
    EXPECT_EQ(picture.At(19, 60), kRed);
}

TEST(TrackerDrawTest, CursorShowsTheWayOfTheHandleUnderTheMouse)
{
    Picture picture;
    CVakTracker tracker(CRect(20, 30, 120, 80), vak::ResizeInside | vak::HatchedBorder, 0);
    const struct
    {
        CPoint mouse;
        LPCTSTR cursor;
    } rows[] = {
        {{22, 32}, IDC_SIZENWSE}, {{117, 32}, IDC_SIZENESW}, {{117, 77}, IDC_SIZENWSE},
        {{22, 77}, IDC_SIZENESW}, {{70, 32}, IDC_SIZENS},    {{117, 55}, IDC_SIZEWE},
        {{70, 77}, IDC_SIZENS},   {{22, 55}, IDC_SIZEWE},    {{60, 50}, IDC_SIZEALL},
        {{15, 25}, IDC_SIZEALL},  {{5, 5}, nullptr},
    };
    const HCURSOR arrow = LoadCursor(nullptr, IDC_ARROW);
    for (const bool isInverted : {false, true})
        for (const auto& row : rows) {
            tracker.SetRect(isInverted ? CRect(120, 30, 20, 80) : CRect(20, 30, 120, 80));
            SetCursorPos(200 + row.mouse.x, 200 + row.mouse.y);
            ::SetCursor(arrow);
            EXPECT_EQ(tracker.SetCursor(&picture.m_window, HTCLIENT), row.cursor != nullptr);
            EXPECT_EQ(GetCursor(), row.cursor ? LoadCursor(nullptr, row.cursor) : arrow)
                << testing::PrintToString(row.mouse);
        }
    SetCursorPos(260, 250);
    EXPECT_FALSE(tracker.SetCursor(&picture.m_window, HTCAPTION));
}

TEST(TrackerDrawTest, KeysActOnceAndTell)
{
    vak::test::TrackerEvents events;
    CVakTracker tracker(CRect(20, 30, 120, 80), 0, 0);
    events.Listen(tracker);
    EXPECT_TRUE(tracker.OnKey(VK_RIGHT, nullptr));
    EXPECT_EQ(tracker.GetRect(), CRect(21, 30, 121, 80));
    EXPECT_FALSE(tracker.OnKey(VK_SPACE, nullptr));
    {
        const vak::test::KeysDown keys{VK_SHIFT};
        EXPECT_TRUE(tracker.OnKey(VK_UP, nullptr));
        const CRect bounds(21, 0, 300, 200);
        EXPECT_TRUE(tracker.OnKey(VK_LEFT, &bounds)) << "the key was an arrow, though nothing moved";
    }
    EXPECT_EQ(tracker.GetRect(), CRect(21, 29, 121, 80));
    EXPECT_EQ(events.m_seen, "11");
    float ratio = 0;
    EXPECT_EQ(tracker.GetConstraint(ratio), 0);
    EXPECT_EQ(ratio, 1.0f);
    tracker.SetConstraint(1, 0);
    EXPECT_EQ(tracker.GetConstraint(ratio), 1);
    EXPECT_EQ(ratio, 0.01f);
    EXPECT_EQ(tracker.HitTest(CPoint(22, 30)), vak::HitMiddle) << "no style shows handles";
    EXPECT_EQ(tracker.SetStyle(vak::ResizeOutside), 0u);
    EXPECT_EQ(tracker.HitTest(CPoint(15, 25)), vak::HitTopLeft);
    EXPECT_EQ(tracker.SetHandleSize(3), 9);
    EXPECT_EQ(tracker.HitTest(CPoint(15, 25)), vak::HitNothing);
}

TEST(TrackerDrawTest, WithoutAnyDrawingObjectsLeftTheToolsSayHow)
{
    std::vector<HBRUSH> hoard;
    while (const HBRUSH brush = CreateSolidBrush(static_cast<COLORREF>(hoard.size())))
        hoard.push_back(brush);
    const auto make = [] { vak::detail::TrackerTools tools; };
    bool isThrown = false;
    try {
        make();
    } catch (CResourceException* exception) {
        isThrown = true;
        exception->Delete();
    }
    for (const HBRUSH brush : hoard)
        DeleteObject(brush);
    EXPECT_TRUE(isThrown);
    make();
}
