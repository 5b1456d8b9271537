#pragma once

#include "files/FileExt.h"
#include "files/FileNameSpec.h"
#include "framework/base/Platform.h"
#include "framework/base/String.h"

/// How `CFileInfo` is to read a name.
enum _FILEINFO_TYPE : unsigned int
{
    FILEINFO_AUTO = 0, ///< a directory if it ends in "\", looks like a root or is one on disk; else a file
    FILEINFO_FILE = 1, ///< a file unless it ends in "\"; the disk is not asked
    FILEINFO_DIRECTORY = 2, ///< a directory, with or without "\" at its end; the disk is not asked
};

/// A file name taken apart, with the properties of its kind.
///
/// The parts are extracted once, by `Init`, and are pieces of the name as it was given: nothing is made
/// absolute and "." and ".." are not resolved. Directories are held slash-terminated. The kind is copied from
/// the registry and does not follow later changes there: a record of a plug-in's kind must not outlive the
/// plug-in.
class VAK_API CFileInfo
{
public:
    /// Makes the info of an empty name.
    CFileInfo() = default;
    CFileInfo(const CFileNameSpec& spec, _FILEINFO_TYPE type = FILEINFO_AUTO);

    /// Takes the name apart and looks its kind up: by the class of `spec` or, when that is 0, by the
    /// extension. A class that is not registered, a directory and a name without a known extension have no
    /// kind: class and properties 0, loader and saver vak::kFileCodeNone, no callback.
    void Init(const CFileNameSpec& spec, _FILEINFO_TYPE type = FILEINFO_AUTO);

    CString GetCompleteName() const { return m_completeName; }
    /// Returns the drive or share, slash-terminated ("C:\", "\\server\share\"); "\" when there is none.
    CString GetRoot() const { return m_root; }
    /// Returns the directory with its root, slash-terminated; empty for a bare name. Path and name joined are
    /// the complete name.
    CString GetPath() const { return m_path; }
    /// Returns the directory below the root, slash-terminated; empty when the path is only a root.
    CString GetPathWithoutRoot() const;
    /// Returns the file name with its extension; empty for a directory.
    CString GetName() const { return m_name; }
    CString GetNameWithoutExt() const;
    /// Returns the extension with its dot, its case kept; empty for a directory and when there is none.
    CString GetExtension() const { return m_extension; }
    /// Returns the bare name of the last directory of the path; empty when the path is only a root.
    CString GetTopDirectory() const;
    /// Returns the directory that holds the path's own one, slash-terminated; the path itself when it is a
    /// root, and an empty string for a relative path of one directory.
    CString GetParentDirectory() const;

    unsigned int GetClass() const { return m_kind.GetClass(); }
    unsigned int GetProperties() const { return m_kind.GetProperties(); }
    unsigned int GetKindOf() const { return m_kind.GetKindOf(); }
    unsigned int GetLoader() const { return m_kind.GetLoader(); }
    unsigned int GetSaver() const { return m_kind.GetSaver(); }
    IoInitCallback GetInitIoCallback() const { return m_kind.GetInitIoCallback(); }

    int IsDirectory() const { return m_isDirectory ? 1 : 0; }
    /// Returns 1 for the name of a shell shortcut file.
    int IsShortcut() const;
    int IsUNCPath() const;
    /// Returns 1 if both name the same file.
    int IsSameFile(const CFileInfo& other) const;
    /// Returns 1 if both lie in the same directory (a directory lies in itself).
    int IsSameDir(const CFileInfo& other) const;

    /// Splits the number off the end of the name: "shot_0042.png" gives the stem "shot_", 42 and 4 digits.
    ///
    /// The number is the run of digits 0-9 that ends the name without its extension, at most the last 19 of
    /// them, so that it always fits; the stem has no directory. The stem, the number filled with zeros up to
    /// `digits` and the extension make the name again. Returns 0, with the stem the whole name without
    /// extension and both numbers 0, when the name does not end in a digit.
    int GetDigitInfo(CString& stem, ULONGLONG& number, int& digits) const;

    /// Replaces this info by that of the file that the shortcut names, and its kind with it. Returns 0, and
    /// changes nothing, when this is not a shortcut or its target cannot be read; the target need not exist.
    int ResolveShortcut();

private:
    void SplitName(const CString& name, bool isDirectory);
    void LookUpKind(unsigned int fileClass);

    CString m_completeName;
    CString m_root = L"\\";
    CString m_path;
    CString m_name;
    CString m_extension;
    CFileExt m_kind;
    int m_rootLength = 0; ///< of the root within the complete name, in UTF-16 units
    bool m_isDirectory = false;
};
