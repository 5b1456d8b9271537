#include "dialogs/CustomPropertyPage.h"

#include "dialogs/CustomPropertySheet.h"

IMPLEMENT_DYNAMIC(CCustomPropertyPage, CPropertyPage)

CCustomPropertyPage::CCustomPropertyPage(UINT templateId) : CPropertyPage(templateId)
{
    m_dialog.SetChangeCallback(&CCustomPropertyPage::OnFieldChanged, this);
}

void CCustomPropertyPage::OnFieldChanged(int, void* page)
{
    static_cast<CCustomPropertyPage*>(page)->SetModified();
}

void CCustomPropertyPage::SetPropertySheet(CCustomPropertySheet* sheet)
{
    m_sheet = sheet;
    m_dialog.Bind(sheet ? this : nullptr, sheet ? &sheet->GetData() : nullptr);
}

BOOL CCustomPropertyPage::OnInitDialog()
{
    CPropertyPage::OnInitDialog();
    m_dialog.OnInitDialog();
    return TRUE;
}

BOOL CCustomPropertyPage::OnSetActive()
{
    m_dialog.VerifyData(0, 0);
    return CPropertyPage::OnSetActive();
}

BOOL CCustomPropertyPage::OnKillActive()
{
    // While it saves, the sheet validates each page itself, and goes from one that failed to the next.
    if (m_sheet && !m_sheet->IsSaving() && !m_dialog.ValidateData(FALSE, m_sheet->GetData()))
        return FALSE;
    return CPropertyPage::OnKillActive();
}

BOOL CCustomPropertyPage::PreTranslateMessage(MSG* message)
{
    return m_dialog.PreTranslateMessage(message) || CPropertyPage::PreTranslateMessage(message);
}

BOOL CCustomPropertyPage::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    return m_dialog.OnWndMsg(message, wParam, lParam, result) ||
           CPropertyPage::OnWndMsg(message, wParam, lParam, result);
}

BOOL CCustomPropertyPage::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo)
{
    return m_dialog.OnCmdMsg(id, code, extra, handlerInfo) ||
           CPropertyPage::OnCmdMsg(id, code, extra, handlerInfo);
}

void CCustomPropertyPage::OnSize(UINT type, int cx, int cy)
{
    m_dialog.OnSize(type, cx, cy);
    CPropertyPage::OnSize(type, cx, cy);
}

void CCustomPropertyPage::InitDialogPosition() {}

void CCustomPropertyPage::SaveDialogPosition() {}
