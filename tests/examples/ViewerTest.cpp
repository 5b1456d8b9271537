#include "examples/vakconvert/ContentIo.h"
#include "examples/vakconvert/viewer/SavePart.h"
#include "examples/vakconvert/viewer/ViewerWindow.h"
#include "files/IoPlugins.h"
#include "tests/examples/Vakconvert.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <random>
#include <utility>

using vak::test::Names;
using vak::test::TempFolder;
using vak::test::Vakconvert;

namespace {

/// Every pixel has a colour of its own, as far as there are that many.
Content Picture(unsigned int width, unsigned int height)
{
    Content content;
    content.image = {width, height, 3, {}};
    for (unsigned int i = 0; i < width * height; ++i)
        for (const unsigned int sample : {7 * i + 1, i / 3, 255 - i})
            content.image.pixels.push_back(static_cast<std::uint8_t>(sample));
    return content;
}

COLORREF ColorOf(const Image& image, int x, int y)
{
    const std::uint8_t* const at = image.pixels.data() + 3 * (y * static_cast<int>(image.width) + x);
    return RGB(at[0], at[1], at[2]);
}

/// A view of a picture in a window of its own, used as by a user.
class Viewer : public testing::Test, public ViewListener
{
protected:
    static void SetUpTestSuite() { RegisterIOPlugins(kIoPluginBitmaps); }
    static void TearDownTestSuite() { FreeIOPlugins(kIoPluginBitmaps); }

    void Show(Content&& content, CSize client)
    {
        m_view.reset();
        m_frame.DestroyWindow();
        m_document.emplace(std::move(content));
        m_frame.CreateEx(0, AfxRegisterWndClass(0), L"", WS_POPUP | WS_VISIBLE, CRect(CPoint(), client),
                         nullptr, 0);
        m_view.emplace(*m_document, *this);
        ASSERT_TRUE(m_view->Create(&m_frame));
        m_view->MoveWindow(CRect(CPoint(), client));
        m_view->ShowWhole();
    }
    void Type(const char* characters)
    {
        for (; *characters; ++characters)
            m_view->SendMessage(WM_CHAR, static_cast<WPARAM>(*characters));
    }
    void Turn(int notches, CPoint at, UINT flags = 0)
    {
        m_view->ClientToScreen(&at);
        m_view->SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(flags, notches * WHEEL_DELTA), MAKELPARAM(at.x, at.y));
    }
    void Drag(CPoint from, CPoint to)
    {
        const HWND window = m_view->GetSafeHwnd();
        PostMessage(window, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(to.x, to.y));
        PostMessage(window, WM_LBUTTONUP, 0, MAKELPARAM(to.x, to.y));
        m_view->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
    }
    COLORREF Seen(int x, int y)
    {
        m_view->UpdateWindow();
        return CClientDC(&*m_view).GetPixel(x, y);
    }
    void OnViewChanged() override {}
    void OnSaveWanted() override { ++m_saves; }

    std::optional<Document> m_document;
    CWnd m_frame;
    std::optional<DocumentView> m_view;
    int m_saves = 0;
};

} // namespace

TEST_F(Viewer, PaintsEachPixelOfASmallImageAtItsZoomOnADesk)
{
    Show(Picture(4, 3), CSize(41, 30));
    Type("++");
    // 12 x 9 pixels, in the middle of 41 x 30.
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 12; ++x)
            ASSERT_EQ(Seen(14 + x, 10 + y), ColorOf(*m_document->AsImage(), x / 3, y / 3)) << x << ' ' << y;
    EXPECT_EQ(Seen(13, 9), RGB(255, 255, 255)) << "the frame";
    EXPECT_EQ(Seen(26, 19), RGB(128, 128, 128));
    EXPECT_EQ(Seen(12, 8), Seen(40, 29)) << "the desk";

    // The desk is one pixel wide, on the right alone.
    Show(Picture(40, 30), CSize(41, 30));
    EXPECT_EQ(Seen(39, 29), ColorOf(*m_document->AsImage(), 39, 29));
    EXPECT_NE(Seen(40, 15), Seen(39, 15));
}

