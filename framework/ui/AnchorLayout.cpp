#include "framework/ui/AnchorLayout.h"

#include <algorithm>

namespace vak {

void AnchorLayout::Start(HWND window)
{
    CRect outer(0, 0, 0, 0);
    CRect client(0, 0, 0, 0);
    GetWindowRect(window, &outer);
    GetClientRect(window, &client);
    m_window = window;
    m_controls.clear();
    m_initial = client.Size();
    m_minimum = m_initial;
    m_frame = outer.Size() - m_initial;
}

void AnchorLayout::Anchor(int id, unsigned int edges)
{
    AnchoredControl control{GetDlgItem(m_window, id), CRect(0, 0, 0, 0), edges};
    if (!control.window)
        return;
    GetWindowRect(control.window, &control.area);
    MapWindowPoints(nullptr, m_window, reinterpret_cast<POINT*>(&control.area), 2);
    m_controls.push_back(control);
}

void AnchorLayout::Arrange(UINT type, int cx, int cy) const
{
    if (type == SIZE_MINIMIZED || !m_window)
        return;
    const int wider = std::max<int>(cx, m_minimum.cx) - m_initial.cx;
    const int higher = std::max<int>(cy, m_minimum.cy) - m_initial.cy;
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
    RedrawWindow(m_window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void AnchorLayout::Limit(MINMAXINFO* info) const
{
    if (!m_window)
        return;
    info->ptMinTrackSize.x = m_minimum.cx + m_frame.cx;
    info->ptMinTrackSize.y = m_minimum.cy + m_frame.cy;
}

} // namespace vak
