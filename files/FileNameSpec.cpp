#include "files/FileNameSpec.h"

#include "files/FileSystem.h"

CFileNameSpec::CFileNameSpec(const CString& name, unsigned int fileClass) : m_name(name), m_class(fileClass)
{
}

CFileNameSpec::CFileNameSpec(LPCWSTR name, unsigned int fileClass) : m_name(name), m_class(fileClass) {}

CFileNameSpec& CFileNameSpec::operator=(const CString& name)
{
    m_name = name;
    return *this;
}

CFileNameSpec& CFileNameSpec::operator=(LPCWSTR name)
{
    m_name = name;
    return *this;
}

int CFileNameSpec::IsSameFile(const CFileNameSpec& other) const
{
    return fileIsSameFile(m_name, other.m_name);
}
