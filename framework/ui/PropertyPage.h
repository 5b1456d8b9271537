#pragma once

/// A page of a property sheet, made from a dialog template. Windows only; UI thread.
///
/// The page and its sheet are the caller's objects, and either may go first. The page's window is made when
/// the page is shown for the first time and goes with the sheet's window, after which the page can be shown
/// again.

#include "framework/ui/Dialog.h"

class CPropertySheet;

class VAK_API CPropertyPage : public CDialog
{
    DECLARE_DYNAMIC(CPropertyPage)

public:
    /// A page of template `templateId`: of the module that AfxSetResourceHandle has named by now, or else of
    /// the program, or else of the library. The template's caption is the text of the page's tab.
    explicit CPropertyPage(UINT templateId);
    /// Takes the page out of its sheet.
    ~CPropertyPage() override;

    /// Tells the sheet whether the page has changes that Apply would take over; Apply is available while a
    /// page has some. Does nothing while there is no window.
    void SetModified(BOOL changed = TRUE);
    /// Ends the sheet with that result.
    void EndDialog(int result);

    /// A hook that throws has refused to be left, or to apply; the exception is reported.
    /// The page has been chosen and will be shown. Zero has the sheet go on to another page.
    virtual BOOL OnSetActive();
    /// Another page has been chosen, or the sheet applies or closes with OK. Zero: the page stays.
    virtual BOOL OnKillActive();
    /// The sheet applies. Zero: nothing is applied, the sheet stays and shows this page. By default calls
    /// OnOK.
    virtual BOOL OnApply();
    /// The user cancels. Zero: the sheet stays.
    virtual BOOL OnQueryCancel();
    /// The sheet closes with OK, or applies.
    void OnOK() override;
    /// The sheet closes without OK.
    void OnCancel() override;

protected:
    /// What the sheet tells its page of comes to the hooks above.
    BOOL OnNotify(NMHDR* header, LRESULT* result) override;
    /// The keys of the sheet's own buttons, where a control of the page has sent them here.
    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo) override;
    void OnClose() override;

private:
    friend class CPropertySheet;

    static INT_PTR CALLBACK PageProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    UINT m_templateId;
    HINSTANCE m_module;
    CPropertySheet* m_sheet = nullptr;
};
