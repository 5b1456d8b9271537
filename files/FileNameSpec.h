#pragma once

#include "framework/base/Platform.h"
#include "framework/base/String.h"

/// A file name together with the class that it is to be treated as.
///
/// A plain value. Class 0 leaves the choice to the name's extension.
class VAK_API CFileNameSpec
{
public:
    CFileNameSpec() = default;
    CFileNameSpec(const CString& name, unsigned int fileClass = 0);
    /// A null `name` is taken as an empty one.
    CFileNameSpec(LPCWSTR name, unsigned int fileClass = 0);

    /// Replaces the name and leaves the class.
    CFileNameSpec& operator=(const CString& name);
    CFileNameSpec& operator=(LPCWSTR name);

    operator const CString&() const { return m_name; }
    CString GetFileName() const { return m_name; }
    unsigned int GetClass() const { return m_class; }
    /// Returns 1 if both names mean the same file, whatever their classes.
    int IsSameFile(const CFileNameSpec& other) const;

private:
    CString m_name;
    unsigned int m_class = 0;
};
