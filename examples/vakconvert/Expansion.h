#pragma once

#include "framework/ui/RichEditCtrl.h"
#include "tags/Tags.h"

#include <string>

/// Expands templates. Lists become lines; a tag that has no value becomes nothing.
///
/// In plain text the conditional tags, if the engine knows them, work as the engine makes them work in rich
/// text: a stretch from "<tagifexist>" to "<tagendifexist>" goes when a tag in it has no value, else only the
/// two markers go, and with them lines that they leave empty. What stands before a list in its line, blanks
/// and bullets, stands before each of its lines.
CString ExpandText(CTags& tags, const CString& text);
/// The same in a control, in place; it must be writable. A list in a paragraph becomes paragraphs like it.
void ExpandRichText(CTags& tags, CRichEditCtrl& control);

/// A control for rich text that nobody sees.
class HiddenRichText
{
public:
    /// Null when the system has no such control.
    CRichEditCtrl* Control();

private:
    CWnd m_parent;
    CRichEditCtrl m_control;
};

/// Replaces the control's text by a document in the rich-text format; false when it is none. The whole text,
/// however long, may then be replaced.
bool SetDocument(CRichEditCtrl& control, const std::string& document);
std::string DocumentOf(const CRichEditCtrl& control);
/// The text with line feeds, and back. The control keeps carriage returns.
CString PlainTextOf(const CRichEditCtrl& control);
