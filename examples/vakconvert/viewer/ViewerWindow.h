#pragma once

#include "examples/vakconvert/viewer/DocumentView.h"

/// A window with an image or a model, and a line below it that tells the zoom and the selection. Ctrl+S saves
/// the part of an image that is selected.
class ViewerWindow : public CWnd, private ViewListener
{
public:
    /// `document` outlives the window; `path` is where it comes from.
    ViewerWindow(const Document& document, const CString& path);
    ~ViewerWindow() override;

    /// Shows the window, with the whole document in it; false when the system refuses.
    bool Open();

protected:
    int OnCreate(CREATESTRUCT* create) override;
    void OnSize(UINT type, int cx, int cy) override;
    void OnGetMinMaxInfo(MINMAXINFO* info) override;
    void OnSetFocus(HWND previous) override;

private:
    void OnViewChanged() override;
    void OnSaveWanted() override;
    CString OfferedName() const;

    const Document& m_document;
    CString m_path;
    DocumentView m_view;
    CWnd m_status;
    CString m_statusText;
};
