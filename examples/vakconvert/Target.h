#pragma once

#include "core/CustomData.h"
#include "examples/sdk/FormatOptions.h"
#include "examples/vakconvert/Settings.h"

#include <vector>

/// A kind to convert to, with the parameters that its writer gets.
struct Target
{
    unsigned int fileClass = 0;
    unsigned int family = 0; ///< the bit of the kind's family, which must be the source's too
    CString extension;       ///< the one that the user wrote
    FormatOptions options;
    CCustomData parameters;
    bool asks = false;      ///< its plug-in asks for the options when the next file is written
    bool isGivenUp = false; ///< the user has cancelled that
};

/// Finds the kind of an extension (with its dot), with the parameters kept in the preferences. Returns an
/// empty text, or what is wrong.
CString PrepareTarget(const CString& extension, Target& target);

/// Finds the kinds that the command line asks for and merges its options over those kept in the preferences;
/// keeps them there when asked. Returns an empty text, or what is wrong.
CString PrepareTargets(const Settings& settings, std::vector<Target>& targets);

/// The options that a class's writer, or reader, declares; none when it has no plug-in.
FormatOptions OptionsOf(unsigned int fileClass, bool loading);
