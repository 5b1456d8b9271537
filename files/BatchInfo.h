#pragma once

/// One batch run of a host: where its source files come from, where the results go, and whether the tree of
/// source folders is visited and rebuilt.
///
/// The object belongs to the host's dialog or loop, which reads and writes its members; it runs nothing and
/// holds no contents of files. It has no locks: one thread at a time.

#include "framework/base/Platform.h"
#include "framework/base/String.h"
#include "framework/base/StringArray.h"

/// Where the source files come from.
enum BATCH_SOURCE : unsigned int
{
    BATCH_SOURCE_FILES = 0,           ///< the files that the user selected
    BATCH_SOURCE_FOLDER_OR_ALBUM = 1, ///< a folder, or an album: BATCH_ALBUM tells
    BATCH_SOURCE_FOLDER = 2,          ///< a folder
};

/// Where a result goes.
enum BATCH_DESTINATION : unsigned int
{
    BATCH_DESTINATION_BESIDE = 0,    ///< beside its source file
    BATCH_DESTINATION_SUBFOLDER = 1, ///< in a relative subfolder of its source file's folder
    BATCH_DESTINATION_FOLDER = 2,    ///< in one folder, absolute or relative to the source folder
};

/// What is known about the source files; bits.
enum BATCH_FLAGS : unsigned int
{
    BATCH_ALBUM = 1,             ///< the source is an album
    BATCH_FILES_COMMON = 2,      ///< all selected files lie in one folder
    BATCH_ALBUM_COMMON = 4,      ///< all album files lie in one folder
    BATCH_FILES_UNEXAMINED = 16, ///< BATCH_FILES_COMMON must be worked out again
    BATCH_ALBUM_UNEXAMINED = 32, ///< BATCH_ALBUM_COMMON must be worked out again
};

/// The order of the members is part of the interface.
class VAK_API BatchInfo
{
public:
    /// A source folder that is not named yet, into ".\Résultats" inside it, subfolders visited and rebuilt.
    BatchInfo();

    const CStringArray& GetSelFiles() const { return m_selFiles; }
    const CStringArray& GetAlbumFiles() const { return m_albumFiles; }
    int IsAlbum() const { return (m_flags & BATCH_ALBUM) != 0 ? 1 : 0; }

    /// Replaces the selected files; their common folder is worked out when it is next asked for.
    void SetSelFiles(const CStringArray& files);
    /// Makes an album the source: its folder and its files.
    void SetAlbumFiles(const CStringArray& files, const CString& albumFolder);

    /// Returns 1 if the folders below the source are to be visited; with `force`, if they could be, whatever
    /// the option says.
    int CanRecurseFolder(int force) const;
    /// Returns 1 if the source tree is to be rebuilt below the destination; with `force`, if it could be,
    /// whatever the option to rebuild says. Never without the option to visit subfolders.
    int CanRecreateFolderTree(int force) const;

    /// Returns 1 if the destination entry is acceptable. Else returns 0, after telling the user what to type
    /// if `showMessage` is non-zero. The disk is asked for the source folder when results go beside their
    /// sources, and for the drive or share of an absolute entry.
    int CheckDstFolder(int showMessage) const;
    /// Returns the folder for the result of `file`, slash-terminated; an empty `file` asks for the common
    /// one. An entry that is not acceptable counts as ".\Résultats". Empty when there is no such folder: the
    /// source folder is not known, or the destination mode is none of BATCH_DESTINATION. `file` is split as
    /// fileStripName does, which asks the disk: the name of a directory that exists is its own folder part.
    CString GetDstFolder(const CString& file);
    /// Creates the folder for the result of `file` with every missing parent; returns 0 on failure.
    int CreateDstFolder(const CString& file);

    /// Returns a sentence for the dialog that tells where the results will be created, with names between
    /// <b> and </b>; empty when the destination mode is none of BATCH_DESTINATION.
    CString GetInformation();

private:
    CString GetSrcFolder(int& isCommon, const CString& file);
    CString GetCommonFolder(const CStringArray& files, unsigned int unexamined, unsigned int common,
                            int& isCommon, const CString& file);
    CString UsableEntry() const;
    CString OneFolderFor(const CString& file);
    CString DescribeBeside();
    CString DescribeSubfolder();
    CString DescribeOneFolder();

public:
    unsigned int m_srcMode = BATCH_SOURCE_FOLDER_OR_ALBUM;
    unsigned int m_dstMode = BATCH_DESTINATION_FOLDER;
    CString m_srcFolder;
    CString m_dstFolder;
    int m_recreateFolderTree = 1;
    int m_recurseFolder = 1;
    CString m_albumFolder;
    CStringArray m_selFiles;
    CStringArray m_albumFiles;
    unsigned int m_flags = 0;
};
