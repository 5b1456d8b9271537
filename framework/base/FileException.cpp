#include "framework/base/FileException.h"

#include "framework/base/StringTable.h"
#include "resources/Ids.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

IMPLEMENT_DYNAMIC(CFileException, CException)

namespace {

struct OsCause
{
    LONG osError;
    int cause;
};

/// The platform's error codes by number, sorted: natively they have no names.
constexpr OsCause kOsCauses[] = {
    {0, CFileException::none},
    {2, CFileException::fileNotFound},      // no such file
    {3, CFileException::badPath},           // no such path
    {4, CFileException::tooManyOpenFiles},  // out of handles
    {5, CFileException::accessDenied},      // access denied
    {6, CFileException::invalidFile},       // invalid handle
    {11, CFileException::invalidFile},      // bad format
    {12, CFileException::accessDenied},     // invalid access code
    {15, CFileException::badPath},          // no such drive
    {16, CFileException::removeCurrentDir}, // the current folder
    {17, CFileException::badPath},          // another volume
    {18, CFileException::fileNotFound},     // no more files
    {19, CFileException::accessDenied},     // write-protected
    {20, CFileException::hardIO},           // no such device
    {21, CFileException::hardIO},           // device not ready
    {22, CFileException::hardIO},           // command not known to the device
    {23, CFileException::hardIO},           // checksum
    {24, CFileException::badSeek},          // length of a request
    {25, CFileException::badSeek},          // track not found
    {26, CFileException::invalidFile},      // unknown medium
    {27, CFileException::badSeek},          // sector not found
    {29, CFileException::hardIO},           // write fault
    {30, CFileException::hardIO},           // read fault
    {32, CFileException::sharingViolation}, // used by another
    {33, CFileException::lockViolation},    // locked by another
    {34, CFileException::badPath},          // wrong disk
    {36, CFileException::tooManyOpenFiles}, // sharing buffers
    {38, CFileException::endOfFile},        // end of file
    {39, CFileException::diskFull},         // disk full
    {53, CFileException::badPath},          // network path
    {65, CFileException::accessDenied},     // network access
    {67, CFileException::badPath},          // network name
    {80, CFileException::accessDenied},     // the file exists
    {82, CFileException::accessDenied},     // cannot be created
    {108, CFileException::accessDenied},    // drive locked
    {111, CFileException::badPath},         // name too long for a buffer
    {112, CFileException::diskFull},        // disk full
    {123, CFileException::badPath},         // malformed name
    {130, CFileException::invalidFile},     // raw access only
    {131, CFileException::badSeek},         // before the beginning
    {132, CFileException::badSeek},         // device without positions
    {145, CFileException::badPath},         // folder not empty
    {148, CFileException::badPath},         // path busy
    {158, CFileException::lockViolation},   // not locked
    {161, CFileException::badPath},         // bad path name
    {167, CFileException::lockViolation},   // lock failed
    {183, CFileException::accessDenied},    // exists already
    {206, CFileException::badPath},         // name too long
    {223, CFileException::diskFull},        // larger than the volume allows
    {267, CFileException::badPath},         // not a folder
    {1006, CFileException::invalidFile},    // the volume changed under the handle
    {1117, CFileException::hardIO},         // device error
    {1224, CFileException::lockViolation},  // mapped by another
    {1295, CFileException::diskFull},       // quota
    {1392, CFileException::hardIO},         // damaged folder
    {1393, CFileException::hardIO},         // damaged disk
};

} // namespace

CFileException::CFileException(int cause, LONG osError, LPCTSTR fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(fileName)
{
}

int CFileException::OsErrorToException(LONG osError)
{
    const auto* found = std::ranges::lower_bound(kOsCauses, osError, {}, &OsCause::osError);
    return found != std::end(kOsCauses) && found->osError == osError ? found->cause : int(genericException);
}

int CFileException::ErrnoToException(int errorNumber)
{
    switch (errorNumber) {
    case 0:
        return none;
    case ENOENT:
        return fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
        return badPath;
    case EMFILE:
    case ENFILE:
        return tooManyOpenFiles;
    case EPERM:
    case EACCES:
    case EROFS:
    case EEXIST:
    case EISDIR:
        return accessDenied;
    case EBADF:
        return invalidFile;
    case EINVAL:
    case ESPIPE:
        return badSeek;
    case EIO:
        return hardIO;
    case EDEADLK:
        return sharingViolation;
    case ENOSPC:
    case EFBIG:
        return diskFull;
    default:
        return genericException;
    }
}

void CFileException::ThrowOsError(LONG osError, LPCTSTR fileName)
{
    AfxThrowFileException(OsErrorToException(osError), osError, fileName);
}

void CFileException::ThrowErrno(int errorNumber, LPCTSTR fileName)
{
    AfxThrowFileException(ErrnoToException(errorNumber), errorNumber, fileName);
}

BOOL CFileException::GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext) const
{
    if (m_cause < none || m_cause > endOfFile)
        return CException::GetErrorMessage(error, maxError, helpContext);
    return vak::detail::CopyFileMessage(error, maxError, helpContext, UINT(IDS_FILE_NONE + m_cause),
                                        m_strFileName);
}

void AfxThrowFileException(int cause, LONG osError, LPCTSTR fileName)
{
    throw new CFileException(cause, osError, fileName);
}

namespace vak::detail {

bool CopyFileMessage(LPTSTR error, UINT maxError, PUINT helpContext, UINT textId, const CString& fileName)
{
    CString name = fileName;
    if (name.IsEmpty())
        LoadText(name, IDS_NAMELESS_FILE);
    CString message;
    AfxFormatString1(message, textId, name);
    if (helpContext != nullptr)
        *helpContext = textId;
    return CopyMessage(error, maxError, message);
}

} // namespace vak::detail
