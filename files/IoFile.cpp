#include "files/IoFile.h"

#include "files/FileInfo.h"
#include "framework/base/Application.h"
#include "framework/base/FileException.h"

#include <algorithm>
#include <climits>
#include <new>
#include <vector>

namespace {

constexpr LONG kNoSystemError = -1;

bool HasMainWindow()
{
    return AfxGetApp() != nullptr && AfxGetMainWnd() != nullptr;
}

void Reverse(BYTE* bytes, size_t size)
{
    std::reverse(bytes, bytes + size);
}

void ReverseElements(BYTE* bytes, unsigned int count, unsigned int size)
{
    for (unsigned int i = 0; size > 1 && i < count; ++i)
        Reverse(bytes + static_cast<size_t>(i) * size, size);
}

} // namespace

IoFile::IoFile() = default;

IoFile::IoFile(int silent, unsigned int flags) : m_flags(silent != 0 ? flags | kSilent : flags) {}

IoFile::IoFile(unsigned int flags) : m_flags(flags) {}

IoFile::~IoFile()
{
    DeleteFiles();
    FindFileClose();
}

void IoFile::Init(unsigned int flags)
{
    m_cursor.Return();
    m_flags = flags;
    m_finder = nullptr;
    m_textFile = nullptr;
    m_memFile = nullptr;
    m_file = nullptr;
    m_waiting = false;
}

CString IoFile::GetFilePath() const
{
    return CFileInfo(m_fileName, FILEINFO_FILE).GetPath();
}

CString IoFile::GetName() const
{
    return CFileInfo(m_fileName, FILEINFO_FILE).GetName();
}

int IoFile::OpenFile(const CString& path, int reading)
{
    if (m_file != nullptr)
        CloseFile();
    m_fileName = path;
    UINT mode = IsBinaryMode() ? CFile::typeBinary : CFile::typeText;
    if (reading != 0) {
        m_flags |= kReading;
        mode |= CFile::modeRead | CFile::shareDenyWrite;
    } else {
        m_flags &= ~kReading;
        mode |= CFile::modeCreate | CFile::modeReadWrite | CFile::shareExclusive;
    }
    try {
        m_textFile = new CStdioFileEx;
        m_file = m_textFile;
        CFileException failure;
        if (!m_textFile->Open(m_fileName, mode, &failure))
            return OpenFailed(failure);
        if (reading != 0 && (m_flags & kMemory) != 0)
            LoadIntoMemory();
    } catch (CException* failure) {
        OpenFailed(*failure);
        failure->Delete();
        return 0;
    } catch (const std::bad_alloc&) {
        CMemoryException failure(FALSE);
        return OpenFailed(failure);
    }
    if (HasMainWindow() && (m_flags & kSilent) == 0) {
        AfxGetApp()->BeginWaitCursor();
        m_waiting = true;
    }
    return 1;
}

/// Leaves nothing open, tells the user, and is OpenFile's result.
int IoFile::OpenFailed(CException& failure)
{
    DeleteFiles();
    ReportError(&failure);
    return 0;
}

void IoFile::LoadIntoMemory()
{
    const ULONGLONG length = m_textFile->GetLength();
    if (length > kMemoryLimit) {
        m_flags &= ~kMemory;
        return;
    }
    m_memFile = new CCustomMemFile;
    const auto size = static_cast<UINT>(length);
    BYTE* buffer = m_memFile->Alloc(size == 0 ? 1 : size);
    if (buffer == nullptr)
        AfxThrowMemoryException();
    m_memFile->Adopt(buffer, size);
    // In text mode, or from a file that has just been cut, there are fewer bytes than the length says.
    const UINT read = m_textFile->Read(buffer, size);
    if (read < size)
        m_memFile->Adopt(buffer, read);
    // Lines are read from the text file, beginning with the first.
    m_textFile->SeekToBegin();
    m_file = m_memFile;
    m_memFile->Lend(m_cursor);
}

void IoFile::CloseFile()
{
    // Only what OpenFile began is ended: the host's own wait cursor counts in the same place.
    if (m_waiting && HasMainWindow() && (m_flags & kSilent) == 0)
        AfxGetApp()->EndWaitCursor();
    m_waiting = false;
    if ((m_flags & kMemory) != 0 && m_memFile != nullptr) {
        const auto length = static_cast<UINT>(m_memFile->GetLength());
        BYTE* buffer = m_memFile->Detach();
        try {
            if (IsWriting() && m_textFile != nullptr && buffer != nullptr)
                m_textFile->Write(buffer, length);
        } catch (CException* failure) {
            failure->Delete();
        }
        m_memFile->Free(buffer);
    }
    DeleteFiles();
}

void IoFile::CloseAndDeleteFile()
{
    CloseFile();
    try {
        CFile::Remove(m_fileName);
    } catch (CException* failure) {
        failure->Delete();
    }
}

