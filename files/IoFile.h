#pragma once

#include "files/CustomMemFile.h"
#include "files/StdioFileEx.h"
#include "framework/base/FileFind.h"
#include "framework/base/Platform.h"
#include "framework/base/String.h"

#include <cstdio>
#include <cstring>

class CException;

/// The object through which files are opened, read, written and searched, from the disk or from a copy in
/// memory, in either byte order, with or without messages to the user.
///
/// Copies are shallow: they refer to the same open files and the same search, and each destructor deletes
/// them. Exactly one of the copies may close, open again or be destroyed with them; every other one must
/// forget them first, with Init. An object belongs to one thread at a time. Sizes and positions are bytes.
class VAK_API IoFile
{
public:
    enum Flags : unsigned int
    {
        kSilent = 0x1,      ///< no messages, no wait cursor
        kMemory = 0x2,      ///< read from a copy in memory, up to kMemoryLimit bytes
        kStrictReads = 0x4, ///< a short read throws CFileException*, endOfFile
        kText = 0x8,        ///< the platform's text mode
        kReading = 0x10     ///< open for reading; kept by OpenFile
    };
    /// Longer files are read from the disk, and lose kMemory.
    static constexpr ULONGLONG kMemoryLimit = 102400000;

    IoFile(); ///< silent
    IoFile(int silent, unsigned int flags);
    explicit IoFile(unsigned int flags);
    IoFile(const IoFile&) = default;
    IoFile& operator=(const IoFile&) = default;
    ~IoFile();

    /// Replaces the flags and forgets, without closing, whatever is open or being searched.
    void Init(unsigned int flags);

    int IsWriting() const { return (m_flags & kReading) == 0; }
    int IsBinaryMode() const { return (m_flags & kText) == 0; }
    /// The file that reads, writes and seeks go to; null while closed, as are the next three.
    CFile* GetCFile() const { return m_file; }
    CStdioFileEx* GetTextFile() const { return m_textFile; }
    std::FILE* GetFileStream() const { return m_textFile == nullptr ? nullptr : m_textFile->m_pStream; }
    CFileFind* GetFileFinder() const { return m_finder; }
    /// The full path given to OpenFile, its folder, and its name with the extension.
    CString GetFileName() const { return m_fileName; }
    CString GetFilePath() const;
    CString GetName() const;

    /// Opens the file, for reading or (creating it or emptying the one that is there) for writing and
    /// reading. Returns 0 after a failure, which has been reported unless the object is silent; nothing is
    /// open then. A file that is still open is closed first.
    int OpenFile(const CString& path, int reading);
    /// Closes the file; failures are ignored.
    void CloseFile();
    /// Closes the file and deletes it from the disk, if it can be deleted.
    void CloseAndDeleteFile();
    /// Lets go of the open files without ending the wait cursor.
    void DeleteFiles();
    /// Hands what was written to the disk.
    void Flush();

    /// Reads exactly `size` bytes and returns 1; otherwise returns 0, or throws with kStrictReads.
    int FileRead(void* buffer, unsigned int size)
    {
        if (m_cursor.Has(size)) {
            CopyValue(buffer, m_cursor.Pass(size), size);
            return 1;
        }
        return ReadFromFile(buffer, size);
    }
    /// The same, then reverses the order of all bytes.
    int FileReverseRead(void* buffer, unsigned int size);
    /// The same for `count` elements, each reversed in its place. After a short read nothing is reversed.
    int FileReverseRead(void* buffer, unsigned int count, unsigned int size);
    /// Writes `size` bytes; throws CFileException*. The reversing ones leave the buffer as it is.
    void FileWrite(const void* buffer, unsigned int size);
    void FileReverseWrite(const void* buffer, unsigned int size);
    void FileReverseWrite(const void* buffer, unsigned int count, unsigned int size);

    /// Little-endian values of 4, 4, 4, 4, 4, 2, 2, 1 and 1 bytes.
    void WriteInt(int value);
    void WriteUInt(unsigned int value);
    void WriteLong(LONG value);
    void WriteULong(ULONG value);
    void WriteFloat(float value);
    void WriteShort(short value);
    void WriteUShort(unsigned short value);
    void WriteChar(char value);
    void WriteUChar(unsigned char value);

    /// Reads one line of the text file, whose position is its own in memory mode. Returns 0 at the end of the
    /// file, or throws with kStrictReads.
    int ReadString(CString& line);
    void WriteString(const wchar_t* text);
    int CheckCarriageReturn();

    /// Moves to `position` bytes from `from` (CFile::begin, current, end); always 1.
    int FileSeek(ULONGLONG position, unsigned int from);
    /// 0 while closed.
    ULONGLONG FileGetPosition();
    ULONGLONG FileGetLength();

    /// Searches for "folder\name*.ext": `pattern` gives folder, name and, if it has one, the extension; else
    /// that of `extension` (a file specification such as "*.obj"; empty: "*.*") is searched for and becomes
    /// the wanted one. Returns non-zero when an entry may follow.
    int FindFileOpen(const CString& pattern, const CString& extension);
    /// Gives the next entry, "." and ".." left out, and returns 1, or 0 after the last. `found` is its full
    /// path (a folder's ends in a backslash) or, with `namesOnly`, its bare name. `matched` is 1 when its
    /// extension is the wanted one, in any case; entries that do not match are given all the same.
    int FindFileNext(CString& found, int& matched, int namesOnly);
    void FindFileClose();

    /// Shows why an operation on this file failed, unless the object is silent or the user knows already. The
    /// exception stays the caller's; one of a file without a name is given this file's.
    void ReportError(CException* exception);

protected:
    // The order of these members is part of the interface.
    unsigned int m_flags = kSilent;
    CStdioFileEx* m_textFile = nullptr;  ///< owned; also the disk file
    CCustomMemFile* m_memFile = nullptr; ///< owned; present only while a file is read from memory
    CFile* m_file = nullptr;             ///< one of the two above
    CString m_fileName;
    CFileFind* m_finder = nullptr; ///< owned
    int m_searchMore = 0;
    CString m_wantedExtension;

private:
    /// The usual sizes written out, so that each becomes one load and one store.
    static void CopyValue(void* to, const BYTE* from, unsigned int size)
    {
        switch (size) {
        case 1:
            std::memcpy(to, from, 1);
            return;
        case 2:
            std::memcpy(to, from, 2);
            return;
        case 4:
            std::memcpy(to, from, 4);
            return;
        case 8:
            std::memcpy(to, from, 8);
            return;
        case 0:
            return;
        default:
            std::memcpy(to, from, size);
        }
    }
    int ReadFromFile(void* buffer, unsigned int size);
    void LendAgain();
    int EndOfFile() const;
    int OpenFailed(CException& failure);
    void LoadIntoMemory();
    void ReleaseMemory();
    CFile& OpenedFile() const;

    bool m_waiting = false; ///< the wait cursor has begun for this file
    /// Reads in place of the memory file. A copy of this object begins without; the memory file sees to it
    /// that all who read share one position.
    CCustomMemFile::Cursor m_cursor;
};

/// Reverses the order of `size` bytes in place; sizes below 2 leave them as they are.
VAK_API void ReverseBuffer(void* buffer, int size);
