#include "framework/base/ArchiveException.h"

#include "framework/base/FileException.h"
#include "resources/Ids.h"

IMPLEMENT_DYNAMIC(CArchiveException, CException)

CArchiveException::CArchiveException(int cause, LPCTSTR archiveName)
    : m_cause(cause), m_strFileName(archiveName)
{
}

BOOL CArchiveException::GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext) const
{
    if (m_cause < none || m_cause > bufferFull)
        return CException::GetErrorMessage(error, maxError, helpContext);
    return vak::detail::CopyFileMessage(error, maxError, helpContext, UINT(IDS_ARCHIVE_NONE + m_cause),
                                        m_strFileName);
}

void AfxThrowArchiveException(int cause, LPCTSTR archiveName)
{
    throw new CArchiveException(cause, archiveName);
}
