#pragma once

#include "framework/base/Exception.h"
#include "framework/base/String.h"

/// An archive was used in the wrong direction, or what it reads is not what was written.
class VAK_API CArchiveException : public CException
{
    DECLARE_DYNAMIC(CArchiveException)

public:
    enum
    {
        none,
        genericException,
        /// Written to while open for loading.
        readOnly,
        /// The file ends before the value does.
        endOfFile,
        /// Read from while open for storing.
        writeOnly,
        /// A reference to an object or class that was not written before, or a length that cannot be.
        badIndex,
        /// An object of a class that is unknown or not the one asked for.
        badClass,
        /// An object of a schema that its class does not read.
        badSchema,
        /// A caller's buffer is full.
        bufferFull
    };

    explicit CArchiveException(int cause = none, LPCTSTR archiveName = nullptr);

    /// A sentence for the cause, with the archive's name; a cause outside the enumeration has none.
    BOOL GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext = nullptr) const override;

    int m_cause;
    CString m_strFileName;
};

[[noreturn]] VAK_API void AfxThrowArchiveException(int cause, LPCTSTR archiveName = nullptr);
