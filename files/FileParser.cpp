#include "files/FileParser.h"

#include "files/FileIo.h"

CFileParser::CFileParser(CFileIo* fileIo)
    : m_fileIo(fileIo), m_parentWnd(fileIo ? fileIo->GetParentWnd() : nullptr)
{
}

CFileParser::~CFileParser() = default;

IoShowDialog CFileParser::MustShowDialog() const
{
    if (!m_fileIo)
        return IoShowDialogNone;
    const unsigned int mustShow = m_fileIo->IsLoading() ? vak::kFileReadMustShow : vak::kFileWriteMustShow;
    return m_fileIo->GetProperties() & mustShow ? IoShowDialogAlways : IoShowDialogNone;
}

int CFileParser::IsSilentMode() const
{
    return m_fileIo ? m_fileIo->IsSilentMode() : 0;
}

int CFileParser::IsFlagSet(FILE_PARSER_FLAGS flags) const
{
    return m_fileIo ? m_fileIo->IsFlagSet(flags) : 0;
}
