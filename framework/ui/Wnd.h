#pragma once

/// A window of the platform as an object, and the loop that serves it. Windows only; a window and its object
/// belong to the thread that made it.

#include "framework/base/Geometry.h"
#include "framework/base/Object.h"
#include "framework/base/String.h"

class CDC;
class CFont;

namespace vak::detail {
struct WindowProcedure;
}

/// The code of OnCmdMsg for a command: an item of a menu, an accelerator, a button that was pressed.
constexpr int CN_COMMAND = 0;
/// Who would handle a command; nobody here asks, so it stays incomplete and null.
struct AFX_CMDHANDLERINFO;

/// Registers a window class whose messages come to CWnd::OnWndMsg, and returns its name for CWnd::CreateEx;
/// null when the system refuses. Equal arguments give the same class. The name lies in a buffer of the thread
/// that the next call overwrites; cursor, brush and icon stay the caller's and outlive the windows.
VAK_API LPCTSTR AfxRegisterWndClass(UINT classStyle, HCURSOR cursor = nullptr, HBRUSH background = nullptr,
                                    HICON icon = nullptr);

/// Holds a window's handle. The object and the handle find each other while they are attached. A hook may
/// destroy the window, not the object. What a hook throws is reported (CException::ReportError) and goes no
/// further.
class VAK_API CWnd : public CObject
{
    DECLARE_DYNAMIC(CWnd)

public:
    CWnd() = default;
    /// Destroys the window that Create or CreateEx made; detaches from any other, which stays.
    ~CWnd() override;

    /// Makes a window and attaches to it; returns 0 when it cannot be made or this object has one. The hooks
    /// below get its messages when AfxRegisterWndClass gave the class; a class of the system keeps its own
    /// procedure. `rect` in pixels of the parent's client area, or of the screen for windows that are no
    /// children; `parent` (not owned) may be null for those, and `id` is then 0.
    BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                  CWnd* parent, UINT id);
    /// Destroys the window with its children; returns 0 when there is none (any more).
    BOOL DestroyWindow();

    /// The object attached to the window, or null.
    static CWnd* FromHandlePermanent(HWND window);
    /// Attaches to a window that has no object yet; returns 0 and changes nothing when it has one, when this
    /// object has a window, or when `window` is null. The window's messages stay its own.
    BOOL Attach(HWND window);
    /// Attaches as Attach does, and has the window's messages come to OnWndMsg first; what that does not
    /// handle goes on to the procedure that the window had.
    BOOL SubclassWindow(HWND window);
    /// Lets go of the window, whose messages are its own again, and returns it.
    HWND Detach();

    HWND GetSafeHwnd() const { return m_hWnd; }
    DWORD GetStyle() const;
    CRect GetClientRect() const;
    CString GetWindowText() const;
    void SetWindowText(LPCTSTR text);
    /// The child window `id`, or null.
    HWND GetDlgItem(int id) const;
    void SetDlgItemText(int id, LPCTSTR text);
    LRESULT SendDlgItemMessage(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;

    /// Gives a control its font, which stays the caller's and outlives the window.
    void SetFont(CFont* font, BOOL redraw = TRUE);
    /// Returns whether the window was visible before; `command` is SW_SHOW, SW_HIDE, ...
    BOOL ShowWindow(int command);
    void MoveWindow(LPCRECT area, BOOL repaint = TRUE);
    /// These turn pixels of the client area into those of the screen, and back, or into those of another
    /// window's client area, the screen when `to` is null.
    void ClientToScreen(LPPOINT point) const;
    void ScreenToClient(LPPOINT point) const;
    void MapWindowPoints(CWnd* to, LPRECT rect) const;
    void SetFocus();
    /// Has the mouse's messages come here, wherever it is, until ::ReleaseCapture; returns the window that
    /// had them before, or null.
    HWND SetCapture();
    /// The window of this thread that has captured the mouse, or null.
    static HWND GetCapture();
    /// Has the client area, or a part of it, drawn anew, on a fresh background if `erase`.
    void Invalidate(BOOL erase = TRUE);
    void InvalidateRect(LPCRECT rect, BOOL erase = TRUE);
    /// Draws what is to be drawn anew at once.
    void UpdateWindow();
    /// Stops or resumes drawing; who resumes it invalidates what changed meanwhile.
    void SetRedraw(BOOL redraw = TRUE);
    /// Has OnTimer called every `milliseconds`; returns 0 when the system has no timer left.
    UINT_PTR SetTimer(UINT_PTR id, UINT milliseconds);
    BOOL KillTimer(UINT_PTR id);

    /// Serves this thread's messages until EndModalLoop or the end of the window, and returns what
    /// EndModalLoop was given, else -1. A request to quit goes on to the loop outside.
    int RunModalLoop();
    void EndModalLoop(int result);
    /// Sees a message before it is dispatched: first the object of the window that it is for, then those of
    /// its parents up to the one whose loop runs. Non-zero when that settled it.
    virtual BOOL PreTranslateMessage(MSG* message);
    /// Lets the dialog keys (tab, arrows, return, escape) work in this window; for PreTranslateMessage.
    BOOL IsDialogMessage(MSG* message);

    /// A command (`code` CN_COMMAND), or what else control `id` notifies of with WM_COMMAND; non-zero when
    /// handled. `extra` and `handlerInfo` are null from the window's own messages.
    virtual BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo);

    HWND m_hWnd = nullptr;

