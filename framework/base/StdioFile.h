#pragma once

#include "framework/base/File.h"

#include <cstddef>
#include <cstdio>
#include <memory>

namespace vak::system {
struct StreamBytes;
}

/// A buffered file over a standard C stream, in text or in binary mode (CFile::typeText, CFile::typeBinary,
/// the default).
///
/// In text mode reading turns CR LF into LF and ends at the character Ctrl-Z (0x1A), writing turns LF into CR
/// LF, and wide text is converted from and to the ANSI code page. In binary mode bytes pass as they are and
/// wide text is UTF-16, little-endian. The class translates by itself, so that both builds do the same: the
/// stream beneath is binary in either mode. It reads from that stream's own buffer and keeps none of its own,
/// so that positions of object and stream always agree. Positions and lengths are bytes of the file,
/// untranslated.
class VAK_API CStdioFile : public CFile
{
    DECLARE_DYNAMIC(CStdioFile)

public:
    CStdioFile();
    /// Opens the file; throws CFileException* when that fails.
    CStdioFile(LPCTSTR lpszFileName, UINT nOpenFlags);
    ~CStdioFile() override;

    ULONGLONG GetPosition() const override;
    /// The bytes of the file, those still in the buffer included.
    ULONGLONG GetLength() const override;

    BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr) override;
    ULONGLONG Seek(LONGLONG lOff, UINT nFrom) override;
    void SetLength(ULONGLONG dwNewLen) override;
    UINT Read(void* lpBuf, UINT nCount) override;
    void Write(const void* lpBuf, UINT nCount) override;
    void Flush() override;
    void Close() override;
    void Abort() override;

    /// Reads up to `nMax` - 1 characters, ending after a line feed, which is kept, and terminates them.
    /// Returns `lpsz`, or null when there was nothing left to read.
    virtual LPTSTR ReadString(LPTSTR lpsz, UINT nMax);
    /// Reads one line without its line feed. Returns FALSE, with an empty string, only when nothing was left.
    virtual BOOL ReadString(CString& rString);
    /// Writes the text without its terminator; line ends are the caller's.
    virtual void WriteString(LPCTSTR lpsz);

    /// The stream beneath, null while closed. Always binary.
    FILE* m_pStream;

protected:
    /// One line of bytes, without its line feed; `ended` says whether there was one. `text` is not terminated
    /// and is valid until the next operation on the file.
    struct ByteLine
    {
        const char* text;
        size_t length;
        bool ended;
    };

    /// Reads at most `maximum` bytes (counted after translation) up to and including a line feed. The line is
    /// a view of the stream's buffer where it can be, else of `scratch`, which holds at least `maximum`
    /// bytes. Returns false when nothing was left.
    bool ReadByteLine(char* scratch, size_t maximum, ByteLine& line);

    /// Reads one line in `codePage` (1200: UTF-16), without its line feed and up to `returns` carriage
    /// returns in front of it, where that takes only one look at the stream's buffer. Otherwise returns false
    /// and leaves line and position as they were: then the line has to be read by one of the other ways.
    bool ReadShortLine(UINT codePage, int returns, CString& line);

private:
    [[noreturn]] void ThrowStreamError() const;
    void RequireStream() const;
    void BeginReading();
    void BeginWriting();
    void Forget();
    vak::system::StreamBytes Peek();
    vak::system::StreamBytes PeekLine();
    UINT ReadText(char* out, UINT count);
    void Put(const char* bytes, size_t count);
    bool ReadByteLineByPieces(char* scratch, size_t maximum, ByteLine& line);
    size_t ReadUnits(LPTSTR out, size_t room);
    size_t ReadConverted(LPTSTR out, size_t room);
    bool ReadConvertedLine(CString& out);
    bool ReadWideLine(CString& out);

    std::unique_ptr<char[]> m_buffer; ///< the stream's
    bool m_bText;
    bool m_bWriting; ///< the stream's last transfer was a write
};
