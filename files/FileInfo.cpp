#include "files/FileInfo.h"

#include "files/FileKinds.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/NetworkPath.h"
#include "framework/base/SystemShortcut.h"
#include "framework/base/detail/PathText.h"

namespace {

bool IsDigit(wchar_t unit)
{
    return unit >= L'0' && unit <= L'9';
}

} // namespace

CFileInfo::CFileInfo(const CFileNameSpec& spec, _FILEINFO_TYPE type)
{
    Init(spec, type);
}

void CFileInfo::Init(const CFileNameSpec& spec, _FILEINFO_TYPE type)
{
    // The operating system ends a name at its first zero, so what stands behind it must not be judged.
    const CString name(spec.GetFileName().GetString());
    const bool isDirectory = !name.IsEmpty() && (type == FILEINFO_DIRECTORY ||
                                                 (type == FILEINFO_AUTO && fileIsDirectory(name, 0) != 0));
    SplitName(name, isDirectory);
    LookUpKind(spec.GetClass());
}

void CFileInfo::SplitName(const CString& name, bool isDirectory)
{
    m_completeName = name;
    m_rootLength = vak::detail::RootLength(name);
    int nameStart = name.ReverseFind(L'\\') + 1;
    if (nameStart < m_rootLength)
        nameStart = m_rootLength;
    m_isDirectory = isDirectory || (!name.IsEmpty() && nameStart == name.GetLength());
    if (m_isDirectory) {
        fileSlashTerminate(m_completeName);
        m_rootLength = vak::detail::RootLength(m_completeName);
        nameStart = m_completeName.GetLength();
    }
    m_path = m_completeName.Left(nameStart);
    m_name = m_completeName.Mid(nameStart);
    m_extension = fileGetExtension(m_name);
    m_root = m_path.Left(m_rootLength);
    fileSlashTerminate(m_root);
}

void CFileInfo::LookUpKind(unsigned int fileClass)
{
    if (m_isDirectory)
        m_kind.Init();
    else if (fileClass != 0)
        fileGetExtensionInfo(fileClass, m_kind);
    else
        fileGetFileExt(m_name, m_kind);
}

CString CFileInfo::GetPathWithoutRoot() const
{
    return m_path.Mid(m_rootLength);
}

CString CFileInfo::GetNameWithoutExt() const
{
    return m_name.Left(m_name.GetLength() - m_extension.GetLength());
}

CString CFileInfo::GetTopDirectory() const
{
    CString directories = m_path.Mid(m_rootLength);
    directories.TrimRight(L'\\');
    return directories.Mid(directories.ReverseFind(L'\\') + 1);
}

CString CFileInfo::GetParentDirectory() const
{
    CString directories = m_path.Mid(m_rootLength);
    directories.TrimRight(L'\\');
    if (directories.IsEmpty())
        return m_rootLength == 0 ? CString() : m_path;
    return m_path.Left(m_rootLength) + directories.Left(directories.ReverseFind(L'\\') + 1);
}

int CFileInfo::IsShortcut() const
{
    return !m_isDirectory && fileIsShortcut(m_completeName) ? 1 : 0;
}

int CFileInfo::IsUNCPath() const
{
    return fileIsUNCPath(m_completeName);
}

int CFileInfo::IsSameFile(const CFileInfo& other) const
{
    return fileIsSameFile(m_completeName, other.m_completeName);
}

int CFileInfo::IsSameDir(const CFileInfo& other) const
{
    return fileIsSameDir(m_path, other.m_path);
}

int CFileInfo::GetDigitInfo(CString& stem, ULONGLONG& number, int& digits) const
{
    constexpr int kMostDigits = 19; // 10^19 - 1 fits 64 bits
    stem = GetNameWithoutExt();
    number = 0;
    digits = 0;
    const int length = stem.GetLength();
    while (digits < length && digits < kMostDigits && IsDigit(stem[length - digits - 1]))
        ++digits;
    for (int i = length - digits; i < length; ++i)
        number = number * 10 + static_cast<unsigned int>(stem[i] - L'0');
    stem = stem.Left(length - digits);
    return digits > 0 ? 1 : 0;
}

int CFileInfo::ResolveShortcut()
{
    vak::system::Shortcut shortcut;
    if (!IsShortcut() || !vak::system::ReadShortcut(m_completeName, shortcut))
        return 0;
    Init(shortcut.target);
    return 1;
}
