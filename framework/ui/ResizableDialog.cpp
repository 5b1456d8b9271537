#include "framework/ui/ResizableDialog.h"

namespace vak::detail {

BOOL ResizableDialog::OnInitDialog()
{
    m_layout.Start(m_hWnd);
    return CDialog::OnInitDialog();
}

void ResizableDialog::OnSize(UINT type, int cx, int cy)
{
    m_layout.Arrange(type, cx, cy);
}

void ResizableDialog::OnGetMinMaxInfo(MINMAXINFO* info)
{
    m_layout.Limit(info);
}

} // namespace vak::detail
