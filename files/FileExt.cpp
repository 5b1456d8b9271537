#include "files/FileExt.h"

CFileExt::CFileExt()
{
    Init();
}

CFileExt::CFileExt(const CString& description, const CString& extensions, unsigned int fileClass,
                   unsigned int properties, unsigned int loader, unsigned int saver)
    : m_description(description), m_extension(extensions), m_class(fileClass), m_properties(properties),
      m_loader(loader), m_saver(saver), m_initCallback(nullptr)
{
}

void CFileExt::GetContents(CString& description, CString& extensions, unsigned int& fileClass,
                           unsigned int& properties, unsigned int& loader, unsigned int& saver) const
{
    description = m_description;
    extensions = m_extension;
    fileClass = m_class;
    properties = m_properties;
    loader = m_loader;
    saver = m_saver;
}

void CFileExt::Init()
{
    m_description.Empty();
    m_extension.Empty();
    m_class = 0;
    m_properties = 0;
    m_loader = vak::kFileCodeNone;
    m_saver = vak::kFileCodeNone;
    m_initCallback = nullptr;
}
