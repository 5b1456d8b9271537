#pragma once

/// A window of the platform as an object. Windows only; a window and its object belong to the thread that
/// made it.

#include "framework/base/Geometry.h"
#include "framework/base/Object.h"
#include "framework/base/String.h"

/// Holds a window's handle. The object and the handle find each other while they are attached.
class VAK_API CWnd : public CObject
{
    DECLARE_DYNAMIC(CWnd)

public:
    CWnd() = default;
    /// Detaches from the window, which stays: whoever made it destroys it.
    ~CWnd() override;

    /// The object attached to the window, or null.
    static CWnd* FromHandlePermanent(HWND window);
    /// Attaches to a window that has no object yet; returns 0 and changes nothing when it has one, when this
    /// object has a window, or when `window` is null. The window's messages stay its own.
    BOOL Attach(HWND window);
    /// Lets go of the window and returns it.
    HWND Detach();

    HWND GetSafeHwnd() const { return m_hWnd; }
    CRect GetClientRect() const;
    CString GetWindowText() const;
    void SetWindowText(LPCTSTR text);
    /// The child window `id`, or null.
    HWND GetDlgItem(int id) const;
    void SetDlgItemText(int id, LPCTSTR text);
    LRESULT SendDlgItemMessage(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;

    HWND m_hWnd = nullptr;

protected:
    /// Unpacks a message of the window and calls its hook; returns non-zero with `result` set when that
    /// handled it, else the message gets its default treatment.
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    /// A command or notification `code` of control or command `id`; non-zero when handled.
    virtual BOOL OnCommand(UINT id, UINT code);
    /// The client area has become `cx` by `cy` pixels; `type` is SIZE_RESTORED, SIZE_MAXIMIZED, ...
    virtual void OnSize(UINT type, int cx, int cy);
    /// The system asks how small and how large the window may become, in pixels.
    virtual void OnGetMinMaxInfo(MINMAXINFO* info);
};
