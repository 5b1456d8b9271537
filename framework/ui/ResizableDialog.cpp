#include "framework/ui/ResizableDialog.h"

namespace vak::detail {

BOOL ResizableDialog::OnInitDialog()
{
    CRect window(0, 0, 0, 0);
    GetWindowRect(m_hWnd, &window);
    m_smallest = CSize(window.Width(), window.Height());
    const CRect client = GetClientRect();
    m_initialClient = CSize(client.Width(), client.Height());
    return CDialog::OnInitDialog();
}

void ResizableDialog::Anchor(int id, unsigned int edges)
{
    AnchoredControl control{GetDlgItem(id), CRect(0, 0, 0, 0), edges};
    GetWindowRect(control.window, &control.area);
    MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<POINT*>(&control.area), 2);
    m_controls.push_back(control);
}

void ResizableDialog::OnSize(UINT type, int cx, int cy)
{
    if (type == SIZE_MINIMIZED)
        return;
    const int wider = cx - m_initialClient.cx;
    const int higher = cy - m_initialClient.cy;
    for (const AnchoredControl& control : m_controls) {
        CRect area = control.area;
        if (control.edges & AnchorRight)
            area.right += wider;
        if (!(control.edges & AnchorLeft))
            area.left += wider;
        if (control.edges & AnchorBottom)
            area.bottom += higher;
        if (!(control.edges & AnchorTop))
            area.top += higher;
        ::MoveWindow(control.window, area.left, area.top, area.Width(), area.Height(), FALSE);
    }
    // All at once: drawn one by one, a control that moves away is wiped by the one that grows into its place.
    RedrawWindow(m_hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void ResizableDialog::OnGetMinMaxInfo(MINMAXINFO* info)
{
    info->ptMinTrackSize.x = m_smallest.cx;
    info->ptMinTrackSize.y = m_smallest.cy;
}

} // namespace vak::detail