void IoFile::DeleteFiles()
{
    delete m_textFile;
    ReleaseMemory();
    m_textFile = nullptr;
    m_file = nullptr;
}

void IoFile::ReleaseMemory()
{
    if (m_memFile == nullptr)
        return;
    if (BYTE* buffer = m_memFile->Detach())
        m_memFile->Free(buffer);
    delete m_memFile;
    m_memFile = nullptr;
}

void IoFile::Flush()
{
    if (IsWriting() && m_file != nullptr)
        m_file->Flush();
}

int IoFile::EndOfFile() const
{
    if ((m_flags & kStrictReads) != 0)
        AfxThrowFileException(CFileException::endOfFile, kNoSystemError);
    return 0;
}

/// Reads by the cursor again, after the memory file has taken the position back.
void IoFile::LendAgain()
{
    if (m_memFile != nullptr && m_file == m_memFile)
        m_memFile->Lend(m_cursor);
}

int IoFile::ReadFromFile(void* buffer, unsigned int size)
{
    if (m_file == nullptr)
        return EndOfFile();
    const UINT read = m_file->Read(buffer, size);
    LendAgain();
    return read == size ? 1 : EndOfFile();
}

int IoFile::FileReverseRead(void* buffer, unsigned int size)
{
    return FileReverseRead(buffer, 1, size);
}

int IoFile::FileReverseRead(void* buffer, unsigned int count, unsigned int size)
{
    const ULONGLONG bytes = static_cast<ULONGLONG>(count) * size;
    // No file read can give that much at once.
    if (bytes > UINT_MAX)
        return EndOfFile();
    if (FileRead(buffer, static_cast<unsigned int>(bytes)) == 0)
        return 0;
    ReverseElements(static_cast<BYTE*>(buffer), count, size);
    return 1;
}

/// The current file of an operation that cannot do without; throws CFileException* when nothing is open.
CFile& IoFile::OpenedFile() const
{
    if (m_file == nullptr)
        AfxThrowFileException(CFileException::invalidFile, kNoSystemError, m_fileName);
    return *m_file;
}

void IoFile::FileWrite(const void* buffer, unsigned int size)
{
    OpenedFile().Write(buffer, size);
}

void IoFile::FileReverseWrite(const void* buffer, unsigned int size)
{
    FileReverseWrite(buffer, 1, size);
}

void IoFile::FileReverseWrite(const void* buffer, unsigned int count, unsigned int size)
{
    const ULONGLONG bytes = static_cast<ULONGLONG>(count) * size;
    if (bytes > UINT_MAX)
        AfxThrowMemoryException();
    if (bytes == 0)
        return;
    const auto* from = static_cast<const BYTE*>(buffer);
    std::vector<BYTE> scratch(from, from + bytes);
    ReverseElements(scratch.data(), count, size);
    FileWrite(scratch.data(), static_cast<unsigned int>(bytes));
}

void IoFile::WriteInt(int value)
{
    FileWrite(&value, sizeof value);
}

void IoFile::WriteUInt(unsigned int value)
{
    FileWrite(&value, sizeof value);
}

void IoFile::WriteLong(LONG value)
{
    FileWrite(&value, sizeof value);
}

void IoFile::WriteULong(ULONG value)
{
    FileWrite(&value, sizeof value);
}

void IoFile::WriteFloat(float value)
{
    FileWrite(&value, sizeof value);
}

void IoFile::WriteShort(short value)
{
    FileWrite(&value, sizeof value);
}

void IoFile::WriteUShort(unsigned short value)
{
    FileWrite(&value, sizeof value);
}

void IoFile::WriteChar(char value)
{
    FileWrite(&value, sizeof value);
}

void IoFile::WriteUChar(unsigned char value)
{
    FileWrite(&value, sizeof value);
}

int IoFile::ReadString(CString& line)
{
    return m_textFile != nullptr && m_textFile->ReadString(line) ? 1 : EndOfFile();
}

void IoFile::WriteString(const wchar_t* text)
{
    OpenedFile();
    m_textFile->WriteString(text);
}

int IoFile::CheckCarriageReturn()
{
    return m_textFile == nullptr ? 0 : m_textFile->CheckCarriageReturn();
}

int IoFile::FileSeek(ULONGLONG position, unsigned int from)
{
    Flush();
    if (m_file != nullptr)
        m_file->Seek(static_cast<LONGLONG>(position), from);
    LendAgain();
    return 1;
}

ULONGLONG IoFile::FileGetPosition()
{
    Flush();
    return m_file == nullptr ? 0 : m_file->GetPosition();
}

ULONGLONG IoFile::FileGetLength()
{
    Flush();
    return m_file == nullptr ? 0 : m_file->GetLength();
}

void ReverseBuffer(void* buffer, int size)
{
    if (size > 1)
        Reverse(static_cast<BYTE*>(buffer), static_cast<size_t>(size));
}
