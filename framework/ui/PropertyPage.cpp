#include "framework/ui/PropertyPage.h"

#include "framework/base/Application.h"
#include "framework/base/Exception.h"
#include "framework/base/SystemModule.h"
#include "framework/ui/PropertySheet.h"
#include "framework/ui/detail/Report.h"

#include <prsht.h>

IMPLEMENT_DYNAMIC(CPropertyPage, CDialog)

namespace {

HINSTANCE PageModule(UINT templateId)
{
    const HINSTANCE host = AfxGetResourceHandle();
    if (FindResource(host, MAKEINTRESOURCE(templateId), RT_DIALOG))
        return host;
    return vak::system::ModuleAt(&CPropertyPage::classCPropertyPage);
}

/// The answer to the sheet of a page whose hook has thrown: what it did not agree to does not happen, but
/// the user can always cancel.
LRESULT RefusalOf(UINT notification)
{
    return notification == PSN_APPLY || notification == PSN_KILLACTIVE ? PSNRET_INVALID : PSNRET_NOERROR;
}

} // namespace

CPropertyPage::CPropertyPage(UINT templateId) : m_templateId(templateId), m_module(PageModule(templateId)) {}

CPropertyPage::~CPropertyPage()
{
    // First, so that no hook is called any more.
    Detach();
    if (m_sheet)
        m_sheet->RemovePage(this);
}

void CPropertyPage::SetModified(BOOL changed)
{
    if (m_sheet && m_hWnd)
        m_sheet->SendMessage(changed ? PSM_CHANGED : PSM_UNCHANGED, reinterpret_cast<WPARAM>(m_hWnd));
}

void CPropertyPage::EndDialog(int result)
{
    if (m_sheet)
        m_sheet->EndDialog(result);
}

BOOL CPropertyPage::OnSetActive()
{
    return TRUE;
}

BOOL CPropertyPage::OnKillActive()
{
    return TRUE;
}

BOOL CPropertyPage::OnApply()
{
    OnOK();
    return TRUE;
}

BOOL CPropertyPage::OnQueryCancel()
{
    return TRUE;
}

void CPropertyPage::OnOK() {}

void CPropertyPage::OnCancel() {}

BOOL CPropertyPage::OnNotify(NMHDR* header, LRESULT* result)
{
    if (!m_sheet || header->hwndFrom != m_sheet->GetSafeHwnd())
        return CDialog::OnNotify(header, result);
    switch (header->code) {
    case PSN_SETACTIVE:
        *result = OnSetActive() ? 0 : -1;
        return TRUE;
    case PSN_KILLACTIVE:
        *result = OnKillActive() ? FALSE : TRUE;
        return TRUE;
    case PSN_APPLY:
        *result = OnApply() ? PSNRET_NOERROR : PSNRET_INVALID;
        return TRUE;
    case PSN_QUERYCANCEL:
        *result = OnQueryCancel() ? FALSE : TRUE;
        return TRUE;
    case PSN_RESET:
        OnCancel();
        return TRUE;
    default:
        return CDialog::OnNotify(header, result);
    }
}

BOOL CPropertyPage::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo)
{
    if (code != CN_COMMAND || (id != IDOK && id != IDCANCEL))
        return CDialog::OnCmdMsg(id, code, extra, handlerInfo);
    PostMessage(GetParent(m_hWnd), WM_COMMAND, MAKEWPARAM(id, code), 0);
    return TRUE;
}

void CPropertyPage::OnClose()
{
    // The escape key, from an edit control of several lines.
    PostMessage(GetParent(m_hWnd), WM_COMMAND, IDCANCEL, 0);
}

INT_PTR CALLBACK CPropertyPage::PageProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG)
        reinterpret_cast<CPropertyPage*>(reinterpret_cast<PROPSHEETPAGE*>(lParam)->lParam)->Attach(window);
    auto* const page = static_cast<CPropertyPage*>(FromHandlePermanent(window));
    if (!page)
        return FALSE;
    try {
        return page->Dispatch(message, wParam, lParam);
    } catch (CException* exception) {
        vak::detail::ReportFromProcedure(exception);
    } catch (...) {
    }
    if (message != WM_NOTIFY)
        return FALSE;
    SetWindowLongPtr(window, DWLP_MSGRESULT, RefusalOf(reinterpret_cast<const NMHDR*>(lParam)->code));
    return TRUE;
}
