#include "files/FileNames.h"

#include "files/FileInfo.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "framework/base/Application.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/detail/PathText.h"
#include "resources/Ids.h"

using namespace vak;

namespace {

constexpr LPCWSTR kNeverInPath = L"*?\"<>|";
constexpr LPCWSTR kNeverInName = L"*?\"<>|:/\\";

CString Text(UINT id)
{
    CString text;
    text.LoadString(id);
    return text;
}

/// The text lists the double quote as %c: a text of the string table cannot hold one.
CString BadCharactersText()
{
    CString text;
    text.Format(IDS_NAME_BAD_CHARACTERS, L'"');
    return text;
}

int Refuse(const CString& reason, unsigned int flags)
{
    if ((flags & FILENAME_CHECK_SILENT) == 0)
        AfxMessageBox(reason, MB_OK | MB_ICONEXCLAMATION);
    return 0;
}

int CheckPath(const CString& path, unsigned int flags)
{
    if (path.FindOneOf(kNeverInPath) >= 0)
        return Refuse(BadCharactersText(), flags);
    if ((flags & FILENAME_CHECK_RELATIVE) != 0 && detail::IsRelativePath(path))
        return 1;
    const CFileInfo info(CFileNameSpec(path, 0), FILEINFO_FILE);
    return fileDirectoryExists(info.GetRoot()) != 0 ? 1 : Refuse(Text(IDS_PATH_NO_ROOT), flags);
}

CString TemporaryBase()
{
    const CString folder = system::TemporaryFolder();
    return folder.IsEmpty() ? system::ApplicationFolder() : folder;
}

/// `stem` + number + `end` with the first number from 1 up that gives a free path, the number formatted by
/// `style`.
CString FirstFree(const CString& stem, LPCWSTR style, const CString& end)
{
    for (ULONGLONG number = 1;; ++number) {
        CString candidate = stem;
        candidate.AppendFormat(style, number);
        candidate += end;
        if (fileExists(candidate) == 0)
            return candidate;
    }
}

} // namespace

int fileIsValidFileName(const CString& name, unsigned int flags)
{
    if (name.IsEmpty())
        return (flags & FILENAME_CHECK_EMPTY) != 0 ? 1 : Refuse(Text(IDS_NAME_EMPTY), flags);
    if ((flags & FILENAME_CHECK_NAME) != 0) {
        const bool isBad = name.FindOneOf(kNeverInName) >= 0;
        return isBad ? Refuse(BadCharactersText() + Text(IDS_NAME_BAD_SEPARATORS), flags) : 1;
    }
    return (flags & FILENAME_CHECK_PATH) != 0 ? CheckPath(name, flags) : 1;
}

CString fileCreateUniqueName(const CString& path, int style)
{
    // The operating system ends a name at its first zero: a number behind it would never make another name.
    const CString name(path.GetString());
    if (fileExists(name) == 0)
        return name;
    return FirstFree(fileRemoveExtension(name), style != 0 ? L" (%I64u)" : L"%I64u", fileGetExtension(name));
}

CString fileCreateTmpName(const CString& name)
{
    return fileCreateUniqueName(TemporaryBase() + fileStripPath(name), 0);
}

CString fileCreateTmpFolder(const CString& name, int create)
{
    CString folder = TemporaryBase() + name.GetString(); // up to its first zero, as above
    fileRemoveSlashTermination(folder);
    if (fileExists(folder) != 0)
        folder = FirstFree(folder, L"%I64u", CString());
    fileSlashTerminate(folder);
    if (create != 0)
        fileCreateDirectory(folder, 1);
    return folder;
}

int fileAskForReplace(const CString& path)
{
    if (fileExists(path) == 0)
        return 1;
    CString question;
    question.Format(IDS_ASK_FOR_REPLACE, path.GetString());
    return AfxMessageBox(question, MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES ? 1 : 0;
}
