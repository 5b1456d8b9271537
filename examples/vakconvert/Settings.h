#pragma once

#include "framework/base/String.h"

#include <vector>

/// What the user asked for on the command line.
struct Settings
{
    struct Option
    {
        CString name;
        CString value;
    };

    std::vector<CString> sources;
    std::vector<CString> targets; ///< extensions with their dots, lower-case
    CString destination;          ///< absolute and slash-terminated; empty: none
    CString zip;                  ///< the archive that takes the results, absolute; empty: none
    CString subfolder;            ///< relative, without "." and ".."; empty: none
    CString name;                 ///< the template of the results' names; empty: those of the sources
    CString report;               ///< the template of the report, absolute; empty: no report is wanted
    CString reportOut;            ///< where it goes, absolute; empty: to the destination
    CString editTemplate;         ///< the template to edit, absolute; empty: nothing is to be edited
    CString optionsOf;            ///< the kind whose options are to be set, an extension; empty: none
    CString view;                 ///< the image or model to show, absolute; empty: none
    std::vector<Option> options;
    CString preferences; ///< another preferences file; empty: the library's own
    bool recurse = false;
    bool recreateTree = false;
    bool flat = false;
    bool beside = false;
    bool overwrite = false;
    bool noOverwrite = false; ///< whatever the user has kept
    bool nameGiven = false;
    bool ask = false; ///< have the plug-ins ask for their options
    bool saveOptions = false;
    bool listKinds = false;
    bool listPlugins = false;
    bool tree = false; ///< show the structure of the sources instead of converting them
    bool help = false;
};

/// Reads the arguments (without the program's name). Returns an empty text, or what is wrong with them.
CString ParseCommandLine(const std::vector<CString>& arguments, Settings& settings);

/// The help text, with line feeds.
CString UsageText();

/// The absolute path of what a user writes, with slashes or backslashes.
CString FullPath(CString path);
/// The name of a folder below any other, as a user writes it; empty when the text is none.
CString SubfolderName(CString text);
