#include "files/ZipException.h"

#include "framework/base/StringTable.h"
#include "framework/base/SystemMessage.h"
#include "resources/Ids.h"

IMPLEMENT_DYNAMIC(CZipException, CException)

CZipException::CZipException(int cause, LPCTSTR archive, LPCTSTR entry, LONG osError)
    : m_cause(cause), m_lOsError(osError), m_archive(archive), m_entry(entry)
{
}

BOOL CZipException::GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext) const
{
    if (m_cause < noError || m_cause > lastCause)
        return CException::GetErrorMessage(error, maxError, helpContext);
    const UINT textId = UINT(IDS_ZIP_NONE + m_cause);
    CString message;
    AfxFormatString2(message, textId, m_archive, m_entry);
    if (m_lOsError != 0)
        message += L" " + vak::system::ErrorText(static_cast<DWORD>(m_lOsError));
    if (helpContext != nullptr)
        *helpContext = textId;
    return vak::detail::CopyMessage(error, maxError, message);
}

namespace vak::detail {

void ThrowZip(int cause, LPCTSTR archive, LPCTSTR entry, LONG osError)
{
    throw new CZipException(cause, archive, entry, osError);
}

} // namespace vak::detail
