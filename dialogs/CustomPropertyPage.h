#pragma once

/// A page of a CCustomPropertySheet whose controls show values of the sheet's store. Windows only; UI thread.
///
/// A derived class declares its fields in its constructor (GetDialogPart().AddFields); filling, validating
/// and saving then go by themselves.

#include "dialogs/DefaultDlg.h"
#include "framework/ui/PropertyPage.h"

class CCustomPropertySheet;

class VAK_API CCustomPropertyPage : public CPropertyPage
{
    DECLARE_DYNAMIC(CCustomPropertyPage)

public:
    explicit CCustomPropertyPage(UINT templateId);

    /// Binds the dialog part to this page and to the sheet's store; null takes the binding back. Called by
    /// CCustomPropertySheet::AddPage, and by the sheet's end.
    virtual void SetPropertySheet(CCustomPropertySheet* sheet);
    /// The sheet, or null.
    CCustomPropertySheet* GetPropertySheet() const { return m_sheet; }
    CDefaultDlg& GetDialogPart() { return m_dialog; }

    BOOL OnSetActive() override;
    /// Zero, after telling the user, while a control holds something invalid; nothing is saved.
    BOOL OnKillActive() override;
    BOOL PreTranslateMessage(MSG* message) override;
    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo) override;

    /// A page is positioned by its sheet and keeps no position of its own: these do nothing.
    virtual void InitDialogPosition();
    virtual void SaveDialogPosition();

protected:
    BOOL OnInitDialog() override;
    BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
    void OnSize(UINT type, int cx, int cy) override;

private:
    static void OnFieldChanged(int control, void* page);

    CDefaultDlg m_dialog;
    CCustomPropertySheet* m_sheet = nullptr;
};
