#pragma once

/// The log of one load or save: what a parser had to say about the file, shown to the user at the end.
///
/// A plain value without locks; the operation that uses it owns it.

#include "framework/base/Array.h"
#include "framework/base/String.h"

class CWnd;

/// One line of the log.
struct IoLogInfo
{
    enum loglevel : int
    {
        info = 0,    ///< worth knowing
        warning = 1, ///< something was left out or guessed
        error = 2,   ///< the operation, or a part of it, failed
    };

    loglevel level = info;
    CString text;
};

class VAK_API CIoOptions
{
public:
    /// `loading`: non-zero for the log of a load, 0 for that of a save.
    explicit CIoOptions(int loading);
    CIoOptions(const CIoOptions& other);
    CIoOptions& operator=(const CIoOptions& other);

    bool IsLoading() const { return m_loading != 0; }
    int GetLogCount() const;
    /// Line `index`, from 0 to GetLogCount() - 1, in the order of adding; valid until the log changes. An
    /// index outside throws CInvalidArgException.
    const IoLogInfo& GetLogInfo(int index) const;
    /// The gravest level that a line has; `info` for an empty log.
    IoLogInfo::loglevel GetWorstLevel() const;

    void AddLogInfo(IoLogInfo::loglevel level, const CString& text);
    /// The same with a text of the string table; an identifier that has none adds nothing.
    void AddLogInfo(IoLogInfo::loglevel level, unsigned int textId);
    void ClearLog();

    /// Shows the log in a modal, resizable window over `parent` (null: the application's main window) and
    /// returns when the user closes it; does nothing when the log is empty. `icon` is the sign of a message
    /// box (MB_ICONHAND, MB_ICONEXCLAMATION, MB_ICONINFORMATION, ...); 0 takes the one of the gravest level.
    /// Windows only.
    void DisplayLog(unsigned int icon, CWnd* parent = nullptr) const;

private:
    int m_loading;
    CArray<IoLogInfo, const IoLogInfo&> m_log;
};
