#include "framework/ui/Dialog.h"

#include "framework/base/Application.h"
#include "framework/base/Exception.h"
#include "framework/base/SystemModule.h"
#include "framework/ui/detail/Report.h"

IMPLEMENT_DYNAMIC(CDialog, CWnd)

namespace {

/// The module that has the template: the library itself comes first, as for texts. Null is the program.
HINSTANCE TemplateModule(UINT templateId)
{
    const HINSTANCE library = vak::system::ModuleAt(&CDialog::classCDialog);
    const bool isOwn = FindResource(library, MAKEINTRESOURCE(templateId), RT_DIALOG) != nullptr;
    return isOwn ? library : AfxGetResourceHandle();
}

} // namespace

CDialog::CDialog(UINT templateId, CWnd* parent) : m_pParentWnd(parent), m_templateId(templateId) {}

INT_PTR CDialog::DoModal()
{
    const INT_PTR result =
        DialogBoxParam(TemplateModule(m_templateId), MAKEINTRESOURCE(m_templateId), OwnerWindow(),
                       &CDialog::DialogProc, reinterpret_cast<LPARAM>(this));
    Detach();
    return result;
}

void CDialog::EndDialog(int result)
{
    ::EndDialog(m_hWnd, result);
}

BOOL CDialog::OnInitDialog()
{
    return TRUE;
}

void CDialog::OnOK()
{
    EndDialog(IDOK);
}

void CDialog::OnCancel()
{
    EndDialog(IDCANCEL);
}

BOOL CDialog::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo)
{
    if (code == CN_COMMAND && id == IDOK)
        OnOK();
    else if (code == CN_COMMAND && id == IDCANCEL)
        OnCancel();
    else
        return CWnd::OnCmdMsg(id, code, extra, handlerInfo);
    return TRUE;
}

HWND CDialog::OwnerWindow() const
{
    const CWnd* const owner = m_pParentWnd ? m_pParentWnd : AfxGetMainWnd();
    return owner ? owner->GetSafeHwnd() : nullptr;
}

INT_PTR CALLBACK CDialog::DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG && !FromHandlePermanent(window))
        reinterpret_cast<CDialog*>(lParam)->Attach(window);
    auto* const dialog = static_cast<CDialog*>(FromHandlePermanent(window));
    if (!dialog)
        return FALSE;
    try {
        return dialog->Dispatch(message, wParam, lParam);
    } catch (CException* exception) {
        vak::detail::GiveUpPainting(window, message);
        vak::detail::ReportFromProcedure(exception);
    } catch (...) {
        dialog->EndDialog(-1);
    }
    return FALSE;
}

INT_PTR CDialog::Dispatch(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG)
        return OnInitDialog();
    if (message == WM_NCDESTROY) {
        Detach();
        return FALSE;
    }
    LRESULT result = 0;
    if (!OnWndMsg(message, wParam, lParam, &result))
        return FALSE;
    SetWindowLongPtr(m_hWnd, DWLP_MSGRESULT, result);
    return TRUE;
}
