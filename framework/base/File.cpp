#include "framework/base/File.h"

#include "framework/base/FileException.h"
#include "framework/base/SystemFile.h"
#include "framework/base/SystemFolder.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CFile, CObject)

const HANDLE CFile::hFileNull = vak::system::kNoFile;

namespace {

[[noreturn]] void ThrowLastError(const CString& path)
{
    CFileException::ThrowOsError(static_cast<LONG>(vak::system::LastFileError()), path);
}

vak::system::OpenOptions OptionsOf(UINT flags)
{
    using Disposition = vak::system::OpenOptions::Disposition;
    vak::system::OpenOptions options;
    const UINT access = flags & (CFile::modeWrite | CFile::modeReadWrite);
    options.read = access != CFile::modeWrite;
    options.write = access != CFile::modeRead;
    const UINT share = flags & 0x70;
    options.shareRead = share == CFile::shareDenyWrite || share == CFile::shareDenyNone;
    options.shareWrite = share == CFile::shareDenyRead || share == CFile::shareDenyNone;
    options.inherit = (flags & CFile::modeNoInherit) == 0;
    options.noBuffer = (flags & CFile::osNoBuffer) != 0;
    options.writeThrough = (flags & CFile::osWriteThrough) != 0;
    options.randomAccess = (flags & CFile::osRandomAccess) != 0;
    options.sequentialScan = (flags & CFile::osSequentialScan) != 0;
    if ((flags & CFile::modeCreate) != 0)
        options.disposition =
            (flags & CFile::modeNoTruncate) != 0 ? Disposition::OpenAlways : Disposition::CreateAlways;
    return options;
}

CString FullPathOf(LPCTSTR path)
{
    CString full;
    return vak::system::FullPath(path, full) ? full : CString(path);
}

/// A time that the file system may hold although it is no moment for CTime becomes CTime().
void Fill(CFileStatus& status, const vak::system::FileEntry& entry)
{
    status.m_ctime = CTime(entry.created);
    status.m_mtime = CTime(entry.written);
    status.m_atime = CTime(entry.accessed);
    status.m_size = entry.size;
    status.m_attribute = static_cast<BYTE>(entry.attributes & ~vak::system::kAttributeNormal);
}

bool FillName(CFileStatus& status, const CString& full)
{
    const bool fits = full.GetLength() < MAX_PATH;
    std::fill(std::begin(status.m_szFullName), std::end(status.m_szFullName), L'\0');
    if (fits)
        std::copy_n(full.GetString(), full.GetLength(), status.m_szFullName);
    return fits;
}

} // namespace

CFile::CFile() : m_hFile(hFileNull), m_bCloseOnDelete(FALSE) {}

CFile::CFile(HANDLE hFile) : m_hFile(hFile), m_bCloseOnDelete(TRUE) {}

