#pragma once

#include "framework/base/Object.h"
#include "framework/base/String.h"
#include "framework/base/Time.h"

#include <memory>

namespace vak::detail {
class FileSearch;
}
namespace vak::system {
struct FileEntry;
}

/// A search of one folder by a pattern.
///
/// FindFile starts it; each FindNextFile makes the next entry current and says whether another follows, so
/// the first call makes the first entry current and the entry of the call that returns FALSE counts too. The
/// getters speak of the current entry. Names are compared without regard to case; "*" is any run, "?" one
/// character, and as always on the platform "*.*" is every name, also one without a dot. Entries come sorted
/// by name, "." and
/// ".." included. Short (8.3) names do not match.
class VAK_API CFileFind : public CObject
{
    DECLARE_DYNAMIC(CFileFind)

public:
    CFileFind();
    ~CFileFind() override;

    /// The size in bytes; 0 for a folder.
    ULONGLONG GetLength() const;
    /// The entry's name with its extension, the same without it, and its full path.
    virtual CString GetFileName() const;
    virtual CString GetFileTitle() const;
    virtual CString GetFilePath() const;
    /// The folder as the pattern named it, with its backslash; empty when it named none.
    virtual CString GetRoot() const;
    virtual BOOL GetLastWriteTime(CTime& refTime) const;
    virtual BOOL GetCreationTime(CTime& refTime) const;
    virtual BOOL GetLastAccessTime(CTime& refTime) const;
    /// Whether any of the attribute bits (FILE_ATTRIBUTE_...) is set.
    virtual BOOL MatchesMask(DWORD dwMask) const;
    virtual BOOL IsDots() const;
    BOOL IsReadOnly() const;
    BOOL IsDirectory() const;
    BOOL IsHidden() const;

    /// Starts a search, ending one that was open; null means "*.*". Returns FALSE when nothing matches or the
    /// folder cannot be read.
    virtual BOOL FindFile(LPCTSTR pstrName = nullptr, DWORD dwUnused = 0);
    virtual BOOL FindNextFile();
    void Close();

private:
    const vak::system::FileEntry* Current() const;

    std::unique_ptr<vak::detail::FileSearch> m_search;
};
