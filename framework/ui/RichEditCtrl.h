#pragma once

/// The platform's control for formatted text. Windows only; belongs to the thread that made it.
///
/// Positions count UTF-16 units from 0; a paragraph break is one unit (a carriage return), and the mark that
/// ends the last paragraph is not counted. A range ends before its second position; -1 there means the end of
/// the text.

#include "framework/ui/Wnd.h"

#include <commdlg.h>
#include <richedit.h>

/// Loads the library of the control's classes: of RichEdit20W, and of RICHEDIT50W. Returns 0 when the system
/// has it not. Any number of calls.
VAK_API BOOL AfxInitRichEdit2();
VAK_API BOOL AfxInitRichEdit5();

class VAK_API CRichEditCtrl : public CWnd
{
    DECLARE_DYNAMIC(CRichEditCtrl)

public:
    /// Makes a control of the newer class (RICHEDIT50W) and attaches to it; arguments as for CWnd::CreateEx.
    /// The older one is made with CreateEx after AfxInitRichEdit2.
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    /// The length of the text; `flags` are GTL_ bits. GTL_NUMCHARS | GTL_PRECISE counts as positions do.
    LONG GetTextLengthEx(DWORD flags, UINT codePage = 1200) const;
    /// The text from `first` to before `last`.
    int GetTextRange(LONG first, LONG last, CString& text) const;
    /// Searches the range for the text in `find` and puts where it was found into it; returns its position,
    /// or -1. `flags` are FR_ bits; only with FR_DOWN the search goes forward.
    LONG FindText(DWORD flags, FINDTEXTEX* find) const;

    void GetSel(CHARRANGE& range) const;
    void SetSel(LONG first, LONG last);
    /// Puts `text` in the place of what is selected, with the format of its first character; the caret is
    /// then behind it. What can not be undone empties the list of what could.
    void ReplaceSel(LPCTSTR text, BOOL canUndo = FALSE);
    /// The format of what is selected; the bits of the result tell what is the same throughout.
    DWORD GetSelectionCharFormat(CHARFORMAT2& format) const;
    BOOL SetSelectionCharFormat(CHARFORMAT2& format);

    /// The line, counted from 0 as displayed, that holds the position; -1: the selection's beginning.
    LONG LineFromChar(LONG position) const;
    /// The position where that line begins; -1: the caret's line.
    LONG LineIndex(LONG line = -1) const;

    /// How much text the user may type or a replacement may bring, in UTF-16 units.
    LONG GetLimitText() const;
    void LimitText(LONG limit);
    BOOL GetModify() const;
    void SetModify(BOOL modified = TRUE);
    BOOL SetReadOnly(BOOL readOnly = TRUE);
    /// Which notifications the parent gets (ENM_ bits); returns the previous ones.
    DWORD SetEventMask(DWORD mask);

    /// Read the whole text from, or write it to, a function of the caller, as SF_RTF, SF_TEXT, ...; with
    /// SFF_SELECTION what is selected. Return how many bytes went over; `stream` has the function's error.
    LONG StreamIn(int format, EDITSTREAM& stream);
    LONG StreamOut(int format, EDITSTREAM& stream) const;
};