TEST_F(Viewer, PaintsTheSidesOfAModelOnPaper)
{
    Content content;
    content.isMesh = true;
    content.mesh.positions = {{0, 0, 0}, {9, 0, 0}, {4, 9, 0}};
    content.mesh.corners = {{0, -1, -1}, {1, -1, -1}, {2, -1, -1}};
    content.mesh.faceSizes = {3};
    Show(std::move(content), CSize(120, 120));
    for (const char* zoom : {"", "+", "f"}) {
        Type(zoom);
        int lines = 0;
        for (int x = 0; x < 120; ++x)
            lines += Seen(x, 60) == RGB(0x20, 0x40, 0x80);
        EXPECT_TRUE(lines >= 1 && lines <= 8) << zoom << lines;
    }
}

TEST_F(Viewer, ZoomsAroundTheMouseAndBackToTheSamePixels)
{
    Show(Picture(300, 200), CSize(120, 100));
    Type("1");
    m_view->SendMessage(WM_KEYDOWN, VK_END);
    Turn(1, CPoint(60, 50), MK_CONTROL);
    Turn(1, CPoint(60, 50), MK_SHIFT);
    std::mt19937 random(3);
    for (int round = 0; round < 5; ++round) {
        const CPoint at(40 + static_cast<int>(random() % 40), 40 + static_cast<int>(random() % 20));
        Turn(1, at);
        const CPoint scroll = m_view->GetScrollPosition();
        const auto under = m_view->Status().cursor;
        ASSERT_TRUE(under.has_value());
        for (const int notches : {1, 3, -2, 3, -4, -1}) {
            Turn(notches, at);
            EXPECT_EQ(m_view->Status().cursor, under) << "round " << round;
        }
        EXPECT_EQ(m_view->Status().zoom, 2.0f);
        EXPECT_EQ(m_view->GetScrollPosition(), scroll);
        EXPECT_EQ(Seen(at.x, at.y), ColorOf(*m_document->AsImage(), under->x, under->y));
        Turn(-1, at);
    }
    const CPoint before = m_view->GetScrollPosition();
    m_view->SendMessage(WM_MBUTTONDOWN, MK_MBUTTON, MAKELPARAM(50, 50));
    m_view->SendMessage(WM_MOUSEMOVE, MK_MBUTTON, MAKELPARAM(57, 53));
    EXPECT_EQ(m_view->GetScrollPosition(), before - CSize(7, 3));
    m_view->SendMessage(WM_MBUTTONUP);
    m_view->SendMessage(WM_MOUSEMOVE, 0, MAKELPARAM(70, 70));
    EXPECT_EQ(m_view->GetScrollPosition(), before - CSize(7, 3));
    Type("f");
    EXPECT_FALSE(m_view->GetStyle() & (WS_HSCROLL | WS_VSCROLL));
    // What was fitted is another place than before, under the same pixel.
    Turn(-1, CPoint(40, 30));
    Type("f");
    Turn(3, CPoint(40, 30));
    EXPECT_EQ(m_view->Status().cursor, CPoint(100, 50));
}

