#pragma once

#include "framework/base/String.h"

/// What one shell shortcut file (".lnk") says, and the making of such files.
///
/// The object owns its icons: the handles that it gives are valid until it is initialised again, assigned to
/// or destroyed. The calling thread need not have set up COM, and finds it as it was. One thread at a time.
class VAK_API CShortcut
{
public:
    CShortcut() = default;
    /// A copy has icons of its own, loaded anew from the files.
    CShortcut(const CShortcut& other);
    CShortcut& operator=(const CShortcut& other);
    virtual ~CShortcut();

    /// Reads a shortcut file. `iconFlags` chooses the size of the icons: SHGFI_LARGEICON (0), SHGFI_SMALLICON
    /// or SHGFI_SHELLICONSIZE (of <shellapi.h>); an icon that cannot be had is no failure. Returns 0, with
    /// every field empty, when the file cannot be read, is damaged, or leads to nothing that has a path; what
    /// it leads to need not exist. Texts and paths are whole, whatever their length, or the result is 0.
    int Init(const CString& shortcutFile, int iconFlags);

    /// The complete path of the shortcut file; empty, as all texts, until one was read.
    CString GetPath() const { return m_path; }
    /// The complete path of the target, variables of the environment replaced.
    CString GetLinkPath() const { return m_linkPath; }
    /// The file name of the target without its extension.
    CString GetLinkName() const;
    CString GetLinkArguments() const { return m_arguments; }
    CString GetLinkDescription() const { return m_description; }
    /// As it is stored: variables of the environment are not replaced.
    CString GetLinkWorkingDirectory() const { return m_workingDirectory; }
    /// Low byte the virtual key, high byte the shell's modifier flags (HOTKEYF_CONTROL, ... of <commctrl.h>);
    /// 0 for none.
    WORD GetLinkHotKey() const { return m_hotKey; }
    /// Returns 1 if the target exists as a file; 0 for a folder.
    int TargetExists() const;
    /// The shell's icon of the shortcut and of its target; null when absent. They stay the object's.
    HICON GetLinkIcon() const { return m_linkIcon; }
    HICON GetTargetIcon() const { return m_targetIcon; }

    /// Returns a hot key as a user reads it ("Ctrl + Alt + K"), in the language of the library's texts; empty
    /// for none.
    static CString GetLinkHotKeyString(WORD hotKey);

    /// Writes a shortcut file, in one step in place of one that is there. Without a description it gets the
    /// target's own, from its version information and as far as one fits, or else the name of the shortcut
    /// file with its extension. Variables of the environment in the target are replaced; the target need not
    /// exist. Returns 0, and a file that was there is as it was, when it cannot be written or a field is
    /// longer than a shortcut holds: 259 units for paths, 1,023 for the description, 32,766 for the
    /// arguments.
    static int CreateShortcut(const CString& shortcutFile, const CString& target, const CString& arguments,
                              const CString& workingDirectory, const CString& description, WORD hotKey);

protected:
    /// Empties every field and frees the icons.
    void Init();
    /// Returns the shell's icon of a file, the caller's to keep in one of the members; null for an empty
    /// path.
    HICON GetIcon(const CString& path, int iconFlags) const;
    /// Returns the file that has the icon of `path`, and its index there; empty, and 0, for an empty path.
    CString GetIconLocation(const CString& path, int& index) const;

    // The order is part of the interface.
    CString m_path;
    CString m_linkPath;
    CString m_arguments;
    CString m_description;
    CString m_workingDirectory;
    WORD m_hotKey = 0;
    HICON m_linkIcon = nullptr;
    HICON m_targetIcon = nullptr;

private:
    void LoadIcons();

    int m_iconFlags = 0; ///< what a copy loads its icons with
};
