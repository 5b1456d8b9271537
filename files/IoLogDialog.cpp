#include "files/FileIo.h"
#include "files/IoOptions.h"
#include "framework/base/StringTable.h"
#include "framework/ui/ResizableDialog.h"
#include "resources/Ids.h"

namespace {

using namespace vak::detail;

/// The text of a level that stands before its lines.
UINT PrefixId(IoLogInfo::loglevel level)
{
    switch (level) {
    case IoLogInfo::warning:
        return IDS_LOG_WARNING;
    case IoLogInfo::error:
        return IDS_LOG_ERROR;
    default:
        return 0;
    }
}

UINT IconOfLevel(IoLogInfo::loglevel level)
{
    switch (level) {
    case IoLogInfo::warning:
        return MB_ICONEXCLAMATION;
    case IoLogInfo::error:
        return MB_ICONHAND;
    default:
        return MB_ICONINFORMATION;
    }
}

HICON SystemIcon(UINT icon)
{
    switch (icon & MB_ICONMASK) {
    case MB_ICONHAND:
        return LoadIcon(nullptr, IDI_HAND);
    case MB_ICONQUESTION:
        return LoadIcon(nullptr, IDI_QUESTION);
    case MB_ICONEXCLAMATION:
        return LoadIcon(nullptr, IDI_EXCLAMATION);
    default:
        return LoadIcon(nullptr, IDI_ASTERISK);
    }
}

CString LineOf(const IoLogInfo& info)
{
    CString line;
    vak::LoadText(line, PrefixId(info.level));
    line += info.text;
    // The control breaks lines at CR LF only.
    line.Replace(L"\r\n", L"\n");
    line.Replace(L"\n", L"\r\n");
    return line;
}

class IoLogDialog : public ResizableDialog
{
public:
    IoLogDialog(const CIoOptions& options, UINT icon, CWnd* parent)
        : ResizableDialog(IDD_IO_LOG, parent), m_options(options), m_icon(icon)
    {
    }

protected:
    BOOL OnInitDialog() override;

private:
    const CIoOptions& m_options;
    UINT m_icon;
};

BOOL IoLogDialog::OnInitDialog()
{
    ResizableDialog::OnInitDialog();
    CString title;
    vak::LoadText(title, m_options.IsLoading() ? IDS_LOG_LOADING : IDS_LOG_SAVING);
    SetWindowText(title);
    SendDlgItemMessage(IDC_IO_LOG_ICON, STM_SETICON, reinterpret_cast<WPARAM>(SystemIcon(m_icon)));

    CString text;
    for (int index = 0; index < m_options.GetLogCount(); ++index)
        text += (index ? L"\r\n" : L"") + LineOf(m_options.GetLogInfo(index));
    // The control's own limit is 30,000 characters.
    SendDlgItemMessage(IDC_IO_LOG_TEXT, EM_SETLIMITTEXT, static_cast<WPARAM>(text.GetLength()) + 1);
    SetDlgItemText(IDC_IO_LOG_TEXT, text);

    Anchor(IDC_IO_LOG_TEXT, vak::AnchorAll);
    Anchor(IDOK, vak::AnchorRight | vak::AnchorBottom);
    // With the focus on the text the dialog would select all of it.
    ::SetFocus(GetDlgItem(IDOK));
    return FALSE;
}

} // namespace

void CIoOptions::DisplayLog(unsigned int icon, CWnd* parent) const
{
    if (GetLogCount() == 0)
        return;
    IoLogDialog(*this, icon ? icon : IconOfLevel(GetWorstLevel()), parent).DoModal();
}

void CFileIo::ReportIoError(const CIoOptions* options, unsigned int icon) const
{
    if (IsSilentMode())
        return;
    if (options && options->GetLogCount() > 0)
        options->DisplayLog(icon, m_parentWnd);
    else if (m_ioError != IO_FILE_SUCCESS)
        ReportIoError(CString());
}
