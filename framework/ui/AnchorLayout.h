#pragma once

/// Lets the controls of a dialog follow its border. Windows only.

#include "framework/base/Geometry.h"

#include <vector>

namespace vak {

/// The edges of the dialog that a control keeps its distance from; opposite edges together make it grow.
enum AnchorEdge : unsigned int
{
    AnchorLeft = 1,
    AnchorTop = 2,
    AnchorRight = 4,
    AnchorBottom = 8,
    AnchorAll = 15,
};

/// The places of a window's controls. It knows windows by handle and serves one window at a time.
class VAK_API AnchorLayout
{
public:
    /// Notes `window` as it is: the places of controls, and the smallest size, refer to that. Forgets what
    /// was anchored in another window before.
    void Start(HWND window);
    /// Ties the control, by its present place, to those edges (AnchorEdge bits). A control that does not
    /// exist is passed over.
    void Anchor(int id, unsigned int edges);
    /// Replaces the smallest size, in pixels of the client area.
    void SetMinimum(CSize client) { m_minimum = client; }

    /// The window's client area has become `cx` by `cy` pixels (WM_SIZE): moves the controls. Below the
    /// smallest size they stay as they are there. Does nothing before Start.
    void Arrange(UINT type, int cx, int cy) const;
    /// Keeps a window with a sizing border from becoming smaller than the smallest size (WM_GETMINMAXINFO).
    void Limit(MINMAXINFO* info) const;

private:
    struct AnchoredControl
    {
        HWND window;
        CRect area;
        unsigned int edges;
    };

    HWND m_window = nullptr;
    std::vector<AnchoredControl> m_controls;
    CSize m_initial{0, 0};
    CSize m_minimum{0, 0};
    CSize m_frame{0, 0};
};

} // namespace vak