protected:
    /// Unpacks a message of the window and calls its hook; returns non-zero with `result` set when that
    /// handled it, else the message gets its default treatment.
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    /// A command or notification `code` of control or command `id`; non-zero when handled. By default
    /// OnCmdMsg is asked.
    virtual BOOL OnCommand(UINT id, UINT code);
    /// The client area has become `cx` by `cy` pixels; `type` is SIZE_RESTORED, SIZE_MAXIMIZED, ...
    virtual void OnSize(UINT type, int cx, int cy);
    /// The system asks how small and how large the window may become, in pixels.
    virtual void OnGetMinMaxInfo(MINMAXINFO* info);
    /// The window is being made and is not shown yet; -1, or an exception, gives it up.
    virtual int OnCreate(CREATESTRUCT* create);
    /// The window, still with its children, is about to go.
    virtual void OnDestroy();
    /// The close box or its key. By default the window is destroyed; a dialog is cancelled.
    virtual void OnClose();
    virtual void OnSetFocus(HWND previous);
    virtual void OnTimer(UINT_PTR id);
    /// The menu of `window`, this one or one inside it, is asked for at `point` on the screen, (-1, -1) when
    /// by the keyboard. By default the parent is asked.
    virtual void OnContextMenu(HWND window, CPoint point);
    /// A control's message with data, which begins with NMHDR; non-zero with `result` set when handled.
    virtual BOOL OnNotify(NMHDR* header, LRESULT* result);

    /// Part of the client area is to be drawn: through a CPaintDC, which also tells which. What this throws
    /// leaves it undrawn.
    virtual void OnPaint();
    /// The background of what `dc` does not clip away is to be drawn; non-zero when that is done.
    virtual BOOL OnEraseBkgnd(CDC* dc);
    /// The mouse. `point` is in pixels of the client area; `flags` are MK_ bits: what is held down.
    virtual void OnMouseMove(UINT flags, CPoint point);
    virtual void OnLButtonDown(UINT flags, CPoint point);
    virtual void OnLButtonUp(UINT flags, CPoint point);
    virtual void OnMButtonDown(UINT flags, CPoint point);
    virtual void OnMButtonUp(UINT flags, CPoint point);
    /// The wheel has turned by `delta`, WHEEL_DELTA a notch, positive away from the user; here `point` is on
    /// the screen. Non-zero when handled, else the parent is asked.
    virtual BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    /// The mouse has left the client area, after a TrackMouseEvent that asked to be told.
    virtual void OnMouseLeave();
    /// The mouse's messages go to `window` now, null for nobody in particular.
    virtual void OnCaptureChanged(HWND window);
    /// The mouse moves over `window`, this one or one inside it, in its part `hitTest` (HTCLIENT, ...);
    /// non-zero when the cursor has been set.
    virtual BOOL OnSetCursor(HWND window, UINT hitTest, UINT message);
    /// A key goes down, or repeats; `key` is a virtual key.
    virtual void OnKeyDown(UINT key, UINT repeat, UINT flags);
    /// The character that the key makes with those held and the keyboard's layout, Ctrl+A being 1.
    virtual void OnChar(UINT character, UINT repeat, UINT flags);
    /// A scroll bar: SB_LINEUP, SB_THUMBTRACK, ... `position` has 16 bits only. `bar` is null for the
    /// window's own bars.
    virtual void OnHScroll(UINT code, UINT position, HWND bar);
    virtual void OnVScroll(UINT code, UINT position, HWND bar);

    /// What the window does with a message of its own accord: the system's treatment, or that of the
    /// procedure that it had before SubclassWindow.
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// Called by a hook: once the hook has returned, the message gets its default treatment after all.
    void Default() { m_wantsDefault = true; }

private:
    friend struct vak::detail::WindowProcedure;

    bool CallHook(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    bool CallDrawingHook(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    bool CallInputHook(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    bool CallMouseHook(UINT message, UINT flags, CPoint point);
    bool PreTranslate(MSG* message);

    /// The procedure from before SubclassWindow, else null.
    WNDPROC m_super = nullptr;
    bool m_isCreated = false;
    bool m_wantsDefault = false;
    bool m_loopEnded = false;
    int m_loopResult = -1;
};
