#pragma once

/// One load or save of one file: its name and kind, its parameters, how it ended, and the parser that does
/// it.
///
/// A host makes a CFileIo, calls InitParser, works through the parser, reports the result and destroys the
/// CFileIo, which destroys the parser. Plug-ins reach the same object through their parser. For the
/// user-interface thread, like the registry of kinds that it asks.
///
/// A file has its own kind, found by its extension, and may be given an alternative class: then the loader,
/// the saver, the class and the properties in use are the alternative's, while the entry point that makes the
/// parser stays that of the file's own kind. One plug-in must therefore handle both.

#include "core/CustomData.h"
#include "files/FileInfo.h"
#include "files/FileNameSpec.h"
#include "files/FileParser.h"
#include "files/IoOptions.h"
#include "files/IoResult.h"
#include "framework/base/String.h"
#include "framework/base/StringArray.h"

class CWnd;

/// Decides whether GetFileList keeps the file of that complete name: non-zero keeps it.
using FileListFilter = int (*)(const CString& path, void* data);

/// The order of the virtual operations and of the members is part of the interface.
class VAK_API CFileIo
{
public:
    /// `flags`: FILE_PARSER_FLAGS and the host's own. `parent` (not owned, may be null) is the window that
    /// dialogs belong to.
    CFileIo(const CFileNameSpec& file, unsigned int flags, CWnd* parent);
    /// An operation on a kind whose file has no name yet.
    CFileIo(unsigned int fileClass, unsigned int flags, CWnd* parent);
    /// Copies everything but the parser: the copy has none.
    CFileIo(const CFileIo& other);
    /// The same; the parser that this object had is destroyed.
    CFileIo& operator=(const CFileIo& other);
    /// Closes the parser.
    virtual ~CFileIo();

    /// Destroys the current parser, if any.
    virtual void CloseParser();
    /// Closes the current parser and asks the plug-in of the file's kind for a new one, then reads the I/O
    /// parameters from the preferences (unless FILE_PARSER_NO_PREFERENCES is set, they are replaced, also by
    /// nothing when none are kept). Returns the parser, which this object owns. Returns null with the result
    /// IO_FILE_UNKNOWN_TYPE and an empty error text when the kind has no plug-in for this direction, when its
    /// plug-in has been unloaded, makes none or throws.
    virtual CFileParser* InitParser();

    /// The loader code of the kind in use when loading, its saver code when saving; 'UNKN' for none.
    unsigned int GetParser() const;
    /// Class, family bits and properties of the kind in use.
    unsigned int GetClass() const;
    unsigned int GetKindOf() const;
    unsigned int GetProperties() const;
    /// The parser that InitParser made, or null.
    CFileParser* GetCurrentParser() const { return m_parser; }

    /// `fileClass` 0 goes back to the file's own kind.
    void SetAlternativeClass(unsigned int fileClass);
    unsigned int GetAlternativeClass() const { return m_alternativeClass; }

    void SetFlag(unsigned int flag, int on);
    /// 1 when all the given bits are set.
    int IsFlagSet(unsigned int flags) const;
    void SetSilentMode(int on);
    int IsSilentMode() const;
    int IsLoading() const;
    /// Replaces the low 16 bits of the flag word, direction and silence included.
    void SetPreferencesFlags(unsigned int flags);
    unsigned int GetPreferencesFlags() const;

    /// Gives the operation another file; an alternative class stays set, a parser stays open.
    void SetNewFileName(const CFileNameSpec& file);
    /// The file as it was named: complete, its folder (slash-terminated), its name, its extension with the
    /// dot.
    CString GetCompleteName() const;
    CString GetPath() const;
    CString GetNameWithoutExt() const;
    CString GetExtension() const;
    /// The name that goes with the kind in use: with an alternative class set, the same name with the main
    /// extension of that class. Complete, its folder, and name with extension.
    CString GetCurrentCompleteFileName() const;
    CString GetCurrentFilePath() const;
    CString GetCurrentShortFileName() const;

