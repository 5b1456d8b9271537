#include "files/FileIo.h"
#include "files/FileKinds.h"
#include "framework/ui/FileDialog.h"

namespace {

constexpr unsigned int kHideReadOnly = 0x4;   // OFN_HIDEREADONLY
constexpr unsigned int kNoChangeFolder = 0x8; // OFN_NOCHANGEDIR
constexpr unsigned int kSeveralFiles = 0x200; // OFN_ALLOWMULTISELECT

} // namespace

int CFileIo::FileDialogBox(unsigned int flags)
{
    if (IsSilentMode())
        return IDCANCEL;
    // One operation has one file, and the process keeps its current directory.
    const DWORD dialogFlags = (flags & ~kSeveralFiles) | kHideReadOnly | kNoChangeFolder;
    // Without its dot. With one, even an empty one, the dialog adds that of the filter chosen.
    const CString extension = fileGetMainExtension(m_fileInfo.GetClass()).Mid(1);
    CFileDialog dialog(IsLoading(), extension, GetCompleteName(), dialogFlags,
                       fileGetDialogFilter(vak::kFileFilterAll), m_parentWnd);
    const int answer = static_cast<int>(dialog.DoModal());
    if (answer == IDOK)
        SetNewFileName(CFileNameSpec(dialog.GetPathName()));
    return answer;
}
