#include "framework/ui/ColorDialog.h"

#include <commdlg.h>

IMPLEMENT_DYNAMIC(CColorDialog, CDialog)

CColorDialog::CColorDialog(COLORREF initial, DWORD flags, CWnd* parent) : m_color(initial), m_flags(flags)
{
    m_pParentWnd = parent;
}

INT_PTR CColorDialog::DoModal()
{
    COLORREF mixed[16] = {};
    CHOOSECOLORW choice{};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = OwnerWindow();
    choice.rgbResult = m_color;
    choice.lpCustColors = mixed;
    choice.Flags = m_flags | CC_RGBINIT;
    if (!ChooseColorW(&choice))
        return IDCANCEL;
    m_color = choice.rgbResult;
    return IDOK;
}
