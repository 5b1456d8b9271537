#pragma once

#include "core/HashMap.h"
#include "framework/base/Platform.h"
#include "framework/base/String.h"

/// The kinds of directories that a caller tells apart. The values are the callers' own; the library attaches
/// no meaning to them.
enum DirectoryType : unsigned int
{
};

/// Remembers one directory for each kind: the last folder opened, the last folder saved ...
///
/// Entries live as long as the object. Directories are kept as they were given.
class VAK_API CCurrentDir
{
public:
    CCurrentDir() = default;
    virtual ~CCurrentDir() = default;

    /// Stores the directory of a kind and returns the one stored before; empty if there was none.
    CString SetDirectory(const CString& directory, DirectoryType type);
    /// Returns the directory of a kind; empty if there is none. `directory` is not read.
    CString GetDirectory(const CString& directory, DirectoryType type) const;

private:
    CHashMap<unsigned int, CString, unsigned int> m_directories{101};
};
