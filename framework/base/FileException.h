#pragma once

#include "framework/base/Exception.h"
#include "framework/base/String.h"

/// A file operation failed: why (portable), the operating system's error, and the file.
class VAK_API CFileException : public CException
{
    DECLARE_DYNAMIC(CFileException)

public:
    enum
    {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    explicit CFileException(int cause = none, LONG osError = -1, LPCTSTR fileName = nullptr);

    /// The cause for an error code of the platform (2 is file not found, on every build); genericException
    /// for codes that have none of their own, none for 0.
    static int OsErrorToException(LONG osError);
    /// The cause for a value of the C run-time's errno.
    static int ErrnoToException(int errorNumber);
    [[noreturn]] static void ThrowOsError(LONG osError, LPCTSTR fileName = nullptr);
    [[noreturn]] static void ThrowErrno(int errorNumber, LPCTSTR fileName = nullptr);

    /// A sentence for the cause, with the file's full name or, when it carries none, a word for a nameless
    /// file. A cause outside the enumeration has no message. Whoever wants one of these causes without a
    /// message derives a class and returns 0 here.
    BOOL GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext = nullptr) const override;

    int m_cause;
    /// The platform's error code; -1 when the failure did not come from the system.
    LONG m_lOsError;
    CString m_strFileName;
};

[[noreturn]] VAK_API void AfxThrowFileException(int cause, LONG osError = -1, LPCTSTR fileName = nullptr);

namespace vak::detail {

/// Copies the text `textId` about the file as CException::GetErrorMessage does.
bool CopyFileMessage(LPTSTR error, UINT maxError, PUINT helpContext, UINT textId, const CString& fileName);

} // namespace vak::detail