TEST_F(Viewer, SelectsByDraggingAndSavesThePixelsThatAreSelected)
{
    const TempFolder folder;
    Show(Picture(60, 40), CSize(140, 100));
    Type("+"); // the page begins at (10, 10)
    EXPECT_EQ(TextOf(m_view->Status()).Find(L"200 %    60 x 40"), 0);
    Drag(CPoint(20, 20), CPoint(80, 50));
    const CRect part = m_view->Selection();
    EXPECT_EQ(part.TopLeft(), CPoint(5, 5));
    m_view->SendMessage(WM_KEYDOWN, VK_RIGHT);
    Type("\x13");
    EXPECT_EQ(m_saves, 1);
    EXPECT_EQ(m_view->Selection(), part + CSize(1, 0));
    Type("a");
    EXPECT_EQ(m_view->Selection().Width(), m_view->Selection().Height());
    EXPECT_GE(TextOf(m_view->Status()).Find(L"selected: 6, 5 to "), 0);

    const CString path = folder.Write("part.png", "an older file");
    const Image& image = *m_document->AsImage();
    ASSERT_EQ(SavePart(image, CRect(57, 1, 60, 3), path), L"");
    Content saved;
    ASSERT_EQ(LoadContent(path, saved), L"");
    ASSERT_TRUE(saved.image.width == 3 && saved.image.height == 2 && saved.image.channels == 3);
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(ColorOf(saved.image, i % 3, i / 3), ColorOf(image, 57 + i % 3, 1 + i / 3)) << i;
    EXPECT_NE(SavePart(image, part, folder.Path("part.obj")), L"") << "no format of images";
    EXPECT_NE(SavePart(image, part, folder.Path("part.png\\below.png")), L"");
    EXPECT_EQ(folder.Names(), Names{"part.png"});

    Type("\x1B");
    EXPECT_TRUE(m_view->Selection().IsRectEmpty());
    Drag(CPoint(20, 20), CPoint(90, 60));
    m_frame.DestroyWindow();
    EXPECT_TRUE(m_view->Selection().IsRectEmpty()) << "the selection goes with the window";
}

TEST_F(Viewer, OpensItsWindowTellsTheViewAndRefusesToSaveNothing)
{
    vak::test::MessageRecorder recorder;
    const Document document(Picture(40, 20));
    ViewerWindow window(document, L"C:\\a\\b.png");
    ASSERT_TRUE(window.Open());
    EXPECT_EQ(window.GetWindowText(), L"b.png - vakconvert");
    const HWND view = GetFocus();
    EXPECT_EQ(GetParent(view), window.GetSafeHwnd());
    const CWnd* const status = CWnd::FromHandlePermanent(GetWindow(view, GW_HWNDNEXT));
    ASSERT_NE(status, nullptr);
    SendMessageW(view, WM_CHAR, '+', 0);
    EXPECT_EQ(status->GetWindowText().Left(16), L"200 %    40 x 20");
    SendMessageW(view, WM_CHAR, 0x13, 0);
    EXPECT_EQ(recorder.Boxes().size(), 1u);
}

TEST(ViewerParts, TransparentPixelsShowTheGroundThatMovesWithTheDocument)
{
    const Image image{2, 1, 2, {0, 128, 9, 255}};
    std::uint32_t pixels[7] = {};
    DrawPixels(image, {{0, 0, 1}, {0, 0}}, CPoint(7, 15), {pixels, 3});
    // Half of black over 0xCC and over 0xFF: 204 * 127 / 255 and 255 * 127 / 255.
    const std::uint32_t expected[] = {0x666666, 0x7F7F7F, 0x090909, 0x7F7F7F, 0x666666, 0x090909, 0};
    for (std::size_t i = 0; i < std::size(expected); ++i)
        EXPECT_EQ(pixels[i], expected[i]) << i;
    const Image color{1, 1, 4, {255, 100, 0, 51}};
    DrawPixels(color, {{0}, {0}}, CPoint(), {pixels, 1});
    EXPECT_EQ(pixels[0], 0xFFE0CCu) << "a fifth over white";
}

