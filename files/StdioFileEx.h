#pragma once

#include "framework/base/Platform.h"
#include "framework/base/StdioFile.h"
#include "framework/base/String.h"

/// A text file read and written line by line, in UTF-16 with a byte-order mark or in an 8-bit code page,
/// while the program sees only wide strings.
///
/// A file opened for reading in text mode is probed: when it begins with FF FE it is read as UTF-16. A file
/// opened for writing is in the code page unless kWriteUtf16 is given. The object owns the file and closes
/// it; it belongs to one thread at a time. Failures of the file are CFileException*, deleted by the catcher.
class VAK_API CStdioFileEx : public CStdioFile
{
    DECLARE_DYNAMIC(CStdioFileEx)

public:
    /// Open flag of this class, beside those of CFile: write UTF-16. Such a stream is binary, whatever else
    /// the flags say.
    static constexpr UINT kWriteUtf16 = 0x10000000;
    /// In place of a code page: the system's ANSI code page.
    static constexpr UINT kAnsiCodePage = 0xFFFFFFFF;

    CStdioFileEx();
    /// Opens the file; throws CFileException* when that fails.
    CStdioFileEx(LPCTSTR path, UINT flags);
    /// Closes the file, failures ignored, and deletes it from the disk when that was asked for.
    ~CStdioFileEx() override;

    /// True when the first two bytes are FF FE; false also for a file that is shorter or cannot be opened.
    static bool IsFileUnicode(LPCTSTR path);
    /// The default ANSI code page of the user's locale, 0 when it cannot be read.
    static UINT GetCurrentLocaleCodePage();
    /// UTF-16 units without the mark, or bytes of an 8-bit file; 0 when the file is not open.
    ULONGLONG GetCharCount() const;
    /// Always 0: no file is ever found to end its lines in a bare carriage return.
    int CheckCarriageReturn();

    /// Opens the file, closed before. Returns FALSE on failure with nothing open; `error`, when given, then
    /// says why.
    BOOL Open(LPCTSTR path, UINT flags, CFileException* error = nullptr) override;
    /// The code page of 8-bit text from now on, read and written; at first the system's ANSI code page.
    void SetCodePage(UINT codePage);

    using CStdioFile::ReadString;
    /// Reads one line without its line end (CR LF, LF, or a CR at the end of the piece). Returns 0 when
    /// nothing was left.
    ///
    /// An 8-bit line longer than 4095 bytes comes in pieces of at most that length; a character is never cut
    /// in two. A code page that the system does not know leaves the line unchanged.
    BOOL ReadString(CString& line) override;
    /// Writes the text, up to its first zero; line ends are the caller's. The first UTF-16 text is preceded
    /// by the mark. Characters that the code page lacks become '#'.
    void WriteString(LPCTSTR text) override;
    /// Reads past up to `count` lines, as ReadString counts them, fewer at the end of the file; from the
    /// start of the file unless `keepPosition` is non-zero.
    void SkipLines(unsigned int count, int keepPosition = 0);
    /// Reads formatted text at the current position, which ends behind the last character used, and returns
    /// how many fields were stored; EOF (-1) when the file ended before the first one.
    ///
    /// Formats are scanf's, in wide text: d i u o x X p e f g a s c [ n %, `*`, a width, the sizes h hh l ll
    /// I32 I64. Text goes to wchar_t, with h (and for S, C) to char in the ANSI code page; every s, c and [
    /// takes two arguments: the buffer and, as `unsigned int`, its size in characters. Text that does not fit
    /// its buffer ends the reading, with an empty text in a buffer of s and [. `l` is the platform's LONG.
    /// The decimal sign is that of the run-time's locale.
    int FScanfS(LPCWSTR format, ...);

    /// Converts up to the zero of `source` and returns the characters written, without the zero behind them;
    /// 0 (and an empty text, if there is a buffer) when a buffer is missing, the length is not positive, the
    /// result does not fit or the code page is unknown. `length` counts characters, the zero included.
    static int GetUnicodeStringFromMultiByteString(LPCSTR source, LPWSTR destination, int length,
                                                   UINT codePage = kAnsiCodePage);
    /// The opposite; `length` counts bytes, the zero included. Characters that the code page lacks become
    /// '#', except in UTF-8, which has them all.
    static int GetMultiByteStringFromUnicodeString(LPCWSTR source, LPSTR destination, int length,
                                                   UINT codePage = kAnsiCodePage);
    /// The bytes that the conversion needs, the zero included; 0 when it cannot be made.
    static int GetRequiredMultiByteLengthForUnicodeString(LPCWSTR source, UINT codePage = kAnsiCodePage);

protected:
    /// Adjusts the flags for opening `path`, stores them, and returns them: text mode becomes binary mode
    /// when the file is found to be UTF-16, or is to be written so.
    UINT ProcessFlags(LPCTSTR path, UINT& flags);

    // The order of these members is part of the interface, their distances too: hence the alignment, without
    // which the first would move into the base's padding where the compiler does so.
    alignas(UINT) bool m_deleteOnDestroy = false; ///< the destructor deletes the file
    bool m_isUnicode = false;                     ///< found to be UTF-16 on opening
    UINT m_openFlags = 0;                         ///< as used, after the adjustment
    UINT m_codePage;

private:
    bool IsCodePageKnown(UINT codePage);
    bool ReadAnsiLine(CString& line);
    bool ReadUnicodeLine(CString& line);
    void WriteUnicode(LPCTSTR text);
    void SkipMark();

    CString m_openedPath; ///< what the destructor deletes, also after Close
    UINT m_knownCodePage; ///< the last one that the system was found to know
};
