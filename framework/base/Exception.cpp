#include "framework/base/Exception.h"

#include "framework/base/Application.h"
#include "framework/base/StringTable.h"
#include "resources/Ids.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CSimpleException, CException)
IMPLEMENT_DYNAMIC(CMemoryException, CSimpleException)
IMPLEMENT_DYNAMIC(CNotSupportedException, CSimpleException)
IMPLEMENT_DYNAMIC(CResourceException, CSimpleException)
IMPLEMENT_DYNAMIC(CUserException, CSimpleException)
IMPLEMENT_DYNAMIC(CInvalidArgException, CSimpleException)

namespace vak::detail {

bool CopyMessage(LPTSTR error, UINT maxError, LPCTSTR text)
{
    if (error == nullptr || maxError == 0)
        return false;
    UINT length = 0;
    while (length + 1 < maxError && text[length] != 0)
        ++length;
    std::copy_n(text, length, error);
    error[length] = 0;
    return true;
}

} // namespace vak::detail

void CException::Delete()
{
    if (m_bAutoDelete)
        delete this;
}

BOOL CException::GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext) const
{
    if (helpContext != nullptr)
        *helpContext = 0;
    vak::detail::CopyMessage(error, maxError, L"");
    return FALSE;
}

int CException::ReportError(UINT type, UINT messageId)
{
    wchar_t message[512];
    UINT help = 0;
    if (GetErrorMessage(message, UINT(std::size(message)), &help))
        return AfxMessageBox(message, type, help);
    return AfxMessageBox(messageId != 0 ? messageId : UINT(IDS_NO_ERROR_MESSAGE), type, help);
}

BOOL CSimpleException::GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext) const
{
    CString text;
    if (!vak::LoadText(text, m_textId))
        return CException::GetErrorMessage(error, maxError, helpContext);
    if (helpContext != nullptr)
        *helpContext = 0;
    return vak::detail::CopyMessage(error, maxError, text);
}

CMemoryException::CMemoryException(BOOL autoDelete) : CSimpleException(autoDelete, IDS_OUT_OF_MEMORY) {}
CNotSupportedException::CNotSupportedException(BOOL autoDelete)
    : CSimpleException(autoDelete, IDS_NOT_SUPPORTED)
{
}
CResourceException::CResourceException(BOOL autoDelete)
    : CSimpleException(autoDelete, IDS_RESOURCE_UNAVAILABLE)
{
}
CUserException::CUserException(BOOL autoDelete) : CSimpleException(autoDelete, IDS_STOPPED_BY_USER) {}
CInvalidArgException::CInvalidArgException(BOOL autoDelete)
    : CSimpleException(autoDelete, IDS_INVALID_ARGUMENT)
{
}

namespace {

/// The one object of its kind that is thrown where nothing may be allocated. It is never destroyed, so that
/// it can still be thrown while static objects go.
template <class Thrown>
Thrown* Static()
{
    alignas(Thrown) static unsigned char place[sizeof(Thrown)];
    static auto* const thrown = new (place) Thrown(FALSE);
    return thrown;
}

} // namespace

void AfxThrowMemoryException()
{
    throw Static<CMemoryException>();
}

void AfxThrowNotSupportedException()
{
    throw Static<CNotSupportedException>();
}

void AfxThrowResourceException()
{
    throw Static<CResourceException>();
}

void AfxThrowUserException()
{
    throw Static<CUserException>();
}

void AfxThrowInvalidArgException()
{
    throw Static<CInvalidArgException>();
}
