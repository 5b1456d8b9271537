#pragma once

/// What reads or writes one file. A format plug-in derives its parsers from CFileParser, usually through an
/// interface that it shares with its hosts, and makes one whenever its entry point is called with
/// IoPluginCreate.

#include "framework/base/Platform.h"

class CFileIo;
class CFileParser;
class CWnd;

/// Bits of a CFileIo's flag word. The low 16 together are its preference flags; a host may use the others.
enum FILE_PARSER_FLAGS : unsigned int
{
    FILE_PARSER_LOADING = 0x1, ///< a load; clear: a save
    FILE_PARSER_SILENT = 0x2,  ///< no dialogs and no message boxes
    FILE_PARSER_NO_PREFERENCES =
        0x8 ///< I/O parameters are neither read from the preferences nor written to them
};

/// Whether a direction (loading or saving) of a kind has a dialog.
enum IoShowDialog : int
{
    IoShowDialogNone = 0,
    IoShowDialogOptional = 1, ///< there is a dialog with options
    IoShowDialogAlways = 2    ///< it must be shown
};

/// What a plug-in's entry point receives in mode IoPluginCreate.
struct IoParserRequest
{
    CFileIo* fileIo;        ///< in: the operation; it outlives the parser
    unsigned int fileClass; ///< in: the class of the file, that of the alternative kind when one is set
    CFileParser*
        parser; ///< out: a parser made with `new`; the library deletes it, whatever the entry point returns
};

class VAK_API CFileParser
{
public:
    /// A parser without an operation: no flag is set and no dialog wanted.
    CFileParser() = default;
    /// `fileIo` (not owned, may be null) outlives the parser. The parent window is copied from it.
    explicit CFileParser(CFileIo* fileIo);
    CFileParser(const CFileParser& other) = default;
    CFileParser& operator=(const CFileParser& other) = default;
    virtual ~CFileParser();

    CFileIo* GetFileIo() const { return m_fileIo; }
    /// The window that the parser's own dialogs belong to; null for none.
    CWnd* GetParentWnd() const { return m_parentWnd; }

    /// IoShowDialogAlways when the kind in use must show its dialog for this direction, else
    /// IoShowDialogNone.
    IoShowDialog MustShowDialog() const;
    int IsSilentMode() const;
    /// 1 when all the given bits are set.
    int IsFlagSet(FILE_PARSER_FLAGS flags) const;

protected:
    CFileIo* m_fileIo = nullptr;
    CWnd* m_parentWnd = nullptr;
};
