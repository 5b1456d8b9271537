#include "framework/ui/DC.h"

#include "framework/base/Exception.h"
#include "framework/ui/Wnd.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <functional>
#include <tuple>
#include <vector>

namespace {

constexpr int kSide = 32;
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

/// A white square in memory to draw on.
class Canvas : public CDC
{
public:
    Canvas()
    {
        CClientDC screen(nullptr);
        CreateCompatibleDC(&screen);
        m_bitmap.CreateCompatibleBitmap(&screen, kSide, kSide);
        m_former = SelectObject(&m_bitmap);
        FillSolidRect(CRect(0, 0, kSide, kSide), RGB(255, 255, 255));
    }
    ~Canvas() override { SelectObject(m_former); }

    std::vector<COLORREF> Pixels() const
    {
        std::vector<COLORREF> pixels;
        for (int i = 0; i < kSide * kSide; ++i)
            pixels.push_back(::GetPixel(GetSafeHdc(), i % kSide - GetViewportOrg().x, i / kSide));
        return pixels;
    }
    int CountChanged(const std::vector<COLORREF>& before) const
    {
        const std::vector<COLORREF> now = Pixels();
        int count = 0;
        for (std::size_t i = 0; i < now.size(); ++i)
            count += now[i] != before[i];
        return count;
    }

private:
    CBitmap m_bitmap;
    CBitmap* m_former;
};

class PaintedWindow : public CWnd
{
public:
    PaintedWindow() { CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP, CRect(0, 0, 9, 9), nullptr, 0); }

    std::vector<CPoint> m_points;
    int m_turned = 0;

protected:
    void OnPaint() override { AfxThrowNotSupportedException(); }
    BOOL OnEraseBkgnd(CDC* dc) override
    {
        dc->FillSolidRect(CRect(0, 0, 5, 9), kRed);
        return TRUE;
    }
    void OnMouseMove(UINT, CPoint point) override { m_points.push_back(point); }
    BOOL OnMouseWheel(UINT, short delta, CPoint point) override
    {
        m_points.push_back(point);
        m_turned += delta;
        return TRUE;
    }
};

} // namespace

TEST(Drawing, DragFramesInvertTheirPixelsAndGoWithoutATrace)
{
    Canvas canvas;
    for (int i = 0; i < kSide; ++i)
        canvas.FillSolidRect(CRect(i, 0, i + 1, i), RGB(7 * i, 3 * i, 255 - i));
    canvas.SetViewportOrg(CPoint(3, 0));
    canvas.ExcludeClipRect(CRect(10, 0, 14, kSide));
    canvas.SetTextColor(kRed);
    CBrush solid(RGB(255, 255, 255));
    const std::vector<COLORREF> before = canvas.Pixels();

    const CRect first(1, 1, 21, 11);
    canvas.DrawDragRect(first, CSize(1, 2), nullptr, CSize(), &solid);
    EXPECT_EQ(canvas.CountChanged(before), 2 * 20 * 2 + 6 * 2 - 4 * 4) << "the frame, less what is clipped";
    const CRect second(4, 3, 24, 30);
    canvas.DrawDragRect(second, CSize(3, 3), first, CSize(1, 2), nullptr, &solid);
    // Every other one of 3 rows of 20 twice and 3 columns of 21 twice, less 4 columns of the rows.
    EXPECT_EQ(canvas.CountChanged(before), (2 * 3 * 20 + 2 * 3 * 21 - 2 * 3 * 4) / 2);
    canvas.DrawDragRect(first, CSize(50, 50), second, CSize(3, 3));
    EXPECT_EQ(canvas.CountChanged(before), 16 * 10 / 2) << "a thick frame has no inside";
    canvas.DrawDragRect(first, CSize(), first, CSize(50, 50));
    EXPECT_EQ(canvas.CountChanged(before), 0);
}

TEST(Drawing, FillsFramesAndPatternsCoverTheirPixels)
{
    Canvas canvas;
    canvas.Draw3dRect(CRect(2, 2, 10, 8), kRed, kBlue);
    for (const auto& [x, y, color] : std::vector<std::tuple<int, int, COLORREF>>{
             {2, 2, kRed}, {8, 2, kRed}, {9, 2, kBlue}, {2, 6, kRed}, {2, 7, kBlue}, {9, 7, kBlue}})
        EXPECT_EQ(canvas.GetPixel(x, y), color) << x << ' ' << y;
    EXPECT_EQ(canvas.GetPixel(3, 3), RGB(255, 255, 255));

    const WORD hatch[8] = {0x80, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    CBitmap pattern;
    ASSERT_TRUE(pattern.CreateBitmap(8, 8, 1, 1, hatch));
    CBrush brush(&pattern);
    CBrush solid(kBlue);
    canvas.SetTextColor(kRed);
    canvas.SetBkColor(kBlue);
    canvas.SetBrushOrg(CPoint(4, 4));
    CBrush* const former = canvas.SelectObject(&solid);
    CBrush* const blue = canvas.SelectObject(&brush);
    ASSERT_TRUE(former && blue && former != blue);
    canvas.PatBlt(16, 16, 8, 8, PATCOPY);
    EXPECT_EQ(canvas.GetPixel(20, 20), kBlue);
    EXPECT_EQ(canvas.GetPixel(21, 20), kRed);
    EXPECT_EQ(canvas.SelectObject(blue)->GetSafeHandle(), brush.GetSafeHandle());
    canvas.PatBlt(0, 31, 1, 1, PATCOPY);
    EXPECT_EQ(canvas.GetPixel(0, 31), kBlue);
    EXPECT_EQ(canvas.SelectObject(former)->GetSafeHandle(), solid.GetSafeHandle());
}

TEST(Drawing, WithoutAResourceThrowsInsteadOfDrawingElsewhere)
{
    CBitmap none;
    CWnd gone;
    CPen pen(PS_DOT, 1, kRed);
    EXPECT_FALSE(pen.CreatePen(PS_SOLID, 1, kBlue)) << "the first one would be lost";
    const std::function<void()> attempts[] = {[&] { const CBrush brush(&none); },
                                              [&] { const CClientDC dc(&gone); },
                                              [&] { const CPaintDC dc(&gone); }};
    for (const auto& attempt : attempts) {
        try {
            attempt();
            ADD_FAILURE();
        } catch (CResourceException* failure) {
            failure->Delete();
        }
    }
}

TEST(Drawing, HooksGetWhatTheMessagesSayAndAFailureToPaintIsToldOnce)
{
    vak::test::MessageRecorder recorder;
    PaintedWindow window;
    window.ShowWindow(SW_SHOWNOACTIVATE);
    window.Invalidate();
    window.UpdateWindow();
    EXPECT_FALSE(::GetUpdateRect(window.GetSafeHwnd(), nullptr, FALSE));
    EXPECT_GE(recorder.Boxes().size(), 1u);
    CClientDC dc(&window);
    window.SendMessage(WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc.GetSafeHdc()));
    EXPECT_EQ(dc.GetPixel(4, 4), kRed) << "the device context outlives the message";

    window.SendMessage(WM_MOUSEMOVE, 0, MAKELPARAM(-3, 7));
    window.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, -240), MAKELPARAM(5, -6));
    EXPECT_EQ(window.m_points, (std::vector<CPoint>{CPoint(-3, 7), CPoint(5, -6)}));
    EXPECT_EQ(window.m_turned, -240);
    window.SetCapture();
    EXPECT_EQ(CWnd::GetCapture(), window.GetSafeHwnd());
    ::ReleaseCapture();
}
