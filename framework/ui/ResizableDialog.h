#pragma once

/// A modal dialog whose controls follow its border. Its template has WS_THICKFRAME; it never becomes smaller
/// than its template made it.

#include "framework/ui/AnchorLayout.h"
#include "framework/ui/Dialog.h"

namespace vak::detail {

class ResizableDialog : public CDialog
{
public:
    ResizableDialog(UINT templateId, CWnd* parent) : CDialog(templateId, parent) {}

protected:
    BOOL OnInitDialog() override;
    void OnSize(UINT type, int cx, int cy) override;
    void OnGetMinMaxInfo(MINMAXINFO* info) override;

    /// Ties the control to those edges (AnchorEdge bits); called from OnInitDialog, after the base's.
    void Anchor(int id, unsigned int edges) { m_layout.Anchor(id, edges); }

private:
    AnchorLayout m_layout;
};

} // namespace vak::detail
