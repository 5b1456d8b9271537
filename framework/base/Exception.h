#pragma once

/// The platform's exceptions. They are thrown by pointer, caught by pointer (`catch (CException* e)`), and
/// whoever catches one and does not pass it on gives it back with `e->Delete()`.

#include "framework/base/Object.h"

/// Base of all exceptions. It has no message of its own: a class derived from it that does not override
/// GetErrorMessage has none either.
class VAK_API CException : public CObject
{
    DECLARE_DYNAMIC(CException)

public:
    /// An exception made with `new`, which Delete frees.
    CException() = default;
    /// `autoDelete` 0: an exception on the stack or in static data, which Delete leaves alone.
    explicit CException(BOOL autoDelete) : m_bAutoDelete(autoDelete) {}

    /// Frees the exception if it was made with `new`.
    void Delete();

    /// Copies the message, cut to `maxError` characters with the final zero, and returns non-zero; returns 0
    /// with an empty text when there is none. `helpContext` may be null and receives the help identifier, or
    /// 0.
    virtual BOOL GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext = nullptr) const;

    /// Shows the message in a box and returns the button. Without a message the text `messageId` is shown,
    /// and for 0 a sentence that says there is none.
    virtual int ReportError(UINT type = MB_OK, UINT messageId = 0);

    BOOL m_bAutoDelete = TRUE;
};

/// An exception whose message is one fixed text of the library.
class VAK_API CSimpleException : public CException
{
    DECLARE_DYNAMIC(CSimpleException)

public:
    BOOL GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext = nullptr) const override;

protected:
    CSimpleException(BOOL autoDelete, UINT textId) : CException(autoDelete), m_textId(textId) {}

private:
    UINT m_textId;
};

/// Out of memory.
class VAK_API CMemoryException : public CSimpleException
{
    DECLARE_DYNAMIC(CMemoryException)

public:
    explicit CMemoryException(BOOL autoDelete = TRUE);
};

/// An operation that the object does not offer.
class VAK_API CNotSupportedException : public CSimpleException
{
    DECLARE_DYNAMIC(CNotSupportedException)

public:
    explicit CNotSupportedException(BOOL autoDelete = TRUE);
};

/// A resource that could not be found or created.
class VAK_API CResourceException : public CSimpleException
{
    DECLARE_DYNAMIC(CResourceException)

public:
    explicit CResourceException(BOOL autoDelete = TRUE);
};

/// The user stopped the operation, or has already been told why it stopped: nothing more is shown.
class VAK_API CUserException : public CSimpleException
{
    DECLARE_DYNAMIC(CUserException)

public:
    explicit CUserException(BOOL autoDelete = TRUE);
};

/// An argument that the operation does not take.
class VAK_API CInvalidArgException : public CSimpleException
{
    DECLARE_DYNAMIC(CInvalidArgException)

public:
    explicit CInvalidArgException(BOOL autoDelete = TRUE);
};

/// Each throws its class. None of them allocates: the object thrown is static and Delete leaves it alone.
[[noreturn]] VAK_API void AfxThrowMemoryException();
[[noreturn]] VAK_API void AfxThrowNotSupportedException();
[[noreturn]] VAK_API void AfxThrowResourceException();
[[noreturn]] VAK_API void AfxThrowUserException();
[[noreturn]] VAK_API void AfxThrowInvalidArgException();

namespace vak::detail {

/// Copies `text`, cut to `maxError` characters with the final zero; false when there is no room for the zero.
bool CopyMessage(LPTSTR error, UINT maxError, LPCTSTR text);

} // namespace vak::detail