TEST(ViewerParts, LinesHaveTheSamePixelsInWholeAndInPieces)
{
    const std::pair<CPoint, std::vector<CPoint>> rows[] = {
        {{5, 2}, {{0, 0}, {1, 0}, {2, 1}, {3, 1}, {4, 2}, {5, 2}}},
        {{-1, 3}, {{0, 0}, {0, 1}, {-1, 2}, {-1, 3}}},
        {{3, -3}, {{0, 0}, {1, -1}, {2, -2}, {3, -3}}},
        {{0, 0}, {{0, 0}}},
    };
    for (const auto& [end, points] : rows) {
        const CPoint start(20, 20);
        const CPoint to = start + end;
        std::vector<std::uint32_t> expected(1600);
        for (const CPoint& point : points)
            expected[static_cast<std::size_t>((20 + point.y) * 40 + 20 + point.x)] = 1;
        std::vector<std::uint32_t> whole(1600);
        DrawLine(start, to, 1, CRect(0, 0, 40, 40), {whole.data(), 40});
        EXPECT_EQ(whole, expected);
        std::vector<std::uint32_t> pieces(1600);
        for (const CRect& piece : {CRect(0, 0, 22, 21), CRect(22, 0, 40, 21), CRect(0, 21, 40, 40)})
            DrawLine(to, start, 1, piece, {pieces.data() + piece.top * 40 + piece.left, 40});
        EXPECT_EQ(pieces, expected);
    }
}

TEST(ViewerParts, SelectionsTakeAnAspectWithinTheDocument)
{
    struct Row
    {
        CRect selection;
        Aspect aspect;
        CRect result;
    };
    const Row rows[] = {
        {{10, 10, 50, 20}, {L"", 0, 0}, {10, 10, 50, 20}},
        {{10, 10, 50, 20}, {L"", 1, 1}, {10, 10, 50, 50}},
        {{10, 50, 90, 60}, {L"", 4, 3}, {10, 50, 43, 75}},
        {{0, 0, 3, 70}, {L"", 16, 9}, {0, 0, 3, 2}},
        {{99, 74, 100, 75}, {L"", 1, 9}, {99, 74, 100, 75}},
        {{80, 0, 100, 9}, {L"", 3, 4}, {80, 0, 100, 27}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(WithAspect(row.selection, row.aspect, CSize(100, 75)), row.result)
            << testing::PrintToString(row.selection);
}

TEST(ViewerParts, AWireframeHasEachEdgeOnceAndFillsItsSheet)
{
    Mesh mesh;
    mesh.positions = {{0, 0, 0}, {9, 0, 0}, {0, 9, 0}, {9, 9, 0}, {NAN, 0, 0}};
    for (const int position : {0, 1, 2, 1, 3, 2, 0, 1, 4})
        mesh.corners.push_back({position, -1, -1});
    mesh.faceSizes = {3, 3, 3};
    const Wireframe wireframe(mesh);
    EXPECT_EQ(wireframe.Edges().size(), 5u);
    EXPECT_EQ(std::max(wireframe.Size().cx, wireframe.Size().cy), 2000 + 2 * 40 + 1);
    const CRect sheet(CPoint(40, 40), wireframe.Size() - CSize(80, 80));
    for (const auto& [a, b] : wireframe.Edges())
        EXPECT_TRUE(sheet.PtInRect(a) && sheet.PtInRect(b));
    EXPECT_TRUE(Wireframe::IsNear({CPoint(0, 0), CPoint(9, 9)}, CRect(3, 4, 5, 5)));
    EXPECT_FALSE(Wireframe::IsNear({CPoint(0, 0), CPoint(9, 9)}, CRect(10, 0, 12, 9)));
}

TEST_F(Vakconvert, TellsWhyThereIsNothingToView)
{
    m_folder.Write("damaged.png", "\x89PNG\r\n");
    m_folder.Write("notes.txt", "text");
    m_folder.Write("points.obj", "v 0 0 0\n");
    const std::pair<const wchar_t*, const char*> rows[] = {
        {L"damaged.png", "Mauvais format de fichier"},
        {L"notes.txt", "notes.txt: "},
        {L"points.obj", "ne contient aucune information"},
        {L"missing.png", "missing.png: "},
    };
    for (const auto& [name, text] : rows) {
        EXPECT_EQ(Run(CString(L"--view @") + name), 1u) << m_output;
        EXPECT_TRUE(Says(text)) << m_output;
    }
}
