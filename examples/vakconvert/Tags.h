#pragma once

#include "examples/vakconvert/Content.h"
#include "examples/vakconvert/Outcome.h"
#include "framework/base/Time.h"
#include "tags/Tags.h"

#include <vector>

/// The tags that names and reports of this program are made of.

/// Where a name is guessed before its source is loaded these stand for what is not known yet: one digit or
/// more, and any text. No name holds them: they are no characters.
constexpr wchar_t kSomeDigits = 0xFDD0;
constexpr wchar_t kSomeText = 0xFDD1;

/// What the tags of a name tell of one file.
struct FileFacts
{
    CString path;
    CString kind;                     ///< of the result: "ply"
    bool isMesh = false;              ///< else an image
    const Content* content = nullptr; ///< null: the source is not loaded yet
    unsigned int index = 0;           ///< counts the names of the run from 1
    CTime date;                       ///< of the run
};

/// What the tags of a report tell of one run.
struct RunFacts
{
    CTime date; ///< when it began
    double seconds = 0;
    CString destination; ///< slash-terminated; empty: the results lie beside their sources or in an archive
    std::size_t passedOver = 0;
    std::vector<Outcome> outcomes;
};

/// Registers the tags of names, and those of reports. The facts are the caller's, who may change them between
/// two questions; they outlive the registration.
void RegisterNameTags(CTags& tags, const FileFacts& facts);
void RegisterReportTags(CTags& tags, const RunFacts& facts);

/// The class of the two conditional tags.
constexpr unsigned int kConditionalClass = 'TAGC';
/// An engine that knows the two conditional tags, to be copied: only reports use them.
const CTags& ConditionalTags();

/// Something in a template that looks like a tag, but is none or has a parameter that nobody knows.
struct TagProblem
{
    CString tag;
    int line; ///< both count from 1
    int column;
    bool isKnown; ///< the tag is; its last parameter is not
};

/// Finds them in the order of the text, each once however often it is there. Words in angle brackets look
/// like tags, "a < b" does not.
std::vector<TagProblem> FindTagProblems(const CTags& tags, const CString& text);
/// One of them in words: "line 2, column 5: <x> is not known and stays as it is".
CString TextOf(const TagProblem& problem);