    /// The I/O parameters, which host and parser share.
    CCustomData& GetCustomData() { return m_customData; }
    const CCustomData& GetCustomData() const { return m_customData; }
    /// Replaces `data` by the parameters kept for that class and direction; returns 0 with `data` empty when
    /// there are none. With FILE_PARSER_NO_PREFERENCES does nothing and returns 1.
    int LoadIoParameters(int loading, CCustomData& data, unsigned int fileClass) const;
    /// Keeps `data`, with its class added under 'IOCL', for that class and direction; returns 0 when the file
    /// cannot be written. With FILE_PARSER_NO_PREFERENCES does nothing and returns 1.
    int SaveIoParameters(int loading, const CCustomData& data, unsigned int fileClass) const;
    /// The preferences file: the one set by SetPreferencesFilePath, else "IoParameters.dat" in the folder
    /// "Vak Tools" of the user's application data (without one, of the program's folder).
    CString GetPreferencesFilePath() const;
    /// Names the preferences file for the whole process; an empty path goes back to the default.
    static void SetPreferencesFilePath(const CString& path);

    /// Sets the result code and forgets an earlier text; the code's text is added to the log, if one is
    /// given.
    void SetIoError(IO_FILE_RESULT code, CIoOptions* options = nullptr,
                    IoLogInfo::loglevel level = IoLogInfo::error);
    /// Sets a text of the caller's own in place of the code's, and adds it to the log, if one is given. A
    /// result of success becomes 0, an unknown error; a failure's code stays.
    void SetIoError(const CString& text, CIoOptions* options = nullptr,
                    IoLogInfo::loglevel level = IoLogInfo::error);
    /// The result code of the last operation, IO_FILE_SUCCESS at the start.
    int GetIoError() const { return m_ioError; }
    /// The error text if one was set, else the text of the result code.
    CString GetIoErrorTxt() const;
    static CString GetIoErrorTxtFromCode(int loading, int code);
    /// Shows `text`, or the error text when it is empty, in a message box; nothing in silent mode.
    void ReportIoError(const CString& text) const;
    /// Shows the log when it holds something, else the error text if the operation failed; nothing in silent
    /// mode. `icon` as in CIoOptions::DisplayLog; `options` may be null. Windows only.
    void ReportIoError(const CIoOptions* options, unsigned int icon) const;

    /// What the registered kind says about its dialog for that direction; IoShowDialogNone for an unknown
    /// class.
    static IoShowDialog HasDialog(unsigned int fileClass, int loading);

    /// Asks the user for the file in the platform's open or save dialog; `flags` are the platform's OFN_
    /// bits. Returns IDOK with the file renamed, or IDCANCEL, at once in silent mode. Windows only.
    int FileDialogBox(unsigned int flags);

    /// Fills `files` with the complete names of the files in this file's folder whose kind is registered and
    /// has a loader (a saver when saving), in the alphabetical order of their names without regard to case.
    /// `filter` (null: none) may refuse files; `data` is passed to it. `recurse` non-zero visits the folders
    /// below, after the files of theirs. Returns the number.
    int GetFileList(CStringArray& files, FileListFilter filter, void* data, int recurse) const;
    /// Lets the user pick among `files` in a resizable dialog in which all are selected at first. Returns the
    /// number picked, their names in `selected` in the given order; 0 with `selected` empty when the user
    /// cancels. In silent mode all are picked. Windows only.
    int SelectFilesFromList(const CStringArray& files, CStringArray& selected) const;
    /// Looks for the file that a document means by `file`, whose path may be stale or written with slashes:
    /// at that path (a relative one below `folder`), then by its name in `folder`, then there under another
    /// extension of the registered kinds of the families `kinds` (bits of 0xFF000; 0 tries none). Returns 1
    /// with the file found in `file`; else 0 with `file` as it was.
    static int FindMatchingFile(CString& file, const CString& folder, int kinds);

    CWnd* GetParentWnd() const { return m_parentWnd; }

protected:
    unsigned int m_alternativeClass = 0;
    CCustomData m_customData;
    CFileInfo m_fileInfo;
    CFileInfo m_alternativeInfo;
    unsigned int m_flags = 0;
    int m_ioError = IO_FILE_SUCCESS;
    CString m_ioErrorText;
    CFileParser* m_parser = nullptr;
    CWnd* m_parentWnd = nullptr;

private:
    const CFileInfo& InfoInUse() const;
    void NameFile(const CFileNameSpec& file);
    void NameAlternative();
    CFileParser* CreateParser();
};
