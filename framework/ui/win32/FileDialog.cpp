#include "framework/ui/FileDialog.h"

#include <cderr.h>
#include <commdlg.h>

#include <algorithm>

IMPLEMENT_DYNAMIC(CFileDialog, CDialog)

namespace {

/// Long paths, and with OFN_ALLOWMULTISELECT several names.
constexpr DWORD kNameCapacity = 32768;

} // namespace

CFileDialog::CFileDialog(BOOL openFileDialog, LPCTSTR defaultExtension, LPCTSTR fileName, DWORD flags,
                         LPCTSTR filter, CWnd* parent)
    : m_bOpenFileDialog(openFileDialog), m_defaultExtension(defaultExtension), m_filter(filter),
      m_fileName(std::make_unique<wchar_t[]>(kNameCapacity)), m_ofn(std::make_unique<tagOFNW>())
{
    m_pParentWnd = parent;
    // The system refuses a path as the name when its folder is missing or it ends in a backslash; offered
    // apart, both the folder and the name are taken as far as they go.
    CString name(fileName);
    const int slash = name.ReverseFind(L'\\');
    m_initialFolder = name.Left(slash + 1);
    name = name.Mid(slash + 1);
    const size_t length = std::min<size_t>(static_cast<size_t>(name.GetLength()), kNameCapacity - 1);
    std::copy_n(name.GetString(), length, m_fileName.get());

    m_filter.Replace(L'|', L'\0');
    *m_ofn = {};
    m_ofn->lStructSize = sizeof(*m_ofn);
    m_ofn->lpstrFile = m_fileName.get();
    m_ofn->nMaxFile = kNameCapacity;
    m_ofn->Flags = flags | OFN_EXPLORER;
    if (!m_initialFolder.IsEmpty())
        m_ofn->lpstrInitialDir = m_initialFolder;
    if (!m_filter.IsEmpty())
        m_ofn->lpstrFilter = m_filter;
    if (defaultExtension)
        m_ofn->lpstrDefExt = m_defaultExtension;
}

CFileDialog::~CFileDialog() = default;

INT_PTR CFileDialog::DoModal()
{
    m_ofn->hwndOwner = OwnerWindow();
    BOOL chosen = Show();
    if (!chosen && CommDlgExtendedError() == FNERR_INVALIDFILENAME) {
        // The name offered is none that a file can have: the user shall still see the dialog.
        m_fileName[0] = L'\0';
        chosen = Show();
    }
    return chosen ? IDOK : IDCANCEL;
}

BOOL CFileDialog::Show()
{
    return m_bOpenFileDialog ? GetOpenFileNameW(m_ofn.get()) : GetSaveFileNameW(m_ofn.get());
}

CString CFileDialog::GetPathName() const
{
    return m_fileName.get();
}
