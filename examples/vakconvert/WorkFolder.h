#pragma once

#include "framework/base/String.h"

#include <vector>

/// A new folder inside an existing one, in which a result is made before it is moved into place; removed with
/// what is left in it when the object goes.
class WorkFolder
{
public:
    /// The folder's parent is created when it is missing.
    explicit WorkFolder(const CString& parent);
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    /// Whether a folder is by its name one of these, left behind by a run that was ended.
    static bool IsOne(const CString& folder);

    bool IsReady() const { return m_ready; }
    /// The folder, slash-terminated.
    const CString& Path() const { return m_path; }

    /// The names of the files in it, `mainName` last.
    std::vector<CString> Files(const CString& mainName) const;
    /// Moves files into the parent in their order: whoever sees the main one, the last, sees those that
    /// belong to it too. Returns their size, or 0 and `failure` set when one cannot be moved; files moved
    /// before stay.
    ULONGLONG MoveOut(const std::vector<CString>& files, bool overwrite, CString& failure);

private:
    bool MoveFileOut(const CString& name, bool overwrite, CString& failure) const;

    CString m_parent;
    CString m_path;
    bool m_ready;
};
