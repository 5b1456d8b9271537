#pragma once

/// File names that users type and names for new files.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

/// What a name is checked for; bits.
enum _FILENAME_CHECK : unsigned int
{
    FILENAME_CHECK_NAME = 1,     ///< a bare file name, without a path
    FILENAME_CHECK_PATH = 2,     ///< a path
    FILENAME_CHECK_RELATIVE = 4, ///< with FILENAME_CHECK_PATH: a relative path is accepted as it is
    FILENAME_CHECK_EMPTY = 8,    ///< an empty name is accepted
    FILENAME_CHECK_SILENT = 16,  ///< nothing is shown to the user
};

/// Returns 1 if the name is acceptable; else tells the user why in a message box, unless silent, and returns
/// 0. A path's drive or share must exist. Names that the platform reserves ("CON") are not checked.
VAK_API int fileIsValidFileName(const CString& name, unsigned int flags);

/// Returns the path if nothing of that name exists; else the first free one with a number behind its name:
/// "b (1).txt", "b (2).txt" ... if `style` is non-zero, "b1.txt", "b2.txt" ... if it is 0. Nothing is
/// created.
VAK_API CString fileCreateUniqueName(const CString& path, int style);
/// Returns a free path in the temporary folder, made of the file name of `name` and, if need be, a number.
/// Nothing is created.
VAK_API CString fileCreateTmpName(const CString& name);
/// Returns a free folder path in the temporary folder, slash-terminated, made of `name` and, if need be, a
/// number. If `create` is non-zero the folder is created.
VAK_API CString fileCreateTmpFolder(const CString& name, int create);

/// Asks the user whether an existing file may be replaced. Returns 1 for yes, and for a file that does not
/// exist without asking.
VAK_API int fileAskForReplace(const CString& path);
