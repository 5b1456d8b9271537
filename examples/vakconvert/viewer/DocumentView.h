#pragma once

#include "examples/vakconvert/viewer/Document.h"
#include "examples/vakconvert/viewer/Selection.h"
#include "examples/vakconvert/viewer/ZoomAnchor.h"
#include "framework/ui/ScrollView.h"
#include "view/ViewTracker.h"

/// Who shows a document view is told here.
class ViewListener
{
public:
    virtual ~ViewListener() = default;
    /// The zoom, the selection, or where the mouse is.
    virtual void OnViewChanged() = 0;
    virtual void OnSaveWanted() = 0;
};

/// Shows a document at a zoom and lets the user select a part of it. Only what is to be seen anew is drawn,
/// in memory at first, so nothing flickers.
///
/// Wheel: zoom around the mouse, with Ctrl up and down, with Shift sideways. Middle button: drags the
/// document. Keys: + - 0 1 zoom, F fits, A takes the next aspect, Escape drops the selection, arrows move it
/// (or scroll). Right button: a menu.
class DocumentView : public CScrollView
{
public:
    /// Both outlive the view.
    DocumentView(const Document& document, ViewListener& listener);
    ~DocumentView() override;

    /// Makes the window inside `parent`; false when the system refuses.
    bool Create(CWnd* parent);
    /// Shows the whole document, a small one at 100 %.
    void ShowWhole();
    ViewStatus Status() const;
    /// In document pixels, right and bottom exclusive; empty when there is none.
    CRect Selection() const;

protected:
    void OnDraw(CDC* dc) override;
    BOOL OnEraseBkgnd(CDC* dc) override;
    void OnSize(UINT type, int cx, int cy) override;
    void OnDestroy() override;
    BOOL OnScrollBy(CSize by, BOOL doScroll = TRUE) override;
    void OnLButtonDown(UINT flags, CPoint point) override;
    void OnMButtonDown(UINT flags, CPoint point) override;
    void OnMButtonUp(UINT flags, CPoint point) override;
    void OnCaptureChanged(HWND window) override;
    void OnMouseMove(UINT flags, CPoint point) override;
    void OnMouseLeave() override;
    BOOL OnMouseWheel(UINT flags, short delta, CPoint point) override;
    BOOL OnSetCursor(HWND window, UINT hitTest, UINT message) override;
    void OnKeyDown(UINT key, UINT repeat, UINT flags) override;
    void OnChar(UINT character, UINT repeat, UINT flags) override;
    void OnContextMenu(HWND window, CPoint point) override;

private:
    /// What decides which part of the document is seen.
    struct Place
    {
        CPoint scroll;
        CSize client;
        float zoom = 0.0f;
        bool operator==(const Place&) const = default;
    };

    Place CurrentPlace() const;
    void Compose(const CRect& area);
    void FillBehind(const CRect& area);
    void ZoomTo(float zoom);
    void Step(bool isIn);
    void Fit();
    void Select(CPoint point);
    void Adopt(CViewTracker* tracker);
    void DropSelection();
    void SetAspect(const Aspect& aspect);
    void ScrollByKey(UINT key);
    void Command(UINT command);
    void TrackCursor(CPoint point);
    void Repaint();
    static void OnTracker(int event, CRect const& rect, void* view);

    const Document& m_document;
    ViewListener& m_listener;
    CVakCoord m_coord;
    Canvas m_canvas;
    CViewTracker* m_tracker = nullptr;
    const Aspect* m_aspect = &kAspects[0];
    ZoomAnchor m_anchor;
    Place m_anchorPlace;            ///< where zooming around the anchor has led
    std::optional<CPoint> m_cursor; ///< in client pixels
    std::optional<CPoint> m_grip;   ///< what the middle button holds, in viewport coordinates
    int m_wheel = 0;                ///< turned by less than a notch
    bool m_isMenuOff = false;       ///< the right button ended a drag
};
