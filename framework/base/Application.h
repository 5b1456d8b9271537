#pragma once

/// The application object and the message boxes that go through it. A host makes one, static or on main's
/// stack; the library works without one.

#include "framework/base/Object.h"
#include "framework/base/String.h"

#include <atomic>

class CWnd;

/// The application. The object made last is the current one; its destructor makes the one before it current
/// again. Objects may end in any order.
class VAK_API CWinApp : public CObject
{
    DECLARE_DYNAMIC(CWinApp)

public:
    /// `appName` (null: none) is the caption of message boxes; it is copied.
    explicit CWinApp(LPCTSTR appName = nullptr);
    ~CWinApp() override;

    /// Shows a box and returns the button pressed; every box of the library comes through here. `type` as the
    /// platform's MessageBox takes it, with an icon added for the kind of box when it names none; `helpId` is
    /// the help context or 0.
    virtual int DoMessageBox(LPCTSTR prompt, UINT type, UINT helpId);
    /// 1 begins the wait cursor, -1 ends it, 0 shows it again if it has begun. Calls nest.
    virtual void DoWaitCursor(int code);

    void BeginWaitCursor() { DoWaitCursor(1); }
    void EndWaitCursor() { DoWaitCursor(-1); }
    void RestoreWaitCursor() { DoWaitCursor(0); }

    /// The window that boxes and dialogs belong to; not owned. Null until the host sets it.
    CWnd* m_pMainWnd = nullptr;
    LPCTSTR m_pszAppName = nullptr;

private:
    CString m_appName;
    /// Workers show the wait cursor as well.
    std::atomic<int> m_waitCursorCount = 0;
    CWinApp* m_previous = nullptr;
};

/// The wait cursor for a scope, also without an application object.
class VAK_API CWaitCursor
{
public:
    CWaitCursor();
    ~CWaitCursor();
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
    /// Shows it again after a box or a dialog has changed the cursor.
    void Restore();
};

/// The current application object, or null.
VAK_API CWinApp* AfxGetApp();
/// Its main window, or null.
VAK_API CWnd* AfxGetMainWnd();
/// Its name, or an empty text.
VAK_API LPCTSTR AfxGetAppName();

/// The module whose strings are searched after the library's own; null (as at the start) for none. Not owned.
VAK_API HINSTANCE AfxGetResourceHandle();
VAK_API void AfxSetResourceHandle(HINSTANCE module);

/// Shows a box through the application object, or directly when there is none, and returns the button
/// pressed.
VAK_API int AfxMessageBox(LPCTSTR text, UINT type = MB_OK, UINT helpId = 0);
/// The same with a text of the string table; its number is the help context unless another is given.
VAK_API int AfxMessageBox(UINT textId, UINT type = MB_OK, UINT helpId = UINT(-1));

namespace vak {

/// The answer of a message box's default button, for applications that show no box: `type` as AfxMessageBox
/// takes it. IDOK for a type that the platform does not know.
VAK_API int DefaultAnswer(UINT type);

} // namespace vak
