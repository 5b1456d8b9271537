#include "files/FileIo.h"
#include "files/FilePath.h"
#include "framework/ui/ResizableDialog.h"
#include "resources/Ids.h"

#include <vector>

namespace {

using namespace vak::detail;

/// Shows the names below `folder`, all selected, and reads the selection back into `selected`.
class FileSelectDialog : public ResizableDialog
{
public:
    FileSelectDialog(const CStringArray& files, const CString& folder, CStringArray& selected, CWnd* parent)
        : ResizableDialog(IDD_SELECT_FILES, parent), m_files(files), m_folder(folder), m_selected(selected)
    {
    }

protected:
    BOOL OnInitDialog() override;
    BOOL OnCommand(UINT id, UINT code) override;
    void OnOK() override;

private:
    void FillList();
    void SelectAll();
    void ShowCount();

    const CStringArray& m_files;
    CString m_folder;
    CStringArray& m_selected;
};

BOOL FileSelectDialog::OnInitDialog()
{
    ResizableDialog::OnInitDialog();
    SetDlgItemText(IDC_SELECT_FILES_FOLDER, m_folder);
    FillList();
    SelectAll();
    Anchor(IDC_SELECT_FILES_FOLDER, vak::AnchorLeft | vak::AnchorTop | vak::AnchorRight);
    Anchor(IDC_SELECT_FILES_LIST, vak::AnchorAll);
    Anchor(IDC_SELECT_FILES_COUNT, vak::AnchorLeft | vak::AnchorRight | vak::AnchorBottom);
    Anchor(IDC_SELECT_FILES_ALL, vak::AnchorLeft | vak::AnchorBottom);
    Anchor(IDOK, vak::AnchorRight | vak::AnchorBottom);
    Anchor(IDCANCEL, vak::AnchorRight | vak::AnchorBottom);
    return TRUE;
}

void FileSelectDialog::FillList()
{
    const HWND list = GetDlgItem(IDC_SELECT_FILES_LIST);
    const HDC context = GetDC(list);
    const HGDIOBJ previous = SelectObject(
        context, reinterpret_cast<HGDIOBJ>(SendDlgItemMessage(IDC_SELECT_FILES_LIST, WM_GETFONT)));
    LONG widest = 0;
    for (INT_PTR index = 0; index < m_files.GetSize(); ++index) {
        const CString name = fileMakeRelativePath(m_folder, m_files[index]);
        const CString shown = name.Left(2) == L".\\" ? name.Mid(2) : name;
        SendDlgItemMessage(IDC_SELECT_FILES_LIST, LB_ADDSTRING, 0,
                           reinterpret_cast<LPARAM>(shown.GetString()));
        SIZE size{};
        GetTextExtentPoint32(context, shown, shown.GetLength(), &size);
        widest = size.cx > widest ? size.cx : widest;
    }
    SelectObject(context, previous);
    ReleaseDC(list, context);
    constexpr LONG kMargin = 8;
    SendDlgItemMessage(IDC_SELECT_FILES_LIST, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest + kMargin));
}

void FileSelectDialog::SelectAll()
{
    SendDlgItemMessage(IDC_SELECT_FILES_LIST, LB_SETSEL, TRUE, -1);
    ShowCount();
}

void FileSelectDialog::ShowCount()
{
    const auto count = static_cast<int>(SendDlgItemMessage(IDC_SELECT_FILES_LIST, LB_GETSELCOUNT));
    CString text;
    text.Format(UINT{IDS_SELECT_COUNT}, count, static_cast<int>(m_files.GetSize()));
    SetDlgItemText(IDC_SELECT_FILES_COUNT, text);
    EnableWindow(GetDlgItem(IDOK), count > 0);
}

BOOL FileSelectDialog::OnCommand(UINT id, UINT code)
{
    if (id == IDC_SELECT_FILES_LIST && code == LBN_SELCHANGE)
        ShowCount();
    else if (id == IDC_SELECT_FILES_LIST && code == LBN_DBLCLK)
        OnOK();
    else if (id == IDC_SELECT_FILES_ALL && code == BN_CLICKED)
        SelectAll();
    else
        return ResizableDialog::OnCommand(id, code);
    return TRUE;
}

void FileSelectDialog::OnOK()
{
    const LRESULT count = SendDlgItemMessage(IDC_SELECT_FILES_LIST, LB_GETSELCOUNT);
    std::vector<int> chosen(count > 0 ? static_cast<size_t>(count) : 0);
    SendDlgItemMessage(IDC_SELECT_FILES_LIST, LB_GETSELITEMS, chosen.size(),
                       reinterpret_cast<LPARAM>(chosen.data()));
    for (const int index : chosen)
        m_selected.Add(m_files[index]);
    ResizableDialog::OnOK();
}

} // namespace

int CFileIo::SelectFilesFromList(const CStringArray& files, CStringArray& selected) const
{
    CStringArray picked; // `selected` may be `files`
    if (IsSilentMode())
        picked.Copy(files);
    else if (files.GetSize() > 0)
        FileSelectDialog(files, GetPath(), picked, m_parentWnd).DoModal();
    selected.Copy(picked);
    return static_cast<int>(selected.GetSize());
}
