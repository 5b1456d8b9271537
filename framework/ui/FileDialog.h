#pragma once

/// The platform's own dialog for opening and saving files. Windows only.

#include "framework/ui/Dialog.h"

#include <memory>

struct tagOFNW;

class VAK_API CFileDialog : public CDialog
{
    DECLARE_DYNAMIC(CFileDialog)

public:
    /// `openFileDialog`: non-zero to open, 0 to save. `defaultExtension` without its dot is added to a name
    /// typed without one; `fileName` is offered at first; both may be null. `flags` are the platform's OFN_
    /// bits. `filter` has rows of a text and its ";"-separated patterns, everything closed by "|", the whole
    /// by another. Everything is copied. `parent` as for CDialog.
    explicit CFileDialog(BOOL openFileDialog, LPCTSTR defaultExtension = nullptr, LPCTSTR fileName = nullptr,
                         DWORD flags = kDefaultFlags, LPCTSTR filter = nullptr, CWnd* parent = nullptr);
    ~CFileDialog() override;

    /// Returns IDOK, or IDCANCEL also when the dialog could not be shown: the system's CommDlgExtendedError
    /// says why.
    INT_PTR DoModal() override;

    /// The complete name of the file chosen; the name offered before.
    CString GetPathName() const;

    /// OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT
    static constexpr DWORD kDefaultFlags = 0x4 | 0x2;

private:
    BOOL Show();

    BOOL m_bOpenFileDialog;
    CString m_defaultExtension;
    CString m_filter;
    CString m_initialFolder;
    std::unique_ptr<wchar_t[]> m_fileName;
    std::unique_ptr<tagOFNW> m_ofn;
};
