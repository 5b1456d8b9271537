#pragma once

/// The platform's own dialog for choosing a colour. Windows only.

#include "framework/ui/Dialog.h"

class VAK_API CColorDialog : public CDialog
{
    DECLARE_DYNAMIC(CColorDialog)

public:
    /// `initial` is chosen at first; `flags` are the platform's CC_ bits; `parent` as for CDialog.
    explicit CColorDialog(COLORREF initial = 0, DWORD flags = 0, CWnd* parent = nullptr);

    /// Returns IDOK, or IDCANCEL also when the dialog could not be shown.
    INT_PTR DoModal() override;
    /// The colour chosen; the one at first, before.
    COLORREF GetColor() const { return m_color; }

private:
    COLORREF m_color;
    DWORD m_flags;
};
