#include "framework/ui/RichEditCtrl.h"
#include "tags/Tags.h"

#include <utility>

namespace detail = vak::detail;
using detail::ScanState;
using detail::TagRange;

namespace {

constexpr unsigned int kConditionalClass = 'TAGC';
constexpr unsigned int kConditionalBegin = 'IFNE';
constexpr unsigned int kConditionalEnd = 'EINE';

/// The control is there, and its window has not been destroyed meanwhile.
bool HasWindow(const CRichEditCtrl& control)
{
    return CWnd::FromHandlePermanent(control.GetSafeHwnd()) == &control;
}

unsigned int LengthOf(const CRichEditCtrl& control)
{
    return static_cast<unsigned int>(control.GetTextLengthEx(GTL_NUMCHARS | GTL_PRECISE));
}

CString TextOf(const CRichEditCtrl& control, TagRange range)
{
    CString text;
    control.GetTextRange(static_cast<LONG>(range.start), static_cast<LONG>(range.end), text);
    return text;
}

void Select(CRichEditCtrl& control, TagRange range)
{
    control.SetSel(static_cast<LONG>(range.start), static_cast<LONG>(range.end));
}

/// Replaces the selection and returns where the text behind it begins. What the user may type has a limit
/// that replacements shall not meet.
unsigned int Replace(CRichEditCtrl& control, const CString& text)
{
    const LONG limit = control.GetLimitText();
    const auto needed = static_cast<LONGLONG>(LengthOf(control)) + text.GetLength();
    const bool isTooSmall = limit < needed && needed < 0x7FFFFFFF;
    if (isTooSmall)
        control.LimitText(static_cast<LONG>(needed));
    control.ReplaceSel(text);
    if (isTooSmall)
        control.LimitText(limit);
    // The control keeps a line break of two units as one: only the caret tells how long the text became.
    CHARRANGE caret{};
    control.GetSel(caret);
    return static_cast<unsigned int>(caret.cpMax);
}

/// The position of the first `bracket` at or behind `from`, -1 for none.
LONG FindBracket(const CRichEditCtrl& control, wchar_t bracket, unsigned int from)
{
    wchar_t text[] = {bracket, L'\0'};
    FINDTEXTEX find{{static_cast<LONG>(from), -1}, text, {}};
    return control.FindText(FR_DOWN | FR_MATCHCASE, &find);
}

/// The next bracketed text at or behind `from`, which goes from the last "<" before a ">" to that ">".
bool FindCandidate(const CRichEditCtrl& control, unsigned int from, TagRange& range, CString& text)
{
    const LONG open = FindBracket(control, L'<', from);
    if (open < 0)
        return false;
    const LONG close = FindBracket(control, L'>', static_cast<unsigned int>(open) + 1);
    if (close < 0)
        return false;
    range = {static_cast<unsigned int>(open), static_cast<unsigned int>(close) + 1};
    text = TextOf(control, range);
    // One reading passes over any number of "<" that are literal.
    const int last = text.ReverseFind(L'<');
    if (last > 0) {
        range.start += static_cast<unsigned int>(last);
        text = text.Mid(last);
    }
    return true;
}

bool IsLineBreak(wchar_t unit)
{
    return unit == L'\r' || unit == L'\n' || unit == L'\v';
}

bool HasLineBreakAt(const CRichEditCtrl& control, unsigned int position)
{
    const CString unit = TextOf(control, {position, position + 1});
    return !unit.IsEmpty() && IsLineBreak(unit[0]);
}

/// Deletes a stretch, with the break of a line that it leaves empty, and returns what is gone: nothing when
/// the control refuses, as it may for protected text. (An empty last line goes at the end of the scan.)
TagRange Delete(CRichEditCtrl& control, TagRange stretch)
{
    const unsigned int length = LengthOf(control);
    const bool beginsLine = stretch.start == 0 || HasLineBreakAt(control, stretch.start - 1);
    if (beginsLine && stretch.end < length && HasLineBreakAt(control, stretch.end))
        ++stretch.end;
    Select(control, stretch);
    Replace(control, L"");
    return LengthOf(control) < length ? stretch : TagRange{stretch.end, stretch.end};
}

/// Where `position` stands once `gone` is deleted.
unsigned int PositionWithout(TagRange gone, unsigned int position)
{
    if (position <= gone.start)
        return position;
    return position < gone.end ? gone.start : position - (gone.end - gone.start);
}

void DeleteEmptyLinesAtEnd(CRichEditCtrl& control)
{
    const unsigned int length = LengthOf(control);
    const CString text = TextOf(control, {0, length});
    unsigned int empty = 0;
    for (int at = text.GetLength(); at > 0 && IsLineBreak(text[at - 1]); --at)
        ++empty;
    // The break of the last line that stays goes by itself: together with others it would take the alignment
    // of its line with it.
    for (const TagRange range :
         {TagRange{length - empty + 1, length}, {length - empty, length - empty + 1}}) {
        if (empty == 0 || range.start == range.end)
            continue;
        Select(control, range);
        Replace(control, L"");
    }
}

void OpenConditional(ScanState& state, TagRange marker)
{
    state.conditionals.push_back(marker);
    state.conditionalStart = marker.start;
    state.emptyTag = false;
    state.position = marker.end;
}

void CloseConditional(CRichEditCtrl& control, ScanState& state, TagRange marker)
{
    const bool isEmpty = std::exchange(state.emptyTag, false);
    state.position = marker.end;
    if (state.conditionals.empty())
        return;
    // Replacements and deletions happen behind the opening markers that are left: those never move.
    const TagRange open = state.conditionals.back();
    state.conditionals.pop_back();
    state.conditionalStart = state.conditionals.empty() ? 0 : state.conditionals.back().start;
    // Unless somebody else has changed the text.
    if (open.end > marker.start)
        return;
    if (isEmpty) {
        state.position = PositionWithout(Delete(control, {open.start, marker.end}), state.position);
        return;
    }
    state.position = PositionWithout(Delete(control, marker), state.position);
    state.position = PositionWithout(Delete(control, open), state.position);
}

} // namespace

void CTags::StartRTFScan()
{
    ScanState& state = m_scans.Obtain();
    state.Reset();
    state.text.Empty();
}

int CTags::RTFScan(CRichEditCtrl& control, CTagInfo& info)
{
    ScanState* const state = m_scans.Find();
    info.Init();
    TagRange range{};
    CString text;
    // Whoever is told of a deletion may end the control.
    while (state && HasWindow(control) && FindCandidate(control, state->position, range, text)) {
        if (!GetTagInfo(text, info)) {
            state->position = range.end;
        } else if (info.GetTagClass() == kConditionalClass && info.GetTagID() == kConditionalBegin) {
            OpenConditional(*state, range);
        } else if (info.GetTagClass() == kConditionalClass && info.GetTagID() == kConditionalEnd) {
            CloseConditional(control, *state, range);
        } else {
            state->position = range.end;
            Select(control, range);
            return 1;
        }
    }
    info.Init();
    if (!state || !HasWindow(control))
        return 0;
    DeleteEmptyLinesAtEnd(control);
    state->position = LengthOf(control);
    return 0;
}

int CTags::SetRTFTag(CRichEditCtrl& control, const CString& text)
{
    ScanState* const state = m_scans.Find();
    if (!state || !HasWindow(control))
        return 0;
    if (text.IsEmpty())
        state->emptyTag = true;
    state->position = Replace(control, text);
    return 1;
}