CFile::CFile(LPCTSTR lpszFileName, UINT nOpenFlags) : CFile()
{
    CFileException error;
    if (!CFile::Open(lpszFileName, nOpenFlags, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

CFile::~CFile()
{
    if (m_bCloseOnDelete)
        CFile::Abort();
}

ULONGLONG CFile::GetPosition() const
{
    ULONGLONG position = 0;
    if (!vak::system::SeekFile(m_hFile, 0, current, position))
        ThrowLastError(m_strFileName);
    return position;
}

ULONGLONG CFile::GetLength() const
{
    ULONGLONG length = 0;
    if (!vak::system::GetFileLength(m_hFile, length))
        ThrowLastError(m_strFileName);
    return length;
}

CString CFile::GetFileName() const
{
    const CString path = GetFilePath();
    return path.Mid(std::max(path.ReverseFind(L'\\'), path.ReverseFind(L'/')) + 1);
}

CString CFile::GetFileTitle() const
{
    const CString name = GetFileName();
    const int dot = name.ReverseFind(L'.');
    return dot < 0 ? name : name.Left(dot);
}

CString CFile::GetFilePath() const
{
    return m_strFileName;
}

void CFile::SetFilePath(LPCTSTR lpszNewName)
{
    m_strFileName = lpszNewName;
}

BOOL CFile::GetStatus(CFileStatus& rStatus) const
{
    rStatus = CFileStatus();
    if (!FillName(rStatus, m_strFileName))
        return FALSE;
    vak::system::FileEntry entry;
    if (m_hFile != hFileNull && !m_strFileName.IsEmpty()) {
        if (!vak::system::QueryFile(m_strFileName, entry))
            return FALSE;
        Fill(rStatus, entry);
    }
    try {
        // The open file knows its length before the folder does.
        rStatus.m_size = GetLength();
        return TRUE;
    } catch (CException* exception) {
        exception->Delete();
        return FALSE;
    }
}

BOOL CFile::Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError)
{
    CFile::Abort();
    const HANDLE file = vak::system::OpenFile(lpszFileName, OptionsOf(nOpenFlags));
    if (file == hFileNull) {
        const auto error = static_cast<LONG>(vak::system::LastFileError());
        if (pError != nullptr) {
            pError->m_lOsError = error;
            pError->m_cause = CFileException::OsErrorToException(error);
            pError->m_strFileName = lpszFileName;
        }
        return FALSE;
    }
    m_hFile = file;
    m_bCloseOnDelete = TRUE;
    m_strFileName = FullPathOf(lpszFileName);
    return TRUE;
}

ULONGLONG CFile::Seek(LONGLONG lOff, UINT nFrom)
{
    ULONGLONG position = 0;
    if (!vak::system::SeekFile(m_hFile, lOff, nFrom, position))
        ThrowLastError(m_strFileName);
    return position;
}

void CFile::SetLength(ULONGLONG dwNewLen)
{
    if (!vak::system::SetFileLength(m_hFile, dwNewLen))
        ThrowLastError(m_strFileName);
    CFile::Seek(static_cast<LONGLONG>(dwNewLen), begin);
}

UINT CFile::Read(void* lpBuf, UINT nCount)
{
    if (nCount == 0)
        return 0;
    UINT done = 0;
    if (!vak::system::ReadFile(m_hFile, lpBuf, nCount, done))
        ThrowLastError(m_strFileName);
    return done;
}

void CFile::Write(const void* lpBuf, UINT nCount)
{
    if (nCount == 0)
        return;
    UINT done = 0;
    if (!vak::system::WriteFile(m_hFile, lpBuf, nCount, done))
        ThrowLastError(m_strFileName);
    if (done != nCount)
        AfxThrowFileException(CFileException::diskFull, -1, m_strFileName);
}

void CFile::Flush()
{
    if (m_hFile != hFileNull && !vak::system::FlushFile(m_hFile))
        ThrowLastError(m_strFileName);
}

void CFile::Close()
{
    const CString path = m_strFileName;
    const bool closed = m_hFile == hFileNull || vak::system::CloseFile(m_hFile);
    m_hFile = hFileNull;
    m_bCloseOnDelete = FALSE;
    m_strFileName.Empty();
    if (!closed)
        ThrowLastError(path);
}

void CFile::Abort()
{
    if (m_hFile != hFileNull)
        vak::system::CloseFile(m_hFile);
    m_hFile = hFileNull;
    m_bCloseOnDelete = FALSE;
    m_strFileName.Empty();
}

void CFile::Rename(LPCTSTR lpszOldName, LPCTSTR lpszNewName)
{
    if (!vak::system::RenameFile(lpszOldName, lpszNewName))
        ThrowLastError(lpszOldName);
}

void CFile::Remove(LPCTSTR lpszFileName)
{
    if (!vak::system::RemoveFile(lpszFileName))
        ThrowLastError(lpszFileName);
}

BOOL CFile::GetStatus(LPCTSTR lpszFileName, CFileStatus& rStatus)
{
    rStatus = CFileStatus();
    vak::system::FileEntry entry;
    if (!vak::system::QueryFile(lpszFileName, entry) || !FillName(rStatus, FullPathOf(lpszFileName)))
        return FALSE;
    Fill(rStatus, entry);
    return TRUE;
}

void CFile::SetStatus(LPCTSTR lpszFileName, const CFileStatus& status)
{
    const DWORD attributes = vak::system::FileAttributes(lpszFileName);
    if (attributes == vak::system::kInvalidAttributes)
        ThrowLastError(lpszFileName);
    // A read-only file refuses new times, so the attribute is set last or cleared first.
    const DWORD wanted = status.m_attribute == 0 ? vak::system::kAttributeNormal : status.m_attribute;
    if ((attributes & readOnly) != 0 &&
        !vak::system::SetAttributes(lpszFileName, attributes & ~vak::system::kAttributeReadOnly))
        ThrowLastError(lpszFileName);
    const auto timeOf = [](const CTime& time, FILETIME& room) {
        room = vak::detail::FileTimeFromTime(time);
        return time == CTime() ? nullptr : &room;
    };
    FILETIME room[3];
    const FILETIME* const created = timeOf(status.m_ctime, room[0]);
    const FILETIME* const accessed = timeOf(status.m_atime, room[1]);
    const FILETIME* const written = timeOf(status.m_mtime, room[2]);
    bool set = vak::system::SetFileTimes(lpszFileName, created, accessed, written);
    // Where the system keeps no creation time that could be set, the others are set all the same.
    if (!set && vak::system::LastFileError() == vak::system::kErrorNotSupported)
        set = vak::system::SetFileTimes(lpszFileName, nullptr, accessed, written);
    if (!set || !vak::system::SetAttributes(lpszFileName, wanted))
        ThrowLastError(lpszFileName);
}
