#pragma once

/// Device contexts: what windows and bitmaps are drawn through. Windows only. Coordinates are logical ones
/// unless said otherwise; they are device coordinates until a mapping mode or an origin is set.

#include "framework/ui/GdiObject.h"

#include <memory>
#include <vector>

class CWnd;

/// Holds a device context, and deletes the one that it has in the end; the classes below release theirs in
/// the way that suits it.
class VAK_API CDC : public CObject
{
    DECLARE_DYNAMIC(CDC)

public:
    CDC() = default;
    ~CDC() override;

    /// Takes over `dc`; returns 0 when it is null or this object has one.
    BOOL Attach(HDC dc);
    /// Lets go of the device context and returns it.
    HDC Detach();
    HDC GetSafeHdc() const { return m_hDC; }
    /// A device context in memory like `dc`, or like the screen's when that is null. It draws on one pixel
    /// until a bitmap is selected.
    BOOL CreateCompatibleDC(CDC* dc);
    /// Returns 0 when there is none.
    BOOL DeleteDC();

    /// Remembers everything that is set and selected; RestoreDC with the number returned, or with -1 for the
    /// last time, goes back there.
    int SaveDC();
    BOOL RestoreDC(int saved);

    /// Selects the object, which stays the caller's, and returns the one of its kind before; null when that
    /// failed. What is returned may be selected again as long as this object lives, and is not to be kept
    /// longer.
    CPen* SelectObject(CPen* pen);
    CBrush* SelectObject(CBrush* brush);
    CBitmap* SelectObject(CBitmap* bitmap);
    /// As above for an object of the system: NULL_BRUSH, BLACK_PEN, DEFAULT_GUI_FONT, ...
    CGdiObject* SelectStockObject(int index);

    /// These return the setting before.
    COLORREF SetTextColor(COLORREF color);
    COLORREF SetBkColor(COLORREF color);
    int SetBkMode(int mode);
    int SetROP2(int mode);
    int SetMapMode(int mode);
    /// In device coordinates: where the brushes' patterns begin. It holds for brushes selected afterwards.
    CPoint SetBrushOrg(POINT origin);
    /// In device coordinates: where the logical origin lies.
    CPoint SetViewportOrg(POINT origin);
    CPoint GetViewportOrg() const;
    void LPtoDP(LPRECT rect) const;
    void DPtoLP(LPRECT rect) const;

    /// The smallest rectangle around what can be drawn on; the result is NULLREGION, SIMPLEREGION,
    /// COMPLEXREGION or ERROR, as for the next ones.
    int GetClipBox(LPRECT rect) const;
    /// Drawing is kept to `region`, in device coordinates, which is copied; null sets it free.
    int SelectClipRgn(CRgn* region);
    int ExcludeClipRect(LPCRECT rect);
    int IntersectClipRect(LPCRECT rect);

    /// A frame with the pen, filled with the brush.
    BOOL Rectangle(LPCRECT rect);
    void FillRect(LPCRECT rect, CBrush* brush);
    /// Sets the background colour too.
    void FillSolidRect(LPCRECT rect, COLORREF color);
    /// A frame one unit wide inside the rectangle.
    void Draw3dRect(LPCRECT rect, COLORREF topLeft, COLORREF bottomRight);
    /// Fills with the brush: `operation` is PATCOPY, PATINVERT, DSTINVERT, ...
    BOOL PatBlt(int x, int y, int width, int height, DWORD operation);
    BOOL BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY, DWORD operation);
    /// CLR_INVALID outside of what can be drawn on.
    COLORREF GetPixel(int x, int y) const;
    COLORREF GetPixel(POINT point) const { return GetPixel(point.x, point.y); }

    /// Draws the frame that follows the mouse in a drag, by inverting: first takes `last` with its thickness
    /// `lastSize` away, unless it is null, then shows `rect` with `size`. The same call with a zero `size`
    /// ends the drag. `size` is how thick the frame is at the left and right, at the top and bottom; null
    /// brushes are the half-tone one. What has both frames does not flicker.
    void DrawDragRect(LPCRECT rect, SIZE size, LPCRECT last, SIZE lastSize, CBrush* brush = nullptr,
                      CBrush* lastBrush = nullptr);
    /// Every other pixel; the library's own. Null when the system refuses it.
    static CBrush* GetHalftoneBrush();

    HDC m_hDC = nullptr;

private:
    template <class Object>
    Object* Select(Object* object);
    template <class Object>
    Object* Former(HGDIOBJ handle);
    bool FrameRegion(LPCRECT rect, SIZE size, CRgn& frame) const;
    void InvertRegion(CRgn& region, CBrush* brush);

    /// What was selected before, as objects that do not own their handles.
    std::vector<std::unique_ptr<CGdiObject>> m_formers;
};

/// The client area of a window, or the screen when `window` is null. The constructor throws
/// CResourceException when the window is gone or the system has no device context left.
class VAK_API CClientDC : public CDC
{
    DECLARE_DYNAMIC(CClientDC)

public:
    explicit CClientDC(CWnd* window);
    ~CClientDC() override;

protected:
    HWND m_hWnd;
};

/// The part of a client area that is to be drawn anew; for CWnd::OnPaint alone. The constructor throws
/// CResourceException when the system has no device context left.
class VAK_API CPaintDC : public CDC
{
    DECLARE_DYNAMIC(CPaintDC)

public:
    explicit CPaintDC(CWnd* window);
    ~CPaintDC() override;

    /// `rcPaint` is the smallest rectangle around that part.
    PAINTSTRUCT m_ps{};

protected:
    HWND m_hWnd;
};
