#pragma once

#include "examples/vakconvert/Sources.h"
#include "examples/vakconvert/Tags.h"
#include "examples/vakconvert/Target.h"

/// Makes the names of results from a template such as "<file(shortname)>_<vertices>". Without one, results
/// bear the names of their sources.
///
/// Characters that file names cannot hold become '-'; dots and blanks at the ends go, as the system drops
/// them. A name that nothing is left of is that of the source.
class NameTemplate
{
public:
    /// An empty text: no template. `date` is that of the run.
    NameTemplate(const CString& text, CTime date);
    NameTemplate(const NameTemplate&) = delete;
    NameTemplate& operator=(const NameTemplate&) = delete;

    std::vector<TagProblem> Problems() const { return FindTagProblems(m_tags, m_text); }

    /// The name of a source's result, without its extension. Every call counts as one more file.
    CString Stem(const Source& source, const Target& target, const Content& content);
    /// The same before the source is loaded, with the places that NameMatches takes for what is not known.
    CString Guess(const Source& source, const Target& target);

private:
    CString Expand(const Source& source, const Target& target);

    CString m_text;
    FileFacts m_facts;
    CTags m_tags;
    unsigned int m_made = 0;
};

/// Whether a guess, which may be a whole path, could have become `name`. Both in one case.
bool NameMatches(const CString& guess, const CString& name);
/// Whether a guess leaves anything open.
bool IsOpenGuess(const CString& guess);
