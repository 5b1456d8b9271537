#pragma once

#include "examples/vakconvert/SampleRun.h"
#include "examples/vakconvert/TemplateFile.h"
#include "framework/ui/RichEditCtrl.h"

/// A window in which a report template is edited, with the report of a made-up run beside it. The right
/// button or the menu key offers the tags; Ctrl+S saves; F6 changes between the two texts.
class TemplateWindow : public CWnd
{
public:
    explicit TemplateWindow(const TemplateFile& file);
    ~TemplateWindow() override;

    /// Shows the window; false when the system refuses.
    bool Open();

    BOOL PreTranslateMessage(MSG* message) override;

protected:
    BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
    int OnCreate(CREATESTRUCT* create) override;
    void OnSize(UINT type, int cx, int cy) override;
    void OnGetMinMaxInfo(MINMAXINFO* info) override;
    BOOL OnCommand(UINT id, UINT code) override;
    void OnTimer(UINT_PTR id) override;
    void OnContextMenu(HWND window, CPoint point) override;
    void OnSetFocus(HWND previous) override;
    void OnClose() override;

private:
    bool MakeControls();
    bool MakePane(CRichEditCtrl& pane, UINT id, DWORD style);
    bool LoadTemplate();
    CString TextToSave() const;
    bool Save();
    /// Asks what to do with unsaved changes; false when the window is to stay.
    bool MayClose();
    void ShowTitle();
    void ShowPreview();
    void ShowStatus();
    void InsertTag(CPoint point);
    CString TagsToInsert(const CString& chosen) const;

    TemplateFile m_file;
    SampleRun m_sample;
    CTags m_tags;
    HFONT m_font = nullptr;
    CWnd m_templateLabel;
    CWnd m_previewLabel;
    CWnd m_status;
    CRichEditCtrl m_template;
    CRichEditCtrl m_preview;
};
