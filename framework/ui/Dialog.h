#pragma once

/// Modal dialogs made from a template. Windows only.

#include "framework/ui/Wnd.h"

class VAK_API CDialog : public CWnd
{
    DECLARE_DYNAMIC(CDialog)

public:
    /// A dialog of template `templateId` (below 0x7000, where the library's own begin) of the module that
    /// AfxSetResourceHandle has named by the time of DoModal, of the program when it named none. `parent`
    /// (not owned) is disabled while it is open; null takes the application's main window, if there is one.
    explicit CDialog(UINT templateId, CWnd* parent = nullptr);

    /// Shows the dialog and returns what ended it: IDOK, IDCANCEL, the argument of EndDialog, or -1 when the
    /// dialog could not be made.
    virtual INT_PTR DoModal();
    /// Ends DoModal with that result.
    void EndDialog(int result);

protected:
    CDialog() = default;

    /// The controls exist, nothing is shown yet. Returns non-zero to leave the focus to the first control.
    virtual BOOL OnInitDialog();
    /// The default button, or the return key; ends with IDOK.
    virtual void OnOK();
    /// The button IDCANCEL, the escape key or the close box; ends with IDCANCEL.
    virtual void OnCancel();
    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo) override;
    /// Unpacks a message that the dialog's procedure gets, and answers for it. What hooks throw comes out.
    INT_PTR Dispatch(UINT message, WPARAM wParam, LPARAM lParam);

    /// The window that the dialog belongs to: the parent given, else the application's main window, else
    /// null.
    HWND OwnerWindow() const;

    CWnd* m_pParentWnd = nullptr;

private:
    static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    UINT m_templateId = 0;
};
