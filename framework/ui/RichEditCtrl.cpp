#include "framework/ui/RichEditCtrl.h"

#include "framework/base/SystemModule.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CRichEditCtrl, CWnd)

namespace {

/// Loads a library of the system for good: its window classes are in use until the process ends.
BOOL HasModule(LPCTSTR name)
{
    return LoadLibraryEx(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32) != nullptr;
}

} // namespace

BOOL AfxInitRichEdit2()
{
    static const BOOL hasModule = HasModule(L"riched20.dll");
    return hasModule;
}

BOOL AfxInitRichEdit5()
{
    static const BOOL hasModule = HasModule(L"msftedit.dll");
    return hasModule;
}

BOOL CRichEditCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return AfxInitRichEdit5() && CreateEx(0, MSFTEDIT_CLASS, nullptr, style, rect, parent, id);
}

LONG CRichEditCtrl::GetTextLengthEx(DWORD flags, UINT codePage) const
{
    GETTEXTLENGTHEX how{flags, codePage};
    return static_cast<LONG>(SendMessage(EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&how)));
}

int CRichEditCtrl::GetTextRange(LONG first, LONG last, CString& text) const
{
    const LONG end = last < 0 ? GetTextLengthEx(GTL_NUMCHARS | GTL_PRECISE) : last;
    const int capacity = std::max<LONG>(end - first, 0);
    TEXTRANGE range{{first, end}, text.GetBuffer(capacity)};
    *range.lpstrText = L'\0';
    const LRESULT copied = SendMessage(EM_GETTEXTRANGE, 0, reinterpret_cast<LPARAM>(&range));
    text.ReleaseBuffer(std::min(static_cast<int>(copied), capacity));
    return text.GetLength();
}

LONG CRichEditCtrl::FindText(DWORD flags, FINDTEXTEX* find) const
{
    return static_cast<LONG>(SendMessage(EM_FINDTEXTEXW, flags, reinterpret_cast<LPARAM>(find)));
}

void CRichEditCtrl::GetSel(CHARRANGE& range) const
{
    SendMessage(EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&range));
}

void CRichEditCtrl::SetSel(LONG first, LONG last)
{
    CHARRANGE range{first, last};
    SendMessage(EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
}

void CRichEditCtrl::ReplaceSel(LPCTSTR text, BOOL canUndo)
{
    SendMessage(EM_REPLACESEL, static_cast<WPARAM>(canUndo), reinterpret_cast<LPARAM>(text));
}

DWORD CRichEditCtrl::GetSelectionCharFormat(CHARFORMAT2& format) const
{
    format.cbSize = sizeof format;
    return static_cast<DWORD>(
        SendMessage(EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format)));
}

BOOL CRichEditCtrl::SetSelectionCharFormat(CHARFORMAT2& format)
{
    format.cbSize = sizeof format;
    return static_cast<BOOL>(SendMessage(EM_SETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format)));
}

LONG CRichEditCtrl::LineFromChar(LONG position) const
{
    return static_cast<LONG>(SendMessage(EM_EXLINEFROMCHAR, 0, position));
}

LONG CRichEditCtrl::LineIndex(LONG line) const
{
    return static_cast<LONG>(SendMessage(EM_LINEINDEX, static_cast<WPARAM>(line)));
}

LONG CRichEditCtrl::GetLimitText() const
{
    return static_cast<LONG>(SendMessage(EM_GETLIMITTEXT));
}

void CRichEditCtrl::LimitText(LONG limit)
{
    SendMessage(EM_EXLIMITTEXT, 0, limit);
}

BOOL CRichEditCtrl::GetModify() const
{
    return SendMessage(EM_GETMODIFY) != 0;
}

void CRichEditCtrl::SetModify(BOOL modified)
{
    SendMessage(EM_SETMODIFY, static_cast<WPARAM>(modified));
}

BOOL CRichEditCtrl::SetReadOnly(BOOL readOnly)
{
    return static_cast<BOOL>(SendMessage(EM_SETREADONLY, static_cast<WPARAM>(readOnly)));
}

DWORD CRichEditCtrl::SetEventMask(DWORD mask)
{
    return static_cast<DWORD>(SendMessage(EM_SETEVENTMASK, 0, static_cast<LPARAM>(mask)));
}

LONG CRichEditCtrl::StreamIn(int format, EDITSTREAM& stream)
{
    return static_cast<LONG>(
        SendMessage(EM_STREAMIN, static_cast<WPARAM>(format), reinterpret_cast<LPARAM>(&stream)));
}

LONG CRichEditCtrl::StreamOut(int format, EDITSTREAM& stream) const
{
    return static_cast<LONG>(
        SendMessage(EM_STREAMOUT, static_cast<WPARAM>(format), reinterpret_cast<LPARAM>(&stream)));
}
