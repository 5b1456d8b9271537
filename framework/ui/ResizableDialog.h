#pragma once

/// A modal dialog whose controls follow its border. Its template has WS_THICKFRAME; it never becomes smaller
/// than its template made it.

#include "framework/ui/Dialog.h"

#include <vector>

namespace vak::detail {

/// The edges of the dialog that a control keeps its distance from; opposite edges together make it grow.
enum AnchorEdge : unsigned int
{
    AnchorLeft = 1,
    AnchorTop = 2,
    AnchorRight = 4,
    AnchorBottom = 8,
    AnchorAll = 15,
};

class ResizableDialog : public CDialog
{
public:
    ResizableDialog(UINT templateId, CWnd* parent) : CDialog(templateId, parent) {}

protected:
    BOOL OnInitDialog() override;
    void OnSize(UINT type, int cx, int cy) override;
    void OnGetMinMaxInfo(MINMAXINFO* info) override;

    /// Ties the control to those edges (AnchorEdge bits); called from OnInitDialog, after the base's.
    void Anchor(int id, unsigned int edges);

private:
    struct AnchoredControl
    {
        HWND window;
        CRect area;
        unsigned int edges;
    };

    std::vector<AnchoredControl> m_controls;
    CSize m_initialClient{0, 0};
    CSize m_smallest{0, 0};
};

} // namespace vak::detail
