#include "platform/Shortcut.h"

#include "files/FileInfo.h"
#include "files/FileSystem.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/SystemModule.h"
#include "framework/base/SystemShortcut.h"
#include "framework/ui/SystemIcon.h"
#include "platform/KeyName.h"

using namespace vak;

CShortcut::CShortcut(const CShortcut& other)
{
    *this = other;
}

CShortcut& CShortcut::operator=(const CShortcut& other)
{
    if (this == &other)
        return *this;
    const system::ShellScope shell;
    Init();
    m_path = other.m_path;
    m_linkPath = other.m_linkPath;
    m_arguments = other.m_arguments;
    m_description = other.m_description;
    m_workingDirectory = other.m_workingDirectory;
    m_hotKey = other.m_hotKey;
    m_iconFlags = other.m_iconFlags;
    LoadIcons();
    return *this;
}

CShortcut::~CShortcut()
{
    system::FreeFileIcon(m_linkIcon);
    system::FreeFileIcon(m_targetIcon);
}

void CShortcut::Init()
{
    m_path.Empty();
    m_linkPath.Empty();
    m_arguments.Empty();
    m_description.Empty();
    m_workingDirectory.Empty();
    m_hotKey = 0;
    system::FreeFileIcon(m_linkIcon);
    system::FreeFileIcon(m_targetIcon);
    m_linkIcon = m_targetIcon = nullptr;
    m_iconFlags = 0;
}

int CShortcut::Init(const CString& shortcutFile, int iconFlags)
{
    const system::ShellScope shell;
    CString path;
    system::Shortcut fields;
    const bool isRead = system::FullPath(shortcutFile, path) && system::ReadShortcut(path, fields);
    // Only now: the name may be this object's own.
    Init();
    if (!isRead)
        return 0;
    m_path = path;
    m_linkPath = fields.target;
    m_arguments = fields.arguments;
    m_description = fields.description;
    m_workingDirectory = fields.workingDirectory;
    m_hotKey = fields.hotKey;
    m_iconFlags = iconFlags;
    LoadIcons();
    return 1;
}

CString CShortcut::GetLinkName() const
{
    return CFileInfo(m_linkPath, FILEINFO_FILE).GetNameWithoutExt();
}

int CShortcut::TargetExists() const
{
    return fileExists(m_linkPath) != 0 && fileDirectoryExists(m_linkPath) == 0 ? 1 : 0;
}

CString CShortcut::GetLinkHotKeyString(WORD hotKey)
{
    return keyGetHotKeyText(hotKey);
}

int CShortcut::CreateShortcut(const CString& shortcutFile, const CString& target, const CString& arguments,
                              const CString& workingDirectory, const CString& description, WORD hotKey)
{
    system::Shortcut fields{target, arguments, description, workingDirectory, hotKey};
    if (description.IsEmpty())
        fields.description =
            system::ModuleDescription(system::ExpandedPath(target)).Left(system::kMostDescription);
    if (fields.description.IsEmpty())
        fields.description = CFileInfo(shortcutFile, FILEINFO_FILE).GetName();
    return system::WriteShortcut(shortcutFile, fields) ? 1 : 0;
}

HICON CShortcut::GetIcon(const CString& path, int iconFlags) const
{
    return path.IsEmpty() ? nullptr : system::FileIcon(path, iconFlags);
}

CString CShortcut::GetIconLocation(const CString& path, int& index) const
{
    index = 0;
    return path.IsEmpty() ? CString() : system::FileIconLocation(path, index);
}

void CShortcut::LoadIcons()
{
    m_linkIcon = GetIcon(m_path, m_iconFlags);
    m_targetIcon = GetIcon(m_linkPath, m_iconFlags);
}
