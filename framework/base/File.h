#pragma once

#include "framework/base/Object.h"
#include "framework/base/String.h"
#include "framework/base/Time.h"

class CFileException;

/// What the system knows of a file. Times that it does not know are CTime().
struct CFileStatus
{
    CTime m_ctime; ///< creation
    CTime m_mtime; ///< last write
    CTime m_atime; ///< last access
    ULONGLONG m_size = 0;
    BYTE m_attribute = 0; ///< CFile::Attribute bits
    TCHAR m_szFullName[MAX_PATH] = {};
};

/// An unbuffered binary file, and the base of every other file class.
///
/// The object owns its handle: closing or destroying it closes the file. It belongs to one thread at a time.
/// Sizes and positions are bytes. Failures are thrown as CFileException*, deleted by the catcher; only Open
/// returns FALSE and fills an exception that the caller supplies. Cannot be copied.
class VAK_API CFile : public CObject
{
    DECLARE_DYNAMIC(CFile)

public:
    enum OpenFlags
    {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000, ///< as shareExclusive
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,     ///< creates the file, or empties the one that is there
        modeNoTruncate = 0x2000, ///< with modeCreate: leaves the contents of one that is there
        typeText = 0x4000,       ///< for derived classes
        typeBinary = 0x8000,     ///< for derived classes
        osNoBuffer = 0x10000,
        osWriteThrough = 0x20000,
        osRandomAccess = 0x40000,
        osSequentialScan = 0x80000
    };

    enum Attribute
    {
        normal = 0x00,
        readOnly = 0x01,
        hidden = 0x02,
        system = 0x04,
        volume = 0x08,
        directory = 0x10,
        archive = 0x20
    };

    enum SeekPosition
    {
        begin = 0,
        current = 1,
        end = 2
    };

    /// The value of m_hFile while no file is open.
    static const HANDLE hFileNull;

    CFile();
    /// Takes over an open handle.
    explicit CFile(HANDLE hFile);
    /// Opens the file; throws CFileException* when that fails.
    CFile(LPCTSTR lpszFileName, UINT nOpenFlags);
    ~CFile() override;

    operator HANDLE() const { return m_hFile; }

    virtual ULONGLONG GetPosition() const;
    virtual ULONGLONG GetLength() const;
    /// The name and extension, the name alone, and the full path; empty without a path.
    virtual CString GetFileName() const;
    virtual CString GetFileTitle() const;
    virtual CString GetFilePath() const;
    /// Renames the object, not the file.
    virtual void SetFilePath(LPCTSTR lpszNewName);
    /// Fills `rStatus` for the open file; FALSE when the system does not answer or the path does not fit.
    BOOL GetStatus(CFileStatus& rStatus) const;

    /// Opens the file, closed before. Returns FALSE on failure with nothing open; `pError`, when given, then
    /// says why.
    virtual BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr);
    /// Moves to `lOff` bytes from `nFrom` and returns the new position; one past the end is allowed, one
    /// before the beginning is thrown as badSeek.
    virtual ULONGLONG Seek(LONGLONG lOff, UINT nFrom);
    ULONGLONG SeekToEnd() { return Seek(0, CFile::end); }
    void SeekToBegin() { Seek(0, CFile::begin); }
    /// Cuts or extends the file (with zeros) and moves to its new end.
    virtual void SetLength(ULONGLONG dwNewLen);
    /// Reads up to `nCount` bytes and returns how many; fewer only at the end of the file.
    virtual UINT Read(void* lpBuf, UINT nCount);
    /// Writes all `nCount` bytes, or throws (diskFull when the system took only a part).
    virtual void Write(const void* lpBuf, UINT nCount);
    /// Hands what was written to the disk.
    virtual void Flush();
    /// Closes the file, if one is open. It is closed also when this throws.
    virtual void Close();
    /// Closes the file and ignores failures.
    virtual void Abort();

    /// Renames or moves a file within its volume; throws CFileException*.
    static void Rename(LPCTSTR lpszOldName, LPCTSTR lpszNewName);
    /// Deletes a file; throws CFileException*.
    static void Remove(LPCTSTR lpszFileName);
    /// Fills `rStatus`; FALSE when there is no such file or folder, or its full path does not fit.
    static BOOL GetStatus(LPCTSTR lpszFileName, CFileStatus& rStatus);
    /// Sets attributes and the times that are not CTime(); throws CFileException*.
    static void SetStatus(LPCTSTR lpszFileName, const CFileStatus& status);

    /// The system's handle; hFileNull while closed.
    HANDLE m_hFile;

protected:
    BOOL m_bCloseOnDelete; ///< the destructor closes the handle
    CString m_strFileName; ///< full path
};
