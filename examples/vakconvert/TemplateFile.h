#pragma once

#include "framework/base/String.h"

#include <string>
#include <string_view>

/// A report template: a text file, in the encoding that it was found in, or a document in the rich-text
/// format.
struct TemplateFile
{
    enum class Encoding
    {
        Utf8,
        Utf8WithMark,
        Utf16, ///< little-endian, with its mark
        Ansi   ///< the system's code page; characters that it lacks become '#'
    };

    CString path;
    bool isRich = false;
    Encoding encoding = Encoding::Utf8;
    CString lineBreak = L"\r\n"; ///< what the first line of the text ends with
    CString text;                ///< of a text file
    std::string document;        ///< of a rich one
};

/// Reads the template `path`, ".txt" or ".rtf". Returns an empty text, or what is wrong.
CString ReadTemplate(const CString& path, TemplateFile& file);

/// Makes an empty template that is not on the disk yet, of the kind that the name tells.
CString NewTemplate(const CString& path, TemplateFile& file);

/// A text in the encoding.
std::string EncodeText(const CString& text, TemplateFile::Encoding encoding);

/// Writes a whole file, the old one or the new one being there at any moment. Returns an empty text, or why
/// it cannot be written; the old one is then as it was.
CString WriteWholeFile(const CString& path, std::string_view bytes);
