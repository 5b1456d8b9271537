#pragma once

#include "core/CustomData.h"
#include "examples/vakconvert/Settings.h"

/// How results are named and where they go when the command line does not say, as the user keeps it in the
/// preferences. In a store with these identifiers, beside which a sheet has those of a format.
enum NamesId : unsigned int
{
    kNameTemplate = 'vcNT', ///< text
    kNamePlace = 'vcPL',    ///< a NamePlace
    kNameSubfolder = 'vcSF',
    kNameDestination = 'vcDS',
    kNameOverwrite = 'vcOW' ///< truth value
};

enum NamePlace
{
    kBesideSources,
    kInSubfolder,
    kInDestination
};

/// Returns what `data` says about names, every value present, and nothing else of it.
CCustomData NamesOf(const CCustomData& data);
/// Returns what is kept; without that, what holds for a command line that says nothing.
CCustomData LoadNames();
/// Keeps the names in the preferences file; false when it cannot be written.
bool KeepNames(const CCustomData& data, const CString& path);
/// Returns an empty text, or why no results can go there (in French, for the sheet).
CString CheckNames(const CCustomData& data);
/// Brings what is kept into the settings that the command line leaves open. Returns an empty text, or why it
/// cannot be used; the settings are as they were then.
CString ApplyNames(Settings& settings);
